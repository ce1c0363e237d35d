// The JSON of check_report.h.
#include <cmath>
#include <nlohmann/json.hpp>

#include "commands/check_report.h"
#include "commands/model_summary.h"

namespace kvx {

namespace {

using Json = nlohmann::ordered_json;

Json NumberOrNull(std::size_t number) { return number > 0 ? Json(number) : Json(nullptr); }

Json PositionJson(const Finding& finding) {
  if (!finding.hasPosition) return nullptr;
  Json position = Json::array();
  for (const double x : finding.position) {
    position.push_back(std::isfinite(x) ? Json(x) : Json(nullptr));
  }
  return position;
}

Json FindingJson(const Finding& finding) {
  Json json;
  json["code"] = finding.code;
  json["severity"] = SeverityName(finding.severity);
  json["line"] = NumberOrNull(finding.line);
  json["column"] = NumberOrNull(finding.column);
  json["table"] = *finding.table == '\0' ? Json(nullptr) : Json(finding.table);
  json["rows"] = finding.rows;
  json["nodes"] = finding.nodes;
  json["position"] = PositionJson(finding);
  json["message"] = finding.message;
  json["remedy"] = finding.remedy;
  return json;
}

}  // namespace

std::string ReportJson(const CheckReport& report) {
  Json model = Json::object(), findings = Json::array();
  for (const auto& [key, count] : CountTables(report.model)) model[key] = count;
  for (const Finding& finding : report.findings.findings) findings.push_back(FindingJson(finding));

  Json json;
  json["model"] = std::move(model);
  json["loads"] = Json::object();
  json["findings"] = std::move(findings);
  json["errors"] = CountFindings(report.findings, Severity::Error);
  json["warnings"] = CountFindings(report.findings, Severity::Warning);
  json["hints"] = CountFindings(report.findings, Severity::Hint);

  constexpr int OneLine = -1;
  constexpr bool AsAscii = true;
  return json.dump(OneLine, ' ', AsAscii, Json::error_handler_t::replace) + '\n';
}

}  // namespace kvx
