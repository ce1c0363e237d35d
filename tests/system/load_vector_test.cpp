// The load vector: nodal forces, line loads, their sums, references that lead nowhere.
#include "system/load_vector.h"

#include <gtest/gtest.h>

#include "platform/stop_run.h"
#include "support/expect_stop.h"

namespace korvex {
namespace {

// Two nodes and a beam along X, orientation Z, of length 2.
Model MakeModel() {
  Model model;
  model.NPOIN = 2;
  model.NEQ = 12;
  model.Nodes = {{0, 0, 0}, {2, 0, 0}};
  model.NELEM_B = 1;
  model.BeamNodes = {0, 1};
  model.BeamElements.resize(1);
  model.BeamElements[0].NodeJ = {2, 0, 0};
  model.BeamElements[0].RefPoint = {0, 0, 1};
  return model;
}

void AddForce(Model& model, const NodalForce& force) {
  model.NodalForces.push_back(force);
  ++model.NFOR;
}

void AddLoad(Model& model, const BeamLineLoad& load) {
  model.BeamLineLoads.push_back(load);
  ++model.NDL_B;
}

TEST(LoadVector, WithoutLoadsIsZero) {
  Model model = MakeModel();
  AssembleLoadVector(model);
  EXPECT_EQ(model.LoadVector, std::vector<double>(12, 0.0));
  EXPECT_EQ(model.Displacements.size(), 12U);
}

TEST(LoadVector, ForcesOnOneNodeAddUp) {
  Model model = MakeModel();
  AddForce(model, {1, {1, 2, 3, 4, 5, 6}});
  AddForce(model, {1, {10, 20, 30, 40, 50, 60}});
  AssembleLoadVector(model);
  EXPECT_EQ(model.LoadVector, (std::vector<double>{0, 0, 0, 0, 0, 0, 11, 22, 33, 44, 55, 66}));
}

// q = 3 over L = 2: 3 at each node, and -1 and +1 about y (q L^2 / 12).
TEST(LoadVector, LoadListedTwiceIsAppliedTwice) {
  Model model = MakeModel();
  AddLoad(model, {0, {3.0, 3.0}});
  AddLoad(model, {0, {3.0, 3.0}});
  AddForce(model, {0, {0, 0, 0.5, 0, 0, 0}});
  AssembleLoadVector(model);
  const std::vector<double> expected{0, 0, 6.5, 0, -2, 0, 0, 0, 6, 0, 2, 0};
  for (std::size_t i = 0; i < 12; ++i) EXPECT_NEAR(model.LoadVector[i], expected[i], 1e-14) << i;
}

TEST(LoadVector, AssemblingAgainStartsFromZero) {
  Model model = MakeModel();
  AddForce(model, {1, {1, 0, 0, 0, 0, 0}});
  AssembleLoadVector(model);
  AssembleLoadVector(model);
  EXPECT_EQ(model.LoadVector[6], 1.0);
}

TEST(LoadVector, ForceOnAMissingNodeStops) {
  for (const std::int32_t node : {-1, 2}) {
    Model model = MakeModel();
    AddForce(model, {node, {}});
    test::ExpectStop(
        [&] { AssembleLoadVector(model); },
        "Force 0 refers to node " + std::to_string(node) + "; there are 2 nodal points.");
  }
}

TEST(LoadVector, LoadOnAMissingShellStops) {
  Model model = MakeModel();
  model.Shell4SurfaceLoads = {{7, {1, 2, 3}}};
  test::ExpectStop([&] { AssembleLoadVector(model); },
                   "Distributed load on four-node shell elements 0 refers to element 7; "
                   "there are 0 four-node shell elements.");
  model.Shell4SurfaceLoads.clear();
  model.Shell3SurfaceLoads = {{0, {1, 2, 3}}};
  test::ExpectStop([&] { AssembleLoadVector(model); },
                   "Distributed load on three-node shell elements 0 refers to element 0; "
                   "there are 0 three-node shell elements.");
}

TEST(LoadVector, LoadOnAMissingBeamStops) {
  Model model = MakeModel();
  AddLoad(model, {0, {}});
  AddLoad(model, {1, {}});
  test::ExpectStop([&] { AssembleLoadVector(model); },
                   "Distributed load on beam elements 1 refers to element 1; "
                   "there are 1 beam elements.");
}

}  // namespace
}  // namespace korvex
