#include "commands/check_loads_file.h"

#include <algorithm>
#include <array>
#include <utility>

#include "cases/load_tables.h"
#include "check/check_load_sizes.h"
#include "check/check_loads.h"
#include "check/check_numbers.h"
#include "check/check_text.h"
#include "check/fixed_dofs.h"
#include "check/table_rows.h"
#include "deck/row_formats.h"

namespace kvx {

using korvex::Section;

namespace {

constexpr std::array<Section, 4> LoadSections{Section::Forces, Section::Shell4Loads,
                                              Section::Shell3Loads, Section::BeamLoads};

// A line of the isolated text as one of the file; 0 for one before the loads.
std::size_t LineInFile(std::size_t line, const LoadText& isolated) {
  return line > isolated.emptyLines ? line - isolated.emptyLines + isolated.skippedLines : 0;
}

// The findings of the text name a line within their message, too: "it stands in line 24".
void MoveLineInMessage(const LoadText& isolated, std::string& message) {
  const std::string before = " in line ";
  const std::size_t found = message.find(before);
  if (found == std::string::npos) return;
  const std::size_t begin = found + before.size();
  const std::size_t end = message.find_first_not_of("0123456789", begin);
  constexpr std::size_t MostDigits = 18;
  if (end == begin || std::min(end, message.size()) - begin > MostDigits) return;
  const std::size_t line = std::stoull(message.substr(begin, end - begin));
  message.replace(begin, std::min(end, message.size()) - begin,
                  std::to_string(LineInFile(line, isolated)));
}

// Moves all lines to those of the file.
void MoveLines(const LoadText& isolated, CheckedModel& loads, FindingList& findings) {
  for (Finding& finding : findings.findings) {
    finding.line = LineInFile(finding.line, isolated);
    MoveLineInMessage(isolated, finding.message);
  }
  for (const Section section : LoadSections) {
    std::uint32_t& title = loads.titleLines[IndexOf(section)];
    title = static_cast<std::uint32_t>(LineInFile(title, isolated));
    for (std::uint32_t& line : loads.lines[IndexOf(section)]) {
      line = static_cast<std::uint32_t>(LineInFile(line, isolated));
    }
  }
}

void SwapCheckedLoads(CheckedModel& a, CheckedModel& b) {
  SwapLoads(a.tables, b.tables);
  for (const Section section : LoadSections) {
    const std::size_t k = IndexOf(section);
    a.lines[k].swap(b.lines[k]);
    std::swap(a.titleLines[k], b.titleLines[k]);
    a.doubtfulRows[k].swap(b.doubtfulRows[k]);
    a.lostRows[k].swap(b.lostRows[k]);
  }
}

bool IsOfLoads(const Finding& finding) {
  return std::any_of(LoadSections.begin(), LoadSections.end(), [&](Section section) {
    return std::string_view(finding.table) == korvex::FormatOf(section).key;
  });
}

// The checks of loads, on the structure with these loads.
void CheckRows(const CheckReport& structure, CheckedModel& model, FindingList& findings) {
  TableUse use;
  CountUse(model, use);
  FixedDofs dofs;
  CollectFixedDofs(model, dofs);
  CheckNumbers(use, model, findings);
  CheckLoads(model, structure.parts, dofs, findings);
  CheckLoadSizes(model, use, findings);
}

}  // namespace

void CheckLoadsFile(std::string_view text, CheckReport& structure, FindingList& findings,
                    std::string& loads) {
  LoadText isolated;
  IsolateLoads(text, isolated);
  CheckedModel own;
  CheckText(isolated.text, own, findings);
  MoveLines(isolated, own, findings);

  SwapCheckedLoads(structure.model, own);
  const auto ofText = static_cast<std::ptrdiff_t>(findings.findings.size());
  CheckRows(structure, structure.model, findings);
  SwapCheckedLoads(structure.model, own);
  const auto isOther = [](const Finding& finding) { return !IsOfLoads(finding); };
  std::vector<Finding>& list = findings.findings;
  list.erase(std::remove_if(list.begin() + ofText, list.end(), isOther), list.end());
  SortFindings(findings);
  loads = std::move(isolated.text);
}

}  // namespace kvx
