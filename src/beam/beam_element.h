// The record of a two-node space beam element, its cross-section rows and its load.
//
// Local axes (beam_frame.h): x from the first to the second node, z the web direction given by the
// orientation vector, y completing a right-handed frame. Lengths in model units.
#pragma once

#include <array>
#include <cstdint>

#include "base/vector3.h"

namespace korvex {

// A row of the T_beam or L_beam table.
struct BeamSection {
  double Hw = 0.0;  // web height
  double Tw = 0.0;  // web thickness
  double Bf = 0.0;  // flange width
  double Tf = 0.0;  // flange thickness
};

// A row of the C_beam table: a circular tube.
struct CBeamSection {
  double R = 0.0;  // mean radius of the wall
  double T = 0.0;  // wall thickness
};

// The properties of one element's cross-section. Each element has its own, because the two shear
// parameters depend on its length and material.
struct SectionProperties {
  double A = 0.0;             // area
  double Iy = 0.0;            // about local y through the centroid: bending in the x-z plane
  double Iz = 0.0;            // about local z through the centroid: bending in the x-y plane
  double J = 0.0;             // torsion constant
  double ShearFactorY = 0.0;  // 12 E Iy / (G As L^2), dimensionless
  double ShearFactorZ = 0.0;  // 12 E Iz / (G As L^2), dimensionless; 0 for T and L sections
  double CyPos = 0.0;         // extent of the section on the +y side
  double CyNeg = 0.0;         // extent of the section on the -y side
  double CzTop = 0.0;         // from the centroid to the flange's outer face (+z)
  double CzBottom = 0.0;      // from the centroid to the web's free edge (-z)
  double Ex = 0.0;            // centroid relative to the node along local x: always 0
  double Ey = 0.0;            // centroid relative to the node along local y
  double Ez = 0.0;            // centroid relative to the node along local z, BeamSecOz included
};

// The value of BeamElement::Tolerance; the record's fixed layout has it, no beam routine reads it.
inline constexpr double BeamTolerance = 1e-15;

// One beam element with all data that its routines read. The last three fields belong to the fixed
// layout of the record; no routine reads them.
struct BeamElement {
  Vector3 NodeI{};     // global position of the first node
  Vector3 NodeJ{};     // global position of the second node
  Vector3 RefPoint{};  // NodeI plus the orientation vector: a point, not a direction
  double Tolerance = BeamTolerance;
  double E = 0.0;                // Young's modulus
  double Mu = 0.0;               // Poisson's ratio
  double BeamSecOz = 0.0;        // offset of the section along local z
  bool BeamSecMirrored = false;  // L sections only: flange towards -y
  SectionProperties Section;
  std::int32_t NodesPerBeam = 2;
  std::int32_t DofsPerNode = 6;
  std::int32_t BeamDofs = 12;
};

// A load along the element's local z axis, varying linearly from node to node.
struct BeamLineLoad {
  std::int32_t element = 0;   // 0-based, in the beam table
  std::array<double, 2> q{};  // intensity at the first and second node, force per length
};

}  // namespace korvex
