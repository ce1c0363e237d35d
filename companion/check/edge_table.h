// The edges of all shells, each with the shells that have it.
//
// Sorted by the lower node, then by the higher one, then by shell; 8 bytes for each edge of each
// shell. Counting sort over the lower nodes, so the time follows the size.
#pragma once

#include <cstdint>
#include <vector>

#include "check/checked_model.h"

namespace kvx {

struct ShellEdge {
  std::int32_t high = 0;    // its higher node
  std::uint32_t shell = 0;  // 2 x number, + 1 if the shell runs from the higher node to the lower
};

// Shells are numbered through: the four-node shells, then the three-node shells.
struct EdgeTable {
  std::vector<std::uint32_t> begins;  // [NPOIN + 1] where the edges of a lower node begin
  std::vector<ShellEdge> edges;
};

inline std::uint32_t ShellOf(const ShellEdge& edge) { return edge.shell / 2; }
inline bool RunsDown(const ShellEdge& edge) { return edge.shell % 2 == 1; }

// Edges of shells whose nodes are not known, and from a node to itself, are left out.
void BuildEdgeTable(const CheckedModel& model, EdgeTable& table);

struct ShellRow {
  korvex::Section section = korvex::Section::Shells4;
  std::int32_t row = 0;
};
ShellRow RowOfShell(const CheckedModel& model, std::uint32_t shell);

// Calls visit(low, first, end) for all edges with the lower node `low`: [first, end) are the
// entries of one edge, one for each of its shells.
template <typename Visit>
void VisitEdgesOf(const EdgeTable& table, std::int32_t low, const Visit& visit) {
  const ShellEdge* at = table.edges.data() + table.begins[static_cast<std::size_t>(low)];
  const ShellEdge* const end = table.edges.data() + table.begins[static_cast<std::size_t>(low) + 1];
  while (at != end) {
    const ShellEdge* next = at;
    while (next != end && next->high == at->high) ++next;
    visit(low, at, next);
    at = next;
  }
}

}  // namespace kvx
