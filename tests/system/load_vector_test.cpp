// The load vector: nodal forces, pressures, line loads, their sums and the order in which they are
// added, references that lead nowhere.
#include "system/load_vector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "beam/beam_line_load.h"
#include "report/stop.h"
#include "shell/shell_loads.h"
#include "support/expect_stop.h"

namespace korvex {
namespace {

// Two nodes and a beam along X, orientation Z, of length 2.
Model MakeModel() {
  Model model;
  model.Tables.NPOIN = 2;
  model.NEQ = 12;
  model.Tables.Nodes = {{0, 0, 0}, {2, 0, 0}};
  model.Tables.NELEM_B = 1;
  model.Tables.BeamNodes = {0, 1};
  model.BeamElements.resize(1);
  model.BeamElements[0].NodeJ = {2, 0, 0};
  model.BeamElements[0].RefPoint = {0, 0, 1};
  return model;
}

void AddForce(Model& model, const NodalForce& force) {
  model.Tables.NodalForces.push_back(force);
  ++model.Tables.NFOR;
}

void AddLoad(Model& model, const BeamLineLoad& load) {
  model.Tables.BeamLineLoads.push_back(load);
  ++model.Tables.NDL_B;
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

// Appends an element on `nodes` to its kind's tables.
template <std::size_t N>
void AddElement(const Model& model, const std::int32_t (&nodes)[N],
                std::vector<ShellElement<static_cast<std::int32_t>(N)>>& elements,
                std::vector<std::int32_t>& connectivity) {
  std::array<double, 3 * N> coordinates{};
  for (std::size_t k = 0; k < N; ++k) {
    const Node& node = model.Tables.Nodes[static_cast<std::size_t>(nodes[k])];
    coordinates[3 * k] = node.x;
    coordinates[3 * k + 1] = node.y;
    coordinates[3 * k + 2] = node.z;
    connectivity.push_back(nodes[k]);
  }
  elements.emplace_back();
  SetGeometry(elements.back(), coordinates.data(), static_cast<std::int32_t>(N), 1.0, 0.0, 1.0);
}

// Two squares of side 6 and, on their right, another one of two triangles, in the plane z = 0,
// facing up; and a beam of the same length.
//   4---5---6---7
//   | 0 | 1 |1/0|    Triangle 0 is 2-3-7, triangle 1 is 2-7-6.
//   0---1---2---3
Model MakePlates() {
  Model model;
  model.Tables.NPOIN = 8;
  model.NEQ = 48;
  for (const double y : {0.0, 6.0}) {
    for (const double x : {0.0, 6.0, 12.0, 18.0}) model.Tables.Nodes.push_back({x, y, 0.0});
  }
  AddElement(model, {0, 1, 5, 4}, model.Shell4Elements, model.Tables.Shell4Nodes);
  AddElement(model, {1, 2, 6, 5}, model.Shell4Elements, model.Tables.Shell4Nodes);
  AddElement(model, {2, 3, 7}, model.Shell3Elements, model.Tables.Shell3Nodes);
  AddElement(model, {2, 7, 6}, model.Shell3Elements, model.Tables.Shell3Nodes);
  model.Tables.NELEM_S_4ND = model.Tables.NELEM_S_3ND = 2;
  model.Tables.NELEM_B = 1;
  model.Tables.BeamNodes = {1, 2};
  model.BeamElements.resize(1);
  model.BeamElements[0].NodeI = {6, 0, 0};
  model.BeamElements[0].NodeJ = {12, 0, 0};
  model.BeamElements[0].RefPoint = {0, 0, 1};
  return model;
}

void AddLoad4(Model& model, const ShellSurfaceLoad& load) {
  model.Tables.Shell4SurfaceLoads.push_back(load);
  ++model.Tables.NDL_S_4ND;
}

void AddLoad3(Model& model, const ShellSurfaceLoad& load) {
  model.Tables.Shell3SurfaceLoads.push_back(load);
  ++model.Tables.NDL_S_3ND;
}

// The square of 36 under 2 puts 18 on each of nodes 1, 2, 6, 5. Triangle 0 of 18 under 3 puts 18 on
// each of 2, 3, 7; triangle 1 under -1 puts -6 on each of 2, 7, 6. Gauss abscissas of ten digits
// leave the square's shares off by some 1e-10 of them.
TEST(LoadVector, PressuresActAtTheNodesOfTheirElements) {
  Model model = MakePlates();
  AddLoad4(model, {1, {2, 2, 2}});
  AddLoad3(model, {0, {3, 3, 3}});
  AddLoad3(model, {1, {-1, -1, -1}});
  AssembleLoadVector(model);
  const std::array<double, 8> expected{0, 18, 30, 18, 0, 18, 12, 12};
  for (std::size_t i = 0; i < 48; ++i) {
    EXPECT_NEAR(model.LoadVector[i], i % 6 == 2 ? expected[i / 6] : 0.0, 1e-8) << i;
  }
}

TEST(LoadVector, PressureListedTwiceIsAppliedTwice) {
  for (int times = 1; times <= 2; ++times) {
    Model model = MakePlates();
    for (int i = 0; i < times; ++i) {
      AddLoad4(model, {0, {4, 4, 4}});
      AddLoad3(model, {0, {1, 1, 1}});
    }
    AssembleLoadVector(model);
    EXPECT_NEAR(model.LoadVector[0 * 6 + 2], 36.0 * times, 1e-8);
    EXPECT_NEAR(model.LoadVector[3 * 6 + 2], 6.0 * times, 1e-8);
  }
}

// Adds `count` dofs of fe at the element's nodes.
void AddAt(const std::int32_t* nodes, const double* fe, std::size_t count, std::vector<double>& F) {
  for (std::size_t i = 0; i < count; ++i) {
    F[static_cast<std::size_t>(nodes[i / 6]) * 6 + i % 6] += fe[i];
  }
}

// Adds all loads of one kind: 0 forces, 1 on quadrilaterals, 2 on triangles, 3 on the beam. Each
// through its element routine, which the tests of the elements judge.
void AddKind(const Model& model, int kind, std::vector<double>& F) {
  std::array<double, 24> fe{};
  if (kind == 0) {
    for (const NodalForce& force : model.Tables.NodalForces) {
      AddAt(&force.node, force.components.data(), 6, F);
    }
  } else if (kind == 1) {
    for (const ShellSurfaceLoad& load : model.Tables.Shell4SurfaceLoads) {
      const auto e = static_cast<std::size_t>(load.element);
      Shell4LoadVector(model.Shell4Elements[e], load, fe.data());
      AddAt(&model.Tables.Shell4Nodes[4 * e], fe.data(), 24, F);
    }
  } else if (kind == 2) {
    for (const ShellSurfaceLoad& load : model.Tables.Shell3SurfaceLoads) {
      const auto e = static_cast<std::size_t>(load.element);
      Shell3LoadVector(model.Shell3Elements[e], load, fe.data());
      AddAt(&model.Tables.Shell3Nodes[3 * e], fe.data(), 18, F);
    }
  } else {
    for (const BeamLineLoad& load : model.Tables.BeamLineLoads) {
      BeamLineLoadVector(model.BeamElements[0], load, fe.data());
      AddAt(model.Tables.BeamNodes.data(), fe.data(), 12, F);
    }
  }
}

std::vector<double> AddUp(const Model& model, const std::array<int, 4>& kinds) {
  std::vector<double> F(48, 0.0);
  for (const int kind : kinds) AddKind(model, kind, F);
  return F;
}

// Twenty loads of each kind or more, their numbers between -1/6 and 1/6: thirds, so that no sum is
// exact. All kinds meet at node 2.
Model MakeLoadedPlates(unsigned seed) {
  Model model = MakePlates();
  std::mt19937 random(seed);
  const auto number = [&] { return (static_cast<double>(random()) / 4294967296.0 - 0.5) / 3.0; };
  for (std::int32_t i = 0; i < 20; ++i) {
    AddForce(model, {i % 8, {number(), number(), number(), number(), number(), number()}});
    AddForce(model, {2, {number(), number(), number(), number(), number(), number()}});
    AddLoad4(model, {i % 2, {number(), number(), number()}});
    AddLoad3(model, {i % 2, {number(), number(), number()}});
    AddLoad(model, {0, {number(), number()}});
  }
  return model;
}

// Rounding tells the order: each other order makes other bits, if not in every model.
TEST(LoadVector, LoadsAreAddedKindByKind) {
  std::array<int, 4> kinds{0, 1, 2, 3};
  do {
    int same = 0;
    for (unsigned seed = 1; seed <= 10; ++seed) {
      Model model = MakeLoadedPlates(seed);
      AssembleLoadVector(model);
      if (model.LoadVector == AddUp(model, kinds)) ++same;
    }
    if (std::is_sorted(kinds.begin(), kinds.end())) {
      EXPECT_EQ(same, 10);
    } else {
      EXPECT_LT(same, 10) << testing::PrintToString(kinds);
    }
  } while (std::next_permutation(kinds.begin(), kinds.end()));
}

TEST(LoadVector, LoadsOfAKindAreAddedInTableOrder) {
  int same4 = 0, same3 = 0;
  for (unsigned seed = 1; seed <= 10; ++seed) {
    Model model = MakeLoadedPlates(seed);
    AssembleLoadVector(model);
    EXPECT_EQ(model.LoadVector, AddUp(model, {0, 1, 2, 3}));
    Model reversed4 = model, reversed3 = model;
    std::reverse(reversed4.Tables.Shell4SurfaceLoads.begin(),
                 reversed4.Tables.Shell4SurfaceLoads.end());
    std::reverse(reversed3.Tables.Shell3SurfaceLoads.begin(),
                 reversed3.Tables.Shell3SurfaceLoads.end());
    if (model.LoadVector == AddUp(reversed4, {0, 1, 2, 3})) ++same4;
    if (model.LoadVector == AddUp(reversed3, {0, 1, 2, 3})) ++same3;
  }
  EXPECT_LT(same4, 10);
  EXPECT_LT(same3, 10);
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
  model.Tables.Shell4SurfaceLoads = {{7, {1, 2, 3}}};
  test::ExpectStop([&] { AssembleLoadVector(model); },
                   "Distributed load on four-node shell elements 0 refers to element 7; "
                   "there are 0 four-node shell elements.");
  model.Tables.Shell4SurfaceLoads.clear();
  model.Tables.Shell3SurfaceLoads = {{0, {1, 2, 3}}};
  test::ExpectStop([&] { AssembleLoadVector(model); },
                   "Distributed load on three-node shell elements 0 refers to element 0; "
                   "there are 0 three-node shell elements.");
}

// With elements of both kinds at hand: one past the last, and one before the first.
TEST(LoadVector, LoadBesideTheShellTablesStops) {
  for (const std::int32_t element : {-1, 2}) {
    const std::string number = std::to_string(element);
    Model quads = MakePlates();
    AddLoad4(quads, {1, {1, 2, 3}});
    AddLoad4(quads, {element, {1, 2, 3}});
    test::ExpectStop([&] { AssembleLoadVector(quads); },
                     "Distributed load on four-node shell elements 1 refers to element " + number +
                         "; there are 2 four-node shell elements.");
    Model triangles = MakePlates();
    AddLoad3(triangles, {1, {1, 2, 3}});
    AddLoad3(triangles, {element, {1, 2, 3}});
    test::ExpectStop([&] { AssembleLoadVector(triangles); },
                     "Distributed load on three-node shell elements 1 refers to element " + number +
                         "; there are 2 three-node shell elements.");
  }
}

// One element of the kind and two of the other.
TEST(LoadVector, ATableOfTheOtherKindDoesNotHelp) {
  Model quads = MakePlates();
  quads.Shell4Elements.resize(1);
  AddLoad4(quads, {1, {1, 2, 3}});
  test::ExpectStop([&] { AssembleLoadVector(quads); },
                   "Distributed load on four-node shell elements 0 refers to element 1; "
                   "there are 1 four-node shell elements.");
  Model triangles = MakePlates();
  triangles.Shell3Elements.resize(1);
  AddLoad3(triangles, {1, {1, 2, 3}});
  test::ExpectStop([&] { AssembleLoadVector(triangles); },
                   "Distributed load on three-node shell elements 0 refers to element 1; "
                   "there are 1 three-node shell elements.");
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
