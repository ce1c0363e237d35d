// The text of result files: every item as a stream would write it, columns, and room that grows.
#include "results/result_text.h"

#include <gtest/gtest.h>

#include <limits>

namespace korvex {
namespace {

TEST(ResultText, ItemsStandOneAfterTheOther) {
  ResultText text;
  AddLine(text, std::int32_t{0}, ',', std::numeric_limits<std::int32_t>::min(), ',',
          std::numeric_limits<std::int64_t>::max());
  Add(text, "a text", '(', -0.5, ')');
  AddLine(text);
  EXPECT_EQ(TextOf(text), "0,-2147483648,9223372036854775807\na text(-0.5)\n");
}

TEST(ResultText, ColumnsAreFifteenWideAndRightAligned) {
  ResultText text;
  Add(text, TitleLine({"Node", "dx", "a title of more than fifteen"}));
  AddLine(text, NodeColumn{7}, NumberColumn{-1.23456789e-300}, NumberColumn{0.5});
  AddLine(text, NodeColumn{-2147483647}, NumberColumn{-0.000123456}, NumberColumn{0.0});
  EXPECT_EQ(TextOf(text),
            "           Node             dxa title of more than fifteen\n"
            "             7:  -1.23457e-300            0.5\n"
            "   -2147483647:   -0.000123456              0\n");
}

// From no room at all, by items of any length; what stood there stays.
TEST(ResultText, RoomGrows) {
  ResultText text;
  std::string expected;
  for (std::size_t i = 0; i < 300; ++i) {
    const std::string item(i % 7 == 0 ? 50 * i : i, static_cast<char>('a' + i % 26));
    AddLine(text, item, 0.25);
    expected += item + "0.25\n";
  }
  EXPECT_TRUE(TextOf(text) == expected);
  EXPECT_GE(text.room.size(), text.size);
}

// Numbers are written with a few characters too many, so a fresh text must have all of their room.
TEST(ResultText, NumbersHaveRoomForWhatIsWrittenBehindThem) {
  const auto roomOf = [](const auto& item) {
    ResultText text;
    Add(text, item);
    return text.room.size();
  };
  EXPECT_GE(roomOf(0.5), NumberRoom);
  EXPECT_GE(roomOf(NumberColumn{0.5}), NumberRoom);
  EXPECT_GE(roomOf(NodeColumn{7}), NumberRoom);
}

}  // namespace
}  // namespace korvex
