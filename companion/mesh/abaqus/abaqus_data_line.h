// The numbers of a data line.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "base/vector3.h"
#include "mesh/abaqus/abaqus_fields.h"
#include "mesh/abaqus/abaqus_mesh.h"

namespace kvx {

// Takes the numbers of a keyword's data line (from 0) into `values`, as many as fit; the others
// stay. Returns how many fields stand there, up to `count`; 0 where there is no such line.
template <std::size_t count>
std::size_t TakeDataLine(const AbaqusImport& import, const AbaqusKeyword& keyword, std::size_t line,
                         std::array<double, count>& values) {
  if (line >= keyword.lineCount) return 0;
  const AbaqusLine& data = import.deck.lines[keyword.firstLine + line];
  AbaqusFields fields{data.text};
  std::string_view field;
  std::size_t taken = 0;
  while (taken < count && NextField(fields, field)) {
    values[taken] = RealOf(field, 0.0, data.place, import.report);
    if (!field.empty() || !fields.isAtEnd) ++taken;
  }
  return taken;
}

// Three of the numbers as a vector.
template <std::size_t count>
korvex::Vector3 VectorAt(const std::array<double, count>& values, std::size_t at) {
  return {values[at], values[at + 1], values[at + 2]};
}

}  // namespace kvx
