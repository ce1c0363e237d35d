// Envelopes at the points of VTU files, over three cases of one shell: stretched by 1, by -3, and
// with a displacement that is no number.
#include "commands/export_envelopes.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "report/stop.h"
#include "results/average_stresses.h"
#include "results/shell_stresses.h"
#include "support/model_text.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

ModelText MakeShell() {
  ModelText text;
  text.materials = {{1000.0, 0.0, 0.0}};
  text.thicknesses = {2.0};
  text.nodes = {{0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}, {1.0, 1.0, 0.0}, {0.0, 1.0, 0.0}};
  text.shells4 = {{{0, 1, 2, 3}, 0, 0}};
  text.restraints = {{0}, {3}};
  return text;
}

// A case of the shell.
struct Case {
  SolvedModel solved;
  Reactions reactions;
  std::vector<BeamForces> forces;
  std::vector<std::int32_t> parts{1};
};

// strain: along x.
void Stretch(const ModelText& text, double strain, Case& result) {
  std::vector<double> displacements;
  for (const auto& node : text.nodes) {
    displacements.insert(displacements.end(), {strain * node[0], 0.0, 0.0, 0.0, 0.0, 0.0});
  }
  CompleteFromDisplacements(korvex::test::WriteModel(text), displacements, result.solved);
  korvex::RecoverShellStresses(result.solved.model);
  korvex::AverageNodeStresses(result.solved.model);
  ComputeReactions(result.solved, result.reactions);
}

MeshResults ResultsOf(const Case& of) { return {of.solved, of.reactions, of.forces, of.parts}; }

const VtuArray& Find(const MeshGrid& mesh, const std::string& name) {
  for (const VtuArray& array : mesh.grid.pointData) {
    if (array.name == name) return array;
  }
  throw std::runtime_error("no array " + name);
}

// The first number at a point.
double DoubleAt(const MeshGrid& mesh, const std::string& name, std::size_t point) {
  std::array<double, MostWidth> values{};
  std::get<FillDoubles>(Find(mesh, name).fill)(point, values.data());
  return values[0];
}

std::int64_t CaseAt(const MeshGrid& mesh, const std::string& name, std::size_t point) {
  std::array<std::int64_t, MostWidth> values{};
  std::get<FillIntegers>(Find(mesh, name + "_case").fill)(point, values.data());
  return values[0];
}

struct PointEnvelopes : testing::Test {
  Case pulled, pushed, bad;
  PointEnvelope envelope;
  MeshGrid mesh;

  // The cases have the numbers 2, 4 and 7.
  void Add(bool isShared) {
    Stretch(MakeShell(), 0.01, pulled);
    Stretch(MakeShell(), -0.03, pushed);
    Stretch(MakeShell(), NaN, bad);
    AddToPointEnvelope(ResultsOf(pulled), isShared, 2, envelope);
    AddToPointEnvelope(ResultsOf(pushed), isShared, 4, envelope);
    AddToPointEnvelope(ResultsOf(bad), isShared, 7, envelope);
    BuildEnvelopeGrid(ResultsOf(bad), envelope, mesh);
  }
};

// Point 2 is node 2 at x = 1: it moves by 0.01 and -0.03. von Mises: E times the strain.
TEST_F(PointEnvelopes, HoldExtremesAndTheirCases) {
  Add(false);
  EXPECT_EQ(DoubleAt(mesh, "displacement_largest", 2), 0.01);
  EXPECT_EQ(CaseAt(mesh, "displacement_largest", 2), 2);
  EXPECT_EQ(DoubleAt(mesh, "displacement_smallest", 2), -0.03);
  EXPECT_EQ(CaseAt(mesh, "displacement_smallest", 2), 4);
  EXPECT_EQ(DoubleAt(mesh, "displacement_size_largest", 2), 0.03);
  EXPECT_EQ(CaseAt(mesh, "displacement_size_largest", 2), 4);
  EXPECT_EQ(DoubleAt(mesh, "displacement_size_smallest", 2), 0.01);
  EXPECT_EQ(DoubleAt(mesh, "displacement_of_largest_size", 2), -0.03);
  for (const char* face : {"von_mises_upper", "von_mises_lower", "von_mises_both"}) {
    const std::string name = face;
    EXPECT_NEAR(DoubleAt(mesh, name + "_largest", 2), 30.0, 1e-12);
    EXPECT_EQ(CaseAt(mesh, name + "_largest", 2), 4);
    EXPECT_NEAR(DoubleAt(mesh, name + "_smallest", 2), 10.0, 1e-12);
    EXPECT_EQ(CaseAt(mesh, name + "_smallest", 2), 2);
  }
}

// Node 0 stays where it is in both cases: of equal values the first case governs.
TEST_F(PointEnvelopes, TakeTheFirstOfEqualCases) {
  Add(true);
  EXPECT_EQ(CaseAt(mesh, "displacement_size_largest", 0), 2);
  EXPECT_EQ(CaseAt(mesh, "displacement_size_smallest", 0), 2);
  EXPECT_NEAR(DoubleAt(mesh, "von_mises_both_node_mean_largest", 0), 30.0, 1e-12);
}

TEST_F(PointEnvelopes, HaveNoCaseWhereNothingIsANumber) {
  Stretch(MakeShell(), NaN, bad);
  AddToPointEnvelope(ResultsOf(bad), false, 3, envelope);
  BuildEnvelopeGrid(ResultsOf(bad), envelope, mesh);
  EXPECT_TRUE(std::isnan(DoubleAt(mesh, "von_mises_both_largest", 1)));
  EXPECT_EQ(CaseAt(mesh, "von_mises_both_largest", 1), -1);
}

TEST_F(PointEnvelopes, RefuseAnotherMesh) {
  Add(false);
  ModelText larger = MakeShell();
  larger.nodes.push_back({5.0, 5.0, 0.0});
  Case other;
  Stretch(larger, 0.01, other);
  EXPECT_THROW(AddToPointEnvelope(ResultsOf(other), false, 5, envelope), korvex::Stop);
}

}  // namespace
}  // namespace kvx::test
