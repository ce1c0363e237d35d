// The nodes, shells and links of extruded outlines: coordinates and numbers of small models written
// out, frames of oblique beams, the number of steps and its limits.
#include "beamshell/extrude_outline.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/expect_stop.h"

namespace korvex {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

// A beam of E = 206000, Mu = 0.3 between the points with this orientation.
BeamShellModel MakeBeam(const Vector3& end1, const Vector3& end2, const Vector3& orientation) {
  BeamShellModel model;
  model.E = 206000.0;
  model.Mu = 0.3;
  model.EndPoint1 = end1;
  model.EndPoint2 = end2;
  model.OrientVector = orientation;
  return model;
}

SectionOutline TOutline(const BeamSection& section, double BeamSecOz = 0.0) {
  SectionOutline outline;
  BuildTOutline(section, 0, outline);
  ShiftOutline(BeamSecOz, outline);
  return outline;
}

SectionOutline LOutline(const BeamSection& section, bool mirrored) {
  SectionOutline outline;
  BuildLOutline(section, mirrored, 0, outline);
  return outline;
}

SectionOutline COutline(const CBeamSection& section, double BeamSecOz) {
  SectionOutline outline;
  BuildCOutline(section, 0, outline);
  ShiftOutline(BeamSecOz, outline);
  return outline;
}

void ExpectNodes(const BeamShellModel& model, const std::vector<Vector3>& nodes) {
  EXPECT_EQ(model.NodeCount, static_cast<std::int32_t>(nodes.size()));
  EXPECT_EQ(model.NEQ, 6 * model.NodeCount);
  ASSERT_EQ(model.NodeCoords.size(), nodes.size());
  for (std::size_t i = 0; i < nodes.size(); ++i) EXPECT_EQ(model.NodeCoords[i], nodes[i]) << i;
}

void ExpectShellNodes(const BeamShellModel& model, const std::vector<std::int32_t>& nodes) {
  EXPECT_EQ(model.ShellNodes, nodes);
  EXPECT_EQ(model.ShellCount, static_cast<std::int32_t>(nodes.size() / 4));
  EXPECT_EQ(model.Shells.size(), nodes.size() / 4);
}

// A beam along X with its web along Z has y = (0, 0, 1) x (1, 0, 0) = Y. A web of 300 and a flange
// of 200 x 12: segments of 100, 100, 106, 100, 100; 250 / 106 gives 2 steps of 125.
TEST(ExtrudeOutline, TInGlobalAxes) {
  BeamShellModel model = MakeBeam({0, 0, 0}, {250, 0, 0}, {0, 0, 1});
  ExtrudeOutline(TOutline({300.0, 10.0, 200.0, 12.0}), 0, model);
  EXPECT_EQ(model.ProfileNodeCount, 6);
  std::vector<Vector3> nodes{{0, 0, 0}};
  for (const double x : {0.0, 125.0, 250.0}) {
    nodes.insert(nodes.end(),
                 {{x, 0, 0}, {x, 0, 100}, {x, 0, 200}, {x, 0, 306}, {x, -100, 306}, {x, 100, 306}});
  }
  nodes.push_back({250, 0, 0});
  ExpectNodes(model, nodes);
  // (a, s-1), (a, s), (b, s), (b, s-1).
  ExpectShellNodes(model,
                   {1, 7,  8,  2, 2, 8,  9,  3, 3, 9,  10, 4,  4,  10, 11, 5,  4,  10, 12, 6,
                    7, 13, 14, 8, 8, 14, 15, 9, 9, 15, 16, 10, 10, 16, 17, 11, 10, 16, 18, 12});
}

TEST(ExtrudeOutline, ShellsCarryMaterialThicknessAndFrame) {
  BeamShellModel model = MakeBeam({0, 0, 0}, {250, 0, 0}, {0, 0, 1});
  ExtrudeOutline(TOutline({300.0, 10.0, 200.0, 12.0}), 0, model);
  ASSERT_EQ(model.Shells.size(), 10U);
  for (std::size_t e = 0; e < 10; ++e) {
    const Shell4Element& shell = model.Shells[e];
    EXPECT_EQ(shell.E, 206000.0);
    EXPECT_EQ(shell.Mu, 0.3);
    EXPECT_EQ(shell.TK, e % 5 < 3 ? 10.0 : 12.0);
    for (std::size_t k = 0; k < 4; ++k) {
      const auto node = static_cast<std::size_t>(model.ShellNodes[4 * e + k]);
      for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(shell.Coordinates[3 * k + i], model.NodeCoords[node][i]);
      }
    }
  }
  // e1 along X; e3 = X x (from a to b): X x Z = -Y for the web, X x -Y = -Z and X x Y = Z for the
  // flange's halves. Columns of the frame: e1, e2, e3.
  EXPECT_EQ(model.Shells[0].Frame, (ElementFrame{1, 0, 0, 0, 0, -1, 0, 1, 0}));
  EXPECT_EQ(model.Shells[3].Frame, (ElementFrame{1, 0, 0, 0, -1, 0, 0, 0, -1}));
  EXPECT_EQ(model.Shells[4].Frame, (ElementFrame{1, 0, 0, 0, 1, 0, 0, 0, 1}));
}

// Two links per outline node: rigid tubes that the axis orients.
TEST(ExtrudeOutline, LinksTieTheEndNodes) {
  BeamShellModel model = MakeBeam({1000, 2000, 3000}, {1250, 2000, 3000}, {0, 0, 1});
  ExtrudeOutline(TOutline({300.0, 10.0, 200.0, 12.0}, 20.0), 0, model);
  EXPECT_EQ(model.LinkCount, 12);
  EXPECT_EQ(model.LinkNodes,
            (std::vector<std::int32_t>{0,  1,  0,  2,  0,  3,  0,  4,  0,  5,  0,  6,
                                       19, 13, 19, 14, 19, 15, 19, 16, 19, 17, 19, 18}));
  ASSERT_EQ(model.Links.size(), 12U);
  const double pi = std::acos(-1.0);
  for (std::size_t i = 0; i < 12; ++i) {
    const BeamElement& link = model.Links[i];
    const Vector3& end = i < 6 ? model.EndPoint1 : model.EndPoint2;
    const auto node = static_cast<std::size_t>(model.LinkNodes[2 * i + 1]);
    EXPECT_EQ(link.NodeI, end);
    EXPECT_EQ(link.NodeJ, model.NodeCoords[node]);
    EXPECT_EQ(link.RefPoint, (Vector3{end[0] + 250.0, end[1], end[2]}));
    EXPECT_EQ(link.Tolerance, 1e-15);
    EXPECT_EQ(link.E, 1e20);
    EXPECT_EQ(link.Mu, 0.3);
    EXPECT_EQ(link.BeamSecOz, 0.0);
    EXPECT_FALSE(link.BeamSecMirrored);
    // A tube of diameters 11 and 9: pi (121 - 81) / 4, pi (11^4 - 9^4) / 64, to a few roundings.
    EXPECT_NEAR(link.Section.A, 10.0 * pi, 1e-13);
    EXPECT_NEAR(link.Section.Iy, 8080.0 / 64.0 * pi, 1e-12);
    EXPECT_NEAR(link.Section.Iz, 8080.0 / 64.0 * pi, 1e-12);
    EXPECT_NEAR(link.Section.J, 8080.0 / 32.0 * pi, 1e-12);
    EXPECT_EQ(link.Section.Ez, 0.0);
  }
}

// 400 / 200, the flange: 2 steps.
TEST(ExtrudeOutline, LAndMirroredL) {
  for (const bool mirrored : {false, true}) {
    BeamShellModel model = MakeBeam({0, 0, 0}, {400, 0, 0}, {0, 0, 1});
    ExtrudeOutline(LOutline({300.0, 10.0, 200.0, 12.0}, mirrored), 0, model);
    EXPECT_EQ(model.ProfileNodeCount, 5);
    const double tip = mirrored ? -200.0 : 200.0;
    std::vector<Vector3> nodes{{0, 0, 0}};
    for (const double x : {0.0, 200.0, 400.0}) {
      nodes.insert(nodes.end(), {{x, 0, 0}, {x, 0, 100}, {x, 0, 200}, {x, 0, 306}, {x, tip, 306}});
    }
    nodes.push_back({400, 0, 0});
    ExpectNodes(model, nodes);
    ExpectShellNodes(model, {1, 6,  7,  2, 2, 7,  8,  3, 3, 8,  9,  4, 4, 9,  10, 5,
                             6, 11, 12, 7, 7, 12, 13, 8, 8, 13, 14, 9, 9, 14, 15, 10});
    EXPECT_EQ(model.Shells[2].TK, 10.0);
    EXPECT_EQ(model.Shells[3].TK, 12.0);
    EXPECT_EQ(model.LinkCount, 10);
  }
}

TEST(ExtrudeOutline, FlatBar) {
  BeamShellModel model = MakeBeam({0, 0, 0}, {200, 0, 0}, {0, 0, 1});
  ExtrudeOutline(TOutline({300.0, 10.0, 0.0, 12.0}), 0, model);
  std::vector<Vector3> nodes{{0, 0, 0}};
  for (const double x : {0.0, 100.0, 200.0}) {
    nodes.insert(nodes.end(), {{x, 0, 0}, {x, 0, 100}, {x, 0, 200}, {x, 0, 300}});
  }
  nodes.push_back({200, 0, 0});
  ExpectNodes(model, nodes);
  ExpectShellNodes(model,
                   {1, 5, 6, 2, 2, 6, 7, 3, 3, 7, 8, 4, 5, 9, 10, 6, 6, 10, 11, 7, 7, 11, 12, 8});
}

// The ring closes from the last point to the first. The segment is 2 x 40 sin(22.5 degrees) = 30.6:
// 70 / 30.6 gives 2 steps.
TEST(ExtrudeOutline, TubeWithOffset) {
  BeamShellModel model = MakeBeam({0, 0, 0}, {70, 0, 0}, {0, 0, 1});
  const SectionOutline outline = COutline({40.0, 3.0}, 7.0);
  ExtrudeOutline(outline, 0, model);
  EXPECT_EQ(model.ProfileNodeCount, 8);
  EXPECT_EQ(model.NodeCount, 26);
  EXPECT_EQ(model.NodeCoords[1], (Vector3{0, 40, 7}));
  EXPECT_EQ(model.NodeCoords[3][2], 47.0);
  EXPECT_EQ(model.NodeCoords[7][2], -33.0);
  for (std::size_t i = 0; i < 8; ++i) {
    for (std::size_t s = 0; s < 3; ++s) {
      EXPECT_EQ(
          model.NodeCoords[1 + 8 * s + i],
          (Vector3{35.0 * static_cast<double>(s), outline.points[i][1], outline.points[i][2]}));
    }
  }
  EXPECT_EQ(model.ShellCount, 16);
  const std::vector<std::int32_t>& nodes = model.ShellNodes;
  EXPECT_EQ((std::vector<std::int32_t>(nodes.begin(), nodes.begin() + 4)),
            (std::vector<std::int32_t>{1, 9, 10, 2}));
  EXPECT_EQ((std::vector<std::int32_t>(nodes.begin() + 28, nodes.begin() + 36)),
            (std::vector<std::int32_t>{8, 16, 9, 1, 9, 17, 18, 10}));
  EXPECT_EQ(model.Shells[7].TK, 3.0);
}

// d = 3 (2, 1, 2), v = (0, 0, 1): w = v x d = (-3, 6, 0), u = d x w = (-36, -18, 45)... = 9 (-4,
// -2, 5). The section's z leans with the beam; its y stays level.
TEST(ExtrudeOutline, ObliqueBeam) {
  const Vector3 start{10, 20, 30};
  BeamShellModel model = MakeBeam(start, {16, 23, 36}, {0, 0, 1});
  const SectionOutline outline = TOutline({1.2, 0.1, 1.0, 0.1}, 0.25);
  ExtrudeOutline(outline, 0, model);
  const double y[2] = {-1.0 / std::sqrt(5.0), 2.0 / std::sqrt(5.0)};
  const double z[3] = {-4.0 / std::sqrt(45.0), -2.0 / std::sqrt(45.0), 5.0 / std::sqrt(45.0)};
  const std::int32_t n = 18;  // 9 / 0.5
  ASSERT_EQ(model.NodeCount, 6 * (n + 1) + 2);
  for (std::int32_t s = 0; s <= n; ++s) {
    for (std::size_t i = 0; i < 6; ++i) {
      const Vector3& node = model.NodeCoords[static_cast<std::size_t>(1 + 6 * s) + i];
      const Vector3& p = outline.points[i];
      const double share = static_cast<double>(s) / n;
      // A few roundings of numbers up to 36.
      EXPECT_NEAR(node[0], 10 + p[1] * y[0] + p[2] * z[0] + 6 * share, 3e-14);
      EXPECT_NEAR(node[1], 20 + p[1] * y[1] + p[2] * z[1] + 3 * share, 3e-14);
      EXPECT_NEAR(node[2], 30 + p[2] * z[2] + 6 * share, 3e-14);
    }
  }
  EXPECT_EQ(model.NodeCoords.front(), start);
  EXPECT_EQ(model.NodeCoords.back(), (Vector3{16, 23, 36}));
}

// A part of the orientation vector along the axis changes nothing; nor does the vector's length.
TEST(ExtrudeOutline, OnlyTheDirectionAcrossTheAxisCounts) {
  const SectionOutline outline = TOutline({300.0, 10.0, 200.0, 12.0});
  BeamShellModel upright = MakeBeam({0, 0, 0}, {250, 0, 0}, {0, 0, 1});
  BeamShellModel leaning = MakeBeam({0, 0, 0}, {250, 0, 0}, {-5, 0, 8});
  ExtrudeOutline(outline, 0, upright);
  ExtrudeOutline(outline, 0, leaning);
  EXPECT_EQ(upright.NodeCoords, leaning.NodeCoords);
}

// The terms of a coordinate are added from left to right: end point, x, y, z, step. And a step is
// (s d) / n. Here another order, or s (d / n), gives other last bits.
TEST(ExtrudeOutline, CoordinatesAreSummedInOrder) {
  const Vector3 start{0.1, 0.2, 0.3}, end{0.8, 1.3, 2.4};
  BeamShellModel model = MakeBeam(start, end, {0.3, -0.2, 0.9});
  const SectionOutline outline = TOutline({0.3, 0.01, 0.17, 0.012}, 0.01);
  ExtrudeOutline(outline, 0, model);
  const Vector3 d = Subtract(end, start);
  const Vector3 w = Cross(model.OrientVector, d);
  const Vector3 u = Cross(d, w);
  const std::int32_t n = (model.NodeCount - 2) / 6 - 1;
  for (std::int32_t s = 0; s <= n; ++s) {
    for (std::size_t i = 0; i < 6; ++i) {
      for (std::size_t c = 0; c < 3; ++c) {
        const Vector3& p = outline.points[i];
        double sum = start[c];
        sum += p[0] * (d[c] / Length(d));
        sum += p[1] * (w[c] / Length(w));
        sum += p[2] * (u[c] / Length(u));
        sum += s * d[c] / n;
        EXPECT_EQ(model.NodeCoords[static_cast<std::size_t>(1 + 6 * s) + i][c], sum);
      }
    }
  }
}

std::int32_t Steps(double length, const SectionOutline& outline) {
  BeamShellModel model = MakeBeam({0, 0, 0}, {length, 0, 0}, {0, 0, 1});
  ExtrudeOutline(outline, 0, model);
  const auto P = static_cast<std::int32_t>(outline.points.size());
  return (model.NodeCount - 2) / P - 1;
}

// L / 120, truncated, at least 1.
TEST(ExtrudeOutline, StepsAreTruncated) {
  const SectionOutline bar = TOutline({360.0, 10.0, 0.0, 0.0});
  EXPECT_EQ(Steps(1.0, bar), 1);
  EXPECT_EQ(Steps(119.0, bar), 1);
  EXPECT_EQ(Steps(120.0, bar), 1);
  EXPECT_EQ(Steps(239.99, bar), 1);
  EXPECT_EQ(Steps(240.0, bar), 2);
  EXPECT_EQ(Steps(12000.0, bar), 100);
}

// Segment lengths are distances of points that include the offset. At a large offset the points are
// rounded: at 2^51 doubles are 0.5 apart, and 0, 0.3, 0.6, 0.9 become 0, 0.5, 0.5, 1.
TEST(ExtrudeOutline, SegmentsAreMeasuredAfterTheOffset) {
  SectionOutline outline = TOutline({0.9, 0.01, 0.0, 0.0});
  EXPECT_EQ(Steps(1.0, outline), 3);
  ShiftOutline(std::ldexp(1.0, 51), outline);
  EXPECT_EQ(Steps(1.0, outline), 2);  // 1 / 0.5
}

TEST(ExtrudeOutline, OneStepWhereTheQuotientIsNotFinite) {
  const double nan = std::nan("");
  EXPECT_EQ(Steps(100.0, TOutline({0.0, 10.0, 0.0, 0.0})), 1);  // 100 / 0
  EXPECT_EQ(Steps(0.0, TOutline({0.0, 10.0, 0.0, 0.0})), 1);    // 0 / 0
  EXPECT_EQ(Steps(0.0, TOutline({360.0, 10.0, 0.0, 0.0})), 1);  // 0 / 120
  EXPECT_EQ(Steps(100.0, TOutline({nan, 10.0, 0.0, 0.0})), 1);  // no length is greater than 0
  EXPECT_EQ(Steps(nan, TOutline({360.0, 10.0, 0.0, 0.0})), 1);
  EXPECT_EQ(Steps(Infinity, TOutline({360.0, 10.0, 0.0, 0.0})), 1);
  EXPECT_EQ(Steps(100.0, TOutline({Infinity, 10.0, 0.0, 0.0})), 1);  // 100 / infinity
}

TEST(ExtrudeOutline, DegenerateBeamsGiveNonFiniteCoordinates) {
  const SectionOutline bar = TOutline({360.0, 10.0, 0.0, 0.0});
  BeamShellModel withoutLength = MakeBeam({1, 2, 3}, {1, 2, 3}, {0, 0, 1});
  ExtrudeOutline(bar, 0, withoutLength);
  EXPECT_EQ(withoutLength.NodeCount, 10);
  EXPECT_EQ(withoutLength.NodeCoords.front(), (Vector3{1, 2, 3}));
  EXPECT_EQ(withoutLength.NodeCoords.back(), (Vector3{1, 2, 3}));
  BeamShellModel alongAxis = MakeBeam({0, 0, 0}, {500, 0, 0}, {7, 0, 0});
  ExtrudeOutline(bar, 0, alongAxis);
  EXPECT_EQ(alongAxis.NodeCount, 22);
  for (const BeamShellModel* model : {&withoutLength, &alongAxis}) {
    for (std::size_t i = 1; i + 1 < model->NodeCoords.size(); ++i) {
      EXPECT_TRUE(std::isnan(model->NodeCoords[i][2])) << i;
    }
  }
}

// An outline of 4 points: 6 (4 (n + 1) + 2) equations must not exceed 2^31 - 1. The largest n is
// 89,478,483. That model is too large for a test; the test uses the first n that is too large.
TEST(ExtrudeOutline, TooManyStepsStopTheRun) {
  const SectionOutline bar = TOutline({3.0, 10.0, 0.0, 0.0});  // segments of 1
  const auto extrude = [&bar](double length, std::int32_t beam) {
    return [&bar, length, beam] {
      BeamShellModel model = MakeBeam({0, 0, 0}, {length, 0, 0}, {0, 0, 1});
      ExtrudeOutline(bar, beam, model);
    };
  };
  test::ExpectStop(extrude(89478484.0, 17),
                   "Beam element 17: its detail model would have 8.94785e+07 steps along the beam, "
                   "too many to number its equations.");
  test::ExpectStop(extrude(1e9, 0),
                   "Beam element 0: its detail model would have 1e+09 steps along the beam, too "
                   "many to number its equations.");
  // The same where the quotient exceeds the range of an int64.
  test::ExpectStop(extrude(1e150, 3),
                   "Beam element 3: its detail model would have 1e+150 steps along the beam, too "
                   "many to number its equations.");
}

}  // namespace
}  // namespace korvex
