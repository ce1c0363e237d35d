#include "commands/solution_file.h"

#include <cmath>
#include <filesystem>
#include <limits>
#include <nlohmann/json.hpp>
#include <system_error>

#include "commands/hash_text.h"
#include "commands/number_json.h"
#include "commands/regular_file.h"
#include "engine/result_folder.h"

namespace kvx {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* Program = "kvx";
// Bytes: one that was written here has a kilobyte, and 200 bytes for each rank.
constexpr std::uintmax_t LargestFile = 1U << 22U;

Json ModelJson(const ModelFileId& file) {
  return {{"size", file.size}, {"hash", HashText(file.hash)}};
}

Json EstimateJson(const EngineEstimate& estimate) {
  const bool isKnown = estimate.bytes > 0;
  return {{"possible", estimate.isPossible},
          {"reason", estimate.reason.empty() ? Json(nullptr) : Json(estimate.reason)},
          {"seconds", isKnown ? NumberJson(estimate.seconds) : Json(nullptr)},
          {"bytes", isKnown ? Json(estimate.bytes) : Json(nullptr)},
          {"disk_bytes", isKnown ? Json(estimate.diskBytes) : Json(nullptr)}};
}

// JSON has no such number.
constexpr const char* Infinite = "infinite";

// What is written and read of a record, in the order of the file. visit(key, member) returns
// whether to go on.
template <typename Record, typename Visit>
bool VisitSolution(Record& record, const Visit& visit) {
  return visit("threads", record.threads) && visit("equations", record.equations) &&
         visit("free_equations", record.freeEquations) &&
         visit("order_seconds", record.orderSeconds) &&
         visit("factor_seconds", record.factorSeconds) &&
         visit("solve_seconds", record.solveSeconds) && visit("bytes", record.bytes) &&
         visit("disk_bytes", record.diskBytes) && visit("flops", record.flops) &&
         visit("refinement_steps", record.refinementSteps);
}

// The same of the accuracy of a load.
template <typename Load, typename Visit>
bool VisitLoad(Load& load, const Visit& visit) {
  return visit("residual", load.residual) && visit("backward_error", load.backwardError) &&
         visit("condition", load.condition) && visit("digits_lost", load.digitsLost);
}

// The same of a rank.
template <typename Rank, typename Visit>
bool VisitRank(Rank& rank, const Visit& visit) {
  return visit("elements", rank.elements) && visit("entries", rank.entries) &&
         visit("flops", rank.flops) && visit("bytes", rank.bytes);
}

Json ToJson(double number) { return std::isinf(number) ? Json(Infinite) : NumberJson(number); }

template <typename Integer>
Json ToJson(Integer number) {
  return number;
}

// Null is a number that is not known. Returns false where it is something else.
bool FromJson(const Json& json, double& number) {
  number = LoadQuality::Unknown;
  if (json.is_number()) number = json.get<double>();
  if (json == Infinite) number = std::numeric_limits<double>::infinity();
  return json.is_null() || !std::isnan(number);
}

template <typename Integer>
bool FromJson(const Json& json, Integer& number) {
  if (json.is_number_unsigned()) number = json.get<Integer>();
  return json.is_number_unsigned();
}

bool ReadEngine(const Json& json, SolutionRecord& record) {
  const auto name = json.find("engine"), outOfCore = json.find("out_of_core");
  if (name == json.end() || outOfCore == json.end() || !outOfCore->is_boolean()) return false;
  record.isOutOfCore = outOfCore->get<bool>();
  record.engine = *name == "sparse" ? EngineChoice::Sparse : EngineChoice::Skyline;
  return *name == EngineName(record.engine);
}

// For the functions above: writes to `json`.
auto WriteTo(Json& json) {
  return [&json](const char* key, const auto& member) {
    json[key] = ToJson(member);
    return true;
  };
}

// For the functions above: reads from `json`, which has to have the key.
auto ReadFrom(const Json& json) {
  return [&json](const char* key, auto& member) {
    const auto found = json.find(key);
    return found != json.end() && FromJson(*found, member);
  };
}

Json RanksJson(const std::vector<RankShare>& ranks) {
  Json all = Json::array();
  for (const RankShare& rank : ranks) {
    Json json;
    VisitRank(rank, WriteTo(json));
    all.push_back(json);
  }
  return all;
}

// There are none where one process was alone.
bool ReadRanks(const Json& json, std::vector<RankShare>& ranks) {
  const auto found = json.find("ranks");
  if (found == json.end()) return true;
  if (!found->is_array()) return false;
  for (const Json& each : *found) {
    RankShare rank;
    if (!each.is_object() || !VisitRank(rank, ReadFrom(each))) return false;
    ranks.push_back(rank);
  }
  return true;
}

bool ReadRecord(const Json& json, SolutionRecord& record) {
  record.loads.resize(1);
  return ReadEngine(json, record) && VisitSolution(record, ReadFrom(json)) &&
         ReadRanks(json, record.ranks) && VisitLoad(record.loads.front(), ReadFrom(json));
}

}  // namespace

const char* EngineName(EngineChoice engine) {
  if (engine == EngineChoice::Auto) return "auto";
  return engine == EngineChoice::Sparse ? "sparse" : "skyline";
}

void AddSolutionJson(const SolutionRecord& record, Json& json) {
  json["engine"] = EngineName(record.engine);
  json["out_of_core"] = record.isOutOfCore;
  VisitSolution(record, WriteTo(json));
  if (!record.ranks.empty()) json["ranks"] = RanksJson(record.ranks);
  if (record.loads.size() == 1) VisitLoad(record.loads.front(), WriteTo(json));
}

Json EngineJson(const SolutionPlan& plan, bool fits, const SolutionRecord* solution) {
  Json json, found;
  json["name"] = fits ? Json(EngineName(plan.engine)) : Json(nullptr);
  json["out_of_core"] = fits ? Json(plan.isOutOfCore) : Json(nullptr);
  json["reason"] = fits ? Json(plan.reason) : Json(nullptr);
  json["equations"] = plan.equations;
  json["free_equations"] = plan.freeEquations;
  json["prediction"] = {{"skyline", EstimateJson(plan.skyline)},
                        {"sparse", EstimateJson(plan.sparse)},
                        {"out_of_core", EstimateJson(plan.outOfCore)}};
  if (!plan.ranks.empty()) json["prediction"]["ranks"] = RanksJson(plan.ranks);
  if (solution != nullptr) AddSolutionJson(*solution, found);
  json["solution"] = found;
  return json;
}

std::string SolutionFileText(const ModelFileId& file, const SolutionRecord& solution) {
  Json json;
  json["program"] = Program;
  json["model"] = ModelJson(file);
  AddSolutionJson(solution, json);
  constexpr int Indent = 2;
  return json.dump(Indent) + '\n';
}

std::optional<SolutionRecord> ReadSolutionFile(const ModelFileId& file, std::string& reason) {
  reason.clear();
  std::error_code error;
  if (!std::filesystem::exists(std::filesystem::symlink_status(SolutionFileName, error))) return {};
  const std::string name = SolutionFileName;
  const std::uintmax_t size = std::filesystem::file_size(SolutionFileName, error);
  std::string bytes;
  if (error || size > LargestFile || !ReadRegularFile(SolutionFileName, bytes)) {
    reason = name + " cannot be read.";
    return {};
  }
  constexpr bool Throws = false;
  const Json json = Json::parse(bytes, nullptr, Throws);
  const bool isOurs = json.is_object() && json.contains("program") && json["program"] == Program &&
                      json.contains("model");
  SolutionRecord record;
  if (!isOurs || (json["model"] == ModelJson(file) && !ReadRecord(json, record))) {
    reason = name + " is not as kvx run has written it.";
  } else if (json["model"] != ModelJson(file)) {
    reason = name + " is of another model file, or of an earlier state of this one.";
  }
  if (!reason.empty()) return {};
  return record;
}

std::optional<SolutionRecord> ReadSolutionFile(const ModelFileId& file) {
  std::string reason;
  return ReadSolutionFile(file, reason);
}

SolutionRecord SolutionOfLoad(const SolutionRecord& record, std::size_t load) {
  SolutionRecord one = record;
  one.loads = {record.loads.at(load)};
  return one;
}

}  // namespace kvx
