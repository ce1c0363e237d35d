// One line of bulk data, cut into its fields.
//
// Small: field 1 and ten fields of 8 columns. Large (a star ends the name, or begins a
// continuation): four data fields of 16. Free: a comma within the first ten characters. A tab goes
// to the next column that is a multiple of 8. What stands behind column 80 is not read, but in
// free lines. Source: the section on formats that the manuals put before the bulk data entries.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace kvx {

struct NastranLine {
  std::string_view first;                // field 1, trimmed, with star or plus
  std::array<std::string_view, 8> data;  // fields 2 to 9, trimmed; of a large line the first four
  bool isLarge = false;
  std::string_view mark;   // what the next line is to be marked with, without its first character
  std::string_view rest;   // free line: a further line behind a lone plus in field 10; else ""
  bool hasExcess = false;  // free line: it has data where only a mark may stand
};

// line: without line end and comment.
NastranLine CutNastranLine(std::string_view line);

// Whether it continues a card: field 1 is blank or begins with a plus or a star.
bool IsContinuation(const NastranLine& line);

// The mark of a continuation, without its plus or star; "" for an unmarked one.
std::string_view ContinuationMark(const NastranLine& line);

// The text in quotes for a message: its beginning, with question marks for what cannot be shown.
std::string QuoteForMessage(std::string_view text);

}  // namespace kvx
