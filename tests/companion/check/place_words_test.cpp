// Words for where places lie.
#include "check/place_words.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

using Places = std::vector<korvex::Vector3>;

std::string Words(const Places& places, PlaceShape shape = PlaceShape::Line) {
  return DescribePlaces(places, shape, 1e-3);
}

TEST(DescribePlaces, NamesTheLine) {
  EXPECT_EQ(Words({{1, 2, 3}}), "at (1, 2, 3)");
  EXPECT_EQ(Words({{1, 2, 3}, {1, 2, 3.001}}), "at (1, 2, 3)");
  EXPECT_EQ(Words({{5, 2, 3}, {1, 2, 3}, {9, 2, 3}}), "along y = 2, z = 3, x = 1 .. 9");
  EXPECT_EQ(Words({{1, 7, 3}, {1, 2, 3}}), "along x = 1, z = 3, y = 2 .. 7");
  EXPECT_EQ(Words({{1, 1e-9, -2}, {1, -1e-9, 3}, {1, 0, 1}}), "along x = 1, y = 0, z = -2 .. 3");
  EXPECT_EQ(Words({{4, 4, 0}, {0, 0, 0}, {2, 2, 0}}), "along a line from (0, 0, 0) to (4, 4, 0)");
}

TEST(DescribePlaces, NamesCurvesAndPatches) {
  // The places farthest from each other are the ends.
  const Places arc{{0, 1, 0}, {-1, 0, 0}, {1, 0, 0}, {0.6, 0.8, 0}};
  EXPECT_EQ(Words(arc), "along a curve from (-1, 0, 0) to (1, 0, 0)");
  EXPECT_EQ(Words(arc, PlaceShape::Closed),
            "along a closed curve within x = -1 .. 1, y = 0 .. 1, z = 0");
  EXPECT_EQ(Words(arc, PlaceShape::Patch), "over a patch within x = -1 .. 1, y = 0 .. 1, z = 0");
  // A closed path that is straight is a line, there and back.
  EXPECT_EQ(Words({{0, 0, 0}, {2, 0, 0}, {1, 0, 0}}, PlaceShape::Closed),
            "along y = 0, z = 0, x = 0 .. 2");
}

// Off the line by more than the digits of a file: 1e-5 of the length, and twice the tolerance.
TEST(DescribePlaces, AllowsForTheDigitsOfAFile) {
  EXPECT_EQ(Words({{0, 0, 0}, {500, 0.006, 0}, {1000, 0, 0}}), "along y = 0, z = 0, x = 0 .. 1000");
  EXPECT_EQ(Words({{0, 0, 0}, {500, 0.02, 0}, {1000, 0, 0}}),
            "along a curve from (0, 0, 0) to (1000, 0, 0)");
}

}  // namespace
}  // namespace kvx
