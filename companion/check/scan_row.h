// One row, or one line of a row, scanned with the formats of the reader, directive by directive.
//
// The reader tries every format of a row, also after one that did not match. This scan stops at the
// first directive that does not match, and keeps the values up to there and its place: so a row can
// be looked at by itself, where the reader has lost its place long before.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "deck/row_formats.h"

namespace kvx {

// A beam's row has eleven numbers; none has more.
inline constexpr std::size_t NumbersPerRow = korvex::NumbersPerPiece + 1;

struct RowScan {
  std::array<double, NumbersPerRow> values{};  // a whole number is exact in a double
  std::size_t taken = 0;
  const char* format = nullptr;   // the piece that did not match; null: all matched
  const char* awaited = nullptr;  // within it, the directive that did not match
  std::size_t end = 0;            // where the scan ended, bytes; the white space before is taken
  korvex::OddNumber odd = korvex::OddNumber::None;  // of the first odd number
  std::size_t oddByte = 0;
};

// Scans one format from `begin`. The text ends where the scan shall end: the line's end for a line.
RowScan ScanPiece(std::string_view text, std::size_t begin, const char* format);

// Scans a row with all its pieces.
RowScan ScanRow(std::string_view text, std::size_t begin, korvex::Section section);

// Whether all was taken and no number is odd.
inline bool IsWhole(const RowScan& scan) {
  return scan.awaited == nullptr && scan.odd == korvex::OddNumber::None;
}

// Whether nothing but white space stands between the byte and the begin of its line. True at the
// text's end, too.
bool BeginsLine(std::string_view text, std::size_t byte);

// Whether a whole row begins at the byte and ends at a line's end.
bool IsRowAt(std::string_view text, std::size_t begin, korvex::Section section);

// How many numbers a row of the section has.
std::size_t CountNumbers(korvex::Section section);

// The least bytes that a row can have. No count is believed that needs more than the file has.
std::size_t LeastBytes(korvex::Section section);

// Whether the rows begin with a number that is for people only.
bool HasRunningNumber(korvex::Section section);

// Whether each row of the section has several lines.
bool HasSeveralLines(korvex::Section section);

// Whether the rows begin with a line of any text.
inline bool HasLabel(korvex::Section section) {
  return *korvex::FormatOf(section).pieces[0] == '\0';
}

// Appends a row of the section. values: CountNumbers(section) numbers.
void WriteRow(korvex::Section section, const double* values, std::string& out);

// All numbers of a line, [begin, end) of the text; digits within words such as "4ND" are none.
std::vector<double> ListNumbers(std::string_view text, std::size_t begin, std::size_t end);

}  // namespace kvx
