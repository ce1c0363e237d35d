// The thirteen section properties of each kind of section.
//
// Expected numbers were computed in exact rational arithmetic from the plates as rectangles about
// their common centroid (tube: from mean radius and thickness), with E = 2e11, Mu = 0.25, so
// G = 8e10, and L = 2, so that a shear parameter is 7.5 I / As.
#include "beam/section_properties.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace korvex {
namespace {

// A few roundings of sums whose terms are larger than the result.
constexpr double Bound = 1e-13;

constexpr double Hw = 0.3, Tw = 0.01, Bf = 0.1, Tf = 0.012;

BeamElement MakeElement() {
  BeamElement element;
  element.NodeI = {1.0, 1.0, 1.0};
  element.NodeJ = {1.0, 3.0, 1.0};
  element.E = 2e11;
  element.Mu = 0.25;
  return element;
}

void ExpectClose(double value, double expected, const char* name) {
  EXPECT_NEAR(value, expected, Bound * std::fabs(expected)) << name;
}

#define EXPECT_PROPERTY(p, name, expected) ExpectClose((p).name, expected, #name)

void ExpectPlainRectangle(const SectionProperties& p, double offset) {
  EXPECT_PROPERTY(p, A, 0.003);
  EXPECT_PROPERTY(p, Iy, 2.25e-5);
  EXPECT_PROPERTY(p, Iz, 2.5e-8);
  EXPECT_PROPERTY(p, J, 1e-7);
  EXPECT_PROPERTY(p, ShearFactorY, 0.084375);  // two thirds of the web carry the shear
  EXPECT_EQ(p.ShearFactorZ, 0.0);
  EXPECT_PROPERTY(p, CyPos, 0.005);
  EXPECT_PROPERTY(p, CyNeg, 0.005);
  EXPECT_PROPERTY(p, CzTop, 0.15);
  EXPECT_PROPERTY(p, CzBottom, 0.15);
  EXPECT_EQ(p.Ex, 0.0);
  EXPECT_EQ(p.Ey, 0.0);
  EXPECT_PROPERTY(p, Ez, 0.15 + offset);
}

TEST(SectionProperties, TSection) {
  const SectionProperties p = SectionPropertiesT(MakeElement(), Hw, Tw, Bf, Tf, 0.0);
  EXPECT_PROPERTY(p, A, 0.0042);
  EXPECT_PROPERTY(p, Iy, 4.33738285714285714e-5);
  EXPECT_PROPERTY(p, Iz, 1.025e-6);
  EXPECT_PROPERTY(p, J, 1.576e-7);
  EXPECT_PROPERTY(p, ShearFactorY, 0.108434571428571429);  // the whole web carries the shear
  EXPECT_EQ(p.ShearFactorZ, 0.0);
  EXPECT_PROPERTY(p, CyPos, 0.05);
  EXPECT_PROPERTY(p, CyNeg, 0.05);
  EXPECT_PROPERTY(p, CzTop, 0.117428571428571429);
  EXPECT_PROPERTY(p, CzBottom, 0.194571428571428571);
  EXPECT_EQ(p.Ex, 0.0);
  EXPECT_EQ(p.Ey, 0.0);
  EXPECT_PROPERTY(p, Ez, 0.194571428571428571);
}

TEST(SectionProperties, LSection) {
  const SectionProperties p = SectionPropertiesL(MakeElement(), Hw, Tw, Bf, Tf, 0.0, false);
  EXPECT_PROPERTY(p, A, 0.0042);
  EXPECT_PROPERTY(p, Iy, 4.33738285714285714e-5);
  EXPECT_PROPERTY(p, Iz, 2.76071428571428571e-6);
  EXPECT_PROPERTY(p, J, 1.576e-7);
  EXPECT_PROPERTY(p, ShearFactorY, 0.108434571428571429);
  EXPECT_EQ(p.ShearFactorZ, 0.0);
  EXPECT_PROPERTY(p, CyPos, 0.095);  // from the web's centre line, not from the centroid
  EXPECT_PROPERTY(p, CyNeg, 0.005);
  EXPECT_PROPERTY(p, CzTop, 0.117428571428571429);
  EXPECT_PROPERTY(p, CzBottom, 0.194571428571428571);
  EXPECT_EQ(p.Ex, 0.0);
  EXPECT_PROPERTY(p, Ey, 0.0128571428571428571);
  EXPECT_PROPERTY(p, Ez, 0.194571428571428571);
}

TEST(SectionProperties, MirroredLSwapsSidesAndNothingElse) {
  const SectionProperties plain = SectionPropertiesL(MakeElement(), Hw, Tw, Bf, Tf, 0.1, false);
  const SectionProperties p = SectionPropertiesL(MakeElement(), Hw, Tw, Bf, Tf, 0.1, true);
  EXPECT_EQ(p.CyPos, plain.CyNeg);
  EXPECT_EQ(p.CyNeg, plain.CyPos);
  EXPECT_EQ(p.Ey, -plain.Ey);
  EXPECT_EQ(p.A, plain.A);
  EXPECT_EQ(p.Iy, plain.Iy);
  EXPECT_EQ(p.Iz, plain.Iz);
  EXPECT_EQ(p.J, plain.J);
  EXPECT_EQ(p.ShearFactorY, plain.ShearFactorY);
  EXPECT_EQ(p.ShearFactorZ, plain.ShearFactorZ);
  EXPECT_EQ(p.CzTop, plain.CzTop);
  EXPECT_EQ(p.CzBottom, plain.CzBottom);
  EXPECT_EQ(p.Ex, plain.Ex);
  EXPECT_EQ(p.Ez, plain.Ez);
}

TEST(SectionProperties, TWithoutFlangeIsTheWebAlone) {
  ExpectPlainRectangle(SectionPropertiesT(MakeElement(), Hw, Tw, 0.0, Tf, 0.0), 0.0);
  ExpectPlainRectangle(SectionPropertiesT(MakeElement(), Hw, Tw, Bf, 0.0, 0.25), 0.25);
}

TEST(SectionProperties, LWithoutFlangeIgnoresTheMirrorFlag) {
  ExpectPlainRectangle(SectionPropertiesL(MakeElement(), Hw, Tw, 0.0, Tf, 0.25, true), 0.25);
  ExpectPlainRectangle(SectionPropertiesL(MakeElement(), Hw, Tw, Bf, 0.0, 0.0, false), 0.0);
}

// A flange of next to nothing changes the shear area from two thirds of the web to all of it.
TEST(SectionProperties, AnyFlangeFreesTheWholeWebForShear) {
  const SectionProperties bare = SectionPropertiesT(MakeElement(), Hw, Tw, 0.0, 0.0, 0.0);
  const SectionProperties thin = SectionPropertiesT(MakeElement(), Hw, Tw, 1e-9, 1e-9, 0.0);
  EXPECT_NEAR(thin.ShearFactorY / bare.ShearFactorY, 2.0 / 3.0, 1e-9);
}

TEST(SectionProperties, OffsetMovesTheCentroidAlongZOnly) {
  const SectionProperties at0 = SectionPropertiesT(MakeElement(), Hw, Tw, Bf, Tf, 0.0);
  const SectionProperties moved = SectionPropertiesT(MakeElement(), Hw, Tw, Bf, Tf, -0.5);
  EXPECT_DOUBLE_EQ(moved.Ez, at0.Ez - 0.5);
  EXPECT_EQ(moved.Ey, at0.Ey);
  EXPECT_EQ(moved.Iy, at0.Iy);
  EXPECT_EQ(moved.CzBottom, at0.CzBottom);
}

TEST(SectionProperties, TubeFillsTheWholeElement) {
  BeamElement element;
  element.BeamSecMirrored = true;  // not the tube's to write
  InitCBeamElement(element, {1.0, 1.0, 1.0}, {1.0, 3.0, 1.0}, {4.0, 5.0, 6.0, 7e-15},
                   {2e11, 0.25, 7850.0}, {0.15, 0.02}, 0.3);
  EXPECT_EQ(element.NodeI, (Vector3{1.0, 1.0, 1.0}));
  EXPECT_EQ(element.NodeJ, (Vector3{1.0, 3.0, 1.0}));
  EXPECT_EQ(element.RefPoint, (Vector3{4.0, 5.0, 6.0}));
  EXPECT_EQ(element.Tolerance, 7e-15);
  EXPECT_EQ(element.E, 2e11);
  EXPECT_EQ(element.Mu, 0.25);
  EXPECT_EQ(element.BeamSecOz, 0.3);
  EXPECT_TRUE(element.BeamSecMirrored);
  const SectionProperties& p = element.Section;
  EXPECT_PROPERTY(p, A, 0.0188495559215387594);
  EXPECT_PROPERTY(p, Iy, 2.12999981913387982e-4);
  EXPECT_PROPERTY(p, Iz, 2.12999981913387982e-4);
  EXPECT_PROPERTY(p, J, 4.25999963826775963e-4);
  EXPECT_PROPERTY(p, ShearFactorY, 0.1695);  // half the area carries the shear
  EXPECT_PROPERTY(p, ShearFactorZ, 0.1695);
  for (const double extent : {p.CyPos, p.CyNeg, p.CzTop, p.CzBottom}) {
    ExpectClose(extent, 0.16, "outer radius");
  }
  EXPECT_EQ(p.Ex, 0.0);
  EXPECT_EQ(p.Ey, 0.0);
  EXPECT_EQ(p.Ez, 0.3);
}

TEST(SectionProperties, TubeWithoutWallHasNoShearParameter) {
  BeamElement element;
  InitCBeamElement(element, {0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}, {0.0, 0.0, 1.0, 1e-15},
                   {2e11, 0.25, 0.0}, {0.15, 0.0}, 0.0);
  EXPECT_EQ(element.Section.A, 0.0);
  EXPECT_TRUE(std::isnan(element.Section.ShearFactorY));  // 0 / 0
}

TEST(SectionProperties, ZeroLengthGivesAnInfiniteShearParameter) {
  BeamElement element = MakeElement();
  element.NodeJ = element.NodeI;
  const SectionProperties p = SectionPropertiesT(element, Hw, Tw, Bf, Tf, 0.0);
  EXPECT_EQ(p.ShearFactorY, std::numeric_limits<double>::infinity());
}

// The shear parameter falls with the square of the length and knows the material.
TEST(SectionProperties, ShearParameterDependsOnLengthAndMaterial) {
  BeamElement element = MakeElement();
  element.NodeJ = {1.0, 5.0, 1.0};
  const SectionProperties p = SectionPropertiesT(element, Hw, Tw, Bf, Tf, 0.0);
  EXPECT_PROPERTY(p, ShearFactorY, 0.108434571428571429 / 4.0);
  element.Mu = 0.5;  // E / G rises from 2.5 to 3
  const SectionProperties softer = SectionPropertiesT(element, Hw, Tw, Bf, Tf, 0.0);
  EXPECT_PROPERTY(softer, ShearFactorY, 0.108434571428571429 / 4.0 * 1.2);
}

TEST(BeamElement, ConstructionSetsToleranceAndSizesOnly) {
  const BeamElement element;
  EXPECT_EQ(element.Tolerance, 1e-15);
  EXPECT_EQ(element.NodesPerBeam, 2);
  EXPECT_EQ(element.DofsPerNode, 6);
  EXPECT_EQ(element.BeamDofs, 12);
  EXPECT_EQ(element.NodeI, (Vector3{}));
  EXPECT_EQ(element.NodeJ, (Vector3{}));
  EXPECT_EQ(element.RefPoint, (Vector3{}));
  EXPECT_EQ(element.E, 0.0);
  EXPECT_EQ(element.Section.A, 0.0);
}

}  // namespace
}  // namespace korvex
