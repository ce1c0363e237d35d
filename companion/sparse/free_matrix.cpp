#include "sparse/free_matrix.h"

#include <algorithm>
#include <string>

#include "base/dof_counts.h"
#include "base/finite.h"
#include "report/check_memory.h"
#include "report/stop.h"
#include "system/assemble_stiffness.h"

namespace kvx {

using korvex::DofsPerNode;

namespace {

constexpr std::size_t Dofs = DofsPerNode;
constexpr std::uint64_t BytesPerEntry = sizeof(double) + sizeof(std::int32_t);

// Calls take(equation) for all dofs of the node and of its neighbours, ascending.
template <typename Take>
void ForCoupledEquations(const NodeGraph& graph, std::size_t node, const Take& take) {
  const auto takeNode = [&](std::size_t other) {
    for (std::size_t d = 0; d < Dofs; ++d) take(other * Dofs + d);
  };
  bool isNodeTaken = false;
  for (std::int64_t k = graph.begins[node]; k < graph.begins[node + 1]; ++k) {
    const auto other = static_cast<std::size_t>(graph.neighbours[static_cast<std::size_t>(k)]);
    if (!isNodeTaken && other > node) {
      takeNode(node);
      isNodeTaken = true;
    }
    takeNode(other);
  }
  if (!isNodeTaken) takeNode(node);
}

// Entries of A, all couplings of the nodes counted.
std::uint64_t CountUpperEntries(const NodeGraph& graph, const FreeDofs& dofs) {
  const auto nodes = static_cast<std::size_t>(CountNodes(graph));
  std::vector<std::uint8_t> free(nodes, 0), rows(nodes, 0);  // dofs, and rows that are wanted
  for (std::size_t i = 0; i < nodes * Dofs; ++i) {
    if (dofs.isFixed[i] == 0) ++free[i / Dofs];
  }
  for (const std::int32_t equation : dofs.equations)
    ++rows[static_cast<std::size_t>(equation) / Dofs];
  std::uint64_t entries = 0;
  for (std::size_t node = 0; node < nodes; ++node) {
    const std::uint64_t count = rows[node];
    entries += count * (count + 1) / 2;
    for (std::int64_t k = graph.begins[node]; k < graph.begins[node + 1]; ++k) {
      const auto other = static_cast<std::size_t>(graph.neighbours[static_cast<std::size_t>(k)]);
      if (other > node) entries += count * free[other];
    }
  }
  return entries;
}

void BuildUpperPattern(const NodeGraph& graph, const FreeDofs& dofs, UpperMatrix& A) {
  const std::uint64_t entries = CountUpperEntries(graph, dofs);
  korvex::AllocateOrStop("the entries of the stiffness", entries, BytesPerEntry, [&] {
    A.begins.reserve(dofs.equations.size() + 1);
    A.columns.reserve(entries);
    A.values.assign(entries, 0.0);
  });
  A.begins.push_back(0);
  for (const std::int32_t equation : dofs.equations) {
    const auto row = static_cast<std::size_t>(equation);
    ForCoupledEquations(graph, row / Dofs, [&](std::size_t column) {
      if (column >= row && dofs.isFixed[column] == 0) A.columns.push_back(dofs.places[column]);
    });
    A.begins.push_back(static_cast<std::int64_t>(A.columns.size()));
  }
}

// Entries of C.
std::uint64_t CountFixedEntries(const NodeGraph& graph, const FreeDofs& dofs) {
  std::uint64_t entries = 0;
  for (const std::int32_t equation : dofs.fixed) {
    const std::size_t node = static_cast<std::size_t>(equation) / Dofs;
    const std::int64_t nodes = 1 + graph.begins[node + 1] - graph.begins[node];
    entries += static_cast<std::uint64_t>(nodes) * Dofs - 1;
  }
  return entries;
}

void BuildFixedPattern(const NodeGraph& graph, const FreeDofs& dofs, FixedRows& C) {
  const std::uint64_t entries = CountFixedEntries(graph, dofs);
  korvex::AllocateOrStop("the stiffness of the fixed degrees of freedom", entries, BytesPerEntry,
                         [&] {
                           C.begins.reserve(dofs.fixed.size() + 1);
                           C.columns.reserve(entries);
                           C.values.assign(entries, 0.0);
                         });
  C.begins.push_back(0);
  for (const std::int32_t equation : dofs.fixed) {
    const auto row = static_cast<std::size_t>(equation);
    ForCoupledEquations(graph, row / Dofs, [&](std::size_t column) {
      if (column != row) C.columns.push_back(static_cast<std::int32_t>(column));
    });
    C.begins.push_back(static_cast<std::int64_t>(C.columns.size()));
  }
}

// matrix: UpperMatrix or FixedRows; the entry is there.
template <typename Matrix>
void AddEntry(std::size_t row, std::int32_t column, double value, Matrix& matrix) {
  const auto first = matrix.columns.begin() + matrix.begins[row];
  const auto last = matrix.columns.begin() + matrix.begins[row + 1];
  const auto place = std::lower_bound(first, last, column) - matrix.columns.begin();
  matrix.values[static_cast<std::size_t>(place)] += value;
}

struct Target {
  const FreeDofs& dofs;
  std::vector<std::int32_t> rows;  // [NEQ] of A; -1: not here
  UpperMatrix& A;
  FixedRows& C;
};

std::vector<std::int32_t> NumberRows(const FreeDofs& dofs) {
  std::vector<std::int32_t> rows;
  korvex::AllocateOrStop("the numbers of the rows", dofs.places.size(), sizeof(std::int32_t),
                         [&] { rows.assign(dofs.places.size(), -1); });
  std::int32_t row = 0;
  for (const std::int32_t equation : dofs.equations) {
    rows[static_cast<std::size_t>(equation)] = row++;
  }
  return rows;
}

void AddFixedEntry(std::int32_t row, std::int32_t column, double value, Target& target) {
  const auto i = static_cast<std::size_t>(row);
  const bool isWanted = !target.dofs.fixed.empty();
  if (row == column || !isWanted || target.dofs.isFixed[i] == 0) return;
  AddEntry(static_cast<std::size_t>(target.dofs.places[i]), column, value, target.C);
}

// As the skyline adds it: the upper half of the element's matrix.
void AddElement(const double* ke, const std::int32_t* g, std::int32_t n, Target& target) {
  for (std::int32_t r = 0; r < n; ++r) {
    for (std::int32_t c = r; c < n; ++c) {
      const auto i = static_cast<std::size_t>(g[r]), j = static_cast<std::size_t>(g[c]);
      const double value = ke[r * n + c];
      if (target.dofs.isFixed[i] == 0 && target.dofs.isFixed[j] == 0) {
        const std::int32_t row = target.rows[std::min(i, j)];
        const std::int32_t column = target.dofs.places[std::max(i, j)];
        if (row >= 0) AddEntry(static_cast<std::size_t>(row), column, value, target.A);
      } else {
        AddFixedEntry(g[r], g[c], value, target);
        AddFixedEntry(g[c], g[r], value, target);
      }
    }
  }
}

// index: of the element in the order in which their matrices are formed. elements: as AssembleFree.
[[noreturn]] void StopNotFinite(const korvex::Model& model, std::size_t index,
                                const std::vector<std::int32_t>& elements) {
  const char* kind = "four-node shell";
  const std::size_t place = index;
  if (index >= model.Shell4Elements.size()) {
    index -= model.Shell4Elements.size();
    kind = "three-node shell";
    if (index >= model.Shell3Elements.size()) {
      index -= model.Shell3Elements.size();
      kind = "beam";
    }
  }
  if (!elements.empty()) index = static_cast<std::size_t>(elements[place]);
  throw korvex::Stop{korvex::StopKind::Notice, "The stiffness of the " + std::string(kind) + ' ' +
                                                   std::to_string(index) +
                                                   " is not finite. kvx check says where it is, "
                                                   "and why."};
}

// matrix: UpperMatrix or FixedRows; what its tables of entries hold room for.
template <typename Matrix>
std::uint64_t BytesOf(const Matrix& matrix) {
  return matrix.begins.capacity() * sizeof(std::int64_t) +
         matrix.columns.capacity() * sizeof(std::int32_t) +
         matrix.values.capacity() * sizeof(double);
}

// Off the diagonal.
void DropZeros(UpperMatrix& A) {
  std::size_t kept = 0;
  for (std::size_t row = 0; row + 1 < A.begins.size(); ++row) {
    const auto begin = static_cast<std::size_t>(A.begins[row]);
    const auto end = static_cast<std::size_t>(A.begins[row + 1]);
    A.begins[row] = static_cast<std::int64_t>(kept);
    for (std::size_t k = begin; k < end; ++k) {
      if (k > begin && A.values[k] == 0.0) continue;
      A.columns[kept] = A.columns[k];
      A.values[kept++] = A.values[k];
    }
  }
  A.begins.back() = static_cast<std::int64_t>(kept);
  A.columns.resize(kept);
  A.values.resize(kept);
}

}  // namespace

void AssembleFree(const korvex::Model& model, const NodeGraph& graph, const FreeDofs& dofs,
                  const korvex::ShareCallback& report, UpperMatrix& A, FixedRows& C, int threads,
                  const std::vector<std::int32_t>& elements) {
  constexpr std::size_t ElementsPerReport = 256;
  A = {};
  C = {};
  BuildUpperPattern(graph, dofs, A);
  BuildFixedPattern(graph, dofs, C);
  const std::size_t count =
      model.Shell4Elements.size() + model.Shell3Elements.size() + model.BeamElements.size();
  Target target{dofs, NumberRows(dofs), A, C};
  std::size_t index = 0;
  korvex::FormElementMatrices(
      model,
      [&](const double* ke, const std::int32_t* g, std::int32_t n) {
        const auto size = static_cast<std::size_t>(n);
        if (!korvex::AreFinite(ke, size * size)) StopNotFinite(model, index, elements);
        AddElement(ke, g, n, target);
        if (++index % ElementsPerReport == 0 && report) {
          report(static_cast<double>(index) / static_cast<double>(count));
        }
      },
      threads);
  DropZeros(A);
}

std::uint64_t CountBytes(const UpperMatrix& A) {
  return BytesOf(A) + A.rows.capacity() * sizeof(std::int32_t);
}

std::uint64_t CountBytes(const FixedRows& C) { return BytesOf(C); }

std::uint64_t CountMatrixBytes(const NodeGraph& graph, const FreeDofs& dofs) {
  return CountUpperEntries(graph, dofs) * BytesPerEntry;
}

std::uint64_t CountFixedBytes(const NodeGraph& graph, const FreeDofs& dofs) {
  return CountFixedEntries(graph, dofs) * BytesPerEntry +
         (dofs.fixed.size() + 1) * sizeof(std::int64_t);
}

}  // namespace kvx
