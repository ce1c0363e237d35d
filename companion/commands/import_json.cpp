// The JSON of import_outcome.h.
#include <nlohmann/json.hpp>

#include "commands/check_report.h"
#include "commands/findings_json.h"
#include "commands/import_outcome.h"
#include "commands/import_report_json.h"
#include "commands/number_json.h"
#include "commands/result_table.h"

namespace kvx {

namespace {

using Json = nlohmann::ordered_json;

Json MergedJson(const ImportOutcome& outcome) {
  if (!outcome.hasMerged) return nullptr;
  Json json;
  json["length"] = NumberJson(outcome.mergeLength);
  json["nodes"] = outcome.merged.merged;
  json["triangles"] = outcome.merged.triangles;
  json["collapsed"] = outcome.merged.collapsed;
  return json;
}

Json CasesJson(const ImportOutcome& outcome) {
  Json list = Json::array();
  for (const ImportedCase& each : outcome.cases) {
    Json one;
    one["name"] = each.name;
    one["deck_name"] = each.deckName;
    one["loads"] = each.file.empty() ? Json(nullptr) : Json(each.file);
    one["force"] = HasCaseFile(outcome) ? VectorJson(each.force) : Json(nullptr);
    one["acceleration"] = each.hasAcceleration ? VectorJson(each.acceleration) : Json(nullptr);
    list.push_back(std::move(one));
  }
  return list;
}

// Entries are of 8 bytes, work is in floating-point operations.
Json CostJson(const OrderCost& cost) {
  Json json;
  json["entries"] = NumberJson(cost.entries);
  json["work"] = NumberJson(cost.work);
  return json;
}

void AddWritten(const ImportOutcome& outcome, Json& json) {
  json["folder"] = outcome.folder;
  json["files"] = outcome.files;
  json["removed"] = outcome.writing.removed;
  json["left"] = outcome.writing.left;
  json["cases"] = CasesJson(outcome);
  Json order = CostJson(outcome.orderCost);
  order["name"] = outcome.orderName;
  order["given"] = CostJson(outcome.givenCost);
  json["order"] = std::move(order);
  json["check"] = Json::parse(ReportJson(outcome.check));
  json["loads_files"] = Json::array();
  for (const LoadsFindings& loads : outcome.loadsFiles) {
    Json one;
    one["file"] = loads.file;
    AddFindingsJson(loads.findings, one);
    json["loads_files"].push_back(std::move(one));
  }
}

}  // namespace

std::string ImportJson(const ImportOutcome& outcome, ExitStatus status) {
  Json json;
  json["deck"] = outcome.deck;
  json["format"] = outcome.format;
  json["status"] = static_cast<int>(status);
  json["written"] = outcome.end == ImportEnd::Written;
  json["sources"] = outcome.report.files;
  json.update(ImportReportJson(outcome.report));
  json["merged"] = MergedJson(outcome);
  json["only_case"] = outcome.onlyCase.empty() ? Json(nullptr) : Json(outcome.onlyCase);
  json["other_cases"] = outcome.otherCases;
  if (outcome.end == ImportEnd::Written) AddWritten(outcome, json);
  return JsonLine(json);
}

}  // namespace kvx
