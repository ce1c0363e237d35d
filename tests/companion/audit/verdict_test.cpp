// The verdict names what has spoiled a solution, and measures its displacements.
#include "audit/verdict.h"

#include <gtest/gtest.h>

#include <cmath>

#include "report/stop.h"
#include "support/dof_names.h"
#include "support/good_models.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;
using korvex::test::SingleLoad;
using korvex::test::WriteModel;

Verdict Judge(const ModelText& text) {
  SolvedModel solved;
  SolveInMemory(WriteModel(text), {}, solved);
  Verdict verdict;
  JudgeSolution(solved, verdict);
  return verdict;
}

// Four beams of 1 along x and a quad beside them; both are clamped at one end.
ModelText BeamsAndQuad() {
  ModelText text;
  text.materials = {{2.06e11, 0.3, 7850.0}};
  text.thicknesses = {0.01};
  text.tSections = {{0.1, 0.01, 0.1, 0.01}};
  for (int k = 0; k <= 4; ++k) text.nodes.push_back({1.0 * k, 0, 0});
  for (int k = 0; k < 4; ++k) {
    text.beams.emplace_back();
    text.beams.back().node1 = k;
    text.beams.back().node2 = k + 1;
  }
  text.nodes.insert(text.nodes.end(), {{0, 5, 0}, {1, 5, 0}, {1, 6, 0}, {0, 6, 0}});
  text.shells4 = {{{5, 6, 7, 8}, 0, 0}};
  for (const int node : {0, 5, 8}) text.restraints.push_back({node, {1, 1, 1, 1, 1, 1}});
  text.forces = {{4, SingleLoad(2, -100.0)}};
  return text;
}

TEST(Verdict, PassesGoodModels) {
  for (std::uint32_t seed = 0; seed < 30; ++seed) {
    const Verdict verdict = Judge(MakeGoodModel(seed));
    EXPECT_EQ(verdict.notFinite.nodes, 0) << "seed " << seed;
    EXPECT_EQ(verdict.notFinite.node, -1);
    EXPECT_FALSE(verdict.notFinite.hasElement);
    EXPECT_GT(verdict.translation.value, 0.0);
    EXPECT_GT(verdict.share, 0.0);
  }
}

// The tip of a cantilever: F L^3 / 3 E I and F L^2 / 2 E I, shear apart.
TEST(Verdict, MeasuresDisplacements) {
  const Verdict verdict = Judge(BeamsAndQuad());
  EXPECT_EQ(verdict.translation.node, 4);
  EXPECT_EQ(verdict.rotation.node, 4);
  EXPECT_DOUBLE_EQ(verdict.extent, std::sqrt(16.0 + 36.0));
  EXPECT_DOUBLE_EQ(verdict.share, verdict.translation.value / verdict.extent);
  // Slope over deflection of the tip: 3 / (2 L), but for the offset's axial part and shear.
  EXPECT_NEAR(verdict.rotation.value / verdict.translation.value, 3.0 / 8.0, 0.02);
}

// Beams 2 and 3 have no length: their nodes are at one place. The first is named.
TEST(Verdict, NamesTheElementWithoutStiffness) {
  ModelText text = BeamsAndQuad();
  text.nodes[4] = text.nodes[3] = text.nodes[2];
  Verdict verdict = Judge(text);
  EXPECT_GE(verdict.notFinite.nodes, 4);
  EXPECT_TRUE(verdict.notFinite.hasElement);
  EXPECT_EQ(verdict.notFinite.element.kind, ElementKind::Beam);
  EXPECT_EQ(verdict.notFinite.element.row, 2);
  EXPECT_EQ(verdict.notFinite.loadNode, -1);
  EXPECT_EQ(verdict.notFinite.lonelyNode, -1);

  text = BeamsAndQuad();
  text.nodes[8] = text.nodes[5];  // the quad's first edge of its frame has no length
  verdict = Judge(text);
  EXPECT_TRUE(verdict.notFinite.hasElement);
  EXPECT_EQ(verdict.notFinite.element.kind, ElementKind::Shell4);
  EXPECT_EQ(verdict.notFinite.element.row, 0);
}

TEST(Verdict, NamesTheLoadThatIsNoNumber) {
  ModelText text = BeamsAndQuad();
  text.forces.push_back({6, SingleLoad(1, std::nan(""))});
  const Verdict verdict = Judge(text);
  EXPECT_GE(verdict.notFinite.nodes, 1);
  EXPECT_FALSE(verdict.notFinite.hasElement);
  EXPECT_EQ(verdict.notFinite.loadNode, 6);
  EXPECT_EQ(verdict.notFinite.loadDof, 1);
}

TEST(Verdict, NamesTheNodeWithoutElements) {
  ModelText text = BeamsAndQuad();
  text.nodes.push_back({9, 9, 9});
  const Verdict verdict = Judge(text);
  EXPECT_EQ(verdict.notFinite.nodes, 1);
  EXPECT_EQ(verdict.notFinite.node, 9);
  EXPECT_EQ(verdict.notFinite.dof, 0);
  EXPECT_EQ(verdict.notFinite.lonelyNode, 9);
  EXPECT_FALSE(verdict.notFinite.hasElement);
  EXPECT_EQ(verdict.translation.node, 4);  // of the finite ones
}

// The first dof is named, not the first of the node.
TEST(Verdict, NamesTheFirstNumberThatIsNone) {
  const ModelText text = BeamsAndQuad();
  std::vector<double> u(54, 0.0);
  u[2 * 6 + 3] = std::nan("");
  u[4 * 6] = HUGE_VAL;
  SolvedModel solved;
  CompleteFromDisplacements(WriteModel(text), u, solved);
  Verdict verdict;
  JudgeSolution(solved, verdict);
  EXPECT_EQ(verdict.notFinite.nodes, 2);
  EXPECT_EQ(verdict.notFinite.node, 2);
  EXPECT_EQ(verdict.notFinite.dof, 3);
  EXPECT_EQ(verdict.translation.node, -1);
  solved.model.Displacements.pop_back();
  EXPECT_THROW(JudgeSolution(solved, verdict), korvex::Stop);
}

TEST(Verdict, AcceptsAnEmptyModel) {
  const Verdict verdict = Judge(ModelText());
  EXPECT_EQ(verdict.notFinite.nodes, 0);
  EXPECT_EQ(verdict.share, 0.0);
}

}  // namespace
}  // namespace kvx::test
