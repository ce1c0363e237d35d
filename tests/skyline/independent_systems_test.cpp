// Independent systems: bit for bit the plain solution of K as one system; and a refusal, with K and
// F unchanged, where the bits might differ.
#include "skyline/independent_systems.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "skyline/coupled_dofs.h"
#include "skyline/solve_skyline.h"
#include "skyline/solve_skyline_plain.h"
#include "support/same_bits.h"
#include "support/shell_mesh.h"
#include "support/solve_model.h"

namespace korvex {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

struct System {
  SkylineMatrix K;
  std::vector<double> F, u;
};

// 0 .. count - 1.
std::int32_t Pick(std::mt19937& random, std::int32_t count) {
  return static_cast<std::int32_t>(random() % static_cast<std::uint32_t>(count));
}

double& Entry(SkylineMatrix& K, std::int32_t i, std::int32_t j) { return Column(K, j)[j - i]; }

// Columns of height at most `reach`; entries only between equations of the same set; a large
// diagonal. A third of the other entries and of the load is +0.
// sets: [n] the set of each equation.
System MakeSystem(const std::vector<std::int32_t>& sets, std::int32_t reach, std::mt19937& random) {
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  const auto n = static_cast<std::int32_t>(sets.size());
  System system;
  InitColumnHeights(system.K, n);
  for (std::int32_t j = 0; j < n; ++j) {
    system.K.ColumnHeights[static_cast<std::size_t>(j)] = 1 + Pick(random, std::min(reach, j + 1));
  }
  ComputeDiagonalAddresses(system.K);
  AllocateValues(system.K);
  for (std::int32_t j = 0; j < n; ++j) {
    for (auto i = static_cast<std::int32_t>(TopRow(system.K, j)); i < j; ++i) {
      const bool isSame = sets[static_cast<std::size_t>(i)] == sets[static_cast<std::size_t>(j)];
      if (isSame && Pick(random, 3) != 0) Entry(system.K, i, j) = value(random);
    }
    Entry(system.K, j, j) = 20.0 + value(random);
    system.F.push_back(Pick(random, 3) == 0 ? 0.0 : value(random));
  }
  system.u.assign(sets.size(), -7.0);  // every entry must be written
  return system;
}

// The sets of n equations of a plate in the xy plane: 0 membrane, 1 bending.
std::vector<std::int32_t> PlateSets(std::size_t n) {
  constexpr std::int32_t OfNode[] = {0, 0, 1, 1, 1, 0};
  std::vector<std::int32_t> sets;
  for (std::size_t i = 0; i < n; ++i) sets.push_back(OfNode[i % 6]);
  return sets;
}

// Two full systems, of the even and of the odd equations. Entries 1, on the diagonal 2 n.
System MakeInterleaved(std::int32_t n) {
  System system;
  InitColumnHeights(system.K, n);
  for (std::int32_t j = 0; j < n; ++j) system.K.ColumnHeights[static_cast<std::size_t>(j)] = j + 1;
  ComputeDiagonalAddresses(system.K);
  AllocateValues(system.K);
  for (std::int32_t j = 0; j < n; ++j) {
    for (std::int32_t i = j % 2; i < j; i += 2) Entry(system.K, i, j) = 1.0;
    Entry(system.K, j, j) = 2.0 * n;
  }
  system.F.assign(static_cast<std::size_t>(n), 1.0);
  system.u.assign(static_cast<std::size_t>(n), -7.0);
  return system;
}

void SolveAsOne(System& system) { SolveSkylinePlain(system.K, system.F, system.u, {}); }

bool SolveSeparately(System& system, std::size_t maxEntries, ColumnCounter& columns) {
  columns = {{}, static_cast<std::int64_t>(system.F.size())};
  return SolveIndependentSystems(system.K, {{&system.F, &system.u}}, maxEntries, columns).empty();
}

constexpr std::size_t NoLimit = 1U << 30U;

void ExpectBitsOfOneSystem(const System& system) {
  System separate = system, one = system;
  ColumnCounter columns;
  ASSERT_TRUE(SolveSeparately(separate, NoLimit, columns));
  SolveAsOne(one);
  EXPECT_TRUE(test::SameBits(separate.F, one.F));
  EXPECT_TRUE(test::SameBits(separate.u, one.u));
  EXPECT_EQ(columns.done, columns.columns);
}

// Refuses, with K and F unchanged. done: the columns counted by then.
void ExpectRefusal(const System& system, std::int64_t done, std::size_t maxEntries = NoLimit) {
  System refused = system;
  ColumnCounter columns;
  EXPECT_FALSE(SolveSeparately(refused, maxEntries, columns));
  EXPECT_TRUE(test::SameBits(refused.K.Values, system.K.Values));
  EXPECT_EQ(refused.K.SkylineSize, system.K.SkylineSize);
  EXPECT_TRUE(test::SameBits(refused.F, system.F));
  EXPECT_EQ(columns.done, done);
}
void ExpectRefusalAtOnce(const System& system) { ExpectRefusal(system, 0); }
// Refuses after the solution of the systems.
void ExpectLateRefusal(const System& system) {
  ExpectRefusal(system, static_cast<std::int64_t>(system.F.size()));
}

TEST(IndependentSystems, BitsOfOneSystem) {
  std::mt19937 random(1);
  for (int run = 0; run < 200; ++run) {
    const std::int32_t n = 20 + Pick(random, 300);
    const std::int32_t kinds = 2 + Pick(random, 6);
    std::vector<std::int32_t> sets;
    for (std::int32_t i = 0; i < n; ++i) sets.push_back(Pick(random, kinds));
    SCOPED_TRACE(run);
    ExpectBitsOfOneSystem(MakeSystem(sets, 10 + Pick(random, n), random));
    if (HasFatalFailure() || HasNonfatalFailure()) return;
  }
}

TEST(IndependentSystems, BitsOfAPlate) {
  std::mt19937 random(2);
  for (const std::size_t n : {24U, 600U, 1200U}) {
    ExpectBitsOfOneSystem(MakeSystem(PlateSets(n), 150, random));
  }
}

// Negative pivots give factors of -0. Their terms change no bits either.
TEST(IndependentSystems, BitsOfOneSystemWithNegativePivots) {
  std::mt19937 random(3);
  for (int run = 0; run < 100; ++run) {
    System system = MakeSystem(PlateSets(120), 60, random);
    for (double& load : system.F) load += 2.0;  // so that no y is zero
    for (std::int32_t j = 0; j < 120; ++j) {
      // Positive in K; the pivot becomes negative when the terms of its column are subtracted.
      if (TopRow(system.K, j) + 12 < j) Entry(system.K, j, j) = 1e-3;
    }
    ExpectBitsOfOneSystem(system);
  }
}

// Solved separately or refused, the bits are the same, also with overflow, infinities and zeros of
// both signs. With small values most systems are solved separately, with large values few.
TEST(IndependentSystems, BitsOfOneSystemWithAnyValues) {
  constexpr double Specials[] = {0.0, -0.0, 1e-310, -1e-200, 1e-20, 1e20, -1e160, 1e300, Infinity};
  std::mt19937 random(4);
  int separate = 0, late = 0;
  for (int run = 0; run < 5000; ++run) {
    System system = MakeSystem(PlateSets(30 + static_cast<std::size_t>(run % 7)), 30, random);
    const std::int32_t kinds = 1 + run % 9;
    for (int special = 0; special < 4; ++special) {
      const auto j = Pick(random, 30);
      const auto i = static_cast<std::int32_t>(TopRow(system.K, j));
      const double value = Specials[Pick(random, kinds)];
      if ((j - i) % 6 == 0) Entry(system.K, i, j) = value;
      system.F[static_cast<std::size_t>(Pick(random, 30))] = Specials[Pick(random, kinds)];
    }
    System one = system, either = system;
    SolveAsOne(one);
    ColumnCounter columns;
    if (SolveSeparately(either, NoLimit, columns)) {
      ++separate;
      ASSERT_TRUE(test::SameBits(either.F, one.F)) << run;
      ASSERT_TRUE(test::SameBits(either.u, one.u)) << run;
    } else {
      if (columns.done > 0) ++late;
      ASSERT_TRUE(test::SameBits(either.K.Values, system.K.Values)) << run;
      ASSERT_TRUE(test::SameBits(either.F, system.F)) << run;
    }
  }
  EXPECT_GT(separate, 1000);
  EXPECT_GT(late, 100);
}

TEST(IndependentSystems, RefusesOneSet) {
  System system = MakeInterleaved(12);
  Entry(system.K, 4, 7) = 1.0;  // couples the two
  ExpectRefusalAtOnce(system);
}

// The coupling entry is in a row that MayDecouple does not read.
TEST(IndependentSystems, RefusesOneSetCoupledInALowRow) {
  System system = MakeInterleaved(60);
  Entry(system.K, 50, 59) = 1e-300;
  ExpectRefusalAtOnce(system);
}

// A full matrix of 24 equations has 300 entries; three quarters are 225. Systems of 3 and 21
// equations have 6 + 231 = 237 entries, systems of 4 and 20 have 10 + 210 = 220.
TEST(IndependentSystems, RefusesIfLittleIsSaved) {
  for (const std::int32_t small : {3, 4}) {
    System system = MakeInterleaved(24);
    for (std::int32_t j = 0; j < 24; ++j) {
      for (std::int32_t i = 0; i < j; ++i) {
        Entry(system.K, i, j) = (i < small) == (j < small) ? 1.0 : 0.0;
      }
    }
    if (small == 3) {
      ExpectRefusalAtOnce(system);
    } else {
      ExpectBitsOfOneSystem(system);
    }
  }
}

// Two structures without common nodes, one after the other: no column stores rows of the other
// structure, so nothing is saved.
TEST(IndependentSystems, RefusesSeparateStructures) {
  System system = MakeInterleaved(24);
  for (std::int32_t j = 0; j < 24; ++j) {
    system.K.ColumnHeights[static_cast<std::size_t>(j)] = j % 12 + 1;
  }
  ComputeDiagonalAddresses(system.K);
  AllocateValues(system.K);
  system.K.Values.assign(system.K.Values.size(), 1.0);
  for (std::int32_t j = 0; j < 24; ++j) Entry(system.K, j, j) = 50.0;
  ExpectRefusalAtOnce(system);
}

TEST(IndependentSystems, RefusesInfinityAndNaN) {
  for (const double value : {Infinity, -Infinity, NotANumber}) {
    System system = MakeInterleaved(60);
    Entry(system.K, 50, 58) = value;
    ExpectRefusalAtOnce(system);
  }
}

// -0 minus a zero term of the other system may be +0.
TEST(IndependentSystems, RefusesNegativeZero) {
  System system = MakeInterleaved(60);
  Entry(system.K, 50, 58) = -0.0;
  ExpectRefusalAtOnce(system);
  Entry(system.K, 50, 58) = 0.0;
  system.F[30] = -0.0;
  ExpectRefusalAtOnce(system);
}

// A zero pivot: solved as one system, the zeros of the other system are divided by it, which gives
// NaNs there.
TEST(IndependentSystems, RefusesZeroPivots) {
  System system = MakeInterleaved(24);
  Entry(system.K, 0, 0) = Entry(system.K, 2, 2) = 1.0;
  ExpectLateRefusal(system);
  SolveAsOne(system);
  EXPECT_TRUE(std::isnan(system.u[1]));
}

TEST(IndependentSystems, RefusesIfAnInfinityOccurs) {
  System pivot = MakeInterleaved(24);
  Entry(pivot.K, 0, 2) = 1e200;  // d2 = 48 - 1e400 / 48
  ExpectLateRefusal(pivot);

  System reduced = MakeInterleaved(24);
  Entry(reduced.K, 0, 22) = 1e100;  // l = 2e98, d22 of the size of 1e198
  reduced.F[0] = 1e250;             // y22 = -2e348
  ExpectLateRefusal(reduced);

  System solution = MakeInterleaved(24);  // equation 22 is the third system
  for (std::int32_t i = 0; i < 22; ++i) Entry(solution.K, i, 22) = 0.0;
  Entry(solution.K, 22, 22) = 1e-200;
  solution.F[22] = 1e200;  // u22 = 1e400
  ExpectLateRefusal(solution);
}

// u(2) begins with y / d = 0 / d2 = -0, because d2 is negative. Solved as one system, -0 - (0 * u)
// follows, which is +0 if u is negative.
TEST(IndependentSystems, RefusesQuotientsOfNegativeZero) {
  System system = MakeInterleaved(24);
  Entry(system.K, 0, 2) = 100.0;  // d2 = 48 - 100^2 / 48
  for (std::size_t i = 0; i < 24; i += 2) system.F[i] = 0.0;
  ExpectLateRefusal(system);
}

std::size_t CountEntries(const SkylineMatrix& K) {
  return K.Values.size() -
         static_cast<std::size_t>(std::count(K.Values.begin(), K.Values.end(), 0.0));
}

TEST(IndependentSystems, RefusesIfThereAreTooManyNonZeros) {
  System system = MakeInterleaved(60);
  const std::size_t entries = CountEntries(system.K);
  ExpectRefusal(system, 0, entries - 1);
  ColumnCounter columns;
  EXPECT_TRUE(SolveSeparately(system, entries, columns));
}

// The limit is a sixteenth of the 3200 entries or, with little memory, what half of it holds beside
// 100 bytes for each of the 10 equations, at 16 bytes for each non-zero.
TEST(IndependentSystems, MemoryLimitsTheList) {
  SkylineMatrix K;
  InitColumnHeights(K, 10);
  K.SkylineSize = 3200;
  EXPECT_EQ(FindMaxEntries(K, 1, 1U << 30U), 200U);
  EXPECT_EQ(FindMaxEntries(K, 1, 2 * (1000 + 16 * 150)), 150U);
  EXPECT_EQ(FindMaxEntries(K, 1, 2 * (1000 + 16 * 150) - 2), 149U);
  EXPECT_EQ(FindMaxEntries(K, 1, 2 * 1000), 0U);
  EXPECT_EQ(FindMaxEntries(K, 1, 100), 0U);
  // A further load takes five numbers for each equation.
  EXPECT_EQ(FindMaxEntries(K, 3, 2 * (1000 + 2 * 400 + 16 * 150)), 150U);
  EXPECT_EQ(FindMaxEntries(K, 3, 2 * (1000 + 2 * 400 + 16 * 150) - 2), 149U);
}

test::ModelText MakePlate(test::Cells cells, bool isTurned) {
  // Parallel to the plane of y and z, squares and rhombs in turn.
  test::ModelText model = test::BuildGrid(40, 10, cells, [](double s, double t) {
    return test::Point3{3.0, 4.0 * s + 0.02 * std::sin(40.0 * t), 2.0 * t};
  });
  model.materials = {{2.1e11, 0.3, 0.0}};
  model.thicknesses = {0.01};
  for (int i = 0; i <= 40; ++i) model.restraints.push_back({i, {1, 1, 1, 1, 1, 1}});
  model.forces.push_back({200, {1e3, 2e3, -5e2, 0.0, 30.0, 0.0}});
  return isTurned ? test::TurnModel(model) : model;
}

// As in a run of the program, which leaves K undefined.
TEST(IndependentSystems, PlatesOfShells) {
  for (const test::Cells cells : {test::Cells::Quads, test::Cells::Triangles, test::Cells::Mixed}) {
    Model model;
    test::AssembleModel(MakePlate(cells, false), model);
    const System plate = {model.Stiffness, model.LoadVector, model.Displacements};
    EXPECT_TRUE(MayDecouple(plate.K));
    ExpectBitsOfOneSystem(plate);
    System one = plate;
    SolveAsOne(one);
    SolveSkyline(model.Stiffness, model.LoadVector, model.Displacements, {});
    EXPECT_TRUE(test::SameBits(model.Displacements, one.u)) << cells;
    EXPECT_FALSE(test::SameBits(model.Stiffness.Values, one.K.Values)) << cells;
  }
}

TEST(IndependentSystems, RefusesInclinedAndStiffenedPlates) {
  Model inclined, stiffened;
  test::AssembleModel(MakePlate(test::Cells::Quads, true), inclined);
  EXPECT_FALSE(MayDecouple(inclined.Stiffness));
  ExpectRefusalAtOnce({inclined.Stiffness, inclined.LoadVector, inclined.Displacements});

  // A flat bar beside the plane, along one side of one cell.
  test::ModelText text = MakePlate(test::Cells::Quads, false);
  text.tSections = {{0.1, 0.01, 0.0, 0.0}};
  test::ModelText::Beam bar;
  bar.node1 = 210;
  bar.node2 = 251;
  bar.orientation = {1.0, 0.0, 0.0};
  text.beams = {bar};
  test::AssembleModel(text, stiffened);
  EXPECT_FALSE(MayDecouple(stiffened.Stiffness));
  ExpectRefusalAtOnce({stiffened.Stiffness, stiffened.LoadVector, stiffened.Displacements});
}

// Half the entries of 700 full columns are non-zero: the list would take more memory than K.
TEST(IndependentSystems, SolveSkylineRefusesDenseSystems) {
  System run = MakeInterleaved(700), one = run;
  SolveSkyline(run.K, run.F, run.u, {});
  SolveAsOne(one);
  EXPECT_TRUE(test::SameBits(run.K.Values, one.K.Values));  // the factors of one system
}

// threads: 0 for the plain routine.
std::vector<int> ProgressOf(System system, int threads) {
  std::vector<int> percents;
  const auto progress = [&percents](int percent) { percents.push_back(percent); };
  if (threads == 0) {
    SolveSkylinePlain(system.K, system.F, system.u, progress);
  } else {
    SolveSkyline(system.K, system.F, system.u, progress, threads);
  }
  return percents;
}

// 700 full columns with few non-zeros.
TEST(IndependentSystems, ProgressIsThatOfOneSystem) {
  System system = MakeInterleaved(700);
  for (std::int32_t j = 0; j < 700; ++j) {
    for (std::int32_t i = 0; i < j - 20; ++i) Entry(system.K, i, j) = 0.0;
  }
  const std::vector<int> expected = ProgressOf(system, 0);
  for (const int threads : {1, 3}) EXPECT_EQ(ProgressOf(system, threads), expected);
  Entry(system.K, 0, 0) = Entry(system.K, 2, 2) =
      1.0;  // refused at the end, then solved as one system
  for (const int threads : {1, 3}) EXPECT_EQ(ProgressOf(system, threads), expected);
}

}  // namespace
}  // namespace korvex
