// Sums of loads against closed forms.
#include "check/sum_loads.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/expect_findings.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

LoadSums Sum(const ModelText& text) {
  const CheckedModel model = Check(text).model;
  FixedDofs dofs;
  CollectFixedDofs(model, dofs);
  LoadSums sums;
  SumLoads(model, dofs, sums);
  return sums;
}

void ExpectSums(const LoadSums& sums, const std::array<double, 6>& expected, double tolerance) {
  for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(sums.sums[i], expected[i], tolerance) << i;
}

void ExpectLine(const LoadSums& sums, const korvex::Vector3& point,
                const korvex::Vector3& direction, double couple) {
  ASSERT_TRUE(sums.hasLine);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(sums.point[i], point[i], 1e-9);
    EXPECT_NEAR(sums.direction[i], direction[i], 1e-12);
  }
  EXPECT_NEAR(sums.couple, couple, 1e-9);
}

ModelText Empty() {
  ModelText model;
  model.materials = {{2.06e11, 0.3, 7850.0}};
  model.thicknesses = {0.01};
  model.cSections = {{0.1, 0.005}};
  return model;
}

// Pressure q on a plate a x b in the plane z = 2, its corner at (1, 1): F = q a b at its middle.
TEST(SumLoads, OfAUniformPressure) {
  ModelText model = Empty();
  model.nodes = {{1, 1, 2}, {5, 1, 2}, {5, 4, 2}, {1, 4, 2}};
  model.shells4 = {{{0, 1, 2, 3}, 0, 0}};
  model.shell4Loads = {{0, {10.0, 10.0, 10.0}}};
  const LoadSums sums = Sum(model);
  // F = 10 x 4 x 3 = 120 along z at (3, 2.5): Mx = y F = 300, My = -x F = -360.
  ExpectSums(sums, {0, 0, 120, 300, -360, 0}, 1e-7);  // Gauss points have ten decimals
  ExpectLine(sums, {3, 2.5, 0}, {0, 0, 1}, 0.0);
}

// Pressure that grows linearly from 0 at x = 0 to q at x = 6 on a triangle with nodes at x = 0, 6,
// 0: volume q A / 3, and its centre at x = 6 / 2 (the integral of x^2 over that of x).
TEST(SumLoads, OfALinearPressureOnATriangle) {
  ModelText model = Empty();
  model.nodes = {{0, 0, 0}, {6, 0, 0}, {0, 3, 0}};
  model.shells3 = {{{0, 1, 2}, 0, 0}};
  model.shell3Loads = {{0, {0.0, 8.0, 0.0}}};
  const LoadSums sums = Sum(model);
  // A = 9, F = 8 x 9 / 3 = 24; x = 3: the integral of x^2 is 6^2 A / 6, that of x 6 A / 3.
  EXPECT_NEAR(sums.sums[2], 24.0, 1e-12);
  EXPECT_NEAR(-sums.sums[4], 24.0 * 3.0, 1e-12);
  // y: the integral of x y is 6 x 3 A / 12, over 6 A / 3: 0.75.
  EXPECT_NEAR(sums.sums[3], 24.0 * 0.75, 1e-12);
}

// A trapezoidal load from q1 to q2 on an oblique beam: (q1 + q2) L / 2 along local z, at
// L (q1 + 2 q2) / (3 (q1 + q2)) from the first node.
TEST(SumLoads, OfATrapezoidalLineLoadOnAnObliqueBeam) {
  ModelText model = Empty();
  model.nodes = {{1, 2, 3}, {1 + 3, 2 + 4, 3 + 12}};  // L = 13
  ModelText::Beam beam;
  beam.BeamSecType = korvex::BeamSecTypeC;
  beam.orientation = {4.0, -3.0, 0.0};  // square to the axis (3, 4, 12)
  model.beams = {beam};
  model.beamLoads = {{0, 2.0, 5.0}};
  const double F = (2.0 + 5.0) * 13.0 / 2.0, at = 13.0 * (2.0 + 10.0) / (3.0 * 7.0);
  const korvex::Vector3 place{1 + 3 * at / 13, 2 + 4 * at / 13, 3 + 12 * at / 13};
  const korvex::Vector3 force{0.8 * F, -0.6 * F, 0.0};
  const korvex::Vector3 moment = korvex::Cross(place, force);
  const LoadSums sums = Sum(model);
  ExpectSums(sums, {force[0], force[1], force[2], moment[0], moment[1], moment[2]}, 1e-10);
  EXPECT_NEAR(sums.couple, 0.0, 1e-10);
  // The line passes through the place of the resultant.
  const korvex::Vector3 off = korvex::Cross(korvex::Subtract(sums.point, place), sums.direction);
  EXPECT_NEAR(korvex::Length(off), 0.0, 1e-10);
}

// Forces with a couple: 3 along x through (0, 2, 0) and a moment of 7 about x make a wrench.
TEST(SumLoads, OfAForceAndACouple) {
  ModelText model = Empty();
  model.nodes = {{0, 2, 0}, {4, 0, 0}};
  ModelText::Beam beam;
  beam.BeamSecType = korvex::BeamSecTypeC;
  model.beams = {beam};
  model.forces = {{0, {3, 0, 0, 0, 0, 0}}, {1, {0, 0, 0, 7, 0, 0}}};
  const LoadSums sums = Sum(model);
  ExpectSums(sums, {3, 0, 0, 7, 0, -6}, 1e-12);
  ExpectLine(sums, {0, 2, 0}, {1, 0, 0}, 7.0);
}

// A prescribed displacement is no load, and a couple has no line of action.
TEST(SumLoads, LeaveOutPrescribedDisplacements) {
  ModelText model = Empty();
  model.nodes = {{0, 0, 0}, {4, 0, 0}};
  ModelText::Beam beam;
  beam.BeamSecType = korvex::BeamSecTypeC;
  model.beams = {beam};
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  model.forces = {{0, {0, 1e18, 0, 0, 0, 0}}, {1, {0, 0, 2, 0, 0, 0}}, {0, {0, 0, -2, 0, 0, 0}}};
  const LoadSums sums = Sum(model);
  ExpectSums(sums, {0, 0, 0, 0, -8, 0}, 1e-12);
  EXPECT_FALSE(sums.hasLine);
}

}  // namespace
}  // namespace kvx::test
