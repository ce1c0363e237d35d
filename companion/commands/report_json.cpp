// The JSON of check_report.h.
#include <cmath>
#include <nlohmann/json.hpp>

#include "commands/check_report.h"
#include "commands/model_summary.h"

namespace kvx {

namespace {

using Json = nlohmann::ordered_json;

Json NumberOrNull(std::size_t number) { return number > 0 ? Json(number) : Json(nullptr); }

Json VectorJson(const korvex::Vector3& vector) {
  Json json = Json::array();
  // Without a sign of zero.
  for (const double x : vector) json.push_back(std::isfinite(x) ? Json(x + 0.0) : Json(nullptr));
  return json;
}

Json LoadsJson(const LoadSums& loads) {
  const std::array<double, 6>& F = loads.sums;
  Json json;
  json["force"] = VectorJson({F[0], F[1], F[2]});
  json["moment"] = VectorJson({F[3], F[4], F[5]});
  json["point"] = loads.hasLine ? VectorJson(loads.point) : Json(nullptr);
  return json;
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
  json["position"] = finding.hasPosition ? VectorJson(finding.position) : Json(nullptr);
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
  json["loads"] = LoadsJson(report.loads);
  json["findings"] = std::move(findings);
  json["errors"] = CountFindings(report.findings, Severity::Error);
  json["warnings"] = CountFindings(report.findings, Severity::Warning);
  json["hints"] = CountFindings(report.findings, Severity::Hint);

  constexpr int OneLine = -1;
  constexpr bool AsAscii = true;
  return json.dump(OneLine, ' ', AsAscii, Json::error_handler_t::replace) + '\n';
}

}  // namespace kvx
