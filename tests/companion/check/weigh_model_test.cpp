// Mass and centre of gravity against closed forms.
#include "check/weigh_model.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/expect_findings.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

constexpr double Density = 7850.0;
constexpr double Pi = 3.14159265358979323846;

void ExpectWeight(const ModelText& model, double mass, const korvex::Vector3& centre) {
  const ModelWeight weight = WeighModel(Check(model).model);
  EXPECT_NEAR(weight.mass, mass, 1e-12 * mass);  // rounding
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(weight.centre[i], centre[i], 1e-12) << i;
}

ModelText Steel() {
  ModelText model;
  model.materials = {{2.06e11, 0.3, Density}};
  model.thicknesses = {0.01};
  return model;
}

TEST(WeighModel, WeighsAPlate) {
  ModelText model = Steel();
  model.nodes = {{1, 2, 3}, {3, 2, 3}, {3, 2.5, 3}, {1, 2.5, 3}};
  model.shells4 = {{{0, 1, 2, 3}, 0, 0}};
  ExpectWeight(model, Density * 2.0 * 0.5 * 0.01, {2, 2.25, 3});
}

// A trapezium with the parallel sides a = 3 and b = 1 and the height h = 2: area (a + b) h / 2 = 4,
// centroid h (a + 2 b) / (3 (a + b)) = 5/6 above a.
TEST(WeighModel, WeighsATrapezium) {
  ModelText model = Steel();
  model.nodes = {{-1.5, 0, 0}, {1.5, 0, 0}, {0.5, 2, 0}, {-0.5, 2, 0}};
  model.shells4 = {{{0, 1, 2, 3}, 0, 0}};
  ExpectWeight(model, Density * 4.0 * 0.01, {0, 5.0 / 6.0, 0});
}

// Two triangles at a right angle, legs 1: each has its centroid a third from the common edge.
TEST(WeighModel, WeighsAFoldedPlate) {
  ModelText model = Steel();
  model.nodes = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  model.shells3 = {{{0, 1, 2}, 0, 0}, {{0, 1, 3}, 0, 0}};
  ExpectWeight(model, Density * 0.01, {1.0 / 3.0, 1.0 / 6.0, 1.0 / 6.0});
}

ModelText BeamOnX(const std::array<double, 3>& orientation) {
  ModelText model = Steel();
  model.nodes = {{0, 0, 0}, {4, 0, 0}};
  model.beams.resize(1);
  model.beams[0].orientation = orientation;
  return model;
}

// Web 0.2 x 0.01 from the node line, flange 0.1 x 0.02 on top: A = 0.002 + 0.002, so the centroid
// is midway between 0.1 and 0.21, at 0.155; BeamSecOz adds to it.
TEST(WeighModel, WeighsATBeamWithOffset) {
  ModelText model = BeamOnX({0, 0, 1});
  model.tSections = {{0.2, 0.01, 0.1, 0.02}};
  model.beams[0].BeamSecOz = 0.05;
  ExpectWeight(model, Density * 0.004 * 4.0, {2, 0, 0.205});
  model.beams[0].orientation = {5, -1, 0};  // the web points towards -y
  ExpectWeight(model, Density * 0.004 * 4.0, {2, -0.205, 0});
}

// An L's flange begins at the web's face: its centroid is Bf/2 - Tw/2 = 0.045 from the web's
// centre line, the section's half of that. Local y = z x x: with z upwards and x forwards, global
// y.
TEST(WeighModel, WeighsAnLBeamAndItsMirrorImage) {
  for (const int mirrored : {0, 1}) {
    ModelText model = BeamOnX({0, 0, 1});
    model.lSections = {{0.2, 0.01, 0.1, 0.02}};
    model.beams[0].BeamSecType = korvex::BeamSecTypeL;
    model.beams[0].BeamSecMirrored = mirrored;
    ExpectWeight(model, Density * 0.004 * 4.0, {2, mirrored == 1 ? -0.0225 : 0.0225, 0.155});
  }
}

TEST(WeighModel, WeighsATube) {
  ModelText model = BeamOnX({0, 1, 0});
  model.cSections = {{0.15, 0.01}};
  model.beams[0].BeamSecType = korvex::BeamSecTypeC;
  model.beams[0].BeamSecOz = -0.3;
  ExpectWeight(model, Density * 2.0 * Pi * 0.15 * 0.01 * 4.0, {2, -0.3, 0});
}

// Two materials, one without weight; a broken element counts nothing.
TEST(WeighModel, LeavesOutWhatIsNotKnown) {
  ModelText model = Steel();
  model.materials.push_back({2.06e11, 0.3, 0.0});
  model.nodes = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {5, 0, 0}};
  model.shells3 = {{{0, 1, 2}, 0, 0}, {{0, 2, 3}, 1, 0}, {{0, 1, 4}, 0, 0}, {{0, 1, 9}, 0, 0}};
  ExpectWeight(model, Density * 0.5 * 0.01, {2.0 / 3.0, 1.0 / 3.0, 0});
  model.shells3.clear();
  ExpectWeight(model, 0.0, {0, 0, 0});
}

}  // namespace
}  // namespace kvx::test
