// The outlines of all section kinds at all mesh levels: points, segments and thicknesses, with
// dimensions whose divisions are exact, so that coordinates are compared bit for bit.
#include "beamshell/section_outline.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace korvex {
namespace {

constexpr BeamSection Flanged{360.0, 10.0, 200.0, 12.0};  // flange mid-plane at 366
constexpr BeamSection Bar{360.0, 10.0, 0.0, 0.0};
constexpr CBeamSection Tube{40.0, 3.0};

// Any level but 1 and 2 is level 0.
constexpr std::array<std::int32_t, 5> CoarseLevels{0, 3, -1, 100,
                                                   std::numeric_limits<std::int32_t>::min()};

SectionOutline TOutline(const BeamSection& section, std::int32_t level) {
  SectionOutline outline;
  BuildTOutline(section, level, outline);
  return outline;
}

SectionOutline LOutline(const BeamSection& section, bool mirrored, std::int32_t level) {
  SectionOutline outline;
  BuildLOutline(section, mirrored, level, outline);
  return outline;
}

SectionOutline COutline(const CBeamSection& section, std::int32_t level) {
  SectionOutline outline;
  BuildCOutline(section, level, outline);
  return outline;
}

using PlanePoint = std::array<double, 2>;  // y, z

void ExpectPoints(const SectionOutline& outline, const std::vector<PlanePoint>& points) {
  ASSERT_EQ(outline.points.size(), points.size());
  for (std::size_t i = 0; i < points.size(); ++i) {
    EXPECT_EQ(outline.points[i], (Vector3{0.0, points[i][0], points[i][1]})) << i;
  }
}

struct Segment {
  std::int32_t a, b;
  double thickness;
};

void ExpectSegments(const SectionOutline& outline, const std::vector<Segment>& segments) {
  ASSERT_EQ(outline.segments.size(), segments.size());
  for (std::size_t i = 0; i < segments.size(); ++i) {
    EXPECT_EQ(outline.segments[i].points[0], segments[i].a) << i;
    EXPECT_EQ(outline.segments[i].points[1], segments[i].b) << i;
    EXPECT_EQ(outline.segments[i].thickness, segments[i].thickness) << i;
  }
}

// The segments (j, j + 1), j = 0 .. count - 1, all of one thickness.
std::vector<Segment> Chain(std::int32_t count, double thickness) {
  std::vector<Segment> segments;
  for (std::int32_t j = 0; j < count; ++j) segments.push_back({j, j + 1, thickness});
  return segments;
}

TEST(SectionOutline, TOfHeight300HasItsTopInTheFlange) {
  for (const std::int32_t level : CoarseLevels) {
    const SectionOutline outline = TOutline({300.0, 10.0, 200.0, 12.0}, level);
    ExpectPoints(outline, {{0, 0}, {0, 100}, {0, 200}, {0, 306}, {-100, 306}, {100, 306}});
    ExpectSegments(outline, {{0, 1, 10}, {1, 2, 10}, {2, 3, 10}, {3, 4, 12}, {3, 5, 12}});
  }
}

TEST(SectionOutline, TAtLevel1) {
  const SectionOutline outline = TOutline(Flanged, 1);
  ExpectPoints(outline, {{0, 0},
                         {0, 60},
                         {0, 120},
                         {0, 180},
                         {0, 240},
                         {0, 300},
                         {0, 366},
                         {-50, 366},
                         {-100, 366},
                         {50, 366},
                         {100, 366}});
  std::vector<Segment> segments = Chain(6, 10);
  segments.insert(segments.end(), {{6, 7, 12}, {7, 8, 12}, {6, 9, 12}, {9, 10, 12}});
  ExpectSegments(outline, segments);
}

TEST(SectionOutline, TAtLevel2) {
  const SectionOutline outline = TOutline(Flanged, 2);
  std::vector<PlanePoint> points;
  for (int j = 0; j < 12; ++j) points.push_back({0, 30.0 * j});
  points.push_back({0, 366});
  for (const double y : {-25, -50, -75, -100, 25, 50, 75, 100}) points.push_back({y, 366});
  ExpectPoints(outline, points);
  std::vector<Segment> segments = Chain(12, 10);
  segments.insert(segments.end(), {{12, 13, 12}, {13, 14, 12}, {14, 15, 12}, {15, 16, 12}});
  segments.insert(segments.end(), {{12, 17, 12}, {17, 18, 12}, {18, 19, 12}, {19, 20, 12}});
  ExpectSegments(outline, segments);
}

TEST(SectionOutline, LHasItsFlangeOnOneSide) {
  for (const std::int32_t level : CoarseLevels) {
    const SectionOutline plain = LOutline(Flanged, false, level);
    ExpectPoints(plain, {{0, 0}, {0, 120}, {0, 240}, {0, 366}, {200, 366}});
    ExpectSegments(plain, {{0, 1, 10}, {1, 2, 10}, {2, 3, 10}, {3, 4, 12}});
    const SectionOutline mirrored = LOutline(Flanged, true, level);
    ExpectPoints(mirrored, {{0, 0}, {0, 120}, {0, 240}, {0, 366}, {-200, 366}});
    ExpectSegments(mirrored, {{0, 1, 10}, {1, 2, 10}, {2, 3, 10}, {3, 4, 12}});
  }
}

// The flange's divisions count over its whole width.
TEST(SectionOutline, LAtLevels1And2) {
  for (const bool mirrored : {false, true}) {
    const double s = mirrored ? -1.0 : 1.0;
    const SectionOutline level1 = LOutline(Flanged, mirrored, 1);
    std::vector<PlanePoint> points;
    for (int j = 0; j < 6; ++j) points.push_back({0, 60.0 * j});
    points.insert(points.end(), {{0, 366}, {s * 100, 366}, {s * 200, 366}});
    ExpectPoints(level1, points);
    std::vector<Segment> segments = Chain(6, 10);
    segments.insert(segments.end(), {{6, 7, 12}, {7, 8, 12}});
    ExpectSegments(level1, segments);

    const SectionOutline level2 = LOutline(Flanged, mirrored, 2);
    points.clear();
    for (int j = 0; j < 12; ++j) points.push_back({0, 30.0 * j});
    points.push_back({0, 366});
    for (int k = 1; k <= 4; ++k) points.push_back({s * 50.0 * k, 366});
    ExpectPoints(level2, points);
    segments = Chain(12, 10);
    for (int k = 12; k < 16; ++k) segments.push_back({k, k + 1, 12});
    ExpectSegments(level2, segments);
  }
}

// Either dimension of the flange may be zero, also a negative zero.
TEST(SectionOutline, WebWithoutFlangeEndsAtItsHeight) {
  for (const auto& [Bf, Tf] :
       {std::pair(0.0, 12.0), std::pair(200.0, 0.0), std::pair(-0.0, 12.0)}) {
    const BeamSection section{360.0, 10.0, Bf, Tf};
    for (const SectionOutline& outline :
         {TOutline(section, 0), LOutline(section, false, 0), LOutline(section, true, 0)}) {
      ExpectPoints(outline, {{0, 0}, {0, 120}, {0, 240}, {0, 360}});
      ExpectSegments(outline, Chain(3, 10));
    }
    for (const SectionOutline& outline : {TOutline(section, 1), LOutline(section, true, 1)}) {
      ExpectPoints(outline, {{0, 0}, {0, 60}, {0, 120}, {0, 180}, {0, 240}, {0, 300}, {0, 360}});
      ExpectSegments(outline, Chain(6, 10));
    }
    for (const SectionOutline& outline : {TOutline(section, 2), LOutline(section, true, 2)}) {
      EXPECT_EQ(outline.points.size(), 13U);
      EXPECT_EQ(outline.points[11], (Vector3{0, 0, 330}));
      EXPECT_EQ(outline.points[12], (Vector3{0, 0, 360}));
      ExpectSegments(outline, Chain(12, 10));
    }
  }
}

// Any other flange counts, however thin. NaN is not zero.
TEST(SectionOutline, OnlyZeroMeansNoFlange) {
  EXPECT_EQ(TOutline({360.0, 10.0, 1e-300, 1e-300}, 0).points.size(), 6U);
  EXPECT_EQ(LOutline({360.0, 10.0, -5.0, 1.0}, false, 0).points.size(), 5U);
  EXPECT_EQ(TOutline({360.0, 10.0, std::nan(""), 1.0}, 0).points.size(), 6U);
}

// 3 x 0.7 / 3 is not 0.7 in doubles; the web's height is given, not computed. Products come before
// quotients: 3 (0.1 / 6) is another double than 3 x 0.1 / 6. (A flange is divided by 1, 2 or 4,
// which rounds nothing.)
TEST(SectionOutline, RoundingOfDivisions) {
  EXPECT_NE(3 * 0.7 / 3, 0.7);
  EXPECT_EQ(TOutline({0.7, 0.01, 0.0, 0.0}, 0).points[3][2], 0.7);
  EXPECT_EQ(TOutline({0.7, 0.01, 0.2, 0.02}, 0).points[3][2], 0.7 + 0.01);
  EXPECT_NE(3 * (0.1 / 6), 3 * 0.1 / 6);
  EXPECT_EQ(TOutline({0.1, 0.01, 0.0, 0.0}, 1).points[3][2], 3 * 0.1 / 6);
}

TEST(SectionOutline, TubeRunsRoundFromYTowardsZ) {
  for (const std::int32_t level : CoarseLevels) {
    const SectionOutline outline = COutline(Tube, level);
    ASSERT_EQ(outline.points.size(), 8U);
    EXPECT_EQ(outline.points[0], (Vector3{0, 40, 0}));
    // pi / 2 is no double; the cosine of the nearest one is 6.1e-17.
    EXPECT_EQ(outline.points[2], (Vector3{0, 40 * 0x1.1a62633145c07p-54, 40}));
    EXPECT_EQ(outline.points[4], (Vector3{0, -40, 40 * 0x1.1a62633145c07p-53}));
    ExpectSegments(
        outline,
        {{0, 1, 3}, {1, 2, 3}, {2, 3, 3}, {3, 4, 3}, {4, 5, 3}, {5, 6, 3}, {6, 7, 3}, {7, 0, 3}});
  }
}

// All points lie on the circle, at equal angles.
TEST(SectionOutline, TubeAtAllLevels) {
  const double pi = std::acos(-1.0);
  for (const std::int32_t level : {0, 1, 2}) {
    const SectionOutline outline = COutline(Tube, level);
    const std::size_t P = level == 0 ? 8 : level == 1 ? 12 : 16;
    ASSERT_EQ(outline.points.size(), P);
    ASSERT_EQ(outline.segments.size(), P);
    for (std::size_t i = 0; i < P; ++i) {
      const double angle = 2.0 * pi * static_cast<double>(i) / static_cast<double>(P);
      EXPECT_EQ(outline.points[i][0], 0.0);
      // A library's cosine is within a bit of ours: 40 x 2^-52.
      EXPECT_NEAR(outline.points[i][1], 40.0 * std::cos(angle), 1e-14);
      EXPECT_NEAR(outline.points[i][2], 40.0 * std::sin(angle), 1e-14);
      EXPECT_EQ(outline.segments[i].points[0], static_cast<std::int32_t>(i));
      EXPECT_EQ(outline.segments[i].points[1], static_cast<std::int32_t>((i + 1) % P));
      EXPECT_EQ(outline.segments[i].thickness, 3.0);
    }
  }
}

TEST(SectionOutline, OffsetMovesAllPointsAlongZ) {
  SectionOutline outline = TOutline({300.0, 10.0, 200.0, 12.0}, 0);
  ShiftOutline(-50.0, outline);
  ExpectPoints(outline, {{0, -50}, {0, 50}, {0, 150}, {0, 256}, {-100, 256}, {100, 256}});
  outline = COutline(Tube, 0);
  ShiftOutline(7.0, outline);
  EXPECT_EQ(outline.points[0], (Vector3{0, 40, 7}));
  EXPECT_EQ(outline.points[2][2], 47.0);
}

// The record may hold another outline.
TEST(SectionOutline, BuildingReplacesWhatWasThere) {
  SectionOutline outline = TOutline(Flanged, 2);
  BuildCOutline(Tube, 0, outline);
  EXPECT_EQ(outline.points.size(), 8U);
  EXPECT_EQ(outline.segments.size(), 8U);
  BuildLOutline(Flanged, false, 0, outline);
  EXPECT_EQ(outline.points.size(), 5U);
  EXPECT_EQ(outline.segments.size(), 4U);
  BuildTOutline(Bar, 0, outline);
  EXPECT_EQ(outline.points.size(), 4U);
  EXPECT_EQ(outline.segments.size(), 3U);
}

// The topmost web segment, 126, is the longest unless the flange is wide.
TEST(SectionOutline, LongestSegment) {
  EXPECT_EQ(LongestSegment(TOutline(Flanged, 0)), 126.0);
  EXPECT_EQ(LongestSegment(LOutline(Flanged, false, 0)), 200.0);
  EXPECT_EQ(LongestSegment(LOutline(Flanged, true, 0)), 200.0);
  EXPECT_EQ(LongestSegment(TOutline(Bar, 0)), 120.0);
  EXPECT_EQ(LongestSegment(TOutline({100.0, 5.0, 400.0, 8.0}, 1)), 100.0);
  // The chord of 45 degrees: 2 R sin(22.5 degrees).
  EXPECT_NEAR(LongestSegment(COutline(Tube, 0)), 30.614674589207183, 1e-13);
  EXPECT_EQ(LongestSegment(TOutline({0.0, 10.0, 0.0, 0.0}, 0)), 0.0);
  EXPECT_EQ(LongestSegment(TOutline({std::nan(""), 10.0, 0.0, 0.0}, 0)), 0.0);
}

}  // namespace
}  // namespace korvex
