// Which beams should be divided, against what their detail models miss, and which are too short.
#include "audit/beam_advice.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "audit/beam_models.h"
#include "beamshell/generate_beam_shells.h"
#include "report/stop.h"
#include "support/solve_model.h"

namespace kvx::test {
namespace {

using korvex::Model;
using korvex::test::ModelText;
using korvex::test::SolveModel;

// A simply supported span of 8 m in equal elements under 10 N/mm.
ModelText BuildSpan(int elements) {
  std::vector<double> places;
  for (int i = 0; i <= elements; ++i) places.push_back(8000.0 * i / elements);
  ModelText text = BuildStraight(places, TeeSection());
  text.restraints = {{0, {1, 1, 1, 1, 0, 0}}, {elements, {0, 1, 1, 0, 0, 0}}};
  for (int i = 0; i < elements; ++i) text.beamLoads.push_back({i, 10.0, 10.0});
  return text;
}

std::vector<UndividedBeam> FindUndivided(const ModelText& text) {
  Model model;
  SolveModel(text, model);
  std::vector<BeamForces> forces;
  ComputeBeamForces(model, forces);
  std::vector<UndividedBeam> found;
  FindUndividedBeams(model, forces, found);
  return found;
}

// q l^2 / 24 against q L^2 / 8: a third with one element, a twelfth with two, 1/48 with four.
TEST(BeamAdvice, SimplySupportedSpan) {
  const auto one = FindUndivided(BuildSpan(1));
  ASSERT_EQ(one.size(), 1U);
  EXPECT_EQ(one[0].beam, 0);
  EXPECT_NEAR(one[0].missingMoment, 10.0 * 64e6 / 24.0, 1.0);
  EXPECT_NEAR(one[0].girderMoment, 10.0 * 64e6 / 8.0, 1.0);
  EXPECT_NEAR(one[0].part, 1.0 / 3.0, 1e-8);
  EXPECT_EQ(one[0].pieces, 3);  // a 27th is below 5 %
  // The missing moment over the smaller section modulus: 26.67e6 x 219.333 / 54976800.
  EXPECT_NEAR(one[0].missingStress, 106.4, 0.05);

  const auto two = FindUndivided(BuildSpan(2));
  ASSERT_EQ(two.size(), 2U);
  EXPECT_NEAR(two[1].part, 1.0 / 12.0, 1e-8);
  EXPECT_EQ(two[1].pieces, 2);
  EXPECT_TRUE(FindUndivided(BuildSpan(4)).empty());
  EXPECT_TRUE(FindUndivided(BuildSpan(8)).empty());
}

// The missing moment is what the detail model does not show: at mid-length of one element under a
// uniform load, 1/3 of the stress of My.
TEST(BeamAdvice, DetailModelLacksWhatIsSaid) {
  Model model;
  SolveModel(BuildSpan(1), model);
  korvex::GenerateBeamShells(model);
  std::vector<BeamForces> forces;
  ComputeBeamForces(model, forces);
  std::vector<UndividedBeam> found;
  FindUndividedBeams(model, forces, found);
  // Curvature of the displacements of the ends: My of the beam less the missing moment.
  const double turn = model.Displacements[6 + 4] - model.Displacements[4];
  const double seen = model.BeamElements[0].E * model.BeamElements[0].Section.Iy * turn / 8000.0;
  const double My = ForcesAt(forces[0], 0.5)[MomentMy];
  ASSERT_EQ(found.size(), 1U);
  EXPECT_NEAR(My - seen, found[0].missingMoment, 1e-6 * std::fabs(My));
}

// A clamped beam of one element misses q L^2 / 24 of q L^2 / 12. One piece of a girder at the
// point of contraflexure is not named, because the girder's moment counts, not its own.
TEST(BeamAdvice, GirderCountsNotThePiece) {
  ModelText text = BuildSpan(6);
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}, {6, {1, 1, 1, 1, 1, 1}}};
  EXPECT_TRUE(FindUndivided(text).empty());
  text = BuildSpan(1);
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}, {1, {1, 1, 1, 1, 1, 1}}};
  const auto found = FindUndivided(text);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_NEAR(found[0].part, 0.5, 1e-8);
  EXPECT_EQ(found[0].pieces, 4);
}

// A loaded stub on the side of a girder does not share the girder's moments: it is measured by its
// own. A cantilever misses q L^2 / 24 of q L^2 / 2, 8 %.
TEST(BeamAdvice, CornerEndsAGirder) {
  ModelText text = BuildSpan(4);
  text.forces = {{2, {0, 0, 1e6, 0, 0, 0}}};
  text.nodes.push_back({4000.0, 1000.0, 0.0});
  ModelText::Beam stub = text.beams[0];
  stub.node1 = 2;
  stub.node2 = 5;
  text.beams.push_back(stub);
  text.beamLoads.push_back({4, -10.0, -10.0});
  const auto found = FindUndivided(text);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].beam, 4);
  EXPECT_NEAR(found[0].part, 1.0 / 12.0, 1e-6);
  EXPECT_LT(found[0].missingMoment, 0.0);
}

// A cantilever of two elements l under a uniform load: the outer one misses q l^2 / 24 of the
// clamp's 2 q l^2, 2 per cent. Measured by its own moment, q l^2 / 2, it would be 8.
ModelText BuildCantilever() {
  ModelText text = BuildStraight({0.0, 1000.0, 2000.0}, TeeSection());
  text.beamLoads = {{0, -10.0, -10.0}, {1, -10.0, -10.0}};
  return text;
}

TEST(BeamAdvice, GirdersAreOfOneSection) {
  ModelText text = BuildCantilever();
  EXPECT_TRUE(FindUndivided(text).empty());
  text.tSections.push_back(text.tSections[0]);
  text.beams[1].BeamSecIndex = 1;
  const auto found = FindUndivided(text);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].beam, 1);
  EXPECT_NEAR(found[0].part, 1.0 / 12.0, 1e-6);
}

TEST(BeamAdvice, NoGirderGoesThroughAHub) {
  ModelText text = BuildCantilever();
  for (int i = 0; i < 11; ++i) {
    EXPECT_EQ(FindUndivided(text).size(), 0U) << i;
    ModelText::Beam spoke = text.beams[0];
    spoke.node1 = 1;
    spoke.node2 = static_cast<int>(text.nodes.size());
    text.nodes.push_back({1000.0, 500.0 + 10.0 * i, 0.0});
    text.beams.push_back(spoke);
  }
  EXPECT_EQ(FindUndivided(text).size(), 1U);  // now 13 beams meet
}

TEST(BeamAdvice, BeamsWithoutLineLoadsOrWithNotANumberAreLeftOut) {
  ModelText text = BuildSpan(1);
  text.beamLoads.clear();
  text.forces = {{1, {0, 0, 0, 0, 1e6, 0}}};
  EXPECT_TRUE(FindUndivided(text).empty());
  Model model;
  SolveModel(BuildSpan(1), model);
  model.Displacements[4] = std::numeric_limits<double>::quiet_NaN();
  std::vector<BeamForces> forces;
  ComputeBeamForces(model, forces);
  std::vector<UndividedBeam> found;
  FindUndividedBeams(model, forces, found);
  EXPECT_TRUE(found.empty());
  forces.clear();
  EXPECT_THROW(FindUndividedBeams(model, forces, found), korvex::Stop);
}

// The widest plate of the T is a third of its web, the topmost with half the flange: 106 wide.
// Steps are those of the detail model that a run makes.
TEST(BeamAdvice, ShortDetailModels) {
  for (const double widths : {0.5, 1.5, 2.5, 2.99, 3.01, 7.0}) {
    Model model;
    SolveModel(BuildStraight({0.0, 106.0 * widths}, TeeSection()), model);
    korvex::GenerateBeamShells(model);
    std::vector<ShortDetail> found;
    FindShortDetails(model, found);
    ASSERT_EQ(found.size(), widths < 3.0 ? 1U : 0U) << widths;
    if (found.empty()) continue;
    const korvex::BeamShellModel& detail = model.BeamShellModels[0];
    EXPECT_EQ(found[0].steps, (detail.NodeCount - 2) / detail.ProfileNodeCount - 1) << widths;
    EXPECT_NEAR(found[0].widestPlate, 106.0, 1e-12);
    EXPECT_NEAR(found[0].ratio, widths, 1e-12);
  }
}

TEST(BeamAdvice, ShortDetailModelsOfOtherSections) {
  // The L's flange is 90, its topmost web plate 91.33; a plate of the tube is 76.5 wide.
  for (const auto& [section, width] :
       {std::pair{AngleSection(true), 258.0 - 2.0 * 250.0 / 3.0},
        std::pair{TubeSection(), 200.0 * std::sin(std::acos(-1.0) / 8.0)}}) {
    Model model;
    SolveModel(BuildStraight({0.0, 150.0}, section), model);
    std::vector<ShortDetail> found;
    FindShortDetails(model, found);
    ASSERT_EQ(found.size(), 1U) << section.name;
    EXPECT_NEAR(found[0].widestPlate, width, 1e-9) << section.name;
    EXPECT_EQ(found[0].steps, 1);
    model.Tables.BeamSectionRefs[0].BeamSecIndex = 1;
    EXPECT_THROW(FindShortDetails(model, found), korvex::Stop);
    model.Tables.BeamSectionRefs[0].BeamSecType = 7;
    FindShortDetails(model, found);
    EXPECT_TRUE(found.empty());
  }
}

}  // namespace
}  // namespace kvx::test
