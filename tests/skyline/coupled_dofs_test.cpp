// The quick look at the dofs of nodes: what it sees, and when it gives up. Whole plates are in
// independent_systems_test.cpp.
#include "skyline/coupled_dofs.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace korvex {
namespace {

double& Entry(SkylineMatrix& K, std::int32_t i, std::int32_t j) { return Column(K, j)[j - i]; }

// A full matrix of 60 nodes: only the diagonal is not zero, and what a test adds.
SkylineMatrix MakeUncoupledNodes() {
  constexpr std::int32_t n = 360;
  SkylineMatrix K;
  InitColumnHeights(K, n);
  for (std::int32_t j = 0; j < n; ++j) K.ColumnHeights[static_cast<std::size_t>(j)] = j + 1;
  ComputeDiagonalAddresses(K);
  AllocateValues(K);
  for (std::int32_t j = 0; j < n; ++j) Entry(K, j, j) = 1.0;
  return K;
}

// ux-rz, rz-uy, uz-rx, rx-ry; between the two, one entry is enough, wherever the look falls.
TEST(MayDecouple, UntilAllDofsAreCoupled) {
  SkylineMatrix K = MakeUncoupledNodes();
  Entry(K, 0, 5) = Entry(K, 1, 11) = Entry(K, 2, 15) = Entry(K, 3, 4) = -1.0;
  EXPECT_TRUE(MayDecouple(K));
  const std::array<std::int32_t, 2> coupled[] = {{13, 16}, {12, 14}, {354, 359}, {2, 13},
                                                 {3, 17},  {5, 357}, {2, 12}};
  for (const auto& [i, j] : coupled) {
    SkylineMatrix one = K;
    Entry(one, i, j) = 1e-300;
    EXPECT_EQ(MayDecouple(one), i == 354) << i << ", " << j;
  }
  Entry(K, 6, 14) = 1.0;  // neither of the node nor among the topmost rows
  EXPECT_TRUE(MayDecouple(K));
}

// Of the six columns that are asked for theirs, 0, 61, 122 .. 305, all 921 entries are stored: 57,
// not more than a sixteenth, may not be zero.
TEST(MayDecouple, NotWithManyEntries) {
  SkylineMatrix K = MakeUncoupledNodes();
  for (std::int32_t i = 5; i < 5 + 6 * 25; i += 6) Entry(K, i, 305) = 1.0;  // rz and rz
  for (std::int32_t i = 4; i < 4 + 6 * 26; i += 6) Entry(K, i, 244) = 1.0;  // ry and ry
  EXPECT_TRUE(MayDecouple(K));
  Entry(K, 3, 183) = 1.0;  // rx and rx
  EXPECT_FALSE(MayDecouple(K));
}

TEST(MayDecouple, NotWithADiagonalThatIsNotPositive) {
  SkylineMatrix K = MakeUncoupledNodes();
  for (const double value : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
    Entry(K, 9, 9) = value;
    EXPECT_FALSE(MayDecouple(K));
  }
}

TEST(MayDecouple, NothingMay) { EXPECT_TRUE(MayDecouple(SkylineMatrix())); }

}  // namespace
}  // namespace korvex
