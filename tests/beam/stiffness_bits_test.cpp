// The last bits of the beam's shear parameters and bending terms: divisions one after the other,
// L^2 and L^3 as products. Other forms are mathematically equal, but their last bits differ.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "beam/beam_stiffness.h"
#include "beam/section_properties.h"
#include "support/dof_names.h"

namespace korvex::test {
namespace {

constexpr double E = 2.06e11, Mu = 0.3;

// A beam of length L along X with its web along Z, so that its local axes are the global ones.
BeamElement MakeBeam(double L) {
  BeamElement beam;
  beam.NodeJ = {L, 0.0, 0.0};
  beam.RefPoint = {0.0, 0.0, 1.0};
  beam.E = E;
  beam.Mu = Mu;
  return beam;
}

// The parameter for I and the shear area As, divided twice by L.
double DivideTwice(double I, double As, double L) {
  const double G = E * 0.5 / (Mu + 1.0);
  return 12.0 * E * I / (G * As) / L / L;
}

// Other forms, mathematically equal.
std::array<double, 4> OtherForms(double I, double As, double L) {
  const double G = E * 0.5 / (Mu + 1.0);
  return {12.0 * E * I / (G * As) / (L * L), 12.0 * E * I / (G * As * L * L),
          12.0 * E * I / G / As / L / L, 24.0 * (Mu + 1.0) * I / As / L / L};
}

void ExpectParameter(double parameter, double I, double As, double L) {
  const double expected = DivideTwice(I, As, L);
  EXPECT_EQ(parameter, expected);
  for (const double other : OtherForms(I, As, L)) EXPECT_NE(other, expected);
}

// Sections and lengths for which all forms differ: a web of 0.21 x 0.011, and a tube.
constexpr double Hw = 0.21, Tw = 0.011, WebLength = 1.26;
constexpr double R = 0.18, T = 0.005, TubeLength = 2.5;

// The web alone carries the shear.
TEST(StiffnessBits, ShearParameterOfAFlangedSection) {
  const BeamElement beam = MakeBeam(WebLength);
  const SectionProperties t = SectionPropertiesT(beam, Hw, Tw, 0.13, 0.021, 0.0);
  ExpectParameter(t.ShearFactorY, t.Iy, Hw * Tw, WebLength);
  const SectionProperties l = SectionPropertiesL(beam, Hw, Tw, 0.13, 0.021, 0.0, false);
  ExpectParameter(l.ShearFactorY, l.Iy, Hw * Tw, WebLength);
}

// Two thirds of the rectangle carry the shear. The factor 2 / 3 is written with sixteen digits.
TEST(StiffnessBits, ShearParameterOfARectangle) {
  const double As = 0.6666666666666666 * Hw * Tw;
  const SectionProperties p = SectionPropertiesT(MakeBeam(WebLength), Hw, Tw, 0.0, 0.0, 0.0);
  ExpectParameter(p.ShearFactorY, p.Iy, As, WebLength);
  for (const double other : {0.6666666666666666 * (Hw * Tw), 0.6666666666666667 * Hw * Tw})
    EXPECT_NE(DivideTwice(p.Iy, other, WebLength), p.ShearFactorY);
}

TEST(StiffnessBits, ShearParameterOfATube) {
  BeamElement tube = MakeBeam(TubeLength);
  InitCBeamElement(tube, tube.NodeI, tube.NodeJ, {0.0, 0.0, 1.0, BeamTolerance}, {E, Mu, 0.0},
                   {R, T}, 0.0);
  const SectionProperties& p = tube.Section;
  ExpectParameter(p.ShearFactorY, p.Iy, p.A * 0.5, TubeLength);
  ExpectParameter(p.ShearFactorZ, p.Iy, p.A * 0.5, TubeLength);
}

// The terms of one bending plane, which have the factor b = E I / (Phi + 1) / L^3.
struct BendingTerms {
  double force, moment, own, carryOver;  // 12 b, 6 b L, (Phi + 4) b L^2, (2 - Phi) b L^2
};

// L, I and Phi are such that all forms differ.
void ExpectTerms(const BendingTerms& terms, double L, double I, double phi) {
  const double b = E * I / (phi + 1.0) / (L * L * L);
  for (const double other :
       {E * I / (phi + 1.0) / L / L / L, E * I / ((phi + 1.0) * (L * L * L)),
        E * I / (L * L * L) / (phi + 1.0), E * (I / (phi + 1.0) / (L * L * L))}) {
    EXPECT_NE(12.0 * other, 12.0 * b);
  }
  EXPECT_EQ(terms.force, 12.0 * b);
  EXPECT_EQ(terms.moment, 6.0 * b * L);
  EXPECT_NE(terms.moment, 6.0 * (b * L));
  EXPECT_EQ(terms.own, (phi + 4.0) * b * (L * L));
  EXPECT_NE(terms.own, (phi + 4.0) * b * L * L);
  EXPECT_EQ(terms.carryOver, (2.0 - phi) * b * (L * L));
  EXPECT_NE(terms.carryOver, (2.0 - phi) * b * L * L);
}

TEST(StiffnessBits, BendingTerms) {
  constexpr double L = 3.36;
  BeamElement beam = MakeBeam(L);
  beam.Section.Iy = 6.3e-5;
  beam.Section.Iz = 3.1e-6;
  beam.Section.ShearFactorY = 0.15;
  beam.Section.ShearFactorZ = 0.76;
  std::array<double, 144> K{};
  BeamStiffness(beam, K.data());
  const auto at = [&K](std::size_t i, std::size_t j) { return K[12 * i + j]; };
  constexpr std::size_t Uz2 = 6 + Uz, Ry2 = 6 + Ry, Rz2 = 6 + Rz;  // of the second node
  ExpectTerms({at(Uz, Uz), at(Ry, Uz2), at(Ry, Ry), at(Ry, Ry2)}, L, 6.3e-5, 0.15);  // x-z plane
  ExpectTerms({at(Uy, Uy), at(Uy, Rz), at(Rz, Rz), at(Rz, Rz2)}, L, 3.1e-6, 0.76);   // x-y plane
}

// Zeros of the rotation and of the eccentricity may be left out of products with finite numbers
// only: of those with an infinity each is a NaN, and every entry has one.
TEST(StiffnessBits, AnInfinityReachesAllEntries) {
  BeamElement beam = MakeBeam(WebLength);
  beam.Section = SectionPropertiesT(beam, Hw, Tw, 0.13, 0.021, 0.0);
  beam.E = std::numeric_limits<double>::infinity();
  std::array<double, 144> K{};
  BeamStiffness(beam, K.data());
  for (const double entry : K) EXPECT_TRUE(std::isnan(entry));
}

}  // namespace
}  // namespace korvex::test
