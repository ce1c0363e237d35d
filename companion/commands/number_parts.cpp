#include "commands/number_parts.h"

#include <utility>

#include "check/parts.h"
#include "check/usable_elements.h"

namespace kvx {

void NumberParts(korvex::ModelTables& tables, std::vector<std::int32_t>& numbers) {
  CheckedModel checked;
  checked.tables = std::move(tables);
  for (const korvex::Section section : ElementSections) {
    checked.states[KindOf(section)].assign(
        static_cast<std::size_t>(CountRows(checked.tables, section)), ElementState::Sound);
  }
  Parts parts;
  FindParts(checked, parts);
  numbers.clear();
  VisitUsable(checked, [&](korvex::Section, std::int32_t, const ElementNodes& element) {
    numbers.push_back(1 + parts.partOfNode[static_cast<std::size_t>(element.nodes[0])]);
  });
  tables = std::move(checked.tables);
}

}  // namespace kvx
