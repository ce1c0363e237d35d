// The outlines of cross-sections: their corners, and the properties that follow from them.
#include "view/section_profile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "beam/beam_frame.h"
#include "beam/section_properties.h"
#include "support/beam_sections.h"

namespace kvx::test {
namespace {

using korvex::BeamSecTypeC, korvex::BeamSecTypeL, korvex::BeamSecTypeT;
using korvex::ModelTables, korvex::Vector3;
using Ring = std::vector<double>;

// Row 0 of each table: plates of exact binary numbers, in which sums have no rounding.
ModelTables MakeTables() {
  ModelTables tables;
  tables.TBeamSections = {{120.0, 8.0, 80.0, 10.0}, {100.0, 6.0, 0.0, 10.0}};
  tables.LBeamSections = {{120.0, 8.0, 80.0, 10.0}, {100.0, 6.0, 50.0, 0.0}};
  tables.CBeamSections = {{100.0, 8.0}, {5.0, 10.0}};
  return tables;
}

SectionProfile Make(std::int32_t type, std::int32_t index, double offset, bool mirrored) {
  return MakeSectionProfile(MakeTables(), {type, index, offset, mirrored});
}

TEST(SectionProfile, CornersOfT) {
  const SectionProfile profile = Make(BeamSecTypeT, 0, 0.0, false);
  EXPECT_STREQ(profile.type, "T");
  EXPECT_EQ(profile.sizes, "Hw 120, Tw 8, Bf 80, Tf 10");
  ASSERT_EQ(profile.rings.size(), 1U);
  EXPECT_EQ(profile.rings[0], (Ring{-4, 0, 4, 0, 4, 120, 40, 120, 40, 130, -40, 130, -40, 120,  //
                                    -4, 120}));
}

TEST(SectionProfile, OffsetMovesCornersAndCentroidAlongZ) {
  const SectionProfile profile = Make(BeamSecTypeT, 0, -30.0, false);
  EXPECT_EQ(profile.offset, -30.0);
  EXPECT_EQ(profile.rings[0], (Ring{-4, -30, 4, -30, 4, 90, 40, 90, 40, 100, -40, 100, -40, 90,  //
                                    -4, 90}));
  // Web 120 x 8 with its middle at 60, flange 80 x 10 at 125: (57600 + 100000) / 1760.
  EXPECT_NEAR(profile.centroid[1], 157600.0 / 1760.0 - 30.0, 1e-12 * 90.0);
}

// The flange begins at the web's face at y = -4 and ends 80 further.
TEST(SectionProfile, CornersOfL) {
  const SectionProfile profile = Make(BeamSecTypeL, 0, 0.0, false);
  EXPECT_STREQ(profile.type, "L");
  EXPECT_FALSE(profile.mirrored);
  EXPECT_EQ(profile.rings[0], (Ring{-4, 0, 4, 0, 4, 120, 76, 120, 76, 130, -4, 130}));
}

TEST(SectionProfile, MirroredLPointsTowardsMinusY) {
  const SectionProfile profile = Make(BeamSecTypeL, 0, 2.0, true);
  EXPECT_TRUE(profile.mirrored);
  EXPECT_EQ(profile.rings[0], (Ring{4, 2, 4, 132, -76, 132, -76, 122, -4, 122, -4, 2}));
  // The flange's middle stands 36 beside the web's: -36 x 800 / 1760.
  EXPECT_NEAR(profile.centroid[0], -36.0 * 800.0 / 1760.0, 1e-12 * 17.0);
}

TEST(SectionProfile, MirroringATChangesNothing) {
  const SectionProfile profile = Make(BeamSecTypeT, 0, 0.0, true);
  EXPECT_FALSE(profile.mirrored);
  EXPECT_EQ(profile.rings, Make(BeamSecTypeT, 0, 0.0, false).rings);
}

TEST(SectionProfile, WebWithoutFlangeIsAFlatBar) {
  for (const std::int32_t type : {BeamSecTypeT, BeamSecTypeL}) {
    const SectionProfile profile = Make(type, 1, 1.0, true);
    EXPECT_STREQ(profile.type, "flat bar");
    EXPECT_FALSE(profile.mirrored);
    EXPECT_EQ(profile.sizes, "Hw 100, Tw 6");
    ASSERT_EQ(profile.rings.size(), 1U);
    EXPECT_EQ(profile.rings[0], (Ring{-3, 1, 3, 1, 3, 101, -3, 101}));
  }
}

// Points every 15 degrees, from +y towards +z outside and towards -z inside. Coordinates of the
// circle are right to 2^-53 of its radius, times the few roundings here.
TEST(SectionProfile, TubeHasTwoCircles) {
  const SectionProfile profile = Make(BeamSecTypeC, 0, 7.0, false);
  EXPECT_STREQ(profile.type, "tube");
  EXPECT_EQ(profile.sizes, "R 100, T 8");
  ASSERT_EQ(profile.rings.size(), 2U);
  const double half = std::sqrt(0.5);
  for (std::size_t r = 0; r < 2; ++r) {
    const Ring& ring = profile.rings[r];
    const double radius = r == 0 ? 104.0 : 96.0, turn = r == 0 ? 1.0 : -1.0;
    ASSERT_EQ(ring.size(), 48U);
    const auto expectPoint = [&](std::size_t i, double y, double z) {
      EXPECT_NEAR(ring[2 * i], radius * y, 1e-13) << i;
      EXPECT_NEAR(ring[2 * i + 1], radius * turn * z + 7.0, 1e-13) << i;
    };
    expectPoint(0, 1.0, 0.0);
    expectPoint(2, std::sqrt(0.75), 0.5);
    expectPoint(3, half, half);
    expectPoint(6, 0.0, 1.0);
    expectPoint(12, -1.0, 0.0);
    expectPoint(15, -half, -half);
    expectPoint(22, std::sqrt(0.75), -0.5);
  }
}

// A wall of twice the mean radius is a solid bar.
TEST(SectionProfile, TubeWithoutHoleHasOneCircle) {
  EXPECT_EQ(Make(BeamSecTypeC, 1, 0.0, false).rings.size(), 1U);
}

// The integrals of 1, y, z, z^2 and y^2 over the area inside of the rings (shoelace formulas).
struct Integrals {
  double A = 0.0, y = 0.0, z = 0.0, zz = 0.0, yy = 0.0;
};
Integrals Integrate(const std::vector<Ring>& rings) {
  Integrals sum;
  for (const Ring& ring : rings) {
    for (std::size_t i = 0; i < ring.size(); i += 2) {
      const std::size_t next = (i + 2) % ring.size();
      const double y0 = ring[i], z0 = ring[i + 1], y1 = ring[next], z1 = ring[next + 1];
      const double cross = y0 * z1 - y1 * z0;
      sum.A += cross / 2.0;
      sum.y += cross * (y0 + y1) / 6.0;
      sum.z += cross * (z0 + z1) / 6.0;
      sum.yy += cross * (y0 * y0 + y0 * y1 + y1 * y1) / 12.0;
      sum.zz += cross * (z0 * z0 + z0 * z1 + z1 * z1) / 12.0;
    }
  }
  return sum;
}

SectionProfile MakeOf(const korvex::test::TestSection& section) {
  const auto& d = section.dimensions;
  ModelTables tables;
  tables.TBeamSections = tables.LBeamSections = {{d[0], d[1], d[2], d[3]}};
  tables.CBeamSections = {{d[0], d[1]}};
  return MakeSectionProfile(tables, {section.BeamSecType, 0, section.BeamSecOz, section.mirrored});
}

// The rings have the solver's area, centroid and second moments, but for the rounding of some ten
// products; a circle's polygon of n corners has n r^2 sin(t) / 2 and n r^4 sin(t) (2 + cos(t)) / 24
// with t = 2 pi / n.
TEST(SectionProfile, RingsHaveTheSolversProperties) {
  const double n = 24.0, t = 2.0 * std::acos(-1.0) / n;
  for (const korvex::test::TestSection& section : korvex::test::AllSections()) {
    const SectionProfile profile = MakeOf(section);
    const Integrals sum = Integrate(profile.rings);
    double A = profile.A, Iy = profile.Iy, Iz = profile.Iz;
    if (section.BeamSecType == BeamSecTypeC) {
      const double out = section.dimensions[0] + section.dimensions[1] / 2.0;
      const double in = section.dimensions[0] - section.dimensions[1] / 2.0;
      A = n * std::sin(t) / 2.0 * (out * out - in * in);
      Iy = Iz = n * std::sin(t) * (2.0 + std::cos(t)) / 24.0 * (std::pow(out, 4) - std::pow(in, 4));
    }
    const double y = sum.y / sum.A, z = sum.z / sum.A;
    EXPECT_NEAR(sum.A, A, 1e-12 * A) << section;
    EXPECT_NEAR(y, profile.centroid[0], 1e-12) << section;
    EXPECT_NEAR(z, profile.centroid[1], 1e-12) << section;
    EXPECT_NEAR(sum.zz - sum.A * z * z, Iy, 1e-12 * Iy) << section;
    EXPECT_NEAR(sum.yy - sum.A * y * y, Iz, 1e-12 * Iz) << section;
    const korvex::test::SectionNumbers numbers = korvex::test::ComputeNumbers(section);
    EXPECT_NEAR(profile.A, static_cast<double>(numbers.A), 1e-12 * profile.A) << section;
    EXPECT_NEAR(profile.Iy, static_cast<double>(numbers.Iy), 1e-12 * profile.Iy) << section;
    EXPECT_NEAR(profile.Iz, static_cast<double>(numbers.Iz), 1e-12 * profile.Iz) << section;
  }
}

// A beam from (10, 20, 30) along (2, 2, 1), with the orientation vector (0, 0, 1). By hand:
// x = (2, 2, 1) / 3, y = v x d / |v x d| = (-2, 2, 0) / sqrt(8), and z, across both, is
// (-1, -1, 4) / sqrt(18). The outer corner of the mirrored flange is y = -76, z = 132 off the node.
TEST(SectionProfile, CornerOfAnObliqueBeamInGlobalAxes) {
  korvex::BeamFrame frame{};
  korvex::ComputeBeamFrame({2.0, 2.0, 1.0}, {0.0, 0.0, 1.0}, frame);
  const SectionProfile profile = Make(BeamSecTypeL, 0, 2.0, true);
  const double y = profile.rings[0][4], z = profile.rings[0][5];
  const Vector3 expected{10.0 + 152.0 / std::sqrt(8.0) - 132.0 / std::sqrt(18.0),
                         20.0 - 152.0 / std::sqrt(8.0) - 132.0 / std::sqrt(18.0),
                         30.0 + 4.0 * 132.0 / std::sqrt(18.0)};
  const Vector3 node{10.0, 20.0, 30.0};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(node[i] + y * frame[3 + i] + z * frame[6 + i], expected[i], 1e-12 * 200.0) << i;
  }
}

TEST(SectionProfile, SizesThatAreNotFiniteGiveNoRings) {
  ModelTables tables = MakeTables();
  const double none = std::numeric_limits<double>::quiet_NaN();
  const double infinite = std::numeric_limits<double>::infinity();
  tables.TBeamSections[0].Hw = none;
  tables.LBeamSections[0].Bf = infinite;
  tables.CBeamSections[0].T = none;
  for (const std::int32_t type : {BeamSecTypeT, BeamSecTypeL, BeamSecTypeC}) {
    EXPECT_TRUE(MakeSectionProfile(tables, {type, 0, 0.0, false}).rings.empty()) << type;
    EXPECT_TRUE(Make(type, 0, none, false).rings.empty()) << type;
  }
}

TEST(SectionProfile, NoRowOfATableGivesNoRings) {
  for (const auto& [type, index] : {std::pair{3, 0}, {-1, 0}, {0, 2}, {1, -1}, {2, 2}}) {
    const SectionProfile profile = Make(type, index, 0.0, false);
    EXPECT_TRUE(profile.rings.empty()) << type << ' ' << index;
    EXPECT_STREQ(profile.type, "") << type << ' ' << index;
  }
}

TEST(SectionProfile, SizesHaveAllTheirDigits) {
  ModelTables tables = MakeTables();
  tables.CBeamSections[0] = {1234.5678, 0.1};
  EXPECT_EQ(MakeSectionProfile(tables, {BeamSecTypeC, 0, 0.0, false}).sizes, "R 1234.5678, T 0.1");
}

}  // namespace
}  // namespace kvx::test
