#include "audit/beam_details.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "audit/check_solved.h"
#include "beam/beam_frame.h"
#include "beamshell/generate_beam_shells.h"
#include "deck/check_reference.h"
#include "report/stop.h"

namespace kvx {

using korvex::BeamElement;
using korvex::Model;
using korvex::Vector3;

namespace {

// The averaging takes ends as shared, and corners as one, up to this distance, in model units
// (beamshell/average_corners.h).
constexpr double SharedDistance = 0.001;

// No point of the section is farther from the node line. All extents are from the centroid.
double ReachOf(const BeamElement& beam) {
  const korvex::SectionProperties& p = beam.Section;
  return std::hypot(std::max(std::fabs(p.Ey + p.CyPos), std::fabs(p.Ey - p.CyNeg)),
                    std::max(std::fabs(p.Ez + p.CzTop), std::fabs(p.Ez - p.CzBottom)));
}

// No plate of the section is wider.
double WidthOf(const BeamElement& beam) {
  const korvex::SectionProperties& p = beam.Section;
  return std::max(p.CyPos + p.CyNeg, p.CzTop + p.CzBottom);
}

double Dot(const Vector3& a, const Vector3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

double DistanceFromLine(const Vector3& point, const Vector3& from, const Vector3& to) {
  const Vector3 d = korvex::Subtract(to, from), v = korvex::Subtract(point, from);
  const double square = Dot(d, d);
  const double s = square > 0.0 ? std::clamp(Dot(v, d) / square, 0.0, 1.0) : 0.0;
  return korvex::Length(Vector3{v[0] - s * d[0], v[1] - s * d[1], v[2] - s * d[2]});
}

Vector3 MiddleOf(const BeamElement& beam) {
  Vector3 middle{};
  for (std::size_t i = 0; i < 3; ++i) middle[i] = 0.5 * beam.NodeI[i] + 0.5 * beam.NodeJ[i];
  return middle;
}

// Whether corners of the other beam's detail model may lie on those of this one at its middle: at
// the station there, or at the two beside it. These are half a step off, which is less than the
// widest plate (beamshell/extrude_outline.h), or the beam's ends.
bool MayMeet(const BeamElement& beam, const BeamElement& other) {
  const double off = std::min(WidthOf(beam), korvex::BeamLength(beam) / 2.0);
  const double distance = DistanceFromLine(MiddleOf(beam), other.NodeI, other.NodeJ);
  // Not the other way round: NaN meets all.
  return !(distance > off + ReachOf(beam) + ReachOf(other) + SharedDistance);
}

// Of length 1 and along no plane of a usual mesh, so that few ends have the same height.
constexpr Vector3 Oblique{0.8135, 0.4907, 0.3122};

// The ends of all beams by their height along Oblique: beams that share an end are found near it.
struct EndIndex {
  std::vector<std::pair<double, std::int32_t>> ends;  // height, beam
};

void IndexEnds(const Model& model, EndIndex& index) {
  index.ends.clear();
  for (std::size_t b = 0; b < model.BeamElements.size(); ++b) {
    const BeamElement& beam = model.BeamElements[b];
    for (const double height : {Dot(beam.NodeI, Oblique), Dot(beam.NodeJ, Oblique)}) {
      if (std::isfinite(height)) index.ends.emplace_back(height, static_cast<std::int32_t>(b));
    }
  }
  std::sort(index.ends.begin(), index.ends.end());
}

bool ShareAnEnd(const BeamElement& a, const BeamElement& b) {
  for (const Vector3& p : {a.NodeI, a.NodeJ}) {
    for (const Vector3& q : {b.NodeI, b.NodeJ}) {
      if (korvex::Length(korvex::Subtract(p, q)) < SharedDistance) return true;
    }
  }
  return false;
}

// The beam and those whose detail models its stresses need, in the order of the table.
std::vector<std::int32_t> ListNeeded(const Model& model, const EndIndex& index, std::int32_t row) {
  const BeamElement& beam = model.BeamElements[static_cast<std::size_t>(row)];
  std::vector<std::int32_t> needed{row};
  for (const double height : {Dot(beam.NodeI, Oblique), Dot(beam.NodeJ, Oblique)}) {
    if (!std::isfinite(height)) continue;
    // Twice the distance: the heights are rounded.
    const std::pair<double, std::int32_t> first{height - 2.0 * SharedDistance, 0};
    for (auto at = std::lower_bound(index.ends.begin(), index.ends.end(), first);
         at != index.ends.end() && at->first <= height + 2.0 * SharedDistance; ++at) {
      const BeamElement& other = model.BeamElements[static_cast<std::size_t>(at->second)];
      if (ShareAnEnd(beam, other) && MayMeet(beam, other)) needed.push_back(at->second);
    }
  }
  std::sort(needed.begin(), needed.end());
  needed.erase(std::unique(needed.begin(), needed.end()), needed.end());
  return needed;
}

// Fills `part` with these beams alone; their nodes are numbered anew. The section tables are there.
void TakeBeams(const Model& model, const std::vector<std::int32_t>& rows, Model& part) {
  constexpr std::size_t Six = korvex::DofsPerNode;
  part.Tables.NELEM_B = static_cast<std::int32_t>(rows.size());
  part.Tables.BeamNodes.clear();
  part.Tables.BeamSectionRefs.clear();
  part.BeamElements.clear();
  part.BeamShellModels.clear();
  part.Displacements.clear();
  for (const std::int32_t row : rows) {
    const auto b = static_cast<std::size_t>(row);
    part.BeamElements.push_back(model.BeamElements[b]);
    part.Tables.BeamSectionRefs.push_back(model.Tables.BeamSectionRefs[b]);
    for (const std::size_t end : {2 * b, 2 * b + 1}) {
      const double* u =
          &model.Displacements[static_cast<std::size_t>(model.Tables.BeamNodes[end]) * Six];
      part.Tables.BeamNodes.push_back(static_cast<std::int32_t>(part.Tables.BeamNodes.size()));
      part.Displacements.insert(part.Displacements.end(), u, u + Six);
    }
  }
}

void CheckRows(const Model& model, const std::vector<std::int32_t>& beams) {
  CheckSolvedModel(model);
  for (std::size_t i = 0; i < beams.size(); ++i) {
    korvex::CheckReference("Item", static_cast<std::int32_t>(i), "beam", beams[i],
                           {"beam elements", static_cast<std::int32_t>(model.BeamElements.size())});
  }
}

}  // namespace

void FindDetailStresses(const Model& model, const std::vector<std::int32_t>& beams,
                        const std::function<void(std::size_t index)>& before,
                        std::vector<DetailStress>& stresses) {
  CheckRows(model, beams);
  stresses.assign(beams.size(), {});
  Model part;
  part.Tables.TBeamSections = model.Tables.TBeamSections;
  part.Tables.LBeamSections = model.Tables.LBeamSections;
  part.Tables.CBeamSections = model.Tables.CBeamSections;
  part.BeamShellMeshLevel = model.BeamShellMeshLevel;
  EndIndex index;
  IndexEnds(model, index);
  for (std::size_t i = 0; i < beams.size(); ++i) {
    if (before) before(i);
    const std::vector<std::int32_t> needed = ListNeeded(model, index, beams[i]);
    TakeBeams(model, needed, part);
    const auto at = std::find(needed.begin(), needed.end(), beams[i]) - needed.begin();
    stresses[i].vonMises = std::numeric_limits<double>::quiet_NaN();
    try {
      korvex::GenerateBeamShells(part);
      stresses[i] = FindDetailStress(part.BeamShellModels[static_cast<std::size_t>(at)]);
    } catch (const korvex::Stop&) {  // it has none
    }
  }
}

}  // namespace kvx
