// Equilibrium at every node: on random models, with end forces that are wrong, and part by part.
#include "audit/node_balance.h"

#include <gtest/gtest.h>

#include <cmath>

#include "beam/beam_frame.h"
#include "report/stop.h"
#include "support/beam_sections.h"
#include "support/good_models.h"
#include "support/shell_mesh.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;
using korvex::test::WriteModel;

struct Solved {
  SolvedModel model;
  Reactions reactions;
};

Solved Solve(const ModelText& text) {
  Solved solved;
  SolveInMemory(WriteModel(text), {}, solved.model);
  ComputeReactions(solved.model, solved.reactions);
  return solved;
}

// 1e-8: the residuals of the thinnest plates (reactions_test.cpp).
TEST(NodeBalance, HoldsOnRandomModels) {
  for (std::uint32_t seed = 0; seed < 60; ++seed) {
    const Solved solved = Solve(MakeGoodModel(seed));
    NodeBalance balance;
    BalanceNodes(solved.model, solved.reactions, {}, balance);
    EXPECT_LT(balance.worst.relative, 1e-8) << "seed " << seed;
    EXPECT_GT(balance.scales.force, 0.0);
    EXPECT_GE(balance.worst.node, 0);
  }
}

// Forces that are changed at one end of one element are found there.
TEST(NodeBalance, NamesTheNodeOfAWrongEndForce) {
  const Solved solved = Solve(MakeGoodModel(7));
  LoadIndex index;
  IndexLoads(solved.model.model, index);
  const korvex::Model& model = solved.model.model;
  const ElementKind kind = !model.Shell4Elements.empty()   ? ElementKind::Shell4
                           : !model.Shell3Elements.empty() ? ElementKind::Shell3
                                                           : ElementKind::Beam;
  NodeBalance balance;
  BalanceNodes(
      solved.model, solved.reactions,
      [&](const ElementRef& element, EndForceArray& forces) {
        FormEndForces(model, index, element, forces);
        if (element.kind == kind && element.row == 1) forces[6 + 4] += 5.0;
      },
      balance);
  EXPECT_EQ(balance.worst.node, NodesOfElement(model, {kind, 1}).nodes[1]);
  EXPECT_EQ(balance.worst.dof, 4);
  EXPECT_NEAR(balance.worst.value, -5.0, 1e-3);
}

// A plate with a stiffener and all kinds of loads, its edge settled by 1 mm.
ModelText StiffenedPlate() {
  ModelText text =
      korvex::test::BuildGrid(3, 2, korvex::test::Cells::Mixed, [](double s, double t) {
        return korvex::test::Point3{3.0 * s, 2.0 * t, 0.0};
      });
  text.materials = {{2.06e11, 0.3, 0.0}};
  text.thicknesses = {0.02};
  const korvex::test::TestSection section = korvex::test::AllSections()[5];  // T with an offset
  for (int i = 0; i < 3; ++i) {
    ModelText::Beam beam;
    korvex::test::UseSection(section, text, beam);
    beam.node1 = 4 + i;
    beam.node2 = 5 + i;
    text.beams.push_back(beam);
  }
  for (const int node : {0, 4, 8}) text.restraints.push_back({node, {1, 1, 1, 1, 1, 1}});
  text.forces = {{4, {0, 0, -1e17, 0, 0, 0}},     // settles
                 {4, {10.0, 0, -30.0, 0, 0, 0}},  // goes into the support
                 {11, {1.0, 2.0, 3.0, 4.0, 5.0, 6.0}}};
  text.shell4Loads = {{0, {100.0, 200.0, 300.0}}, {0, {1.0, 1.0, 1.0}}};
  text.shell3Loads = {{1, {70.0, 70.0, 70.0}}};
  text.beamLoads = {{1, -50.0, 80.0}};
  return text;
}

TEST(NodeBalance, KeepsPrescribedDisplacementsApart) {
  const Solved solved = Solve(StiffenedPlate());
  NodeBalance balance;
  BalanceNodes(solved.model, solved.reactions, {}, balance);
  EXPECT_LT(balance.worst.relative, 1e-12);
  NodeParts parts;
  ListNodeParts(solved.model, solved.reactions, 4, parts);
  EXPECT_EQ(parts.load[0], 10.0);
  EXPECT_EQ(parts.load[2], -30.0);
  // Node 4 (0, 1): quad 0, the two triangles behind it, or what the mixed cells make of it, and
  // the first beam.
  std::size_t beams = 0;
  for (const ElementPart& part : parts.elements) {
    EXPECT_EQ(NodesOfElement(solved.model.model, part.element).nodes[part.corner], 4);
    if (part.element.kind == ElementKind::Beam) ++beams;
  }
  EXPECT_EQ(beams, 1U);
  EXPECT_GE(parts.elements.size(), 3U);
  for (std::size_t d = 0; d < 6; ++d) {
    EXPECT_EQ(parts.left[d], balance.left[24 + d]);
    EXPECT_NEAR(parts.left[d], 0.0, 1e-12 * balance.scales.force);
    EXPECT_NE(parts.reaction[d], 0.0);
  }
}

TEST(NodeBalance, ListsWhatActsAtAFreeNode) {
  const Solved solved = Solve(StiffenedPlate());
  NodeParts parts;
  ListNodeParts(solved.model, solved.reactions, 11, parts);
  for (std::size_t d = 0; d < 6; ++d) {
    EXPECT_EQ(parts.load[d], static_cast<double>(d + 1));
    EXPECT_EQ(parts.reaction[d], 0.0);
  }
  EXPECT_THROW(ListNodeParts(solved.model, solved.reactions, 12, parts), korvex::Stop);
  EXPECT_THROW(ListNodeParts(solved.model, solved.reactions, -1, parts), korvex::Stop);
  EXPECT_THROW(ListNodeParts(solved.model, Reactions(), 0, parts), korvex::Stop);
}

// The end forces of a loaded beam by statics: a cantilever along x, q = -50 .. 80 over L = 3, in
// local z. Its free end carries nothing, so the support carries the load.
TEST(NodeBalance, EndForcesContainTheLineLoad) {
  ModelText text;
  text.materials = {{2.06e11, 0.3, 0.0}};
  text.nodes = {{0, 0, 0}, {3, 0, 0}};
  text.beams.resize(1);
  korvex::test::UseSection(korvex::test::AllSections()[6], text, text.beams[0]);
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  text.beamLoads = {{0, -50.0, 80.0}};
  const Solved solved = Solve(text);
  LoadIndex index;
  IndexLoads(solved.model.model, index);
  EndForceArray forces{};
  FormEndForces(solved.model.model, index, {ElementKind::Beam, 0}, forces);
  for (std::size_t i = 6; i < 12; ++i) EXPECT_NEAR(forces[i], 0.0, 1e-8);
  const double total = (-50.0 + 80.0) * 3.0 / 2.0;
  const double moment = (-50.0 + 2.0 * 80.0) * 9.0 / 6.0;  // of the load about node 0: q x dx
  EXPECT_NEAR(forces[2], -total, 1e-8);
  EXPECT_NEAR(forces[4], moment, 1e-8);
}

// By hand: a beam along global y with its web along global x: x = Y, z = X, y = z x x = X x Y = Z.
// The centroid is at 0.2 y and 0.3 z. On the second end N = 1, Vy = 2, Vz = 3, T = 4, My = 5,
// Mz = 6: the force is (3, 1, 2) globally; e x F = (0.2 3 - 0.3 2, 0.3 1, -0.2 1) = (0, 0.3, -0.2).
TEST(NodeBalance, MovesSectionForcesToTheNodes) {
  korvex::BeamElement beam;
  beam.NodeJ = {0.0, 2.0, 0.0};
  beam.RefPoint = {1.0, 0.0, 0.0};
  beam.Section.Ey = 0.2;
  beam.Section.Ez = 0.3;
  EndForceArray forces{};
  MoveSectionForcesToNodes(beam, {-10, -20, -30, -40, -50, -60}, {1, 2, 3, 4, 5, 6}, forces);
  // Local moment (4, 5.3, 5.8): global (Mz local, Mx local, My local).
  const std::array<double, 6> second{3.0, 1.0, 2.0, 5.8, 4.0, 5.3};
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_NEAR(forces[6 + i], second[i], 1e-14);
    EXPECT_NEAR(forces[i], 10.0 * second[i], 1e-13);
  }
}

}  // namespace
}  // namespace kvx::test
