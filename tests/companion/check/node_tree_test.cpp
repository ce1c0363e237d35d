// The tree finds the nodes that a comparison with all nodes finds, whatever the places are.
#include "check/node_tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "support/good_models.h"

namespace kvx::test {
namespace {

using Numbers = std::vector<std::int32_t>;

CheckedModel MakeNodes(std::size_t count,
                       const std::function<korvex::Vector3(std::size_t)>& placeOf) {
  CheckedModel model;
  for (std::size_t k = 0; k < count; ++k) {
    const korvex::Vector3 place = placeOf(k);
    model.tables.Nodes.push_back({place[0], place[1], place[2]});
  }
  return model;
}

Numbers AllOf(const CheckedModel& model) {
  Numbers all(model.tables.Nodes.size());
  std::iota(all.begin(), all.end(), 0);
  return all;
}

Numbers NearByTree(const NodeTree& tree, const korvex::Vector3& point, double radius) {
  Numbers near;
  VisitNear(tree, point, radius, [&](const TreeItem& item) { near.push_back(item.node); });
  std::sort(near.begin(), near.end());
  return near;
}

Numbers NearByComparison(const CheckedModel& model, const korvex::Vector3& point, double radius) {
  Numbers near;
  for (const std::int32_t node : AllOf(model)) {
    const korvex::Vector3 place = PlaceOf(model.tables, node);
    if (korvex::Length(korvex::Subtract(place, point)) <= radius) near.push_back(node);
  }
  return near;
}

void ExpectTheSame(const CheckedModel& model, const std::vector<double>& radii) {
  NodeTree tree;
  BuildNodeTree(model, AllOf(model), tree);
  for (const std::int32_t node : AllOf(model)) {
    const korvex::Vector3 at = PlaceOf(model.tables, node);
    for (const double radius : radii) {
      ASSERT_EQ(NearByTree(tree, at, radius), NearByComparison(model, at, radius));
    }
  }
}

TEST(NodeTree, FindsWhatAComparisonFinds) {
  Dice dice = MakeDice(1);
  const auto roll = [&](double low, double high) { return Roll(dice, low, high); };
  for (const std::size_t count : {1U, 2U, 8U, 9U, 17U, 300U}) {
    // In space, on a line, in clumps of very different sizes, and on a coarse grid with equal
    // coordinates.
    ExpectTheSame(MakeNodes(count,
                            [&](std::size_t) {
                              return korvex::Vector3{roll(-1, 1), roll(-1, 1), roll(-1, 1)};
                            }),
                  {0.0, 0.1, 0.5, 4.0});
    ExpectTheSame(MakeNodes(count,
                            [&](std::size_t) {
                              return korvex::Vector3{3.0, roll(-1, 1), 0.0};
                            }),
                  {0.0, 0.01, 0.5});
    ExpectTheSame(MakeNodes(count,
                            [&](std::size_t k) {
                              const double size = std::pow(10.0, -static_cast<double>(k % 8));
                              return korvex::Vector3{size * roll(1, 2), size * roll(1, 2), size};
                            }),
                  {0.0, 1e-6, 1e-2});
    ExpectTheSame(MakeNodes(count,
                            [&](std::size_t k) {
                              return korvex::Vector3{static_cast<double>(k % 3),
                                                     static_cast<double>(k / 3 % 3), 0.0};
                            }),
                  {0.0, 1.0, 1.5});
  }
}

TEST(NodeTree, HoldsManyNodesAtOnePlace) {
  const CheckedModel model = MakeNodes(1000, [](std::size_t) {
    return korvex::Vector3{1.0, 2.0, 3.0};
  });
  NodeTree tree;
  BuildNodeTree(model, AllOf(model), tree);
  EXPECT_EQ(NearByTree(tree, {1.0, 2.0, 3.0}, 0.0).size(), 1000U);
  EXPECT_TRUE(NearByTree(tree, {1.0, 2.0, 3.1}, 0.05).empty());
}

TEST(NodeTree, LeavesOutPlacesThatAreNotKnown) {
  CheckedModel model = MakeNodes(20, [](std::size_t k) {
    return korvex::Vector3{static_cast<double>(k), 0.0, 0.0};
  });
  model.tables.Nodes[3].x = std::numeric_limits<double>::infinity();
  model.tables.Nodes[4].y = std::numeric_limits<double>::quiet_NaN();
  model.tables.Nodes[5].z = -1e300;
  model.lostRows[IndexOf(korvex::Section::Nodes)].insert(6);
  model.doubtfulRows[IndexOf(korvex::Section::Nodes)].insert(7);
  NodeTree tree;
  BuildNodeTree(model, AllOf(model), tree);
  EXPECT_EQ(tree.items.size(), 15U);
  EXPECT_EQ(NearByTree(tree, {5.0, 0.0, 0.0}, 3.5), (Numbers{2, 8}));
  BuildNodeTree(model, {3, 4}, tree);
  EXPECT_TRUE(NearByTree(tree, {0.0, 0.0, 0.0}, 1e9).empty());
}

}  // namespace
}  // namespace kvx::test
