#include "check/list_sections.h"

#include <cmath>
#include <limits>
#include <string>

#include "check/arrange_sections.h"
#include "check/characters.h"
#include "check/check_header.h"
#include "check/diagnose_line.h"
#include "check/find_sections.h"
#include "check/scan_row.h"
#include "check/split_rows.h"

namespace kvx {

using korvex::Section;

namespace {

struct Lister {
  std::string_view text;
  std::vector<TextLine> lines;
  SectionPlan plan;
  SectionTexts& sections;
  FindingList& findings;
};

// The last whole number of a title that is not read as it is written.
void GuessCount(std::string_view line, SectionText& part) {
  const std::size_t mark = line.find_last_of("=:");
  const std::size_t begin = mark == std::string_view::npos ? 0 : mark;
  const std::vector<double> numbers = ListNumbers(line, begin, line.size());
  if (numbers.empty() || numbers.back() != std::floor(numbers.back())) return;
  if (!(std::abs(numbers.back()) <= std::numeric_limits<std::int32_t>::max())) return;
  part.hasCount = true;
  part.count = static_cast<std::int32_t>(numbers.back());
}

std::string FullTitle(Section section) {
  const std::string_view title = korvex::FormatOf(section).title;
  return std::string(title.substr(0, title.find('%')));
}

Finding AtTitle(const char* code, Section section, std::size_t line) {
  Finding finding = MakeFinding(code);
  finding.line = line + 1;
  finding.table = korvex::FormatOf(section).key;
  return finding;
}

void AddMisspelt(const Lister& lister, Section section, std::size_t line, const RowScan& scan) {
  const TextLine& at = lister.lines[line];
  Finding finding = AtTitle("K006", section, line);
  finding.column = scan.end - at.begin + 1;
  finding.message = DescribeTitle(section) + ": the line with it is misspelt.";
  finding.remedy = "Write: " + FullTitle(section) + "...";
  AddFinding(finding, lister.findings);
}

void AddNegative(const Lister& lister, const SectionText& part, std::size_t line) {
  Finding finding = AtTitle("K009", part.section, line);
  finding.message =
      DescribeTitle(part.section) + ": it is negative, " + std::to_string(part.count) + ".";
  finding.remedy = "Write the number of rows that follow; 0 if there are none.";
  AddFinding(finding, lister.findings);
}

// Reads a title and names what is wrong with it.
void ReadTitle(const Lister& lister, std::size_t line, SectionText& part) {
  const TextLine& at = lister.lines[line];
  const std::string_view text = lister.text.substr(0, at.end);
  std::size_t begin = at.begin;
  while (begin < at.end && IsBlank(text[begin])) ++begin;
  const RowScan scan = ScanPiece(text, begin, korvex::FormatOf(part.section).title);
  part.titleLine = static_cast<std::uint32_t>(line + 1);
  if (scan.taken == 0) {
    AddMisspelt(lister, part.section, line, scan);
    GuessCount(Cut(text, at), part);
    part.isNamed = true;
    return;
  }
  Finding finding;
  if (DiagnoseLine({lister.text, at.begin, at.end, part.section, DescribeTitle(part.section), true},
                   scan, finding)) {
    finding.line = line + 1;
    finding.table = korvex::FormatOf(part.section).key;
    AddFinding(finding, lister.findings);
    part.isNamed = true;
    return;
  }
  part.hasCount = true;
  part.count = static_cast<std::int32_t>(scan.values[0]);
  if (part.count >= 0) return;
  AddNegative(lister, part, line);
  part.isNamed = true;
  part.hasCount = false;
}

// Sections without a title that stand between two others.
std::vector<Section> ListAbsent(const Lister& lister, Section before, Section behind) {
  std::vector<Section> absent;
  for (int k = static_cast<int>(before) + 1; k < static_cast<int>(behind); ++k) {
    const SectionText& part = lister.sections.parts[static_cast<std::size_t>(k)];
    if (part.titleLine == 0) absent.push_back(static_cast<Section>(k));
  }
  return absent;
}

// A section of which rows were found without its title.
void AddUntitled(const Lister& lister, SectionText& part, std::size_t line) {
  if (part.isNamed) return;
  part.isNamed = true;
  Finding finding = AtTitle("K003", part.section, line);
  finding.message = "count " + std::string(korvex::FormatOf(part.section).key) +
                    ": the line with it is missing before the section's rows.";
  finding.remedy = "Insert the line: " + FullTitle(part.section) + "...";
  AddFinding(finding, lister.findings);
}

// Splits the lines of a section, and of those without a title that stand behind it.
void SplitRange(const Lister& lister, Section section, std::size_t firstLine, std::size_t endLine,
                std::vector<Section> absent) {
  const SplitSource source{lister.text, lister.lines, lister.plan.skipped};
  for (;;) {
    SectionText& part = lister.sections.parts[IndexOf(section)];
    part.endLine = endLine;
    bool isGarbled = false;
    const std::size_t next = SplitRows(source, firstLine, absent, part, isGarbled);
    if (next == absent.size()) return;
    section = absent[next];
    firstLine = part.endLine;
    SectionText& following = lister.sections.parts[IndexOf(section)];
    if (isGarbled) {
      ReadTitle(lister, firstLine, following);
      ++firstLine;
    } else {
      AddUntitled(lister, following, firstLine);
    }
    following.endLine = endLine;
    absent.erase(absent.begin(), absent.begin() + static_cast<std::ptrdiff_t>(next) + 1);
  }
}

// Splits all ranges in the order of the file, each with the absent sections that should stand
// between it and the next one in its place.
void SplitAll(const Lister& lister) {
  const std::vector<SectionRange>& ranges = lister.plan.ranges;
  // Before the first title stands the header; it acts as a section without rows.
  SectionText& header = lister.sections.parts[0];
  header.hasCount = true;
  Section before = Section::Header;
  std::size_t firstLine = 0;
  std::size_t endLine = lister.plan.firstTitle;
  for (std::size_t k = 0;; ++k) {
    const bool isLast = k == ranges.size();
    const bool isMoved = k > 0 && ranges[k - 1].isMisplaced;
    std::size_t next = k;
    while (next < ranges.size() && ranges[next].isMisplaced) ++next;
    const Section behind =
        next < ranges.size() ? ranges[next].section : static_cast<Section>(SectionCount);
    SplitRange(lister, k > 0 ? ranges[k - 1].section : Section::Header, firstLine, endLine,
               isMoved ? std::vector<Section>{} : ListAbsent(lister, before, behind));
    if (isLast) break;
    if (!ranges[k].isMisplaced) before = ranges[k].section;
    firstLine = ranges[k].title + 1;
    endLine = ranges[k].end;
  }
}

// A title in which the file breaks off is none.
void DropBrokenTitle(std::string_view text, std::vector<TextLine>& lines,
                     std::vector<TitleLine>& titles) {
  if (titles.empty() || titles.back().line + 1 != lines.size()) return;
  if (titles.back().section == Section::BeamLoads || lines.back().end != text.size()) return;
  if (text.back() == '\n') return;
  lines.pop_back();
  titles.pop_back();
}

// One finding for each run of sections that are missing altogether.
void AddMissing(const Lister& lister) {
  auto& parts = lister.sections.parts;
  for (std::size_t k = 1; k < SectionCount; ++k) {
    const std::size_t first = k;
    while (k < SectionCount && parts[k].titleLine == 0 && !parts[k].isNamed) ++k;
    if (k == first) continue;
    const bool atEnd = k == SectionCount;
    std::size_t line = lister.lines.size();
    if (!atEnd && parts[k].titleLine > 0) line = parts[k].titleLine;
    Finding finding = AtTitle("K003", parts[first].section, line - 1);
    const std::string key = korvex::FormatOf(parts[first].section).key;
    const std::string last = korvex::FormatOf(parts[k - 1].section).key;
    finding.message = "count";
    if (k == first + 1) {
      finding.message.append(" ").append(key).append(": the section is missing");
    } else {
      finding.message.append("s ").append(key).append(" to ").append(last);
      finding.message.append(": the sections are missing");
    }
    finding.message += atEnd ? "; the file ends before." : ".";
    finding.remedy = atEnd ? "Write the file to its end."
                           : "Insert the line: " + FullTitle(parts[first].section) +
                                 "0, or the section with its rows.";
    if (atEnd && k > first + 1) {
      finding.remedy += " Each section must be there; an empty one has the count 0.";
    }
    AddFinding(finding, lister.findings);
  }
}

}  // namespace

std::string DescribeTitle(Section section) {
  return std::string("count ") + korvex::FormatOf(section).key;
}

void ListSections(std::string_view text, SectionTexts& sections, FindingList& findings) {
  Lister lister{text, ListLines(text), {}, sections, findings};
  std::vector<TitleLine> titles = FindTitles(text, lister.lines);
  DropBrokenTitle(text, lister.lines, titles);
  for (std::size_t k = 0; k < SectionCount; ++k) {
    sections.parts[k].section = static_cast<Section>(k);
  }
  sections.hasTitles = !titles.empty();
  sections.lineCount = static_cast<std::uint32_t>(lister.lines.size());
  lister.plan = ArrangeSections(text, lister.lines, std::move(titles), findings);
  for (const Section section : lister.plan.movedTitles) {
    sections.parts[IndexOf(section)].isNamed = true;
  }
  for (const SectionRange& range : lister.plan.ranges) {
    SectionText& part = sections.parts[IndexOf(range.section)];
    ReadTitle(lister, range.title, part);
    part.isNamed = part.isNamed || range.isMisplaced;
  }
  SplitAll(lister);
  if (sections.hasTitles || HasHeader(text)) AddMissing(lister);
}

}  // namespace kvx
