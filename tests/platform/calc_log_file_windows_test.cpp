// The only name of the calculation log: in wide characters, independent of the code page.
#include "platform/calc_log_file.h"

#include <gtest/gtest.h>

#include "support/run_program.h"
#include "support/temp_folder.h"

namespace korvex {
namespace {

TEST(CalcLogFile, StandsUnderItsWideName) {
  const test::WorkingFolder folder;
  for (const char* text : {"first run", "second"}) {
    std::ofstream log;
    OpenCalcLog(log);
    log << text;
    log.close();
    EXPECT_EQ(test::ReadFile(std::filesystem::u8path("计算日志.txt")), text);
    EXPECT_EQ(test::ListFolder("."), std::vector<std::string>{"计算日志.txt"});
  }
}

}  // namespace
}  // namespace korvex
