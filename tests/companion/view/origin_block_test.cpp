// The numbers, types and groups of a deck as columns of the page.
#include "view/origin_block.h"

#include <gtest/gtest.h>

#include "support/page_columns.h"

namespace kvx::test {
namespace {

ModelOrigin MakeOrigin() {
  ModelOrigin origin;
  origin.nodes = {11, 7, std::int64_t{1} << 45U};
  origin.types = {"CQUAD4", "CBAR"};
  origin.shells4 = {{4711, -3}, {0, 2}};  // the second type is none
  origin.shells3 = {{9}, {}};             // without types
  origin.beams = {{1, 2}, {1, -5}};
  origin.groups = {{"a", "", {0, 2}, {1}, {}, {}}, {"b", "", {}, {0, 1}, {0}, {1}}};
  return origin;
}

TEST(KvxOriginBlock, HasNumbersTypesAndGroups) {
  PageBlock block;
  AddOrigin(MakeOrigin(), block);
  EXPECT_EQ(ReadDoubles(block, "origin.node"), (std::vector<double>{11, 7, 35184372088832.0}));
  EXPECT_EQ(ReadDoubles(block, "origin.shell"), (std::vector<double>{4711, -3}));
  EXPECT_EQ(ReadDoubles(block, "origin.triangle"), (std::vector<double>{9}));
  EXPECT_EQ(ReadDoubles(block, "origin.beam"), (std::vector<double>{1, 2}));
  EXPECT_EQ(ReadIntegers(block, "origin.shell.type"), (std::vector<std::int32_t>{0, -1}));
  EXPECT_EQ(ReadIntegers(block, "origin.triangle.type"), (std::vector<std::int32_t>{-1}));
  EXPECT_EQ(ReadIntegers(block, "origin.beam.type"), (std::vector<std::int32_t>{1, -1}));
  // One group after the other.
  EXPECT_EQ(ReadIntegers(block, "origin.node.groups"), (std::vector<std::int32_t>{0, 2}));
  EXPECT_EQ(ReadIntegers(block, "origin.shell.groups"), (std::vector<std::int32_t>{1, 0, 1}));
  EXPECT_EQ(ReadIntegers(block, "origin.triangle.groups"), (std::vector<std::int32_t>{0}));
  EXPECT_EQ(ReadIntegers(block, "origin.beam.groups"), (std::vector<std::int32_t>{1}));
}

TEST(KvxOriginBlock, OfAModelThatWasNotImportedIsEmpty) {
  PageBlock block;
  AddOrigin({}, block);
  EXPECT_TRUE(block.columns.empty());
  EXPECT_TRUE(block.bytes.empty());
}

// Numbers that follow one another, as those of most decks, cost next to nothing: of 100 bytes that
// a shell may take less than one.
TEST(KvxOriginBlock, IsSmall) {
  constexpr std::size_t Shells = 100000;
  ModelOrigin origin;
  origin.types = {"CQUAD4"};
  origin.groups.resize(1);
  for (std::size_t k = 0; k < Shells; ++k) {
    origin.nodes.push_back(1000000 + static_cast<std::int64_t>(k));
    origin.shells4.numbers.push_back(2000000 + static_cast<std::int64_t>(k));
    origin.shells4.types.push_back(0);
    origin.groups[0].shells4.push_back(static_cast<std::int32_t>(k));
  }
  PageBlock block;
  AddOrigin(origin, block);
  EXPECT_LT(EncodeBlock(block).size(), Shells);
}

}  // namespace
}  // namespace kvx::test
