// The forces at the ends of elements: what the nodes do to each element.
//
//   f = K_e u - q_e
//
// K_e is the element's stiffness, u the displacements of its nodes, q_e the nodal loads that the
// solver makes of its pressure or line load. Global axes; Fx, Fy, Fz, Mx, My, Mz at each node, at
// the place of the node (also for a beam with an offset). Positive: the node pushes the element
// along the axis. So at each node the sum over the elements is the nodal force plus the support
// force; an element in equilibrium has f + q_e whose sums are zero.
//
// An element that has a node twice is taken as the solver takes it: the coupling between its two
// places counts once (skyline/skyline_matrix.h), so that its forces are not in equilibrium.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

#include "audit/solved_model.h"

namespace kvx {

enum class ElementKind : std::uint8_t { Shell4, Shell3, Beam };

// An element: its kind and its row, 0-based.
struct ElementRef {
  ElementKind kind = ElementKind::Shell4;
  std::int32_t row = 0;
};

// Its node indices in the order of the row: 4, 3 or 2.
struct NodeSpan {
  const std::int32_t* nodes = nullptr;
  std::int32_t count = 0;
};
NodeSpan NodesOfElement(const korvex::Model& model, const ElementRef& element);

// The element of this index in the order of korvex::FormElementMatrices.
ElementRef ElementAt(const korvex::Model& model, std::size_t index);

// The forces K_e u of an element, whose arrays are valid during a call. n = 6 for each of its
// nodes.
struct StiffForces {
  ElementRef element;
  const std::int32_t* g = nullptr;  // n, the equations of the entries
  std::int32_t n = 0;
  const double* stiff = nullptr;  // n, K_e u
  const double* size = nullptr;   // n, |K_e| |u|: what K_e u is a difference of
};

// Calls `take` with K_e u of all elements: four-node shells, three-node shells, beams, each in the
// order of the table. Plain sums: sums with twice the digits changed neither residuals nor balance,
// because the last digits of the displacements and of K_e weigh more.
// threads: that form K_e; `take` is called on the caller's thread alone.
void FormStiffForces(const korvex::Model& model,
                     const std::function<void(const StiffForces& forces)>& take, int threads = 1);

// The rows of pressures and line loads by element.
struct LoadRows {
  std::vector<std::int32_t> first;  // [elements + 1] where an element's rows begin in `rows`
  std::vector<std::int32_t> rows;   // 0-based rows of the loads' table, ascending for each element
};
struct LoadIndex {
  LoadRows shells4, shells3, beams;
};
// Loads that refer to no element are in no list.
void IndexLoads(const korvex::Model& model, LoadIndex& index);

// f of one element. index: of this model. forces: 6 for each of its nodes are written, in the
// element's order, the rest is 0.
using EndForceArray = std::array<double, korvex::Shell4Dofs>;
void FormEndForces(const korvex::Model& model, const LoadIndex& index, const ElementRef& element,
                   EndForceArray& forces);

}  // namespace kvx
