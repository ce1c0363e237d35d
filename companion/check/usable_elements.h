// Elements whose nodes are known: what the checks of the mesh walk over.
//
// Usable is an element that no finding has set aside and whose references lead to nodes. The range
// is looked at here too, so that the walk is safe on any tables.
#pragma once

#include "check/checked_model.h"

namespace kvx {

inline bool IsUsable(const CheckedModel& model, korvex::Section section, std::int32_t row) {
  if (StateOf(model, section, row) == ElementState::Unusable) return false;
  const auto nodeCount = static_cast<std::int32_t>(model.tables.Nodes.size());
  const ElementNodes element = NodesOf(model.tables, section, row);
  for (std::size_t k = 0; k < element.count; ++k) {
    if (element.nodes[k] < 0 || element.nodes[k] >= nodeCount) return false;
  }
  return true;
}

// Calls visit(section, row, nodes) for all usable elements of the table, in its order.
template <typename Visit>
void VisitUsable(const CheckedModel& model, korvex::Section section, const Visit& visit) {
  const std::int32_t rows = CountRows(model.tables, section);
  for (std::int32_t row = 0; row < rows; ++row) {
    if (IsUsable(model, section, row)) visit(section, row, NodesOf(model.tables, section, row));
  }
}

// The same for all three tables, in the order of the file.
template <typename Visit>
void VisitUsable(const CheckedModel& model, const Visit& visit) {
  for (const korvex::Section section : ElementSections) VisitUsable(model, section, visit);
}

}  // namespace kvx
