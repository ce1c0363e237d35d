#include "beamshell/section_outline.h"

#include <cmath>

#include "beamshell/sine_cosine.h"

namespace korvex {

namespace {

// The divisions of the sections at one mesh level.
struct OutlineDivisions {
  std::int32_t web;
  std::int32_t flange;  // each side of a T flange, or the whole width of an L flange
  std::int32_t circle;  // points of a tube
};

OutlineDivisions DivisionsOf(std::int32_t meshLevel) {
  if (meshLevel == 1) return {6, 2, 12};
  if (meshLevel == 2) return {12, 4, 16};
  return {3, 1, 8};
}

bool HasFlange(const BeamSection& section) { return section.Bf != 0.0 && section.Tf != 0.0; }

// Begins an outline with the points and segments of a web; the topmost point has z = top.
void BuildWeb(const BeamSection& section, std::int32_t divisions, double top,
              SectionOutline& outline) {
  outline.points.clear();
  outline.segments.clear();
  for (std::int32_t j = 0; j < divisions; ++j) {
    outline.points.push_back({0.0, 0.0, j * section.Hw / divisions});
    outline.segments.push_back({{j, j + 1}, section.Tw});
  }
  outline.points.push_back({0.0, 0.0, top});  // not computed: Dw Hw / Dw may differ from Hw
}

// Adds a flange of `divisions` segments from the web point with index webTop to the tip at
// y = reach.
void AddFlange(const BeamSection& section, std::int32_t webTop, double reach,
               std::int32_t divisions, SectionOutline& outline) {
  std::int32_t before = webTop;
  for (std::int32_t k = 1; k <= divisions; ++k) {
    const auto point = static_cast<std::int32_t>(outline.points.size());
    outline.points.push_back({0.0, k * reach / divisions, section.Hw + section.Tf / 2.0});
    outline.segments.push_back({{before, point}, section.Tf});
    before = point;
  }
}

}  // namespace

void BuildTOutline(const BeamSection& section, std::int32_t meshLevel, SectionOutline& outline) {
  const OutlineDivisions divisions = DivisionsOf(meshLevel);
  if (!HasFlange(section)) {
    BuildWeb(section, divisions.web, section.Hw, outline);
    return;
  }
  BuildWeb(section, divisions.web, section.Hw + section.Tf / 2.0, outline);
  AddFlange(section, divisions.web, -(section.Bf / 2.0), divisions.flange, outline);
  AddFlange(section, divisions.web, section.Bf / 2.0, divisions.flange, outline);
}

void BuildLOutline(const BeamSection& section, bool mirrored, std::int32_t meshLevel,
                   SectionOutline& outline) {
  const OutlineDivisions divisions = DivisionsOf(meshLevel);
  if (!HasFlange(section)) {
    BuildWeb(section, divisions.web, section.Hw, outline);
    return;
  }
  BuildWeb(section, divisions.web, section.Hw + section.Tf / 2.0, outline);
  AddFlange(section, divisions.web, mirrored ? -section.Bf : section.Bf, divisions.flange, outline);
}

void BuildCOutline(const CBeamSection& section, std::int32_t meshLevel, SectionOutline& outline) {
  const double pi = std::acos(-1.0);
  const std::int32_t P = DivisionsOf(meshLevel).circle;
  outline.points.clear();
  outline.segments.clear();
  for (std::int32_t i = 0; i < P; ++i) {
    const SineCosine angle = ComputeSineCosine(2.0 * pi * i / P);
    outline.points.push_back({0.0, section.R * angle.cosine, section.R * angle.sine});
    outline.segments.push_back({{i, (i + 1) % P}, section.T});
  }
}

void ShiftOutline(double BeamSecOz, SectionOutline& outline) {
  for (Vector3& point : outline.points) point[2] += BeamSecOz;
}

double LongestSegment(const SectionOutline& outline) {
  double longest = 0.0;
  for (const OutlineSegment& segment : outline.segments) {
    const Vector3& a = outline.points[static_cast<std::size_t>(segment.points[0])];
    const Vector3& b = outline.points[static_cast<std::size_t>(segment.points[1])];
    const double length = Length(Subtract(b, a));
    if (length > longest) longest = length;
  }
  return longest;
}

}  // namespace korvex
