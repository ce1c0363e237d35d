#include "audit/beam_diagrams.h"

#include <algorithm>
#include <cmath>

#include "report/stop.h"

namespace kvx {

namespace {

using korvex::Vector3;

Vector3 Axis(const korvex::BeamFrame& frame, std::size_t row) {
  return {frame[3 * row], frame[3 * row + 1], frame[3 * row + 2]};
}

// The centroid of a section whose node is at `node`.
Vector3 FindCentroid(const Vector3& node, const korvex::SectionProperties& section,
                     const korvex::BeamFrame& frame) {
  Vector3 centroid = node;
  for (std::size_t i = 0; i < 3; ++i) {
    centroid[i] += section.Ex * frame[i] + section.Ey * frame[3 + i] + section.Ez * frame[6 + i];
  }
  return centroid;
}

bool IsFinite(const BeamForces& forces, const BeamDiagram& diagram) {
  const auto finite = [](double value) { return std::isfinite(value); };
  for (const Cubic& curve : forces.curves) {
    if (!std::all_of(curve.begin(), curve.end(), finite)) return false;
  }
  return std::all_of(diagram.start.begin(), diagram.start.end(), finite) &&
         std::all_of(diagram.end.begin(), diagram.end.end(), finite);
}

BeamDiagram BuildDiagram(const korvex::BeamElement& beam, const BeamForces& forces) {
  BeamDiagram diagram;
  diagram.start = FindCentroid(beam.NodeI, beam.Section, forces.frame);
  diagram.end = FindCentroid(beam.NodeJ, beam.Section, forces.frame);
  diagram.y = Axis(forces.frame, 1);
  diagram.z = Axis(forces.frame, 2);
  return diagram;
}

}  // namespace

Vector3 DrawingDirection(const BeamDiagram& diagram, SectionForce component) {
  if (component == ForceVy) return diagram.y;
  if (component == MomentMz) return korvex::Subtract({0.0, 0.0, 0.0}, diagram.y);
  return diagram.z;
}

void BuildBeamDiagrams(const korvex::Model& model, const std::vector<BeamForces>& forces,
                       BeamDiagrams& diagrams) {
  if (forces.size() != model.BeamElements.size()) {
    throw korvex::Stop{korvex::StopKind::Notice,
                       "There are not section forces of as many beams as the model has."};
  }
  diagrams = BeamDiagrams();
  for (std::size_t b = 0; b < forces.size(); ++b) {
    BeamDiagram diagram = BuildDiagram(model.BeamElements[b], forces[b]);
    diagram.beam = static_cast<std::int32_t>(b);
    if (!IsFinite(forces[b], diagram)) continue;
    const auto extremes = FindForceExtremes(forces[b]);
    for (std::size_t c = 0; c < SectionForceCount; ++c) {
      diagrams.largest[c] = std::max({diagrams.largest[c], std::fabs(extremes[c].smallest.value),
                                      std::fabs(extremes[c].largest.value)});
    }
    diagrams.beams.push_back(diagram);
  }
}

}  // namespace kvx
