// The sparse engine against the skyline on models of random shape and on cases with known results.
#include "engine/solve_sparse.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>

#include "engine/solve_together.h"
#include "model/read_input_file.h"
#include "ranks/ranks.h"
#include "report/stop.h"
#include "sparse/free_dofs.h"
#include "sparse/sparse_factor.h"
#include "support/good_models.h"
#include "support/shell_mesh.h"
#include "support/temp_folder.h"
#include "system/load_vector.h"
#include "system/profile.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;
using Loads = std::vector<std::vector<double>>;

struct Solved {
  korvex::Model model;
  Loads loads, displacements;
  SolutionPlan plan;
  SolutionRecord record;
};

// As many loads as factors: that of the model, times each.
void Solve(const ModelText& text, EngineSettings settings, const std::vector<double>& factors,
           Solved& solved, const korvex::ShareCallback& share = {}) {
  solved.model = {};
  korvex::ReadInputText(korvex::test::WriteModel(text), solved.model);
  korvex::NumberEquations(solved.model);
  korvex::AssembleLoadVector(solved.model);
  for (const double factor : factors) {
    solved.loads.push_back(solved.model.LoadVector);
    for (double& force : solved.loads.back()) force *= factor;
  }
  Loads loads = solved.loads;
  PlanSolution(solved.model, loads.size(), settings, {}, solved.plan);
  SolveTogether(solved.model, loads, settings, solved.plan, share, solved.displacements,
                solved.record);
}

void SolveBy(EngineChoice choice, const ModelText& text, Solved& solved) {
  EngineSettings settings;
  settings.choice = choice;
  Solve(text, settings, {1.0}, solved);
}

// What stops the sparse engine; empty: nothing.
std::string StopText(const ModelText& text) {
  Solved solved;
  try {
    SolveBy(EngineChoice::Sparse, text, solved);
  } catch (const korvex::Stop& stop) {
    return stop.text;
  }
  return "";
}

double LargestOf(const std::vector<double>& v) {
  double largest = 0.0;
  for (const double value : v) largest = std::max(largest, std::fabs(value));
  return largest;
}

// A cantilever along x of `steps` equal beams with a tube section, clamped at node 0.
ModelText MakeCantilever(int steps, double length) {
  ModelText model;
  model.materials = {{2.1e5, 0.3, 0.0}};
  model.cSections = {{50.0, 5.0}};
  for (int i = 0; i <= steps; ++i) model.nodes.push_back({length * i / steps, 0.0, 0.0});
  for (int i = 0; i < steps; ++i) {
    ModelText::Beam beam;
    beam.node1 = i;
    beam.node2 = i + 1;
    beam.BeamSecType = korvex::BeamSecTypeC;
    model.beams.push_back(beam);
  }
  model.restraints.push_back({0, {1, 1, 1, 1, 1, 1}});
  return model;
}

class SolveSparse : public testing::Test {
 protected:
  void SetUp() override {
    if (!HasSparseEngine()) GTEST_SKIP() << NoSparseEngine;
  }
};

// Each solution is off by no more than its backward error times the condition. Support forces are
// differences of larger products and lose as many digits.
TEST_F(SolveSparse, AgreesWithTheSkylineOnRandomModels) {
  for (std::uint32_t seed = 0; seed < 40; ++seed) {
    SCOPED_TRACE(seed);
    const ModelText text = MakeGoodModel(seed);
    Solved skyline, sparse;
    SolveBy(EngineChoice::Skyline, text, skyline);
    SolveBy(EngineChoice::Sparse, text, sparse);
    const std::vector<double>& u = sparse.displacements[0];
    std::vector<double> difference = skyline.displacements[0];
    for (std::size_t i = 0; i < u.size(); ++i) difference[i] -= u[i];
    const LoadQuality& quality = sparse.record.loads[0];
    const double backwardError = quality.backwardError + skyline.record.loads[0].backwardError;
    EXPECT_LE(LargestOf(difference), quality.condition * backwardError * LargestOf(u));
    EXPECT_LT(quality.backwardError, 1e-14);
    EXPECT_LT(quality.residual, 1e-14);
    EXPECT_LT(skyline.record.loads[0].residual, 1e-13);
    EXPECT_LT(quality.digitsLost, 13.0);
    FreeDofs dofs;
    ListFreeDofs(sparse.model.Tables, dofs);
    double force = 0.0, off = 0.0;  // as displacements of fixed dofs
    for (const std::int32_t fixed : dofs.fixed) {
      const auto i = static_cast<std::size_t>(fixed);
      force = std::max(force, std::fabs(u[i]));
      off = std::max(off, std::fabs(difference[i]));
    }
    EXPECT_GT(force, 0.0);
    EXPECT_LE(off, std::max(1e-9, 1e-13 * quality.condition) * force);
  }
}

// BLAS on several threads adds in another order: off by no more than the backward errors times the
// condition.
TEST_F(SolveSparse, AgreesOnAnyNumberOfThreads) {
  const ModelText text = MakeGoodModel(3);
  EngineSettings settings;
  settings.choice = EngineChoice::Sparse;
  Solved one;
  Solve(text, settings, {1.0, 5.0}, one);
  for (const int threads : {2, 3}) {
    SCOPED_TRACE(threads);
    settings.threads = threads;
    Solved several;
    Solve(text, settings, {1.0, 5.0}, several);
    for (std::size_t k = 0; k < 2; ++k) {
      const std::vector<double>& u = one.displacements[k];
      std::vector<double> difference = several.displacements[k];
      for (std::size_t i = 0; i < u.size(); ++i) difference[i] -= u[i];
      const LoadQuality& quality = one.record.loads[k];
      const double backwardError = quality.backwardError + several.record.loads[k].backwardError;
      EXPECT_LE(LargestOf(difference), quality.condition * backwardError * LargestOf(u));
    }
  }
}

// An axial force: the same as the skyline gives, and the support has the force itself.
TEST_F(SolveSparse, StretchesABar) {
  ModelText text = MakeCantilever(3, 3000.0);
  text.forces.push_back({3, korvex::test::SingleLoad(0, 1e4)});
  Solved skyline, sparse;
  SolveBy(EngineChoice::Skyline, text, skyline);
  SolveBy(EngineChoice::Sparse, text, sparse);
  for (std::size_t i = 0; i < 24; ++i) {
    EXPECT_NEAR(sparse.displacements[0][i], skyline.displacements[0][i],
                1e-12 * std::fabs(skyline.displacements[0][18]));
  }
  // The support force -1e4 as the displacement of the fixed dof.
  EXPECT_NEAR(sparse.displacements[0][0], 1e4 / 1e20, 1e-12 * 1e-16);
  EXPECT_EQ(sparse.record.freeEquations, 18);
  EXPECT_EQ(sparse.record.equations, 24);
}

// A force of 1e20 u on a fixed dof prescribes u: the free end follows as a rigid body.
TEST_F(SolveSparse, FollowsPrescribedDisplacements) {
  ModelText text = MakeCantilever(2, 2000.0);
  std::array<double, 6> forces{};
  forces[2] = 5e20;  // uz = 5
  forces[4] = 1e18;  // ry = 0.01: the tip goes down by 0.01 * 2000
  text.forces.push_back({0, forces});
  Solved sparse;
  SolveBy(EngineChoice::Sparse, text, sparse);
  const std::vector<double>& u = sparse.displacements[0];
  EXPECT_NEAR(u[2], 5.0, 1e-12);
  EXPECT_NEAR(u[8], 5.0 - 10.0, 1e-9);
  EXPECT_NEAR(u[14], 5.0 - 20.0, 1e-9);
  EXPECT_NEAR(u[16], 0.01, 1e-12);
}

TEST_F(SolveSparse, SolvesManyLoadsInBlocks) {
  ModelText text = MakeCantilever(4, 1000.0);
  text.forces.push_back({4, {10.0, 20.0, 30.0, 1e3, 2e3, 3e3}});
  std::vector<double> factors;
  for (int k = 0; k < 70; ++k) factors.push_back(k % 7 == 0 ? 0.0 : k);
  EngineSettings settings;
  settings.choice = EngineChoice::Sparse;
  Solved solved;
  Solve(text, settings, factors, solved);
  ASSERT_EQ(solved.displacements.size(), factors.size());
  for (std::size_t k = 0; k < factors.size(); ++k) {
    for (std::size_t i = 0; i < solved.displacements[k].size(); ++i) {
      EXPECT_NEAR(solved.displacements[k][i], factors[k] * solved.displacements[1][i],
                  1e-11 * factors[k] * LargestOf(solved.displacements[1]));
    }
    const LoadQuality& quality = solved.record.loads[k];
    EXPECT_EQ(quality.condition == 0.0, factors[k] == 0.0);
    EXPECT_EQ(quality.digitsLost == 0.0, factors[k] == 0.0);
    EXPECT_LT(quality.backwardError, 1e-14);
  }
}

TEST_F(SolveSparse, TakesWhatHasNoFreeDofNoLoadsOrNoNodes) {
  ModelText text = MakeCantilever(1, 100.0);
  text.restraints.push_back({1, {1, 1, 1, 1, 1, 1}});
  text.forces.push_back({1, korvex::test::SingleLoad(1, 1e20)});
  Solved solved;
  SolveBy(EngineChoice::Sparse, text, solved);
  EXPECT_EQ(solved.displacements[0][7], 1.0);
  // K(1, 7) u(7) = -12 E I / l^3: the support at node 0 gets it.
  EXPECT_GT(solved.displacements[0][1], 0.0);

  Solved none;
  EngineSettings settings;
  settings.choice = EngineChoice::Sparse;
  Solve(text, settings, {}, none);
  EXPECT_TRUE(none.displacements.empty());

  Solved empty;
  SolveBy(EngineChoice::Sparse, ModelText(), empty);
  EXPECT_TRUE(empty.displacements[0].empty());
}

// One dof: a spring of E A / l, 3e6, which the support gives way to by 3e6 / 1e20 in the skyline.
TEST_F(SolveSparse, SolvesOneEquation) {
  ModelText text = MakeCantilever(1, 100.0);
  text.restraints.push_back({1, {0, 1, 1, 1, 1, 1}});
  text.forces.push_back({1, korvex::test::SingleLoad(0, 1e3)});
  Solved skyline, sparse;
  SolveBy(EngineChoice::Skyline, text, skyline);
  SolveBy(EngineChoice::Sparse, text, sparse);
  EXPECT_EQ(sparse.record.freeEquations, 1);
  EXPECT_NEAR(sparse.displacements[0][6], skyline.displacements[0][6],
              1e-15 * skyline.displacements[0][6]);
}

TEST_F(SolveSparse, NamesABodyThatNothingHolds) {
  ModelText text = MakeCantilever(3, 1000.0);
  text.forces.push_back({3, korvex::test::SingleLoad(2, 1.0)});
  text.restraints[0].fixed = {1, 1, 1, 0, 1, 1};  // it may turn about its axis
  const std::string spinning = StopText(text);
  EXPECT_NE(spinning.find("may turn about x"), std::string::npos) << spinning;
  EXPECT_EQ(spinning.find("move along"), std::string::npos) << spinning;
  text.restraints.clear();
  const std::string flying = StopText(text);
  EXPECT_NE(flying.find("The structure can move: node "), std::string::npos) << flying;
  for (const char* way : {"move along x", "move along y", "move along z", "turn about x",
                          "turn about y", "turn about z"}) {
    EXPECT_NE(flying.find(way), std::string::npos) << way << ": " << flying;
  }
}

// Also where nothing loads it.
TEST_F(SolveSparse, NamesANodeWithoutElements) {
  ModelText text = MakeCantilever(2, 1000.0);
  text.nodes.push_back({5.0, 5.0, 5.0});
  text.restraints.push_back({3, {1, 1, 1, 1, 1, 0}});
  const std::string stop = StopText(text);
  EXPECT_NE(stop.find("node 3 at (5, 5, 5) may turn about z."), std::string::npos) << stop;
}

// Eight nodes without elements have 48 dofs: six are named.
TEST_F(SolveSparse, NamesNoMoreThanSix) {
  ModelText text = MakeCantilever(2, 1000.0);
  for (int i = 0; i < 8; ++i) text.nodes.push_back({5.0, 5.0, 5.0 * i});
  const std::string stop = StopText(text);
  EXPECT_NE(stop.find(", and 42 more."), std::string::npos) << stop;
}

// A slender chain of 400 beams is no mechanism, whatever its condition.
TEST_F(SolveSparse, SolvesALongChain) {
  ModelText text = MakeCantilever(400, 400000.0);
  text.forces.push_back({400, korvex::test::SingleLoad(2, 1.0)});
  Solved skyline, sparse;
  SolveBy(EngineChoice::Skyline, text, skyline);
  SolveBy(EngineChoice::Sparse, text, sparse);
  const LoadQuality& quality = sparse.record.loads[0];
  EXPECT_GT(quality.digitsLost, 6.0);
  EXPECT_NEAR(sparse.displacements[0][2402] / skyline.displacements[0][2402], 1.0,
              quality.condition * 1e-14);
}

TEST_F(SolveSparse, NamesAnElementThatIsNotFinite) {
  ModelText text = MakeCantilever(3, 1000.0);
  text.nodes[2] = text.nodes[1];
  const std::string
      expected = "The stiffness of the beam 1 is not finite. kvx check says where it is, and why.",
      stop = StopText(text);
  EXPECT_EQ(stop.substr(stop.size() - std::min(stop.size(), expected.size())), expected);
  // Another rank says which one it is.
  EXPECT_EQ(stop.size() > expected.size(), CountRanks() > 1 && stop.rfind("Rank ", 0) == 0) << stop;
}

// Each rank's part of the model is reported, too.
TEST_F(SolveSparse, ReportsTheShare) {
  ModelText text = MakeCantilever(4, 1000.0);
  text.forces.push_back({4, korvex::test::SingleLoad(2, 1.0)});
  EngineSettings settings;
  settings.choice = EngineChoice::Sparse;
  std::vector<double> shares{0.0};
  Solved solved;
  Solve(text, settings, {1.0}, solved, [&](double share) { shares.push_back(share); });
  EXPECT_EQ(shares.back(), 1.0);
  EXPECT_GT(shares.size(), 4U + (CountRanks() > 1 ? static_cast<std::size_t>(CountRanks()) : 0U));
  for (std::size_t i = 1; i < shares.size(); ++i) EXPECT_GE(shares[i], shares[i - 1]);
}

// At each report; the ranks are ready for the next solution then.
TEST_F(SolveSparse, CanBeInterrupted) {
  struct Interruption {};
  ModelText text = MakeCantilever(4, 1000.0);
  text.forces.push_back({4, korvex::test::SingleLoad(2, 1.0)});
  EngineSettings settings;
  settings.choice = EngineChoice::Sparse;
  int reports = 0;
  Solved whole;
  Solve(text, settings, {1.0}, whole, [&](double) { ++reports; });
  ASSERT_GT(reports, 0);
  for (int end = 0; end < reports; ++end) {
    int count = 0;
    const auto share = [&](double) {
      if (count++ == end) throw Interruption();
    };
    Solved ended;
    EXPECT_THROW(Solve(text, settings, {1.0}, ended, share), Interruption) << end;
  }
  Solved again;
  Solve(text, settings, {1.0}, again);
  EXPECT_NEAR(again.displacements[0][26], whole.displacements[0][26],
              1e-9 * std::fabs(whole.displacements[0][26]));  // uz of the free end
}

TEST_F(SolveSparse, StopsAtARestraintOfNoNode) {
  ModelText text = MakeCantilever(3, 1000.0);
  text.restraints.push_back({7, {1, 0, 0, 0, 0, 0}});
  EXPECT_NE(StopText(text), "");
}

}  // namespace
}  // namespace kvx::test
