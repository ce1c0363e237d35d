// The skyline solver, fast and plain: small systems solved by hand, a random system against Gauss
// elimination in long double, the order of operations bit for bit against the formulas on a full
// matrix, and the progress.
#include "skyline/solve_skyline.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>

#include "skyline/solve_skyline_plain.h"
#include "support/same_bits.h"

namespace korvex {
namespace {

using Dense = std::vector<std::vector<double>>;  // [n][n], symmetric

// A in skyline storage. Each column's top row is that of its first non-zero.
SkylineMatrix Pack(const Dense& A) {
  SkylineMatrix K;
  const auto n = static_cast<std::int32_t>(A.size());
  InitColumnHeights(K, n);
  for (std::size_t j = 0; j < A.size(); ++j) {
    std::size_t top = 0;
    while (top < j && A[top][j] == 0.0) ++top;
    K.ColumnHeights[j] = static_cast<std::int32_t>(j - top) + 1;
  }
  ComputeDiagonalAddresses(K);
  AllocateValues(K);
  for (std::size_t j = 0; j < A.size(); ++j) {
    for (std::size_t h = 0; h < static_cast<std::size_t>(K.ColumnHeights[j]); ++h) {
      K.Values[static_cast<std::size_t>(K.DiagonalAddress[j]) + h] = A[j - h][j];
    }
  }
  return K;
}

Dense Zeros(std::size_t n) { return Dense(n, std::vector<double>(n, 0.0)); }

// Symmetric, diagonally dominant, with random top rows.
Dense MakeRandomSystem(std::size_t n, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  Dense A = Zeros(n);
  for (std::size_t j = 0; j < n; ++j) {
    const std::size_t top = j - random() % (std::min<std::size_t>(j, 11) + 1);
    for (std::size_t i = top; i < j; ++i) A[i][j] = A[j][i] = value(random);
    A[j][j] = 25.0 + value(random);
  }
  return A;
}

using Solver = void (*)(SkylineMatrix&, std::vector<double>&, std::vector<double>&,
                        const ProgressCallback&);

void SolveFast(SkylineMatrix& K, std::vector<double>& F, std::vector<double>& u,
               const ProgressCallback& progress) {
  SolveSkyline(K, F, u, progress);
}

struct NamedSolver {
  const char* name;
  Solver solve;
};

class SolveSkylineTest : public testing::TestWithParam<NamedSolver> {
 protected:
  static std::vector<double> Solve(SkylineMatrix& K, std::vector<double>& F) {
    std::vector<double> u(F.size(), -7.0);  // every entry must be written
    GetParam().solve(K, F, u, {});
    return u;
  }

  // The percentages reported for a unit matrix of n columns.
  static std::vector<int> ProgressOf(std::int32_t n) {
    SkylineMatrix K;
    InitColumnHeights(K, n);
    ComputeDiagonalAddresses(K);
    AllocateValues(K);
    K.Values.assign(K.Values.size(), 1.0);
    std::vector<double> F(static_cast<std::size_t>(n)), u(F.size());
    std::vector<int> percents;
    GetParam().solve(K, F, u, [&percents](int percent) { percents.push_back(percent); });
    return percents;
  }
};

INSTANTIATE_TEST_SUITE_P(Both, SolveSkylineTest,
                         testing::Values(NamedSolver{"Fast", SolveFast},
                                         NamedSolver{"Plain", SolveSkylinePlain}),
                         [](const auto& solver) { return std::string(solver.param.name); });

TEST_P(SolveSkylineTest, OneByOne) {
  SkylineMatrix K = Pack({{4.0}});
  std::vector<double> F{2.0}, u(1);
  GetParam().solve(K, F, u, {});
  EXPECT_EQ(u[0], 0.5);
}

// [4 2 0; 2 5 4; 0 4 8] = L D L^T with D = (4, 4, 4), l01 = 1/2, l12 = 1; column 2 does not reach
// row 0. F = (4, 6, 8): y = (4, 4, 4), D^-1 y = (1, 1, 1), u = (1, 0, 1).
TEST_P(SolveSkylineTest, LeavesFactorsAndReducedLoad) {
  SkylineMatrix K = Pack({{4, 2, 0}, {2, 5, 4}, {0, 4, 8}});
  std::vector<double> F{4, 6, 8};
  const std::vector<double> u = Solve(K, F);
  EXPECT_EQ(K.Values, (MatrixValues{4, 4, 0.5, 4, 1}));
  EXPECT_EQ(F, (std::vector<double>{4, 4, 4}));
  EXPECT_EQ(u, (std::vector<double>{1, 0, 1}));
}

TEST_P(SolveSkylineTest, RandomSystemAgainstElimination) {
  constexpr std::size_t n = 67;
  const Dense A = MakeRandomSystem(n, 1);
  SkylineMatrix K = Pack(A);
  std::vector<double> F(n);
  for (std::size_t i = 0; i < n; ++i) F[i] = static_cast<double>(i) - 20.0;

  std::vector<std::vector<long double>> a(n, std::vector<long double>(n + 1));
  for (std::size_t i = 0; i < n; ++i) {
    std::copy(A[i].begin(), A[i].end(), a[i].begin());
    a[i][n] = F[i];
  }
  for (std::size_t k = 0; k < n; ++k) {
    for (std::size_t i = 0; i < n; ++i) {
      if (i == k) continue;
      const long double factor = a[i][k] / a[k][k];
      for (std::size_t j = k; j <= n; ++j) a[i][j] -= factor * a[k][j];
    }
  }
  const std::vector<double> u = Solve(K, F);
  for (std::size_t i = 0; i < n; ++i) {
    EXPECT_NEAR(u[i], static_cast<double>(a[i][n] / a[i][i]), 1e-14) << i;
  }
}

// The solution on a full matrix, formula by formula: each entry receives its terms one by one, k
// ascending. top: [n] top row of each column.
void SolveByFormulas(Dense& A, const std::vector<std::size_t>& top, std::vector<double>& F,
                     std::vector<double>& u) {
  const std::size_t n = A.size();
  for (std::size_t j = 0; j < n; ++j) {
    for (std::size_t i = top[j]; i < j; ++i) {
      for (std::size_t k = std::max(top[i], top[j]); k < i; ++k) {
        A[i][j] = A[i][j] - A[k][i] * A[k][j];
      }
    }
    for (std::size_t k = top[j]; k < j; ++k) {
      const double t = A[k][j];
      A[k][j] = t / A[k][k];
      if (A[k][j] != 0.0) A[j][j] = A[j][j] - A[k][j] * t;
    }
  }
  for (std::size_t j = 1; j < n; ++j) {
    for (std::size_t k = top[j]; k < j; ++k) F[j] = F[j] - A[k][j] * F[k];
  }
  for (std::size_t i = n; i-- > 0;) {
    u[i] = F[i] / A[i][i];
    for (std::size_t j = i + 1; j < n; ++j) {
      if (i >= top[j]) u[i] = u[i] - A[i][j] * u[j];
    }
  }
}

// Sizes near multiples of 6 and 24, and others, so that no block size of a fast routine fits all.
TEST_P(SolveSkylineTest, SameBitsAsTheFormulas) {
  for (const std::size_t n : {2U, 3U, 5U, 6U, 7U, 23U, 24U, 25U, 61U, 130U}) {
    Dense A = MakeRandomSystem(n, static_cast<unsigned>(n));
    if (n > 20) A[20][20] = 1e20;  // a support
    SkylineMatrix K = Pack(A);
    std::vector<std::size_t> top(n);
    for (std::size_t j = 0; j < n; ++j) {
      top[j] = j + 1 - static_cast<std::size_t>(K.ColumnHeights[j]);
    }
    std::vector<double> F(n), expectedU(n);
    for (std::size_t i = 0; i < n; ++i) F[i] = 1.0 / (3.0 + static_cast<double>(i));
    std::vector<double> expectedF = F;
    SolveByFormulas(A, top, expectedF, expectedU);
    const std::vector<double> u = Solve(K, F);
    EXPECT_TRUE(test::SameBits(u, expectedU)) << n;
    EXPECT_TRUE(test::SameBits(F, expectedF)) << n;
    EXPECT_TRUE(test::SameBits(K.Values, Pack(A).Values)) << n;
  }
}

// A zero multiplier must not touch the pivot. Finite numbers would not show it. Here l = 4 / -inf =
// -0, and the update -0 - (-0 * 4) would change the pivot from -0 to +0.
TEST_P(SolveSkylineTest, ZeroMultiplierSkipsThePivotUpdate) {
  SkylineMatrix K = Pack({{1.0, 4.0}, {4.0, 1.0}});
  K.Values = {-std::numeric_limits<double>::infinity(), -0.0, 4.0};  // d0, d1, A(0, 1)
  std::vector<double> F{1.0, 1.0};
  Solve(K, F);
  EXPECT_EQ(K.Values[2], 0.0);
  EXPECT_TRUE(std::signbit(K.Values[1]));
}

TEST_P(SolveSkylineTest, SingularSystemGivesNonFiniteValuesSilently) {
  SkylineMatrix K = Pack({{1.0, 1.0}, {1.0, 1.0}});
  std::vector<double> F{1.0, 2.0};
  const std::vector<double> u = Solve(K, F);
  EXPECT_FALSE(std::isfinite(u[0]));
  EXPECT_FALSE(std::isfinite(u[1]));
}

TEST_P(SolveSkylineTest, PenaltyDofMovesByItsForceOver1e20) {
  SkylineMatrix K = Pack({{1e20, -2.0}, {-2.0, 2.0}});
  std::vector<double> F{1000.0, 0.0};
  const std::vector<double> u = Solve(K, F);
  EXPECT_DOUBLE_EQ(u[0], 1e-17);
  EXPECT_DOUBLE_EQ(u[1], 1e-17);
}

TEST_P(SolveSkylineTest, EmptySystemReportsNothing) { EXPECT_TRUE(ProgressOf(0).empty()); }

TEST_P(SolveSkylineTest, ProgressOfOneColumnIs100Only) {
  EXPECT_EQ(ProgressOf(1), std::vector<int>{100});
}

TEST_P(SolveSkylineTest, ProgressOfSixColumnsIs100Only) {
  EXPECT_EQ(ProgressOf(6), std::vector<int>{100});
}

TEST_P(SolveSkylineTest, ProgressOfTenColumnsReportsEachOnce) {
  EXPECT_EQ(ProgressOf(10), (std::vector<int>{20, 40, 60, 80, 100}));
}

// p = 20 holds for the columns 199 to 208, counted from 0, and so on; p = 100 for the last one
// only.
TEST_P(SolveSkylineTest, ProgressOfAThousandColumnsReportsEachTenTimes) {
  std::vector<int> expected;
  for (const int percent : {20, 40, 60, 80}) expected.insert(expected.end(), 10, percent);
  expected.push_back(100);
  EXPECT_EQ(ProgressOf(1000), expected);
}

}  // namespace
}  // namespace korvex
