// The section forces of beams, from the displacements of a solved model: stiffness times motion
// less the equivalent nodal loads at the ends, statics between them.
//
// Limits are those of the solver. A trapezoidal load enters its displacements by the fixed-end
// values of a slender beam without offset; between the ends the section forces are then exact. The
// rounding of the displacements grows with the number of beams along a free member: of the tip
// force of a slender cantilever it is 4e-10 with 100 beams and 3e-6 with 1000.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "audit/cubic.h"
#include "beam/beam_element.h"
#include "beam/beam_frame.h"
#include "model/model.h"

namespace kvx {

// The force and the moment about the centroid on the face of a section whose outward normal is
// local +x, by their components along the local axes (beam/beam_frame.h). N is positive in tension.
// With y and z from the centroid,
//   stress along x = N / A + My z / Iy - Mz y / Iz:
// a positive My stretches the +z side (flange), a positive Mz the -y side.
//
// Along the beam, with the line load q per length along local z on the node line,
//   N' = 0,  Vy' = 0,  Vz' = -q,  T' = Ey q,  My' = Vz,  Mz' = -Vy.
// The centroid stands Ey beside the load's line, which twists; its height Ez has no effect, because
// the load has no component along x.
//
// Examples: a cantilever along global x with z up, clamped at x = 0. A force P downwards at its tip
// gives Vz = -P and My = P (L - x): the upper side is stretched. A force P along +y at its tip
// gives Vy = P and Mz = P (L - x): the -y side is stretched.
//
// If the two nodes are exchanged, local x and y turn round and z stays: Vz and Mz change their
// signs, N, Vy, T and My do not. Turning the model changes nothing.
enum SectionForce : std::size_t { ForceN, ForceVy, ForceVz, MomentT, MomentMy, MomentMz };
inline constexpr std::size_t SectionForceCount = 6;

// Model units, in the order of SectionForce.
using SectionForces = std::array<double, SectionForceCount>;

// The section forces of one beam. A beam without length, with a wrong orientation or with
// displacements that are not numbers has NaNs.
struct BeamForces {
  double length = 0.0;
  korvex::BeamFrame frame{};  // rows: local x, y, z in global components
  std::array<double, 2> q{};  // line load at the first and second node, the sum of all rows
  std::array<Cubic, SectionForceCount> curves{};  // over s = x / length
};

// The section forces at s = x / length, 0 .. 1.
SectionForces ForcesAt(const BeamForces& forces, double s);

// Largest and smallest values of each component along the beam, in the order of SectionForce. Those
// between the ends are at the exact places of zero slope: My where Vz is zero, Vz and T where q is.
std::array<Extremes, SectionForceCount> FindForceExtremes(const BeamForces& forces);

// Ascending places s from 0 to 1: the ends, divisions - 1 equally spaced ones between them
// (divisions below 1 count as 1), and all places where a component has zero slope, unless they
// are within 1e-9 of another one.
std::vector<double> ListStations(const BeamForces& forces, int divisions);

// Where nobody asks for another number: the quarters, with mid-length among them.
inline constexpr int DefaultDivisions = 4;

// The section forces of one beam.
// u1, u2: 6 each, ux, uy, uz, rx, ry, rz of its nodes, global; q: line load at its nodes.
BeamForces ComputeBeamForces(const korvex::BeamElement& beam, const double* u1, const double* u2,
                             const std::array<double, 2>& q);

// The line load of each beam at its first and second node: the sum of its rows. [NELEM_B]
// Throws a Stop where a row refers to a beam that does not exist.
void SumLineLoads(const korvex::ModelTables& tables, std::vector<std::array<double, 2>>& loads);

// The section forces of all beams, in table order. Reads the tables, BeamElements and Displacements
// of the solved model. Throws a Stop where their sizes do not fit together or a reference leads
// outside its table.
void ComputeBeamForces(const korvex::Model& model, std::vector<BeamForces>& forces);

}  // namespace kvx
