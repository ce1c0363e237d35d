#include "mesh/nastran/read_structure.h"

#include <algorithm>
#include <array>

namespace kvx::test {

void ReadStructureText(const std::string& text, StructureOfText& structure) {
  ReadDeckText(text, structure.read);
  TakeNastranStructure(structure.read.deck, structure.model, structure.numbers, structure.systems,
                       structure.read.report);
}

std::vector<std::string> Entries(const ImportReport& report) {
  constexpr std::array<const char*, 4> Names = {"limited", "no effect", "lost", "refused"};
  std::vector<std::string> texts;
  for (const ReportEntry& entry : report.entries) {
    texts.push_back(entry.card + ' ' + Names[static_cast<std::size_t>(entry.fate)] + ' ' +
                    std::to_string(entry.count) + ": " + entry.reason + " (" + entry.example + ')');
  }
  std::sort(texts.begin(), texts.end());
  return texts;
}

bool HasEntry(const ImportReport& report, std::string_view card, Fate fate,
              std::string_view reason) {
  return std::any_of(report.entries.begin(), report.entries.end(), [&](const ReportEntry& entry) {
    return entry.card == card && entry.fate == fate &&
           entry.reason.substr(0, reason.size()) == reason;
  });
}

}  // namespace kvx::test
