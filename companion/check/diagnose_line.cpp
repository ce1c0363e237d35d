#include "check/diagnose_line.h"

#include <array>

#include "base/number_text.h"
#include "check/characters.h"
#include "deck/row_formats.h"

namespace kvx {

using korvex::OddNumber;
using korvex::Section;

namespace {

// Words of the file are quoted up to this length.
constexpr std::size_t LongestQuote = 40;

std::string Quote(std::string_view words) {
  std::string quote = "'";
  for (const char c : words.substr(0, LongestQuote)) quote += c >= ' ' && c <= '~' ? c : '?';
  return quote + (words.size() > LongestQuote ? "...'" : "'");
}

// The literal of the format that the awaited directive is part of, as far as it is a name.
std::string NameAround(const RowScan& scan) {
  const char* begin = scan.awaited;
  while (begin > scan.format && (IsLetter(begin[-1]) || IsDigit(begin[-1]))) --begin;
  const char* end = scan.awaited;
  while (IsLetter(*end) || IsDigit(*end)) ++end;
  if (end > begin && *end == '=') ++end;
  return std::string(begin, end);
}

// The character at a byte; '\n' at the line's end.
char FoundCharacter(std::string_view text, std::size_t lineEnd, std::size_t byte) {
  if (byte >= lineEnd || byte >= text.size()) return '\n';
  return text[byte] == '\r' ? '\n' : text[byte];
}

// What stands there: "','", "'nu='", "the end of the line", "byte 0xFF".
std::string FoundText(std::string_view text, std::size_t lineEnd, std::size_t byte) {
  const char found = FoundCharacter(text, lineEnd, byte);
  if (found == '\n') return "the end of the line";
  if (IsLetter(found)) {
    std::size_t end = byte;
    while (end < lineEnd && (IsLetter(text[end]) || IsDigit(text[end]) || text[end] == ' ')) ++end;
    const bool hasEquals = end < lineEnd && text[end] == '=';
    return Quote(Trim(text.substr(byte, end - byte + (hasEquals ? 1 : 0))));
  }
  if (found == ' ' || found == '\t') return "a blank";
  if (found >= '!' && found <= '~') return std::string("'") + found + "'";
  constexpr std::string_view Digits = "0123456789ABCDEF";
  const auto byteValue = static_cast<unsigned char>(found);
  return std::string("byte 0x") + Digits[byteValue / 16U] + Digits[byteValue % 16U];
}

// What the scan awaited where it stopped: "a number", "'BeamSecType='".
std::string ExpectedText(const RowScan& scan, Section section, char found) {
  const char awaited = *scan.awaited;
  if (awaited == '%' && scan.awaited[1] == 'l') return "a number";
  if (awaited == '%') {
    const bool isFlag = section == Section::Restraints && scan.taken > 0;
    const bool isSeparator = found == ',' || found == ';' || found == '/' || found == ':';
    return isFlag && isSeparator ? "a blank" : "a whole number";
  }
  if (IsLetter(awaited)) return "'" + NameAround(scan) + "'";
  return std::string("'") + awaited + "'";
}

// Where the scan stopped, and what stands there.
struct Stop {
  const LineContext& line;
  const RowScan& scan;
  std::size_t byte;
  char found;
  char before;  // the character before it; '\n' at the line's begin
};

std::string Rest(const Stop& stop) {
  return Quote(Trim(stop.line.text.substr(stop.byte, stop.line.end - stop.byte)));
}

void Set(const char* code, const Stop& stop, const std::string& what, const std::string& remedy,
         Finding& finding) {
  finding = MakeFinding(code);
  finding.column = stop.byte - stop.line.begin + 1;
  finding.message = stop.line.subject + ": " + what;
  finding.remedy = remedy;
}

// "expected 'Mu=', found 'nu='"
std::string Mismatch(const Stop& stop) {
  const LineContext& line = stop.line;
  return "expected " + ExpectedText(stop.scan, line.section, stop.found) + ", found " +
         FoundText(line.text, line.end, stop.byte) + ".";
}

bool DiagnoseZero(std::string_view line, const std::string& subject, Finding& finding) {
  const std::size_t zero = line.find('\0');
  if (zero == std::string_view::npos) return false;
  finding = MakeFinding("K002");
  finding.column = zero + 1;
  finding.message = subject + ": a byte 0 stands in the line.";
  finding.remedy = "Write the file again, as plain text.";
  return true;
}

bool DiagnoseOdd(const LineContext& line, const RowScan& scan, Finding& finding) {
  if (scan.odd == OddNumber::None) return false;
  const Stop stop{line, scan, scan.oddByte, '0', ' '};
  std::size_t end = scan.oddByte;
  const auto isPart = [](char c) {
    return IsDigit(c) || IsLetter(c) || c == '+' || c == '-' || c == '.';
  };
  while (end < line.end && isPart(line.text[end])) ++end;
  const std::string number = Quote(line.text.substr(scan.oddByte, end - scan.oddByte));
  switch (scan.odd) {
    case OddNumber::Incomplete:
      Set("K014", stop, "the number " + number + " is incomplete.", "Write the whole number.",
          finding);
      break;
    case OddNumber::IntegerTooLarge:
      Set("K014", stop,
          "the number " + number + " is too large for a whole number; other digits are taken.",
          "Write a whole number between -2147483648 and 2147483647.", finding);
      break;
    case OddNumber::RealTooLarge:
      Set("K014", stop, "the number " + number + " is too large; it becomes infinite.",
          "Write a number below 1.8e308.", finding);
      break;
    default:
      Set("K014", stop, "the number " + number + " is too small; it becomes 0.",
          "Write 0, or a number above 5e-324.", finding);
  }
  return true;
}

// Whether all numbers of the line stand without point and exponent: then a comma may be meant as a
// point.
bool HasOnlyDigits(const LineContext& line) {
  const std::string_view text = line.text.substr(line.begin, line.end - line.begin);
  return text.find('.') == std::string_view::npos && text.find("e+") == std::string_view::npos &&
         text.find("e-") == std::string_view::npos;
}

// Whether the number before the stop is one of a list: then a comma may also be one value too many.
bool IsInList(Section section) { return section >= Section::Nodes; }

bool TakesRealNumbers(const Stop& stop) {
  const Section section = stop.line.section;
  return stop.line.isTitle || section < Section::Shells4 || section == Section::Beams ||
         section >= Section::Forces;
}

// A comma between digits, where another number is not expected.
bool DiagnoseComma(const Stop& stop, Finding& finding) {
  const LineContext& line = stop.line;
  const bool isList = !line.isTitle && IsInList(line.section);
  const char next = FoundCharacter(line.text, line.end, stop.byte + 1);
  const char* const remedy = "Write a point for the decimal comma, and no separators of thousands.";
  if (stop.found == ',' && IsDigit(stop.before) && IsDigit(next) && TakesRealNumbers(stop) &&
      (!isList || HasOnlyDigits(line))) {
    const std::string what = isList
                                 ? "more numbers than values: is a comma meant as a decimal point?"
                                 : "a comma within the number; only what stands before it is read.";
    Set("K012", stop, what, remedy, finding);
    return true;
  }
  // "BeamSecOz=0,5,BeamSecMirrored=0": the comma is taken, and a name is expected behind it.
  if (stop.scan.awaited != nullptr && IsLetter(*stop.scan.awaited) && IsDigit(stop.found) &&
      stop.before == ',') {
    Set("K012", stop, "a comma within the number before; " + Mismatch(stop), remedy, finding);
    return true;
  }
  return false;
}

bool IsClosing(char c) { return c == '[' || c == ']' || c == '>' || c == '<' || c == ':'; }

// Too few or too many values.
bool DiagnoseNumber(const Stop& stop, Finding& finding) {
  const char awaited = *stop.scan.awaited;
  const bool isEnd = stop.found == '\n';
  const bool awaitsMore = awaited == '%' || awaited == ',';
  if ((isEnd && awaited != ':') || (awaitsMore && IsClosing(stop.found)) ||
      (awaited == '%' && stop.found == ',' && stop.line.section != Section::Restraints)) {
    Set("K015", stop, "values are missing: " + Mismatch(stop), "Write all values of the row.",
        finding);
    return true;
  }
  if (IsClosing(awaited) && awaited != ':' && stop.found == ',') {
    Set("K016", stop, "more values than expected: " + Mismatch(stop), "Remove what is too much.",
        finding);
    return true;
  }
  return false;
}

bool DiagnoseName(const Stop& stop, Finding& finding) {
  if (!IsLetter(*stop.scan.awaited) && *stop.scan.awaited != '=') return false;
  const LineContext& line = stop.line;
  // The name begins before the first letter that differs.
  Stop begin = stop;
  const auto isPart = [](char c) { return IsLetter(c) || IsDigit(c); };
  while (begin.byte > line.begin && isPart(line.text[begin.byte - 1])) --begin.byte;
  const std::string name = NameAround(stop.scan);
  Set("K013", begin,
      "expected '" + name + "', found " + FoundText(line.text, line.end, begin.byte) + ".",
      "Write " + name + ", capitals as here, without blanks.", finding);
  return true;
}

void DiagnoseOther(const Stop& stop, Finding& finding) {
  const bool isFlag = stop.line.section == Section::Restraints && *stop.scan.awaited == '%';
  Set("K011", stop, Mismatch(stop),
      isFlag ? "Separate the six flags by blanks, as in 0: 1 1 1 0 0 0."
             : "Write the row as the others are.",
      finding);
}

// All was taken, and something stands behind.
void DiagnoseRest(const Stop& stop, Finding& finding) {
  if (DiagnoseComma(stop, finding)) return;
  const std::string_view rest = stop.line.text.substr(stop.byte, stop.line.end - stop.byte);
  const bool isExponent = rest.size() > 1 && (rest[0] == 'D' || rest[0] == 'd') &&
                          (IsDigit(rest[1]) || rest[1] == '+' || rest[1] == '-');
  if (isExponent) {
    Set("K016", stop, "text behind the values: " + Rest(stop) + ".",
        "Write the letter e for the exponent, as in 2.06e5.", finding);
    return;
  }
  Set("K016", stop, "text behind the values: " + Rest(stop) + ".", "Remove it.", finding);
}

}  // namespace

bool LooksLikeComment(std::string_view line) {
  line = Trim(line);
  if (line.empty()) return false;
  constexpr std::string_view Marks = "#$!*/;%'\"";
  return Marks.find(line[0]) != std::string_view::npos || line.substr(0, 2) == "--";
}

void DiagnoseStray(std::string_view line, Finding& finding) {
  const std::size_t before = line.size();
  if (DiagnoseZero(line, "line " + Quote(Trim(line)), finding)) return;
  while (!line.empty() && IsBlank(line.front())) line.remove_prefix(1);
  finding = MakeFinding("K010");
  finding.column = before - line.size() + 1;
  finding.message = std::string(LooksLikeComment(line) ? "comment " : "line ") + Quote(Trim(line)) +
                    ": it is no row of the section.";
  finding.remedy = LooksLikeComment(line) ? "Remove it; the file has no comments."
                                          : "Remove it, or write it as a row.";
}

bool DiagnoseLine(const LineContext& line, const RowScan& scan, Finding& finding) {
  if (IsWhole(scan) && scan.end >= line.end) return false;
  const std::size_t byte = scan.end;
  const char before = byte > line.begin ? line.text[byte - 1] : '\n';
  const Stop stop{line, scan, byte, FoundCharacter(line.text, line.end, byte), before};
  const std::string_view all = line.text.substr(line.begin, line.end - line.begin);
  if (DiagnoseZero(all, line.subject, finding)) return true;
  if (DiagnoseOdd(line, scan, finding)) return true;
  if (scan.awaited == nullptr) {
    DiagnoseRest(stop, finding);
    return true;
  }
  if (DiagnoseComma(stop, finding) || DiagnoseNumber(stop, finding) ||
      DiagnoseName(stop, finding)) {
    return true;
  }
  DiagnoseOther(stop, finding);
  return true;
}

}  // namespace kvx
