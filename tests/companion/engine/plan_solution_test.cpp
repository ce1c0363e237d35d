// Which engine is taken, what a refusal says, and how near predictions come.
#include "engine/plan_solution.h"

#include <gtest/gtest.h>

#include "engine/solve_together.h"
#include "model/read_input_file.h"
#include "report/stop.h"
#include "sparse/sparse_factor.h"
#include "support/shell_mesh.h"
#include "support/temp_folder.h"
#include "system/load_vector.h"
#include "system/profile.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

// A tilted plate of side x side cells, clamped at an edge, with a force in a corner.
void ReadPlate(int side, korvex::Model& model) {
  ModelText text =
      korvex::test::BuildGrid(side, side, korvex::test::Cells::Quads, [](double s, double t) {
        return korvex::test::Turn({1000.0 * s, 1000.0 * t, 0.0});
      });
  text.materials = {{2.1e5, 0.3, 0.0}};
  text.thicknesses = {10.0};
  for (int i = 0; i <= side; ++i) text.restraints.push_back({i, {1, 1, 1, 1, 1, 1}});
  text.forces.push_back(
      {static_cast<int>(text.nodes.size()) - 1, korvex::test::SingleLoad(2, 1.0)});
  model = {};
  korvex::ReadInputText(korvex::test::WriteModel(text), model);
  korvex::NumberEquations(model);
  korvex::AssembleLoadVector(model);
}

EngineSettings Settings(EngineChoice choice, std::uint64_t memory = 0,
                        const std::string& outOfCore = "") {
  EngineSettings settings;
  settings.choice = choice;
  settings.memory = memory;
  settings.outOfCore = outOfCore;
  return settings;
}

std::string StopText(const korvex::Model& model, const EngineSettings& settings) {
  SolutionPlan plan;
  try {
    PlanSolution(model, 1, settings, {}, plan);
  } catch (const korvex::Stop& stop) {
    EXPECT_EQ(stop.kind, korvex::StopKind::Notice);
    return stop.text;
  }
  return "";
}

void Solve(const korvex::Model& model, const EngineSettings& settings, SolutionPlan& plan,
           SolutionRecord& record, std::vector<std::vector<double>>& displacements) {
  korvex::Model copy = model;
  std::vector<std::vector<double>> loads{model.LoadVector};
  PlanSolution(model, 1, settings, {}, plan);
  SolveTogether(copy, loads, settings, plan, {}, displacements, record);
}

class PlanSparse : public testing::Test {
 protected:
  void SetUp() override {
    if (!HasSparseEngine()) GTEST_SKIP() << NoSparseEngine;
  }
};

TEST(PlanSolution, TakesTheSkylineForSmallModels) {
  korvex::Model model;
  ReadPlate(10, model);
  SolutionPlan plan;
  PlanSolution(model, 1, Settings(EngineChoice::Auto), {}, plan);
  EXPECT_EQ(plan.engine, EngineChoice::Skyline);
  EXPECT_EQ(plan.equations, 6 * 121);
  EXPECT_EQ(plan.freeEquations, 6 * 110);
  EXPECT_TRUE(plan.order.empty());  // not looked for
  EXPECT_TRUE(plan.skyline.isPossible);
  EXPECT_FALSE(plan.reason.empty());
}

TEST(PlanSolution, RefusesWhatDoesNotFit) {
  korvex::Model model;
  ReadPlate(20, model);
  const std::string skyline = StopText(model, Settings(EngineChoice::Skyline, 1000));
  EXPECT_NE(skyline.find("The solution does not fit into memory: the skyline takes "),
            std::string::npos)
      << skyline;
  EXPECT_NE(skyline.find("and it may take 0 GB."), std::string::npos) << skyline;
  EXPECT_NE(skyline.find("kvx renumber"), std::string::npos) << skyline;
  EXPECT_NE(skyline.find("--memory"), std::string::npos) << skyline;
}

TEST(PlanSolution, SaysWhereThereIsNoSparseEngine) {
  if (HasSparseEngine()) GTEST_SKIP() << "there is one";
  korvex::Model model;
  ReadPlate(3, model);
  EXPECT_NE(StopText(model, Settings(EngineChoice::Sparse)).find(NoSparseEngine),
            std::string::npos);
  EXPECT_EQ(StopText(model, Settings(EngineChoice::Auto)), "");
}

TEST(PlanSolution, StopsAsARunDoes) {
  korvex::Model model;
  ReadPlate(3, model);
  model.Tables.NodalRestraints[0].node = 99;
  EXPECT_NE(StopText(model, Settings(EngineChoice::Auto)), "");
}

TEST_F(PlanSparse, RefusesWhatDoesNotFitAnywhere) {
  korvex::Model model;
  ReadPlate(20, model);
  const korvex::test::TempFolder folder;
  const std::string none =
      StopText(model, Settings(EngineChoice::Auto, 1000, folder.Path().u8string()));
  EXPECT_NE(none.find("the skyline takes"), std::string::npos) << none;
  EXPECT_NE(none.find("the sparse engine takes"), std::string::npos) << none;
  EXPECT_NE(none.find("with its factors out of core"), std::string::npos) << none;
  EXPECT_EQ(none.find("--out-of-core"), std::string::npos) << none;  // it was given
}

// The sparse engine was asked for: the skyline is the way out where it fits, else with its nodes in
// another order.
TEST_F(PlanSparse, NamesTheSkylineThatWouldHelp) {
  korvex::Model model;
  ReadPlate(4, model);
  SolutionPlan plan;
  PlanSolution(model, 1, Settings(EngineChoice::Sparse), {}, plan);
  ASSERT_LT(plan.skyline.bytes, plan.sparse.bytes);
  const std::string fits = StopText(model, Settings(EngineChoice::Sparse, plan.skyline.bytes));
  EXPECT_NE(fits.find(" The skyline fits: --engine skyline."), std::string::npos) << fits;
  EXPECT_EQ(fits.find("kvx renumber"), std::string::npos) << fits;
  const std::string none = StopText(model, Settings(EngineChoice::Sparse, 1000));
  EXPECT_EQ(none.find("The skyline fits"), std::string::npos) << none;
  EXPECT_NE(none.find("kvx renumber"), std::string::npos) << none;
}

// Memory for the out-of-core factorisation, but no folder: that is the way out.
TEST_F(PlanSparse, NamesTheFolderThatWouldHelp) {
  korvex::Model model;
  ReadPlate(60, model);
  SolutionPlan plan;
  PlanSolution(model, 1, Settings(EngineChoice::Sparse), {}, plan);
  ASSERT_LT(plan.outOfCore.bytes, plan.sparse.bytes);
  const std::string stop =
      StopText(model, Settings(EngineChoice::Sparse, plan.outOfCore.bytes + 1000));
  EXPECT_NE(stop.find("--out-of-core DIR"), std::string::npos) << stop;
}

// 61,206 equations: neither engine is faster by far, so that auto looks at both.
TEST_F(PlanSparse, TakesTheFasterOfBothAndWhatFits) {
  korvex::Model model;
  ReadPlate(100, model);
  SolutionPlan plan;
  PlanSolution(model, 1, Settings(EngineChoice::Auto), {}, plan);
  EXPECT_EQ(plan.engine == EngineChoice::Skyline, plan.skyline.seconds <= plan.sparse.seconds);
  EXPECT_EQ(plan.order.size(), 101U * 100U);  // without the clamped ones

  // less than the skyline takes, as much as the sparse engine takes
  ASSERT_LT(plan.sparse.bytes, plan.skyline.bytes);
  SolutionPlan tight;
  PlanSolution(model, 1, Settings(EngineChoice::Auto, plan.sparse.bytes), {}, tight);
  EXPECT_EQ(tight.engine, EngineChoice::Sparse);
  EXPECT_NE(tight.reason.find("The skyline does not fit: it takes"), std::string::npos)
      << tight.reason;
}

// The prediction of memory is no less than what is taken, and less than three times it; times
// differ between machines and are not compared. Out of core: the same solution, no files left.
TEST_F(PlanSparse, PredictsMemoryAndSolvesOutOfCore) {
  korvex::Model model;
  ReadPlate(40, model);
  const korvex::test::TempFolder folder;
  SolutionPlan plan, outPlan;
  SolutionRecord record, outRecord;
  std::vector<std::vector<double>> u, outU;
  Solve(model, Settings(EngineChoice::Sparse), plan, record, u);
  Solve(model, Settings(EngineChoice::Sparse, 0, folder.Path().u8string()), outPlan, outRecord,
        outU);
  EXPECT_TRUE(outPlan.isOutOfCore);
  EXPECT_TRUE(outRecord.isOutOfCore);
  EXPECT_GE(plan.sparse.bytes, record.bytes);
  EXPECT_LE(plan.sparse.bytes, 3 * record.bytes);
  EXPECT_GE(outPlan.outOfCore.bytes, outRecord.bytes);
  EXPECT_LT(outRecord.bytes, record.bytes);
  EXPECT_GT(outRecord.diskBytes, 0U);
  EXPECT_GE(outPlan.outOfCore.diskBytes, outRecord.diskBytes);
  EXPECT_EQ(std::filesystem::directory_iterator(folder.Path()),
            std::filesystem::directory_iterator());
  double largest = 0.0, difference = 0.0;
  for (std::size_t i = 0; i < u[0].size(); ++i) {
    largest = std::max(largest, std::abs(u[0][i]));
    difference = std::max(difference, std::abs(u[0][i] - outU[0][i]));
  }
  EXPECT_LE(difference, record.loads[0].condition * 1e-14 * largest);
}

// Interrupted while its factors lie on the disk: nothing stays there.
TEST_F(PlanSparse, LeavesNoFilesWhereItIsInterrupted) {
  struct Interruption {};
  korvex::Model model;
  ReadPlate(10, model);
  const korvex::test::TempFolder folder;
  const EngineSettings settings = Settings(EngineChoice::Sparse, 0, folder.Path().u8string());
  SolutionPlan plan;
  PlanSolution(model, 1, settings, {}, plan);
  for (const double end : {0.01, 0.1, 0.5, 0.9, 1.0}) {
    std::vector<std::vector<double>> loads{model.LoadVector}, displacements;
    SolutionRecord record;
    const auto share = [&](double done) {
      if (done >= end) throw Interruption();
    };
    EXPECT_THROW(SolveTogether(model, loads, settings, plan, share, displacements, record),
                 Interruption);
    EXPECT_EQ(std::filesystem::directory_iterator(folder.Path()),
              std::filesystem::directory_iterator());
  }
}

// Where the process ends within a call that nobody can watch, the call's guard removes the factors:
// of the analysis, the factorisation and each of two solutions.
TEST_F(PlanSparse, LeavesItsFilesToTheGuard) {
  struct Interruption {};
  korvex::Model model;
  ReadPlate(10, model);
  const korvex::test::TempFolder folder;
  EngineSettings settings = Settings(EngineChoice::Sparse, 0, folder.Path().u8string());
  int planned = 0, calls = 0, last = 0;
  settings.guard = [&](const auto& call, const auto&) {
    ++planned;
    call();
  };
  SolutionPlan plan;
  PlanSolution(model, 1, settings, {}, plan);
  EXPECT_EQ(planned, 1);  // the order
  settings.guard = [&](const auto& call, const auto& cleanUp) {
    call();
    if (calls++ < last) return;
    cleanUp();
    EXPECT_EQ(std::filesystem::directory_iterator(folder.Path()),
              std::filesystem::directory_iterator());
    throw Interruption();
  };
  for (; last < 4; ++last) {
    calls = 0;
    std::vector<std::vector<double>> loads{model.LoadVector}, displacements;
    SolutionRecord record;
    EXPECT_THROW(SolveTogether(model, loads, settings, plan, {}, displacements, record),
                 Interruption);
    EXPECT_EQ(calls, last + 1);
  }
}

}  // namespace
}  // namespace kvx::test
