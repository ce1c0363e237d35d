// Section-force diagrams as a view draws them: exact curves over the beams' centroid lines.
//
// A point of the diagram of component c at s is
//   start + s (end - start) + scale * Evaluate(curves[c], s) * DrawingDirection(diagram, c)
// with the curves of the beam's BeamForces. The moments are drawn on the side that they stretch: My
// towards +z where it is positive, Mz towards -y. N, Vz and T are drawn along z, Vy along y.
#pragma once

#include <cstdint>
#include <vector>

#include "audit/section_forces.h"
#include "base/vector3.h"

namespace kvx {

struct BeamDiagram {
  std::int32_t beam = 0;
  korvex::Vector3 start{}, end{};  // centroids of the end sections, global
  korvex::Vector3 y{}, z{};        // local axes, global
};

struct BeamDiagrams {
  std::vector<BeamDiagram> beams;                   // in table order, without those that have NaNs
  std::array<double, SectionForceCount> largest{};  // of all beams: the largest |value|
};

// The unit vector along which positive values of a component are drawn, global.
korvex::Vector3 DrawingDirection(const BeamDiagram& diagram, SectionForce component);

// forces: of all beams of the model. Throws a Stop where there are not as many.
void BuildBeamDiagrams(const korvex::Model& model, const std::vector<BeamForces>& forces,
                       BeamDiagrams& diagrams);

}  // namespace kvx
