#include "commands/findings_json.h"

#include <nlohmann/json.hpp>

#include "commands/number_json.h"
#include "commands/origin_words.h"
#include "finding/findings_text.h"

namespace kvx {

namespace {

using Json = nlohmann::ordered_json;

Json NumberOrNull(std::size_t number) { return number > 0 ? Json(number) : Json(nullptr); }

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

void AddFindingsJson(const FindingList& list, const ModelOrigin& origin,
                     const korvex::ModelTables& tables, Json& json) {
  Json findings = Json::array();
  for (const Finding& finding : list.findings) {
    findings.push_back(FindingJson(finding));
    if (HasOrigin(origin)) findings.back()["original"] = OriginalJson(origin, tables, finding);
  }
  json["findings"] = std::move(findings);
  json["errors"] = CountFindings(list, Severity::Error);
  json["warnings"] = CountFindings(list, Severity::Warning);
  json["hints"] = CountFindings(list, Severity::Hint);
}

void AddFindingsJson(const FindingList& list, Json& json) { AddFindingsJson(list, {}, {}, json); }

}  // namespace kvx
