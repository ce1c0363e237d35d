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
    EXPECT_EQ(stop.text.rfind("The sparse solution takes ", 0), 0U) << stop.text;
    EXPECT_NE(stop.text.find("it may take 0 GB. Ways out: keep the factors on a disk"),
              std::string::npos)
        << stop.text;
  }
}

// The second half coupled with all of itself, and before it leaves without a diagonal, each coupled
// with two of the others: these pivots are put off to the last front, which becomes four times as
// large as was foreseen.
UpperMatrix MakeLeaves(std::int32_t half) {
  UpperMatrix A;
  A.begins.push_back(0);
  const auto add = [&](std::int32_t column, double value) {
    A.columns.push_back(column);
    A.values.push_back(value);
  };
  for (std::int32_t i = 0; i < half; ++i) {
    add(i, 0.0);
    add(half + i, 1.0);
    if (i + 1 < half) add(half + i + 1, 0.5);
    A.begins.push_back(static_cast<std::int64_t>(A.columns.size()));
  }
  for (std::int32_t i = 0; i < half; ++i) {
    for (std::int32_t j = i; j < half; ++j) add(half + j, i == j ? 2.0 : 1.0 / (1.0 + i + j));
    A.begins.push_back(static_cast<std::int64_t>(A.columns.size()));
  }
  return A;
}

// Whether it fits into so many bytes; how many it took; what is said where it does not.
bool FitsInto(const UpperMatrix& A, std::uint64_t bytes, std::uint64_t& taken, std::string& text) {
  FactorSettings settings;
  settings.memory = bytes;
  SparseFactor factor;
  try {
    AnalyseMatrix(A, ListPlaces(CountRows(A)), settings, factor);
    FactorMatrix(A, settings, factor);
  } catch (const korvex::Stop& stop) {
    text = stop.text;
    return false;
  }
  taken = factor.bytes;
  return true;
}

// What is foreseen is too small. It is tried again with more, but not with more than is allowed.
TEST_F(SparseFactorTest, GrowsWithinWhatIsAllowed) {
  const UpperMatrix A = MakeLeaves(400);
  std::uint64_t most = 0, taken = 0;
  std::string text;
  ASSERT_TRUE(FitsInto(A, 0, most, text)) << text;
  int refused = 0, grown = 0;
  for (std::uint64_t bytes = 1000000; bytes < 2 * most; bytes += most / 8) {
    if (FitsInto(A, bytes, taken, text)) {
      EXPECT_LE(taken, bytes);
      continue;
    }
    ++refused;
    grown += text.find("more memory than was foreseen (MUMPS: -") != std::string::npos ? 1 : 0;
    EXPECT_NE(text.find("; it may take "), std::string::npos) << text;
    // Entries are counted in whole millions of bytes, and the last try has all that is allowed.
    EXPECT_LT(bytes, most + most / 8) << text;
  }
  EXPECT_GT(refused, 1);
  EXPECT_GT(grown, 0);
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
  FactorMemory memory;
  memory.needed = std::uint64_t{3} << 30U;
  memory.allowed = std::uint64_t{2} << 30U;
  const std::string ways =
      "see whether the skyline fits (--engine skyline) once kvx renumber has ordered the nodes, "
      "share the work among several machines (kvx-mpi), or use one with more memory.";
  EXPECT_EQ(
      DescribeMumpsError(-13, -5, memory),
      "Not enough memory for the sparse factorisation: a table of 5000000 numbers cannot be "
      "had (MUMPS: -13, -5). The sparse solution takes 3 GB, now that its matrix is known "
      "(the prediction was an estimate); there are 2 GB free. Ways out: keep the factors on a "
      "disk (--out-of-core DIR), " +
          ways);
  memory.isOutOfCore = memory.isLimitGiven = true;
  for (const int status : {-8, -9, -19}) {
    EXPECT_EQ(DescribeMumpsError(status, 100, memory),
              "The sparse factorisation takes more memory than was foreseen (MUMPS: " +
                  std::to_string(status) +
                  ", 100). The sparse solution takes 3 GB, now that its matrix is known (the "
                  "prediction was an estimate); it may take 2 GB. Ways out: allow more (--memory "
                  "GB), " +
                  ways);
  }
  EXPECT_NE(DescribeMumpsError(-90, 0, memory).find("the disk is full"), std::string::npos);
  EXPECT_NE(DescribeMumpsError(-53, 1, memory).find("(MUMPS: -53, 1)"), std::string::npos);
  memory.needed = memory.allowed;
  EXPECT_NE(DescribeMumpsError(-9, 1, memory).find("many times the memory that was foreseen"),
            std::string::npos);
  for (const int status : {-8, -9, -14, -15, -17, -19, -20}) EXPECT_TRUE(IsSpaceTooSmall(status));
  for (const int status : {0, -5, -7, -10, -13, -90}) EXPECT_FALSE(IsSpaceTooSmall(status));
}

}  // namespace
}  // namespace kvx::test
