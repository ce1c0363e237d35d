// The factorisation in vectors against the plain one, bit for bit: factors, reduced load and
// solution, for every vector length that this processor has.
//
// The systems are random: what can go wrong depends on how the tops of columns, tiles, panels and
// slices meet, and on which infinities, NaNs and zeros meet in a product.
#include "skyline/factor_skyline.h"

#include <gtest/gtest.h>

#include <algorithm>
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

// How the columns' tops lie.
enum class Profile {
  Ragged,     // each column its own
  Nodes,      // alike for the six columns of a node
  Single,     // by node, but some columns hold their diagonal only
  Uneven,     // by node, but some columns reach elsewhere
  Isolated,   // by node, some nodes without any coupling
  NodesHigh,  // by node, all in the first rows
};
constexpr Profile AllProfiles[] = {Profile::Ragged, Profile::Nodes,    Profile::Single,
                                   Profile::Uneven, Profile::Isolated, Profile::NodesHigh};

// What the values are.
enum class Values {
  Regular,  // small next to the diagonal
  Zeros,    // a third of them zeros of either sign: zero multipliers, zeros of the load
  Special,  // some of them infinities, NaNs, zeros, supports, numbers below the normal range
};
constexpr Values AllValues[] = {Values::Regular, Values::Zeros, Values::Special};

// 0 .. count - 1.
std::int32_t Pick(std::mt19937& random, std::int32_t count) {
  return static_cast<std::int32_t>(random() % static_cast<std::uint32_t>(count));
}

// The columns' heights; `reach` bounds them.
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

// The NaN has the sign that x86 gives those that arise, so that all are the same bits: which of two
// NaNs a product hands on is the compiler's affair.
double MakeValue(Values values, std::mt19937& random) {
  constexpr double Infinity = std::numeric_limits<double>::infinity();
  constexpr double Specials[] = {
      0.0, -0.0, -std::numeric_limits<double>::quiet_NaN(), Infinity, 1e20, 1e-310, -Infinity};
  if (values == Values::Zeros && Pick(random, 3) == 0) return Specials[Pick(random, 2)];
  if (values == Values::Special && Pick(random, 400) == 0) return Specials[Pick(random, 7)];
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

void ExpectSameBits(const System& system) {
  System plain = system;
  SolveSkylinePlain(plain.K, plain.F, plain.u, {});
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

// All profiles with all values, `count` systems of up to maxN equations.
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

TEST(FactorSkyline, MiddlingSystems) { CompareRandomSystems(40, 300, 2); }

// Panels of more rows than a slice has.
TEST(FactorSkyline, SystemsOfSeveralSlices) { CompareRandomSystems(1, 1500, 3); }

// The factors and the reduced load by panels, with slices of `sliceRows`.
void FactorInSlices(int bits, std::int64_t sliceRows, System& system) {
  const auto n = static_cast<std::int64_t>(system.F.size());
  std::vector<double> work(static_cast<std::size_t>(sliceRows * PanelColumns));
  const SkylineArrays arrays = {n, system.K.ColumnHeights.data(), system.K.DiagonalAddress.data(),
                                system.K.Values.data(), system.F.data()};
  for (std::int64_t first = 0; first < n; first += PanelColumns) {
    FindPanelRoutine(bits)(arrays, first, work.data(), sliceRows);
  }
}

// Slices of a few rows meet the tops of small systems everywhere.
TEST(FactorSkyline, SmallSlices) {
  std::mt19937 random(7);
  for (int run = 0; run < 600; ++run) {
    const Profile profile = AllProfiles[Pick(random, 6)];
    const Values values = AllValues[Pick(random, 3)];
    const std::int32_t n = Pick(random, 200);
    const System system = MakeSystem(n, 1 + Pick(random, n + 1), profile, values, random);
    System plain = system;
    SolveSkylinePlain(plain.K, plain.F, plain.u, {});
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

// One panel of three slices behind short columns; one column alone reaches up.
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

// Every n around the first panels, full columns.
TEST(FactorSkyline, AllSizesOfFullMatrices) {
  std::mt19937 random(5);
  for (std::int32_t n = 0; n <= 100; ++n) {
    ExpectSameBits(MakeSystem(n, 6 * n + 6, Profile::NodesHigh, Values::Regular, random));
  }
}

// The values of a NaN and their neighbours: an infinity in the factor next to entries that are not
// stored. Zeros in their place would make NaNs where there are none.
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

}  // namespace
}  // namespace korvex
