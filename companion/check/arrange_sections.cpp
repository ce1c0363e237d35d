#include "check/arrange_sections.h"

#include <algorithm>
#include <array>
#include <string>

#include "check/characters.h"
#include "check/checked_model.h"
#include "check/scan_row.h"
#include "deck/row_formats.h"

namespace kvx {

using korvex::Section;

namespace {

struct Titles {
  std::string_view text;
  const std::vector<TextLine>& lines;
  std::vector<TitleLine> list;
  std::array<std::size_t, SectionCount> occurrences{}, firstLines{}, lastLines{};
};

// The first byte behind the line that is not blank.
std::size_t FindNext(const Titles& titles, std::size_t line) {
  std::size_t at = titles.lines[line].end;
  while (at < titles.text.size() && IsBlank(titles.text[at])) ++at;
  return at;
}

bool RowFollows(const Titles& titles, std::size_t line, Section section) {
  return IsRowAt(titles.text, FindNext(titles, line), section);
}

// Whether fewer lines follow a title than its count asks for.
bool IsShort(const Titles& titles, std::size_t k) {
  const TitleLine& title = titles.list[k];
  const std::string_view text = titles.text.substr(0, titles.lines[title.line].end);
  const korvex::SectionFormat& format = korvex::FormatOf(title.section);
  std::size_t begin = titles.lines[title.line].begin;
  while (begin < text.size() && IsBlank(text[begin])) ++begin;
  const RowScan scan = ScanPiece(text, begin, format.title);
  if (scan.taken == 0) return false;
  std::size_t linesPerRow = 0;
  for (const char* piece : format.pieces) linesPerRow += piece != nullptr ? 1 : 0;
  if (!HasSeveralLines(title.section)) linesPerRow = 1;
  const std::size_t lines = titles.list[k + 1].line - title.line - 1;
  return scan.values[0] * static_cast<double>(linesPerRow) > static_cast<double>(lines);
}

// Whether a title has got among the rows of the section before it.
bool IsAmongRows(const Titles& titles, std::size_t k) {
  if (k == 0 || titles.list[k - 1].section == titles.list[k].section) return false;
  const TitleLine& title = titles.list[k];
  const bool isLast = k + 1 == titles.list.size();
  const bool inOrder = titles.list[k - 1].section < title.section &&
                       (isLast || title.section < titles.list[k + 1].section);
  if (inOrder && titles.occurrences[IndexOf(title.section)] == 1) return false;
  if (!RowFollows(titles, title.line, titles.list[k - 1].section)) return false;
  // Where the rows of both sections look alike, the count of the section before decides.
  return !RowFollows(titles, title.line, title.section) || IsShort(titles, k - 1);
}

std::string KeyOf(Section section) { return korvex::FormatOf(section).key; }

Finding AtTitle(const char* code, const TitleLine& title) {
  Finding finding = MakeFinding(code);
  finding.line = title.line + 1;
  finding.table = korvex::FormatOf(title.section).key;
  return finding;
}

void AddDoubled(const TitleLine& title, std::size_t keptLine, FindingList& findings) {
  Finding finding = AtTitle("K004", title);
  finding.message = "count " + KeyOf(title.section) + ": it stands in line " +
                    std::to_string(keptLine + 1) + ", too.";
  finding.remedy = "Remove one of the two, with its rows; rows that are needed go below the other.";
  AddFinding(finding, findings);
}

void AddMisplaced(const TitleLine& title, FindingList& findings) {
  Finding finding = AtTitle("K005", title);
  const bool isFirst = title.section == Section::Materials;
  const auto before = static_cast<Section>(static_cast<int>(title.section) - 1);
  finding.message = "count " + KeyOf(title.section) +
                    ": the section is not where the solver expects it; the order is fixed.";
  finding.remedy = isFirst ? "Move the section behind the header."
                           : "Move the section behind the section " + KeyOf(before) + ".";
  AddFinding(finding, findings);
}

// The line of another title of the same section.
std::size_t FindOther(const Titles& titles, const TitleLine& title) {
  const std::size_t at = IndexOf(title.section);
  return titles.firstLines[at] != title.line ? titles.firstLines[at] : titles.lastLines[at];
}

// Takes titles among the rows of other sections out of the list.
void DropAmongRows(Titles& titles, SectionPlan& plan, FindingList& findings) {
  std::vector<TitleLine> kept;
  for (std::size_t k = 0; k < titles.list.size(); ++k) {
    const TitleLine& title = titles.list[k];
    if (!IsAmongRows(titles, k)) {
      kept.push_back(title);
      continue;
    }
    plan.skipped[title.line] = true;
    std::size_t& occurrences = titles.occurrences[IndexOf(title.section)];
    if (occurrences > 1) {
      AddDoubled(title, FindOther(titles, title), findings);
      --occurrences;
    } else {
      AddMisplaced(title, findings);
      plan.movedTitles.push_back(title.section);
    }
  }
  titles.list = std::move(kept);
}

// Of several titles of one section, keeps the first that is followed by a row of its own, or else
// the first.
void DropDoubled(const Titles& titles, SectionPlan& plan, FindingList& findings) {
  constexpr std::size_t None = static_cast<std::size_t>(-1);
  std::array<std::size_t, SectionCount> first{}, best{};
  first.fill(None);
  best.fill(None);
  for (std::size_t k = 0; k < titles.list.size(); ++k) {
    const std::size_t at = IndexOf(titles.list[k].section);
    if (first[at] == None) first[at] = k;
    if (titles.occurrences[at] < 2 || best[at] != None) continue;
    if (RowFollows(titles, titles.list[k].line, titles.list[k].section)) best[at] = k;
  }
  for (std::size_t k = 0; k < titles.list.size(); ++k) {
    const TitleLine& title = titles.list[k];
    const std::size_t at = IndexOf(title.section);
    const std::size_t kept = best[at] != None ? best[at] : first[at];
    const bool isLast = k + 1 == titles.list.size();
    if (kept == k) {
      plan.ranges.push_back({title.section, title.line,
                             isLast ? titles.lines.size() : titles.list[k + 1].line, false});
    } else {
      AddDoubled(title, titles.list[kept].line, findings);
    }
  }
}

// Marks the ranges that are not in the longest ascending run of sections. There are at most 14.
void MarkMisplaced(SectionPlan& plan, FindingList& findings) {
  std::vector<SectionRange>& ranges = plan.ranges;
  std::array<std::size_t, SectionCount> length{};
  std::size_t longest = 0;
  for (std::size_t k = ranges.size(); k-- > 0;) {
    length[k] = 1;
    for (std::size_t other = k + 1; other < ranges.size(); ++other) {
      if (ranges[k].section < ranges[other].section) {
        length[k] = std::max(length[k], length[other] + 1);
      }
    }
    longest = std::max(longest, length[k]);
  }
  Section last = Section::Header;
  for (std::size_t k = 0; k < ranges.size(); ++k) {
    if (length[k] == longest && ranges[k].section > last) {
      last = ranges[k].section;
      --longest;
      continue;
    }
    ranges[k].isMisplaced = true;
    AddMisplaced({ranges[k].section, ranges[k].title}, findings);
  }
}

}  // namespace

SectionPlan ArrangeSections(std::string_view text, const std::vector<TextLine>& lines,
                            std::vector<TitleLine> titles, FindingList& findings) {
  SectionPlan plan;
  plan.skipped.assign(lines.size(), false);
  Titles all{text, lines, std::move(titles)};
  for (const TitleLine& title : all.list) {
    const std::size_t at = IndexOf(title.section);
    if (++all.occurrences[at] == 1) all.firstLines[at] = title.line;
    all.lastLines[at] = title.line;
  }
  DropAmongRows(all, plan, findings);
  plan.firstTitle = all.list.empty() ? lines.size() : all.list[0].line;
  DropDoubled(all, plan, findings);
  MarkMisplaced(plan, findings);
  return plan;
}

}  // namespace kvx
