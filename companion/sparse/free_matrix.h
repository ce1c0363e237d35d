// The stiffness of the free dofs and what couples them with the fixed ones, as lists of entries.
//
//   K u = F   with u = (x of the free dofs, v of the fixed ones):  A x = F_free - C^T v
//
// A: upper triangle by rows, columns ascending, the diagonal first in its row and always there.
// Entries that are 0 for all elements are left out: so a plane plate falls into the two systems
// that it is.
#pragma once

#include <cstdint>
#include <vector>

#include "model/model.h"
#include "renumber/node_graph.h"
#include "skyline/work_share.h"
#include "sparse/free_dofs.h"

namespace kvx {

struct UpperMatrix {
  std::vector<std::int64_t> begins;   // [n + 1]
  std::vector<std::int32_t> columns;  // [entries]
  std::vector<double> values;         // [entries]
};

inline std::int32_t CountRows(const UpperMatrix& A) {
  return A.begins.empty() ? 0 : static_cast<std::int32_t>(A.begins.size()) - 1;
}

// The rows of fixed dofs, whole but for their own diagonal, whose place a support's penalty takes.
struct FixedRows {
  std::vector<std::int64_t> begins;   // [fixed + 1]
  std::vector<std::int32_t> columns;  // [entries] equations of the model
  std::vector<double> values;
};

// Sums the element matrices, each entry in the order of the tables.
// graph: of the model's nodes (renumber/node_graph.h). work: `report` is called now and then with a
// share from 0 to 1. threads: that form the element matrices.
// Throws a Stop where an element's stiffness is not finite, which it names, and where memory is too
// small.
void AssembleFree(const korvex::Model& model, const NodeGraph& graph, const FreeDofs& dofs,
                  const korvex::ShareCallback& report, UpperMatrix& A, FixedRows& C,
                  int threads = 1);

// The bytes that AssembleFree takes for A at its peak.
std::uint64_t CountMatrixBytes(const NodeGraph& graph, const FreeDofs& dofs);

// The bytes of C.
std::uint64_t CountFixedBytes(const NodeGraph& graph, const FreeDofs& dofs);

}  // namespace kvx
