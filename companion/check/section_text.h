// A section of the model file as text: its title, and its rows as they stand in the file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "deck/row_listener.h"

namespace kvx {

enum class ItemKind : std::uint8_t {
  Whole,     // a row that is read as it is written
  Broken,    // a row that is not
  Stray,     // lines that are no row
  StrayRow,  // the same, but the count says that a row should be here
  Missing,   // a row that the count promises, and that is not there
  Doubled,   // a whole row that repeats the one before, and that the count does not include
};

// A row, or lines between rows.
struct TextItem {
  std::size_t begin = 0, end = 0;  // bytes of the text; empty for a missing row
  std::uint32_t line = 0;          // 1-based, of `begin`
  std::int32_t number = 0;         // the running number, of whole rows that have one
  ItemKind kind = ItemKind::Whole;
};

inline bool IsRow(ItemKind kind) { return kind != ItemKind::Stray && kind != ItemKind::Doubled; }

struct SectionText {
  korvex::Section section = korvex::Section::Header;
  std::uint32_t titleLine = 0;  // 1-based; 0: the section is missing
  bool isNamed = false;         // a finding names the title already
  bool hasCount = false;        // the count is known
  std::int32_t count = 0;       // as it stands in the file
  std::size_t endLine = 0;      // index of the line behind the section
  std::vector<TextItem> items;  // in the order of the file
};

}  // namespace kvx
