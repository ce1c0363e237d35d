#include "support/beam_sections.h"

#include <algorithm>
#include <cmath>

#include "deck/model_tables.h"

namespace korvex::test {

namespace {

struct Rectangle {
  Real y, z;           // centre
  Real width, height;  // along y and along z
};

SectionNumbers SumRectangles(const std::vector<Rectangle>& rectangles) {
  SectionNumbers s;
  for (const Rectangle& r : rectangles) {
    s.A += r.width * r.height;
    s.ey += r.width * r.height * r.y;
    s.ez += r.width * r.height * r.z;
  }
  s.ey /= s.A;
  s.ez /= s.A;
  for (const Rectangle& r : rectangles) {
    const Real a = r.width * r.height;
    s.Iy += a * r.height * r.height / 12 + a * (r.z - s.ez) * (r.z - s.ez);
    s.Iz += a * r.width * r.width / 12 + a * (r.y - s.ey) * (r.y - s.ey);
  }
  return s;
}

SectionNumbers TubeNumbers(Real R, Real T) {
  const Real pi = std::acos(static_cast<Real>(-1));
  SectionNumbers s;
  s.A = 2 * pi * R * T;
  s.Iy = s.Iz = pi * R * T * (R * R + T * T / 4);
  s.J = 2 * s.Iy;
  s.shearAreaY = s.shearAreaZ = s.A / 2;
  return s;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const TestSection& section) {
  return out << section.name;
}

std::vector<TestSection> AllSections() {
  const std::array<double, 4> plates{0.3, 0.02, 0.16, 0.025};
  const std::vector<TestSection> plain{
      {"T", BeamSecTypeT, plates, 0.0, false},
      {"L", BeamSecTypeL, plates, 0.0, false},
      {"MirroredL", BeamSecTypeL, plates, 0.0, true},
      {"FlatBar", BeamSecTypeT, {0.3, 0.05, 0.0, 0.025}, 0.0, false},
      {"Tube", BeamSecTypeC, {0.15, 0.02, 0.0, 0.0}, 0.0, false}};
  std::vector<TestSection> all = plain;
  for (TestSection section : plain) {
    section.name += "WithOffset";
    section.BeamSecOz = -0.11;
    all.push_back(section);
  }
  return all;
}

SectionNumbers ComputeNumbers(const TestSection& section) {
  const auto& d = section.dimensions;
  SectionNumbers s;
  if (section.BeamSecType == BeamSecTypeC) {
    s = TubeNumbers(d[0], d[1]);
  } else {
    const Real Hw = d[0], Tw = d[1], Bf = d[2], Tf = d[3];
    std::vector<Rectangle> rectangles{{0, Hw / 2, Tw, Hw}};
    const bool flange = Bf != 0 && Tf != 0;
    // An L flange begins at the web's outer face: its centre lies (Bf - Tw) / 2 beside the web's.
    const Real side = section.mirrored ? -1 : 1;
    const Real y = section.BeamSecType == BeamSecTypeL ? side * (Bf - Tw) / 2 : 0;
    if (flange) rectangles.push_back({y, Hw + Tf / 2, Bf, Tf});
    s = SumRectangles(rectangles);
    s.J = (Hw * Tw * Tw * Tw + (flange ? Bf * Tf * Tf * Tf : 0)) / 3;
    s.shearAreaZ = flange ? Hw * Tw : Hw * Tw * 2 / 3;
  }
  s.ez += section.BeamSecOz;
  return s;
}

void UseSection(const TestSection& section, ModelText& model, ModelText::Beam& beam) {
  const auto& d = section.dimensions;
  if (section.BeamSecType == BeamSecTypeT) model.tSections = {d};
  if (section.BeamSecType == BeamSecTypeL) model.lSections = {d};
  if (section.BeamSecType == BeamSecTypeC) model.cSections = {{d[0], d[1]}};
  beam.BeamSecType = section.BeamSecType;
  beam.BeamSecOz = section.BeamSecOz;
  beam.BeamSecMirrored = section.mirrored ? 1 : 0;
}

}  // namespace korvex::test
