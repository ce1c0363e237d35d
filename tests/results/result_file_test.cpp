// The text of result files: every item as a stream would write it, columns, and files longer than
// one block.
#include "results/result_file.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "support/temp_folder.h"

namespace korvex {
namespace {

// The text of a file that `write` fills, in a folder of its own.
std::string WriteToText(const std::function<void(ResultFile&)>& write) {
  const test::WorkingFolder folder;
  ResultFile file;
  OpenResultFile("result.txt", "", file);
  write(file);
  EXPECT_TRUE(CloseResultFile(file));
  return test::ReadFile("result.txt");
}

TEST(ResultFile, Integers) {
  EXPECT_EQ(WriteToText([](ResultFile& file) {
              AddLine(file, std::int32_t{0}, ',', std::numeric_limits<std::int32_t>::min(), ',',
                      std::numeric_limits<std::int64_t>::max());
            }),
            "0,-2147483648,9223372036854775807\n");
}

TEST(ResultFile, ColumnsAreFifteenWideAndRightAligned) {
  EXPECT_EQ(WriteToText([](ResultFile& file) {
              AddTitles(file, {"Node", "dx", "a title of more than fifteen"});
              AddNodeColumn(file, 7);
              AddColumn(file, -1.23456789e-300);
              AddColumn(file, 0.5);
              AddLine(file);
            }),
            "           Node             dxa title of more than fifteen\n"
            "             7:  -1.23457e-300            0.5\n");
}

TEST(ResultFile, ManyBlocksFollowOneAnother) {
  std::string expected;
  for (int i = 0; i < 100000; ++i) expected += "line " + std::to_string(i) + "\n";
  EXPECT_TRUE(WriteToText([](ResultFile& file) {
                for (std::int32_t i = 0; i < 100000; ++i) AddLine(file, "line ", i);
              }) == expected);
}

}  // namespace
}  // namespace korvex
