// The quick test for decoupled dofs: which couplings it finds, and when it answers no. Plates of
// shells are tested in independent_systems_test.cpp.
#include "skyline/coupled_dofs.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace korvex {
namespace {

double& Entry(SkylineMatrix& K, std::int32_t i, std::int32_t j) { return Column(K, j)[j - i]; }

// A full matrix of 60 nodes, all zero but the diagonal.
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

// Couplings ux-rz, rz-uy and uz-rx, rx-ry give two sets of dofs. One more entry between the two
// sets, among the rows that are read, couples all dofs.
TEST(MayDecouple, FalseOnceAllDofsAreCoupled) {
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
  Entry(K, 6, 14) = 1.0;  // not read: neither in the node's rows nor among the topmost six
  EXPECT_TRUE(MayDecouple(K));
}

// The sampled columns 0, 61, 122 .. 305 store 1 + 62 + 123 + 184 + 245 + 306 = 921 entries. At most
// a sixteenth, 57, may be non-zero: 6 on the diagonal, 25 and 26 more here.
TEST(MayDecouple, FalseWithTooManyNonZeros) {
  SkylineMatrix K = MakeUncoupledNodes();
  for (std::int32_t i = 5; i < 5 + 6 * 25; i += 6) Entry(K, i, 305) = 1.0;  // rz and rz
  for (std::int32_t i = 4; i < 4 + 6 * 26; i += 6) Entry(K, i, 244) = 1.0;  // ry and ry
  EXPECT_TRUE(MayDecouple(K));
  Entry(K, 3, 183) = 1.0;  // rx and rx
  EXPECT_FALSE(MayDecouple(K));
}

TEST(MayDecouple, FalseIfADiagonalEntryIsNotPositive) {
  SkylineMatrix K = MakeUncoupledNodes();
  for (const double value : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
    Entry(K, 9, 9) = value;
    EXPECT_FALSE(MayDecouple(K));
  }
}

TEST(MayDecouple, TrueForAnEmptyMatrix) { EXPECT_TRUE(MayDecouple(SkylineMatrix())); }

}  // namespace
}  // namespace korvex
