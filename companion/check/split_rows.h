// The lines of a section split into rows, each by itself: where one cannot be read, the next one
// begins at the next line that may be its begin.
//
// A row is taken as the reader would take it from its begin, over several lines if need be. A row
// with several lines that is not whole is a block: from its head or label to its last value.
#pragma once

#include <string_view>
#include <vector>

#include "check/find_sections.h"
#include "check/section_text.h"

namespace kvx {

struct SplitSource {
  std::string_view text;
  const std::vector<TextLine>& lines;
  const std::vector<bool>& skipped;  // [lines] lines that belong to no section
};

// What one line of a row with several lines is.
enum class BlockLine {
  Blank,
  Head,   // "#0:", or nearly so
  Value,  // "E=...", by its name, capitals disregarded
  Named,  // "nu=...", a name that the section does not know
  Other,
};
struct BlockLineKind {
  BlockLine kind = BlockLine::Blank;
  std::size_t piece = 0;  // of a value: the index of its format among the pieces
};
BlockLineKind ClassifyBlockLine(std::string_view line, korvex::Section section);

// Splits the lines [firstLine, part.endLine) into part.items. absent: the sections without a title
// that should stand behind this one, in order; if their rows, or a garbled title, are found here,
// `part` ends there. Returns the index of the absent section that begins at part.endLine, or
// absent.size() if none does; isGarbled: the line there is its title.
std::size_t SplitRows(const SplitSource& source, std::size_t firstLine,
                      const std::vector<korvex::Section>& absent, SectionText& part,
                      bool& isGarbled);

}  // namespace kvx
