// Section forces of chains of beams by statics alone, with loads along the members.
//
// A cut divides the chain (force_method.h); the force and moment on the face towards the chain's
// start are the sum of all loads beyond the cut, moved to the section's centroid. Line loads act
// along the members' local z on the node line. All in long double, without any routine of the
// program.
#pragma once

#include <array>
#include <vector>

#include "support/force_method.h"

namespace kvx::test {

using korvex::test::BeamChain;
using korvex::test::Real;
using korvex::test::Real3;
using korvex::test::Real6;

// The loads on a chain.
struct ChainLoads {
  std::vector<Real6> nodal;                // by point: Fx, Fy, Fz, Mx, My, Mz, global
  std::vector<std::array<Real, 2>> lines;  // by member: intensity at its start and end
};

// No loads on a chain of this many members.
ChainLoads NoLoads(std::size_t members);

// N, Vy, Vz, T, My, Mz about the centroid at the part s, 0 .. 1, of a member, on the face towards
// the next point, of the loads beyond. The support at the last point must stand among the loads.
Real6 CutChain(const BeamChain& chain, const ChainLoads& loads, std::size_t member, Real s);

// The forces and moments at the points that stand for the line loads: the fixed-end values of
// slender beams, reversed (Roark 1989, table 3, case 2d). By point, global. For uniform loads they
// hold with shear deformation, too, by symmetry.
std::vector<Real6> EquivalentLoads(const BeamChain& chain, const ChainLoads& loads);

}  // namespace kvx::test
