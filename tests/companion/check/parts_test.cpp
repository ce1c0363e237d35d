// The parts of a model, numbered by their lowest nodes.
#include "check/parts.h"

#include <gtest/gtest.h>

#include "check/read_checked.h"
#include "support/model_text.h"

namespace kvx {
namespace {

// Beams between the nodes of each pair; `nodes` nodes on a line.
CheckedModel MakeBeams(int nodes, const std::vector<std::array<int, 2>>& pairs) {
  korvex::test::ModelText text;
  text.materials = {{2e11, 0.3, 7850.0}};
  text.cSections = {{0.1, 0.01}};
  for (int k = 0; k < nodes; ++k) text.nodes.push_back({1.0 * k, 0.0, 0.0});
  for (const auto& pair : pairs) {
    korvex::test::ModelText::Beam beam;
    beam.node1 = pair[0];
    beam.node2 = pair[1];
    beam.BeamSecType = korvex::BeamSecTypeC;
    text.beams.push_back(beam);
  }
  CheckedModel model;
  ReadChecked(korvex::test::WriteModel(text), model);
  return model;
}

using Numbers = std::vector<std::int32_t>;

TEST(FindParts, NumbersThemByTheirLowestNodes) {
  // 5-1-4 and 0-3; node 2 stands alone, though it lies between the others.
  const CheckedModel model = MakeBeams(6, {{5, 4}, {3, 0}, {4, 1}, {1, 5}});
  Parts parts;
  FindParts(model, parts);
  EXPECT_EQ(parts.partOfNode, (Numbers{0, 1, -1, 0, 1, 1}));
  EXPECT_EQ(parts.nodeCounts, (Numbers{2, 3}));
  EXPECT_EQ(parts.elementCounts, (Numbers{1, 3}));
}

TEST(FindParts, LeavesOutElementsWhoseNodesAreNotKnown) {
  CheckedModel model = MakeBeams(4, {{0, 1}, {1, 2}, {2, 3}, {3, 4}, {-1, 0}});
  StateOf(model, korvex::Section::Beams, 1) = ElementState::Unusable;
  StateOf(model, korvex::Section::Beams, 2) = ElementState::Broken;  // connects its nodes
  Parts parts;
  FindParts(model, parts);
  EXPECT_EQ(parts.partOfNode, (Numbers{0, 0, 1, 1}));
  EXPECT_EQ(parts.elementCounts, (Numbers{1, 1}));
}

TEST(FindParts, FindsNoneInAnEmptyModel) {
  Parts parts;
  FindParts(CheckedModel{}, parts);
  EXPECT_TRUE(parts.partOfNode.empty());
  EXPECT_TRUE(parts.nodeCounts.empty());
}

}  // namespace
}  // namespace kvx
