// Powers are written as products, because pow differs in its last bit between C libraries.
#include "beam/section_properties.h"

#include <cmath>

#include "beam/beam_frame.h"

namespace korvex {

namespace {

// Shear area of a rectangle / its area. The usual value for bending of a solid rectangle is 5/6;
// 2/3 is the mean shear stress divided by the maximum.
constexpr double RectangleShearShare = 0.6666666666666666;

// Shear area of a thin tube / its area (Cowper 1966, thin-walled limit for nu = 0).
constexpr double TubeShearShare = 0.5;

double Cube(double a) { return a * a * a; }

double FourthPower(double a) { return (a * a) * (a * a); }

// 12 E I / (G As L^2) with G = E / (2 (1 + Mu)).
double ShearParameter(const BeamElement& element, double I, double As) {
  const double L = BeamLength(element);
  const double G = element.E * 0.5 / (element.Mu + 1.0);
  return 12.0 * element.E * I / (G * As) / L / L;
}

bool HasFlange(double Bf, double Tf) { return Bf != 0.0 && Tf != 0.0; }

// A web without flange. Its shear area is two thirds of its area, whereas the web of a flanged
// section carries shear on its whole area; this jump is intended.
SectionProperties RectangleProperties(const BeamElement& element, double Hw, double Tw,
                                      double BeamSecOz) {
  SectionProperties p;
  p.A = Hw * Tw;
  p.Iy = Tw * Cube(Hw) / 12.0;
  p.Iz = Hw * Cube(Tw) / 12.0;
  p.J = Hw * Cube(Tw) / 3.0;
  p.ShearFactorY = ShearParameter(element, p.Iy, RectangleShearShare * Hw * Tw);
  p.ShearFactorZ = 0.0;
  p.CyPos = p.CyNeg = Tw / 2.0;
  p.CzTop = p.CzBottom = Hw / 2.0;
  p.Ez = Hw / 2.0 + BeamSecOz;
  return p;
}

// The properties that T and L sections with a flange have in common: all that do not depend on the
// flange's position along y.
SectionProperties FlangedProperties(const BeamElement& element, double Hw, double Tw, double Bf,
                                    double Tf, double BeamSecOz) {
  const double Aw = Hw * Tw;
  const double Af = Bf * Tf;
  const double hf = Hw + Tf / 2.0;  // height of the flange's centroid above the web's free edge
  SectionProperties p;
  p.A = Af + Aw;
  const double zc = (Aw * Hw / 2.0 + Af * hf) / p.A;
  p.Iy = Bf * Cube(Tf) / 12.0 + Af * (hf * hf) + Tw * Cube(Hw) / 12.0 +
         Aw * ((Hw / 2.0) * (Hw / 2.0)) - p.A * (zc * zc);
  p.J = (Hw * Cube(Tw) + Bf * Cube(Tf)) / 3.0;
  p.ShearFactorY = ShearParameter(element, p.Iy, Aw);
  p.ShearFactorZ = 0.0;
  p.CzBottom = zc;
  p.CzTop = Hw + Tf - zc;
  p.Ez = zc + BeamSecOz;
  return p;
}

}  // namespace

SectionProperties SectionPropertiesT(const BeamElement& element, double Hw, double Tw, double Bf,
                                     double Tf, double BeamSecOz) {
  if (!HasFlange(Bf, Tf)) return RectangleProperties(element, Hw, Tw, BeamSecOz);
  SectionProperties p = FlangedProperties(element, Hw, Tw, Bf, Tf, BeamSecOz);
  p.Iz = Hw * Cube(Tw) / 12.0 + Tf * Cube(Bf) / 12.0;
  p.CyPos = p.CyNeg = Bf / 2.0;
  return p;
}

SectionProperties SectionPropertiesL(const BeamElement& element, double Hw, double Tw, double Bf,
                                     double Tf, double BeamSecOz, bool mirrored) {
  if (!HasFlange(Bf, Tf)) return RectangleProperties(element, Hw, Tw, BeamSecOz);
  SectionProperties p = FlangedProperties(element, Hw, Tw, Bf, Tf, BeamSecOz);
  const double Af = Bf * Tf;
  const double yf = Bf / 2.0 - Tw / 2.0;  // flange centroid from the web's centre line
  const double yc = Af * yf / p.A;
  p.Iz = Tf * Cube(Bf) / 12.0 + Af * (yf * yf) + Hw * Cube(Tw) / 12.0 - p.A * (yc * yc);
  // Both extents are deliberately measured from the web's centre line, not from the centroid.
  const double flangeSide = Bf - Tw / 2.0;
  const double webSide = Tw / 2.0;
  p.CyPos = mirrored ? webSide : flangeSide;
  p.CyNeg = mirrored ? flangeSide : webSide;
  p.Ey = mirrored ? -yc : yc;
  return p;
}

void InitCBeamElement(BeamElement& element, const Vector3& nodeI, const Vector3& nodeJ,
                      const std::array<double, 4>& refPointAndTolerance, const Material& material,
                      const CBeamSection& section, double BeamSecOz) {
  element.NodeI = nodeI;
  element.NodeJ = nodeJ;
  element.RefPoint = {refPointAndTolerance[0], refPointAndTolerance[1], refPointAndTolerance[2]};
  element.Tolerance = refPointAndTolerance[3];
  element.E = material.E;
  element.Mu = material.Mu;
  element.BeamSecOz = BeamSecOz;

  const double pi = std::acos(-1.0);
  const double Do = 2.0 * section.R + section.T;  // outer diameter
  const double Di = 2.0 * section.R - section.T;  // inner diameter
  const double fourthPowers = FourthPower(Do) - FourthPower(Di);
  SectionProperties p;
  p.A = pi * (Do * Do / 4.0 - Di * Di / 4.0);
  p.Iy = p.Iz = pi * 0.015625 * fourthPowers;  // pi / 64
  p.J = pi * 0.03125 * fourthPowers;           // pi / 32
  p.ShearFactorY = p.ShearFactorZ = ShearParameter(element, p.Iy, p.A * TubeShearShare);
  p.CyPos = p.CyNeg = p.CzTop = p.CzBottom = Do / 2.0;
  p.Ez = BeamSecOz;
  element.Section = p;
}

}  // namespace korvex
