// Stresses of sections against hand values, and the places of their points against the drawing of
// the section on the page of the model file. N and mm.
//
// T 300 x 10 / 200 x 12: A = 5400, zc = (3000 x 150 + 2400 x 306) / 5400 = 219.333,
//   Iy = 10 x 300^3 / 12 + 3000 x 69.333^2 + 200 x 12^3 / 12 + 2400 x 86.667^2 = 54976800,
//   Iz = 300 x 10^3 / 12 + 12 x 200^3 / 12 = 8025000,
//   J = (300 x 10^3 + 200 x 12^3) / 3 = 215200.
#include "audit/section_stresses.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "audit/beam_models.h"
#include "report/stop.h"
#include "support/solve_model.h"

namespace kvx::test {
namespace {

using korvex::Model;
using korvex::test::AssembleModel;
using korvex::test::ModelText;
using korvex::test::SolveModel;
using korvex::test::TestSection;

// Rounding of a handful of operations.
constexpr double Rounding = 1e-12;

SectionShape MakeShape(const TestSection& section) {
  Model model;
  AssembleModel(BuildStraight({0.0, 2000.0}, section), model);
  return MakeSectionShape(model.Tables, model.BeamElements[0], 0);
}

SectionForces Only(SectionForce component, double value) {
  SectionForces forces{};
  forces[component] = value;
  return forces;
}

std::vector<FibreStress> StressesOf(const TestSection& section, const SectionForces& forces) {
  std::vector<FibreStress> stresses;
  FindFibreStresses(MakeShape(section), forces, stresses);
  return stresses;
}

// The points of one place, in their order.
std::vector<SectionPoint> PointsAt(const SectionShape& shape, SectionPlace place) {
  std::vector<SectionPoint> points;
  for (const SectionPoint& point : shape.points) {
    if (point.place == place) points.push_back(point);
  }
  return points;
}

std::vector<FibreStress> StressesAt(const std::vector<FibreStress>& all, SectionPlace place) {
  std::vector<FibreStress> stresses;
  for (const FibreStress& stress : all) {
    if (stress.place == place) stresses.push_back(stress);
  }
  return stresses;
}

struct Box {
  double yMin, yMax, zMin, zMax;
};

Box BoundPoints(const SectionShape& shape) {
  Box box{1e9, -1e9, 1e9, -1e9};
  for (const SectionPoint& point : shape.points) {
    box.yMin = std::min(box.yMin, point.y);
    box.yMax = std::max(box.yMax, point.y);
    box.zMin = std::min(box.zMin, point.z);
    box.zMax = std::max(box.zMax, point.z);
  }
  return box;
}

void ExpectBox(const Box& found, const Box& expected) {
  EXPECT_NEAR(found.yMin, expected.yMin, 1e-9);
  EXPECT_NEAR(found.yMax, expected.yMax, 1e-9);
  EXPECT_NEAR(found.zMin, expected.zMin, 1e-9);
  EXPECT_NEAR(found.zMax, expected.zMax, 1e-9);
}

constexpr double TeeZc = (3000.0 * 150.0 + 2400.0 * 306.0) / 5400.0;
constexpr double TeeIy = 54976800.0, TeeIz = 8025000.0, TeeJ = 215200.0;

TEST(SectionShape, CornersOfATee) {
  ExpectBox(BoundPoints(MakeShape(TeeSection())), {-100.0, 100.0, -TeeZc, 312.0 - TeeZc});
}

// The flange of an L begins at the web's outer face, 6 from its centre line, and ends at 84. The
// centroid lies 1440 x 39 / 4440 beside the centre line, towards the flange.
constexpr double AngleYc = 1440.0 * 39.0 / 4440.0;
constexpr double AngleZc = (3000.0 * 125.0 + 1440.0 * 258.0) / 4440.0;

TEST(SectionShape, CornersOfAnAngle) {
  ExpectBox(BoundPoints(MakeShape(AngleSection(false))),
            {-6.0 - AngleYc, 84.0 - AngleYc, -AngleZc, 266.0 - AngleZc});
  ExpectBox(BoundPoints(MakeShape(AngleSection(true))),
            {-84.0 + AngleYc, 6.0 + AngleYc, -AngleZc, 266.0 - AngleZc});
}

// Its outer corners: tip and heel; the web's edge stands below the heel's side.
TEST(SectionShape, PlacesOnAnAngle) {
  const SectionShape shape = MakeShape(AngleSection(false));
  const auto heel = PointsAt(shape, SectionPlace::FlangeHeel);
  ASSERT_EQ(heel.size(), 1U);
  EXPECT_NEAR(heel[0].y, -6.0 - AngleYc, 1e-9);
  EXPECT_NEAR(heel[0].z, 266.0 - AngleZc, 1e-9);
  const auto edge = PointsAt(shape, SectionPlace::WebEdge);
  ASSERT_EQ(edge.size(), 2U);
  EXPECT_NEAR(edge[0].y, -6.0 - AngleYc, 1e-9);
  EXPECT_NEAR(edge[1].y, 6.0 - AngleYc, 1e-9);
  // The centroid lies 12.6 beside the web's centre line, within the flange.
  EXPECT_EQ(PointsAt(shape, SectionPlace::FlangeAtCentroid).size(), 2U);
}

TEST(SectionShape, CornersOfAFlatBar) {
  const SectionShape shape = MakeShape(FlatBarSection());
  EXPECT_EQ(shape.kind, SectionKind::FlatBar);
  ExpectBox(BoundPoints(shape), {-10.0, 10.0, -100.0, 100.0});
  EXPECT_EQ(PointsAt(shape, SectionPlace::WebEdge).size(), 4U);
}

// Web 20 x 10 under a flange 200 x 40: zc = (200 x 10 + 8000 x 40) / 8200 = 39.3 is in the flange.
TEST(SectionShape, CentroidInTheFlange) {
  const SectionShape shape =
      MakeShape({"T", korvex::BeamSecTypeT, {20.0, 10.0, 200.0, 40.0}, 0.0, false});
  EXPECT_TRUE(PointsAt(shape, SectionPlace::WebAtCentroid).empty());
  EXPECT_EQ(PointsAt(shape, SectionPlace::WebTop).size(), 2U);
}

TEST(SectionShape, TubeIsACircle) {
  const SectionShape shape = MakeShape(TubeSection());
  EXPECT_EQ(shape.kind, SectionKind::Tube);
  EXPECT_EQ(shape.outerRadius, 104.0);
  EXPECT_TRUE(shape.points.empty());
}

// The areas beyond the cuts at the web's top and at the flange's roots, and the block of the flange
// over the web, are the whole section: their first moments about the centroid add up to zero.
TEST(SectionShape, FirstMomentsAddUpToZero) {
  for (const TestSection& section : {TeeSection(), AngleSection(false), AngleSection(true)}) {
    const SectionShape shape = MakeShape(section);
    const auto& d = section.dimensions;
    double Qy = 0.0, Qz = 0.0;
    const auto web = PointsAt(shape, SectionPlace::WebTop);
    Qy += web[0].alongVz * shape.Iy * d[1];
    Qz += web[0].alongVy * shape.Iz * d[1];
    const auto roots = PointsAt(shape, SectionPlace::FlangeRoot);
    for (std::size_t i = 0; i < roots.size(); i += 2) {
      Qy += roots[i].alongVz * shape.Iy * d[3];
      Qz += roots[i].alongVy * shape.Iz * d[3];
    }
    const double webLine = (web[0].y + web[1].y) / 2.0;
    const double flangeLine = (roots[0].z + roots[1].z) / 2.0;
    Qy += d[1] * d[3] * flangeLine;
    Qz += d[1] * d[3] * webLine;
    EXPECT_NEAR(Qy, 0.0, 1e-7) << section.name << section.mirrored;
    EXPECT_NEAR(Qz, 0.0, 1e-7) << section.name << section.mirrored;
  }
}

TEST(SectionStresses, PullIsTheSameEverywhere) {
  for (const TestSection& section :
       {TeeSection(), AngleSection(false), FlatBarSection(), TubeSection()}) {
    const SectionShape shape = MakeShape(section);
    for (const FibreStress& stress : StressesOf(section, Only(ForceN, 54000.0))) {
      EXPECT_NEAR(stress.sigma, 54000.0 / shape.A, 1e-12 * stress.sigma) << section.name;
      EXPECT_NEAR(stress.vonMises, stress.sigma, 1e-12 * stress.sigma);
      EXPECT_EQ(stress.tau, 0.0);
    }
  }
  EXPECT_NEAR(StressesOf(TeeSection(), Only(ForceN, 54000.0))[0].sigma, 10.0, Rounding * 10.0);
}

// A positive My stretches the flange. M = 5e7: flange 5e7 x 92.667 / Iy = 84.28, edge -199.5.
TEST(SectionStresses, BendingOfATeeInItsWeb) {
  const auto stresses = StressesOf(TeeSection(), Only(MomentMy, 5e7));
  double high = -1e9, low = 1e9;
  for (const FibreStress& stress : stresses) {
    high = std::max(high, stress.sigma);
    low = std::min(low, stress.sigma);
  }
  EXPECT_NEAR(high, 5e7 * (312.0 - TeeZc) / TeeIy, Rounding * 100.0);
  EXPECT_NEAR(low, -5e7 * TeeZc / TeeIy, Rounding * 200.0);
  EXPECT_EQ(StressesAt(stresses, SectionPlace::WebEdge)[0].sigma, low);
}

// A positive Mz stretches the -y side: 4e6 x 100 / Iz = 49.84 at the flange's tips.
TEST(SectionStresses, BendingOfATeeSideways) {
  for (const FibreStress& tip :
       StressesAt(StressesOf(TeeSection(), Only(MomentMz, 4e6)), SectionPlace::FlangeTip)) {
    EXPECT_NEAR(tip.sigma, -4e6 * tip.y / TeeIz, Rounding * 100.0);
    EXPECT_NEAR(std::fabs(tip.sigma), 49.84, 0.005);
  }
}

// V Q / (I t) for V = 1e5: at the centroid Q = 10 x 219.333^2 / 2; at the web's top Q = 3000 x
// 69.333 = 208000; at the flange's root, 5 beside the web's middle, Q = 12 x 95 x 86.667 = 98800.
TEST(SectionStresses, ShearOfATeeInItsWeb) {
  const auto stresses = StressesOf(TeeSection(), Only(ForceVz, -1e5));
  const double centroid = 1e5 * (10.0 * TeeZc * TeeZc / 2.0) / (TeeIy * 10.0);
  EXPECT_NEAR(StressesAt(stresses, SectionPlace::WebAtCentroid)[0].tau, centroid, 1e-10);
  EXPECT_NEAR(centroid, 43.752, 0.001);
  EXPECT_NEAR(StressesAt(stresses, SectionPlace::WebTop)[1].tau, 37.834, 0.001);
  for (const FibreStress& root : StressesAt(stresses, SectionPlace::FlangeRoot)) {
    EXPECT_NEAR(root.tau, 1e5 * 98800.0 / (TeeIy * 12.0), 1e-10);
  }
  for (const SectionPlace free : {SectionPlace::WebEdge, SectionPlace::FlangeTip}) {
    for (const FibreStress& stress : StressesAt(stresses, free)) EXPECT_EQ(stress.tau, 0.0);
  }
  // The mean on the web: 1e5 / 3000.
  EXPECT_NEAR(FindNominalStresses(MakeShape(TeeSection()), Only(ForceVz, -1e5)).webShear,
              -100.0 / 3.0, 1e-10);
}

// V = 1e4 sideways: at the root Q = 12 x 95 x 52.5 = 59850. A rectangle alone, the flange, has
// 1.5 V / A = 6.25; this is a little less.
TEST(SectionStresses, ShearOfATeeSideways) {
  const auto roots =
      StressesAt(StressesOf(TeeSection(), Only(ForceVy, 1e4)), SectionPlace::FlangeRoot);
  ASSERT_EQ(roots.size(), 4U);
  for (const FibreStress& root : roots) {
    EXPECT_NEAR(root.tau, 1e4 * 59850.0 / (TeeIz * 12.0), 1e-10);
    EXPECT_NEAR(root.tau, 6.215, 0.001);
  }
}

// T t / J: 1e6 x 10 / 215200 in the web and 1e6 x 12 / 215200 in the flange.
TEST(SectionStresses, TorsionOfATee) {
  const auto stresses = StressesOf(TeeSection(), Only(MomentT, -1e6));
  EXPECT_NEAR(StressesAt(stresses, SectionPlace::WebEdge)[0].tau, 1e7 / TeeJ, 1e-10);
  EXPECT_NEAR(StressesAt(stresses, SectionPlace::FlangeTip)[0].tau, 1.2e7 / TeeJ, 1e-10);
  EXPECT_NEAR(StressesAt(stresses, SectionPlace::FlangeTip)[0].vonMises,
              std::sqrt(3.0) * 1.2e7 / TeeJ, 1e-10);
  EXPECT_NEAR(FindNominalStresses(MakeShape(TeeSection()), Only(MomentT, -1e6)).torsion,
              1.2e7 / TeeJ, 1e-10);
}

// Both shear forces run along the plates: on one side of the web they add up in the flange, on the
// other they are opposite. Torsion comes on top of either.
TEST(SectionStresses, ShearForcesAddWithTheirSigns) {
  SectionForces both{};
  both[ForceVz] = 1e5;
  both[ForceVy] = 1e4;
  both[MomentT] = 1e6;
  const double z = 1e5 * 98800.0 / (TeeIy * 12.0), y = 1e4 * 59850.0 / (TeeIz * 12.0);
  const double t = 1.2e7 / TeeJ;
  for (const FibreStress& root :
       StressesAt(StressesOf(TeeSection(), both), SectionPlace::FlangeRoot)) {
    EXPECT_NEAR(root.tau, (root.y > 0.0 ? z + y : z - y) + t, 1e-10) << root.y;
  }
}

// A mirrored L under mirrored forces has the same stresses at the mirrored places.
TEST(SectionStresses, MirroredAngleUnderMirroredForces) {
  const SectionForces forces{3e4, 1e4, -5e4, 2e5, 3e7, 4e6};
  const SectionForces mirrored{3e4, -1e4, -5e4, -2e5, 3e7, -4e6};
  const auto plain = StressesOf(AngleSection(false), forces);
  const auto other = StressesOf(AngleSection(true), mirrored);
  ASSERT_EQ(plain.size(), other.size());
  for (const FibreStress& a : plain) {
    const auto same = [&](const FibreStress& b) {
      return a.place == b.place && std::fabs(a.y + b.y) < 1e-9 && std::fabs(a.z - b.z) < 1e-9;
    };
    const auto b = std::find_if(other.begin(), other.end(), same);
    ASSERT_NE(b, other.end());
    EXPECT_NEAR(b->sigma, a.sigma, 1e-9);
    EXPECT_NEAR(b->tau, a.tau, 1e-9);
    EXPECT_NEAR(b->vonMises, a.vonMises, 1e-9);
  }
}

// Flat bar 200 x 20, A = 4000: 1.5 V / A at mid-height, 3 T / (b t^2) in torsion, and across it
// 1.5 V / A at its centre.
TEST(SectionStresses, ShearAndTorsionOfAFlatBar) {
  const auto Vz = StressesOf(FlatBarSection(), Only(ForceVz, 8e4));
  EXPECT_NEAR(StressesAt(Vz, SectionPlace::WebAtCentroid)[0].tau, 30.0, 1e-11);
  EXPECT_NEAR(StressesAt(Vz, SectionPlace::Centre)[0].tau, 30.0, 1e-11);
  for (const FibreStress& edge : StressesAt(Vz, SectionPlace::WebEdge)) {
    EXPECT_NEAR(edge.tau, 0.0, 1e-12);
  }
  const auto Vy = StressesOf(FlatBarSection(), Only(ForceVy, -8e4));
  EXPECT_NEAR(StressesAt(Vy, SectionPlace::Centre)[0].tau, 30.0, 1e-11);
  EXPECT_NEAR(StressesAt(Vy, SectionPlace::WebAtCentroid)[0].tau, 0.0, 1e-12);
  const auto T = StressesOf(FlatBarSection(), Only(MomentT, 1e6));
  EXPECT_NEAR(StressesAt(T, SectionPlace::WebAtCentroid)[1].tau, 3e6 / (200.0 * 400.0), 1e-11);
  EXPECT_EQ(StressesAt(T, SectionPlace::Centre)[0].tau, 0.0);
}

// Tube, radii 104 and 96: I = pi (104^4 - 96^4) / 4, A = pi (104^2 - 96^2).
TEST(SectionStresses, TubeInBendingShearAndTorsion) {
  const double pi = std::acos(-1.0);
  const double I = pi * (std::pow(104.0, 4) - std::pow(96.0, 4)) / 4.0;
  const double A = pi * (104.0 * 104.0 - 96.0 * 96.0);
  SectionForces bending{};
  bending[MomentMy] = 3e7;
  bending[MomentMz] = 4e7;
  const auto b = StressesOf(TubeSection(), bending);
  ASSERT_EQ(b.size(), 4U);
  EXPECT_NEAR(b[0].sigma, 5e7 * 104.0 / I, 1e-9);
  EXPECT_NEAR(b[1].sigma, -5e7 * 104.0 / I, 1e-9);
  EXPECT_NEAR(b[0].y, -104.0 * 0.8, 1e-9);  // Mz stretches the -y side, My the +z side
  EXPECT_NEAR(b[0].z, 104.0 * 0.6, 1e-9);
  EXPECT_NEAR(b[3].vonMises, 5e7 * 104.0 / I, 1e-9);

  SectionForces shear{};
  EXPECT_NEAR(FindNominalStresses(MakeShape(TubeSection()), Only(ForceVz, 1e5)).webShear, 2e5 / A,
              1e-10);
  EXPECT_NEAR(FindNominalStresses(MakeShape(TubeSection()), Only(MomentT, 1e6)).torsion,
              1e6 * 104.0 / (2.0 * I), 1e-10);
  shear[ForceVy] = 3e4;
  shear[ForceVz] = 4e4;
  shear[MomentT] = -2e6;
  const auto s = StressesOf(TubeSection(), shear);
  EXPECT_NEAR(s[2].tau, 2.0 * 5e4 / A + 2e6 * 104.0 / (2.0 * I), 1e-9);
  // The shear force points to (0.6, 0.8). A negative torque runs from +z to +y: with the shear
  // force on the side of (-0.8, 0.6), a quarter turn from the force's direction.
  EXPECT_NEAR(s[2].y, -104.0 * 0.8, 1e-9);
  EXPECT_NEAR(s[2].z, 104.0 * 0.6, 1e-9);
  EXPECT_NEAR(s[3].vonMises, std::sqrt(3.0) * s[2].tau, 1e-9);
}

// All forces at once: no angle of a million has more than the one found, and the best of them is
// just below it. Forces by which the two maxima on the circle are far from even, and nearly even.
TEST(SectionStresses, LargestVonMisesStressOfATubeIsExact) {
  const SectionShape shape = MakeShape(TubeSection());
  for (const SectionForces& f : {SectionForces{2e5, 9e4, -4e4, 3e6, 1e7, -2e7},
                                 SectionForces{1e3, 9e4, -4e4, 0.0, 1e7, -2e7},
                                 SectionForces{0.0, 3e5, 1e4, 1e5, 5e6, 1e6}}) {
    std::vector<FibreStress> stresses;
    FindFibreStresses(shape, f, stresses);
    double best = 0.0;
    for (int i = 0; i < 1000000; ++i) {
      const double angle = 2e-6 * std::acos(-1.0) * i, c = std::cos(angle), s = std::sin(angle);
      const double sigma = f[ForceN] / shape.A + f[MomentMy] * 104.0 * s / shape.Iy -
                           f[MomentMz] * 104.0 * c / shape.Iz;
      const double tau =
          2.0 * (f[ForceVz] * c - f[ForceVy] * s) / shape.A + f[MomentT] * 104.0 / shape.J;
      best = std::max(best, std::sqrt(sigma * sigma + 3.0 * tau * tau));
    }
    EXPECT_NEAR(stresses[3].vonMises, best, 1e-9 * best);
    EXPECT_GE(stresses[3].vonMises, best * (1.0 - 1e-13));
  }
}

// A simply supported flat bar of 2 m under 10 N/mm downwards: M = 5e6 at mid-span, W = 133333, so
// 37.5 at its lower edge; V = 1e4 at the ends, 1.5 V / A = 3.75. The node line is an edge of the
// bar, and the supports hold it there; no axial force comes of it.
TEST(SectionStresses, LargestStressesAlongABeam) {
  ModelText text = BuildStraight({0.0, 2000.0}, FlatBarSection());
  text.restraints = {{0, {1, 1, 1, 1, 0, 0}}, {1, {0, 1, 1, 0, 0, 0}}};
  text.beamLoads = {{0, -10.0, -10.0}};
  Model model;
  SolveModel(text, model);
  std::vector<BeamForces> forces;
  ComputeBeamForces(model, forces);
  const SectionShape shape = MakeSectionShape(model.Tables, model.BeamElements[0], 0);
  const BeamStresses found = FindBeamStresses(shape, forces[0], {0.0, 1.0});
  EXPECT_NEAR(found.tension.fibre.sigma, 37.5, 1e-7);
  EXPECT_NEAR(found.tension.fibre.z, -100.0, 1e-9);
  EXPECT_NEAR(found.tension.s, 0.5, 1e-9);
  EXPECT_NEAR(found.compression.fibre.sigma, -37.5, 1e-7);
  EXPECT_NEAR(found.compression.fibre.z, 100.0, 1e-9);
  EXPECT_NEAR(found.shear.fibre.tau, 3.75, 1e-7);
  EXPECT_NEAR(found.vonMises.fibre.vonMises, 37.5, 1e-7);
  EXPECT_NEAR(found.webShear.value, 2.5, 1e-7);
  EXPECT_TRUE(found.webShear.s == 0.0 || found.webShear.s == 1.0);
}

// Bending in both planes: sigma of a corner is largest between the place of the largest My and the
// end with the largest Mz. My = 4 a s (1 - s) and Mz = b (1 - s): of the corner that both stretch,
// sigma = 4 p s (1 - s) + r (1 - s), largest at s = 1/2 - r / (8 p).
TEST(SectionStresses, LargestSigmaUnderBendingInBothPlanes) {
  const SectionShape shape = MakeShape(FlatBarSection());
  BeamForces forces;
  forces.length = 1000.0;
  forces.curves[MomentMy] = {0.0, 4e6, -4e6, 0.0};
  forces.curves[MomentMz] = {2e5, -2e5, 0.0, 0.0};
  const double p = 1e6 * 100.0 / shape.Iy, r = 2e5 * 10.0 / shape.Iz, s = 0.5 - r / (8.0 * p);
  const BeamStresses found = FindBeamStresses(shape, forces, ListStations(forces, 1));
  EXPECT_NEAR(found.tension.s, s, 1e-12);
  EXPECT_NEAR(found.tension.fibre.sigma, 4.0 * p * s * (1.0 - s) + r * (1.0 - s), 1e-10);
  EXPECT_NEAR(found.tension.fibre.y, -10.0, 1e-12);
  EXPECT_NEAR(found.tension.fibre.z, 100.0, 1e-12);
}

TEST(SectionStresses, NotANumberStaysNotANumber) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const TestSection& section : {TeeSection(), TubeSection()}) {
    BeamForces forces;
    forces.curves[MomentMy] = {nan, 0.0, 0.0, 0.0};
    const BeamStresses found = FindBeamStresses(MakeShape(section), forces, {0.0, 1.0});
    EXPECT_TRUE(std::isnan(found.tension.fibre.sigma)) << section.name;
    EXPECT_TRUE(std::isnan(found.vonMises.fibre.vonMises)) << section.name;
  }
  // 0 times infinity at the first station, infinity at the second.
  BeamForces endless;
  endless.curves[MomentMy] = {0.0, std::numeric_limits<double>::infinity(), 0.0, 0.0};
  const BeamStresses first = FindBeamStresses(MakeShape(TeeSection()), endless, {0.0, 1.0});
  EXPECT_TRUE(std::isnan(first.tension.fibre.sigma));
  const BeamStresses none = FindBeamStresses(SectionShape(), BeamForces(), {0.0, 1.0});
  EXPECT_TRUE(std::isnan(none.vonMises.fibre.vonMises));
  EXPECT_TRUE(std::isnan(none.webShear.value));
}

TEST(SectionShape, UnknownSectionTypeIsNone) {
  Model model;
  AssembleModel(BuildStraight({0.0, 2000.0}, TeeSection()), model);
  model.Tables.BeamSectionRefs[0].BeamSecType = 3;
  EXPECT_EQ(MakeSectionShape(model.Tables, model.BeamElements[0], 0).kind, SectionKind::None);
}

TEST(SectionShape, WrongReferencesStop) {
  Model model;
  AssembleModel(BuildStraight({0.0, 2000.0}, TeeSection()), model);
  EXPECT_THROW(MakeSectionShape(model.Tables, model.BeamElements[0], 1), korvex::Stop);
  for (const std::int32_t type : {0, 1, 2}) {
    for (const std::int32_t index : {-1, 1}) {
      model.Tables.BeamSectionRefs[0] = {type, index, 0.0, false};
      EXPECT_THROW(MakeSectionShape(model.Tables, model.BeamElements[0], 0), korvex::Stop);
    }
  }
}

}  // namespace
}  // namespace kvx::test
