// The load vector: nodal forces, pressures, line loads, the order of their sum, and references to
// nodes and elements that do not exist.
#include "system/load_vector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "beam/beam_line_load.h"
#include "report/stop.h"
#include "shell/shell_loads.h"
#include "support/dof_names.h"
#include "support/expect_stop.h"
#include "support/model_text.h"

namespace korvex::test {
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
  AddForce(model, {0, SingleLoad(Fz, 0.5)});
  AssembleLoadVector(model);
  std::vector<double> expected(12, 0.0);
  expected[Equation(0, Fz)] = 3.0 + 3.0 + 0.5;
  expected[Equation(0, My)] = -1.0 - 1.0;
  expected[Equation(1, Fz)] = 3.0 + 3.0;
  expected[Equation(1, My)] = 1.0 + 1.0;
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

// Two squares of side 6 and, on their right, a third square of two triangles, in the plane z = 0
// with normals along Z; and a beam of the same length.
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

// The square, of area 36, under the pressure 2 gives 18 to each of its nodes 1, 2, 6, 5. Triangle
// 0, of area 18, under 3 gives 18 to each of 2, 3, 7. Triangle 1 under -1 gives -6 to each of 2,
// 7, 6. The Gauss abscissas have ten digits, so that the square's shares have errors of about
// 1e-10.
TEST(LoadVector, PressuresActAtTheNodesOfTheirElements) {
  Model model = MakePlates();
  AddLoad4(model, {1, {2, 2, 2}});
  AddLoad3(model, {0, {3, 3, 3}});
  AddLoad3(model, {1, {-1, -1, -1}});
  AssembleLoadVector(model);
  const std::array<double, 8> expected{0, 18, 30, 18, 0, 18, 12, 12};
  for (std::size_t i = 0; i < 48; ++i) {
    EXPECT_NEAR(model.LoadVector[i], i % 6 == Fz ? expected[i / 6] : 0.0, 1e-8) << i;
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
    EXPECT_NEAR(model.LoadVector[Equation(0, Fz)], 36.0 * times, 1e-8);
    EXPECT_NEAR(model.LoadVector[Equation(3, Fz)], 6.0 * times, 1e-8);
  }
}

// Adds `count` dofs of fe at the element's nodes.
void AddAt(const std::int32_t* nodes, const double* fe, std::size_t count, std::vector<double>& F) {
  for (std::size_t i = 0; i < count; ++i) {
    F[Equation(nodes[i / 6], i % 6)] += fe[i];
  }
}

// Adds the loads on shells of one kind.
template <std::size_t Nodes, typename Element>
void AddShellLoads(const ZeroedTable<ShellSurfaceLoad>& loads, const std::vector<Element>& elements,
                   const std::vector<std::int32_t>& connectivity,
                   void (*loadVector)(const Element&, const ShellSurfaceLoad&, double*),
                   std::vector<double>& F) {
  std::array<double, 6 * Nodes> fe{};
  for (const ShellSurfaceLoad& load : loads) {
    const auto e = static_cast<std::size_t>(load.element);
    loadVector(elements[e], load, fe.data());
    AddAt(&connectivity[Nodes * e], fe.data(), fe.size(), F);
  }
}

// The kinds of loads, in the order in which they are to be added.
enum class LoadKind { Forces, OnQuads, OnTriangles, OnBeams };
using LoadOrder = std::array<LoadKind, 4>;
constexpr LoadOrder InOrder{LoadKind::Forces, LoadKind::OnQuads, LoadKind::OnTriangles,
                            LoadKind::OnBeams};

// Adds all loads of one kind, each by its element's load routine, which has tests of its own.
void AddKind(const Model& model, LoadKind kind, std::vector<double>& F) {
  const ModelTables& tables = model.Tables;
  switch (kind) {
    case LoadKind::Forces:
      for (const NodalForce& force : tables.NodalForces) {
        AddAt(&force.node, force.components.data(), 6, F);
      }
      break;
    case LoadKind::OnQuads:
      AddShellLoads<4>(tables.Shell4SurfaceLoads, model.Shell4Elements, tables.Shell4Nodes,
                       Shell4LoadVector, F);
      break;
    case LoadKind::OnTriangles:
      AddShellLoads<3>(tables.Shell3SurfaceLoads, model.Shell3Elements, tables.Shell3Nodes,
                       Shell3LoadVector, F);
      break;
    case LoadKind::OnBeams:
      for (const BeamLineLoad& load : tables.BeamLineLoads) {
        std::array<double, 12> fe{};
        BeamLineLoadVector(model.BeamElements[0], load, fe.data());
        AddAt(tables.BeamNodes.data(), fe.data(), 12, F);
      }
  }
}

std::vector<double> AddUp(const Model& model, const LoadOrder& order) {
  std::vector<double> F(48, 0.0);
  for (const LoadKind kind : order) AddKind(model, kind, F);
  return F;
}

// Twenty or more loads of each kind. Their values are random numbers between -1/6 and 1/6, divided
// by three so that no sum is exact. Loads of all kinds act at node 2.
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

// The rounding errors depend on the order: every other order gives other bits, at least in some of
// the models.
TEST(LoadVector, LoadsAreAddedKindByKind) {
  LoadOrder order = InOrder;
  do {
    int same = 0;
    for (unsigned seed = 1; seed <= 10; ++seed) {
      Model model = MakeLoadedPlates(seed);
      AssembleLoadVector(model);
      if (model.LoadVector == AddUp(model, order)) ++same;
    }
    if (order == InOrder) {
      EXPECT_EQ(same, 10);
    } else {
      EXPECT_LT(same, 10) << testing::PrintToString(order);
    }
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST(LoadVector, LoadsOfAKindAreAddedInTableOrder) {
  int same4 = 0, same3 = 0;
  for (unsigned seed = 1; seed <= 10; ++seed) {
    Model model = MakeLoadedPlates(seed);
    AssembleLoadVector(model);
    EXPECT_EQ(model.LoadVector, AddUp(model, InOrder));
    Model reversed4 = model, reversed3 = model;
    std::reverse(reversed4.Tables.Shell4SurfaceLoads.begin(),
                 reversed4.Tables.Shell4SurfaceLoads.end());
    std::reverse(reversed3.Tables.Shell3SurfaceLoads.begin(),
                 reversed3.Tables.Shell3SurfaceLoads.end());
    if (model.LoadVector == AddUp(reversed4, InOrder)) ++same4;
    if (model.LoadVector == AddUp(reversed3, InOrder)) ++same3;
  }
  EXPECT_LT(same4, 10);
  EXPECT_LT(same3, 10);
}

TEST(LoadVector, AssemblingAgainStartsFromZero) {
  Model model = MakeModel();
  AddForce(model, {1, SingleLoad(Fx, 1.0)});
  AssembleLoadVector(model);
  AssembleLoadVector(model);
  EXPECT_EQ(model.LoadVector[Equation(1, Fx)], 1.0);
}

TEST(LoadVector, ForceOnAMissingNodeStops) {
  for (const std::int32_t node : {-1, 2}) {
    Model model = MakeModel();
    AddForce(model, {node, {}});
    ExpectStop([&] { AssembleLoadVector(model); },
               "Force 0 refers to node " + std::to_string(node) + "; there are 2 nodal points.");
  }
}

// A kind of shells: how a test loads them and takes some of them away, and their name in messages.
struct ShellKind {
  void (*addLoad)(Model& model, const ShellSurfaceLoad& load);
  void (*keepElements)(Model& model, std::size_t count);
  std::string name;
};

const ShellKind ShellKinds[]{
    {AddLoad4, [](Model& model, std::size_t count) { model.Shell4Elements.resize(count); },
     "four-node shell elements"},
    {AddLoad3, [](Model& model, std::size_t count) { model.Shell3Elements.resize(count); },
     "three-node shell elements"}};

// Expects the stop of load number `load` of a kind, on the missing element `element`.
void ExpectMissingShell(Model& model, const ShellKind& kind, int load, int element, int existing) {
  ExpectStop([&] { AssembleLoadVector(model); },
             "Distributed load on " + kind.name + " " + std::to_string(load) +
                 " refers to element " + std::to_string(element) + "; there are " +
                 std::to_string(existing) + " " + kind.name + ".");
}

TEST(LoadVector, LoadOnAMissingShellStops) {
  for (const ShellKind& kind : ShellKinds) {
    for (const int element : {0, 7}) {
      Model model = MakeModel();
      kind.addLoad(model, {element, {1, 2, 3}});
      ExpectMissingShell(model, kind, 0, element, 0);
    }
  }
}

// There are elements of both kinds. The references are one past the last and one before the first.
TEST(LoadVector, LoadBesideTheShellTablesStops) {
  for (const ShellKind& kind : ShellKinds) {
    for (const int element : {-1, 2}) {
      Model model = MakePlates();
      kind.addLoad(model, {1, {1, 2, 3}});
      kind.addLoad(model, {element, {1, 2, 3}});
      ExpectMissingShell(model, kind, 1, element, 2);
    }
  }
}

// There is one element of the kind and two of the other.
TEST(LoadVector, ATableOfTheOtherKindDoesNotHelp) {
  for (const ShellKind& kind : ShellKinds) {
    Model model = MakePlates();
    kind.keepElements(model, 1);
    kind.addLoad(model, {1, {1, 2, 3}});
    ExpectMissingShell(model, kind, 0, 1, 1);
  }
}

TEST(LoadVector, LoadOnAMissingBeamStops) {
  Model model = MakeModel();
  AddLoad(model, {0, {}});
  AddLoad(model, {1, {}});
  ExpectStop([&] { AssembleLoadVector(model); },
             "Distributed load on beam elements 1 refers to element 1; "
             "there are 1 beam elements.");
}

}  // namespace
}  // namespace korvex::test
