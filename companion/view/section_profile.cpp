#include "view/section_profile.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <utility>

#include "beam/section_properties.h"
#include "beamshell/sine_cosine.h"

namespace kvx {

namespace {

using korvex::BeamSection, korvex::BeamSectionRef, korvex::CBeamSection;
using Ring = std::vector<double>;

// The shortest text that reads back as this number.
std::string ShortestText(double number) {
  std::array<char, 32> buffer{};
  const char* end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
  return std::string(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
}

std::string SizesText(std::initializer_list<std::pair<const char*, double>> sizes) {
  std::string text;
  for (const auto& [name, value] : sizes) {
    if (!text.empty()) text += ", ";
    text.append(name).append(" ").append(ShortestText(value));
  }
  return text;
}

Ring OutlineFlatBar(const BeamSection& s) {
  const double y = s.Tw / 2.0;
  return {-y, 0.0, y, 0.0, y, s.Hw, -y, s.Hw};
}

Ring OutlineT(const BeamSection& s) {
  const double web = s.Tw / 2.0, tip = s.Bf / 2.0, top = s.Hw + s.Tf;
  return {-web, 0.0, web, 0.0, web, s.Hw, tip, s.Hw, tip, top, -tip, top, -tip, s.Hw, -web, s.Hw};
}

Ring OutlineL(const BeamSection& s, bool mirrored) {
  const double web = s.Tw / 2.0, tip = s.Bf - web, top = s.Hw + s.Tf;
  if (mirrored) return {web, 0.0, web, top, -tip, top, -tip, s.Hw, -web, s.Hw, -web, 0.0};
  return {-web, 0.0, web, 0.0, web, s.Hw, tip, s.Hw, tip, top, -web, top};
}

// turn: 1 from y towards z, -1 the other way round.
Ring OutlineCircle(double radius, double turn) {
  const double pi = std::acos(-1.0);
  Ring ring;
  for (std::size_t i = 0; i < CirclePoints; ++i) {
    const auto part = static_cast<double>(i) / static_cast<double>(CirclePoints);
    const korvex::SineCosine angle = korvex::ComputeSineCosine(2.0 * pi * part);
    ring.push_back(radius * angle.cosine);
    ring.push_back(turn * radius * angle.sine);
  }
  return ring;
}

// All properties of a section but the shear parameters are free of the beam's length and material.
korvex::BeamElement MakeUnitBeam() {
  korvex::BeamElement beam;
  beam.NodeJ = {1.0, 0.0, 0.0};
  beam.E = 1.0;
  return beam;
}

void TakeProperties(const korvex::SectionProperties& p, SectionProfile& profile) {
  profile.centroid = {p.Ey, p.Ez};
  profile.A = p.A;
  profile.Iy = p.Iy;
  profile.Iz = p.Iz;
}

void FillPlates(const BeamSection& s, const BeamSectionRef& ref, SectionProfile& profile) {
  const bool isL = ref.BeamSecType == korvex::BeamSecTypeL;
  const korvex::BeamElement beam = MakeUnitBeam();
  TakeProperties(
      isL ? SectionPropertiesL(beam, s.Hw, s.Tw, s.Bf, s.Tf, ref.BeamSecOz, ref.BeamSecMirrored)
          : SectionPropertiesT(beam, s.Hw, s.Tw, s.Bf, s.Tf, ref.BeamSecOz),
      profile);
  if (s.Bf == 0.0 || s.Tf == 0.0) {
    profile.type = "flat bar";
    profile.sizes = SizesText({{"Hw", s.Hw}, {"Tw", s.Tw}});
    profile.rings = {OutlineFlatBar(s)};
    return;
  }
  profile.type = isL ? "L" : "T";
  profile.mirrored = isL && ref.BeamSecMirrored;
  profile.sizes = SizesText({{"Hw", s.Hw}, {"Tw", s.Tw}, {"Bf", s.Bf}, {"Tf", s.Tf}});
  profile.rings = {isL ? OutlineL(s, ref.BeamSecMirrored) : OutlineT(s)};
}

void FillTube(const CBeamSection& s, const BeamSectionRef& ref, SectionProfile& profile) {
  korvex::BeamElement beam = MakeUnitBeam();
  InitCBeamElement(beam, beam.NodeI, beam.NodeJ, {}, {1.0, 0.0, 0.0}, s, ref.BeamSecOz);
  TakeProperties(beam.Section, profile);
  profile.type = "tube";
  profile.sizes = SizesText({{"R", s.R}, {"T", s.T}});
  const double outer = s.R + s.T / 2.0, inner = s.R - s.T / 2.0;
  profile.rings = {OutlineCircle(outer, 1.0)};
  if (!(inner <= 0.0)) profile.rings.push_back(OutlineCircle(inner, -1.0));
}

// Moves the rings along z; drops them where a number is not finite.
void PlaceRings(double offset, SectionProfile& profile) {
  bool isFinite = true;
  for (Ring& ring : profile.rings) {
    for (std::size_t i = 1; i < ring.size(); i += 2) ring[i] += offset;
    isFinite = isFinite && std::all_of(ring.begin(), ring.end(),
                                       [](double number) { return std::isfinite(number); });
  }
  if (!isFinite) profile.rings.clear();
}

template <typename Table>
bool HasRow(const Table& table, std::int32_t row) {
  return row >= 0 && static_cast<std::size_t>(row) < table.size();
}

}  // namespace

SectionProfile MakeSectionProfile(const korvex::ModelTables& tables, const BeamSectionRef& ref) {
  SectionProfile profile;
  profile.index = ref.BeamSecIndex;
  profile.offset = ref.BeamSecOz;
  const auto row = static_cast<std::size_t>(ref.BeamSecIndex);
  if (ref.BeamSecType == korvex::BeamSecTypeC) {
    if (HasRow(tables.CBeamSections, ref.BeamSecIndex)) {
      FillTube(tables.CBeamSections[row], ref, profile);
    }
  } else if (korvex::HasSectionTable(ref.BeamSecType)) {
    const auto& table =
        ref.BeamSecType == korvex::BeamSecTypeL ? tables.LBeamSections : tables.TBeamSections;
    if (HasRow(table, ref.BeamSecIndex)) FillPlates(table[row], ref, profile);
  }
  PlaceRings(ref.BeamSecOz, profile);
  return profile;
}

}  // namespace kvx
