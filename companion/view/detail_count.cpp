#include "view/detail_count.h"

#include <cmath>
#include <cstddef>

#include "beamshell/section_outline.h"

namespace kvx {

using korvex::ModelTables;

namespace {

// The refinement of the section in every run.
constexpr std::int32_t MeshLevel = 0;

// Empty where the reference leads nowhere.
korvex::SectionOutline OutlineOf(const ModelTables& tables, const korvex::BeamSectionRef& ref) {
  korvex::SectionOutline outline;
  const auto row = static_cast<std::size_t>(ref.BeamSecIndex);  // very large if negative
  if (ref.BeamSecType == korvex::BeamSecTypeT && row < tables.TBeamSections.size()) {
    korvex::BuildTOutline(tables.TBeamSections[row], MeshLevel, outline);
  } else if (ref.BeamSecType == korvex::BeamSecTypeL && row < tables.LBeamSections.size()) {
    korvex::BuildLOutline(tables.LBeamSections[row], ref.BeamSecMirrored, MeshLevel, outline);
  } else if (ref.BeamSecType == korvex::BeamSecTypeC && row < tables.CBeamSections.size()) {
    korvex::BuildCOutline(tables.CBeamSections[row], MeshLevel, outline);
  }
  return outline;
}

// NaN where a node does not exist.
double LengthOf(const ModelTables& tables, std::size_t beam) {
  const auto i = static_cast<std::size_t>(tables.BeamNodes[2 * beam]);
  const auto j = static_cast<std::size_t>(tables.BeamNodes[2 * beam + 1]);
  if (i >= tables.Nodes.size() || j >= tables.Nodes.size()) return std::nan("");
  const korvex::Node &a = tables.Nodes[i], &b = tables.Nodes[j];
  return korvex::Length({b.x - a.x, b.y - a.y, b.z - a.z});
}

}  // namespace

double CountDetailShells(const ModelTables& tables) {
  double count = 0.0;
  for (std::size_t b = 0; b < tables.BeamSectionRefs.size(); ++b) {
    const korvex::SectionOutline outline = OutlineOf(tables, tables.BeamSectionRefs[b]);
    const double quotient = LengthOf(tables, b) / korvex::LongestSegment(outline);
    const double steps = std::isfinite(quotient) && quotient >= 1.0 ? std::floor(quotient) : 1.0;
    count += steps * static_cast<double>(outline.segments.size());
  }
  return count;
}

}  // namespace kvx
