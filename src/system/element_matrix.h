// Forms one element's stiffness and the list of its equations, and hands both to a function.
//
// The global matrix and the detail models use the same routine. The function may add the matrix to
// a skyline matrix, write it for another solver, or count its entries. Entry (i, j) belongs to the
// equations g[i] and g[j] (base/dof_counts.h).
#pragma once

#include <array>
#include <cstdint>

#include "base/dof_counts.h"

namespace korvex {

// Forms the stiffness of `element` and calls take(ke, g, n).
// nodes: the element's `Nodes` node indices.
// stiffness: the routine of the element kind; writes n x n completely, n = 6 * Nodes.
// take: gets ke: n x n, row-major, global axes; g: n, the equations of its rows. Both arrays are
//   valid only during the call.
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
