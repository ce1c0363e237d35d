// Several loads side by side against each load alone, bit for bit, for every vector length that
// this processor has and for the single routines: reduced loads, solutions, factors.
#include "skyline/load_lanes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/vector_bits.h"
#include "skyline/random_systems.h"
#include "support/same_bits.h"

namespace korvex {
namespace {

using test::AllProfiles;
using test::AllValues;
using test::AllVectorBits;
using test::MakeSystem;
using test::MakeValue;
using test::Pick;
using test::Profile;
using test::System;
using test::Values;

// One, few, and numbers around those of lanes (8, 16, 24) and of groups (24, 48).
constexpr std::size_t LoadCounts[] = {1, 2, 7, 8, 9, 16, 17, 20, 24, 25, 33, 49};

// A matrix with several loads.
struct LoadedMatrix {
  SkylineMatrix K;
  std::vector<std::vector<double>> F, u;
};

std::vector<LoadedSystem> ListLoads(LoadedMatrix& matrix) {
  std::vector<LoadedSystem> loads;
  for (std::size_t k = 0; k < matrix.F.size(); ++k) {
    matrix.u.emplace_back(matrix.F[k].size(), -7.0);  // every entry must be written
  }
  for (std::size_t k = 0; k < matrix.F.size(); ++k) loads.push_back({&matrix.F[k], &matrix.u[k]});
  return loads;
}

LoadedMatrix SolveTogether(int bits, const LoadedMatrix& matrix) {
  LoadedMatrix solved = matrix;
  const std::vector<LoadedSystem> loads = ListLoads(solved);
  ColumnCounter columns;
  FactorAndSolve(bits, solved.K, loads, columns);
  return solved;
}

void ExpectBitsOfEachAlone(const LoadedMatrix& matrix) {
  std::vector<System> alone;
  for (const std::vector<double>& F : matrix.F) {
    alone.push_back({matrix.K, F, std::vector<double>(F.size(), -7.0)});
    SolveByPlainFactors(alone.back());
  }
  for (const int bits : {0, 128, 256, 512}) {
    if (bits > WidestVectorBits()) continue;
    const LoadedMatrix together = SolveTogether(bits, matrix);
    for (std::size_t k = 0; k < alone.size(); ++k) {
      EXPECT_TRUE(test::SameBits(together.K.Values, alone[k].K.Values)) << bits << ", load " << k;
      EXPECT_TRUE(test::SameBits(together.F[k], alone[k].F)) << bits << ", load " << k;
      EXPECT_TRUE(test::SameBits(together.u[k], alone[k].u)) << bits << ", load " << k;
    }
  }
}

// n equations, `loads` loads, the first with the values of MakeSystem, others of any kind.
LoadedMatrix MakeLoadedMatrix(std::int32_t n, Profile profile, Values values, std::size_t loads,
                              std::mt19937& random) {
  System system = MakeSystem(n, 1 + Pick(random, n + 1), profile, values, random);
  LoadedMatrix matrix = {system.K, {system.F}, {}};
  while (matrix.F.size() < loads) {
    const Values kind = AllValues[Pick(random, 3)];
    std::vector<double> F(static_cast<std::size_t>(n));
    if (Pick(random, 5) != 0) {  // else a load of zeros
      for (double& value : F) value = MakeValue(kind, random);
    }
    matrix.F.push_back(F);
  }
  return matrix;
}

void CompareRandomMatrices(int count, std::int32_t maxN, unsigned seed) {
  std::mt19937 random(seed);
  for (int run = 0; run < count; ++run) {
    for (const Profile profile : AllProfiles) {
      for (const Values values : AllValues) {
        const std::int32_t n = Pick(random, maxN + 1);
        const std::size_t loads = LoadCounts[Pick(random, 12)];
        SCOPED_TRACE(testing::Message()
                     << "run " << run << ", profile " << static_cast<int>(profile) << ", values "
                     << static_cast<int>(values) << ", n " << n << ", loads " << loads);
        ExpectBitsOfEachAlone(MakeLoadedMatrix(n, profile, values, loads, random));
        if (testing::Test::HasFailure()) return;
      }
    }
  }
}

TEST(LoadLanes, SmallSystems) { CompareRandomMatrices(40, 70, 1); }

TEST(LoadLanes, MediumSystems) { CompareRandomMatrices(10, 300, 2); }

// Every number of loads with systems that need none, one and several tiles and blocks.
TEST(LoadLanes, EveryNumberOfLoads) {
  std::mt19937 random(3);
  for (const std::size_t loads : LoadCounts) {
    for (const std::int32_t n : {0, 1, 5, 6, 8, 25, 49}) {
      SCOPED_TRACE(testing::Message() << loads << " loads, n " << n);
      ExpectBitsOfEachAlone(MakeLoadedMatrix(n, Profile::Nodes, Values::Regular, loads, random));
    }
  }
}

// More rows than are copied together.
TEST(LoadLanes, ManyRows) {
  std::mt19937 random(4);
  System system = MakeSystem(2500, 60, Profile::Nodes, Values::Regular, random);
  LoadedMatrix matrix = {system.K, {system.F}, {}};
  for (int k = 0; k < 3; ++k) {
    std::vector<double> F(2500);
    for (double& value : F) value = MakeValue(Values::Zeros, random);
    matrix.F.push_back(F);
  }
  ExpectBitsOfEachAlone(matrix);
}

// A load of NaNs or infinities does not touch its neighbours.
TEST(LoadLanes, OneLoadIsNotFinite) {
  for (const double value :
       {std::numeric_limits<double>::quiet_NaN(), -std::numeric_limits<double>::quiet_NaN(),
        std::numeric_limits<double>::infinity()}) {
    std::mt19937 random(5);
    LoadedMatrix matrix = MakeLoadedMatrix(60, Profile::Ragged, Values::Regular, 9, random);
    for (std::size_t k = 0; k < 9; ++k) {
      for (double& number : matrix.F[k]) number = MakeValue(Values::Regular, random);
    }
    matrix.F[4][30] = value;
    ExpectBitsOfEachAlone(matrix);
    const LoadedMatrix solved = SolveTogether(WidestVectorBits(), matrix);
    for (std::size_t k = 0; k < 9; ++k) EXPECT_EQ(std::isfinite(solved.u[k][30]), k != 4) << k;
  }
}

// The units planned are those that are counted: the share reaches 1 with the last block.
TEST(LoadLanes, CountsItsWork) {
  std::mt19937 random(6);
  for (const std::size_t count : LoadCounts) {
    LoadedMatrix matrix;
    matrix.K = MakeSystem(300, 40, Profile::Nodes, Values::Regular, random).K;
    matrix.F.assign(count, std::vector<double>(300, 1.0));
    WorkShare work;
    work.rest = CountFactorUnits(matrix.K, 0, 300) + CountSubstitutionUnits(matrix.K, count);
    std::vector<double> rests;
    work.report = [&](double) { rests.push_back(work.rest); };
    ColumnCounter columns = {{}, 300, 0, &work};
    const std::vector<LoadedSystem> loads = ListLoads(matrix);
    FactorAndSolve(WidestVectorBits(), matrix.K, loads, columns);
    ASSERT_GT(rests.size(), 40U);
    EXPECT_EQ(rests.back(), 0.0) << count;
    EXPECT_GT(rests[rests.size() - 2], 0.0) << count;
    EXPECT_EQ(work.share, 1.0) << count;
  }
}

}  // namespace
}  // namespace korvex
