#include "check/check_text.h"

#include <algorithm>
#include <string>

#include "check/characters.h"
#include "check/check_header.h"
#include "check/list_sections.h"
#include "check/mend_text.h"
#include "check/read_checked.h"
#include "check/scan_row.h"
#include "check/settle_rows.h"
#include "check/solver_reading.h"

namespace kvx {

using korvex::Section;

namespace {

// Bit k: section k is as it should be, so that its running numbers say something.
using SoundSections = std::array<bool, SectionCount>;

void MarkElements(CheckedModel& model) {
  const auto& lostNodes = model.lostRows[IndexOf(Section::Nodes)];
  for (const Section section : ElementSections) {
    std::vector<ElementState>& states = model.states[KindOf(section)];
    states.assign(static_cast<std::size_t>(CountRows(model.tables, section)), ElementState::Sound);
    for (const std::int32_t row : model.lostRows[IndexOf(section)]) {
      states[static_cast<std::size_t>(row)] = ElementState::Unusable;
    }
    for (std::size_t row = 0; !lostNodes.empty() && row < states.size(); ++row) {
      const ElementNodes element = NodesOf(model.tables, section, static_cast<std::int32_t>(row));
      const bool usesLost =
          std::any_of(element.nodes, element.nodes + element.count,
                      [&](std::int32_t node) { return lostNodes.count(node) > 0; });
      if (usesLost) states[row] = ElementState::Unusable;
    }
  }
}

void AddRunningNumbers(const CheckedReading& reading, const SoundSections& sound,
                       const CheckedModel& model, FindingList& findings) {
  for (std::size_t k = 0; k < SectionCount; ++k) {
    const RunningNumbers& numbers = reading.numbers[k];
    if (numbers.firstRow < 0 || !sound[k]) continue;
    const korvex::SectionFormat& format = korvex::FormatOf(static_cast<Section>(k));
    Finding finding = MakeFinding("K017");
    finding.line = LineOf(model, format.section, numbers.firstRow);
    finding.table = format.key;
    finding.rows = {numbers.firstRow};
    finding.message = std::string(format.rows) + ": row " + std::to_string(numbers.firstRow) +
                      " has the number " + std::to_string(numbers.number);
    if (numbers.others > 1) {
      finding.message += ", and " + std::to_string(numbers.others - 1) + " more are out of step";
    }
    finding.message += "; the solver counts rows from 0 and does not look at the numbers.";
    finding.remedy = "Number the rows 0, 1, 2, ..., and look whether what refers to them is right.";
    AddFinding(finding, findings);
  }
}

void GiveUp(CheckedModel& model) {
  model = {};
  model.notChecked.emplace_back("Only the text was checked: no model can be read from the file.");
}

void AddUnreadable(std::size_t line, const std::string& what, CheckedModel& model,
                   FindingList& findings) {
  Finding finding = MakeFinding("K019");
  finding.line = line;
  finding.message = "file: " + what;
  finding.remedy = "Mend what else is named, and check again.";
  AddFinding(finding, findings);
  GiveUp(model);
}

std::size_t CountLines(std::string_view text, std::size_t byte) {
  const std::string_view before = text.substr(0, byte);
  return static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')) + 1;
}

// The slip of the reader itself, where the lines show nothing.
void AddSlip(std::string_view text, const Slip& slip, FindingList& findings) {
  const std::size_t feed = slip.byte > 0 ? text.rfind('\n', slip.byte - 1) : std::string_view::npos;
  Finding finding = MakeFinding("K011");
  finding.line = CountLines(text, slip.byte);
  finding.column = slip.byte - (feed == std::string_view::npos ? 0 : feed + 1) + 1;
  finding.message = "file: it is not read as it is written from here on.";
  finding.remedy = "Write the row as the others are.";
  AddFinding(finding, findings);
}

// The error with the smallest line gets the words about what the solver makes of it.
void TellSolverReading(std::string_view text, const Slip& slip, FindingList& findings) {
  Finding* first = nullptr;
  for (Finding& finding : findings.findings) {
    if (finding.severity != Severity::Error) continue;
    if (first == nullptr || finding.line < first->line) first = &finding;
  }
  if (first == nullptr) return;
  const std::string sentences = DescribeSolverReading(text, slip, *first);
  if (!sentences.empty()) first->message += " " + sentences;
}

// If the file ends before its last sections, that is the finding; rows that the last one lacks, and
// the row in which it breaks off, are part of it.
void ForgiveBrokenEnd(std::string_view text, SectionTexts& sections) {
  auto& parts = sections.parts;
  if (parts.back().titleLine > 0 || !parts.back().items.empty()) return;
  SectionText* last = &parts[1];
  for (SectionText& part : parts) {
    if (part.titleLine > last->titleLine) last = &part;
  }
  last->isNamed = true;
  if (last->items.empty()) return;
  const bool breaksOff = last->items.back().end == text.size() || HasSeveralLines(last->section);
  if (!breaksOff || !Trim(text.substr(last->items.back().end)).empty()) return;
  if (last->items.back().kind == ItemKind::Broken || last->items.back().kind == ItemKind::Stray) {
    last->items.pop_back();
  }
}

// Whether nothing at all of some section was found. What refers to its rows cannot be examined
// then.
bool LacksSections(const SectionTexts& sections) {
  return std::any_of(sections.parts.begin() + 1, sections.parts.end(), [](const SectionText& part) {
    return part.titleLine == 0 && part.items.empty();
  });
}

bool IsSound(const SectionText& part) {
  return part.titleLine > 0 && !part.isNamed &&
         static_cast<std::int64_t>(part.items.size()) == part.count &&
         std::all_of(part.items.begin(), part.items.end(),
                     [](const TextItem& item) { return item.kind == ItemKind::Whole; });
}

// The lines one by one. Fills the model from a mended text.
void CheckLines(std::string_view text, CheckedModel& model, FindingList& findings) {
  SectionTexts sections;
  ListSections(text, sections, findings);
  CheckHeader(text, sections.hasTitles, sections.parts[0], findings);
  ForgiveBrokenEnd(text, sections);
  SoundSections sound{};
  for (std::size_t k = 1; k < SectionCount; ++k) {
    SettleRows({sections.lineCount, text.size()}, k + 1 == SectionCount, sections.parts[k],
               findings);
    sound[k] = IsSound(sections.parts[k]);
  }
  std::string mended;
  MendText(text, sections, mended, model, findings);
  if (LacksSections(sections)) {
    GiveUp(model);
    return;
  }
  CheckedModel reread;
  const CheckedReading reading = ReadChecked(mended, reread);
  if (!reading.isWhole) {
    AddUnreadable(1, reading.slip.stop.empty() ? "it cannot be understood." : reading.slip.stop,
                  model, findings);
    return;
  }
  model.tables = std::move(reread.tables);
  AddRunningNumbers(reading, sound, model, findings);
}

bool HasTail(std::string_view text, const CheckedReading& reading) {
  return !Trim(text.substr(reading.end)).empty();
}

// A file with a slip, or with text behind its end.
void CheckSlips(std::string_view text, const CheckedReading& original, CheckedModel& model,
                FindingList& findings) {
  PlainText plain{original.isWhole, text, ""};
  if (!original.isWhole) FindPlainText(text, plain, findings);
  if (!plain.isUsable) {
    GiveUp(model);
    TellSolverReading(text, original.slip, findings);
    return;
  }
  // Where only the bytes were wrong, nothing else is.
  CheckedReading reading = original;
  if (plain.text.data() != text.data()) {
    model = {};
    reading = ReadChecked(plain.text, model);
  }
  if (!reading.isWhole || HasTail(plain.text, reading)) {
    CheckedModel mended;
    CheckLines(plain.text, mended, findings);
    const bool hasErrors = CountFindings(findings, Severity::Error) > 0;
    if (!reading.isWhole || hasErrors) model = std::move(mended);
    if (!reading.isWhole && !hasErrors) AddSlip(text, original.slip, findings);
  } else {
    SoundSections sound{};
    sound.fill(true);
    AddRunningNumbers(reading, sound, model, findings);
  }
  if (!original.isWhole) TellSolverReading(text, original.slip, findings);
}

}  // namespace

void CheckText(std::string_view text, CheckedModel& model, FindingList& findings) {
  const CheckedReading reading = ReadChecked(text, model);
  if (reading.slip.isOutOfMemory) {
    AddUnreadable(0, reading.slip.stop, model, findings);
    return;
  }
  if (reading.isWhole && !HasTail(text, reading)) {
    SoundSections sound{};
    sound.fill(true);
    AddRunningNumbers(reading, sound, model, findings);
  } else {
    CheckSlips(text, reading, model, findings);
  }
  MarkElements(model);
}

}  // namespace kvx
