// Accuracy and condition of solutions, on small matrices whose inverses are known.
#include "sparse/refined_columns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "sparse/multiply.h"
#include "support/good_models.h"

namespace kvx::test {
namespace {

using Dense = std::vector<std::vector<double>>;

constexpr double Epsilon = std::numeric_limits<double>::epsilon();

UpperMatrix MakeUpper(const Dense& dense) {
  UpperMatrix A;
  A.begins.push_back(0);
  for (std::size_t i = 0; i < dense.size(); ++i) {
    for (std::size_t j = i; j < dense.size(); ++j) {
      if (j > i && dense[i][j] == 0.0) continue;
      A.columns.push_back(static_cast<std::int32_t>(j));
      A.values.push_back(dense[i][j]);
    }
    A.begins.push_back(static_cast<std::int64_t>(A.columns.size()));
  }
  return A;
}

// L D L^T in long double, without pivoting; Solutions are rounded to `bits` bits.
std::vector<double> SolveDense(const Dense& dense, const double* b, int bits) {
  const std::size_t n = dense.size();
  std::vector<std::vector<long double>> a(n, std::vector<long double>(n + 1));
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) a[i][j] = dense[i][j];
    a[i][n] = b[i];
  }
  for (std::size_t p = 0; p < n; ++p) {
    for (std::size_t i = p + 1; i < n; ++i) {
      const long double factor = a[i][p] / a[p][p];
      for (std::size_t j = p; j <= n; ++j) a[i][j] -= factor * a[p][j];
    }
  }
  std::vector<double> x(n);
  for (std::size_t i = n; i-- > 0;) {
    for (std::size_t j = i + 1; j < n; ++j) a[i][n] -= a[i][j] * a[j][n];
    a[i][n] /= a[i][i];
    int exponent = 0;
    const double mantissa = std::frexp(static_cast<double>(a[i][n]), &exponent);
    x[i] = std::ldexp(std::round(std::ldexp(mantissa, bits)), exponent - bits);
  }
  return x;
}

struct Outcome {
  RefinedColumns refined;
  std::vector<std::vector<double>> x;
  std::vector<ColumnQuality> quality;
  int solutions = 0;
};

void Solve(const Dense& dense, const std::vector<std::vector<double>>& b, int bits,
           Outcome& outcome) {
  const std::size_t n = dense.size();
  ColumnWork work;
  work.count = b.size();
  work.solve = [&](std::int32_t columns, double* x) {
    ++outcome.solutions;
    for (std::int32_t k = 0; k < columns; ++k) {
      double* const column = x + static_cast<std::size_t>(k) * n;
      const std::vector<double> solution = SolveDense(dense, column, bits);
      std::copy(solution.begin(), solution.end(), column);
    }
  };
  work.make = [&](std::size_t k, double* column) { std::copy(b[k].begin(), b[k].end(), column); };
  work.settle = [&](std::size_t, const double*, double*) {};
  outcome.x.resize(b.size());
  outcome.quality.resize(b.size());
  work.take = [&](std::size_t k, const double* x, const ColumnQuality& quality) {
    outcome.x[k].assign(x, x + n);
    outcome.quality[k] = quality;
  };
  SolveRefined(MakeUpper(dense), work, outcome.refined);
}

Dense MakeHilbert(std::size_t n) {
  Dense dense(n, std::vector<double>(n));
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) dense[i][j] = 1.0 / static_cast<double>(i + j + 1);
  }
  return dense;
}

// | |A^-1| f | / |x|, from the columns of the inverse.
double ExactCondition(const Dense& dense, const std::vector<double>& x,
                      const std::vector<double>& b) {
  const std::size_t n = dense.size();
  double size = 0.0, largest = 0.0;
  for (const double value : x) size = std::max(size, std::fabs(value));
  std::vector<double> f(n), sums(n, 0.0);
  for (std::size_t i = 0; i < n; ++i) {
    f[i] = std::fabs(b[i]);
    for (std::size_t j = 0; j < n; ++j) f[i] += std::fabs(dense[i][j] * x[j]);
  }
  for (std::size_t j = 0; j < n; ++j) {
    std::vector<double> unit(n, 0.0);
    unit[j] = 1.0;
    const std::vector<double> column = SolveDense(dense, unit.data(), 53);
    for (std::size_t i = 0; i < n; ++i) sums[i] += std::fabs(column[i]) * f[j] / size;
  }
  for (const double sum : sums) largest = std::max(largest, sum);
  return largest;
}

TEST(Multiply, EqualsTheDenseProduct) {
  Dice dice = MakeDice(1);
  const std::size_t n = 12;
  Dense dense(n, std::vector<double>(n, 0.0));
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j <= i; ++j) {
      if (i == j || RollYes(dice)) dense[i][j] = dense[j][i] = RollInteger(dice, -9, 9);
    }
  }
  std::vector<double> x(n), y(n), s(n), sums;
  for (double& value : x) value = RollInteger(dice, -9, 9);
  Multiply(MakeUpper(dense), x.data(), y.data(), s.data());
  SumRows(MakeUpper(dense), sums);
  for (std::size_t i = 0; i < n; ++i) {  // integers: exact in any order
    double product = 0.0, magnitude = 0.0, sum = 0.0;
    for (std::size_t j = 0; j < n; ++j) {
      product += dense[i][j] * x[j];
      magnitude += std::fabs(dense[i][j] * x[j]);
      sum += std::fabs(dense[i][j]);
    }
    EXPECT_EQ(y[i], product);
    EXPECT_EQ(s[i], magnitude);
    EXPECT_EQ(sums[i], sum);
  }
}

// A solver of 24 bits leaves a backward error of 6e-8 or so: one step squares it, and double
// precision is reached. b is what x = (1, 2, ..) / 3 gives; the matrix has the condition of its
// spread alone.
TEST(SolveRefined, TakesTheStepThatBetters) {
  const std::size_t n = 6;
  Dense dense(n, std::vector<double>(n, 1.0));
  std::vector<double> b(n, 0.0);
  for (std::size_t i = 0; i < n; ++i) dense[i][i] = 10.0 + static_cast<double>(i);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) b[i] += dense[i][j] * static_cast<double>(j + 1) / 3.0;
  }
  Outcome outcome;
  Solve(dense, {b, std::vector<double>(n, 0.0), b}, 24, outcome);
  EXPECT_EQ(outcome.refined.steps, 2);  // nothing betters the zeros
  EXPECT_EQ(outcome.solutions, 2);      // with the condition's columns beside them
  for (std::size_t i = 0; i < n; ++i) {
    EXPECT_NEAR(outcome.x[0][i], static_cast<double>(i + 1) / 3.0, 1e-12);
    EXPECT_EQ(outcome.x[1][i], 0.0);
  }
  EXPECT_LT(outcome.quality[0].backwardError, 1e-13);
  EXPECT_EQ(outcome.quality[1].backwardError, 0.0);
  EXPECT_EQ(outcome.quality[1].residual, 0.0);
}

// x off by a known share: A = I, b = 1, x = 1 + d gives r = d, f = 2 + d.
TEST(MeasureColumn, GivesTheBackwardErrorOfAKnownError) {
  const double d = 1e-6;
  const UpperMatrix A = MakeUpper({{1.0, 0.0}, {0.0, 1.0}});
  QualityTable table;
  BeginQuality(A, table);
  const std::vector<double> x{1.0 + d, 1.0}, b{1.0, 1.0};
  std::vector<double> r(2);
  const ColumnQuality quality = MeasureColumn(A, x.data(), b.data(), table, r.data());
  EXPECT_NEAR(quality.backwardError, d / (2.0 + d), 1e-9 * d);
  EXPECT_NEAR(quality.residual, d / (2.0 + d), 1e-9 * d);
  EXPECT_NEAR(r[0], -d, 1e-9 * d);
}

TEST(MeasureColumn, PassesNaNOn) {
  const UpperMatrix A = MakeUpper({{1.0, 0.0}, {0.0, 1.0}});
  QualityTable table;
  BeginQuality(A, table);
  const std::vector<double> x{std::nan(""), 1.0}, b{1.0, 1.0};
  std::vector<double> r(2);
  EXPECT_TRUE(std::isnan(MeasureColumn(A, x.data(), b.data(), table, r.data()).backwardError));
}

// A diagonal: A^-1 f = (|b| + |A| |x|) / A = 2 |x|, so the condition is 2 whatever the units.
TEST(EstimateCondition, DoesNotMindUnits) {
  Outcome outcome;
  Solve({{1e-8, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1e12}}, {{1e-8, 1.0, 1e12}}, 53, outcome);
  EXPECT_NEAR(outcome.refined.condition.value, 2.0, 1e-12);
}

// Hilbert matrices, whose conditions grow by 1.5 digits a row: the estimate is a lower bound (but
// for the roundings of the inverse, condition x 1e-16) and not below a third.
TEST(EstimateCondition, IsNearTheConditionOfHilbertMatrices) {
  for (std::size_t n = 1; n <= 8; ++n) {
    SCOPED_TRACE(n);
    std::vector<double> b(n);
    for (std::size_t i = 0; i < n; ++i) b[i] = i % 3 == 0 ? 1.0 : -0.5;
    Outcome outcome;
    Solve(MakeHilbert(n), {b}, 53, outcome);
    const double exact = ExactCondition(MakeHilbert(n), outcome.x[0], b);
    EXPECT_LE(outcome.refined.condition.value, exact * (1.0 + 1e-3));
    EXPECT_GE(outcome.refined.condition.value, exact / 3.0);
    EXPECT_LE(outcome.quality[0].backwardError, 4.0 * Epsilon);
  }
}

// More columns than a block: the condition is that of the worst one.
TEST(EstimateCondition, IsThatOfAllColumns) {
  const Dense dense = MakeHilbert(5);
  std::vector<std::vector<double>> columns;
  for (std::size_t k = 0; k < 2 * BlockColumns + 3; ++k) {
    std::vector<double> b(5, 1.0);
    b[k % 5] += static_cast<double>(k);
    columns.push_back(b);
  }
  Outcome all, last;
  Solve(dense, columns, 53, all);
  EXPECT_EQ(all.solutions, 6);  // two for each block, with the condition's columns beside them
  Solve(dense, {columns.back()}, 53, last);
  EXPECT_GE(all.refined.condition.value, last.refined.condition.value * (1.0 - 1e-9));
  for (std::size_t k = 0; k < columns.size(); ++k) {
    const std::vector<double> x = SolveDense(dense, columns[k].data(), 53);
    for (std::size_t i = 0; i < 5; ++i) EXPECT_NEAR(all.x[k][i], x[i], 1e-9 * std::fabs(x[i]));
  }
}

// The load is on the first row alone. The others are pairs that resist (1, -1) by 1e-6 only, which
// signs that are all the same would not find: A^-1 (1, 1) = (1, 1) / (2 - 1e-6).
TEST(EstimateCondition, FindsWhatTheLoadsLeaveAlone) {
  constexpr std::size_t Pairs = 8;
  constexpr double Soft = 1e-6;
  Dense dense(1 + 2 * Pairs, std::vector<double>(1 + 2 * Pairs, 0.0));
  std::vector<double> b(dense.size(), 0.0);
  dense[0][0] = b[0] = 1.0;
  for (std::size_t i = 1; i < dense.size(); i += 2) {
    dense[i][i] = dense[i + 1][i + 1] = 1.0;
    dense[i][i + 1] = dense[i + 1][i] = 1.0 - Soft;
  }
  Outcome outcome;
  Solve(dense, {b}, 53, outcome);
  // the row sums of |A^-1| |A| are 2 (2 - 1e-6) / (1e-6 (2 - 1e-6))
  EXPECT_NEAR(outcome.refined.condition.value, 2.0 / Soft, 1e-3 / Soft);
  const std::vector<double>& mode = outcome.refined.condition.mode;
  const auto peak =
      static_cast<std::size_t>(std::max_element(mode.begin(), mode.end()) - mode.begin());
  ASSERT_GT(peak, 0U);
  const std::size_t other = peak % 2 == 1 ? peak + 1 : peak - 1;
  EXPECT_NEAR(mode[other] / mode[peak], -1.0, 1e-3);
}

// Without any load: |A^-1| |A| (1, 1), here ((3, -1), (-1, 2)) / 5 by magnitude times (3, 4).
TEST(EstimateCondition, OfTheMatrixWhereNothingIsLoaded) {
  Outcome outcome;
  Solve({{2.0, 1.0}, {1.0, 3.0}}, {{0.0, 0.0}}, 53, outcome);
  EXPECT_NEAR(outcome.refined.condition.value, 13.0 / 5.0, 1e-12);
}

}  // namespace
}  // namespace kvx::test
