// kvx explain: what a finding means and what to do.
#include <algorithm>
#include <cctype>

#include "commands/commands.h"
#include "finding/codes.h"
#include "finding/findings_page.h"
#include "finding/findings_text.h"
#include "finding/nearest_word.h"

namespace kvx {

namespace {

std::string UpperCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return text;
}

void ComplainAboutCode(const std::string& typed) {
  std::vector<std::string> codes;
  for (const CodeText* code : ListCodes()) codes.emplace_back(code->code);
  std::string text = "there is no code \"" + typed + "\".";
  // More of them would be no help.
  constexpr std::size_t MostNamed = 5;
  std::vector<std::string> nearest = FindNearest(UpperCase(typed), codes);
  if (nearest.size() > MostNamed) nearest.resize(MostNamed);
  for (std::size_t i = 0; i < nearest.size(); ++i) {
    text += (i == 0 ? " Did you mean " : i + 1 == nearest.size() ? " or " : ", ") + nearest[i];
  }
  if (!nearest.empty()) text += '?';
  Complain("kvx explain", text + " \"kvx explain\" lists all codes.");
}

}  // namespace

ExitStatus RunExplain(const ExplainCommand& command) {
  if (command.page) return WriteOutput(FindingsPage());
  const TextStyle style = ChooseStyle(command.color);
  if (command.codes.empty()) return WriteOutput(CodeListText(style));
  std::string text;
  for (const std::string& typed : command.codes) {
    const CodeText* code = FindCode(UpperCase(typed));
    if (code == nullptr) {
      ComplainAboutCode(typed);
      return ExitUsage;
    }
    text += (text.empty() ? "" : "\n\n") + ExplanationText(*code, style);
  }
  return WriteOutput(text);
}

}  // namespace kvx
