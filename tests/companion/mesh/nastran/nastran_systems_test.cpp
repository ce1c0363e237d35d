// Coordinate systems. Each expected place is worked out by hand beside its deck; the tolerance is
// the rounding of a few operations on numbers near 1.
#include "mesh/nastran/nastran_systems.h"

#include <gtest/gtest.h>

#include <cmath>

#include "mesh/nastran/read_structure.h"

namespace kvx::test {
namespace {

using korvex::Vector3;

constexpr double Rounding = 1e-14;

void ExpectVector(const Vector3& actual, const Vector3& expected) {
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(actual[i], expected[i], Rounding) << "axis " << i;
}

// The place of the node 1 of a deck.
Vector3 PlaceOfNode1(const std::string& text) {
  StructureOfText s;
  ReadStructureText(text, s);
  EXPECT_EQ(s.read.report.entries.size(), 0U);
  return PlaceOf(s.model, s.numbers.nodes.at(1));
}

TEST(NastranSystems, RectangularSystemOfThreePoints) {
  // Origin (1,2,3), z along x of the global axes, x along y; so y = z x x is along z.
  ExpectVector(PlaceOfNode1("CORD2R,7,,1.,2.,3.,2.,2.,3.\n,5.,9.,3.\nGRID,1,7,10.,20.,30.\n"),
               {1.0 + 30.0, 2.0 + 10.0, 3.0 + 20.0});
}

TEST(NastranSystems, CylindricalCoordinatesAreRadiusDegreesHeight) {
  const std::string system = "CORD2C,7,,0.,0.,0.,0.,0.,1.\n,1.,0.,0.\n";
  ExpectVector(PlaceOfNode1(system + "GRID,1,7,2.,90.,5.\n"), {0.0, 2.0, 5.0});
  ExpectVector(PlaceOfNode1(system + "GRID,1,7,2.,-90.,5.\n"), {0.0, -2.0, 5.0});
  ExpectVector(PlaceOfNode1(system + "GRID,1,7,2.,540.,5.\n"), {-2.0, 0.0, 5.0});
  // cos 60 = 1/2, sin 60 = sqrt(3)/2
  ExpectVector(PlaceOfNode1(system + "GRID,1,7,2.,60.,5.\n"), {1.0, std::sqrt(3.0), 5.0});
  ExpectVector(PlaceOfNode1(system + "GRID,1,7,2.,225.,0.\n"),
               {-std::sqrt(2.0), -std::sqrt(2.0), 0.0});
}

TEST(NastranSystems, SphericalCoordinatesAreRadiusTiltAndTurn) {
  const std::string system = "CORD2S,7,,0.,0.,0.,0.,0.,1.\n,1.,0.,0.\n";
  ExpectVector(PlaceOfNode1(system + "GRID,1,7,2.,90.,90.\n"), {0.0, 2.0, 0.0});
  ExpectVector(PlaceOfNode1(system + "GRID,1,7,2.,30.,0.\n"), {1.0, 0.0, std::sqrt(3.0)});
  ExpectVector(PlaceOfNode1(system + "GRID,1,7,2.,0.,33.\n"), {0.0, 0.0, 2.0});
}

// System 2 stands in the cylinder 1: its origin (2, 90 degrees, 0) is (0,2,0), its z axis is global
// z, its x axis points from radius 2 to 3 at 90 degrees, along y; so its y axis is -x.
TEST(NastranSystems, SystemsStandInOneAnother) {
  const std::string cylinder = "CORD2C,1,,0.,0.,0.,0.,0.,1.\n,1.,0.,0.\n";
  const std::string inside = "CORD2R,2,1,2.,90.,0.,2.,90.,1.\n,3.,90.,0.\n";
  const std::string grid = "GRID,1,2,1.,1.,1.\n";
  ExpectVector(PlaceOfNode1(cylinder + inside + grid), {-1.0, 3.0, 1.0});
  ExpectVector(PlaceOfNode1(grid + inside + cylinder), {-1.0, 3.0, 1.0});
}

// Origin node 11 at (1,1,1), z to node 12 along z, x-z plane through node 13: x along y, y along
// -x. Node 12 is itself given in another system.
TEST(NastranSystems, SystemsStandOnNodes) {
  const std::string nodes =
      "GRID,11,,1.,1.,1.\nGRID,12,3,0.,0.,1.\nGRID,13,,1.,2.,5.\n"
      "CORD2R,3,,1.,1.,1.,1.,1.,2.\n,2.,1.,1.\n";
  ExpectVector(PlaceOfNode1(nodes + "CORD1R,8,11,12,13\nGRID,1,8,2.,0.,0.\n"), {1.0, 3.0, 1.0});
  // A card may hold two systems.
  ExpectVector(PlaceOfNode1(nodes + "CORD1R,8,11,12,13,9,12,11,13\nGRID,1,9,0.,0.,1.\n"),
               {1.0, 1.0, 1.0});
  ExpectVector(PlaceOfNode1(nodes + "CORD1C,8,11,12,13\nGRID,1,8,2.,90.,0.\n"), {-1.0, 1.0, 1.0});
  ExpectVector(PlaceOfNode1(nodes + "CORD1S,8,11,12,13\nGRID,1,8,2.,90.,90.\n"), {-1.0, 1.0, 1.0});
}

TEST(NastranSystems, SystemsInACircleAreRefused) {
  StructureOfText s;
  ReadStructureText(
      "CORD2R,1,2,0.,0.,0.,0.,0.,1.\n,1.\nCORD2R,2,1,0.,0.,0.,0.,0.,1.\n,1.\n"
      "GRID,5,1,1.,0.,0.\n",
      s);
  const ImportReport& report = s.read.report;
  EXPECT_TRUE(HasEntry(report, "CORD2R", Fate::Refused, "it stands in itself"));
  EXPECT_TRUE(HasEntry(report, "CORD2R", Fate::Refused, "a coordinate system that it stands in"));
  EXPECT_TRUE(HasEntry(report, "GRID", Fate::Refused, "its coordinate system cannot be had"));
  StructureOfText own;
  ReadStructureText("CORD1R,1,11,12,13\nGRID,11\nGRID,12,,0.,0.,1.\nGRID,13,1,1.,0.,0.\n", own);
  EXPECT_TRUE(HasEntry(own.read.report, "CORD1R", Fate::Refused, "it stands in itself"));
}

TEST(NastranSystems, MissingAndFlatSystemsAreRefused) {
  StructureOfText s;
  ReadStructureText(
      "CORD2R,1,99,0.,0.,0.,0.,0.,1.\n,1.\nCORD1R,2,11,12,13\n"
      "CORD2R,3,,0.,0.,0.,0.,0.,1.\n,0.,0.,2.\nGRID,5,77\nGRID,6,,,,,88\n",
      s);
  EXPECT_EQ(Entries(s.read.report),
            (std::vector<std::string>{
                "CORD1R refused 1: a node that it stands on does not exist (CORD1R 2)",
                "CORD2R refused 1: a coordinate system that it stands in cannot be had (CORD2R 1)",
                "CORD2R refused 1: its three points lie on one line (CORD2R 3)",
                "GRID refused 1: its coordinate system cannot be had (GRID 5, system 77)",
                "GRID refused 1: its system of displacements cannot be had (GRID 6, system 88)"}));
}

// A hundred thousand systems, each in the next: no stack can hold them as calls.
TEST(NastranSystems, LongChainsAreResolved) {
  constexpr int Count = 100000;
  std::string text = "GRID,1,1,0.,0.,0.\n";
  for (int k = 1; k <= Count; ++k) {
    const int next = k < Count ? k + 1 : 0;
    text += "CORD2R," + std::to_string(k) + ',' + std::to_string(next) +
            ",1.,0.,0.,1.,0.,1.\n,2.,0.,0.\n";
  }
  ExpectVector(PlaceOfNode1(text), {Count, 0.0, 0.0});
}

TEST(NastranSystems, VectorsTurnWithTheirPlace) {
  NastranSystem system;
  system.kind = NastranSystemKind::Cylindrical;
  // At (0,2,7) the radius points along y, the angle grows towards -x.
  ExpectVector(VectorOf(system, {1.0, 0.0, 0.0}, {0.0, 2.0, 7.0}), {0.0, 1.0, 0.0});
  ExpectVector(VectorOf(system, {0.0, 1.0, 0.0}, {0.0, 2.0, 7.0}), {-1.0, 0.0, 0.0});
  ExpectVector(VectorOf(system, {0.0, 0.0, 1.0}, {0.0, 2.0, 7.0}), {0.0, 0.0, 1.0});
  // On the axis the angle is 0.
  ExpectVector(VectorOf(system, {1.0, 2.0, 3.0}, {0.0, 0.0, 7.0}), {1.0, 2.0, 3.0});
  system.kind = NastranSystemKind::Spherical;
  // At (0,2,0): radius along y; the tilt from z grows towards -z; the turn grows towards -x.
  ExpectVector(VectorOf(system, {1.0, 0.0, 0.0}, {0.0, 2.0, 0.0}), {0.0, 1.0, 0.0});
  ExpectVector(VectorOf(system, {0.0, 1.0, 0.0}, {0.0, 2.0, 0.0}), {0.0, 0.0, -1.0});
  ExpectVector(VectorOf(system, {0.0, 0.0, 1.0}, {0.0, 2.0, 0.0}), {-1.0, 0.0, 0.0});
  // At (0,0,3), the pole, the tilt grows towards x.
  ExpectVector(VectorOf(system, {1.0, 2.0, 3.0}, {0.0, 0.0, 3.0}), {2.0, 3.0, 1.0});
  system.kind = NastranSystemKind::Rectangular;
  system.axes[0] = {0.0, 1.0, 0.0};
  system.axes[1] = {-1.0, 0.0, 0.0};
  ExpectVector(VectorOf(system, {1.0, 2.0, 3.0}, {9.0, 9.0, 9.0}), {-2.0, 1.0, 3.0});
}

// Bits from the lowest: radius, angle and height of a cylinder; radius, tilt from the axis and turn
// about it of a sphere. On the axis of a sphere the radius is along it; in its origin nothing is.
TEST(NastranSystems, OnTheAxisComponentsHaveNoDirection) {
  NastranSystem system;
  system.origin = {1.0, 2.0, 3.0};
  const Vector3 onAxis{1.0, 2.0, 8.0}, aside{1.0, 2.5, 8.0};
  EXPECT_EQ(OpenComponents(system, onAxis), 0);
  system.kind = NastranSystemKind::Cylindrical;
  EXPECT_EQ(OpenComponents(system, onAxis), 3);
  EXPECT_EQ(OpenComponents(system, system.origin), 3);
  EXPECT_EQ(OpenComponents(system, aside), 0);
  system.kind = NastranSystemKind::Spherical;
  EXPECT_EQ(OpenComponents(system, onAxis), 6);
  EXPECT_EQ(OpenComponents(system, system.origin), 7);
  EXPECT_EQ(OpenComponents(system, aside), 0);
  EXPECT_TRUE(HasOpenComponent(system, {0.0, 0.0, 1.0}, onAxis));
  EXPECT_FALSE(HasOpenComponent(system, {1.0, 0.0, 0.0}, onAxis));
}

}  // namespace
}  // namespace kvx::test
