// The lines of a model file that hold a section's count, found by their key or, where they are
// misspelt, by their wording.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "deck/row_listener.h"

namespace kvx {

// [begin, end) in bytes, without the line feed.
struct TextLine {
  std::size_t begin = 0, end = 0;
};

std::vector<TextLine> ListLines(std::string_view text);

inline std::string_view Cut(std::string_view text, const TextLine& line) {
  return text.substr(line.begin, line.end - line.begin);
}

// The line of a section's count.
struct TitleLine {
  korvex::Section section = korvex::Section::Header;
  std::size_t line = 0;  // index in ListLines
};

// In the order of the file. A section may be missing, or be there several times.
std::vector<TitleLine> FindTitles(std::string_view text, const std::vector<TextLine>& lines);

}  // namespace kvx
