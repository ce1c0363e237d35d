// The factor by MUMPS on small systems, and the sentences for what goes wrong.
#include "sparse/sparse_factor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "report/stop.h"
#include "sparse/mumps_error.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

// Springs of stiffness k in a row, the first one held: the inverse is min(i, j) / k.
UpperMatrix MakeChain(std::int32_t n, double k, double atEnd) {
  UpperMatrix A;
  A.begins.push_back(0);
  for (std::int32_t i = 0; i < n; ++i) {
    A.columns.push_back(i);
    A.values.push_back(i + 1 < n ? 2.0 * k : k + atEnd);
    if (i + 1 < n) {
      A.columns.push_back(i + 1);
      A.values.push_back(-k);
    }
    A.begins.push_back(static_cast<std::int64_t>(A.columns.size()));
  }
  return A;
}

std::vector<std::int32_t> ListPlaces(std::int32_t n) {
  std::vector<std::int32_t> places(static_cast<std::size_t>(n));
  std::iota(places.begin(), places.end(), 0);
  return places;
}

class SparseFactorTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!HasSparseEngine()) GTEST_SKIP() << NoSparseEngine;
  }
};

// Row i of the inverse's column j is min(i, j) / k, counted from 1.
TEST_F(SparseFactorTest, GivesTheInverseOfAChain) {
  constexpr std::int32_t N = 50;
  constexpr double K = 3.0;
  const UpperMatrix A = MakeChain(N, K, 0.0);
  SparseFactor factor;
  AnalyseMatrix(A, ListPlaces(N), {}, factor);
  FactorMatrix(A, {}, factor);
  EXPECT_TRUE(factor.nullPivots.empty());
  EXPECT_GT(factor.flops, 0.0);
  std::vector<double> x(static_cast<std::size_t>(N) * N, 0.0);
  for (std::size_t j = 0; j < N; ++j) x[j * N + j] = 1.0;
  SolveColumns(factor, N, x.data());
  for (std::size_t j = 0; j < N; ++j) {
    for (std::size_t i = 0; i < N; ++i) {
      const double expected = static_cast<double>(std::min(i, j) + 1) / K;
      EXPECT_NEAR(x[j * N + i], expected, 1e-13 * expected);
    }
  }
}

// The chain is let go at its first end: the second diagonal takes 1, too. All move alike.
TEST_F(SparseFactorTest, ListsThePivotOfAFreeChain) {
  constexpr std::int32_t N = 20;
  for (const double k : {1.0, 1e12, 1e-12}) {
    UpperMatrix A = MakeChain(N, k, 0.0);
    A.values[0] = k;
    SparseFactor factor;
    AnalyseMatrix(A, ListPlaces(N), {}, factor);
    FactorMatrix(A, {}, factor);
    ASSERT_EQ(factor.nullPivots.size(), 1U);
    std::vector<double> v;
    FindNullVector(factor, 0, v);
    ASSERT_NE(v[0], 0.0);
    for (const double value : v) EXPECT_NEAR(value / v[0], 1.0, 1e-12);
  }
}

// A chain that is held by 1e-9 of its own stiffness alone is soft, not free.
TEST_F(SparseFactorTest, KeepsSoftPivots) {
  constexpr std::int32_t N = 20;
  UpperMatrix A = MakeChain(N, 1.0, 1e-9);
  A.values[0] = 1.0;
  SparseFactor factor;
  AnalyseMatrix(A, ListPlaces(N), {}, factor);
  FactorMatrix(A, {}, factor);
  EXPECT_TRUE(factor.nullPivots.empty());
}

TEST_F(SparseFactorTest, StopsWhereMemoryIsNotAllowed) {
  const UpperMatrix A = MakeChain(20000, 1.0, 0.0);
  FactorSettings settings;
  settings.memory = 1000;
  SparseFactor factor;
  try {
    AnalyseMatrix(A, ListPlaces(20000), settings, factor);
    FAIL();
  } catch (const korvex::Stop& stop) {
    EXPECT_NE(stop.text.find("it may take 0.01 GB. Give a folder"), std::string::npos) << stop.text;
  }
}

// A folder that goes away between: the write fails and is noticed.
TEST_F(SparseFactorTest, StopsWhereFactorsCannotBeWritten) {
  const UpperMatrix A = MakeChain(2000, 1.0, 0.0);
  FactorSettings settings;
  settings.outOfCore = "/nonexistent/folder";
  SparseFactor factor;
  try {
    AnalyseMatrix(A, ListPlaces(2000), settings, factor);
    FactorMatrix(A, settings, factor);
    FAIL();
  } catch (const korvex::Stop& stop) {
    EXPECT_NE(stop.text.find("Give another folder (--out-of-core DIR)"), std::string::npos)
        << stop.text;
  }
}

TEST_F(SparseFactorTest, StopsAtANameThatIsTooLong) {
  const UpperMatrix A = MakeChain(3, 1.0, 0.0);
  FactorSettings settings;
  settings.outOfCore.assign(300, 'x');
  SparseFactor factor;
  EXPECT_THROW(AnalyseMatrix(A, ListPlaces(3), settings, factor), korvex::Stop);
}

TEST(MumpsError, SaysWhatToDo) {
  EXPECT_EQ(DescribeMumpsError(-13, -5, false),
            "Not enough memory for the sparse factorisation: a table of 5000000 numbers cannot be "
            "had (MUMPS: -13, -5). Give a folder for the factors (--out-of-core DIR), or use a "
            "machine with more memory.");
  EXPECT_NE(DescribeMumpsError(-90, 0, true).find("the disk is full"), std::string::npos);
  EXPECT_NE(DescribeMumpsError(-9, 100, false).find("--engine skyline"), std::string::npos);
  EXPECT_NE(DescribeMumpsError(-53, 1, false).find("(MUMPS: -53, 1)"), std::string::npos);
  for (const int status : {-8, -9, -14, -15, -17, -20}) EXPECT_TRUE(IsSpaceTooSmall(status));
  for (const int status : {0, -5, -7, -10, -13, -90}) EXPECT_FALSE(IsSpaceTooSmall(status));
}

// Rounded up, so that what is said to fit does.
TEST(MumpsError, RoundsGigabytesUp) {
  EXPECT_EQ(GigabyteText(0), "0 GB");
  EXPECT_EQ(GigabyteText(1), "0.01 GB");
  EXPECT_EQ(GigabyteText(536870912), "0.5 GB");
  EXPECT_EQ(GigabyteText(2952790016), "2.8 GB");  // 2.75
}

}  // namespace
}  // namespace kvx::test
