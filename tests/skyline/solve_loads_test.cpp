// Several loads of one system: the bits of SolveSkyline for each load alone, with one system and
// with independent systems, whatever the other loads are, on one thread and on several; the share
// of work, and interruptions.
#include "skyline/solve_loads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <thread>

#include "skyline/coupled_dofs.h"
#include "skyline/solve_skyline.h"
#include "skyline/solve_skyline_plain.h"
#include "support/same_bits.h"

namespace korvex {
namespace {

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

using Loads = std::vector<std::vector<double>>;

// As of a flat plate `width` nodes wide in the xy plane: entries only between the dofs ux, uy, rz
// or between uz, rx, ry, and only with the node beside and the node of the row before.
// coupling: an entry between the two kinds; 0: independent systems.
SkylineMatrix MakePlate(std::int32_t nodes, std::int32_t width, double coupling) {
  constexpr std::int32_t KindOf[] = {0, 0, 1, 1, 1, 0};
  std::mt19937 random(static_cast<unsigned>(nodes));
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  SkylineMatrix K;
  InitColumnHeights(K, 6 * nodes);
  for (std::int32_t j = 0; j < 6 * nodes; ++j) {
    const std::int32_t top = std::max(0, j / 6 - width) * 6;
    K.ColumnHeights[static_cast<std::size_t>(j)] = j - top + 1;
  }
  ComputeDiagonalAddresses(K);
  AllocateValues(K);
  for (std::int32_t j = 0; j < 6 * nodes; ++j) {
    for (const std::int32_t other : {j / 6, j / 6 - 1, j / 6 - width}) {
      for (std::int32_t i = 6 * other; i >= 0 && i < std::min(6 * other + 6, j); ++i) {
        const bool isCoupled = KindOf[i % 6] == KindOf[j % 6];
        Column(K, j)[j - i] = isCoupled ? value(random) : coupling;
      }
    }
    Column(K, j)[0] = 20.0 + value(random);
  }
  return K;
}

// Loads of random numbers and zeros; the first is zero.
Loads MakeLoads(std::size_t n, std::size_t count) {
  std::mt19937 random(static_cast<unsigned>(count));
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  Loads F(count, std::vector<double>(n));
  for (std::size_t k = 1; k < count; ++k) {
    for (double& number : F[k]) number = random() % 3 == 0 ? 0.0 : value(random);
  }
  return F;
}

// Solves together; returns K as it is left.
SkylineMatrix SolveTogether(const SkylineMatrix& matrix, Loads& F, Loads& u,
                            const ShareCallback& report = {}, int threads = 1) {
  SkylineMatrix K = matrix;
  u.assign(F.size(), std::vector<double>(K.ColumnHeights.size(), -7.0));
  WorkShare work;
  work.report = report;
  SolveLoads(K, F, u, work, threads);
  return K;
}

void ExpectBitsOfEachAlone(const SkylineMatrix& matrix, const Loads& loads) {
  constexpr int ThreadCounts[] = {1, 2, 3, 8};
  std::vector<Loads> F, u;
  for (const int threads : ThreadCounts) {
    F.push_back(loads);
    SolveTogether(matrix, F.back(), u.emplace_back(), {}, threads);
  }
  for (std::size_t k = 0; k < loads.size(); ++k) {
    SkylineMatrix K = matrix;
    std::vector<double> aloneF = loads[k], aloneU(loads[k].size(), -7.0);
    SolveSkyline(K, aloneF, aloneU, {});
    for (std::size_t i = 0; i < F.size(); ++i) {
      EXPECT_TRUE(test::SameBits(F[i][k], aloneF)) << "load " << k << ", " << ThreadCounts[i];
      EXPECT_TRUE(test::SameBits(u[i][k], aloneU)) << "load " << k << ", " << ThreadCounts[i];
    }
  }
}

// The plate has so many nodes in its width that its systems are taken apart (coupled_dofs.h).
constexpr std::int32_t Nodes = 160, Width = 50;
constexpr std::size_t N = 960;

TEST(SolveLoads, OneSystem) {
  const SkylineMatrix K = MakePlate(Nodes, Width, 0.1);
  ASSERT_FALSE(MayDecouple(K));
  for (const std::size_t count : {1U, 2U, 7U, 20U, 33U}) {
    ExpectBitsOfEachAlone(K, MakeLoads(N, count));
  }
}

TEST(SolveLoads, IndependentSystems) {
  const SkylineMatrix K = MakePlate(Nodes, Width, 0.0);
  ASSERT_TRUE(MayDecouple(K));
  for (const std::size_t count : {1U, 2U, 7U, 20U, 33U}) {
    ExpectBitsOfEachAlone(K, MakeLoads(N, count));
  }
}

// Loads that independent systems may not solve, among others: -0 (known before); infinities and
// NaNs, and a quotient y / d that becomes -0 for being too small (known after).
TEST(SolveLoads, SomeLoadsNeedOneSystem) {
  const SkylineMatrix K = MakePlate(Nodes, Width, 0.0);
  for (const double value : {-0.0, Infinity, -Infinity, NotANumber, -NotANumber, -1e-323}) {
    Loads F = MakeLoads(N, 9);
    F[3].assign(N, 0.0);
    F[3][400] = F[5][7] = value;
    F[8][N - 1] = value;
    SCOPED_TRACE(value);
    ExpectBitsOfEachAlone(K, F);
  }
}

TEST(SolveLoads, AllLoadsNeedOneSystem) {
  const SkylineMatrix K = MakePlate(Nodes, Width, 0.0);
  for (const double value : {-0.0, NotANumber}) {
    Loads F = MakeLoads(N, 3);
    for (std::vector<double>& load : F) load[11] = value;
    ExpectBitsOfEachAlone(K, F);
  }
}

// With a load of -0, K is factorised as one system at once; with one that shows itself later, after
// the systems, K must have been restored before.
TEST(SolveLoads, LeavesTheFactorOfOneSystemWhereALoadNeedsIt) {
  const SkylineMatrix K = MakePlate(Nodes, Width, 0.0);
  SkylineMatrix one = K;
  std::vector<double> noLoad(N);
  ColumnCounter columns;
  FactorSkylinePlain(one, noLoad, columns);
  for (const double value : {-0.0, NotANumber, 1.0}) {
    Loads F = MakeLoads(N, 4), u;
    F[2][50] = value;
    const SkylineMatrix left = SolveTogether(K, F, u);
    EXPECT_EQ(test::SameBits(left.Values, one.Values), value != 1.0) << value;
  }
}

TEST(SolveLoads, SpecialMatrices) {
  for (const double value : {0.0, -0.0, 1e20, NotANumber, -NotANumber, Infinity}) {
    for (const std::size_t at : {std::size_t{0}, std::size_t{500}, N - 1}) {
      SkylineMatrix K = MakePlate(Nodes, Width, 0.0);
      *Column(K, static_cast<std::int64_t>(at)) = value;
      SCOPED_TRACE(testing::Message() << value << " in " << at);
      ExpectBitsOfEachAlone(K, MakeLoads(N, 5));
    }
  }
}

TEST(SolveLoads, SmallSystemsAndNone) {
  for (const std::int32_t n : {0, 1, 25}) {
    SkylineMatrix K;
    InitColumnHeights(K, n);
    ComputeDiagonalAddresses(K);
    AllocateValues(K);
    K.Values.assign(K.Values.size(), 4.0);
    ExpectBitsOfEachAlone(K, MakeLoads(static_cast<std::size_t>(n), 9));
  }
}

TEST(SolveLoads, WithoutLoadsNothingIsDone) {
  const SkylineMatrix K = MakePlate(Nodes, Width, 0.0);
  Loads F, u;
  const SkylineMatrix left = SolveTogether(K, F, u, [](double) { FAIL(); });
  EXPECT_TRUE(test::SameBits(left.Values, K.Values));
}

// More than a hundred reports, evenly spread, from 0 to 1: with independent systems too, whose work
// is less than was planned at the beginning.
TEST(SolveLoads, ReportsTheShare) {
  for (const double coupling : {0.0, 0.1}) {
    for (const std::size_t count : {1U, 20U, 33U}) {
      Loads F = MakeLoads(6000, count), u;
      std::vector<double> shares = {0.0};
      SolveTogether(MakePlate(1000, Width, coupling), F, u,
                    [&](double share) { shares.push_back(share); });
      EXPECT_GT(shares.size(), 100U);
      EXPECT_EQ(shares.back(), 1.0);
      for (std::size_t i = 1; i < shares.size(); ++i) {
        EXPECT_GE(shares[i], shares[i - 1]) << i;
        EXPECT_LT(shares[i] - shares[i - 1], 0.01) << i;
      }
    }
  }
}

// On several threads the reports come when the caller's thread has time for them: with 100 loads,
// which are five groups of lanes, too.
TEST(SolveLoads, ReportsTheShareOnTheCallersThread) {
  const std::thread::id caller = std::this_thread::get_id();
  for (const std::size_t count : {1U, 20U, 100U}) {
    Loads F = MakeLoads(N, count), u;
    double last = 0.0;
    const auto report = [&](double share) {
      EXPECT_EQ(std::this_thread::get_id(), caller);
      EXPECT_GE(share, last);
      last = share;
    };
    SolveTogether(MakePlate(Nodes, Width, 0.1), F, u, report, 3);
    EXPECT_NEAR(last, 1.0, 1e-9);
  }
}

// Interrupted anywhere, it throws what the report throws; the next solution is as ever.
TEST(SolveLoads, CanBeInterrupted) {
  struct Interruption {};
  for (const double coupling : {0.0, 0.1}) {
    const SkylineMatrix K = MakePlate(Nodes, Width, coupling);
    for (const double end : {0.0, 0.3, 0.6, 0.9, 1.0}) {
      for (const int threads : {1, 3}) {
        Loads F = MakeLoads(N, 9), u;
        double last = -1.0;
        const auto report = [&](double share) {
          last = share;
          if (share >= end) throw Interruption();
        };
        EXPECT_THROW(SolveTogether(K, F, u, report, threads), Interruption);
        EXPECT_NEAR(last, end, 0.1);
      }
    }
    ExpectBitsOfEachAlone(K, MakeLoads(N, 2));
  }
}

// The factor that a solution leaves behind.
SkylineFactor FactorOf(const SkylineMatrix& matrix, Loads F, Loads& u) {
  SkylineMatrix K = matrix;
  u.assign(F.size(), std::vector<double>(K.ColumnHeights.size(), -7.0));
  WorkShare work;
  SkylineFactor factor;
  SolveLoads(K, F, u, work, 1, &factor);
  return factor;
}

// A load that comes later is solved as well as others, with one system and with two. Its sums are
// in another order: in diagonally dominant matrices that changes 1e-15 of the largest. The last
// load leaves one of the two systems alone.
TEST(SolveFactored, SolvesFurtherLoads) {
  for (const double coupling : {0.0, 0.1}) {
    const SkylineMatrix matrix = MakePlate(700, 30, coupling);
    const std::size_t n = matrix.ColumnHeights.size();
    Loads all = MakeLoads(n, 6);
    all[5].assign(n, 0.0);
    all[5][2000] = 3.0;
    Loads solved = all, alone, first;
    SolveTogether(matrix, solved, alone);
    const SkylineFactor factor = FactorOf(matrix, {all[1], all[2]}, first);
    EXPECT_EQ(factor.equations.empty(), coupling != 0.0);
    for (std::size_t k = 0; k < 2; ++k) EXPECT_TRUE(test::SameBits(first[k], alone[k + 1])) << k;
    for (std::size_t k = 0; k < all.size(); ++k) {
      std::vector<double> x = all[k];
      int reports = 0;
      WorkShare work;
      work.report = [&](double share) { reports += share == 1.0 ? 1 : 0; };
      SolveFactored(factor, x, &work);
      EXPECT_GE(reports, 9);  // 4200 columns: each 512, and most of them twice
      for (std::size_t i = 0; i < n; ++i) ASSERT_NEAR(x[i], alone[k][i], 1e-15) << k;
    }
  }
}

// A -0 among the loads forbids two systems: the factor is that of one.
TEST(SolveFactored, TakesTheFactorOfOneSystemWhereALoadNeedsIt) {
  const SkylineMatrix matrix = MakePlate(700, 30, 0.0);
  Loads F = MakeLoads(matrix.ColumnHeights.size(), 2), u, alone;
  const Loads given = F;
  F[0][5] = -0.0;
  const SkylineFactor factor = FactorOf(matrix, F, u);
  EXPECT_TRUE(factor.equations.empty());
  SolveTogether(matrix, F, alone);
  std::vector<double> x = given[1];
  SolveFactored(factor, x, nullptr);
  for (std::size_t i = 0; i < x.size(); ++i) ASSERT_NEAR(x[i], alone[1][i], 1e-15);
}

// A zero pivot divides: nothing stops, and some numbers are not finite.
TEST(SolveFactored, GoesOnWithZeroPivots) {
  for (const double coupling : {0.0, 0.1}) {
    SkylineMatrix K = MakePlate(700, 30, coupling);
    std::fill_n(Column(K, 4), K.ColumnHeights[4], 0.0);
    for (std::int64_t j = 5; j < CountColumns(K); ++j) {
      if (TopRow(K, j) <= 4) Column(K, j)[j - 4] = 0.0;
    }
    const Loads F = MakeLoads(K.ColumnHeights.size(), 2);
    Loads u;
    const SkylineFactor factor = FactorOf(K, F, u);
    std::vector<double> x = F[1];
    SolveFactored(factor, x, nullptr);
    EXPECT_FALSE(
        std::all_of(x.begin(), x.end(), [](double value) { return std::isfinite(value); }));
  }
}

TEST(SolveFactored, CanBeInterrupted) {
  struct Interruption {};
  Loads u;
  const SkylineMatrix matrix = MakePlate(Nodes, Width, 0.1);
  const SkylineFactor factor = FactorOf(matrix, MakeLoads(N, 1), u);
  std::vector<double> x(N);
  WorkShare work;
  work.report = [](double) { throw Interruption(); };
  EXPECT_THROW(SolveFactored(factor, x, &work), Interruption);
}

}  // namespace
}  // namespace korvex
