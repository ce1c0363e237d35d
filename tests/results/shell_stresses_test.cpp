// The stress recovery of a model: which displacements each element gets, and at which points its
// corners are evaluated.
#include "results/shell_stresses.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "results/corner_stress.h"
#include "support/dof_names.h"
#include "support/run_stages.h"
#include "support/shell_shapes.h"
#include "support/solve_model.h"

namespace korvex {
namespace {

// Two quads and two triangles on seven nodes, numbered in no order. All displacements differ.
Model MakeModel() {
  Model model;
  model.Tables.NPOIN = 7;
  model.Tables.NELEM_S_4ND = 2;
  model.Tables.NELEM_S_3ND = 2;
  model.Shell4Elements = {test::PlaceShape(test::UnitSquare, test::InObliquePlane),
                          test::PlaceShape(test::DistortedQuad, test::InObliquePlane)};
  model.Tables.Shell4Nodes = {0, 1, 2, 3, 5, 2, 6, 0};
  model.Shell3Elements = {test::PlaceShape(test::ScaleneTriangle, test::InGlobalPlane),
                          test::PlaceShape(test::ScaleneTriangle, test::InObliquePlane)};
  model.Tables.Shell3Nodes = {3, 4, 5, 6, 1, 4};
  for (std::size_t i = 0; i < 42; ++i)
    model.Displacements.push_back(std::sin(static_cast<double>(i * i)));
  return model;
}

// The displacements of the nodes, in the order given.
template <std::size_t Count>
std::array<double, 6 * Count> Gather(const Model& model,
                                     const std::array<std::size_t, Count>& nodes) {
  std::array<double, 6 * Count> d{};
  for (std::size_t k = 0; k < Count; ++k) {
    for (std::size_t j = 0; j < 6; ++j)
      d[test::Equation(k, j)] = model.Displacements[test::Equation(nodes[k], j)];
  }
  return d;
}

TEST(ShellStresses, QuadsAreEvaluatedAtTheirCorners) {
  Model model = MakeModel();
  RecoverShellStresses(model);
  const std::array<std::array<std::size_t, 4>, 2> nodes{{{0, 1, 2, 3}, {5, 2, 6, 0}}};
  const std::array<std::array<double, 2>, 4> corners{
      {{-1.0, -1.0}, {1.0, -1.0}, {1.0, 1.0}, {-1.0, 1.0}}};
  for (std::size_t e = 0; e < 2; ++e) {
    const Shell4Element& element = model.Shell4Elements[e];
    const auto d = Gather(model, nodes[e]);
    for (std::size_t k = 0; k < 4; ++k) {
      StressVector top, bottom;
      Shell4CornerStress(element, top, bottom, d.data(), corners[k][0], corners[k][1]);
      EXPECT_EQ(element.NodeStressTop[k], top) << e << ' ' << k;
      EXPECT_EQ(element.NodeStressBottom[k], bottom) << e << ' ' << k;
    }
    for (std::size_t k = 1; k < 4; ++k)
      EXPECT_NE(element.NodeStressTop[k], element.NodeStressTop[0]) << e << ' ' << k;
  }
}

// All three corners of a triangle hold the stresses at its first corner.
TEST(ShellStresses, TrianglesAreEvaluatedAtTheirFirstCornerOnly) {
  Model model = MakeModel();
  RecoverShellStresses(model);
  const std::array<std::array<std::size_t, 3>, 2> nodes{{{3, 4, 5}, {6, 1, 4}}};
  for (std::size_t e = 0; e < 2; ++e) {
    const Shell3Element& element = model.Shell3Elements[e];
    const auto d = Gather(model, nodes[e]);
    StressVector top, bottom, elsewhere, unused;
    Shell3CornerStress(element, top, bottom, d.data(), {1.0, 0.0, 0.0});
    for (std::size_t k = 0; k < 3; ++k) {
      EXPECT_EQ(element.NodeStressTop[k], top) << e << ' ' << k;
      EXPECT_EQ(element.NodeStressBottom[k], bottom) << e << ' ' << k;
    }
    // Elsewhere in the triangle the stresses differ.
    for (const std::array<double, 3>& L :
         {std::array<double, 3>{0.0, 1.0, 0.0}, std::array<double, 3>{0.0, 0.0, 1.0},
          std::array<double, 3>{1.0 / 3.0, 1.0 / 3.0, 1.0 / 3.0}}) {
      Shell3CornerStress(element, elsewhere, unused, d.data(), L);
      EXPECT_NE(elsewhere, top) << e;
    }
  }
}

TEST(ShellStresses, AveragesAreLeftAlone) {
  Model model = MakeModel();
  model.Shell4Elements[0].AvgStressTop[2][test::TXY] = 5.0;
  model.Shell3Elements[0].AvgStressBottom[1][test::TXZ] = 6.0;
  RecoverShellStresses(model);
  EXPECT_EQ(model.Shell4Elements[0].AvgStressTop[2][test::TXY], 5.0);
  EXPECT_EQ(model.Shell3Elements[0].AvgStressBottom[1][test::TXZ], 6.0);
}

TEST(ShellStresses, ModelWithoutShells) {
  Model model;
  RecoverShellStresses(model);
  EXPECT_TRUE(model.Shell4Elements.empty());
}

TEST(ShellStresses, ThreadsChangeNoBit) {
  Model model;
  test::SolveModel(test::MakeStiffenedGrid(), model);
  ASSERT_GT(model.Shell4Elements.size(), 64U);  // more than a thread takes at once
  ASSERT_GT(model.Shell3Elements.size(), 64U);
  Model expected = model;
  RecoverShellStresses(expected);
  for (const int threads : {2, 3, 8}) {
    Model recovered = model;
    RecoverShellStresses(recovered, threads);
    for (std::size_t e = 0; e < model.Shell4Elements.size(); ++e) {
      const Shell4Element& shell = expected.Shell4Elements[e];
      EXPECT_EQ(recovered.Shell4Elements[e].NodeStressTop, shell.NodeStressTop) << e;
      EXPECT_EQ(recovered.Shell4Elements[e].NodeStressBottom, shell.NodeStressBottom) << e;
    }
    for (std::size_t e = 0; e < model.Shell3Elements.size(); ++e) {
      const Shell3Element& shell = expected.Shell3Elements[e];
      EXPECT_EQ(recovered.Shell3Elements[e].NodeStressTop, shell.NodeStressTop) << e;
      EXPECT_EQ(recovered.Shell3Elements[e].NodeStressBottom, shell.NodeStressBottom) << e;
    }
  }
}

}  // namespace
}  // namespace korvex
