// The records of the two flat shell elements, their set-up, and the record of their loads.
//
// A record holds all data that its element routines read: a copy of the node coordinates, the
// material values, the thickness and the local frame. It also holds the element's stresses. It does
// not refer to the model's tables.
#pragma once

#include <array>
#include <cstdint>

#include "shell/element_frame.h"

namespace korvex {

// SX, SY, SZ, TXY, TXZ, TYZ, global axes.
using StressVector = std::array<double, 6>;

// One flat shell element with `Nodes` nodes, six dofs each. DofsPerNode and ElementDofs belong to
// the fixed layout of the record; no routine reads them.
template <std::int32_t Nodes>
struct ShellElement {
  std::array<double, static_cast<std::size_t>(Nodes) * 3> Coordinates{};  // x, y, z per node
  std::int32_t NodeCount = Nodes;
  std::int32_t DofsPerNode = 6;
  std::int32_t ElementDofs = Nodes * 6;
  double E = 0.0;   // Young's modulus
  double Mu = 0.0;  // Poisson's ratio
  double TK = 0.0;  // thickness
  ElementFrame Frame{};

  // Results by corner, in the element's node order. The upper face lies on the side of +e3.
  std::array<StressVector, Nodes> NodeStressTop{};
  std::array<StressVector, Nodes> NodeStressBottom{};
  std::array<StressVector, Nodes> AvgStressTop{};
  std::array<StressVector, Nodes> AvgStressBottom{};
};

using Shell4Element = ShellElement<4>;  // frame from nodes 1, 2 and 4
using Shell3Element = ShellElement<3>;  // frame from nodes 1, 2 and 3

// A pressure along the element's e3, linear over the element.
struct ShellSurfaceLoad {
  std::int32_t element = 0;   // 0-based, in the table of the load's element kind
  std::array<double, 3> q{};  // intensity at the element's nodes 1, 2, 3, force per area
};

// Whether the record's node count is that of its kind. No routine here changes the count, but the
// fixed interface demands the check wherever a part of the element is set up. On a difference the
// run prints a line and goes on with the count of the kind.
template <std::int32_t Nodes>
bool HasOwnNodeCount(const ShellElement<Nodes>& element) {
  return element.NodeCount == Nodes;
}

// Copies `coordinates` and the properties into `element` and computes its frame.
// coordinates: Nodes x 3, row-major, global axes; nodeCount: the caller's number of nodes. Returns
// false if it differs from element.NodeCount; the element is set up all the same.
bool SetGeometry(Shell4Element& element, const double* coordinates, std::int32_t nodeCount,
                 double E, double Mu, double TK);
bool SetGeometry(Shell3Element& element, const double* coordinates, std::int32_t nodeCount,
                 double E, double Mu, double TK);

}  // namespace korvex
