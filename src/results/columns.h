// The columns of the result files: fifteen characters each, right-aligned, general notation with
// six significant digits. The first holds a node number in fourteen and a colon.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <iomanip>
#include <ostream>

namespace korvex {

inline constexpr int ColumnWidth = 15;

inline void WriteColumnTitles(std::ostream& file, std::initializer_list<const char*> titles) {
  for (const char* title : titles) file << std::setw(ColumnWidth) << title;
  file << '\n';
}

inline void WriteNodeNumber(std::ostream& file, std::int32_t node) {
  file << std::setw(ColumnWidth - 1) << node << ':';
}

inline void WriteValue(std::ostream& file, double value) {
  file << std::setw(ColumnWidth) << value;
}

}  // namespace korvex
