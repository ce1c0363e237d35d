#include "check/mend_text.h"

#include <algorithm>

#include "check/diagnose_line.h"
#include "check/mend_row.h"
#include "check/scan_row.h"

namespace kvx {

using korvex::Section;

namespace {

void AddStray(std::string_view text, const TextItem& item, Section section, std::int32_t row,
              FindingList& findings) {
  Finding finding;
  DiagnoseStray(text.substr(item.begin, item.end - item.begin), finding);
  finding.line = item.line;
  finding.table = korvex::FormatOf(section).key;
  if (item.kind == ItemKind::StrayRow) {
    finding.rows = {row};
    if (section == Section::Nodes) finding.nodes = {row};
  }
  AddFinding(finding, findings);
}

// Appends one row, and marks it unless it is whole.
void MendItem(std::string_view text, const TextItem& item, Section section, std::int32_t row,
              std::string& mended, CheckedModel& model, FindingList& findings) {
  if (item.kind == ItemKind::Whole) {
    mended.append(text.substr(item.begin, item.end - item.begin));
    if (mended.back() != '\n') mended += '\n';
    return;
  }
  MendedRow values;
  values.isLost = true;
  if (item.kind == ItemKind::Broken) {
    values = HasSeveralLines(section) ? MendBlock(text, item, section, row, findings)
                                      : MendLine(text, item, section, row, findings);
  } else if (HasRunningNumber(section)) {
    values.values[0] = row;
  }
  WriteRow(section, values.values.data(), mended);
  model.doubtfulRows[IndexOf(section)].insert(row);
  if (values.isLost) model.lostRows[IndexOf(section)].insert(row);
}

void MendSection(std::string_view text, const SectionText& part, std::string& mended,
                 CheckedModel& model, FindingList& findings) {
  const Section section = part.section;
  const auto rows = std::count_if(part.items.begin(), part.items.end(),
                                  [](const TextItem& item) { return IsRow(item.kind); });
  const std::string_view title = korvex::FormatOf(section).title;
  mended.append(title.substr(0, title.find('%')));
  mended += std::to_string(rows) + "\n";
  model.titleLines[IndexOf(section)] = part.titleLine;
  std::int32_t row = 0;
  for (const TextItem& item : part.items) {
    if (item.kind == ItemKind::Stray || item.kind == ItemKind::StrayRow) {
      AddStray(text, item, section, row, findings);
    }
    if (!IsRow(item.kind)) continue;
    MendItem(text, item, section, row, mended, model, findings);
    model.lines[IndexOf(section)].push_back(item.line);
    ++row;
  }
}

}  // namespace

void MendText(std::string_view text, const SectionTexts& sections, std::string& mended,
              CheckedModel& model, FindingList& findings) {
  mended += "### Toln_Korvex release=3.0 ###\n";
  for (std::size_t k = 1; k < SectionCount; ++k) {
    MendSection(text, sections.parts[k], mended, model, findings);
  }
}

}  // namespace kvx
