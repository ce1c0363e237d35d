#include "mesh/import_report.h"

#include "report/stop.h"

namespace kvx {

void CountCard(std::string_view card, SourcePlace place, ImportReport& report) {
  CardCount& count = report.cards[std::string(card)];
  if (count.count == 0) count.first = place;
  ++count.count;
}

void ReportCard(std::string_view card, Fate fate, std::string_view reason, SourcePlace place,
                std::string_view example, ImportReport& report, std::size_t count) {
  std::string key(card);
  key += '\n';
  key += std::to_string(static_cast<int>(fate));
  key += reason;
  const auto [at, isNew] = report.entryRows.emplace(std::move(key), report.entries.size());
  if (isNew) {
    report.entries.push_back(
        {std::string(card), fate, std::string(reason), 0, place, std::string(example)});
  }
  report.entries[at->second].count += count;
}

std::size_t CountFate(const ImportReport& report, Fate fate) {
  std::size_t count = 0;
  for (const ReportEntry& entry : report.entries) count += entry.fate == fate ? entry.count : 0;
  return count;
}

std::string PlaceText(const ImportReport& report, SourcePlace place) {
  std::string text;
  const auto file = static_cast<std::size_t>(place.file);
  if (report.files.size() > 1 && file < report.files.size()) text = report.files[file];
  if (place.line == 0) return text;
  if (!text.empty()) text += ", ";
  return text + "line " + std::to_string(place.line);
}

void StopImport(const ImportReport& report, SourcePlace place, const std::string& text) {
  std::string where;
  const auto file = static_cast<std::size_t>(place.file);
  if (file < report.files.size()) where = '"' + report.files[file] + '"';
  if (place.line > 0) where += ", line " + std::to_string(place.line);
  throw korvex::Stop{korvex::StopKind::Notice, where + ": " + text};
}

}  // namespace kvx
