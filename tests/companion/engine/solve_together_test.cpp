// Several loads of one model against the run of each load alone, bit for bit.
#include "engine/solve_together.h"

#include <gtest/gtest.h>

#include <cmath>

#include "model/read_input_file.h"
#include "report/stop.h"
#include "support/expect_stop.h"
#include "support/good_models.h"
#include "support/same_bits.h"
#include "support/shell_mesh.h"
#include "support/solve_model.h"
#include "system/load_vector.h"
#include "system/profile.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;
using korvex::test::SameBits;
using korvex::test::WriteModel;

using Loads = std::vector<std::vector<double>>;

// With the skyline.
SolutionRecord Solve(korvex::Model& model, Loads& loads, const korvex::ShareCallback& share,
                     Loads& displacements, int threads = 1) {
  EngineSettings settings;
  settings.choice = EngineChoice::Skyline;
  settings.threads = threads;
  SolutionPlan plan;
  PlanSolution(model, loads.size(), settings, {}, plan);
  SolutionRecord record;
  SolveTogether(model, loads, settings, plan, share, displacements, record);
  return record;
}

void ReadModel(const ModelText& text, korvex::Model& model) {
  model = {};
  korvex::ReadInputText(WriteModel(text), model);
  korvex::NumberEquations(model);
}

// The model with loads of its own: as it is, without any, and with random ones.
std::vector<ModelText> MakeCases(const ModelText& model, int count, std::uint32_t seed) {
  Dice dice = MakeDice(seed);
  std::vector<ModelText> cases(static_cast<std::size_t>(count), model);
  for (std::size_t k = 1; k < cases.size(); ++k) {
    ModelText& text = cases[k];
    text.forces.clear();
    text.shell4Loads.clear();
    text.shell3Loads.clear();
    text.beamLoads.clear();
    for (std::size_t f = 1; f < k; ++f) {
      ModelText::Force force;
      force.node = RollInteger(dice, 0, static_cast<int>(model.nodes.size()) - 1);
      for (double& component : force.components) component = Roll(dice, -1000.0, 1000.0);
      text.forces.push_back(force);
    }
    if (!text.shells4.empty()) text.shell4Loads.push_back({0, {0.1, 0.2, 0.3}});
    if (!text.beams.empty()) text.beamLoads.push_back({0, 1.0, -2.0});
  }
  return cases;
}

Loads ListLoads(const std::vector<ModelText>& cases) {
  Loads loads;
  for (const ModelText& text : cases) {
    korvex::Model model;
    ReadModel(text, model);
    korvex::AssembleLoadVector(model);
    loads.push_back(model.LoadVector);
  }
  return loads;
}

void ExpectRunsOfEachAlone(const std::vector<ModelText>& cases) {
  Loads loads = ListLoads(cases), displacements;
  korvex::Model model;
  ReadModel(cases[0], model);
  Solve(model, loads, {}, displacements);
  ASSERT_EQ(displacements.size(), cases.size());
  EXPECT_TRUE(model.Stiffness.Values.empty());
  for (std::size_t k = 0; k < cases.size(); ++k) {
    korvex::Model run;
    korvex::test::SolveModel(cases[k], run);
    EXPECT_TRUE(SameBits(displacements[k], run.Displacements)) << "case " << k;
  }
}

TEST(SolveTogether, EqualsTheRunsOfRandomModels) {
  for (std::uint32_t seed = 0; seed < 20; ++seed) {
    SCOPED_TRACE(seed);
    ExpectRunsOfEachAlone(MakeCases(MakeGoodModel(seed), 1 + static_cast<int>(seed % 10), seed));
  }
}

// A plate in the plane of x and y, wide enough to be solved as two systems; turned, it is one.
ModelText MakePlate(bool isTurned, int length = 40, int width = 30) {
  ModelText model =
      korvex::test::BuildGrid(length, width, korvex::test::Cells::Quads, [](double s, double t) {
        return korvex::test::Point3{4.0 * s, 3.0 * t, 0.0};
      });
  model.materials = {{2.1e11, 0.3, 0.0}};
  model.thicknesses = {0.01};
  for (int i = 0; i <= length; ++i) model.restraints.push_back({i, {1, 1, 1, 1, 1, 1}});
  model.forces.push_back({200, {1e3, 2e3, -5e2, 0.0, 30.0, 0.0}});
  return isTurned ? korvex::test::TurnModel(model) : model;
}

TEST(SolveTogether, EqualsTheRunsOfPlates) {
  for (const bool isTurned : {false, true})
    ExpectRunsOfEachAlone(MakeCases(MakePlate(isTurned), 7, 1));
}

// Displacements, and what is told of them. Small, for the thread sanitizer.
TEST(SolveTogether, HasTheSameBitsOnAnyNumberOfThreads) {
  for (const bool isTurned : {false, true}) {
    const std::vector<ModelText> cases = MakeCases(MakePlate(isTurned, 20, 10), 3, 1);
    korvex::Model model;
    ReadModel(cases[0], model);
    Loads loads = ListLoads(cases), one;
    const SolutionRecord alone = Solve(model, loads, {}, one);
    for (const int threads : {2, 3, 8}) {
      SCOPED_TRACE(threads);
      Loads several;
      loads = ListLoads(cases);
      const SolutionRecord record = Solve(model, loads, {}, several, threads);
      EXPECT_EQ(record.threads, threads);
      for (std::size_t k = 0; k < cases.size(); ++k) {
        EXPECT_TRUE(SameBits(several[k], one[k])) << k;
        EXPECT_EQ(record.loads[k].residual, alone.loads[k].residual);
        EXPECT_EQ(record.loads[k].digitsLost, alone.loads[k].digitsLost);
      }
    }
  }
}

// A mechanism: nothing holds the plate. Infinities, NaNs or huge numbers, the same as a run's.
TEST(SolveTogether, EqualsTheRunsOfAModelThatCanMove) {
  ModelText model = MakePlate(false);
  model.restraints.clear();
  ExpectRunsOfEachAlone(MakeCases(model, 4, 1));
  model.nodes.push_back({9.0, 9.0, 9.0});  // without an element: zero pivots
  ExpectRunsOfEachAlone(MakeCases(model, 4, 1));
}

TEST(SolveTogether, TakesModelsWithoutLoadsOrNodes) {
  korvex::Model model;
  ReadModel(MakePlate(false), model);
  Loads loads, displacements(3);
  Solve(model, loads, {}, displacements);
  EXPECT_TRUE(displacements.empty());

  ReadModel(ModelText(), model);
  loads.assign(2, {});
  Solve(model, loads, {}, displacements);
  EXPECT_EQ(displacements, Loads(2));
}

// More than a hundred reports for a plate of 1200 shells, from the assembly to the last row.
TEST(SolveTogether, ReportsTheShare) {
  for (const bool isTurned : {false, true}) {
    const std::vector<ModelText> cases = MakeCases(MakePlate(isTurned), 7, 1);
    Loads loads = ListLoads(cases), displacements;
    korvex::Model model;
    ReadModel(cases[0], model);
    std::vector<double> shares = {0.0};
    Solve(
        model, loads, [&](double share) { shares.push_back(share); }, displacements);
    EXPECT_GT(shares.size(), 100U);
    EXPECT_EQ(shares.back(), 1.0);
    for (std::size_t i = 1; i < shares.size(); ++i) EXPECT_GE(shares[i], shares[i - 1]);
  }
}

// Interrupted anywhere: it throws, the matrix is freed, and the model can be solved again.
TEST(SolveTogether, CanBeInterrupted) {
  struct Interruption {};
  const std::vector<ModelText> cases = MakeCases(MakePlate(false), 3, 1);
  korvex::Model model;
  ReadModel(cases[0], model);
  for (const double end : {0.0, 0.2, 0.5, 0.99, 1.0}) {
    Loads loads = ListLoads(cases), displacements;
    const auto share = [&](double done) {
      if (done >= end) throw Interruption();
    };
    EXPECT_THROW(Solve(model, loads, share, displacements), Interruption);
    EXPECT_TRUE(model.Stiffness.Values.empty());
  }
  Loads loads = ListLoads(cases), displacements;
  Solve(model, loads, {}, displacements);
  korvex::Model run;
  korvex::test::SolveModel(cases[2], run);
  EXPECT_TRUE(SameBits(displacements[2], run.Displacements));
}

TEST(SolveTogether, StopsAsARunDoes) {
  ModelText text = MakePlate(false);
  text.restraints.push_back({99999, {1, 0, 0, 0, 0, 0}});
  korvex::Model model;
  ReadModel(text, model);
  Loads loads(1, std::vector<double>(static_cast<std::size_t>(model.NEQ))), displacements;
  EXPECT_THROW(Solve(model, loads, {}, displacements), korvex::Stop);
  EXPECT_TRUE(model.Stiffness.Values.empty());
}

}  // namespace
}  // namespace kvx::test
