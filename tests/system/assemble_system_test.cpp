// The assembled system of whole models: blocks in the skyline, supports, singular structures.
#include "system/assemble_system.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "beam/beam_stiffness.h"
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

// Every stored entry is the sum of the beams' entries at its two dofs, in table order.
TEST(AssembleSystem, StiffnessIsTheSumOfTheBeams) {
  Model model;
  test::AssembleModel(MakeTubes(), model);
  std::vector<std::vector<double>> sum(24, std::vector<double>(24, 0.0));
  for (std::size_t e = 0; e < 3; ++e) {
    std::array<double, 144> ke{};
    BeamStiffness(model.BeamElements[e], ke.data());
    const std::int32_t* nodes = &model.BeamNodes[2 * e];
    for (std::size_t r = 0; r < 12; ++r) {
      for (std::size_t c = r; c < 12; ++c) {
        const auto a = static_cast<std::size_t>(nodes[r / 6] * 6) + r % 6;
        const auto b = static_cast<std::size_t>(nodes[c / 6] * 6) + c % 6;
        sum[std::min(a, b)][std::max(a, b)] += ke[r * 12 + c];
      }
    }
  }
  for (std::size_t j = 0; j < 24; ++j) {
    for (std::size_t i = 0; i <= j; ++i) EXPECT_EQ(Entry(model.Stiffness, i, j), sum[i][j]);
  }
  EXPECT_EQ(model.NEQ, 24);
}

TEST(AssembleSystem, LogReceivesTheMemoryEstimateAlone) {
  const test::WorkingFolder folder;
  test::WriteFile("fem_solving.txt", test::WriteModel(MakeTubes()));
  Model model;
  std::ostringstream log;
  testing::internal::CaptureStdout();
  AssembleSystem(model, log);
  // Four full triangles of 6 columns and three blocks of 6 x 6: 4 x 21 + 3 x 36 = 192 entries,
  // 192 x 8 / 2^30 = 1.43051e-06.
  const std::string estimate =
      "The global stiffness matrix will occupy 1.43051e-06 GB of memory space.\n";
  EXPECT_EQ(log.str(), estimate);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            estimate + "Assembling the global stiffness matrix...\n");
}

TEST(AssembleSystem, SupportsComeAfterTheElements) {
  test::ModelText text = MakeTubes();
  text.restraints = {{0, {1, 1, 1, 1, 1, 0}}};
  Model model;
  test::AssembleModel(text, model);
  for (std::size_t d = 0; d < 5; ++d) EXPECT_EQ(Entry(model.Stiffness, d, d), 1e20);
  EXPECT_NE(Entry(model.Stiffness, 5, 5), 1e20);
  EXPECT_NE(Entry(model.Stiffness, 0, 6), 0.0);  // off the diagonal everything stays
}

// The six equations of a node without elements have a zero pivot: 0 / 0 there, without a word.
TEST(AssembleSystem, UnconnectedNodeGivesNonFiniteValues) {
  test::ModelText text = MakeTubes();
  text.nodes.push_back({9, 9, 9});
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  Model model;
  test::SolveModel(text, model);
  EXPECT_TRUE(std::isnan(model.Displacements[4 * 6]));
  EXPECT_EQ(model.Displacements[3 * 6], 0.0);
}

// The same node held by a support moves by its force over the penalty.
TEST(AssembleSystem, SupportedNodeWithoutElements) {
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

TEST(AssembleSystem, WithoutLoadsNothingMoves) {
  test::ModelText text = MakeTubes();
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  Model model;
  test::SolveModel(text, model);
  for (const double u : model.Displacements) EXPECT_EQ(u, 0.0);
}

// A tube held nowhere. Along the axis, a - (-1) x (-a) leaves a pivot of exactly zero.
TEST(AssembleSystem, FreeStructureGivesNonFiniteValues) {
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
TEST(AssembleSystem, FreeNodeGivesNonFiniteValues) {
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
TEST(AssembleSystem, BeamThatRepeatsItsNode) {
  test::ModelText text = MakeTubes();
  text.beams[2].node1 = 2;
  Model model;
  test::AssembleModel(text, model);
  EXPECT_TRUE(std::isnan(Entry(model.Stiffness, 12, 12)));
}

TEST(AssembleSystem, UnknownSectionTypeIsComputedAllTheSame) {
  test::ModelText text = MakeTubes();
  text.beams[2].BeamSecType = 3;
  Model model;
  test::AssembleModel(text, model);
  EXPECT_TRUE(std::isnan(Entry(model.Stiffness, 18, 18)));
}

}  // namespace
}  // namespace korvex
