// The console and the ways to end a run: output is visible at once and in order, a wait takes one
// character, Chinese texts are GBK.
#include "run/console.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <iostream>
#include <sstream>

#include "run/gbk_texts.h"
#include "run/show_stop.h"
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

TEST(ShowStop, TextOfAResultFileIsGbkAndWaitsForOneCharacter) {
  const test::TempFolder folder;
  for (const char* text : {"节点位移文件输出失败!", "单元节点应力文件输出失败!",
                           "节点应力文件输出失败!", "文件输出失败!"}) {
    SetInput(folder, "ab");
    testing::internal::CaptureStdout();
    ShowStop({StopKind::ResultFile, text});
    EXPECT_EQ(testing::internal::GetCapturedStdout(), test::ConvertToGbk(text) + '\n');
    EXPECT_EQ(std::getchar(), 'b');
  }
}

TEST(ShowStop, InconsistencyIsOneLine) {
  testing::internal::CaptureStdout();
  ReportInconsistency();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "\xB4\xED\xCE\xF3!\n");
}

TEST(GbkTexts, AreTheChineseTexts) {
  EXPECT_EQ(GbkError, test::ConvertToGbk("错误!"));
  for (const ConsoleText& text : ConsoleTexts) EXPECT_EQ(text.gbk, test::ConvertToGbk(text.utf8));
}

}  // namespace
}  // namespace korvex
