#include "finding/findings_page.h"

#include <string_view>

#include "finding/code_groups.h"
#include "finding/findings_text.h"
#include "finding/text_layout.h"

namespace kvx {

namespace {

constexpr const char* Opening =
    "# What `kvx check` and `kvx audit` find\n"
    "\n"
    "Each kind of finding has a code, which keeps its meaning. `kvx explain K104` shows the text "
    "of\n"
    "one, `kvx explain` lists all. The group K7xx comes from `kvx audit`, all others from\n"
    "`kvx check`. How the commands are used stands in [the page of the companion](companion.md).\n"
    "\n"
    "- An **error** stops the run, or makes its results wrong or not numbers.\n"
    "- A **warning** is nearly always a mistake.\n"
    "- A **hint** is good to know.\n"
    "\n"
    "This page is written by `kvx explain --page`.\n";

// What Markdown would take as a mark within a line.
std::string EscapeMarks(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (std::string_view("\\`*<[|").find(c) != std::string_view::npos) escaped += '\\';
    escaped += c;
  }
  return escaped;
}

// What Markdown would take as a headline or a list where it begins a line.
bool IsMarkAtLineStart(std::string_view line) {
  const std::size_t end = line.find_first_not_of("0123456789");
  if (end == 0) return std::string_view("#+->=").find(line[0]) != std::string_view::npos;
  return end != std::string_view::npos && (line[end] == '.' || line[end] == ')');
}

std::string EscapeLineStarts(const std::string& lines) {
  std::string escaped;
  for (std::size_t begin = 0; begin < lines.size();) {
    const std::size_t end = lines.find('\n', begin) + 1;
    const std::string_view line = std::string_view(lines).substr(begin, end - begin);
    if (IsMarkAtLineStart(line)) {
      // Behind the number of a list, else in front.
      const std::size_t at = line.find_first_not_of("0123456789");
      escaped += line.substr(0, at);
      escaped += '\\';
      escaped += line.substr(at);
    } else {
      escaped += line;
    }
    begin = end;
  }
  return escaped;
}

std::string Paragraph(const std::string& title, std::string_view text) {
  if (text.empty()) return "";
  const std::string first = title.empty() ? "" : "**" + title + "** ";
  return "\n" + EscapeLineStarts(WrapText(EscapeMarks(text), DefaultWidth, first, ""));
}

std::string Lines(const std::string& title, const std::string& lines) {
  if (lines.empty()) return "";
  return "\n" + title + ":\n\n```\n" + lines + "\n```\n";
}

}  // namespace

std::string FindingSection(const CodeText& code) {
  return "\n### " + std::string(code.code) + " " + EscapeMarks(code.title) + "\n\n" +
         "Severity: " + SeverityName(code.severity) + ".\n" + Paragraph("", code.meaning) +
         Paragraph("What the solver does with it.", code.solver) +
         Paragraph("What to do.", code.remedy) + Lines("Before", code.before) +
         Lines("After", code.after);
}

std::string FindingsPage() {
  std::string page = Opening, group;
  for (const CodeText* code : ListCodes()) {
    if (group != GroupOf(code->code)) {
      group = GroupOf(code->code);
      page += "\n## " + std::string(code->code).substr(0, 2) + "xx " + group + "\n";
    }
    page += FindingSection(*code);
  }
  return page;
}

}  // namespace kvx
