// Back substitution with very sparse profiles, as of models with many nodes and few elements.
#include "skyline/substitute_back.h"

#include <gtest/gtest.h>

namespace korvex {
namespace {

// Two million columns of height 1, except the last of full height. With d(i) = 2, l(i, n - 1) = 1/2
// and u = 1 everywhere: y(i) = 2 (1 + 1/2) = 3 and, in the last row, y = d = 2. All numbers are
// exact. A test of all later columns in each row would take hours.
TEST(SubstituteBack, AWideColumnCostsNoTimeInNarrowOnes) {
  constexpr std::int32_t n = 2000000;
  SkylineMatrix K;
  InitColumnHeights(K, n);
  K.ColumnHeights.back() = n;
  ComputeDiagonalAddresses(K);
  K.Values.assign(static_cast<std::size_t>(K.SkylineSize), 0.5);
  for (const std::int64_t diagonal : K.DiagonalAddress) {
    K.Values[static_cast<std::size_t>(diagonal)] = 2.0;
  }
  std::vector<double> y(n, 3.0);
  y.back() = 2.0;
  std::vector<double> u(n, 0.0);
  SubstituteBack(K, y, u);
  EXPECT_EQ(u, std::vector<double>(n, 1.0));
}

// No column reaches another row, so the tables of columns and products are empty. n = 13 is no
// multiple of the eight rows of a block.
TEST(SubstituteBack, DiagonalsAlone) {
  SkylineMatrix K;
  InitColumnHeights(K, 13);
  ComputeDiagonalAddresses(K);
  AllocateValues(K);
  std::vector<double> y;
  for (std::int32_t j = 0; j < 13; ++j) {
    K.Values[static_cast<std::size_t>(j)] = 4.0;
    y.push_back(4.0 * j);
  }
  std::vector<double> u(13, -1.0);
  SubstituteBack(K, y, u);
  EXPECT_EQ(u, (std::vector<double>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
}

}  // namespace
}  // namespace korvex
