// The names of the calculation log: the GBK bytes, and a link in UTF-8 that replaces no file.
#include "platform/calc_log_file.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/gbk.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace korvex {
namespace {

constexpr const char* Utf8Name = "计算日志.txt";

void WriteLog(const char* text) {
  std::ofstream log;
  OpenCalcLog(log);
  log << text;
}

TEST(CalcLogFile, StandsUnderItsGbkNameAndBehindTheUtf8Link) {
  const test::WorkingFolder folder;
  const std::string gbkName = test::ConvertToGbk(Utf8Name);
  for (const char* text : {"first run", "second"}) {
    WriteLog(text);
    EXPECT_EQ(test::ReadFile(gbkName), text);
    EXPECT_EQ(test::ReadFile(Utf8Name), text);
    EXPECT_TRUE(std::filesystem::is_symlink(Utf8Name));
    EXPECT_EQ(test::ListFolder("."), test::WithLog({}));
  }
}

TEST(CalcLogFile, LinkNeverReplacesAFile) {
  const test::WorkingFolder folder;
  test::WriteFile(Utf8Name, "mine");
  WriteLog("log");
  EXPECT_EQ(test::ReadFile(test::LogPath()), "log");
  EXPECT_EQ(test::ReadFile(Utf8Name), "mine");
}

}  // namespace
}  // namespace korvex
