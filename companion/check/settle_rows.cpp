#include "check/settle_rows.h"

#include <algorithm>
#include <string>

#include "check/scan_row.h"
#include "deck/row_formats.h"

namespace kvx {

using korvex::Section;

namespace {

std::int64_t CountKind(const SectionText& part, ItemKind kind) {
  return std::count_if(part.items.begin(), part.items.end(),
                       [&](const TextItem& item) { return item.kind == kind; });
}

std::int64_t CountRows(const SectionText& part) {
  return std::count_if(part.items.begin(), part.items.end(),
                       [](const TextItem& item) { return IsRow(item.kind); });
}

void SetKind(SectionText& part, ItemKind from, ItemKind to) {
  for (TextItem& item : part.items) {
    if (item.kind == from) item.kind = to;
  }
}

Finding AtCount(const char* code, const SectionText& part) {
  Finding finding = MakeFinding(code);
  finding.line = part.titleLine;
  finding.table = korvex::FormatOf(part.section).key;
  return finding;
}

// "count NPOIN: it is 4, but 5 nodal points follow"
std::string CompareCount(const SectionText& part, std::int64_t rows) {
  const std::string follow = rows == 1 ? " row follows" : " rows follow";
  return DescribeTitle(part.section) + ": it is " + std::to_string(part.count) + ", but " +
         (rows == 0 ? std::string("no") : std::to_string(rows)) + follow;
}

// Lines behind the last row of the last section: they are not read. They are one finding.
void CutTail(SectionText& part, FindingList& findings) {
  if (!part.hasCount) return;
  std::int64_t rows = 0;
  std::size_t tail = 0;
  for (; tail < part.items.size(); ++tail) {
    const ItemKind kind = part.items[tail].kind;
    if (rows >= part.count && kind != ItemKind::Whole) break;
    if (IsRow(kind)) ++rows;
  }
  if (tail == part.items.size()) return;
  Finding finding = MakeFinding("K018");
  finding.line = part.items[tail].line;
  finding.message = "text behind the last section: the solver does not read it.";
  finding.remedy = "Remove it, or put it where it belongs.";
  AddFinding(finding, findings);
  part.items.resize(tail);
}

// Lines that are taken for rows, or are not, so that the count is right.
void ReconsiderLines(SectionText& part) {
  const std::int64_t rows = CountRows(part);
  const std::int64_t broken = CountKind(part, ItemKind::Broken);
  const std::int64_t stray = CountKind(part, ItemKind::Stray);
  if (rows == part.count) return;
  if (rows + stray == part.count) SetKind(part, ItemKind::Stray, ItemKind::StrayRow);
  if (rows - broken == part.count) SetKind(part, ItemKind::Broken, ItemKind::Stray);
}

// Rows whose running number is not the one in turn, while all others are numbered in turn. Marks
// them if the count leaves out just them, and returns the line of the first; 0 if not.
std::uint32_t MarkDoubled(SectionText& part, std::int64_t excess) {
  std::vector<TextItem*> doubled;
  std::int32_t row = 0;
  for (TextItem& item : part.items) {
    if (!IsRow(item.kind)) continue;
    if (item.kind == ItemKind::Whole && item.number != row) {
      doubled.push_back(&item);
    } else {
      ++row;
    }
  }
  if (static_cast<std::int64_t>(doubled.size()) != excess) return 0;
  for (TextItem* item : doubled) item->kind = ItemKind::Doubled;
  return doubled.front()->line;
}

void AddTooSmall(SectionText& part, FindingList& findings) {
  const std::int64_t rows = CountRows(part), excess = rows - part.count;
  const std::uint32_t doubled = HasRunningNumber(part.section) ? MarkDoubled(part, excess) : 0;
  Finding finding = AtCount("K007", part);
  finding.message = CompareCount(part, rows);
  finding.remedy = "Write " + std::to_string(rows);
  if (doubled > 0) {
    finding.message += "; line " + std::to_string(doubled) + " has a number out of turn";
    finding.remedy += ", or remove line " + std::to_string(doubled);
  }
  finding.message += ".";
  finding.remedy += ".";
  AddFinding(finding, findings);
}

// Inserts rows where running numbers jump ahead, at most `lack` of them. Returns the first number
// that is missing, -1 if none.
std::int32_t FillGaps(SectionText& part, std::int64_t lack) {
  std::vector<TextItem> filled;
  std::int32_t row = 0, first = -1;
  for (const TextItem& item : part.items) {
    for (; item.kind == ItemKind::Whole && item.number > row && lack > 0; --lack, ++row) {
      filled.push_back({item.begin, item.begin, part.titleLine, row, ItemKind::Missing});
      if (first < 0) first = row;
    }
    filled.push_back(item);
    if (IsRow(item.kind)) ++row;
  }
  part.items = std::move(filled);
  return first;
}

// Rows at the end, so that what refers to them refers to a row; only if the file could have held
// them.
void FillEnd(std::uint32_t lineCount, std::int64_t lack, SectionText& part) {
  if (part.section > Section::Restraints || part.count > static_cast<std::int64_t>(lineCount))
    return;
  const std::size_t end = part.items.empty() ? 0 : part.items.back().end;
  part.items.insert(part.items.end(), static_cast<std::size_t>(lack),
                    {end, end, part.titleLine, 0, ItemKind::Missing});
}

// Whether the running numbers of the rows allow to tell which are missing: as many jumps as rows.
std::int64_t CountGaps(const SectionText& part) {
  std::int64_t gaps = 0, row = 0;
  for (const TextItem& item : part.items) {
    if (!IsRow(item.kind)) continue;
    if (item.kind == ItemKind::Whole && item.number > row + gaps) gaps = item.number - row;
    ++row;
  }
  return gaps;
}

void AddTooLarge(const FileSize& file, SectionText& part, FindingList& findings) {
  // A row in which the file breaks off is one of those that are missing.
  TextItem* const last = part.items.empty() ? nullptr : &part.items.back();
  if (last != nullptr && last->kind == ItemKind::Broken && last->end == file.bytes) {
    last->kind = ItemKind::Missing;
  }
  const std::int64_t rows = CountRows(part), lack = part.count - rows;
  const std::int64_t gaps = HasRunningNumber(part.section) ? CountGaps(part) : 0;
  std::int32_t missing = -1;
  // A jump over more rows than the file has lines is a slip in the number, not missing rows: they
  // would take all memory.
  const auto lines = static_cast<std::int64_t>(file.lines);
  if (gaps > 0 && gaps <= std::min(lack, lines) && part.count <= lines + gaps) {
    missing = FillGaps(part, gaps);
  }
  FillEnd(file.lines, part.count - CountRows(part), part);
  Finding finding = AtCount("K008", part);
  finding.message = CompareCount(part, rows);
  finding.remedy = "Write " + std::to_string(rows);
  if (missing >= 0) {
    finding.message += "; the row numbered " + std::to_string(missing) +
                       " is missing, and those behind it take its place";
    finding.remedy += ", or add the missing row";
  }
  finding.message += ".";
  finding.remedy += ".";
  AddFinding(finding, findings);
}

}  // namespace

void SettleRows(const FileSize& file, bool lastOfFile, SectionText& part, FindingList& findings) {
  if (lastOfFile) CutTail(part, findings);
  if (!part.hasCount || part.isNamed) return;
  ReconsiderLines(part);
  const std::int64_t rows = CountRows(part);
  if (rows > part.count) AddTooSmall(part, findings);
  if (rows < part.count) AddTooLarge(file, part, findings);
}

}  // namespace kvx
