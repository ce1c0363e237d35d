// One element's way into a stiffness matrix: its own matrix, the equations of its nodes, the sum.
#pragma once

#include <array>
#include <cstdint>

#include "system/profile.h"

namespace korvex {

// Adds the stiffness of `element`. nodes: its node indices, `Nodes` of them.
// stiffness: the routine of its kind, which writes a 6 Nodes x 6 Nodes matrix completely.
template <std::int32_t Nodes, typename Element>
void AssembleElement(const Element& element, const std::int32_t* nodes,
                     void (*stiffness)(const Element&, double*), SkylineMatrix& K) {
  constexpr std::int32_t n = Nodes * DofsPerNode;
  std::array<double, static_cast<std::size_t>(n) * n> ke;
  std::array<std::int32_t, n> g;
  stiffness(element, ke.data());
  BuildDofList(nodes, Nodes, g.data());
  ScatterElement(ke.data(), g.data(), n, K);
}

}  // namespace korvex
