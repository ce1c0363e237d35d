// What is said where a structure can move, or is too soft for the digits of a double: the words,
// and which node they name.
#include "engine/free_motion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "engine/solve_together.h"
#include "model/read_input_file.h"
#include "report/stop.h"
#include "support/good_models.h"
#include "support/shell_mesh.h"
#include "system/load_vector.h"
#include "system/profile.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

constexpr const char* Remedy =
    " Support it, or connect it; kvx check --deep names all nodes that move.";

void Read(const ModelText& text, korvex::Model& model) {
  korvex::ReadInputText(korvex::test::WriteModel(text), model);
  korvex::NumberEquations(model);
  korvex::AssembleLoadVector(model);
}

// What stops the sparse engine; empty: nothing.
std::string StopText(const ModelText& text) {
  korvex::Model model;
  Read(text, model);
  EngineSettings settings;
  settings.choice = EngineChoice::Sparse;
  std::vector<std::vector<double>> loads{model.LoadVector}, displacements;
  SolutionPlan plan;
  SolutionRecord record;
  try {
    PlanSolution(model, 1, settings, {}, plan);
    SolveTogether(model, loads, settings, plan, {}, displacements, record);
  } catch (const korvex::Stop& stop) {
    return stop.text;
  }
  return "";
}

// What stops a solution with this estimate; empty: nothing.
std::string StopText(const ModelText& text, const ConditionEstimate& estimate) {
  korvex::Model model;
  Read(text, model);
  FreeDofs dofs;
  ListFreeDofs(model.Tables, dofs);
  try {
    StopWhereModeIsFree(model, dofs, estimate);
  } catch (const korvex::Stop& stop) {
    EXPECT_EQ(stop.kind, korvex::StopKind::Notice);
    return stop.text;
  }
  return "";
}

void AddBeam(int node1, int node2, int material, ModelText& model) {
  ModelText::Beam beam;
  beam.node1 = node1;
  beam.node2 = node2;
  beam.material = material;
  beam.BeamSecType = korvex::BeamSecTypeC;
  model.beams.push_back(beam);
}

// Beams along x between two clamped ends, of which the one in the middle is stiffer by `ratio`.
ModelText MakeStiffMiddle(double ratio) {
  ModelText model;
  model.materials = {{2.1e5, 0.3, 0.0}, {2.1e5 * ratio, 0.3, 0.0}};
  model.cSections = {{50.0, 5.0}};
  for (int i = 0; i <= 3; ++i) model.nodes.push_back({1000.0 * i, 0.0, 0.0});
  for (int i = 0; i < 3; ++i) AddBeam(i, i + 1, i == 1 ? 1 : 0, model);
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}, {3, {1, 1, 1, 1, 1, 1}}};
  model.forces.push_back({1, korvex::test::SingleLoad(0, 1.0)});
  return model;
}

class FreeMotion : public testing::Test {
 protected:
  void SetUp() override {
    if (!HasSparseEngine()) GTEST_SKIP() << NoSparseEngine;
  }
};

// The middle moves as a body against ends that are 1e15 times softer: what is left of the pivots of
// its last node is rounding. The ends are strained by it, so it is no mechanism.
TEST_F(FreeMotion, TellsWhatIsTooSoftForADouble) {
  const std::string stop = StopText(MakeStiffMiddle(1e15));
  const std::string begin =
      "The structure is so soft somewhere that no digit of its displacements would be right: node ";
  EXPECT_EQ(stop.substr(0, begin.size()), begin) << stop;
  EXPECT_EQ(stop.find("can move"), std::string::npos) << stop;
  EXPECT_EQ(stop.substr(stop.size() - std::string(Remedy).size()), Remedy) << stop;
  EXPECT_EQ(StopText(MakeStiffMiddle(1e6)), "");
}

// With a node that no element holds, both are told apart.
TEST_F(FreeMotion, TellsWhatCanMoveBeforeWhatIsSoft) {
  ModelText text = MakeStiffMiddle(1e15);
  text.nodes.push_back({5.0, 5.0, 5.0});
  text.restraints.push_back({4, {1, 1, 1, 1, 1, 0}});
  const std::string stop = StopText(text);
  const std::string begin = "The structure can move: node 4 at (5, 5, 5) may turn about z";
  EXPECT_EQ(stop.substr(0, begin.size()), begin) << stop;
  const std::size_t soft = stop.find(". So soft that rounding errors are all: node ");
  ASSERT_NE(soft, std::string::npos) << stop;
  EXPECT_EQ(stop.find("node 4", soft), std::string::npos) << stop;
  EXPECT_LT(stop.find("node 1", soft), stop.size()) << stop;
  EXPECT_EQ(stop.substr(stop.size() - std::string(Remedy).size()), Remedy) << stop;
}

// A plate that is held along the side on the x axis, and may turn about it as about a hinge: nodes
// move along z, and turn about x. Also in space, where no axis is special, some node is named.
TEST_F(FreeMotion, NamesAHinge) {
  constexpr int N = 4;
  ModelText text =
      korvex::test::BuildGrid(N, N, korvex::test::Cells::Quads, [](double s, double t) {
        return korvex::test::Point3{800.0 * s, 600.0 * t, 0.0};
      });
  text.materials = {{2.1e5, 0.3, 0.0}};
  text.thicknesses = {10.0};
  for (int i = 0; i <= N; ++i) text.restraints.push_back({i, {1, 1, 1, 0, 0, 0}});
  text.forces.push_back({24, korvex::test::SingleLoad(2, 10.0)});
  const std::string stop = StopText(text);
  const std::string begin = "The structure can move: node ";
  EXPECT_EQ(stop.substr(0, begin.size()), begin) << stop;
  EXPECT_TRUE(stop.find("may move along z") != std::string::npos ||
              stop.find("may turn about x") != std::string::npos)
      << stop;
  for (const char* way : {"move along x", "move along y", "turn about y", "turn about z", "soft"}) {
    EXPECT_EQ(stop.find(way), std::string::npos) << stop;
  }
  // The node opposite holds it.
  text.restraints.push_back({24, {0, 0, 1, 0, 0, 0}});
  EXPECT_EQ(StopText(text), "");
}

// A factorisation whose pivots are not 0 by roundings alone is found out by the estimate's mode.
TEST_F(FreeMotion, TellsOfAModeWithoutFiniteNumbers) {
  ConditionEstimate estimate;
  estimate.value = std::numeric_limits<double>::infinity();
  estimate.mode.assign(12, 1.0);  // of the two nodes that are free
  estimate.mode[7] = std::nan("");
  const std::string expected =
      std::string("The structure can move: the factorisation has numbers that are not finite.") +
      Remedy;
  EXPECT_EQ(StopText(MakeStiffMiddle(1.0), estimate), expected);
  estimate.mode[7] = -std::numeric_limits<double>::infinity();
  EXPECT_EQ(StopText(MakeStiffMiddle(1.0), estimate), expected);
  estimate.value = std::nan("");
  EXPECT_EQ(StopText(MakeStiffMiddle(1.0), estimate), expected);
  estimate.value = 1e6;  // not looked at
  EXPECT_EQ(StopText(MakeStiffMiddle(1.0), estimate), "");
}

// Without supports it may move along y as a whole: that strains nothing. Node 1 goes farthest in
// the mode, by the last digits.
TEST_F(FreeMotion, NamesWhatMovesFarthestInTheMode) {
  ModelText text = MakeStiffMiddle(1.0);
  text.restraints.clear();
  ConditionEstimate estimate;
  estimate.value = 1e10;
  estimate.mode.assign(24, 0.0);
  for (std::size_t node = 0; node < 4; ++node) estimate.mode[6 * node + 1] = -1.0;
  estimate.mode[7] -= 1e-15;
  EXPECT_EQ(
      StopText(text, estimate),
      std::string("The structure can move: node 1 at (1000, 0, 0) may move along y.") + Remedy);
  estimate.mode[7] = -1.5;  // it bends: slender, and no mechanism
  EXPECT_EQ(StopText(text, estimate), "");
}

}  // namespace
}  // namespace kvx::test
