// Nodes that become one, and what becomes of all that refers to them.
#include "mesh/merge_nodes.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <random>

#include "mesh/import_models.h"
#include "mesh/nearby_nodes.h"

namespace kvx::test {
namespace {

using Rows = std::vector<std::int32_t>;

std::vector<korvex::Node> OnLine(const std::vector<double>& places) {
  std::vector<korvex::Node> nodes;
  for (const double x : places) nodes.push_back({x, 0, 0});
  return nodes;
}

TEST(FindNearby, ChainsDoNotRunAway) {
  // Each is within 1 of the next; the first gathers the second alone.
  EXPECT_EQ(FindNearby(OnLine({0, 0.9, 1.8, 2.7}), 1.0), (Rows{0, 0, 2, 2}));
  // The order of the rows decides, not the place.
  EXPECT_EQ(FindNearby(OnLine({0.9, 0, 1.8, 2.7}), 1.0), (Rows{0, 0, 0, 3}));
  // A node goes to the first that gathers it, not to the nearest.
  EXPECT_EQ(FindNearby(OnLine({0, 1.5, 0.9}), 1.0), (Rows{0, 1, 0}));
}

TEST(FindNearby, TheLengthItselfIsNear) {
  EXPECT_EQ(FindNearby(OnLine({0, 1}), 1.0), (Rows{0, 0}));
  EXPECT_EQ(FindNearby(OnLine({0, 1.0000001}), 1.0), (Rows{0, 1}));
  EXPECT_EQ(FindNearby(OnLine({5, 5, 5 + 1e-15}), 0.0), (Rows{0, 0, 2}));
}

// Every pair, in the order of the rows.
Rows NearbyByPairs(const std::vector<korvex::Node>& nodes, double length) {
  Rows nearby(nodes.size(), -1);
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    if (nearby[i] >= 0) continue;
    nearby[i] = static_cast<std::int32_t>(i);
    for (std::size_t j = i + 1; j < nodes.size(); ++j) {
      const double dx = nodes[i].x - nodes[j].x, dy = nodes[i].y - nodes[j].y,
                   dz = nodes[i].z - nodes[j].z;
      if (nearby[j] < 0 && std::sqrt(dx * dx + dy * dy + dz * dz) <= length) nearby[j] = nearby[i];
    }
  }
  return nearby;
}

TEST(FindNearby, IsWhatAllPairsSay) {
  std::mt19937 random(5);
  for (const double middle : {0.0, 1e6, -3.3e7}) {
    std::uniform_real_distribution<double> place(-2.0, 2.0);
    std::vector<korvex::Node> nodes;
    for (int k = 0; k < 400; ++k) {
      nodes.push_back({middle + place(random), place(random), place(random) - middle});
    }
    for (const double length : {0.05, 0.4, 1.0, 10.0}) {
      EXPECT_EQ(FindNearby(nodes, length), NearbyByPairs(nodes, length)) << middle << ' ' << length;
    }
  }
}

TEST(FindNearby, TakesHugeAndTinyNumbers) {
  const double most = 1.7e308;
  EXPECT_EQ(FindNearby(OnLine({most, -most, most, 1e300, 1e-300, 0}), 1e-9),
            (Rows{0, 1, 0, 3, 4, 4}));
  EXPECT_EQ(FindNearby(OnLine({most, -most, 3}), 1e300), (Rows{0, 1, 2}));
  EXPECT_TRUE(FindNearby({}, 1.0).empty());
}

// Time for n nodes that `place` makes of their number.
template <typename Place>
double Seconds(int n, double length, const Place& place) {
  std::vector<korvex::Node> nodes;
  for (int k = 0; k < n; ++k) nodes.push_back(place(k));
  const auto begin = std::chrono::steady_clock::now();
  FindNearby(nodes, length);
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

TEST(FindNearby, HostilePlacesCostNoMore) {
  // Pairs would be 1e10 distances: over 10 s. What is here takes a few tenths.
  constexpr int Count = 100000;
  constexpr double Most = 5.0;
  EXPECT_LT(Seconds(Count, 1.0, [](int) { return korvex::Node{7, 7, 7}; }), Most);
  EXPECT_LT(Seconds(Count, 1e-9, [](int k) { return korvex::Node{1e-12 * k, 0, 0}; }), Most);
  EXPECT_LT(Seconds(Count, 1e-9,
                    [](int k) {
                      return korvex::Node{1e300 + 1e285 * k, 0, 0};
                    }),
            Most);
  // All in one plane of cells, one of them far away.
  EXPECT_LT(Seconds(Count, 0.1,
                    [](int k) {
                      return korvex::Node{k == 0 ? 1e300 : 1e-3 * k, 0, 0};
                    }),
            Most);
  // Just out of reach of each other in the same and the next cells.
  EXPECT_LT(Seconds(Count, 1.0,
                    [](int k) {
                      return korvex::Node{1.01 * (k % 50), 1.01 * (k / 50 % 50), 1.01 * (k / 2500)};
                    }),
            Most);
}

// Two squares that meet along x = 2 without sharing nodes, and a beam on each side of the seam.
ImportModel SplitPlate() {
  ImportModel model;
  for (const double x : {0.0, 2.0}) {
    AddNode(x, 0, 0, model);
    AddNode(x + 2, 0, 0, model);
    AddNode(x + 2, 2, 0, model);
    AddNode(x, 2, 0, model);
  }
  AddShell({0, 1, 2, 3}, model);
  AddShell({4, 5, 6, 7}, model);
  AddBeam(1, 2, model);
  AddBeam(7, 4, model);
  AddGroup("left", {0}, {0}, model);
  AddGroup("right", {1}, {1}, model);
  AddGroup("all", {0, 1}, {0, 1}, model);
  return model;
}

TEST(MergeNodes, MovesAllReferencesToTheNodeThatStays) {
  ImportModel model = SplitPlate();
  model.nodes[4].x = 2.001;  // its place does not count
  model.supports.push_back({"s", {{{1, 0, 0, 0, 0, 0}, 4}, {{0, 1, 0, 0, 0, 0}, 1}}});
  ImportCase loads;
  loads.forces = {{7, {1, 0, 0, 0, 0, 0}}, {5, {2, 0, 0, 0, 0, 0}}};
  loads.prescribed = {{7, 2, 0.5}, {6, 2, 0.25}};
  loads.pressures = {{1, {1, 2, 3}}};
  model.cases.push_back(loads);
  ImportReport report;
  const MergedNodes merged = MergeNodes(0.01, model, report);
  EXPECT_EQ(merged.merged, 2U);
  EXPECT_EQ(merged.triangles, 0U);
  EXPECT_EQ(merged.collapsed, 0U);
  ASSERT_EQ(model.nodes.size(), 6U);
  EXPECT_EQ(model.nodes[1].x, 2);
  EXPECT_EQ(model.nodeNumbers, (std::vector<std::int64_t>{1001, 1002, 1003, 1004, 1006, 1007}));
  EXPECT_EQ(model.shells[0].nodes, (std::array<std::int32_t, 4>{0, 1, 2, 3}));
  EXPECT_EQ(model.shells[1].nodes, (std::array<std::int32_t, 4>{1, 4, 5, 2}));
  EXPECT_EQ(model.beams[0].nodes, (std::array<std::int32_t, 2>{1, 2}));
  EXPECT_EQ(model.beams[1].nodes, (std::array<std::int32_t, 2>{2, 1}));
  EXPECT_EQ(model.groups[0].nodes, (Rows{0, 1, 2, 3}));
  EXPECT_EQ(model.groups[1].nodes, (Rows{1, 2, 4, 5}));
  EXPECT_EQ(model.groups[2].nodes, (Rows{0, 1, 2, 3, 4, 5}));
  EXPECT_EQ(model.supports[0].restraints[0].node, 1);
  EXPECT_EQ(model.cases[0].forces[0].node, 2);
  EXPECT_EQ(model.cases[0].forces[1].node, 4);
  EXPECT_EQ(model.cases[0].prescribed[0].node, 2);
  EXPECT_EQ(model.cases[0].prescribed[1].node, 5);
  EXPECT_EQ(model.cases[0].pressures[0].q, (std::array<double, 3>{1, 2, 3}));
  EXPECT_EQ(ListEntries(report), "");
}

TEST(MergeNodes, LeavesAModelWithoutNearNodesAsItIs) {
  ImportModel model = SplitPlate();
  model.shells[0].nodes = {0, 1, 2, 2};  // for the check of the model to find
  for (std::size_t k = 4; k < 8; ++k) model.nodes[k].z = 1;
  ImportReport report;
  const MergedNodes merged = MergeNodes(0.5, model, report);
  EXPECT_EQ(merged.merged + merged.triangles + merged.collapsed, 0U);
  EXPECT_EQ(model.nodes.size(), 8U);
  EXPECT_EQ(model.shells[0].nodes, (std::array<std::int32_t, 4>{0, 1, 2, 2}));
}

// A quadrilateral on which the pressure is 3 + x + 2 y, with node `gone` moved to the place of the
// one before it (for 0: the last).
ImportModel NarrowQuad(std::size_t gone) {
  ImportModel model;
  AddNode(0, 0, 0, model);
  AddNode(4, 0, 0, model);
  AddNode(4, 2, 0, model);
  AddNode(0, 2, 0, model);
  const korvex::Node to = model.nodes[(gone + 3) % 4];
  korvex::Node& from = model.nodes[gone];
  // Not quite at the place, so that the plane of the pressure stays known.
  from = {to.x + 0.02 * (from.x - to.x), to.y + 0.02 * (from.y - to.y), 0};
  AddShell({0, 1, 2, 3}, model);
  const auto q = [&](std::size_t k) { return 3 + model.nodes[k].x + 2 * model.nodes[k].y; };
  ImportCase loads;
  loads.pressures.push_back({0, {q(0), q(1), q(2)}});
  model.cases.push_back(loads);
  return model;
}

TEST(MergeNodes, QuadrilateralsBecomeTrianglesWithTheirPressures) {
  // Of two that merge the later corner goes, but of the last and the first the last. The triangles
  // by their corners, first to last; normals stay up.
  constexpr std::array<std::array<std::size_t, 3>, 4> Corners{
      {{0, 1, 2}, {0, 2, 3}, {0, 1, 3}, {0, 1, 2}}};
  for (std::size_t gone = 0; gone < 4; ++gone) {
    ImportModel model = NarrowQuad(gone);
    const ImportModel before = model;
    ImportReport report;
    const MergedNodes merged = MergeNodes(0.1, model, report);
    EXPECT_EQ(merged.merged, 1U);
    EXPECT_EQ(merged.triangles, 1U);
    EXPECT_EQ(merged.collapsed, 0U);
    ASSERT_EQ(CornersOf(model.shells[0]), 3U);
    for (std::size_t k = 0; k < 3; ++k) {
      const korvex::Node& at = before.nodes[Corners[gone][k]];
      const auto row = static_cast<std::size_t>(model.shells[0].nodes[k]);
      EXPECT_EQ(model.nodes[row].x, at.x) << gone << k;
      EXPECT_EQ(model.nodes[row].y, at.y) << gone << k;
      // The plane of the pressure; its values are up to 11.
      EXPECT_NEAR(model.cases[0].pressures[0].q[k], 3 + at.x + 2 * at.y, 1e-10) << gone << k;
    }
  }
}

TEST(MergeNodes, ElementsWithoutExtentGoAndAreReported) {
  ImportModel model;
  for (const double x : {0.0, 4.0, 4.0, 0.0}) AddNode(x, 0, 0, model);  // 3 on 0, 2 on 1
  AddNode(2, 5, 0, model);
  AddShell({0, 1, 2, 3}, model);  // a line
  AddShell({0, 4, 3, 1}, model);  // opposite corners at one place: folded onto itself
  AddShell({0, 1, 4}, model);     // stays
  AddShell({0, 3, 4}, model);     // a line
  AddBeam(1, 2, model);           // a point
  AddBeam(0, 4, model);           // stays
  AddGroup("all", {0, 1, 2, 3}, {0, 1}, model);
  ImportCase loads;
  loads.pressures = {{0, {1, 1, 1}}, {2, {2, 2, 2}}};
  loads.lineLoads = {{0, {1, 1}}, {1, {2, 2}}};
  model.cases.push_back(loads);
  ImportReport report;
  const MergedNodes merged = MergeNodes(0.1, model, report);
  EXPECT_EQ(merged.merged, 2U);
  EXPECT_EQ(merged.triangles, 0U);
  EXPECT_EQ(merged.collapsed, 4U);
  ASSERT_EQ(model.shells.size(), 1U);
  EXPECT_EQ(model.shells[0].number, 4003);
  EXPECT_EQ(model.shells[0].nodes, (std::array<std::int32_t, 4>{0, 1, 2, -1}));
  ASSERT_EQ(model.beams.size(), 1U);
  EXPECT_EQ(model.beams[0].number, 7002);
  EXPECT_EQ(model.groups[0].shells, (Rows{0}));
  EXPECT_EQ(model.groups[0].beams, (Rows{0}));
  ASSERT_EQ(model.cases[0].pressures.size(), 1U);
  EXPECT_EQ(model.cases[0].pressures[0].shell, 0);
  EXPECT_EQ(model.cases[0].pressures[0].q[0], 2);
  ASSERT_EQ(model.cases[0].lineLoads.size(), 1U);
  EXPECT_EQ(model.cases[0].lineLoads[0].element, 0);
  EXPECT_EQ(model.cases[0].lineLoads[0].q[0], 2);
  const std::string reason =
      " | lost | it has no extent once its nodes are merged, and is left out with its loads | ";
  EXPECT_EQ(ListEntries(report), "CQUAD4" + reason + "2 | CQUAD4 4001\n" +  //
                                     "CTRIA3" + reason + "1 | CTRIA3 4004\n" + "CBAR" + reason +
                                     "1 | CBAR 7001\n");
}

TEST(MergeNodes, LeavesElementsThatLackANodeToTheCheck) {
  ImportModel model = SplitPlate();
  model.shells[1].nodes = {4, -1, 6, 7};
  model.beams[1].nodes = {7, -1};
  ImportReport report;
  MergeNodes(0.01, model, report);
  EXPECT_EQ(model.shells[1].nodes[1], -1);
  EXPECT_EQ(model.beams[1].nodes[1], -1);
  EXPECT_EQ(model.beams[1].nodes[0], 2);
}

}  // namespace
}  // namespace kvx::test
