// The stiffness of the free dofs and what couples them with the fixed ones, as lists of entries.
//
//   K u = F   with u = (x of the free dofs, v of the fixed ones):  A x = F_free - C^T v
//
// A: upper triangle by rows, columns ascending, the diagonal first in its row and always there.
// Entries that are 0 for all elements are left out: so a plane plate falls into the two systems
// that it is.
//
// Where several processes share a solution (ranks/ranks.h), each has some rows of A.
#pragma once

#include <cstdint>
#include <vector>

#include "model/model.h"
#include "renumber/node_graph.h"
#include "skyline/work_share.h"
#include "sparse/free_dofs.h"

namespace kvx {

struct UpperMatrix {
  std::vector<std::int64_t> begins;   // [rows here + 1]
  std::vector<std::int32_t> columns;  // [entries]
  std::vector<double> values;         // [entries]

  bool isPart = false;             // other rows are on other ranks
  std::int32_t n = 0;              // of a part: the rows of all
  std::vector<std::int32_t> rows;  // of a part: [rows here] their numbers, ascending
};

// The rows of which this process has the entries.
inline std::size_t CountRowsHere(const UpperMatrix& A) {
  return A.begins.empty() ? 0 : A.begins.size() - 1;
}

// The rows of the whole matrix.
inline std::int32_t CountRows(const UpperMatrix& A) {
  return A.isPart ? A.n : static_cast<std::int32_t>(CountRowsHere(A));
}

// The number of row k of those here.
inline std::size_t RowOf(const UpperMatrix& A, std::size_t k) {
  return A.isPart ? static_cast<std::size_t>(A.rows[k]) : k;
}

// The rows of fixed dofs, whole but for their own diagonal, whose place a support's penalty takes.
struct FixedRows {
  std::vector<std::int64_t> begins;   // [fixed + 1]
  std::vector<std::int32_t> columns;  // [entries] equations of the model
  std::vector<double> values;
};

// Sums the element matrices, each entry in the order of the tables.
// dofs: may have the equations of some rows alone; A gets no others, and they are numbered as they
// stand there.
// graph: of the model's nodes (renumber/node_graph.h). work: `report` is called now and then with a
// share from 0 to 1. threads: that form the element matrices. elements: where the model is a part
// of another one, the numbers of its elements there, each kind from 0, in the order in which they
// are formed.
// Throws a Stop where an element's stiffness is not finite, which it names, and where memory is too
// small.
void AssembleFree(const korvex::Model& model, const NodeGraph& graph, const FreeDofs& dofs,
                  const korvex::ShareCallback& report, UpperMatrix& A, FixedRows& C,
                  int threads = 1, const std::vector<std::int32_t>& elements = {});

// The bytes of a matrix as it stands. A keeps the room of entries that have turned out to be 0.
std::uint64_t CountBytes(const UpperMatrix& A);
std::uint64_t CountBytes(const FixedRows& C);

// The bytes that AssembleFree takes for A at its peak.
std::uint64_t CountMatrixBytes(const NodeGraph& graph, const FreeDofs& dofs);

// The bytes of C.
std::uint64_t CountFixedBytes(const NodeGraph& graph, const FreeDofs& dofs);

}  // namespace kvx
