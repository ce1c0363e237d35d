// A line is a title if it names a key before a "=", or if it begins with "Number of" or nearly so.
// Then the section is the one with that key, or the one whose title differs in the fewest letters
// (Levenshtein distance).
#include "check/find_sections.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "check/characters.h"
#include "deck/row_formats.h"

namespace kvx {

using korvex::Section;
using korvex::SectionFormat;

namespace {

// The longest title has 71 characters. What is beyond this is not looked at.
constexpr std::size_t LongestTitle = 100;

// "Number of" with as many letters wrong is still taken for it.
constexpr std::size_t WrongLettersOfNumberOf = 2;

constexpr std::string_view NumberOf = "Number of";

// The least number of letters to insert, remove or replace, capitals disregarded.
std::size_t CountWrongLetters(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (LowerCase(a[i]) == LowerCase(b[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row[b.size()];
}

// The title up to its count.
std::string_view WordingOf(const SectionFormat& format) {
  const std::string_view title = format.title;
  return title.substr(0, title.find('%'));
}

// The word before the first "=", without blanks.
std::string_view FindKey(std::string_view line) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return {};
  const std::string_view before = Trim(line.substr(0, equals));
  std::size_t begin = before.size();
  while (begin > 0 && (IsLetter(before[begin - 1]) || IsDigit(before[begin - 1]))) --begin;
  return before.substr(begin);
}

// Whether the line begins with "Number of", or nearly so.
bool MayBeWording(std::string_view line) {
  if (line.empty() || !IsLetter(line[0])) return false;
  const std::string_view begin = line.substr(0, NumberOf.size());
  return CountWrongLetters(begin, NumberOf) <= WrongLettersOfNumberOf;
}

// The section whose title is nearest; Header where none is near.
Section FindNearest(std::string_view line) {
  const std::string_view wording = Trim(line.substr(0, line.find('=')));
  Section nearest = Section::Header;
  std::size_t least = wording.size() / 2;  // a line with half its letters wrong is none
  for (const SectionFormat& format : korvex::SectionFormats) {
    std::string_view title = WordingOf(format);
    title.remove_suffix(1);  // the "="
    const std::size_t wrong = CountWrongLetters(wording, title);
    if (wrong >= least) continue;
    least = wrong;
    nearest = format.section;
  }
  return nearest;
}

// The section that the line is the title of; Header: it is no title.
Section FindTitle(std::string_view line) {
  line = Trim(line.substr(0, LongestTitle));
  const std::string_view key = FindKey(line);
  for (const SectionFormat& format : korvex::SectionFormats) {
    if (!key.empty() && IsSameWord(key, format.key)) return format.section;
  }
  return MayBeWording(line) ? FindNearest(line) : Section::Header;
}

}  // namespace

std::vector<TextLine> ListLines(std::string_view text) {
  std::vector<TextLine> lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const void* feed = std::memchr(text.data() + begin, '\n', text.size() - begin);
    const std::size_t end =
        feed == nullptr ? text.size()
                        : static_cast<std::size_t>(static_cast<const char*>(feed) - text.data());
    lines.push_back({begin, end});
    begin = end + 1;
  }
  return lines;
}

std::vector<TitleLine> FindTitles(std::string_view text, const std::vector<TextLine>& lines) {
  std::vector<TitleLine> titles;
  for (std::size_t k = 0; k < lines.size(); ++k) {
    const std::string_view line = Cut(text, lines[k]);
    // Rows of nodes and elements begin with a digit: most lines are left here.
    const std::size_t first = line.find_first_not_of(" \t\r\v\f");
    if (first == std::string_view::npos || IsDigit(line[first])) continue;
    const Section section = FindTitle(line);
    if (section != Section::Header) titles.push_back({section, k});
  }
  return titles;
}

}  // namespace kvx
