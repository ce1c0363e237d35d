// The assembled system of whole models: element matrices in the skyline, supports, singular
// structures.
#include "system/assemble_stiffness.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "beam/beam_stiffness.h"
#include "shell/shell_stiffness.h"
#include "support/solve_model.h"
#include "support/temp_folder.h"

namespace korvex {
namespace {

// Three tubes along X between four nodes; the last node first in the numbering of its beam.
test::ModelText MakeTubes() {
  test::ModelText text;
  text.materials = {{2e11, 0.3, 0.0}};
  text.cSections = {{0.15, 0.02}};
  text.nodes = {{0, 0, 0}, {1, 0, 0}, {2.5, 0, 0}, {4, 0, 0}};
  const std::array<std::array<int, 2>, 3> nodes{{{0, 1}, {1, 2}, {3, 2}}};
  for (const auto& n : nodes) {
    test::ModelText::Beam beam;
    beam.node1 = n[0];
    beam.node2 = n[1];
    beam.BeamSecType = 2;
    text.beams.push_back(beam);
  }
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
      return static_cast<std::size_t>(connectivity[e * Nodes + i / 6]) * 6 + i % 6;
    };
    for (std::size_t r = 0; r < n; ++r) {
      for (std::size_t c = r; c < n; ++c) {
        const std::size_t a = equation(r), b = equation(c);
        sum[std::min(a, b)][std::max(a, b)] += ke[r * n + c];
      }
    }
  }
}

// The sum over all elements: four-node shells, three-node shells, beams, or the reverse.
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
  test::AssembleModel(MakeTubes(), model);
  EXPECT_EQ(model.NEQ, 24);
  EXPECT_EQ(FillOut(model.Stiffness), SumElements(model));
}

// Two quadrilaterals and two triangles about node 4, none of them along the global axes, and beams
// on the edges between them. Node 8 belongs to nothing.
//   6---5---7
//   | 0 |\ 1|     The quadrilaterals are 2-4-5-6 and 0-1-4-2, the triangles 4-3-7 and 4-7-5.
//   2---4--3      Beams run from 4 to 5, from 2 to 4 and from 3 to 4.
//   | 1 |/
//   0---1
test::ModelText MakeMixed() {
  test::ModelText text;
  text.materials = {{2e11, 0.3, 0.0}, {7e10, 0.33, 0.0}};
  text.thicknesses = {0.01, 0.025};
  text.cSections = {{0.15, 0.02}};
  text.nodes = {{0, 0, 0},     {1.1, 0.1, 0.2}, {-0.1, 1, 0.1}, {2.1, 1.2, 0.3},  //
                {1, 1.1, 0.3}, {0.9, 2, 0.5},   {0, 2.1, 0.3},  {1.9, 1.9, 0.4},  //
                {7, 7, 7}};
  text.shells4 = {{{2, 4, 5, 6}, 0, 1}, {{0, 1, 4, 2}, 1, 0}};
  text.shells3 = {{{4, 3, 7}, 0, 0}, {{4, 7, 5}, 1, 1}};
  const std::array<std::array<int, 2>, 3> nodes{{{4, 5}, {2, 4}, {3, 4}}};
  for (const auto& n : nodes) {
    test::ModelText::Beam beam;
    beam.node1 = n[0];
    beam.node2 = n[1];
    beam.BeamSecType = 2;
    text.beams.push_back(beam);
  }
  return text;
}

// Rounding tells the order of the kinds: the reverse makes other bits.
TEST(AssembleStiffness, StiffnessIsTheSumOfQuadrilateralsThenTrianglesThenBeams) {
  Model model;
  test::AssembleModel(MakeMixed(), model);
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

// On nodes 0, 1, 2, 3 the skyline is the upper triangle of the element's matrix.
TEST(AssembleStiffness, SingleFourNodeShellFillsTheSkyline) {
  test::ModelText text;
  text.materials = {{2e11, 0.3, 0.0}};
  text.thicknesses = {0.01};
  text.nodes = {{0, 0, 0}, {1.1, 0.1, 0.2}, {1, 1.1, 0.3}, {-0.1, 1, 0.1}};
  text.shells4 = {{{0, 1, 2, 3}, 0, 0}};
  Model model;
  test::AssembleModel(text, model);
  std::array<double, 576> ke{};
  Shell4Stiffness(model.Shell4Elements[0], ke.data());
  ExpectUpperTriangle(model.Stiffness, ke.data(), 24);
}

TEST(AssembleStiffness, SingleThreeNodeShellFillsTheSkyline) {
  test::ModelText text;
  text.materials = {{2e11, 0.3, 0.0}};
  text.thicknesses = {0.01};
  text.nodes = {{0, 0, 0}, {1.1, 0.1, 0.2}, {1, 1.1, 0.3}};
  text.shells3 = {{{0, 1, 2}, 0, 0}};
  Model model;
  test::AssembleModel(text, model);
  std::array<double, 324> ke{};
  Shell3Stiffness(model.Shell3Elements[0], ke.data());
  ExpectUpperTriangle(model.Stiffness, ke.data(), 18);
}

// Its third and fourth corner are one node. Of the 6 x 6 terms between the two, those of equal dofs
// fall on the diagonal, once, and the others on pairs that the corners' own blocks have as well.
TEST(AssembleStiffness, ShellThatRepeatsANode) {
  test::ModelText text = MakeMixed();
  text.shells4[0].nodes = {2, 4, 5, 5};
  Model model;
  test::AssembleModel(text, model);
  const FullMatrix full = FillOut(model.Stiffness);
  for (const auto& row : full) {
    for (const double value : row) ASSERT_TRUE(std::isfinite(value));
  }
  EXPECT_EQ(full, SumElements(model));
}

TEST(AssembleStiffness, SupportsComeAfterTheElements) {
  test::ModelText text = MakeTubes();
  text.restraints = {{0, {1, 1, 1, 1, 1, 0}}};
  Model model;
  test::AssembleModel(text, model);
  for (std::size_t d = 0; d < 5; ++d) EXPECT_EQ(Entry(model.Stiffness, d, d), 1e20);
  EXPECT_NE(Entry(model.Stiffness, 5, 5), 1e20);
  EXPECT_NE(Entry(model.Stiffness, 0, 6), 0.0);  // off the diagonal everything stays
}

// The six equations of a node without elements have a zero pivot: 0 / 0 there, without a word.
TEST(AssembleStiffness, UnconnectedNodeGivesNonFiniteValues) {
  test::ModelText text = MakeTubes();
  text.nodes.push_back({9, 9, 9});
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  Model model;
  test::SolveModel(text, model);
  EXPECT_TRUE(std::isnan(model.Displacements[4 * 6]));
  EXPECT_EQ(model.Displacements[3 * 6], 0.0);
}

// The same node held by a support moves by its force over the penalty.
TEST(AssembleStiffness, SupportedNodeWithoutElements) {
  test::ModelText text;
  text.nodes = {{0, 0, 0}};
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{0, {1, 2, 3, 4, 5, 6}}};
  Model model;
  test::SolveModel(text, model);
  for (std::size_t d = 0; d < 6; ++d) {
    EXPECT_DOUBLE_EQ(model.Displacements[d], static_cast<double>(d + 1) / 1e20);
  }
}

TEST(AssembleStiffness, WithoutLoadsNothingMoves) {
  test::ModelText text = MakeTubes();
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  Model model;
  test::SolveModel(text, model);
  for (const double u : model.Displacements) EXPECT_EQ(u, 0.0);
}

// A tube held nowhere. Along the axis, a - (-1) x (-a) leaves a pivot of exactly zero.
TEST(AssembleStiffness, FreeStructureGivesNonFiniteValues) {
  test::ModelText text = MakeTubes();
  text.nodes.resize(2);
  text.beams.resize(1);
  text.forces = {{1, {1, 0, 0, 0, 0, 0}}};
  Model model;
  test::SolveModel(text, model);
  EXPECT_FALSE(std::isfinite(model.Displacements[0]));
  EXPECT_FALSE(std::isfinite(model.Displacements[6]));
}

// One free node, no elements: every pivot is zero.
TEST(AssembleStiffness, FreeNodeGivesNonFiniteValues) {
  test::ModelText text;
  text.nodes = {{0, 0, 0}};
  text.forces = {{0, {1, 0, 0, 0, 0, 0}}};
  Model model;
  test::SolveModel(text, model);
  EXPECT_TRUE(std::isinf(model.Displacements[0]));
  EXPECT_TRUE(std::isnan(model.Displacements[1]));
}

// A beam from a node to itself: its pairs of equal dofs fall on the diagonal. Its length is zero,
// so the values are NaN, but the run goes on.
TEST(AssembleStiffness, BeamThatRepeatsItsNode) {
  test::ModelText text = MakeTubes();
  text.beams[2].node1 = 2;
  Model model;
  test::AssembleModel(text, model);
  EXPECT_TRUE(std::isnan(Entry(model.Stiffness, 12, 12)));
}

TEST(AssembleStiffness, UnknownSectionTypeIsComputedAllTheSame) {
  test::ModelText text = MakeTubes();
  text.beams[2].BeamSecType = 3;
  Model model;
  test::AssembleModel(text, model);
  EXPECT_TRUE(std::isnan(Entry(model.Stiffness, 18, 18)));
}

}  // namespace
}  // namespace korvex
