#include "finding/findings_text.h"

#include <algorithm>
#include <vector>

#include "finding/code_groups.h"
#include "finding/text_layout.h"

namespace kvx {

namespace {

constexpr const char* Indent = "      ";  // of the further lines of a finding

// All of one length, so that the codes behind them stand in one column.
const char* SeverityLabel(Severity severity) {
  switch (severity) {
    case Severity::Error:
      return "ERROR";
    case Severity::Warning:
      return "WARN ";
    case Severity::Hint:
      return "HINT ";
  }
  return "";
}

// Escape sequences of ECMA-48: bold red, bold yellow, cyan.
const char* ColorOf(Severity severity) {
  switch (severity) {
    case Severity::Error:
      return "\x1B[1;31m";
    case Severity::Warning:
      return "\x1B[1;33m";
    case Severity::Hint:
      return "\x1B[36m";
  }
  return "";
}

constexpr const char* Bold = "\x1B[1m";
constexpr const char* Plain = "\x1B[0m";

std::string Colored(const std::string& text, const char* color, const TextStyle& style) {
  return style.color ? color + text + Plain : text;
}

// "line 7720, column 3: "
std::string PlaceText(const Finding& finding) {
  if (finding.line == 0) return "";
  std::string text = "line " + std::to_string(finding.line);
  if (finding.column > 0) text += ", column " + std::to_string(finding.column);
  return text + ": ";
}

// A headline and a paragraph, indented.
std::string PartText(const std::string& title, const std::string& text, const TextStyle& style) {
  if (text.empty()) return "";
  // Longer lines are hard to read.
  const std::size_t width = std::min(style.width, DefaultWidth);
  return "\n" + Colored(title, Bold, style) + "\n" + WrapText(text, width, "  ", "  ");
}

// A headline and lines of a model file, as they are.
std::string LinesText(const std::string& title, const std::string& lines, const TextStyle& style) {
  if (lines.empty()) return "";
  std::string text = "\n" + Colored(title, Bold, style) + "\n";
  for (std::size_t begin = 0; begin < lines.size();) {
    const std::size_t end = std::min(lines.find('\n', begin), lines.size());
    text += "    " + lines.substr(begin, end - begin) + "\n";
    begin = end + 1;
  }
  return text;
}

}  // namespace

const char* SeverityName(Severity severity) {
  switch (severity) {
    case Severity::Error:
      return "error";
    case Severity::Warning:
      return "warning";
    case Severity::Hint:
      return "hint";
  }
  return "";
}

std::string PaintAs(Severity severity, const std::string& text, const TextStyle& style) {
  const std::size_t end = text.find_last_not_of('\n') + 1;  // line ends stay outside
  return Colored(text.substr(0, end), ColorOf(severity), style) + text.substr(end);
}

std::string NameFinding(const Finding& finding) {
  const std::string place = PlaceText(finding);
  return finding.code + (place.empty() ? ": " : " " + place) + finding.message;
}

std::string FindingText(const Finding& finding, const TextStyle& style) {
  const std::string label = SeverityLabel(finding.severity);
  const std::string text =
      WrapText(PlaceText(finding) + CleanText(finding.message) + ' ' + CleanText(finding.remedy),
               style.width, label + ' ' + finding.code + ' ', Indent);
  return Colored(label, ColorOf(finding.severity), style) + text.substr(label.size()) +
         (finding.origin.empty()
              ? ""
              : WrapText(CleanText(finding.origin), style.width, Indent, Indent));
}

std::string TotalText(const FindingList& list) {
  const std::size_t errors = CountFindings(list, Severity::Error);
  const std::size_t warnings = CountFindings(list, Severity::Warning);
  const std::size_t hints = CountFindings(list, Severity::Hint);
  std::vector<std::string> parts;
  if (errors > 0) parts.push_back(CountText(errors, "error", "errors"));
  if (warnings > 0) parts.push_back(CountText(warnings, "warning", "warnings"));
  if (parts.empty()) parts.emplace_back("No errors, no warnings");
  if (hints > 0) parts.push_back(CountText(hints, "hint", "hints"));
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : ", ") + part;
  return text + ".";
}

std::string ExplanationText(const CodeText& code, const TextStyle& style) {
  const std::string headline = std::string(code.code) + ' ' + code.title + " (" +
                               Colored(SeverityName(code.severity), ColorOf(code.severity), style) +
                               ")\n";
  return headline + PartText("What it means", code.meaning, style) +
         PartText("What the solver does with it", code.solver, style) +
         PartText("What to do", code.remedy, style) + LinesText("Before", code.before, style) +
         LinesText("After", code.after, style);
}

std::string CodeListText(const TextStyle& style) {
  std::string text, group;
  for (const CodeText* code : ListCodes()) {
    if (group != GroupOf(code->code)) {
      text += group.empty() ? "" : "\n";
      group = GroupOf(code->code);
      text += Colored(group, Bold, style) + "\n";
    }
    std::string severity = SeverityName(code->severity);
    const std::size_t padding = std::string("warning").size() - severity.size();
    severity = Colored(severity, ColorOf(code->severity), style) + std::string(padding, ' ');
    text += std::string("  ") + code->code + "  " + severity + "  " + code->title + "\n";
  }
  return text;
}

}  // namespace kvx
