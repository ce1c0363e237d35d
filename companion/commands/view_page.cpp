#include "commands/view_page.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <tuple>
#include <utility>

#include "base/release_vector.h"
#include "commands/origin_words.h"
#include "commands/progress.h"
#include "finding/text_layout.h"
#include "view/corners_block.h"
#include "view/details_block.h"
#include "view/loads_block.h"
#include "view/origin_block.h"
#include "view/results_block.h"
#include "view/section_profile.h"
#include "view/structure_block.h"

namespace kvx {

namespace fs = std::filesystem;
using korvex::Section;

namespace {

// The block goes into the page; its columns stay in the header.
void AddBlock(PageBlock& block, PageDraft& draft) {
  draft.scripts.push_back({block.id, EncodeBlock(block)});
  korvex::ReleaseVector(block.bytes);
  draft.header.blocks.push_back(std::move(block));
}

// The lines of a kind, where the checks have read as many rows as are shown.
std::vector<std::uint32_t> LinesOf(const CheckedModel& model, Section section) {
  const std::vector<std::uint32_t>& lines = model.lines[IndexOf(section)];
  const auto rows = static_cast<std::size_t>(std::max(0, CountRows(model.tables, section)));
  return lines.size() == rows ? lines : std::vector<std::uint32_t>();
}

void CollectRows(const CheckReport& check, RowKnowledge& rows) {
  rows.partOfNode = check.parts.partOfNode;
  rows.lines = {LinesOf(check.model, Section::Nodes), LinesOf(check.model, Section::Shells4),
                LinesOf(check.model, Section::Shells3), LinesOf(check.model, Section::Beams)};
}

// The line of the text, 1-based, without blanks around it.
std::string TakeLine(const std::string& text, std::size_t line) {
  std::size_t begin = 0;
  for (; line > 1 && begin != std::string::npos; --line) {
    begin = text.find('\n', begin);
    if (begin != std::string::npos) ++begin;
  }
  if (begin == std::string::npos) return "";
  const std::size_t end = std::min(text.find('\n', begin), text.size());
  const char* const Blanks = " \t\r";
  const std::size_t first = text.find_first_not_of(Blanks, begin);
  if (first == std::string::npos || first >= end) return "";
  const std::size_t last = text.find_last_not_of(Blanks, end - 1);
  return text.substr(first, last + 1 - first);
}

// The name that people gave to a section: the line above its sizes.
std::string NameSection(const ViewedModel& viewed, const korvex::BeamSectionRef& ref) {
  constexpr auto First = static_cast<std::int32_t>(Section::TBeamSections);
  const auto section = static_cast<Section>(First + ref.BeamSecType);
  const std::vector<std::uint32_t>& lines = viewed.check.model.lines[IndexOf(section)];
  const auto row = static_cast<std::size_t>(ref.BeamSecIndex);
  return row < lines.size() ? CleanText(TakeLine(viewed.file.text, lines[row])) : "";
}

// The folder that the current one is: that of the model.
std::string NameFolder(const std::string& otherwise) {
  std::error_code error;
  const std::string name = fs::current_path(error).filename().u8string();
  return CleanText(error || name.empty() ? otherwise : name);
}

// A block with this id of what `add` puts into it. Returns the id.
template <typename Add>
std::string MakeBlock(const std::string& id, PageDraft& draft, const Add& add) {
  StopIfInterrupted();
  PageBlock block;
  block.id = id;
  add(block);
  AddBlock(block, draft);
  return id;
}

void AddResultBlocks(const std::string& row, const SolvedModel& solved, const AuditReport& audit,
                     PageCase& each, PageDraft& draft) {
  each.results = MakeBlock("results-" + row, draft, [&](PageBlock& block) {
    CaseResults results;
    CollectResults(solved, audit.reactions, audit.beams, results);
    AddResults(results, block);
  });
  if (draft.hasCorners) {
    each.corners = MakeBlock("corners-" + row, draft, [&](PageBlock& block) {
      CornerStresses corners;
      CollectCorners(solved.model, corners);
      AddCorners(corners, block);
    });
  }
  if (!draft.hasDetailModels || solved.model.BeamShellModels.empty()) return;
  each.details = MakeBlock("details-" + row, draft, [&](PageBlock& block) {
    DetailModels details;
    CollectDetails(solved.model, details);
    AddDetails(details, block);
  });
}

// The line is that of another file than the page names. Before the loads most are the same.
void SettleLine(const std::string& text, const std::string& pageText, Finding& finding) {
  if (finding.line == 0 || TakeLine(text, finding.line) == TakeLine(pageText, finding.line)) return;
  finding.message =
      "line " + std::to_string(finding.line) + " of its model file: " + finding.message;
  finding.line = 0;
}

// "case \"uls\"", "3 cases, first \"uls\""
std::string NameCases(const std::vector<std::size_t>& cases, const PageHeader& header) {
  const std::string first = '"' + header.cases[cases.front()].name + '"';
  if (cases.size() == 1) return "case " + first;
  return std::to_string(cases.size()) + " cases, first " + first;
}

bool IsSame(const Finding& a, const Finding& b) {
  return std::tie(a.code, a.line, a.message, a.rows) == std::tie(b.code, b.line, b.message, b.rows);
}

}  // namespace

void BeginPage(const ViewedModel& viewed, PageDraft& draft) {
  PageHeader& header = draft.header;
  draft.tables = TablesOf(viewed);
  const std::string file = fs::u8path(viewed.file.file).filename().u8string();
  header.title = NameFolder(file);
  header.file = CleanText(file);
  header.parts = viewed.check.parts.nodeCounts.size();
  draft.modelText = viewed.file.text;
  for (const std::string& sentence : viewed.check.model.notChecked) AddNotice(sentence, draft);

  header.origin = viewed.check.origin;
  RowKnowledge rows;
  CollectRows(viewed.check, rows);
  header.firstLines = FirstLines(rows);
  BeamSections sections;
  GroupBeamSections(draft.tables, sections);
  for (const korvex::BeamSectionRef& ref : sections.groups) {
    SectionProfile& profile = header.sections.emplace_back(MakeSectionProfile(draft.tables, ref));
    profile.name = NameSection(viewed, ref);
    profile.origin =
        NameOfGroup(header.origin, Grouping::Section, ref.BeamSecType, ref.BeamSecIndex);
  }
  MakeBlock("structure", draft, [&](PageBlock& block) {
    AddStructure(draft.tables, sections, rows, block);
    AddOrigin(header.origin, block);
  });
}

void AddPageFindings(bool isStructure, const ViewedModel& viewed, const FindingList& findings,
                     PageDraft& draft) {
  const std::size_t row = draft.header.cases.size();
  const bool isSameText = viewed.file.text == draft.modelText;
  for (Finding finding : findings.findings) {
    if (!isSameText) SettleLine(viewed.file.text, draft.modelText, finding);
    const auto isSame = [&](const PageFinding& other) { return IsSame(finding, other.finding); };
    const auto same = std::find_if(draft.findings.begin(), draft.findings.end(), isSame);
    if (same == draft.findings.end()) {
      PageFinding& added = draft.findings.emplace_back();
      added.finding = std::move(finding);
      if (!isStructure) added.cases = {row};
    } else if (!same->cases.empty()) {
      if (same->cases.back() != row) same->cases.push_back(row);
      if (isStructure) same->cases.clear();
    }
  }
}

void AddNotice(const std::string& notice, PageDraft& draft) {
  std::vector<std::string>& notices = draft.header.notices;
  const bool isThere = std::find(notices.begin(), notices.end(), notice) != notices.end();
  if (!notice.empty() && !isThere) notices.push_back(notice);
}

void AddPageCase(const std::string& name, const ViewedModel& viewed, const AuditReport& audit,
                 PageDraft& draft) {
  const std::string row = std::to_string(draft.header.cases.size());
  PageCase each;
  each.name = name;
  each.isSolved = viewed.isSolved;
  each.note = viewed.note;
  each.loads = MakeBlock("loads-" + row, draft, [&](PageBlock& block) {
    CaseLoads loads;
    CollectLoads(TablesOf(viewed), loads);
    AddLoads(loads, block);
  });
  if (viewed.isSolved) AddResultBlocks(row, viewed.solved, audit, each, draft);
  draft.header.cases.push_back(std::move(each));
}

void EndPage(PageDraft& draft) {
  PageHeader& header = draft.header;
  for (PageFinding& each : draft.findings) {
    if (!each.cases.empty() && each.cases.size() < header.cases.size()) {
      each.finding.message = NameCases(each.cases, header) + ": " + each.finding.message;
    }
    header.findings.push_back(std::move(each.finding));
  }
  draft.findings.clear();
  std::stable_sort(header.findings.begin(), header.findings.end(),
                   [](const Finding& a, const Finding& b) { return a.severity < b.severity; });
}

}  // namespace kvx
