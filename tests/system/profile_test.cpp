// The profile of the global stiffness matrix and its memory estimate.
#include "system/profile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "support/dof_names.h"

namespace korvex::test {
namespace {

// A model of `nodes` nodes without coordinates: the profile needs the connectivity alone.
Model MakeModel(std::int32_t nodes) {
  Model model;
  model.Tables.NPOIN = nodes;
  model.NEQ = nodes * DofsPerNode;
  return model;
}

void Build(Model& model) {
  BuildProfile(model);
  ComputeDiagonalAddresses(model.Stiffness);
}

double EstimateOf(std::int64_t skylineSize) {
  SkylineMatrix K;
  K.SkylineSize = skylineSize;
  return EstimateGigabytes(K);
}

TEST(Profile, DofListRunsNodeByNode) {
  const std::array<std::int32_t, 2> nodes{3, 1};
  std::array<std::int32_t, 12> g{};
  BuildDofList(nodes.data(), 2, g.data());
  // 6 x 3 = 18 and 6 x 1 = 6 are the first equations of the two nodes.
  EXPECT_EQ(g, (std::array<std::int32_t, 12>{18, 19, 20, 21, 22, 23, 6, 7, 8, 9, 10, 11}));
}

TEST(Profile, OneNodeWithoutElements) {
  Model model = MakeModel(1);
  Build(model);
  EXPECT_EQ(model.Stiffness.ColumnHeights, std::vector<std::int32_t>(6, 1));
  EXPECT_EQ(model.Stiffness.SkylineSize, 6);
}

// 8 bytes / 2^30. The decimal 7.450580596923828e-9 is the same double.
TEST(Profile, AnEntryIsTwoToTheMinusTwentySeventhOfAGigabyte) {
  EXPECT_EQ(EstimateOf(1), std::ldexp(1.0, -27));
  EXPECT_EQ(EstimateOf(1), 7.450580596923828e-9);
  EXPECT_EQ(EstimateOf(6), 6 * std::ldexp(1.0, -27));
}

// 2^27 doubles are 1 GB.
TEST(Profile, EstimateOfAGigabyte) { EXPECT_EQ(EstimateOf(134217728), 1.0); }

TEST(Profile, SizesBeyond32BitsAreEstimated) {
  EXPECT_EQ(EstimateOf(std::int64_t{134217728} * 100), 100.0);
}

TEST(Profile, SingleFourNodeShellIsATriangle) {
  Model model = MakeModel(4);
  model.Tables.NELEM_S_4ND = 1;
  model.Tables.Shell4Nodes = {0, 1, 2, 3};
  Build(model);
  std::vector<std::int32_t> heights(24);
  std::iota(heights.begin(), heights.end(), 1);
  EXPECT_EQ(model.Stiffness.ColumnHeights, heights);
  EXPECT_EQ(model.Stiffness.SkylineSize, 300);
}

TEST(Profile, SingleThreeNodeShellIsATriangle) {
  Model model = MakeModel(3);
  model.Tables.NELEM_S_3ND = 1;
  model.Tables.Shell3Nodes = {2, 0, 1};
  Build(model);
  EXPECT_EQ(model.Stiffness.SkylineSize, 18 * 19 / 2);
}

TEST(Profile, ElementsWithoutCommonNodesAreIndependentBlocks) {
  Model model = MakeModel(5);  // node 2 belongs to no element
  model.Tables.NELEM_B = 2;
  model.Tables.BeamNodes = {0, 1, 4, 3};
  Build(model);
  const std::int64_t block = 12 * 13 / 2;
  EXPECT_EQ(model.Stiffness.SkylineSize, 2 * block + 6);
  for (const std::size_t d : {Ux, Uy, Uz, Rx, Ry, Rz}) {
    EXPECT_EQ(model.Stiffness.ColumnHeights[Equation(2, d)], 1);
  }
  EXPECT_EQ(model.Stiffness.ColumnHeights[Equation(3, Ux)], 1);
}

// A column begins at the first dof of the lowest node that shares an element with its node.
TEST(Profile, ColumnsReachTheLowestNeighbour) {
  Model model = MakeModel(4);
  model.Tables.NELEM_B = 2;
  model.Tables.BeamNodes = {0, 3, 2, 3};
  Build(model);
  EXPECT_EQ(model.Stiffness.ColumnHeights[Equation(3, Ux)], 19);
  EXPECT_EQ(model.Stiffness.ColumnHeights[Equation(3, Rz)], 24);
  EXPECT_EQ(model.Stiffness.ColumnHeights[Equation(2, Ux)], 1);
}

// A quadrilateral 0-1-2-3, a triangle 3-2-4 on its edge and a beam 1-5. Nodes 0 to 3 reach back to
// node 0, node 4 to node 2, node 5 to node 1. A node that reaches back by b nodes has 36 b + 21
// entries: 36 (0 + 1 + 2 + 3 + 2 + 4) + 6 x 21 = 558.
TEST(Profile, KindsOfElementsRaiseTheSameColumns) {
  Model model = MakeModel(6);
  model.Tables.Shell4Nodes = {0, 1, 2, 3};
  model.Tables.Shell3Nodes = {3, 2, 4};
  model.Tables.BeamNodes = {1, 5};
  Build(model);
  EXPECT_EQ(model.Stiffness.ColumnHeights[Equation(3, Ux)], 19);
  EXPECT_EQ(model.Stiffness.ColumnHeights[Equation(4, Ux)], 13);
  EXPECT_EQ(model.Stiffness.ColumnHeights[Equation(5, Ux)], 25);
  EXPECT_EQ(model.Stiffness.SkylineSize, 558);
}

TEST(Profile, LoadsAndRestraintsDoNotCount) {
  Model model = MakeModel(2);
  model.Tables.NRN = 1;
  model.Tables.NodalRestraints = {{{1, 1, 1, 1, 1, 1}, 1}};
  model.Tables.NFOR = 1;
  model.Tables.NodalForces = {{1, {1, 1, 1, 1, 1, 1}}};
  Build(model);
  EXPECT_EQ(model.Stiffness.SkylineSize, 12);
}

TEST(Profile, NoNodesNoColumns) {
  Model model = MakeModel(0);
  Build(model);
  EXPECT_TRUE(model.Stiffness.ColumnHeights.empty());
  EXPECT_EQ(model.Stiffness.SkylineSize, 0);
}

}  // namespace
}  // namespace korvex::test
