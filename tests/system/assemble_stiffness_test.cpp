// The assembled system of whole models: element matrices in the skyline, supports, singular
// structures.
#include "system/assemble_stiffness.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "beam/beam_stiffness.h"
#include "shell/shell_stiffness.h"
#include "support/dof_names.h"
#include "support/run_stages.h"
#include "support/same_bits.h"
#include "support/solve_model.h"
#include "support/temp_folder.h"
#include "system/element_matrix.h"

namespace korvex::test {
namespace {

// Adds tubes of the first C section between these pairs of nodes.
void AddTubes(const std::array<std::array<int, 2>, 3>& nodes, ModelText& text) {
  for (const auto& n : nodes) {
    ModelText::Beam beam;
    beam.node1 = n[0];
    beam.node2 = n[1];
    beam.BeamSecType = BeamSecTypeC;
    text.beams.push_back(beam);
  }
}

// Three tubes along X between four nodes. The last tube runs from node 3 back to node 2.
ModelText MakeTubes() {
  ModelText text;
  text.materials = {{2e11, 0.3, 0.0}};
  text.cSections = {{0.15, 0.02}};
  text.nodes = {{0, 0, 0}, {1, 0, 0}, {2.5, 0, 0}, {4, 0, 0}};
  AddTubes({{{0, 1}, {1, 2}, {3, 2}}}, text);
  return text;
}

double Entry(const SkylineMatrix& K, std::size_t i, std::size_t j) {
  const std::size_t top = j + 1 - static_cast<std::size_t>(K.ColumnHeights[j]);
  return i < top ? 0.0 : K.Values[static_cast<std::size_t>(K.DiagonalAddress[j]) + (j - i)];
}

// A symmetric matrix in full; only its upper triangle is used.
using FullMatrix = std::vector<std::vector<double>>;

// Adds the matrices of all elements of a kind, in table order, pair of dofs by pair of dofs.
template <std::size_t Nodes, typename Element>
void AddElements(const std::vector<Element>& elements,
                 const std::vector<std::int32_t>& connectivity,
                 void (*stiffness)(const Element&, double*), FullMatrix& sum) {
  constexpr std::size_t n = 6 * Nodes;
  std::array<double, n * n> ke{};
  for (std::size_t e = 0; e < elements.size(); ++e) {
    stiffness(elements[e], ke.data());
    const auto equation = [&](std::size_t i) {
      return Equation(connectivity[e * Nodes + i / 6], i % 6);
    };
    for (std::size_t r = 0; r < n; ++r) {
      for (std::size_t c = r; c < n; ++c) {
        const std::size_t a = equation(r), b = equation(c);
        sum[std::min(a, b)][std::max(a, b)] += ke[r * n + c];
      }
    }
  }
}

// The sum over all elements: four-node shells, three-node shells, beams. `reversed`: in the reverse
// order of the kinds.
FullMatrix SumElements(const Model& model, bool reversed = false) {
  const auto n = static_cast<std::size_t>(model.NEQ);
  FullMatrix sum(n, std::vector<double>(n, 0.0));
  for (int i = 0; i < 3; ++i) {
    const int kind = reversed ? 2 - i : i;
    if (kind == 0)
      AddElements<4>(model.Shell4Elements, model.Tables.Shell4Nodes, Shell4Stiffness, sum);
    if (kind == 1)
      AddElements<3>(model.Shell3Elements, model.Tables.Shell3Nodes, Shell3Stiffness, sum);
    if (kind == 2) AddElements<2>(model.BeamElements, model.Tables.BeamNodes, BeamStiffness, sum);
  }
  return sum;
}

FullMatrix FillOut(const SkylineMatrix& K) {
  const std::size_t n = K.ColumnHeights.size();
  FullMatrix full(n, std::vector<double>(n, 0.0));
  for (std::size_t j = 0; j < n; ++j) {
    for (std::size_t i = 0; i <= j; ++i) full[i][j] = Entry(K, i, j);
  }
  return full;
}

// Every stored entry is the sum of the beams' entries at its two dofs, in table order.
TEST(AssembleStiffness, StiffnessIsTheSumOfTheBeams) {
  Model model;
  AssembleModel(MakeTubes(), model);
  EXPECT_EQ(model.NEQ, 24);
  EXPECT_EQ(FillOut(model.Stiffness), SumElements(model));
}

// Two quadrilaterals and two triangles round node 4, none of them along the global axes, and beams
// on the edges between them. Node 8 belongs to no element.
//   6---5---7
//   | 0 |\ 1|     The quadrilaterals are 2-4-5-6 and 0-1-4-2, the triangles 4-3-7 and 4-7-5.
//   2---4--3      Beams run from 4 to 5, from 2 to 4 and from 3 to 4.
//   | 1 |/
//   0---1
ModelText MakeMixed() {
  ModelText text;
  text.materials = {{2e11, 0.3, 0.0}, {7e10, 0.33, 0.0}};
  text.thicknesses = {0.01, 0.025};
  text.cSections = {{0.15, 0.02}};
  text.nodes = {{0, 0, 0},     {1.1, 0.1, 0.2}, {-0.1, 1, 0.1}, {2.1, 1.2, 0.3},  //
                {1, 1.1, 0.3}, {0.9, 2, 0.5},   {0, 2.1, 0.3},  {1.9, 1.9, 0.4},  //
                {7, 7, 7}};
  text.shells4 = {{{2, 4, 5, 6}, 0, 1}, {{0, 1, 4, 2}, 1, 0}};
  text.shells3 = {{{4, 3, 7}, 0, 0}, {{4, 7, 5}, 1, 1}};
  AddTubes({{{4, 5}, {2, 4}, {3, 4}}}, text);
  return text;
}

// The rounding errors depend on the order of the kinds: the reverse order gives other bits.
TEST(AssembleStiffness, StiffnessIsTheSumOfQuadrilateralsThenTrianglesThenBeams) {
  Model model;
  AssembleModel(MakeMixed(), model);
  EXPECT_EQ(model.NEQ, 54);
  EXPECT_EQ(FillOut(model.Stiffness), SumElements(model));
  EXPECT_NE(SumElements(model), SumElements(model, true));
}

// The skyline holds the upper triangle of ke: n x n, row-major, and nothing else.
void ExpectUpperTriangle(const SkylineMatrix& K, const double* ke, std::size_t n) {
  ASSERT_EQ(K.Values.size(), n * (n + 1) / 2);
  for (std::size_t j = 0; j < n; ++j) {
    const auto diagonal = static_cast<std::size_t>(K.DiagonalAddress[j]);
    for (std::size_t i = 0; i <= j; ++i) {
      EXPECT_EQ(K.Values[diagonal + (j - i)], ke[i * n + j]) << i << ' ' << j;
    }
  }
}

// A model for one shell, on the first three or on all of the four nodes.
ModelText MakeNodesForAShell() {
  ModelText text;
  text.materials = {{2e11, 0.3, 0.0}};
  text.thicknesses = {0.01};
  text.nodes = {{0, 0, 0}, {1.1, 0.1, 0.2}, {1, 1.1, 0.3}, {-0.1, 1, 0.1}};
  return text;
}

TEST(AssembleStiffness, SingleFourNodeShellFillsTheSkyline) {
  ModelText text = MakeNodesForAShell();
  text.shells4 = {{{0, 1, 2, 3}, 0, 0}};
  Model model;
  AssembleModel(text, model);
  std::array<double, 576> ke{};
  Shell4Stiffness(model.Shell4Elements[0], ke.data());
  ExpectUpperTriangle(model.Stiffness, ke.data(), 24);
}

TEST(AssembleStiffness, SingleThreeNodeShellFillsTheSkyline) {
  ModelText text = MakeNodesForAShell();
  text.nodes.pop_back();
  text.shells3 = {{{0, 1, 2}, 0, 0}};
  Model model;
  AssembleModel(text, model);
  std::array<double, 324> ke{};
  Shell3Stiffness(model.Shell3Elements[0], ke.data());
  ExpectUpperTriangle(model.Stiffness, ke.data(), 18);
}

// The third and the fourth corner are the same node. Of the 6 x 6 terms between the two corners,
// those of equal dofs are added to the diagonal once. The others are added to entries to which the
// corners' own blocks contribute as well.
TEST(AssembleStiffness, ShellThatRepeatsANode) {
  ModelText text = MakeMixed();
  text.shells4[0].nodes = {2, 4, 5, 5};
  Model model;
  AssembleModel(text, model);
  const FullMatrix full = FillOut(model.Stiffness);
  for (const auto& row : full) {
    for (const double value : row) ASSERT_TRUE(std::isfinite(value));
  }
  EXPECT_EQ(full, SumElements(model));
}

TEST(AssembleStiffness, SupportsComeAfterTheElements) {
  ModelText text = MakeTubes();
  text.restraints = {{0, {1, 1, 1, 1, 1, 0}}};
  Model model;
  AssembleModel(text, model);
  for (const std::size_t d : {Ux, Uy, Uz, Rx, Ry}) EXPECT_EQ(Entry(model.Stiffness, d, d), 1e20);
  EXPECT_NE(Entry(model.Stiffness, Rz, Rz), 1e20);
  // Entries beside the diagonal stay.
  EXPECT_NE(Entry(model.Stiffness, Equation(0, Ux), Equation(1, Ux)), 0.0);
}

// The six equations of a node without elements have zero pivots: 0 / 0, and no message.
TEST(AssembleStiffness, UnconnectedNodeGivesNonFiniteValues) {
  ModelText text = MakeTubes();
  text.nodes.push_back({9, 9, 9});
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  Model model;
  SolveModel(text, model);
  EXPECT_TRUE(std::isnan(model.Displacements[Equation(4, Ux)]));
  EXPECT_EQ(model.Displacements[Equation(3, Ux)], 0.0);
}

// A supported node without elements moves by its force divided by the penalty.
TEST(AssembleStiffness, SupportedNodeWithoutElements) {
  ModelText text;
  text.nodes = {{0, 0, 0}};
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{0, {1, 2, 3, 4, 5, 6}}};
  Model model;
  SolveModel(text, model);
  for (std::size_t d = 0; d < 6; ++d) {
    EXPECT_DOUBLE_EQ(model.Displacements[d], static_cast<double>(d + 1) / 1e20);
  }
}

TEST(AssembleStiffness, WithoutLoadsNothingMoves) {
  ModelText text = MakeTubes();
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  Model model;
  SolveModel(text, model);
  for (const double u : model.Displacements) EXPECT_EQ(u, 0.0);
}

// A tube without supports. Along its axis the pivot a - (-1) x (-a) is exactly zero.
TEST(AssembleStiffness, FreeStructureGivesNonFiniteValues) {
  ModelText text = MakeTubes();
  text.nodes.resize(2);
  text.beams.resize(1);
  text.forces = {{1, SingleLoad(Fx, 1.0)}};
  Model model;
  SolveModel(text, model);
  EXPECT_FALSE(std::isfinite(model.Displacements[Equation(0, Ux)]));
  EXPECT_FALSE(std::isfinite(model.Displacements[Equation(1, Ux)]));
}

// One free node, no elements: every pivot is zero.
TEST(AssembleStiffness, FreeNodeGivesNonFiniteValues) {
  ModelText text;
  text.nodes = {{0, 0, 0}};
  text.forces = {{0, SingleLoad(Fx, 1.0)}};
  Model model;
  SolveModel(text, model);
  EXPECT_TRUE(std::isinf(model.Displacements[Ux]));
  EXPECT_TRUE(std::isnan(model.Displacements[Uy]));
}

// A beam from a node to itself: its pairs of equal dofs are added to the diagonal. Its length is
// zero, so the values are NaN, but the run goes on.
TEST(AssembleStiffness, BeamThatRepeatsItsNode) {
  ModelText text = MakeTubes();
  text.beams[2].node1 = 2;
  Model model;
  AssembleModel(text, model);
  EXPECT_TRUE(std::isnan(Entry(model.Stiffness, Equation(2, Ux), Equation(2, Ux))));
}

TEST(AssembleStiffness, UnknownSectionTypeIsComputedAllTheSame) {
  ModelText text = MakeTubes();
  text.beams[2].BeamSecType = 3;  // has no section table
  Model model;
  AssembleModel(text, model);
  EXPECT_TRUE(std::isnan(Entry(model.Stiffness, Equation(3, Ux), Equation(3, Ux))));
}

// Many elements of each kind. Expected: the matrices one after the other, in table order.
TEST(AssembleStiffness, ThreadsChangeNoBit) {
  Model model;
  AssembleModel(MakeStiffenedGrid(), model);
  SkylineMatrix& K = model.Stiffness;
  K.Values.assign(K.Values.size(), 0.0);
  const auto add = [&K](const double* ke, const std::int32_t* g, std::int32_t n) {
    ScatterElement(ke, g, n, K);
  };
  const auto addAll = [&](auto& elements, const auto& connectivity, auto stiffness, auto nodes) {
    for (std::size_t e = 0; e < elements.size(); ++e) {
      HandOverElement<nodes()>(elements[e], &connectivity[e * nodes()], stiffness, add);
    }
  };
  addAll(model.Shell4Elements, model.Tables.Shell4Nodes, Shell4Stiffness,
         std::integral_constant<std::int32_t, 4>());
  addAll(model.Shell3Elements, model.Tables.Shell3Nodes, Shell3Stiffness,
         std::integral_constant<std::int32_t, 3>());
  addAll(model.BeamElements, model.Tables.BeamNodes, BeamStiffness,
         std::integral_constant<std::int32_t, 2>());
  const MatrixValues expected = K.Values;
  for (const int threads : ThreadCounts) {
    K.Values.assign(K.Values.size(), 0.0);
    AssembleStiffness(model, threads);
    EXPECT_TRUE(SameBits(K.Values, expected)) << threads;
  }
}

}  // namespace
}  // namespace korvex::test
