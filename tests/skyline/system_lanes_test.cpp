// Several systems of one profile side by side against each alone, bit for bit, for every vector
// length that this processor has: factors, reduced loads, solutions.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "base/finite.h"
#include "platform/vector_bits.h"
#include "skyline/panel/panel_routine.h"
#include "skyline/random_systems.h"
#include "skyline/solve_skyline_plain.h"

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

// Makes all pivots negative but one, which is -0: products of zeros must not reach it.
void EmptyColumn(System& system, std::mt19937& random) {
  for (double& value : system.K.Values) value = -value;
  const std::int64_t j = Pick(random, static_cast<std::int32_t>(system.F.size()));
  double* const column = Column(system.K, j);
  column[0] = -0.0;
  std::fill(column + 1, column + (j - TopRow(system.K, j)) + 1, 0.0);
}

// Systems with the profile of the first, which has the values of MakeSystem. Others have the same
// values with factors of their own, and a few of the given kind among them.
std::vector<System> MakeLanes(std::size_t lanes, const System& first, Values values,
                              std::mt19937& random) {
  std::uniform_real_distribution<double> factor(0.9, 1.1);
  std::vector<System> systems(lanes, first);
  for (std::size_t lane = 1; lane < lanes; ++lane) {
    System& system = systems[lane];
    for (double& value : system.K.Values) value *= factor(random);
    for (double& value : system.F) value *= factor(random);
    for (int spoilt = Pick(random, 4); spoilt > 0 && !system.F.empty(); --spoilt) {
      const auto count = static_cast<std::int32_t>(system.K.Values.size());
      system.K.Values[static_cast<std::size_t>(Pick(random, count))] = MakeValue(values, random);
    }
    if (values == Values::Zeros && Pick(random, 4) == 0) EmptyColumn(system, random);
  }
  return systems;
}

using Numbers = std::vector<double>;

// numbers[i * lanes + lane] of all lanes.
// numbersOf(system): a vector of numbers, of the same size for all.
template <typename NumbersOf>
Numbers Interleave(const std::vector<System>& systems, const NumbersOf& numbersOf) {
  Numbers all;
  for (std::size_t i = 0; i < numbersOf(systems[0]).size(); ++i) {
    for (const System& system : systems) all.push_back(numbersOf(system)[i]);
  }
  return all;
}

Numbers LaneOf(const Numbers& all, std::size_t lanes, std::size_t lane) {
  Numbers numbers;
  for (std::size_t i = lane; i < all.size(); i += lanes) numbers.push_back(all[i]);
  return numbers;
}

const MatrixValues& ValuesOf(const System& system) { return system.K.Values; }
const Numbers& LoadOf(const System& system) { return system.F; }

// For each row the last column that reaches it.
std::vector<std::int64_t> FindReach(const SkylineMatrix& K) {
  std::vector<std::int64_t> reach(K.ColumnHeights.size());
  for (std::int64_t j = 0; j < CountColumns(K); ++j) {
    for (std::int64_t i = TopRow(K, j); i <= j; ++i) reach[static_cast<std::size_t>(i)] = j;
  }
  return reach;
}

// Expects the bits of each number. A NaN may have another sign: which of two a product has depends
// on the order of its factors.
template <typename Expected>
void ExpectNumbers(const Numbers& numbers, const Expected& expected) {
  ASSERT_EQ(numbers.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    if (std::isnan(numbers[i]) && std::isnan(expected[i])) continue;
    ASSERT_EQ(std::memcmp(&numbers[i], &expected[i], sizeof(double)), 0)
        << i << ": " << numbers[i] << " instead of " << expected[i];
  }
}

bool IsFinite(const System& solved) {
  const auto areFinite = [](const auto& numbers) {
    return AreFinite(numbers.data(), numbers.size());
  };
  return areFinite(solved.K.Values) && areFinite(solved.F) && areFinite(solved.u);
}

// split: the columns before it are factorised first, the others by a second call. Returns how many
// of the systems have only finite numbers.
std::size_t ExpectBitsOfEachAlone(int bits, std::int64_t split,
                                  const std::vector<System>& systems) {
  const SkylineMatrix& K = systems[0].K;
  const SystemRoutines routines = FindSystemRoutines(bits);
  const auto lanes = static_cast<std::size_t>(routines.lanes);
  Numbers values = Interleave(systems, ValuesOf), loads = Interleave(systems, LoadOf);
  std::int32_t highest = 1;
  for (const std::int32_t height : K.ColumnHeights) highest = std::max(highest, height);
  Numbers multipliers(static_cast<std::size_t>(highest * MaxGroupColumns) * lanes);
  const SystemLanes arrays = {CountColumns(K), K.ColumnHeights.data(), K.DiagonalAddress.data(),
                              values.data(),   loads.data(),           multipliers.data()};
  routines.factor(arrays, 0, split);
  routines.factor(arrays, split, arrays.n);
  const Numbers reduced = loads;
  routines.substitute(arrays, FindReach(K).data());

  std::size_t finite = 0;
  for (std::size_t lane = 0; lane < lanes; ++lane) {
    System alone = systems[lane];
    alone.u.assign(alone.F.size(), 0.0);
    SolveSkylinePlain(alone.K, alone.F, alone.u, {});
    SCOPED_TRACE(testing::Message() << bits << " bits, lane " << lane);
    ExpectNumbers(LaneOf(values, lanes, lane), alone.K.Values);
    ExpectNumbers(LaneOf(reduced, lanes, lane), alone.F);
    ExpectNumbers(LaneOf(loads, lanes, lane), alone.u);
    if (IsFinite(alone)) ++finite;
  }
  return finite;
}

void CompareRandomSystems(int count, std::int32_t maxN, unsigned seed) {
  std::mt19937 random(seed);
  int groups = 0, mixed = 0;  // mixed: with finite systems beside others
  for (int run = 0; run < count; ++run) {
    for (const Profile profile : AllProfiles) {
      for (const Values values : AllValues) {
        const std::int32_t n = 1 + Pick(random, maxN);
        SCOPED_TRACE(testing::Message()
                     << "run " << run << ", profile " << static_cast<int>(profile) << ", values "
                     << static_cast<int>(values) << ", n " << n);
        const Values kind = values == Values::Special ? Values::Regular : values;
        const System first = MakeSystem(n, 1 + Pick(random, n + 1), profile, kind, random);
        for (const int bits : AllVectorBits) {
          if (bits > WidestVectorBits()) continue;
          const auto lanes = static_cast<std::size_t>(FindSystemRoutines(bits).lanes);
          const std::vector<System> systems = MakeLanes(lanes, first, values, random);
          const auto finite = ExpectBitsOfEachAlone(bits, Pick(random, n + 1), systems);
          groups += 1, mixed += finite > 0 && finite < lanes ? 1 : 0;
        }
        if (testing::Test::HasFailure()) return;
      }
    }
  }
  EXPECT_GE(mixed, groups / 10);
}

TEST(SystemLanes, SmallSystems) { CompareRandomSystems(20, 40, 1); }

TEST(SystemLanes, MediumSystems) { CompareRandomSystems(4, 200, 2); }

TEST(SystemLanes, NoLanesWithoutVectors) {
  EXPECT_EQ(FindSystemRoutines(0).lanes, 1);
  EXPECT_EQ(FindSystemRoutines(0).factor, nullptr);
}

}  // namespace
}  // namespace korvex
