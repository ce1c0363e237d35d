#include "verification/book.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace korvex::book {

namespace {

// Layout of a mark: MarkBegin kind " " value " " digits or bound MarkEnd.
constexpr char MarkBegin = '\x02';
constexpr char MarkEnd = '\x03';

enum class Kind : char { Digits = 'd', Ratio = 'r', Skipped = 's', Rounding = 'b' };

struct Mark {
  Kind kind = Kind::Skipped;
  double value = 0.0;
  double extra = 0.0;  // digits or bound
};

std::string FormatMark(const Mark& mark) {
  char buffer[80];
  std::snprintf(buffer, sizeof buffer, "%c%c %.17g %.17g%c", MarkBegin,
                static_cast<char>(mark.kind), mark.value, mark.extra, MarkEnd);
  return buffer;
}

// Reads the mark that begins at `place` and moves `place` behind it.
Mark ReadMark(const std::string& text, std::size_t& place) {
  Mark mark;
  mark.kind = static_cast<Kind>(text[place + 1]);
  char* end = nullptr;
  mark.value = std::strtod(text.c_str() + place + 2, &end);
  mark.extra = std::strtod(end, &end);
  place = text.find(MarkEnd, place) + 1;
  return mark;
}

std::string Print(const char* format, int digits, double value) {
  char buffer[80];
  std::snprintf(buffer, sizeof buffer, format, digits, value);
  return buffer;
}

// Sizes below the first and from the second on are printed with an exponent.
constexpr double SmallestPlain = 0.01, LargestPlain = 1e5;

// "e-3" for "e-03"
std::string ShortenExponent(std::string text) {
  const std::size_t zero = text.find('e') + 2;
  if (text.find('e') != std::string::npos && text[zero] == '0') text.erase(zero, 1);
  return text;
}

std::string PrintDigits(double value, int digits) {
  const double size = std::fabs(value);
  if (size != 0.0 && (size < SmallestPlain || size >= LargestPlain)) {
    return ShortenExponent(Print("%.*e", digits - 1, value));
  }
  std::string text = Print("%#.*g", digits, value);
  if (text.back() == '.') text.pop_back();
  return text;
}

std::string RenderMark(const Mark& mark) {
  switch (mark.kind) {
    case Kind::Digits:
      return PrintDigits(mark.value, static_cast<int>(mark.extra));
    case Kind::Ratio:
      return Print("%.*f", 4, mark.value);
    case Kind::Rounding:
      return mark.value == 0.0 ? "0" : ShortenExponent(Print("%.*e", 0, std::fabs(mark.value)));
    case Kind::Skipped:
      break;
  }
  return "?";
}

// Whether the committed number is that of the mark. A value near the edge between two digits gets
// no tolerance: one that suffices would let one wrong last digit in five pass.
bool Accepts(const Mark& mark, const std::string& token) {
  if (!std::isfinite(mark.value)) return false;
  if (mark.kind == Kind::Digits || mark.kind == Kind::Ratio) return token == RenderMark(mark);
  char* end = nullptr;
  const double committed = std::strtod(token.c_str(), &end);
  if (token.empty() || *end != '\0') return false;
  return mark.kind == Kind::Skipped ||
         (std::fabs(mark.value) <= mark.extra && std::fabs(committed) <= mark.extra);
}

// Whether the committed line agrees with `line`, mark by mark.
bool Agrees(const std::string& line, const std::string& committed) {
  std::size_t i = 0, k = 0;
  while (i < line.size()) {
    if (line[i] != MarkBegin) {
      if (k >= committed.size() || committed[k++] != line[i++]) return false;
      continue;
    }
    const Mark mark = ReadMark(line, i);
    std::size_t end = std::min(committed.find_first_not_of("+-.0123456789e", k), committed.size());
    if (end > k && committed[end - 1] == '.') --end;  // the end of a sentence
    if (!Accepts(mark, committed.substr(k, end - k))) return false;
    k = end;
  }
  return k == committed.size();
}

std::vector<std::string> SplitLines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

}  // namespace

std::string Figure(double value, int digits) {
  return FormatMark({Kind::Digits, value, static_cast<double>(digits)});
}

std::string Ratio(double value) { return FormatMark({Kind::Ratio, value, 0.0}); }

std::string SkippedFigure() { return FormatMark({}); }

std::string RoundingFigure(double value, double bound) {
  return FormatMark({Kind::Rounding, value, bound});
}

std::string Render(const std::string& text) {
  std::string out;
  for (std::size_t i = 0; i < text.size();) {
    if (text[i] == MarkBegin) {
      out += RenderMark(ReadMark(text, i));
    } else {
      out += text[i++];
    }
  }
  return out;
}

std::string FindDifferences(const std::string& text, const std::string& committed) {
  const std::vector<std::string> printed = SplitLines(text);
  const std::vector<std::string> lines = SplitLines(committed);
  std::string differences;
  for (std::size_t i = 0; i < std::max(printed.size(), lines.size()); ++i) {
    const bool both = i < printed.size() && i < lines.size();
    if (both && Agrees(printed[i], lines[i])) continue;
    differences += "committed: " + (i < lines.size() ? lines[i] : "(no line)") + "\n";
    differences += "  printed: " + (i < printed.size() ? Render(printed[i]) : "(no line)") + "\n";
  }
  return differences;
}

std::string FormatTable(const std::vector<Row>& rows) {
  std::string table;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    table += i > 0 ? "\n|" : "|";
    for (const std::string& cell : rows[i]) table += ' ' + cell + (cell.empty() ? "|" : " |");
    if (i > 0) continue;
    table += "\n|";
    for (std::size_t k = 0; k < rows[i].size(); ++k) table += "---|";
  }
  return table;
}

std::vector<Section> SplitSections(const std::string& document) {
  std::vector<Section> sections{{"", ""}};
  for (const std::string& line : SplitLines(document)) {
    if (line.rfind("## ", 0) == 0) sections.push_back({line.substr(3), ""});
    sections.back().body += line + '\n';
  }
  return sections;
}

}  // namespace korvex::book
