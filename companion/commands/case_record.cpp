#include "commands/case_record.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <system_error>

#include "commands/hash_text.h"
#include "commands/regular_file.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* Program = "kvx cases";

// A record of as many sources as a case file may name has less.
constexpr std::uintmax_t LargestRecord = 16U << 20U;  // bytes

constexpr std::size_t MostNamed = 4;  // of the changed sources

// As from the folder; absolute where no way leads there, as from one drive to another.
std::string PathFrom(const fs::path& folder, const fs::path& place) {
  std::error_code error;
  // A file that is a link stays one: it may lead to another file tomorrow.
  const fs::path owner = fs::canonical(place.parent_path(), error);
  const fs::path from = error ? fs::path() : fs::canonical(folder, error);
  const fs::path path = error ? fs::path() : (owner / place.filename()).lexically_relative(from);
  return (path.empty() ? place : path).generic_u8string();
}

bool IsText(const Json& json, const char* key) {
  return json.is_object() && json.contains(key) && json[key].is_string();
}

bool IsSource(const Json& json) {
  return IsText(json, "file") && IsText(json, "hash") && json.contains("size") &&
         json["size"].is_number_unsigned();
}

// Any file: false where it is not a record of ours, whole.
bool ReadRecord(const fs::path& folder, Json& record) {
  const fs::path place = folder / CaseRecordFileName;
  std::error_code error;
  const std::uintmax_t size = fs::file_size(place, error);
  std::string bytes;
  if (error || size > LargestRecord || !ReadRegularFile(place, bytes)) return false;
  constexpr bool Throws = false;
  record = Json::parse(bytes, nullptr, Throws);
  if (!IsText(record, "case") || !IsText(record, "program") || record["program"] != Program) {
    return false;
  }
  if (!record.contains("sources") || !record["sources"].is_array()) return false;
  return std::all_of(record["sources"].begin(), record["sources"].end(), IsSource);
}

// "" where the source is as recorded.
std::string DescribeChange(const fs::path& folder, const Json& source) {
  const std::string file = source["file"];
  const fs::path place = folder / fs::u8path(file);
  std::error_code error;
  if (!fs::exists(place, error)) return file + ", which is no longer there";
  const std::uintmax_t size = fs::file_size(place, error);
  std::string bytes;
  // The size is asked first: it costs nothing.
  const bool isSame = !error && size == source["size"].get<std::uintmax_t>() &&
                      ReadRegularFile(place, bytes) && HashText(HashBytes(bytes)) == source["hash"];
  return isSame ? "" : file + ", which has changed since";
}

}  // namespace

std::size_t AddSource(const CaseSource& source, std::vector<CaseSource>& list) {
  const auto isSame = [&](const CaseSource& other) { return other.place == source.place; };
  const auto found = std::find_if(list.begin(), list.end(), isSame);
  const auto row = static_cast<std::size_t>(found - list.begin());
  if (found == list.end()) list.push_back(source);
  return row;
}

std::string CaseRecordText(const std::string& name, const std::vector<CaseSource>& sources,
                           const fs::path& folder) {
  Json record;
  record["case"] = name;
  record["program"] = Program;
  record["sources"] = Json::array();
  for (const CaseSource& source : sources) {
    std::error_code error;
    if (!fs::is_regular_file(source.place, error)) continue;
    record["sources"].push_back({{"file", PathFrom(folder, source.place)},
                                 {"size", source.id.size},
                                 {"hash", HashText(source.id.hash)}});
  }
  constexpr int Indent = 2;
  return record.dump(Indent, ' ', false, Json::error_handler_t::replace) + '\n';
}

bool HasCaseRecord(const fs::path& folder) {
  Json record;
  return ReadRecord(folder, record);
}

std::string DescribeChangedSources(const fs::path& folder) {
  Json record;
  if (!ReadRecord(folder, record)) return {};
  std::string changed;
  std::size_t count = 0;
  for (const Json& source : record["sources"]) {
    const std::string change = DescribeChange(folder, source);
    if (change.empty()) continue;
    if (++count <= MostNamed) changed += (count > 1 ? "; " : "") + change;
  }
  if (count > MostNamed) changed += "; and " + std::to_string(count - MostNamed) + " more";
  return changed.empty() ? "" : "the model was made from " + changed + '.';
}

std::vector<fs::path> ListSourceFolders(const fs::path& folder) {
  Json record;
  std::vector<fs::path> folders;
  if (!ReadRecord(folder, record)) return folders;
  for (const Json& source : record["sources"]) {
    const std::string file = source["file"];
    const fs::path place = (folder / fs::u8path(file)).parent_path();
    if (std::find(folders.begin(), folders.end(), place) == folders.end()) {
      folders.push_back(place);
    }
  }
  return folders;
}

}  // namespace kvx
