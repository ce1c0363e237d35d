// Loads as rows and nodal forces: against closed forms, the solver's own load vectors and sums of
// forces and moments about the origin.
#include "mesh/equivalent_loads.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "beam/beam_line_load.h"
#include "shell/shell_loads.h"

namespace kvx::test {
namespace {

using korvex::Cross;
using korvex::Length;
using korvex::Subtract;
using korvex::Vector3;
using Corners = std::vector<Vector3>;

// The solver's Gauss points have ten decimals, so its sums have an error of 1e-10.
constexpr double Digits = 1e-9;

Vector3 Plus(const Vector3& a, const Vector3& b, double factor = 1.0) {
  return {a[0] + factor * b[0], a[1] + factor * b[1], a[2] + factor * b[2]};
}

double Dot(const Vector3& a, const Vector3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

// Force and moment about the origin.
struct Resultant {
  Vector3 force{}, moment{};
};

void Add(const Vector3& at, const Vector3& force, const Vector3& moment, Resultant& sum) {
  sum.force = Plus(sum.force, force);
  sum.moment = Plus(Plus(sum.moment, moment), Cross(at, force));
}

void ExpectSame(const Resultant& a, const Resultant& b, double scale) {
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(a.force[i], b.force[i], Digits * scale) << "force " << i;
    EXPECT_NEAR(a.moment[i], b.moment[i], Digits * scale) << "moment " << i;
  }
}

ImportModel ShellOf(const Corners& corners) {
  ImportModel model;
  ImportShell shell;
  for (std::size_t k = 0; k < corners.size(); ++k) {
    model.nodes.push_back({corners[k][0], corners[k][1], corners[k][2]});
    shell.nodes[k] = static_cast<std::int32_t>(k);
  }
  model.shells.push_back(shell);
  return model;
}

void AddNodalForces(const ImportModel& model, const ImportCase& loads, Resultant& sum) {
  for (const korvex::NodalForce& each : loads.forces) {
    const auto& c = each.components;
    Add(PlaceOf(model, each.node), {c[0], c[1], c[2]}, {c[3], c[4], c[5]}, sum);
  }
}

// What the solver makes of the rows of pressure, by its own routine, and the nodal forces.
Resultant SumShell(const ImportModel& model, const ImportCase& loads) {
  Resultant sum;
  AddNodalForces(model, loads, sum);
  std::vector<double> coordinates;
  for (const korvex::Node& at : model.nodes)
    coordinates.insert(coordinates.end(), {at.x, at.y, at.z});
  std::array<double, 24> f{};
  const auto nodes = static_cast<std::int32_t>(model.nodes.size());
  for (const ImportPressure& each : loads.pressures) {
    if (nodes == 4) {
      korvex::Shell4Element element;
      korvex::SetGeometry(element, coordinates.data(), nodes, 1.0, 0.3, 1.0);
      korvex::Shell4LoadVector(element, {0, each.q}, f.data());
    } else {
      korvex::Shell3Element element;
      korvex::SetGeometry(element, coordinates.data(), nodes, 1.0, 0.3, 1.0);
      korvex::Shell3LoadVector(element, {0, each.q}, f.data());
    }
    for (std::int32_t k = 0; k < nodes; ++k) {
      const double* w = &f[6 * static_cast<std::size_t>(k)];
      Add(PlaceOf(model, k), {w[0], w[1], w[2]}, {}, sum);
    }
  }
  return sum;
}

// Bilinear functions and their derivatives, written out here anew.
struct Bilinear {
  std::array<double, 4> N{}, byXi{}, byEta{};
};
Bilinear BilinearAt(double xi, double eta) {
  constexpr std::array<double, 4> Xi{-1, 1, 1, -1}, Eta{-1, -1, 1, 1};
  Bilinear at;
  for (std::size_t k = 0; k < 4; ++k) {
    at.N[k] = (1 + Xi[k] * xi) * (1 + Eta[k] * eta) / 4;
    at.byXi[k] = Xi[k] * (1 + Eta[k] * eta) / 4;
    at.byEta[k] = Eta[k] * (1 + Xi[k] * xi) / 4;
  }
  return at;
}

// The resultant of a bilinear load on a quadrilateral by Simpson's rule in n x n fields: exact for
// what has the degree 3 in each direction. area(a, b): the factor of the area from the derivatives.
template <typename Area>
Resultant Integrate(const Corners& P, const std::array<double, 4>& q, const Vector3& direction,
                    int n, const Area& area) {
  Resultant sum;
  const double h = 1.0 / n;  // half of a field's width
  const auto weight = [n](int i) {
    return (i == 0 || i == 2 * n) ? 1.0 : (i % 2 == 1 ? 4.0 : 2.0);
  };
  for (int i = 0; i <= 2 * n; ++i) {
    for (int j = 0; j <= 2 * n; ++j) {
      const Bilinear at = BilinearAt(-1 + i * h, -1 + j * h);
      Vector3 r{}, a{}, b{};
      double value = 0.0;
      for (std::size_t k = 0; k < 4; ++k) {
        r = Plus(r, P[k], at.N[k]);
        a = Plus(a, P[k], at.byXi[k]);
        b = Plus(b, P[k], at.byEta[k]);
        value += at.N[k] * q[k];
      }
      const double w = weight(i) * weight(j) * h * h / 9.0 * value * area(a, b);
      Add(r, Plus({}, direction, w), {}, sum);
    }
  }
  return sum;
}

Vector3 NormalOf(const Corners& P) {
  const Vector3 n = Cross(Subtract(P[1], P[0]), Subtract(P.back(), P[0]));
  return Plus({}, n, 1.0 / Length(n));
}

// A plane through (5, -2, 3) that is parallel to no axis, with a quadrilateral whose sides all
// differ; h: how far corner 3 stands off the plane. The axes are (3, 6, 2) / 7 and (-6, 2, 3) / 7.
Corners Inclined(std::mt19937& random, double h) {
  std::uniform_real_distribution<double> move(-0.3, 0.3);
  const Vector3 u{3.0 / 7, 6.0 / 7, 2.0 / 7}, v{-6.0 / 7, 2.0 / 7, 3.0 / 7};
  const Vector3 n = Cross(u, v);
  constexpr std::array<std::array<double, 2>, 4> Square{{{0, 0}, {2, 0}, {2, 1.5}, {0, 1.5}}};
  Corners corners;
  for (const auto& [x, y] : Square) {
    const Vector3 at = Plus(Plus({5, -2, 3}, u, x + move(random)), v, y + move(random));
    corners.push_back(at);
  }
  corners[2] = Plus(corners[2], n, h);
  return corners;
}

std::array<double, 4> AnyPressures(std::mt19937& random) {
  std::uniform_real_distribution<double> pressure(-10.0, 10.0);
  return {pressure(random), pressure(random), pressure(random), pressure(random)};
}

TEST(EquivalentPressure, IsARowAlongTheNormal) {
  const ImportModel model = ShellOf({{0, 0, 0}, {2, 0, 0}, {2, 3, 0}, {0, 3, 0}});
  ImportCase loads;
  AddPressure(model, 0, {5, 5, 5, 5}, loads);
  ASSERT_EQ(loads.pressures.size(), 1U);
  EXPECT_EQ(loads.pressures[0].shell, 0);
  EXPECT_EQ(loads.pressures[0].q, (std::array<double, 3>{5, 5, 5}));
  EXPECT_TRUE(loads.forces.empty());
  // e3 is +z; the area is 6, its middle (1, 1.5).
  ExpectSame(SumShell(model, loads), {{0, 0, 30}, {45, -30, 0}}, 45);
}

TEST(EquivalentPressure, OfAPlaneIsARowAlone) {
  // q = 3 + 2 x - y at the corners of a distorted quadrilateral.
  const Corners corners{{0, 0, 0}, {4, 0, 0}, {3.25, 2.5, 0}, {0.5, 3, 0}};
  const ImportModel model = ShellOf(corners);
  ImportCase loads;
  AddPressure(model, 0, {3, 11, 7, 1}, loads);
  ASSERT_EQ(loads.pressures.size(), 1U);
  EXPECT_EQ(loads.pressures[0].q, (std::array<double, 3>{3, 11, 7}));
  EXPECT_TRUE(loads.forces.empty());
}

TEST(EquivalentPressure, OfAPlaneOnASlopeFarAwayIsARowAlone) {
  // Rounding of the corners must not make forces: 1e5 from the origin, sides of about 2.
  std::mt19937 random(3);
  for (int trial = 0; trial < 50; ++trial) {
    Corners corners = Inclined(random, 0.0);
    for (Vector3& at : corners) at = Plus(at, {1e5, -1e5, 1e5});
    const ImportModel model = ShellOf(corners);
    ImportCase loads;
    std::array<double, 4> q{};
    for (std::size_t k = 0; k < 4; ++k) q[k] = 0.01 * (corners[k][2] - 1e5);
    AddPressure(model, 0, q, loads);
    EXPECT_EQ(loads.pressures.size(), 1U);
    EXPECT_TRUE(loads.forces.empty());
  }
}

TEST(EquivalentPressure, WhatLiesInNoPlaneIsSplit) {
  // q = 36 at corner 4 alone. The integrals of N4 N_k over a rectangle are its area / 36 times 2,
  // 1, 2, 4 (as in the consistent mass matrix; Cook et al. 2002, sec. 11.3); the area is 6.
  const ImportModel model = ShellOf({{0, 0, 0}, {2, 0, 0}, {2, 3, 0}, {0, 3, 0}});
  ImportCase loads;
  AddPressure(model, 0, {0, 0, 0, 36}, loads);
  EXPECT_TRUE(loads.pressures.empty());
  ASSERT_EQ(loads.forces.size(), 4U);
  constexpr std::array<double, 4> Expected{12, 6, 12, 24};
  for (std::size_t k = 0; k < 4; ++k) {
    EXPECT_EQ(loads.forces[k].node, static_cast<std::int32_t>(k));
    EXPECT_NEAR(loads.forces[k].components[2], Expected[k], 24 * Digits);
  }
}

TEST(EquivalentPressure, SplitsSmallDifferencesToo) {
  // 1e-6 of the pressure at corner 4 is more than rounding: the integral of N4 over 6 is 6 / 4.
  const ImportModel model = ShellOf({{0, 0, 0}, {2, 0, 0}, {2, 3, 0}, {0, 3, 0}});
  ImportCase loads;
  AddPressure(model, 0, {1, 1, 1, 1.000001}, loads);
  EXPECT_EQ(loads.pressures.size(), 1U);
  double sum = 0.0;
  for (const korvex::NodalForce& each : loads.forces) sum += each.components[2];
  EXPECT_NEAR(sum, 1.5e-6, 1e-14);
}

TEST(EquivalentPressure, HasTheDecksForceAndMomentsOnAnyQuadrilateral) {
  std::mt19937 random(1);
  for (int trial = 0; trial < 200; ++trial) {
    const Corners corners = Inclined(random, trial % 2 == 0 ? 0.0 : 0.2);
    const std::array<double, 4> q = AnyPressures(random);
    const ImportModel model = ShellOf(corners);
    ImportCase loads;
    AddPressure(model, 0, q, loads);
    EXPECT_EQ(loads.pressures.size(), 1U);
    EXPECT_EQ(loads.forces.size(), 4U);
    const Vector3 e3 = NormalOf(corners);
    const auto flat = [&](const Vector3& a, const Vector3& b) { return Dot(Cross(a, b), e3); };
    // The area is about 3, the lever 6, the pressure 10.
    ExpectSame(SumShell(model, loads), Integrate(corners, q, e3, 1, flat), 200);
  }
}

TEST(EquivalentPressure, OnATriangleIgnoresTheFourthValue) {
  const ImportModel model = ShellOf({{0, 0, 0}, {3, 0, 0}, {0, 3, 0}});
  ImportCase loads;
  AddPressure(model, 0, {1, 2, 3, 99}, loads);
  ASSERT_EQ(loads.pressures.size(), 1U);
  EXPECT_EQ(loads.pressures[0].q, (std::array<double, 3>{1, 2, 3}));
  EXPECT_TRUE(loads.forces.empty());
}

TEST(EquivalentPressure, WithThreeCornersOnALineIsForcesAlone) {
  // Corner 2 lies on the line from 1 to 3: the solver's row would be NaN.
  const Corners corners{{0, 0, 0}, {1, 0, 0}, {3, 0, 0}, {1, 2, 0}};
  const ImportModel model = ShellOf(corners);
  ImportCase loads;
  AddPressure(model, 0, {4, 4, 4, 4}, loads);
  EXPECT_TRUE(loads.pressures.empty());
  // A triangle of area 3 with its middle at (4 / 3, 2 / 3).
  ExpectSame(SumShell(model, loads), {{0, 0, 12}, {8, -16, 0}}, 16);
  // Nearly on a line: digits of the extrapolation would be lost.
  loads = {};
  AddPressure(ShellOf({{0, 0, 0}, {1, -1e-5, 0}, {3, 0, 0}, {1, 2, 0}}), 0, {4, 4, 4, 4}, loads);
  EXPECT_TRUE(loads.pressures.empty());
  EXPECT_EQ(loads.forces.size(), 4U);
}

TEST(EquivalentPressure, ValueAtCornerFourIsThatOfThePlane) {
  // q = 3 + 2 x - y as above: at (0.5, 3) it is 1.
  const ImportModel model = ShellOf({{0, 0, 0}, {4, 0, 0}, {3.25, 2.5, 0}, {0.5, 3, 0}});
  EXPECT_NEAR(PressureAtCorner4(model, {0, {3, 11, 7}}), 1, 1e-12);
  const ImportModel line = ShellOf({{0, 0, 0}, {1, 0, 0}, {3, 0, 0}, {1, 2, 0}});
  EXPECT_EQ(PressureAtCorner4(line, {0, {5, 5, 5}}), 5);
  EXPECT_EQ(PressureAtCorner4(line, {0, {5, 6, 8}}), 7);
}

TEST(EquivalentPressure, OfZeroIsNothingAndWithoutAnAreaNoForce) {
  ImportCase loads;
  AddPressure(ShellOf({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}), 0, {0, 0, 0, 0}, loads);
  EXPECT_TRUE(loads.pressures.empty());
  EXPECT_TRUE(loads.forces.empty());
  AddPressure(ShellOf({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}}), 0, {1, 1, 1, 2}, loads);
  EXPECT_TRUE(loads.forces.empty());
}

TEST(EquivalentTraction, OnATriangleIsExact) {
  // Area 4.5; the integrals of N_i N_k are area / 12 (twice that for i = k).
  const ImportModel model = ShellOf({{0, 0, 0}, {3, 0, 0}, {0, 3, 0}});
  ImportCase loads;
  AddTraction(model, 0, {8, 0, 0, 99}, {1, 0, 0}, loads);
  ASSERT_EQ(loads.forces.size(), 3U);
  constexpr std::array<double, 3> Expected{6, 3, 3};
  for (std::size_t k = 0; k < 3; ++k)
    EXPECT_NEAR(loads.forces[k].components[0], Expected[k], 1e-12);
}

TEST(EquivalentTraction, HasTheForceAndMomentsOfTheTrueArea) {
  std::mt19937 random(2);
  const Vector3 direction{0.6, 0, -0.8};
  const auto trueArea = [](const Vector3& a, const Vector3& b) { return Length(Cross(a, b)); };
  for (int trial = 0; trial < 100; ++trial) {
    const Corners corners = Inclined(random, 0.0);
    const std::array<double, 4> q = AnyPressures(random);
    const ImportModel model = ShellOf(corners);
    ImportCase loads;
    AddTraction(model, 0, q, direction, loads);
    EXPECT_TRUE(loads.pressures.empty());
    ExpectSame(SumShell(model, loads), Integrate(corners, q, direction, 1, trueArea), 200);
  }
  // The saddle z = x y over the unit square: its area is the integral of sqrt(1 + x^2 + y^2), here
  // in 20 x 20 fields; 2 x 2 points are 2e-4 off, the flat area 0.28.
  const Corners saddle{{0, 0, 0}, {1, 0, 0}, {1, 1, 1}, {0, 1, 0}};
  ImportCase loads;
  AddTraction(ShellOf(saddle), 0, {1, 1, 1, 1}, {0, 0, 1}, loads);
  const double area = Integrate(saddle, {1, 1, 1, 1}, {0, 0, 1}, 20, trueArea).force[2];
  EXPECT_NEAR(area, 1.2808, 1e-4);
  EXPECT_NEAR(SumShell(ShellOf(saddle), loads).force[2], area, 5e-4);
}

// A beam of length 5 along (3, 0, 4) / 5 whose web points to y: z = y global.
ImportModel BeamOf(const Vector3& orientation, bool isReversed = false) {
  ImportModel model;
  model.nodes = {{1, 2, 3}, {4, 2, 7}};
  ImportBeam beam;
  beam.nodes = {0, 1};
  if (isReversed) beam.nodes = {1, 0};
  beam.orientation = orientation;
  model.beams.push_back(beam);
  return model;
}

constexpr double L = 5.0;
constexpr Vector3 Axis{0.6, 0, 0.8};
constexpr Vector3 Across{0, 1, 0};
constexpr Vector3 Third{-0.8, 0, 0.6};  // Axis x Across

// The loads by node: force and moment along `Across` and `Third` = Axis x Across, about them.
struct EndValues {
  double force1 = 0, moment1 = 0, force2 = 0, moment2 = 0;
};

// Adds a load along Across to a beam that has no orientation, so that all of it becomes nodal.
EndValues FixedEnds(BeamSpanLoad load) {
  const ImportModel model = BeamOf({});
  ImportCase loads;
  load.beam = 0;
  load.direction = Across;
  EXPECT_FALSE(AddBeamLoad(model, load, loads));
  EXPECT_TRUE(loads.lineLoads.empty());
  EndValues ends;
  for (const korvex::NodalForce& each : loads.forces) {
    const auto& c = each.components;
    const Vector3 force{c[0], c[1], c[2]}, moment{c[3], c[4], c[5]};
    // A force along Across bends about Third; a moment about Across makes forces along Third.
    const Vector3& f = load.isMoment ? Third : Across;
    const Vector3& m = load.isMoment ? Across : Third;
    EXPECT_NEAR(Length(Subtract(force, Plus({}, f, Dot(force, f)))), 0, 1e-12);
    EXPECT_NEAR(Length(Subtract(moment, Plus({}, m, Dot(moment, m)))), 0, 1e-12);
    (each.node == 0 ? ends.force1 : ends.force2) += Dot(force, f);
    (each.node == 0 ? ends.moment1 : ends.moment2) += Dot(moment, m);
  }
  return ends;
}

void ExpectEnds(const EndValues& ends, const EndValues& expected) {
  EXPECT_NEAR(ends.force1, expected.force1, 1e-12 * 10);
  EXPECT_NEAR(ends.force2, expected.force2, 1e-12 * 10);
  EXPECT_NEAR(ends.moment1, expected.moment1, 1e-12 * 10);
  EXPECT_NEAR(ends.moment2, expected.moment2, 1e-12 * 10);
}

// The fixed-end values are those of tables for slender beams (Roark 1989, table 3, cases 1d, 2d,
// 3d); the nodal loads are the support forces turned round. Moments about x cross the load: a load
// at s turns the first end from x to the load.
TEST(EquivalentBeamLoad, HasTheFixedEndValuesOfTables) {
  // Uniform: q L / 2, q L^2 / 12.
  ExpectEnds(FixedEnds({-1, {}, false, 0, 1, 2, 2}), {5, 50.0 / 12, 5, -50.0 / 12});
  // Rising from 0 to q: 3/20 and 7/20 q L, q L^2 / 30 and / 20.
  ExpectEnds(FixedEnds({-1, {}, false, 0, 1, 0, 2}), {1.5, 50.0 / 30, 3.5, -50.0 / 20});
  // Falling from q to 0.
  ExpectEnds(FixedEnds({-1, {}, false, 0, 1, 2, 0}), {3.5, 50.0 / 20, 1.5, -50.0 / 30});
  // A single force at a: P b^2 (3 a + b) / L^3, P a b^2 / L^2.
  const double a = 2, b = 3, P = 7;
  ExpectEnds(FixedEnds({-1, {}, false, a / L, a / L, P, 0}),
             {P * b * b * (3 * a + b) / 125, P * a * b * b / 25,  //
              P * a * a * (3 * b + a) / 125, -P * a * a * b / 25});
  // Uniform from the first end to a = 2: q a (2 L^3 - 2 a^2 L + a^3) / (2 L^3),
  // q a^2 (6 L^2 - 8 a L + 3 a^2) / (12 L^2), q a^3 (4 L - 3 a) / (12 L^2).
  ExpectEnds(FixedEnds({-1, {}, false, 0, a / L, 3, 3}),
             {3.0 * 2 * (250 - 40 + 8) / 250, 3.0 * 4 * (150 - 80 + 12) / 300,
              3.0 * 8 * (10 - 2) / 250, -3.0 * 8 * (20 - 6) / 300});
}

// A moment M about a cross axis: forces 6 M a b / L^3, end moments M b (2 a - b) / L^2 and
// M a (2 b - a) / L^2 as support moments against M (Roark 1989, table 3, case 3d). With
// Across x Axis = -Third: the first end is pushed along +Third.
TEST(EquivalentBeamLoad, HasTheFixedEndValuesOfAMoment) {
  const double a = 2, b = 3, M = 7;
  ExpectEnds(FixedEnds({-1, {}, true, a / L, a / L, M, 0}),
             {6 * M * a * b / 125, -M * b * (2 * a - b) / 25,  //
              -6 * M * a * b / 125, -M * a * (2 * b - a) / 25});
  // Uniform: forces of m, no end moments: the integral of b (2 a - b) is 0.
  ExpectEnds(FixedEnds({-1, {}, true, 0, 1, 2, 2}), {2, 0, -2, 0});
}

TEST(EquivalentBeamLoad, AlongTheAxisAndTwistAreSharedByTheLever) {
  const ImportModel model = BeamOf(Across);
  for (const bool isMoment : {false, true}) {
    ImportCase loads;
    EXPECT_FALSE(AddBeamLoad(model, {0, Axis, isMoment, 0.2, 0.2, 10, 0}, loads));
    ASSERT_EQ(loads.forces.size(), 2U);
    const std::size_t first = isMoment ? 3 : 0;
    EXPECT_NEAR(loads.forces[0].components[first], 8 * 0.6, 1e-12);
    EXPECT_NEAR(loads.forces[0].components[first + 2], 8 * 0.8, 1e-12);
    EXPECT_NEAR(loads.forces[1].components[first], 2 * 0.6, 1e-12);
    EXPECT_NEAR(loads.forces[1].components[first + 2], 2 * 0.8, 1e-12);
    for (std::size_t dof = 0; dof < 6; ++dof) {
      if (dof == first || dof == first + 2) continue;
      EXPECT_NEAR(loads.forces[0].components[dof], 0, 1e-12);
    }
  }
}

TEST(EquivalentBeamLoad, AlongTheWebOverAllItsLengthIsARow) {
  // The orientation need not be square to the axis: its part across it is y.
  const ImportModel model = BeamOf({3, 2, 4});
  ImportCase loads;
  EXPECT_TRUE(AddBeamLoad(model, {0, Across, false, 0, 1, 2, 3}, loads));
  EXPECT_TRUE(AddBeamLoad(model, {0, {0, -1, 0}, false, 0, 1, 2, 3}, loads));
  // A length of a deck with seven digits.
  EXPECT_TRUE(AddBeamLoad(model, {0, Across, false, 0, 0.9999998, 2, 3}, loads));
  EXPECT_TRUE(loads.forces.empty());
  ASSERT_EQ(loads.lineLoads.size(), 3U);
  EXPECT_EQ(loads.lineLoads[0].element, 0);
  EXPECT_EQ(loads.lineLoads[0].q, (std::array<double, 2>{2, 3}));
  EXPECT_EQ(loads.lineLoads[1].q, (std::array<double, 2>{-2, -3}));
  EXPECT_EQ(loads.lineLoads[2].q, (std::array<double, 2>{2, 3}));
  // Not rows: a part, a moment, across the web.
  EXPECT_FALSE(AddBeamLoad(model, {0, Across, false, 0, 0.9, 2, 3}, loads));
  EXPECT_FALSE(AddBeamLoad(model, {0, Across, false, 0.1, 1, 2, 3}, loads));
  EXPECT_FALSE(AddBeamLoad(model, {0, Across, true, 0, 1, 2, 3}, loads));
  EXPECT_FALSE(AddBeamLoad(model, {0, Third, false, 0, 1, 2, 3}, loads));
  EXPECT_EQ(loads.lineLoads.size(), 3U);
  // Of nothing there is no row.
  EXPECT_TRUE(AddBeamLoad(model, {0, Across, false, 0, 1, 0, 0}, loads));
  EXPECT_EQ(loads.lineLoads.size(), 3U);
}

TEST(EquivalentBeamLoad, ASmallPartAcrossTheWebIsNotLost) {
  // 0.6 % of 2 per length over 5 is 0.06 along Third.
  const ImportModel model = BeamOf(Across);
  const Vector3 direction = Plus({}, Plus(Across, Third, 0.006), 1 / std::sqrt(1 + 0.006 * 0.006));
  ImportCase loads;
  EXPECT_FALSE(AddBeamLoad(model, {0, direction, false, 0, 1, 2, 2}, loads));
  EXPECT_EQ(loads.lineLoads.size(), 1U);
  Resultant sum;
  AddNodalForces(model, loads, sum);
  EXPECT_NEAR(Dot(sum.force, Third), 0.06, 1e-5);
}

// What the solver makes of the rows of line loads, and the nodal forces: [node][dof].
std::array<std::array<double, 6>, 2> NodalLoads(const ImportModel& model, const ImportCase& loads) {
  std::array<std::array<double, 6>, 2> sum{};
  for (const korvex::NodalForce& each : loads.forces) {
    for (std::size_t d = 0; d < 6; ++d) {
      sum[static_cast<std::size_t>(each.node)][d] += each.components[d];
    }
  }
  const ImportBeam& beam = model.beams[0];
  for (const korvex::BeamLineLoad& each : loads.lineLoads) {
    korvex::BeamElement element;
    element.NodeI = PlaceOf(model, beam.nodes[0]);
    element.NodeJ = PlaceOf(model, beam.nodes[1]);
    element.RefPoint = Plus(element.NodeI, beam.orientation);
    std::array<double, 12> f{};
    korvex::BeamLineLoadVector(element, each, f.data());
    for (std::size_t k = 0; k < 12; ++k) {
      sum[static_cast<std::size_t>(beam.nodes[k / 6])][k % 6] += f[k];
    }
  }
  return sum;
}

void ExpectSameNodes(const std::array<std::array<double, 6>, 2>& a,
                     const std::array<std::array<double, 6>, 2>& b) {
  for (std::size_t k = 0; k < 2; ++k) {
    for (std::size_t d = 0; d < 6; ++d) EXPECT_NEAR(a[k][d], b[k][d], 1e-12 * 20) << k << d;
  }
}

// A load in any direction: its part along the web is a row, the rest nodal, and together they are
// what a beam without orientation gets as nodal loads alone. So the signs of rows and nodal loads
// are those of the solver.
TEST(EquivalentBeamLoad, RowsAndNodalLoadsAreTheSameToTheSolver) {
  const Vector3 direction{2.0 / 7, 3.0 / 7, -6.0 / 7};
  for (const Vector3& web : {Across, Third, Vector3{1, 1, 0}, Vector3{-1, -2, 3}}) {
    for (const bool isReversed : {false, true}) {
      const ImportModel plain = BeamOf({}, isReversed), model = BeamOf(web, isReversed);
      ImportCase nodal, mixed;
      EXPECT_FALSE(AddBeamLoad(plain, {0, direction, false, 0, 1, 2, 3}, nodal));
      EXPECT_TRUE(nodal.lineLoads.empty());
      EXPECT_FALSE(AddBeamLoad(model, {0, direction, false, 0, 1, 2, 3}, mixed));
      EXPECT_EQ(mixed.lineLoads.size(), 1U);
      ExpectSameNodes(NodalLoads(plain, nodal), NodalLoads(model, mixed));
    }
  }
}

TEST(EquivalentBeamLoad, OfAReversedBeamIsTheSame) {
  // 20 % from the one end is 80 % from the other; q at the ends changes places.
  const Vector3 direction{2.0 / 7, 3.0 / 7, -6.0 / 7};
  for (const bool isMoment : {false, true}) {
    ImportCase forward, reversed;
    AddBeamLoad(BeamOf({}), {0, direction, isMoment, 0.2, 0.5, 2, 3}, forward);
    AddBeamLoad(BeamOf({}, true), {0, direction, isMoment, 0.5, 0.8, 3, 2}, reversed);
    ExpectSameNodes(NodalLoads(BeamOf({}), forward), NodalLoads(BeamOf({}, true), reversed));
  }
}

TEST(EquivalentBeamLoad, HasTheForceAndMomentsOfAnySpan) {
  std::mt19937 random(4);
  std::uniform_real_distribution<double> part(0.0, 1.0), value(-9.0, 9.0);
  for (int trial = 0; trial < 100; ++trial) {
    const bool isMoment = trial % 2 == 0;
    const double from = part(random), to = from + (1 - from) * part(random);
    const double q1 = value(random), q2 = value(random);
    Vector3 direction{value(random), value(random), value(random)};
    direction = Plus({}, direction, 1 / Length(direction));
    const ImportModel model = BeamOf({});
    ImportCase loads;
    AddBeamLoad(model, {0, direction, isMoment, from, to, q1, q2}, loads);
    Resultant sum, expected;
    AddNodalForces(model, loads, sum);
    // A trapezium: total (q1 + q2) / 2 times its length; its first moment from `from` on is
    // (q1 + 2 q2) / 6 times the length squared.
    const double span = (to - from) * L;
    const double total = (q1 + q2) / 2 * span, first = (q1 + 2 * q2) / 6 * span * span;
    if (isMoment) {
      expected.moment = Plus({}, direction, total);
    } else {
      const Vector3 start = Plus({1, 2, 3}, Axis, from * L);
      Add(start, Plus({}, direction, total), Plus({}, Cross(Axis, direction), first), expected);
    }
    ExpectSame(sum, expected, 100);
  }
}

TEST(EquivalentBeamLoad, OfABeamWithoutLengthIsNothing) {
  ImportModel model = BeamOf(Across);
  model.nodes[1] = model.nodes[0];
  ImportCase loads;
  EXPECT_FALSE(AddBeamLoad(model, {0, Across, false, 0, 1, 2, 3}, loads));
  EXPECT_FALSE(AddBeamLoad(model, {0, Across, true, 0.5, 0.5, 2, 0}, loads));
  EXPECT_TRUE(loads.forces.empty());
  EXPECT_TRUE(loads.lineLoads.empty());
}

TEST(BeamAxes, AreThoseOfTheSolver) {
  const ImportModel model = BeamOf({0, 8, 0});
  const auto [x, y, z] = BeamAxes(model, model.beams[0]);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(x[i], Axis[i], 1e-15);
    EXPECT_NEAR(z[i], Across[i], 1e-15);
    EXPECT_NEAR(y[i], -Third[i], 1e-15);  // z x x = Across x Axis
  }
  // Along the axis, or none.
  for (const Vector3& v : {Vector3{-3, 0, -4}, Vector3{}}) {
    const ImportModel none = BeamOf(v);
    const auto axes = BeamAxes(none, none.beams[0]);
    EXPECT_EQ(axes[1], Vector3{});
    EXPECT_EQ(axes[2], Vector3{});
    EXPECT_NEAR(axes[0][2], 0.8, 1e-15);
  }
  // Along the axis but for the rounding of the seven digits that a deck has.
  const ImportModel rounded = BeamOf({3.000001, 0, 4});
  EXPECT_EQ(BeamAxes(rounded, rounded.beams[0])[2], Vector3{});
}

}  // namespace
}  // namespace kvx::test
