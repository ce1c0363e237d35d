// The accuracy of what the skyline finds: its condition against that of the sparse engine and a
// closed form, and what is said where a structure can move, nothing moves, or memory is short.
#include "engine/solution_quality.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "engine/solve_together.h"
#include "model/read_input_file.h"
#include "sparse/sparse_factor.h"
#include "support/good_models.h"
#include "support/shell_mesh.h"
#include "system/load_vector.h"
#include "system/profile.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;
using korvex::test::SingleLoad;

constexpr double Infinity = std::numeric_limits<double>::infinity();

// As many loads as factors: that of the model, times each.
SolutionRecord Solve(EngineChoice engine, const ModelText& text,
                     const std::vector<double>& factors = {1.0}, std::uint64_t memory = 0,
                     const korvex::ShareCallback& share = {}) {
  korvex::Model model;
  korvex::ReadInputText(korvex::test::WriteModel(text), model);
  korvex::NumberEquations(model);
  korvex::AssembleLoadVector(model);
  std::vector<std::vector<double>> loads, displacements;
  for (const double factor : factors) {
    loads.push_back(model.LoadVector);
    for (double& force : loads.back()) force *= factor;
  }
  EngineSettings settings;
  settings.choice = engine;
  SolutionPlan plan;
  PlanSolution(model, loads.size(), settings, {}, plan);
  settings.memory = memory;
  SolutionRecord record;
  SolveTogether(model, loads, settings, plan, share, displacements, record);
  return record;
}

SolutionRecord SolveBySkyline(const ModelText& text) { return Solve(EngineChoice::Skyline, text); }

// A bar of two beams along x that can only stretch, E A / l = k of each.
ModelText MakeBar() {
  ModelText model;
  model.materials = {{2.1e5, 0.3, 0.0}};
  model.cSections = {{50.0, 5.0}};
  for (int i = 0; i <= 2; ++i) model.nodes.push_back({100.0 * i, 0.0, 0.0});
  for (int i = 0; i < 2; ++i) {
    ModelText::Beam beam;
    beam.node1 = i;
    beam.node2 = i + 1;
    beam.BeamSecType = korvex::BeamSecTypeC;
    model.beams.push_back(beam);
  }
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}, {1, {0, 1, 1, 1, 1, 1}}, {2, {0, 1, 1, 1, 1, 1}}};
  return model;
}

// A plate of n x n shells in the plane of x and y, clamped along one side: two systems of
// equations. turned: in space, where they are one.
ModelText MakePlate(int n, bool turned) {
  ModelText model =
      korvex::test::BuildGrid(n, n, korvex::test::Cells::Quads, [](double s, double t) {
        return korvex::test::Point3{1000.0 * s, 1000.0 * t, 0.0};
      });
  model.materials = {{2.1e5, 0.3, 0.0}};
  model.thicknesses = {10.0};
  for (int i = 0; i <= n; ++i) model.restraints.push_back({i, {1, 1, 1, 1, 1, 1}});
  model.forces.push_back({(n + 1) * (n + 1) - 1, {10.0, 20.0, 30.0, 0.0, 0.0, 0.0}});
  return turned ? korvex::test::TurnModel(model) : model;
}

// A = k (2 -1; -1 1), its inverse (1 1; 1 2) / k. A force F at the end gives x = (1 2) F / k,
// f = |A| |x| + |b| = (4 4) F, |A^-1| f = (8 12) F / k: over the largest |x| it is 6. With the same
// force at both nodes x = (2 3) F / k, f = (8 6) F, |A^-1| f = (14 20) F / k: 20 / 3.
TEST(MeasureSolution, GivesTheConditionOfABar) {
  ModelText text = MakeBar();
  text.forces = {{2, SingleLoad(0, 1e3)}};
  const LoadQuality end = SolveBySkyline(text).loads[0];
  EXPECT_NEAR(end.condition, 6.0, 1e-9);  // supports give way by k / 1e20 = 3e-14
  EXPECT_NEAR(end.digitsLost, std::log10(6.0), 1e-9);
  text.forces.push_back({1, SingleLoad(0, 1e3)});
  EXPECT_NEAR(SolveBySkyline(text).loads[0].condition, 20.0 / 3.0, 1e-9);
}

// The sparse engine takes two further columns, and may find more: of 100 random models nearly the
// same in half of them, 1.6 times as much in one of twenty, 3.7 times at most. The solutions differ
// by little: a part of 1e-3 allows a condition of 1e10.
TEST(MeasureSolution, GivesTheConditionOfTheSparseEngine) {
  if (!HasSparseEngine()) GTEST_SKIP() << NoSparseEngine;
  std::vector<ModelText> models;
  for (std::uint32_t seed = 0; seed < 30; ++seed) models.push_back(MakeGoodModel(seed));
  models.push_back(MakePlate(12, false));
  models.push_back(MakePlate(12, true));
  for (std::size_t k = 0; k < models.size(); ++k) {
    SCOPED_TRACE(k);
    const LoadQuality sparse = Solve(EngineChoice::Sparse, models[k]).loads[0];
    const LoadQuality skyline = SolveBySkyline(models[k]).loads[0];
    EXPECT_LE(skyline.condition, sparse.condition * 1.001);
    EXPECT_GE(skyline.condition, sparse.condition / 5.0);
    EXPECT_EQ(skyline.digitsLost, std::log10(skyline.condition));
  }
}

TEST(MeasureSolution, GivesSeveralLoadsOneConditionButThoseOfZero) {
  for (const bool turned : {false, true}) {
    const SolutionRecord record =
        Solve(EngineChoice::Skyline, MakePlate(8, turned), {0.0, 1.0, -3.0});
    EXPECT_EQ(record.loads[0].condition, 0.0);
    EXPECT_EQ(record.loads[0].digitsLost, 0.0);
    EXPECT_GT(record.loads[1].condition, 100.0);
    EXPECT_EQ(record.loads[2].condition, record.loads[1].condition);
  }
}

TEST(MeasureSolution, EstimatesNothingWhereAllIsFixed) {
  ModelText text = MakeBar();
  for (auto& restraint : text.restraints) restraint.fixed.fill(1);
  text.forces = {{2, SingleLoad(0, 1e20)}};
  const LoadQuality quality = SolveBySkyline(text).loads[0];
  EXPECT_EQ(quality.condition, 0.0);
  EXPECT_EQ(quality.backwardError, 0.0);
}

// A node that nothing holds has pivots of 0, and solutions that are infinite or NaN: also of the
// further columns, where a force on it is missing. A beam that may turn about its axis has a pivot
// of 0 or of roundings.
TEST(MeasureSolution, FindsNoDigitWhereAStructureCanMove) {
  ModelText loose = MakePlate(6, false);
  loose.nodes.push_back({5.0, 5.0, 5.0});
  ModelText loaded = loose;
  loaded.forces.push_back({49, SingleLoad(2, 1.0)});
  for (const ModelText& text : {loose, loaded}) {
    const LoadQuality quality = SolveBySkyline(text).loads[0];
    EXPECT_EQ(quality.condition, Infinity);
    EXPECT_EQ(quality.digitsLost, Infinity);
  }
  ModelText spinning = MakeBar();
  spinning.restraints = {{0, {1, 1, 1, 0, 1, 1}}};
  spinning.forces = {{2, {0.0, 1.0, 0.0, 0.0, 0.0, 0.0}}};
  EXPECT_GT(SolveBySkyline(spinning).loads[0].condition, 1e15);
}

// Only the load that has no finite solution is spoilt: with a number that is none, or one so large
// that the displacements are infinite.
TEST(MeasureSolution, FindsNoDigitOfASolutionWithoutNumbers) {
  for (const double factor : {std::nan(""), Infinity}) {
    ModelText text = MakeBar();
    text.forces = {{2, SingleLoad(0, 1.0)}};
    const SolutionRecord record = Solve(EngineChoice::Skyline, text, {1.0, factor});
    EXPECT_EQ(record.loads[1].condition, Infinity) << factor;
    EXPECT_NEAR(record.loads[0].condition, 6.0, 1e-9) << factor;
  }
}

// The factor, 8 bytes for each entry of the skyline, and what stands beside it do not fit: residual
// and backward error are known none the less.
TEST(MeasureSolution, LeavesTheConditionWhereMemoryIsShort) {
  const ModelText text = MakePlate(12, true);
  const std::uint64_t factor = SolveBySkyline(text).bytes;
  ASSERT_GT(factor, 100000U);
  const LoadQuality little = Solve(EngineChoice::Skyline, text, {1.0}, factor + 1000).loads[0];
  EXPECT_TRUE(std::isnan(little.condition));
  EXPECT_TRUE(std::isnan(little.digitsLost));
  EXPECT_LT(little.backwardError, 1e-12);
  EXPECT_LT(little.residual, 1e-14);
  const LoadQuality enough = Solve(EngineChoice::Skyline, text, {1.0}, 100 * factor).loads[0];
  EXPECT_GT(enough.condition, 100.0);
}

// An element of no length: nothing can be said of the digits.
TEST(MeasureSolution, EstimatesNothingOfAnElementThatIsNotFinite) {
  ModelText text = MakeBar();
  text.nodes[2] = text.nodes[1];
  const LoadQuality quality = SolveBySkyline(text).loads[0];
  EXPECT_TRUE(std::isnan(quality.condition));
  EXPECT_TRUE(std::isnan(quality.backwardError));
}

// The columns of the estimate are solved under the same report, which may end them.
TEST(MeasureSolution, CanBeInterrupted) {
  struct Interruption {};
  int reports = 0, all = 0;
  const auto count = [&](double) { ++all; };
  Solve(EngineChoice::Skyline, MakePlate(12, true), {1.0}, 0, count);
  const auto stop = [&](double) {
    if (++reports == all) throw Interruption();  // the last one
  };
  EXPECT_THROW(Solve(EngineChoice::Skyline, MakePlate(12, true), {1.0}, 0, stop), Interruption);
}

TEST(SolutionQuality, KnowsTheConditionOfWhatIsNoneOrZero) {
  const std::array<double, 3> zero{0.0, -0.0, 0.0}, some{0.0, 1e-300, 0.0};
  EXPECT_EQ(ConditionOfSolution(zero.data(), 3), 0.0);
  EXPECT_TRUE(std::isnan(ConditionOfSolution(some.data(), 3)));
  for (const double bad : {Infinity, -Infinity, std::nan("")}) {
    const std::array<double, 3> x{0.0, 1.0, bad};
    EXPECT_EQ(ConditionOfSolution(x.data(), 3), Infinity);
  }
}

}  // namespace
}  // namespace kvx::test
