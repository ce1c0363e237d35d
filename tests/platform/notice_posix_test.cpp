// The notice on a terminal: its three lines, what it reads from standard input, and its order with
// other output.
#include <gtest/gtest.h>

#include <cstdio>

#include "platform/notice.h"
#include "support/standard_streams.h"
#include "support/temp_folder.h"

namespace korvex {
namespace {

using test::SetInput;
using test::StdoutInFile;

TEST(Notice, WaitsForALineAndTakesNoMore) {
  const test::TempFolder folder;
  SetInput(folder, "yes, I have seen it\nnext");
  testing::internal::CaptureStderr();
  ShowNotice("\xE6\xA2\x81 text");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Warning!\n\xE6\xA2\x81 text\nPress Enter to continue.\n");
  EXPECT_EQ(std::getchar(), 'n');
}

TEST(Notice, EndOfTheInputDismissesIt) {
  const test::TempFolder folder;
  SetInput(folder, "no line end");
  testing::internal::CaptureStderr();
  ShowNotice("text");
  testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::getchar(), EOF);
}

// Standard output and standard error may be the same file.
TEST(Notice, ComesAfterWhatWasPrintedBefore) {
  const test::TempFolder folder;
  SetInput(folder, "");
  const StdoutInFile out;
  testing::internal::CaptureStderr();  // flushes everything, so it must come first
  std::printf("before");
  ShowNotice("text");
  const std::string received = out.Received();  // before the capture ends and flushes again
  testing::internal::GetCapturedStderr();
  EXPECT_EQ(received, "before");
}

}  // namespace
}  // namespace korvex
