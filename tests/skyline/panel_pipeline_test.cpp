// The factorisation on several threads: bit for bit that of one thread and of the plain routine,
// for random profiles and values; the same reports in the same order; and an end without deadlock
// where a report throws.
//
// Here small matrices are factorised on threads, too, although it takes longer. Panels of a few
// columns let the threads meet often.
#include "skyline/panel_pipeline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <thread>
#include <vector>

#include "platform/vector_bits.h"
#include "skyline/factor_skyline.h"
#include "skyline/panel/panel_routine.h"
#include "skyline/random_systems.h"
#include "skyline/solve_skyline_plain.h"
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
using test::System;
using test::Values;

constexpr int ThreadCounts[] = {1, 2, 3, 8};

// As FactorSkyline, but on all of the threads.
void FactorOnThreads(int bits, int threads, System& system, ColumnCounter& columns,
                     std::int64_t maxRows = MaxPanelRows) {
  const std::int64_t first =
      FactorPanelsOnThreads(FindPanelRoutines(bits), system.K, system.F, threads, columns, maxRows);
  FactorColumnsPlain(system.K, first, columns);
  ReduceLoadPlain(system.K, first, system.F);
}

// F: without other NaNs than that of 0/0 on x86, which has the sign bit set: FactorSkyline sees to
// it.
void UnifyNaNs(std::vector<double>& values) {
  for (double& value : values) {
    if (std::isnan(value)) value = -std::numeric_limits<double>::quiet_NaN();
  }
}

void ExpectBitsOfPlain(const System& system, std::int64_t maxRows = MaxPanelRows) {
  System plain = system;
  UnifyNaNs(plain.F);
  const System start = plain;
  ColumnCounter uncounted;
  FactorSkylinePlain(plain.K, plain.F, uncounted);
  for (const int bits : AllVectorBits) {
    if (bits > WidestVectorBits()) continue;
    for (const int threads : ThreadCounts) {
      System fast = start;
      ColumnCounter columns;
      FactorOnThreads(bits, threads, fast, columns, maxRows);
      EXPECT_TRUE(test::SameBits(fast.K.Values, plain.K.Values)) << bits << ", " << threads;
      EXPECT_TRUE(test::SameBits(fast.F, plain.F)) << bits << ", " << threads;
    }
  }
}

TEST(PanelPipeline, SmallSystems) {
  ForRandomSystems(4, 150, 1, [](const System& system) { ExpectBitsOfPlain(system); });
}

TEST(PanelPipeline, MediumSystems) {
  ForRandomSystems(2, 500, 2, [](const System& system) { ExpectBitsOfPlain(system); });
}

// Sets the values of a changed profile.
void FillValues(Values values, std::mt19937& random, SkylineMatrix& K) {
  ComputeDiagonalAddresses(K);
  AllocateValues(K);
  for (double& value : K.Values) value = MakeValue(values, random);
  for (std::int64_t j = 0; j < CountColumns(K); ++j) *Column(K, j) += 20.0;
}

void SetHeight(std::int64_t j, std::int64_t height, SkylineMatrix& K) {
  K.ColumnHeights[static_cast<std::size_t>(j)] =
      static_cast<std::int32_t>(std::clamp<std::int64_t>(height, 1, j + 1));
}

// The first panels are narrow, the last of more rows than a slice has (1008).
TEST(PanelPipeline, TallPanels) {
  std::mt19937 random(3);
  System system = MakeSystem(2300, 12, Profile::Nodes, Values::Regular, random);
  for (std::int64_t j = 2200; j < 2300; ++j) SetHeight(j, j + 1 - Pick(random, 100), system.K);
  FillValues(Values::Zeros, random, system.K);
  ExpectBitsOfPlain(system);
}

// Panels of more rows than the work space holds, beside others.
TEST(PanelPipeline, PanelsThatDoNotFit) {
  std::mt19937 random(9);
  for (int run = 0; run < 8; ++run) {
    const System system =
        MakeSystem(400, 400, AllProfiles[Pick(random, 6)], AllValues[run % 3], random);
    SCOPED_TRACE(run);
    ExpectBitsOfPlain(system, TileRows * (1 + Pick(random, 40)));
    if (HasFailure()) return;
  }
}

// Narrow bands: each panel waits for the one before, most of the time. Full ones: for all before.
TEST(PanelPipeline, NarrowAndFullBands) {
  std::mt19937 random(4);
  for (const std::int32_t reach : {1, 3, 30, 700}) {
    System system = MakeSystem(700, 1, Profile::Nodes, Values::Regular, random);
    for (std::int64_t j = 0; j < 700; ++j) SetHeight(j, reach, system.K);
    FillValues(Values::Regular, random, system.K);
    ExpectBitsOfPlain(system);
  }
}

// Blocks that are not coupled: their panels need not wait for each other. The last column couples
// all of them.
TEST(PanelPipeline, BlocksAndArrow) {
  std::mt19937 random(5);
  for (const std::int64_t block : {24, 60, 100}) {
    System system = MakeSystem(601, 1, Profile::Nodes, Values::Regular, random);
    for (std::int64_t j = 0; j < 600; ++j) SetHeight(j, j % block + 1, system.K);
    SetHeight(600, 601, system.K);
    FillValues(Values::Regular, random, system.K);
    ExpectBitsOfPlain(system);
  }
}

// Other NaNs (factor_skyline.cpp): the plain routine goes on from the first panel that has one. A
// thread that has begun a later panel by then must have left it as it was.
TEST(PanelPipeline, StopsBeforeTheFirstPanelWithAnotherNaN) {
  if (WidestVectorBits() == 0) GTEST_SKIP() << "no panel routines";
  constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
  std::mt19937 random(6);
  for (int run = 0; run < 10; ++run) {
    System system = MakeSystem(400, 1 + Pick(random, 400), AllProfiles[Pick(random, 6)],
                               run % 2 == 0 ? Values::Regular : Values::Zeros, random);
    std::int64_t lowest = 400;
    for (int nan = 1 + run % 3; nan > 0; --nan) {
      const std::int64_t j = Pick(random, 400);
      const std::int32_t height = system.K.ColumnHeights[static_cast<std::size_t>(j)];
      Column(system.K, j)[Pick(random, height)] = NotANumber;
      lowest = std::min(lowest, j / PanelColumns * PanelColumns);
    }
    SCOPED_TRACE(run);
    for (const int threads : ThreadCounts) {
      System stopped = system;
      ColumnCounter columns;
      const std::int64_t first = FactorPanelsOnThreads(FindPanelRoutines(WidestVectorBits()),
                                                       stopped.K, stopped.F, threads, columns);
      ASSERT_EQ(first, lowest);
      const auto from =
          static_cast<std::ptrdiff_t>(system.K.DiagonalAddress[static_cast<std::size_t>(first)]);
      EXPECT_TRUE(test::SameBits({stopped.K.Values.begin() + from, stopped.K.Values.end()},
                                 {system.K.Values.begin() + from, system.K.Values.end()}));
      EXPECT_TRUE(test::SameBits({stopped.F.begin() + first, stopped.F.end()},
                                 {system.F.begin() + first, system.F.end()}));
    }
    ExpectBitsOfPlain(system);
    if (HasFailure()) return;
  }
}

// The reports of percentages and of shares, in their order.
struct Reports {
  std::vector<int> percents;
  std::vector<double> shares;
};

Reports ReportsOf(System system, int threads) {
  Reports reports;
  const std::thread::id caller = std::this_thread::get_id();
  WorkShare work;
  work.rest = CountFactorUnits(system.K, 0, CountColumns(system.K));
  work.report = [&](double share) {
    EXPECT_EQ(std::this_thread::get_id(), caller);
    reports.shares.push_back(share);
  };
  ColumnCounter columns;
  columns.columns = CountColumns(system.K);
  columns.work = &work;
  columns.progress = [&](int percent) {
    EXPECT_EQ(std::this_thread::get_id(), caller);
    reports.percents.push_back(percent);
  };
  FactorOnThreads(WidestVectorBits(), threads, system, columns);
  EXPECT_EQ(columns.done, columns.columns);
  return reports;
}

TEST(PanelPipeline, ReportsAsOneThreadDoes) {
  if (WidestVectorBits() == 0) GTEST_SKIP() << "no panel routines";
  std::mt19937 random(7);
  for (const std::int32_t n : {1, 25, 700}) {
    System system = MakeSystem(n, 100, Profile::Nodes, Values::Regular, random);
    if (n == 700) Column(system.K, 500)[0] = std::numeric_limits<double>::quiet_NaN();
    const Reports one = ReportsOf(system, 1);
    EXPECT_FALSE(one.percents.empty());
    EXPECT_EQ(one.shares.back(), 1.0);
    for (const int threads : {2, 3, 8}) {
      const Reports several = ReportsOf(system, threads);
      EXPECT_EQ(several.percents, one.percents);
      EXPECT_EQ(several.shares, one.shares);
    }
  }
}

// Interrupted anywhere, it throws what the report throws, and no thread remains: the next
// factorisation of the same memory is as ever.
TEST(PanelPipeline, EndsWhereAReportThrows) {
  if (WidestVectorBits() == 0) GTEST_SKIP() << "no panel routines";
  struct Interruption {};
  std::mt19937 random(8);
  const System system = MakeSystem(900, 300, Profile::Nodes, Values::Regular, random);
  for (const int threads : ThreadCounts) {
    for (const int end : {20, 60, 100}) {
      System interrupted = system;
      ColumnCounter columns;
      columns.columns = 900;
      columns.progress = [&](int percent) {
        if (percent >= end) throw Interruption();
      };
      EXPECT_THROW(FactorOnThreads(WidestVectorBits(), threads, interrupted, columns),
                   Interruption);
      EXPECT_NEAR(static_cast<double>(columns.done), 9.0 * end, 1.0);
    }
  }
  ExpectBitsOfPlain(system);
}

TEST(PanelPipeline, UsesThreadsWhereTheyHelp) {
  SkylineMatrix K;
  const auto useful = [&K](std::int32_t n, std::int32_t height, int threads) {
    K.ColumnHeights.assign(static_cast<std::size_t>(n), height);
    return CountUsefulThreads(K, threads);
  };
  EXPECT_EQ(useful(0, 1, 8), 1);
  EXPECT_EQ(useful(768, 60, 8), 1);  // a detail model
  EXPECT_EQ(useful(60000, 500, 0), 1);
  EXPECT_EQ(useful(60000, 500, 1), 1);
  EXPECT_EQ(useful(60000, 500, 2), 2);
  EXPECT_EQ(useful(240000, 1206, 8), 8);
  EXPECT_EQ(useful(1000000, 30, 8), 1);  // a frame: each panel waits for the one before
}

}  // namespace
}  // namespace korvex
