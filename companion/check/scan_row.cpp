#include "check/scan_row.h"

#include <charconv>
#include <cmath>

#include "check/characters.h"

namespace kvx {

using korvex::OddNumber;
using korvex::ScanResult;
using korvex::Section;
using korvex::TextCursor;

namespace {

// Reads the number that `directive` begins with; returns whether there is one.
bool TakeNumber(TextCursor& cursor, const char* directive, RowScan& scan) {
  ScanResult result;
  double value = 0.0;
  if (directive[1] == 'd') {
    std::int32_t integer = 0;
    result = korvex::ScanFormat(cursor, "%d", {&integer});
    value = integer;
  } else {
    result = korvex::ScanFormat(cursor, "%lf", {&value});
  }
  if (result.odd != OddNumber::None && scan.odd == OddNumber::None) {
    scan.odd = result.odd;
    scan.oddByte = result.oddByte;
  }
  if (result.awaited != nullptr) return false;
  scan.values[scan.taken++] = value;
  return true;
}

const char* NextDirective(const char* directive) {
  if (*directive != '%') return directive + 1;
  return directive + (directive[1] == 'd' ? 2 : 3);
}

// Goes on with a scan; returns whether the format matched.
bool TakePiece(TextCursor& cursor, const char* format, RowScan& scan) {
  for (const char* directive = format; *directive != '\0'; directive = NextDirective(directive)) {
    bool matches = true;
    if (IsBlank(*directive)) {
      while (cursor.position < cursor.text.size() && IsBlank(cursor.text[cursor.position])) {
        ++cursor.position;
      }
    } else if (*directive == '%') {
      matches = TakeNumber(cursor, directive, scan);
    } else {
      matches = cursor.position < cursor.text.size() && cursor.text[cursor.position] == *directive;
      if (matches) ++cursor.position;
    }
    if (matches) continue;
    scan.format = format;
    scan.awaited = directive;
    return false;
  }
  return true;
}

}  // namespace

RowScan ScanPiece(std::string_view text, std::size_t begin, const char* format) {
  RowScan scan;
  TextCursor cursor{text, begin};
  TakePiece(cursor, format, scan);
  scan.end = cursor.position;
  return scan;
}

RowScan ScanRow(std::string_view text, std::size_t begin, Section section) {
  RowScan scan;
  TextCursor cursor{text, begin};
  for (const char* piece : korvex::FormatOf(section).pieces) {
    if (piece == nullptr) break;
    if (*piece == '\0') {
      korvex::SkipLine(cursor);
    } else if (!TakePiece(cursor, piece, scan)) {
      break;
    }
  }
  scan.end = cursor.position;
  return scan;
}

bool BeginsLine(std::string_view text, std::size_t byte) {
  if (byte >= text.size()) return true;
  while (byte > 0 && IsBlank(text[byte - 1])) {
    if (text[--byte] == '\n') return true;
  }
  return byte == 0;
}

bool IsRowAt(std::string_view text, std::size_t begin, Section section) {
  const RowScan scan = ScanRow(text, begin, section);
  return IsWhole(scan) && BeginsLine(text, scan.end);
}

std::size_t CountNumbers(Section section) {
  std::size_t count = 0;
  for (const char* piece : korvex::FormatOf(section).pieces) {
    if (piece == nullptr) break;
    for (const char* c = piece; *c != '\0'; ++c) count += *c == '%' ? 1 : 0;
  }
  return count;
}

std::size_t LeastBytes(Section section) {
  std::size_t bytes = 0;
  for (const char* piece : korvex::FormatOf(section).pieces) {
    if (piece == nullptr) break;
    for (const char* directive = piece; *directive != '\0'; directive = NextDirective(directive)) {
      bytes += IsBlank(*directive) ? 0 : 1;
    }
  }
  return bytes;
}

bool HasRunningNumber(Section section) {
  return section == Section::Materials || section == Section::ShellThicknesses ||
         (section >= Section::Nodes && section <= Section::Beams);
}

bool HasSeveralLines(Section section) {
  return section >= Section::Materials && section <= Section::CBeamSections;
}

void WriteRow(Section section, const double* values, std::string& out) {
  for (const char* piece : korvex::FormatOf(section).pieces) {
    if (piece == nullptr) break;
    if (*piece == '\0') out += "section\n";
    for (const char* directive = piece; *directive != '\0'; directive = NextDirective(directive)) {
      if (*directive != '%') {
        out += *directive;
        continue;
      }
      if (IsDigit(out.back())) out += ' ';  // the flags of a restraint
      std::array<char, 32> buffer{};        // the longest is "-2.2250738585072014e-308"
      char* const first = buffer.data();
      char* const last = first + buffer.size();
      const double value = *values++;
      const auto end = directive[1] == 'd'
                           ? std::to_chars(first, last, static_cast<std::int32_t>(value))
                           : std::to_chars(first, last, value);
      out.append(first, end.ptr);
    }
  }
  if (out.back() != '\n') out += '\n';
}

std::vector<double> ListNumbers(std::string_view text, std::size_t begin, std::size_t end) {
  std::vector<double> numbers;
  const std::string_view line = text.substr(0, end);
  for (std::size_t at = begin; at < end;) {
    if (IsLetter(line[at])) {
      while (at < end && (IsLetter(line[at]) || IsDigit(line[at]))) ++at;
      continue;
    }
    TextCursor cursor{line, at};
    double value = 0.0;
    const bool mayBegin = IsDigit(line[at]) || line[at] == '.' ||
                          ((line[at] == '-' || line[at] == '+') && at + 1 < end &&
                           (IsDigit(line[at + 1]) || line[at + 1] == '.'));
    if (mayBegin && korvex::ScanFormat(cursor, "%lf", {&value}).awaited == nullptr) {
      numbers.push_back(value);
      at = cursor.position;
    } else {
      ++at;
    }
  }
  return numbers;
}

}  // namespace kvx
