// One element's stiffness and where it belongs: its matrix and the equations of its nodes, handed
// to whatever takes element matrices - a skyline, the input of another solver, a count.
#pragma once

#include <array>
#include <cstdint>

#include "base/dof_counts.h"

namespace korvex {

// Forms the stiffness of `element` and calls take(ke, g, n).
// nodes: its node indices, `Nodes` of them.
// stiffness: the routine of its kind, which writes a 6 Nodes x 6 Nodes matrix completely.
// take: gets ke: n x n, row-major, global axes; g: n, the equations of its rows; n = 6 Nodes. Both
//   arrays are the caller's again when it returns.
template <std::int32_t Nodes, typename Element, typename Taker>
void HandOverElement(const Element& element, const std::int32_t* nodes,
                     void (*stiffness)(const Element&, double*), Taker& take) {
  constexpr std::int32_t n = Nodes * DofsPerNode;
  std::array<double, static_cast<std::size_t>(n) * n> ke;
  std::array<std::int32_t, n> g;
  stiffness(element, ke.data());
  BuildDofList(nodes, Nodes, g.data());
  take(ke.data(), g.data(), n);
}

}  // namespace korvex
