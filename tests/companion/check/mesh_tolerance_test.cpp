// The tolerance that a check takes where none is given.
#include "check/mesh_tolerance.h"

#include <gtest/gtest.h>

#include <limits>

#include "check/read_checked.h"
#include "support/model_text.h"

namespace kvx {
namespace {

// A chain of beams over nodes at these places.
CheckedModel MakeChain(const std::vector<std::array<double, 3>>& places) {
  korvex::test::ModelText text;
  text.nodes = places;
  for (int k = 0; k + 1 < static_cast<int>(places.size()); ++k) {
    korvex::test::ModelText::Beam beam;
    beam.node1 = k;
    beam.node2 = k + 1;
    text.beams.push_back(beam);
  }
  CheckedModel model;
  ReadChecked(korvex::test::WriteModel(text), model);
  return model;
}

TEST(DefaultTolerance, IsAMillionthOfTheDiagonal) {
  // 5 = the diagonal of 3 x 4; in whichever direction the nodes run.
  EXPECT_DOUBLE_EQ(DefaultTolerance(MakeChain({{0, 0, 0}, {3, 0, 0}, {3, 4, 0}})), 5e-6);
  EXPECT_DOUBLE_EQ(DefaultTolerance(MakeChain({{3, 9, 0}, {3, 5, 0}, {0, 5, 0}})), 5e-6);
  EXPECT_EQ(DefaultTolerance(MakeChain({{1, 2, 3}, {1, 2, 3}})), 0.0);
  EXPECT_EQ(DefaultTolerance(CheckedModel{}), 0.0);
}

// One node at 1e9: its edges are two of five, the usual one has the length 1.
TEST(DefaultTolerance, IsNotMisledByANodeFarAway) {
  const CheckedModel model =
      MakeChain({{0, 0, 0}, {1, 0, 0}, {1e9, 0, 0}, {3, 0, 0}, {4, 0, 0}, {5, 0, 0}});
  EXPECT_DOUBLE_EQ(DefaultTolerance(model), 1e-3);
}

TEST(DefaultTolerance, LeavesOutPlacesThatAreNotKnown) {
  CheckedModel model = MakeChain({{0, 0, 0}, {3, 0, 0}, {3, 4, 0}, {7, 7, 7}, {8, 8, 8}});
  model.tables.Nodes[3].x = std::numeric_limits<double>::infinity();
  model.lostRows[IndexOf(korvex::Section::Nodes)].insert(4);
  EXPECT_DOUBLE_EQ(DefaultTolerance(model), 5e-6);
}

}  // namespace
}  // namespace kvx
