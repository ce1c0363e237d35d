// The console and the ways to end a run: nothing stays in a buffer, outputs keep their order, waits
// take what they should, GBK bytes.
#include "platform/console.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <iostream>
#include <sstream>

#include "platform/gbk_texts.h"
#include "platform/stop_run.h"
#include "support/gbk.h"
#include "support/standard_streams.h"
#include "support/temp_folder.h"

namespace korvex {
namespace {

using test::SetInput;
using test::StdoutInFile;

TEST(Console, FormattedPrintIsVisibleAtOnce) {
  const StdoutInFile out;
  PrintFormatted("%2d%%Completed.", 20);
  EXPECT_EQ(out.Received(), "20%Completed.");
}

TEST(Console, LineIsVisibleAtOnce) {
  const StdoutInFile out;
  WriteConsoleLine("line");
  EXPECT_EQ(out.Received(), "line\n");
}

TEST(Console, FormattedPrintAndStreamKeepTheirOrder) {
  const StdoutInFile out;
  WriteText(std::cout, "a");
  PrintFormatted("b");
  WriteText(std::cout, "c");
  PrintFormatted("d\n");
  WriteConsoleLine("e");
  EXPECT_EQ(out.Received(), "abcd\ne\n");
}

TEST(Console, WaitTakesOneCharacter) {
  const test::TempFolder folder;
  SetInput(folder, "ab");
  WaitForCharacter();
  EXPECT_EQ(std::getchar(), 'b');
}

TEST(Console, WaitEndsAtTheEndOfTheInput) {
  const test::TempFolder folder;
  SetInput(folder, "");
  WaitForCharacter();
  EXPECT_EQ(std::getchar(), EOF);
}

TEST(StopRun, UnwritableFileWaitsForOneCharacter) {
  const test::TempFolder folder;
  SetInput(folder, "ab");
  int status = 0;
  testing::internal::CaptureStdout();
  try {
    StopUnwritable("text");
  } catch (const RunStopped& stopped) {
    status = stopped.exitStatus;
  }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "text\n");
  EXPECT_EQ(status, 1);
  EXPECT_EQ(std::getchar(), 'b');
}

TEST(StopRun, InconsistencyIsALineAndNoMore) {
  testing::internal::CaptureStdout();
  ReportInconsistency();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "\xB4\xED\xCE\xF3!\n");
}

TEST(GbkTexts, AreTheChineseTexts) {
  EXPECT_EQ(GbkError, test::ConvertToGbk("错误!"));
  EXPECT_EQ(GbkDisplacementFileFailed, test::ConvertToGbk("节点位移文件输出失败!"));
  EXPECT_EQ(GbkStressFileFailed, test::ConvertToGbk("单元节点应力文件输出失败!"));
  EXPECT_EQ(GbkAverageStressFileFailed, test::ConvertToGbk("节点应力文件输出失败!"));
  EXPECT_EQ(GbkFileFailed, test::ConvertToGbk("文件输出失败!"));
  EXPECT_EQ(GbkCalcLogName, test::ConvertToGbk("计算日志.txt"));
}

}  // namespace
}  // namespace korvex
