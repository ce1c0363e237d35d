#include "commands/number_map.h"

#include <nlohmann/json.hpp>

#include "commands/hash_text.h"
#include "commands/number_json.h"

namespace kvx {

using Json = nlohmann::ordered_json;

namespace {

constexpr int Version = 1;

Json FileJson(const NumberedFile& file) {
  return {{"size", file.id.size},
          {"hash", HashText(file.id.hash)},
          {"entries", NumberJson(file.cost.entries)},
          {"work", NumberJson(file.cost.work)}};
}

bool TakeText(const Json& json, const char* key, std::string& text) {
  if (!json.is_object() || !json.contains(key) || !json[key].is_string()) return false;
  text = json[key].get<std::string>();
  return true;
}

bool TakeHash(const Json& json, const char* key, std::uint64_t& hash) {
  std::string text;
  return TakeText(json, key, text) && ReadHashText(text, hash);
}

bool TakeNumber(const Json& json, const char* key, double& number) {
  if (!json.contains(key) || !json[key].is_number()) return false;
  number = json[key].get<double>();
  return true;
}

bool TakeFile(const Json& json, const char* key, NumberedFile& file) {
  if (!json.contains(key) || !json[key].is_object()) return false;
  const Json& values = json[key];
  if (!values.contains("size") || !values["size"].is_number_unsigned()) return false;
  file.id.size = values["size"].get<std::uint64_t>();
  return TakeHash(values, "hash", file.id.hash) &&
         TakeNumber(values, "entries", file.cost.entries) &&
         TakeNumber(values, "work", file.cost.work);
}

// Each number from 0 on must be there once.
bool TakePermutation(const Json& json, std::vector<std::int32_t>& old) {
  if (!json.contains("old") || !json["old"].is_array()) return false;
  const Json& numbers = json["old"];
  std::vector<bool> isThere(numbers.size(), false);
  old.clear();
  old.reserve(numbers.size());
  for (const Json& number : numbers) {
    if (!number.is_number_unsigned()) return false;
    const auto row = number.get<std::uint64_t>();
    if (row >= isThere.size() || isThere[row]) return false;
    isThere[row] = true;
    old.push_back(static_cast<std::int32_t>(row));
  }
  return true;
}

}  // namespace

std::uint64_t HashNodes(const korvex::ModelTables& tables) {
  return HashBytes({reinterpret_cast<const char*>(tables.Nodes.data()),
                    tables.Nodes.size() * sizeof(korvex::Node)});
}

std::string WriteNumberMap(const NumberMap& map) {
  Json head;
  head["kvx"] = Version;
  head["order"] = map.order;
  head["nodes"] = HashText(map.nodes);
  head["before"] = FileJson(map.before);
  head["after"] = FileJson(map.after);
  // The numbers are no tree: a model may have millions.
  std::string text = head.dump(-1, ' ', true);
  text.back() = ',';
  text += "\"old\":[";
  for (std::size_t row = 0; row < map.old.size(); ++row) {
    text += (row > 0 ? "," : "") + std::to_string(map.old[row]);
  }
  return text + "]}\n";
}

bool ReadNumberMap(const std::string& text, NumberMap& map, std::string& reason) {
  constexpr bool Throws = false;
  const Json json = Json::parse(text, nullptr, Throws);
  if (!json.is_object()) {
    reason = "is not what kvx renumber writes";
    return false;
  }
  if (!json.contains("kvx") || json["kvx"] != Version) {
    reason = "is of another version of kvx";
    return false;
  }
  const bool isWhole = TakeText(json, "order", map.order) && TakeHash(json, "nodes", map.nodes) &&
                       TakeFile(json, "before", map.before) &&
                       TakeFile(json, "after", map.after) && TakePermutation(json, map.old);
  if (!isWhole) reason = "does not hold each number of a node once, or lacks a part";
  return isWhole;
}

}  // namespace kvx
