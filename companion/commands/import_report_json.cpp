#include "commands/import_report_json.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace kvx {

namespace {

using Json = nlohmann::ordered_json;

void AddPlace(const ImportReport& report, SourcePlace place, Json& json) {
  const auto file = static_cast<std::size_t>(place.file);  // very large if negative
  json["file"] = file < report.files.size() ? Json(report.files[file]) : Json(nullptr);
  json["line"] = place.line > 0 ? Json(place.line) : Json(nullptr);
}

const char* FateName(Fate fate) {
  switch (fate) {
    case Fate::Limited:
      return "limited";
    case Fate::NoEffect:
      return "no effect";
    case Fate::Lost:
      return "lost";
    case Fate::Refused:
      return "refused";
  }
  return "";
}

}  // namespace

Json ImportReportJson(const ImportReport& report) {
  Json json;
  // The library looks at all keys before it adds one; those of a map are different.
  Json::object_t cards;
  for (const auto& [card, count] : report.cards) {
    Json entry;
    entry["count"] = count.count;
    AddPlace(report, count.first, entry);
    cards.push_back({card, std::move(entry)});
  }
  json["cards"] = std::move(cards);
  json["entries"] = Json::array();
  for (const ReportEntry& entry : report.entries) {
    Json item;
    item["card"] = entry.card;
    item["fate"] = FateName(entry.fate);
    item["reason"] = entry.reason;
    item["count"] = entry.count;
    AddPlace(report, entry.first, item);
    item["example"] = entry.example;
    json["entries"].push_back(std::move(item));
  }
  return json;
}

}  // namespace kvx
