#include "check/split_rows.h"

#include <algorithm>
#include <string>

#include "check/characters.h"
#include "check/scan_row.h"
#include "deck/row_formats.h"

namespace kvx {

using korvex::Section;

namespace {

// The splitting of one section.
struct Splitter {
  const SplitSource& source;
  const std::vector<Section>& absent;
  SectionText& part;
  std::string_view text;  // ends behind the section
  std::size_t line = 0;   // index of the present line
  std::int64_t rows = 0;  // so far
};

std::string_view LineText(const Splitter& s, std::size_t line) {
  return Cut(s.source.text, s.source.lines[line]);
}

bool IsEmpty(const Splitter& s, std::size_t line) {
  return s.source.skipped[line] || Trim(LineText(s, line)).empty();
}

// The first byte of a line that is not blank; the line must not be empty.
std::size_t FirstByte(const Splitter& s, std::size_t line) {
  std::size_t at = s.source.lines[line].begin;
  while (IsBlank(s.source.text[at])) ++at;
  return at;
}

// The next line that is not empty, or the end of the section.
std::size_t NextLine(const Splitter& s, std::size_t line) {
  ++line;
  while (line < s.part.endLine && IsEmpty(s, line)) ++line;
  return line;
}

bool IsRowOn(const Splitter& s, std::size_t line, Section section) {
  return line < s.part.endLine && !IsEmpty(s, line) && IsRowAt(s.text, FirstByte(s, line), section);
}

void AddItem(Splitter& s, std::size_t from, std::size_t to, ItemKind kind) {
  const std::size_t end = s.source.lines[to - 1].end;
  s.part.items.push_back(
      {s.source.lines[from].begin, end, static_cast<std::uint32_t>(from + 1), 0, kind});
  if (kind == ItemKind::Broken) ++s.rows;
}

// So many rows in succession are taken where none of them ends at a line's end. A bound keeps the
// time linear.
constexpr std::size_t LongestChain = 100;

// Takes the rows from the begin of the present line on, up to the first that ends at a line's end,
// if all of them are whole.
bool TakeWholeRows(Splitter& s) {
  const Section section = s.part.section;
  const std::size_t before = s.part.items.size();
  std::size_t at = FirstByte(s, s.line);
  bool isWhole = true;
  do {
    const RowScan scan = ScanRow(s.text, at, section);
    isWhole = IsWhole(scan) && scan.end > at;
    const auto number = HasRunningNumber(section) ? static_cast<std::int32_t>(scan.values[0]) : 0;
    s.part.items.push_back({at, scan.end, static_cast<std::uint32_t>(s.line + 1), number});
    at = scan.end;
  } while (isWhole && !BeginsLine(s.text, at) && s.part.items.size() - before < LongestChain);
  if (!isWhole || !BeginsLine(s.text, at)) {
    s.part.items.resize(before);
    return false;
  }
  s.rows += static_cast<std::int64_t>(s.part.items.size() - before);
  while (s.line < s.part.endLine && s.source.lines[s.line].end < at) ++s.line;
  if (at >= s.text.size()) s.line = s.part.endLine;
  return true;
}

// Whether the count says that no further row follows.
bool IsFull(const Splitter& s) { return s.part.hasCount && s.rows >= s.part.count; }

// Whether rows of the two sections look alike.
bool HaveEqualRows(Section a, Section b) {
  const auto isEither = [](Section section, Section first, Section second) {
    return section == first || section == second;
  };
  return (isEither(a, Section::TBeamSections, Section::LBeamSections) &&
          isEither(b, Section::TBeamSections, Section::LBeamSections)) ||
         (isEither(a, Section::Shell4Loads, Section::Shell3Loads) &&
          isEither(b, Section::Shell4Loads, Section::Shell3Loads));
}

// Which absent section begins with the row at the present line.
std::size_t FindAbsentRow(const Splitter& s, std::size_t line) {
  const Section own = s.part.section;
  for (std::size_t k = 0; k < s.absent.size(); ++k) {
    if (!IsRowOn(s, line, s.absent[k])) continue;
    if (own == Section::Header) return k;
    if (HaveEqualRows(own, s.absent[k]) ? IsFull(s) : !IsRowOn(s, line, own)) return k;
  }
  return s.absent.size();
}

// Whether the present line may be a title that nothing can be made of: words behind the last row.
bool IsGarbledTitle(const Splitter& s) {
  if (s.absent.empty() || !IsFull(s)) return false;
  const std::string_view line = Trim(LineText(s, s.line));
  if (!IsLetter(line[0])) return false;
  if (s.part.section != Section::Header && IsRowOn(s, s.line, s.part.section)) return false;
  return std::any_of(line.begin(), line.end(), IsDigit);
}

bool IsNumberBegin(char c) { return IsDigit(c) || c == '-' || c == '+' || c == '.'; }

// Lines that are joined to see whether they are one row are not longer than this; no row is.
constexpr std::size_t LongestHalf = 1000;

// Whether the present line and the next are one row, broken within a number or before a comma.
bool IsHalf(const Splitter& s) {
  const std::size_t next = s.line + 1;
  if (next >= s.part.endLine || IsEmpty(s, next)) return false;
  const std::string_view first = Trim(LineText(s, s.line)), second = Trim(LineText(s, next));
  if (first.size() > LongestHalf || second.size() > LongestHalf) return false;
  if (IsRowOn(s, next, s.part.section)) return false;
  const std::string joined = std::string(first) + std::string(second);
  return IsRowAt(joined, 0, s.part.section);
}

// A line of a section with one line for each row.
void TakeLine(Splitter& s) {
  const char first = s.source.text[FirstByte(s, s.line)];
  if (IsHalf(s)) {
    AddItem(s, s.line, s.line + 2, ItemKind::Broken);
    s.line += 2;
    return;
  }
  AddItem(s, s.line, s.line + 1, IsNumberBegin(first) ? ItemKind::Broken : ItemKind::Stray);
  ++s.line;
}

// The names of values that have been seen in a block: bit k for piece k.
using Seen = unsigned;

Seen AllValues(Section section) {
  Seen all = 0;
  const auto& pieces = korvex::FormatOf(section).pieces;
  for (std::size_t k = 1; k < pieces.size() && pieces[k] != nullptr; ++k) all |= 1U << k;
  return all;
}

struct SeenBlock {
  Seen values = 0;
  bool isBlock = false;             // it has a value or a head
  std::size_t linesBehindHead = 0;  // other than heads
};

// Whether the line begins another block, given what the present one has.
bool BeginsBlock(const Splitter& s, std::size_t line, BlockLineKind kind, const SeenBlock& block) {
  const Section section = s.part.section;
  const Seen seen = block.values;
  const bool isComplete = seen == AllValues(section);
  const bool isFirstValue = kind.kind == BlockLine::Value && kind.piece == 1;
  if (!HasLabel(section)) {
    if (kind.kind == BlockLine::Head) return block.linesBehindHead > 0;
    return isComplete && (isFirstValue || kind.kind == BlockLine::Other);
  }
  // The first value for the second time, and not right behind itself.
  if (isFirstValue) return (seen & 2U) != 0 && seen > 2U;
  if (kind.kind == BlockLine::Value) return false;
  if (isComplete) return true;
  // Words before a value that the block has already, or before the first one, are a label.
  const std::size_t next = NextLine(s, line);
  if (seen == 0 || next >= s.part.endLine) return false;
  const BlockLineKind after = ClassifyBlockLine(LineText(s, next), section);
  return after.kind == BlockLine::Value && (after.piece == 1 || (seen >> after.piece) % 2 == 1);
}

// Takes a block with several lines that is no whole row; lines without any value or head are stray.
void TakeBlock(Splitter& s) {
  const Section section = s.part.section;
  const std::size_t from = s.line;
  std::size_t last = from, line = from;
  SeenBlock block;
  for (; line < s.part.endLine; line = NextLine(s, line)) {
    const BlockLineKind kind = ClassifyBlockLine(LineText(s, line), section);
    if (line > from && BeginsBlock(s, line, kind, block)) break;
    // Behind lines that are no row, a whole row or another section stands for itself.
    const bool isNew = line > from && (block.values == 0 || block.values == AllValues(section));
    const bool isValue = kind.kind == BlockLine::Value;
    if (isNew && !block.isBlock && !isValue && IsRowOn(s, line, section)) break;
    if (isNew && FindAbsentRow(s, line) < s.absent.size()) break;
    const bool isHead = kind.kind == BlockLine::Head;
    if (isValue) block.values |= 1U << kind.piece;
    block.isBlock = block.isBlock || isHead || isValue;
    if (block.isBlock && !isHead) ++block.linesBehindHead;
    last = line;
  }
  if (block.isBlock) {
    AddItem(s, from, last + 1, ItemKind::Broken);
  } else {
    for (std::size_t k = from; k <= last; ++k) {
      if (!IsEmpty(s, k)) AddItem(s, k, k + 1, ItemKind::Stray);
    }
  }
  s.line = line;
}

// "#0:", "# 0 :", "0:", "#0", "#0: steel".
bool IsHead(std::string_view line) {
  const bool hasHash = line[0] == '#';
  if (hasHash) line = Trim(line.substr(1));
  std::size_t digits = 0;
  while (digits < line.size() && IsDigit(line[digits])) ++digits;
  if (digits == 0) return false;
  line = Trim(line.substr(digits));
  return line.empty() ? hasHash : line[0] == ':';
}

}  // namespace

BlockLineKind ClassifyBlockLine(std::string_view line, Section section) {
  line = Trim(line);
  if (line.empty()) return {BlockLine::Blank, 0};
  if (!HasLabel(section) && IsHead(line)) return {BlockLine::Head, 0};
  std::size_t letters = 0;
  while (letters < line.size() && (IsLetter(line[letters]) || IsDigit(line[letters]))) ++letters;
  const std::string_view name = line.substr(0, letters);
  const std::string_view behind = Trim(line.substr(letters));
  if (name.empty() || behind.empty() || behind[0] != '=') return {BlockLine::Other, 0};
  const auto& pieces = korvex::FormatOf(section).pieces;
  for (std::size_t k = 1; k < pieces.size() && pieces[k] != nullptr; ++k) {
    const std::string_view piece = pieces[k];
    if (IsSameWord(name, piece.substr(0, piece.find('=')))) return {BlockLine::Value, k};
  }
  return {BlockLine::Named, 0};
}

std::size_t SplitRows(const SplitSource& source, std::size_t firstLine,
                      const std::vector<Section>& absent, SectionText& part, bool& isGarbled) {
  const std::size_t endByte =
      part.endLine > 0 ? std::min(source.lines[part.endLine - 1].end + 1, source.text.size()) : 0;
  Splitter s{source, absent, part, source.text.substr(0, endByte), firstLine, 0};
  isGarbled = false;
  while (s.line < part.endLine) {
    if (IsEmpty(s, s.line)) {
      ++s.line;
      continue;
    }
    const std::size_t found = FindAbsentRow(s, s.line);
    isGarbled = found == absent.size() && IsGarbledTitle(s);
    if (found < absent.size() || isGarbled) {
      const std::size_t behind = FindAbsentRow(s, NextLine(s, s.line));
      part.endLine = s.line;
      return found < absent.size() ? found : (behind < absent.size() ? behind : 0);
    }
    if (part.section == Section::Header) {
      AddItem(s, s.line, s.line + 1, ItemKind::Stray);
      ++s.line;
    } else if (!TakeWholeRows(s)) {
      HasSeveralLines(part.section) ? TakeBlock(s) : TakeLine(s);
    }
  }
  return absent.size();
}

}  // namespace kvx
