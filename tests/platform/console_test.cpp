// The console, the notice and the ways to end a run: nothing stays in a buffer, outputs keep their
// order, waits take what they should, GBK bytes.
#include "platform/console.h"

#include <gtest/gtest.h>
#include <iconv.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <sstream>

#include "platform/gbk_texts.h"
#include "platform/notice.h"
#include "platform/stop_run.h"
#include "support/temp_folder.h"

namespace korvex {
namespace {

// What standard output has received, as a file sees it while the program still runs.
class StdoutInFile {
 public:
  StdoutInFile() {
    std::fflush(stdout);
    const std::string file = (folder_.Path() / "out").string();
    std::FILE* stream = std::fopen(file.c_str(), "w");
    dup2(fileno(stream), STDOUT_FILENO);
    std::fclose(stream);
  }
  ~StdoutInFile() {
    std::fflush(stdout);
    dup2(saved_, STDOUT_FILENO);
    close(saved_);
  }
  StdoutInFile(const StdoutInFile&) = delete;
  StdoutInFile& operator=(const StdoutInFile&) = delete;

  std::string Received() const { return test::ReadFile(folder_.Path() / "out"); }

 private:
  test::TempFolder folder_;
  int saved_ = dup(STDOUT_FILENO);
};

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

// Gives the process `input` as its standard input.
void SetInput(const test::TempFolder& folder, const std::string& input) {
  const std::string file = (folder.Path() / "in").string();
  test::WriteFile(file, input);
  ASSERT_NE(std::freopen(file.c_str(), "r", stdin), nullptr);
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
TEST(Notice, ComesBehindWhatWasPrintedBefore) {
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

// `utf8` in GBK, converted by the C library's own tables.
std::string ConvertToGbk(std::string utf8) {
  const iconv_t converter = iconv_open("GBK", "UTF-8");
  std::string gbk(utf8.size(), '\0');
  char* in = utf8.data();
  char* out = gbk.data();
  std::size_t inLeft = utf8.size(), outLeft = gbk.size();
  EXPECT_EQ(iconv(converter, &in, &inLeft, &out, &outLeft), 0U);
  iconv_close(converter);
  gbk.resize(gbk.size() - outLeft);
  return gbk;
}

TEST(GbkTexts, AreTheChineseTexts) {
  EXPECT_EQ(GbkError, ConvertToGbk("错误!"));
  EXPECT_EQ(GbkDisplacementFileFailed, ConvertToGbk("节点位移文件输出失败!"));
  EXPECT_EQ(GbkStressFileFailed, ConvertToGbk("单元节点应力文件输出失败!"));
  EXPECT_EQ(GbkFileFailed, ConvertToGbk("文件输出失败!"));
  EXPECT_EQ(GbkCalcLogName, ConvertToGbk("计算日志.txt"));
}

}  // namespace
}  // namespace korvex
