// Result files: rows in order, longer than one block, for any number of threads.
#include "results/result_file.h"

#include <gtest/gtest.h>

#include <functional>

#include "support/temp_folder.h"

namespace korvex {
namespace {

// The text of a file that `write` fills, in a folder of its own.
std::string WriteToText(const std::function<void(ResultFile&)>& write, int threads = 1) {
  const test::WorkingFolder folder;
  ResultFile file;
  OpenResultFile("result.txt", "", file, threads);
  write(file);
  EXPECT_TRUE(CloseResultFile(file));
  return test::ReadFile("result.txt");
}

// Rows of different length, with lines before and after them.
TEST(ResultFile, RowsAreInOrderForAnyNumberOfThreads) {
  constexpr std::int64_t Rows = 20000;
  std::string expected = "head\n";
  const auto number = [](std::int64_t row) { return row % 7 == 0 ? row * 1000003 : row; };
  for (std::int64_t i = 0; i < Rows; ++i) expected += "line " + std::to_string(number(i)) + "\n";
  expected += "between\n" + expected.substr(5) + "end\n";
  for (const int threads : {0, 1, 2, 3, 8}) {
    const auto addRow = [&](std::int64_t row, ResultText& text) {
      AddLine(text, "line ", number(row));
    };
    const auto write = [&](ResultFile& file) {
      AddLine(file.text, "head");
      AddRows(file, Rows, 10, addRow);
      AddRows(file, 0, 10, addRow);
      AddLine(file.text, "between");
      AddRows(file, Rows, 1000000, addRow);
      AddLine(file.text, "end");
    };
    EXPECT_TRUE(WriteToText(write, threads) == expected) << threads;
  }
}

// What a thread cannot make ends the rows; the file is closed by its record.
TEST(ResultFile, ARowThatThrowsEndsTheRows) {
  for (const int threads : {1, 2, 8}) {
    const test::WorkingFolder folder;
    ResultFile file;
    OpenResultFile("result.txt", "", file, threads);
    const auto addRow = [](std::int64_t row, ResultText&) {
      if (row == 700 || row == 900) throw row;
    };
    try {
      AddRows(file, 1000, 1000000, addRow);
      FAIL();
    } catch (const std::int64_t row) {
      EXPECT_EQ(row, 700) << threads;
    }
  }
}

}  // namespace
}  // namespace korvex
