#include "audit/beam_details.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "audit/check_solved.h"
#include "beam/beam_frame.h"
#include "beamshell/generate_beam_shells.h"
#include "beamshell/shared_ends.h"
#include "deck/check_reference.h"
#include "report/stop.h"

namespace kvx {

using korvex::BeamElement;
using korvex::Model;
using korvex::Vector3;

namespace {

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
  return !(distance > off + ReachOf(beam) + ReachOf(other) + korvex::CoincidenceTolerance);
}

// The beam and those whose detail models its stresses need, in the order of the table.
std::vector<std::int32_t> ListNeeded(const Model& model, const korvex::SharedEnds& ends,
                                     std::int32_t row) {
  const auto beamAt = [&](std::int32_t r) -> const BeamElement& {
    return model.BeamElements[static_cast<std::size_t>(r)];
  };
  std::vector<std::int32_t> needed;
  korvex::AppendSharing(ends, row, needed);
  const auto passesBy = [&](std::int32_t other) { return !MayMeet(beamAt(row), beamAt(other)); };
  needed.erase(std::remove_if(needed.begin(), needed.end(), passesBy), needed.end());
  needed.push_back(row);
  std::sort(needed.begin(), needed.end());
  needed.erase(std::unique(needed.begin(), needed.end()), needed.end());
  return needed;
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
  std::vector<korvex::BeamShellModel> details;
  korvex::SharedEnds ends;
  korvex::IndexEnds(model, ends);
  for (std::size_t i = 0; i < beams.size(); ++i) {
    if (before) before(i);
    const std::vector<std::int32_t> needed = ListNeeded(model, ends, beams[i]);
    const auto at = std::find(needed.begin(), needed.end(), beams[i]) - needed.begin();
    stresses[i].vonMises = std::numeric_limits<double>::quiet_NaN();
    try {
      korvex::GenerateBeamShells(model, needed, details);
      stresses[i] = FindDetailStress(details[static_cast<std::size_t>(at)]);
    } catch (const korvex::Stop&) {  // it has none
    }
  }
}

}  // namespace kvx
