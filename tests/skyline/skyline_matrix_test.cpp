// The storage rule of the skyline matrix, and the addition of element matrices.
#include "skyline/skyline_matrix.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <numeric>

namespace korvex {
namespace {

// The stored entry of row i <= j of column j.
double Entry(const SkylineMatrix& K, std::size_t i, std::size_t j) {
  return K.Values[static_cast<std::size_t>(K.DiagonalAddress[j]) + (j - i)];
}

TEST(SkylineMatrix, AddressesFollowTheHeights) {
  SkylineMatrix K;
  InitColumnHeights(K, 5);
  const std::array<std::int32_t, 2> low{1, 3};
  const std::array<std::int32_t, 2> high{4, 2};  // in either order
  RaiseColumns(K, low.data(), 2);
  RaiseColumns(K, high.data(), 2);
  EXPECT_EQ(K.ColumnHeights, (std::vector<std::int32_t>{1, 1, 1, 3, 3}));
  ComputeDiagonalAddresses(K);
  EXPECT_EQ(K.DiagonalAddress, (std::vector<std::int64_t>{0, 1, 2, 3, 6}));
  EXPECT_EQ(K.SkylineSize, 9);
  AllocateValues(K);
  EXPECT_EQ(K.Values, MatrixValues(9, 0.0));
}

// AllocateValues reuses the memory of a smaller or larger matrix and clears it.
TEST(SkylineMatrix, ReallocatedValuesAreZero) {
  SkylineMatrix K;
  for (const std::int64_t size : {6, 4, 10}) {
    K.SkylineSize = size;
    AllocateValues(K);
    EXPECT_EQ(K.Values, MatrixValues(static_cast<std::size_t>(size), 0.0));
    K.Values.assign(K.Values.size(), 7.0);
  }
}

TEST(SkylineMatrix, RaisingNeverLowersAColumn) {
  SkylineMatrix K;
  InitColumnHeights(K, 4);
  const std::array<std::int32_t, 2> wide{0, 3};
  const std::array<std::int32_t, 2> narrow{2, 3};
  RaiseColumns(K, wide.data(), 2);
  RaiseColumns(K, narrow.data(), 2);
  EXPECT_EQ(K.ColumnHeights[3], 4);
}

// More than 2^31 entries in total: the sums are 64-bit. Values are not allocated.
TEST(SkylineMatrix, SizeAndAddressesAre64Bit) {
  SkylineMatrix K;
  const std::int32_t height = std::numeric_limits<std::int32_t>::max();
  K.ColumnHeights = {height, height, height};
  ComputeDiagonalAddresses(K);
  EXPECT_EQ(K.DiagonalAddress[2], 2 * std::int64_t{2147483647});
  EXPECT_EQ(K.SkylineSize, 3 * std::int64_t{2147483647});
}

SkylineMatrix MakeFull(std::int32_t n) {
  SkylineMatrix K;
  InitColumnHeights(K, n);
  std::vector<std::int32_t> all(static_cast<std::size_t>(n));
  std::iota(all.begin(), all.end(), 0);
  RaiseColumns(K, all.data(), n);
  ComputeDiagonalAddresses(K);
  AllocateValues(K);
  return K;
}

// Only the upper triangle is read: the values -99 of the lower one must not appear.
TEST(SkylineMatrix, ScatterReadsTheUpperTriangle) {
  SkylineMatrix K = MakeFull(3);
  const std::array<double, 9> ke{1, 2, 3, -99, 4, 5, -99, -99, 6};
  const std::array<std::int32_t, 3> g{0, 1, 2};
  ScatterElement(ke.data(), g.data(), 3, K);
  EXPECT_EQ(K.Values, (MatrixValues{1, 4, 2, 6, 5, 3}));  // diagonal first, then upward
}

// A single element of 24 dofs: the skyline is the upper triangle of its matrix.
TEST(SkylineMatrix, ScatterOfASingleFourNodeShell) {
  constexpr std::size_t n = 24;
  SkylineMatrix K = MakeFull(n);
  std::vector<double> ke(n * n);
  std::iota(ke.begin(), ke.end(), 1.0);
  std::vector<std::int32_t> g(n);
  std::iota(g.begin(), g.end(), 0);
  ScatterElement(ke.data(), g.data(), n, K);
  ASSERT_EQ(K.SkylineSize, 300);
  for (std::size_t j = 0; j < n; ++j) {
    for (std::size_t i = 0; i <= j; ++i) EXPECT_EQ(Entry(K, i, j), ke[i * n + j]);
  }
}

TEST(SkylineMatrix, ScatterIntoReversedAndSharedDofsAdds) {
  SkylineMatrix K = MakeFull(3);
  const std::array<double, 4> ke{1, 2, -99, 3};
  const std::array<std::int32_t, 2> forward{0, 2};
  const std::array<std::int32_t, 2> backward{2, 1};
  ScatterElement(ke.data(), forward.data(), 2, K);
  ScatterElement(ke.data(), backward.data(), 2, K);
  EXPECT_EQ(Entry(K, 0, 0), 1);
  EXPECT_EQ(Entry(K, 0, 2), 2);
  EXPECT_EQ(Entry(K, 2, 2), 3 + 1);
  EXPECT_EQ(Entry(K, 1, 2), 2);  // row 0 of the element is the higher equation here
  EXPECT_EQ(Entry(K, 1, 1), 3);
}

// An element that repeats a node: the term between its two equal dofs is added to the diagonal,
// once.
TEST(SkylineMatrix, ScatterAddsARepeatedDofToTheDiagonal) {
  SkylineMatrix K = MakeFull(2);
  const std::array<double, 4> ke{1, 2, -99, 4};
  const std::array<std::int32_t, 2> g{1, 1};
  ScatterElement(ke.data(), g.data(), 2, K);
  EXPECT_EQ(Entry(K, 1, 1), 1 + 2 + 4);
}

}  // namespace
}  // namespace korvex
