// The JSON of check_report.h.
#include <nlohmann/json.hpp>

#include "commands/check_report.h"
#include "commands/findings_json.h"
#include "commands/model_summary.h"
#include "commands/number_json.h"
#include "commands/result_table.h"

namespace kvx {

namespace {

using Json = nlohmann::ordered_json;

Json LoadsJson(const LoadSums& loads) {
  const std::array<double, 6>& F = loads.sums;
  Json json;
  json["force"] = VectorJson({F[0], F[1], F[2]});
  json["moment"] = VectorJson({F[3], F[4], F[5]});
  json["point"] = loads.hasLine ? VectorJson(loads.point) : Json(nullptr);
  return json;
}

}  // namespace

std::string ReportJson(const CheckReport& report) {
  Json model = Json::object();
  for (const auto& [key, count] : CountTables(report.model)) model[key] = count;

  Json json;
  json["model"] = std::move(model);
  json["loads"] = LoadsJson(report.loads);
  AddFindingsJson(report.findings, report.origin, report.model.tables, json);
  if (HasOrigin(report.origin)) {
    json["origin"] = {{"source", report.origin.source}, {"format", report.origin.format}};
  } else if (report.hasForeignOrigin) {
    json["origin"] = nullptr;
  }
  return JsonLine(json);
}

}  // namespace kvx
