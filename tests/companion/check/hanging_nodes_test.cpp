// Which nodes lie on which elements; elements that a finding names say nothing.
#include "check/hanging_nodes.h"

#include <gtest/gtest.h>

#include <numeric>

#include "check/read_checked.h"
#include "support/model_text.h"

namespace kvx {
namespace {

using korvex::Section;

// A square of 4 x 4 below the triangle 0, 1, 4, whose nodes lie on one line: node 4 is on the
// square's edge.
CheckedModel MakeCollapsedTriangle() {
  korvex::test::ModelText text;
  text.nodes = {{0, 0, 0}, {4, 0, 0}, {4, -4, 0}, {0, -4, 0}, {1, 0, 0}};
  text.shells4 = {{{0, 3, 2, 1}, 0, 0}};
  text.shells3 = {{{0, 1, 4}, 0, 0}};
  CheckedModel model;
  ReadChecked(korvex::test::WriteModel(text), model);
  return model;
}

std::vector<HangingNode> HangingOf(const CheckedModel& model) {
  std::vector<std::int32_t> nodes(model.tables.Nodes.size());
  std::iota(nodes.begin(), nodes.end(), 0);
  NodeTree tree;
  BuildNodeTree(model, nodes, tree);
  HangingNodes hanging;
  EXPECT_TRUE(FindHangingNodes(model, tree, 1e-6, hanging));
  return hanging.all;
}

TEST(HangingNodes, HaveTheirElementAndEdge) {
  const std::vector<HangingNode> found = HangingOf(MakeCollapsedTriangle());
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].node, 4);
  EXPECT_EQ(found[0].section, Section::Shells4);
  EXPECT_EQ(found[0].row, 0);
  EXPECT_EQ(found[0].edge, 3);  // from its fourth node, 1, to its first, 0
}

TEST(HangingNodes, AreNotThoseOfElementsThatAFindingNames) {
  CheckedModel model = MakeCollapsedTriangle();
  StateOf(model, Section::Shells3, 0) = ElementState::Broken;
  EXPECT_TRUE(HangingOf(model).empty());
}

TEST(HangingNodes, DoNotLieOnElementsThatAFindingNames) {
  CheckedModel model = MakeCollapsedTriangle();
  StateOf(model, Section::Shells4, 0) = ElementState::Broken;
  EXPECT_TRUE(HangingOf(model).empty());
}

// A node of a fan of triangles is misplaced, so that one of them lies over the node 5. If another
// one of the fan is named, that is enough.
TEST(HangingNodes, DoNotLieOnNeighboursOfElementsThatAFindingNames) {
  korvex::test::ModelText text;
  text.nodes = {{9, 4, 0}, {0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {20, 0, 0}, {5, 4, 0}, {20, 4, 0}};
  text.shells3 = {{{1, 2, 0}, 0, 0}, {{2, 3, 0}, 0, 0}, {{4, 6, 5}, 0, 0}};
  CheckedModel misplaced;
  ReadChecked(korvex::test::WriteModel(text), misplaced);
  ASSERT_EQ(HangingOf(misplaced).size(), 2U);  // node 5 on the edge 0, 3, and 0 on the edge 5, 6
  StateOf(misplaced, Section::Shells3, 0) = ElementState::Broken;
  EXPECT_TRUE(HangingOf(misplaced).empty());
}

}  // namespace
}  // namespace kvx
