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
#include "skyline/panel_work.h"
#include "skyline/random_systems.h"
#include "skyline/substitute_back.h"
#include "support/same_bits.h"

namespace korvex {
namespace {

using test::AllProfiles;
using test::AllValues;
using test::AllVectorBits;
using test::ForRandomSystems;
using test::MakeSystem;
using test::MakeValue;
using test::Pick;
using test::Profile;
using test::SolveByPlainFactors;
using test::System;
using test::Values;

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

TEST(FactorSkyline, SmallSystems) { ForRandomSystems(80, 70, 1, ExpectSameBits); }

TEST(FactorSkyline, MediumSystems) { ForRandomSystems(40, 300, 2, ExpectSameBits); }

// Panels with more rows than one slice can hold.
TEST(FactorSkyline, SystemsOfSeveralSlices) { ForRandomSystems(1, 1500, 3, ExpectSameBits); }

// Factorises K and reduces F by panels, with slices of `sliceRows` rows and windows of a few
// slices. Panels that fit in memory are reduced in random steps.
void FactorInSlices(int bits, std::int64_t sliceRows, System& system, std::mt19937& random) {
  const auto n = static_cast<std::int64_t>(system.F.size());
  PanelWork work;
  AllocatePanelWork(system.K, 1, TileRows * (1 + Pick(random, 20)), work);
  const SkylineArrays arrays = ArraysOf(system.K, system.F);
  const PanelRoutines routines = FindPanelRoutines(bits);
  for (std::int64_t first = 0; first < n; first += PanelColumns) {
    PanelRows memory = MemoryOf(work, 0, first, 1);
    memory.sliceRows = sliceRows;
    Panel panel;
    routines.begin(arrays, first, memory, panel);
    while (panel.done < first) {
      const bool fits = first - panel.top <= memory.rowCount;
      const std::int64_t rows = fits ? TileRows * (1 + Pick(random, 20)) : first;
      routines.reduce(arrays, std::min(panel.done + rows, first), panel);
    }
    routines.finish(arrays, panel);
  }
}

// The panel routines, called directly, are exact only if all NaNs have the bits of 0/0 on x86
// (FactorSkyline sees to it): the sign bit is set.
template <typename Numbers>
void UnifyNaNs(Numbers& values) {
  for (double& value : values) {
    if (std::isnan(value)) value = -std::numeric_limits<double>::quiet_NaN();
  }
}

// With slices and steps of a few rows, top rows lie everywhere in them, even in small systems.
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
      FactorInSlices(bits, sliceRows, fast, random);
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
    const auto addNaNs = [&](auto& values, std::int32_t distance) {
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
