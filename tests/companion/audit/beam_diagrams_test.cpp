// Diagrams: where their base lines lie, and to which side they are drawn.
#include "audit/beam_diagrams.h"

#include <gtest/gtest.h>

#include <limits>

#include "audit/beam_models.h"
#include "report/stop.h"
#include "support/solve_model.h"

namespace kvx::test {
namespace {

using korvex::Model;
using korvex::Vector3;
using korvex::test::ComputeNumbers;
using korvex::test::ModelText;
using korvex::test::SolveModel;

void Build(const ModelText& text, Model& model, BeamDiagrams& diagrams) {
  SolveModel(text, model);
  std::vector<BeamForces> forces;
  ComputeBeamForces(model, forces);
  BuildBeamDiagrams(model, forces, diagrams);
}

void ExpectVector(const Vector3& found, const Vector3& expected) {
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(found[i], expected[i], 1e-9) << i;
}

// Base line through the centroids of a mirrored L; moments on the stretched side: a force downwards
// at the tip of a cantilever stretches its upper side, one along +y its -y side.
TEST(BeamDiagrams, CantileverOfAnAngle) {
  ModelText text = BuildStraight({0.0, 1000.0, 2000.0}, AngleSection(true));
  text.forces = {{2, {0, 500.0, -1000.0, 0, 0, 0}}};
  Model model;
  BeamDiagrams diagrams;
  Build(text, model, diagrams);
  ASSERT_EQ(diagrams.beams.size(), 2U);
  const auto e = ComputeNumbers(AngleSection(true));
  const double ey = static_cast<double>(e.ey), ez = static_cast<double>(e.ez);
  const BeamDiagram& second = diagrams.beams[1];
  EXPECT_EQ(second.beam, 1);
  ExpectVector(second.start, {1000.0, ey, ez});
  ExpectVector(second.end, {2000.0, ey, ez});
  ExpectVector(DrawingDirection(second, MomentMy), {0, 0, 1});
  ExpectVector(DrawingDirection(second, MomentMz), {0, -1, 0});
  ExpectVector(DrawingDirection(second, ForceVy), {0, 1, 0});
  for (const SectionForce c : {ForceN, ForceVz, MomentT}) {
    ExpectVector(DrawingDirection(second, c), {0, 0, 1});
  }
  // Both moments are positive, so they are drawn on these sides.
  std::vector<BeamForces> forces;
  ComputeBeamForces(model, forces);
  EXPECT_NEAR(Evaluate(forces[1].curves[MomentMy], 0.0), 1e6, 1e-3);
  EXPECT_NEAR(Evaluate(forces[1].curves[MomentMz], 0.0), 5e5, 1e-3);
  EXPECT_NEAR(diagrams.largest[MomentMy], 2e6, 1e-3);
  EXPECT_NEAR(diagrams.largest[ForceVz], 1000.0, 1e-6);
}

// The largest value may stand between the ends: q L^2 / 8 of a simply supported span.
TEST(BeamDiagrams, LargestValueBetweenTheEnds) {
  ModelText text = BuildStraight({0.0, 2000.0}, TeeSection());
  text.restraints = {{0, {1, 1, 1, 1, 0, 0}}, {1, {0, 1, 1, 0, 0, 0}}};
  text.beamLoads = {{0, -10.0, -10.0}};
  Model model;
  BeamDiagrams diagrams;
  Build(text, model, diagrams);
  EXPECT_NEAR(diagrams.largest[MomentMy], 5e6, 1e-2);
}

TEST(BeamDiagrams, NotANumberIsLeftOut) {
  Model model;
  SolveModel(BuildStraight({0.0, 1000.0, 2000.0}, TeeSection()), model);
  model.Displacements[14] = std::numeric_limits<double>::quiet_NaN();
  std::vector<BeamForces> forces;
  ComputeBeamForces(model, forces);
  BeamDiagrams diagrams;
  BuildBeamDiagrams(model, forces, diagrams);
  ASSERT_EQ(diagrams.beams.size(), 1U);
  EXPECT_EQ(diagrams.beams[0].beam, 0);
  forces.pop_back();
  EXPECT_THROW(BuildBeamDiagrams(model, forces, diagrams), korvex::Stop);
}

}  // namespace
}  // namespace kvx::test
