// Nodes at the same place, and those that elements join there.
#include "check/coincident_nodes.h"

#include <gtest/gtest.h>

#include "check/read_checked.h"
#include "support/model_text.h"

namespace kvx {
namespace {

using Numbers = std::vector<std::int32_t>;

// Nodes on the x axis, and beams between pairs of them.
CheckedModel MakeBeams(const std::vector<double>& x, const std::vector<std::array<int, 2>>& pairs) {
  korvex::test::ModelText text;
  for (const double at : x) text.nodes.push_back({at, 0.0, 0.0});
  for (const auto& pair : pairs) {
    korvex::test::ModelText::Beam beam;
    beam.node1 = pair[0];
    beam.node2 = pair[1];
    text.beams.push_back(beam);
  }
  CheckedModel model;
  ReadChecked(korvex::test::WriteModel(text), model);
  return model;
}

Numbers LeadersOf(const CheckedModel& model, const Numbers& nodes, double tolerance) {
  NodeTree tree;
  BuildNodeTree(model, nodes, tree);
  CoincidentNodes coincident;
  FindCoincidentNodes(model, tree, tolerance, coincident);
  return coincident.leaderOf;
}

TEST(CoincidentNodes, HaveTheLowestNodeOfTheirPlace) {
  const CheckedModel model = MakeBeams({7, 1, 7, 3, 1.01, 7}, {});
  EXPECT_EQ(LeadersOf(model, {5, 4, 3, 2, 1, 0}, 0.1), (Numbers{0, 1, 0, -1, 1, 0}));
  EXPECT_EQ(LeadersOf(model, {0, 1, 2, 3, 4, 5}, 0.001), (Numbers{0, -1, 0, -1, -1, 0}));
  // Nodes that are not in the tree are of no interest.
  EXPECT_EQ(LeadersOf(model, {2, 3, 4, 5}, 0.1), (Numbers{-1, -1, 2, -1, -1, 2}));
}

TEST(CoincidentNodes, AreNotNamedWhereElementsJoinThem) {
  const Numbers all{0, 1, 2, 3};
  EXPECT_EQ(LeadersOf(MakeBeams({5, 5, 5, 9}, {{0, 1}, {1, 2}, {2, 3}}), all, 0.1),
            (Numbers{-1, -1, -1, -1}));
  EXPECT_EQ(LeadersOf(MakeBeams({5, 5, 5, 9}, {{0, 1}, {2, 3}}), all, 0.1), (Numbers{0, 0, 0, -1}));
  // Nodes at two places are not joined by what lies between.
  EXPECT_EQ(LeadersOf(MakeBeams({5, 5, 9, 9}, {{0, 2}, {1, 3}, {2, 3}}), all, 0.1),
            (Numbers{0, 0, -1, -1}));
}

TEST(CoincidentNodes, AreTakenBackByPlace) {
  CoincidentNodes coincident;
  coincident.leaderOf = {0, 1, -1, 1, 0, 0};
  LeaveOutPlaces({2, 4}, coincident);
  EXPECT_EQ(coincident.leaderOf, (Numbers{-1, 1, -1, 1, -1, -1}));
}

}  // namespace
}  // namespace kvx
