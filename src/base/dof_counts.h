// How many nodes and degrees of freedom the elements have, and how equations are numbered.
//
// Dof d of a node: d = 0 .. 5 for ux, uy, uz, rx, ry, rz, global axes. Equation of dof d of node n:
// n * DofsPerNode + d; every dof of every node has an equation. The element dof d of the element's
// k-th node is k * DofsPerNode + d, with the nodes in the order of the element's row.
#pragma once

#include <cstdint>

namespace korvex {

inline constexpr std::int32_t DofsPerNode = 6;
inline constexpr std::int32_t NodesPerShell4 = 4;
inline constexpr std::int32_t NodesPerShell3 = 3;
inline constexpr std::int32_t NodesPerBeam = 2;
inline constexpr std::int32_t Shell4Dofs = 24;
inline constexpr std::int32_t Shell3Dofs = 18;
inline constexpr std::int32_t BeamDofs = 12;

// Writes the equations of an element's dofs.
// nodes: nodeCount node indices in the element's order; g: 6 x nodeCount, written completely.
inline void BuildDofList(const std::int32_t* nodes, std::int32_t nodeCount, std::int32_t* g) {
  for (std::int32_t k = 0; k < nodeCount; ++k) {
    for (std::int32_t d = 0; d < DofsPerNode; ++d) {
      g[k * DofsPerNode + d] = nodes[k] * DofsPerNode + d;
    }
  }
}

}  // namespace korvex
