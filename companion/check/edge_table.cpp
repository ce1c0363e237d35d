#include "check/edge_table.h"

#include <algorithm>

#include "check/usable_elements.h"

namespace kvx {

using korvex::Section;

namespace {

// Calls visit(shell, from, to) for all edges of all usable shells.
template <typename Visit>
void VisitShellEdges(const CheckedModel& model, const Visit& visit) {
  const auto quads = static_cast<std::uint32_t>(CountRows(model.tables, Section::Shells4));
  for (const Section section : {Section::Shells4, Section::Shells3}) {
    const std::uint32_t first = section == Section::Shells4 ? 0 : quads;
    VisitUsable(model, section, [&](Section, std::int32_t row, const ElementNodes& element) {
      for (std::size_t k = 0; k < element.count; ++k) {
        const std::int32_t from = element.nodes[k], to = element.nodes[(k + 1) % element.count];
        if (from != to) visit(first + static_cast<std::uint32_t>(row), from, to);
      }
    });
  }
}

}  // namespace

void BuildEdgeTable(const CheckedModel& model, EdgeTable& table) {
  table = {};
  const std::size_t nodeCount = model.tables.Nodes.size();
  table.begins.assign(nodeCount + 1, 0);
  VisitShellEdges(model, [&](std::uint32_t, std::int32_t from, std::int32_t to) {
    ++table.begins[static_cast<std::size_t>(std::min(from, to)) + 1];
  });
  for (std::size_t node = 0; node < nodeCount; ++node) table.begins[node + 1] += table.begins[node];
  table.edges.resize(table.begins[nodeCount]);
  // Each lower node's begin moves up as its edges are entered, to that of the next node.
  VisitShellEdges(model, [&](std::uint32_t shell, std::int32_t from, std::int32_t to) {
    std::uint32_t& at = table.begins[static_cast<std::size_t>(std::min(from, to))];
    table.edges[at++] = {std::max(from, to), 2 * shell + (from > to ? 1U : 0U)};
  });
  for (std::size_t node = nodeCount; node > 0; --node) table.begins[node] = table.begins[node - 1];
  table.begins[0] = 0;
  for (std::size_t node = 0; node < nodeCount; ++node) {
    std::sort(table.edges.begin() + table.begins[node],
              table.edges.begin() + table.begins[node + 1],
              [](const ShellEdge& a, const ShellEdge& b) {
                return a.high != b.high ? a.high < b.high : a.shell < b.shell;
              });
  }
}

ShellRow RowOfShell(const CheckedModel& model, std::uint32_t shell) {
  const auto quads = static_cast<std::uint32_t>(CountRows(model.tables, Section::Shells4));
  if (shell < quads) return {Section::Shells4, static_cast<std::int32_t>(shell)};
  return {Section::Shells3, static_cast<std::int32_t>(shell - quads)};
}

}  // namespace kvx
