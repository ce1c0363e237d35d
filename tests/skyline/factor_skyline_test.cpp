// The factorisation in vectors against the plain one, bit for bit: factors, reduced load and
// solution, for every vector length that this processor has.
//
// The systems are random. Errors depend on how the top rows of columns lie relative to tiles,
// panels and slices, and on which infinities, NaNs and zeros meet in a product.
#include "skyline/factor_skyline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "platform/vector_bits.h"
#include "skyline/panel/panel_routine.h"
#include "skyline/solve_skyline_plain.h"
#include "skyline/substitute_back.h"
#include "support/same_bits.h"

namespace korvex {
namespace {

constexpr int AllVectorBits[] = {128, 256, 512};

struct System {
  SkylineMatrix K;
  std::vector<double> F, u;
};

// How the top rows of the columns lie.
enum class Profile {
  Ragged,     // a random top row for each column
  Nodes,      // the same top row for the six columns of a node
  Single,     // as Nodes, but some columns store their diagonal only
  Uneven,     // as Nodes, but some columns have another top row
  Isolated,   // as Nodes, but some nodes are not coupled to any other dof
  NodesHigh,  // as Nodes, all top rows among the first three nodes
};
constexpr Profile AllProfiles[] = {Profile::Ragged, Profile::Nodes,    Profile::Single,
                                   Profile::Uneven, Profile::Isolated, Profile::NodesHigh};

// The kinds of values.
enum class Values {
  Regular,  // small next to the diagonal
  Zeros,    // a third of them zeros of either sign: zero multipliers, zeros of the load
  Special,  // a few infinities, NaNs of both signs, zeros, supports (1e20), subnormal numbers
};
constexpr Values AllValues[] = {Values::Regular, Values::Zeros, Values::Special};

// 0 .. count - 1.
std::int32_t Pick(std::mt19937& random, std::int32_t count) {
  return static_cast<std::int32_t>(random() % static_cast<std::uint32_t>(count));
}

// Sets the columns' heights, at most about `reach` each.
void MakeHeights(Profile profile, std::int32_t reach, std::mt19937& random, SkylineMatrix& K) {
  std::int32_t nodeTop = 0;
  const auto n = static_cast<std::int32_t>(K.ColumnHeights.size());
  for (std::int32_t j = 0; j < n; ++j) {
    if (j % 6 == 0) {
      nodeTop = std::max(0, j / 6 - Pick(random, reach / 6 + 1)) * 6;
      if (profile == Profile::NodesHigh) nodeTop = Pick(random, 3) * 6;
      if (profile == Profile::Isolated && Pick(random, 4) == 0) nodeTop = j;
    }
    std::int32_t height = j - nodeTop + 1;
    if (profile == Profile::Isolated && nodeTop == j / 6 * 6) height = 1;
    if (profile == Profile::Ragged) height = 1 + Pick(random, reach);
    if (profile == Profile::Single && Pick(random, 15) == 0) height = 1;
    if (profile == Profile::Uneven && Pick(random, 15) == 0) height = 1 + Pick(random, j + 1);
    K.ColumnHeights[static_cast<std::size_t>(j)] = std::clamp(height, 1, j + 1);
  }
}

// NaNs have both signs: which of two NaNs a product returns depends on the order of its operands.
double MakeValue(Values values, std::mt19937& random) {
  constexpr double Infinity = std::numeric_limits<double>::infinity();
  constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
  constexpr double Specials[] = {0.0,  -0.0,   -NotANumber, Infinity,
                                 1e20, 1e-310, -Infinity,   NotANumber};
  if (values == Values::Zeros && Pick(random, 3) == 0) return Specials[Pick(random, 2)];
  if (values == Values::Special && Pick(random, 400) == 0) return Specials[Pick(random, 8)];
  return std::uniform_real_distribution<double>(-1.0, 1.0)(random);
}

System MakeSystem(std::int32_t n, std::int32_t reach, Profile profile, Values values,
                  std::mt19937& random) {
  System system;
  InitColumnHeights(system.K, n);
  MakeHeights(profile, reach, random, system.K);
  ComputeDiagonalAddresses(system.K);
  AllocateValues(system.K);
  for (double& value : system.K.Values) value = MakeValue(values, random);
  for (const std::int64_t diagonal : system.K.DiagonalAddress) {
    if (values == Values::Special && Pick(random, 50) == 0) continue;
    system.K.Values[static_cast<std::size_t>(diagonal)] += 20.0;
  }
  for (std::int32_t i = 0; i < n; ++i) system.F.push_back(MakeValue(values, random));
  system.u.assign(static_cast<std::size_t>(n), -7.0);  // every entry must be written
  return system;
}

// The plain factorisation and the back substitution of the program. SolveSkylinePlain's own back
// substitution is another compiled routine: where two different NaNs meet, signs may differ.
void SolveByPlainFactors(System& system) {
  ColumnCounter columns;
  FactorSkylinePlain(system.K, system.F, columns);
  SubstituteBack(system.K, system.F, system.u);
}

void ExpectSameBits(const System& system) {
  System plain = system;
  SolveByPlainFactors(plain);
  for (const int bits : AllVectorBits) {
    if (bits > WidestVectorBits()) continue;
    System fast = system;
    ColumnCounter columns;
    FactorSkyline(bits, fast.K, fast.F, columns);
    SubstituteBack(fast.K, fast.F, fast.u);
    EXPECT_TRUE(test::SameBits(fast.K.Values, plain.K.Values)) << bits;
    EXPECT_TRUE(test::SameBits(fast.F, plain.F)) << bits;
    EXPECT_TRUE(test::SameBits(fast.u, plain.u)) << bits;
  }
}

// Compares `count` random systems of at most maxN equations for each profile and kind of values.
void CompareRandomSystems(int count, std::int32_t maxN, unsigned seed) {
  std::mt19937 random(seed);
  for (int run = 0; run < count; ++run) {
    for (const Profile profile : AllProfiles) {
      for (const Values values : AllValues) {
        const std::int32_t n = Pick(random, maxN + 1);
        const std::int32_t reach = 1 + Pick(random, n + 1);
        SCOPED_TRACE(testing::Message()
                     << "run " << run << ", profile " << static_cast<int>(profile) << ", values "
                     << static_cast<int>(values) << ", n " << n);
        ExpectSameBits(MakeSystem(n, reach, profile, values, random));
        if (testing::Test::HasFailure()) return;
      }
    }
  }
}

TEST(FactorSkyline, SmallSystems) { CompareRandomSystems(80, 70, 1); }

TEST(FactorSkyline, MediumSystems) { CompareRandomSystems(40, 300, 2); }

// Panels with more rows than one slice can hold.
TEST(FactorSkyline, SystemsOfSeveralSlices) { CompareRandomSystems(1, 1500, 3); }

// Factorises K and reduces F by panels, with slices of `sliceRows` rows.
void FactorInSlices(int bits, std::int64_t sliceRows, System& system) {
  const auto n = static_cast<std::int64_t>(system.F.size());
  std::vector<double> work(static_cast<std::size_t>(sliceRows * PanelColumns));
  const SkylineArrays arrays = {n, system.K.ColumnHeights.data(), system.K.DiagonalAddress.data(),
                                system.K.Values.data(), system.F.data()};
  for (std::int64_t first = 0; first < n; first += PanelColumns) {
    FindPanelRoutines(bits).factor(arrays, first, work.data(), sliceRows);
  }
}

// The panel routines, called directly, are exact only if all NaNs have the bits of 0/0 on x86
// (FactorSkyline sees to it): the sign bit is set.
void UnifyNaNs(std::vector<double>& values) {
  for (double& value : values) {
    if (std::isnan(value)) value = -std::numeric_limits<double>::quiet_NaN();
  }
}

// With slices of a few rows, top rows lie everywhere in a slice, even in small systems.
TEST(FactorSkyline, SmallSlices) {
  std::mt19937 random(7);
  for (int run = 0; run < 600; ++run) {
    const Profile profile = AllProfiles[Pick(random, 6)];
    const Values values = AllValues[Pick(random, 3)];
    const std::int32_t n = Pick(random, 200);
    System system = MakeSystem(n, 1 + Pick(random, n + 1), profile, values, random);
    UnifyNaNs(system.K.Values);
    UnifyNaNs(system.F);
    System plain = system;
    SolveByPlainFactors(plain);
    for (const int bits : AllVectorBits) {
      if (bits > WidestVectorBits()) continue;
      System fast = system;
      const std::int64_t sliceRows = TileRows * (1 + Pick(random, 8));
      FactorInSlices(bits, sliceRows, fast);
      ASSERT_TRUE(test::SameBits(fast.K.Values, plain.K.Values))
          << bits << ", slices of " << sliceRows;
      ASSERT_TRUE(test::SameBits(fast.F, plain.F)) << bits << ", slices of " << sliceRows;
    }
  }
}

// Short columns, then one panel of three slices; in the first case no column of it is tall.
TEST(FactorSkyline, HighPanels) {
  std::mt19937 random(4);
  for (const std::int32_t reach : {1, 24, 2400}) {
    System system = MakeSystem(2500, 12, Profile::Nodes, Values::Zeros, random);
    for (std::int32_t j = 2490; j < 2490 + std::min(reach, 10); ++j) {
      system.K.ColumnHeights[static_cast<std::size_t>(j)] = j - Pick(random, reach);
    }
    ComputeDiagonalAddresses(system.K);
    AllocateValues(system.K);
    for (double& value : system.K.Values) value = MakeValue(Values::Zeros, random);
    ExpectSameBits(system);
  }
}

// All sizes up to four panels, full columns.
TEST(FactorSkyline, AllSizesOfFullMatrices) {
  std::mt19937 random(5);
  for (std::int32_t n = 0; n <= 100; ++n) {
    ExpectSameBits(MakeSystem(n, 6 * n + 6, Profile::NodesHigh, Values::Regular, random));
  }
}

// An infinite factor beside entries that are not stored. If these were padded with zeros instead of
// masked, 0 * infinity would give NaNs that the plain routine does not have.
TEST(FactorSkyline, InfinityBesideColumnsThatDoNotReach) {
  std::mt19937 random(6);
  for (int run = 0; run < 200; ++run) {
    System system = MakeSystem(60, 30, run % 2 == 0 ? Profile::Ragged : Profile::Nodes,
                               Values::Regular, random);
    const auto at = static_cast<std::size_t>(Pick(random, 60));
    system.K.Values[static_cast<std::size_t>(system.K.DiagonalAddress[at])] =
        run % 3 == 0 ? 0.0 : std::numeric_limits<double>::infinity();
    ExpectSameBits(system);
  }
}

// Random NaNs of both signs in F, and in every other run in K; isolated columns and zero pivots,
// which give NaNs of their own (0/0), at all positions of a panel of 24 columns.
TEST(FactorSkyline, NaNsOfBothSigns) {
  constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
  std::mt19937 random(8);
  for (int run = 0; run < 2000; ++run) {
    const Profile profile = AllProfiles[Pick(random, 6)];
    const std::int32_t n = 1 + Pick(random, 90);
    System system = MakeSystem(n, 1 + Pick(random, n + 1), profile, Values::Zeros, random);
    for (std::int32_t j = 0; j < n; ++j) {
      const bool isAlone = system.K.ColumnHeights[static_cast<std::size_t>(j)] == 1;
      if (Pick(random, isAlone ? 2 : 40) == 0) *Column(system.K, j) = 0.0;
    }
    const auto addNaNs = [&](std::vector<double>& values, std::int32_t distance) {
      for (double& value : values) {
        if (Pick(random, distance) == 0) value = Pick(random, 2) == 0 ? NotANumber : -NotANumber;
      }
    };
    addNaNs(system.F, 10);
    if (run % 2 == 0) addNaNs(system.K.Values, 100);
    SCOPED_TRACE(run);
    ExpectSameBits(system);
    if (HasFailure()) return;
  }
}

}  // namespace
}  // namespace korvex
