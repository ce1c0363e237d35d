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

// The stiffness of an element with so many nodes.
template <std::int32_t Nodes>
struct ElementMatrix {
  static constexpr std::int32_t n = Nodes * DofsPerNode;
  std::array<double, static_cast<std::size_t>(n) * n> ke;  // n x n, row-major, global axes
  std::array<std::int32_t, n> g;                           // the equations of its rows
};

// Forms the stiffness of `element` and calls take(ke, g, n), the fields of its ElementMatrix, which
// are valid only during the call.
// nodes: the element's `Nodes` node indices.
// stiffness: the routine of the element kind; writes n x n completely, n = 6 * Nodes.
template <std::int32_t Nodes, typename Element, typename Taker>
void HandOverElement(const Element& element, const std::int32_t* nodes,
                     void (*stiffness)(const Element&, double*), Taker& take) {
  ElementMatrix<Nodes> matrix;
  stiffness(element, matrix.ke.data());
  BuildDofList(nodes, Nodes, matrix.g.data());
  take(matrix.ke.data(), matrix.g.data(), matrix.n);
}

}  // namespace korvex
