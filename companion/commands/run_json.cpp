// The JSON of run_report.h.
#include <nlohmann/json.hpp>

#include "commands/number_json.h"
#include "commands/result_table.h"
#include "commands/run_report.h"
#include "commands/solution_file.h"

namespace kvx {

using Json = nlohmann::ordered_json;

namespace {

Json TextOrNull(const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); }

}  // namespace

std::string RunJson(const FolderRun& run, const Json& audit) {
  Json json;
  json["folder"] = run.place;
  json["file"] = TextOrNull(run.file);
  json["status"] = static_cast<int>(run.status);
  json["solved"] = run.isSolved;
  json["seconds"] = run.isSolved ? NumberJson(run.seconds) : Json(nullptr);
  const SolutionRecord* const solution = run.isSolved ? &run.solution : nullptr;
  json["engine"] = run.plan ? EngineJson(*run.plan, run.fits, solution) : Json(nullptr);
  json["detail_blocks"] = run.detailBlocks;
  json["together"] = run.together;
  json["removed"] = run.removed;
  json["complaint"] = TextOrNull(run.complaint);
  json["check"] = run.checkJson.empty() ? Json(nullptr) : Json::parse(run.checkJson);
  json["audit"] = audit;
  return JsonLine(json);
}

}  // namespace kvx
