#include "commands/origin_file.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <limits>
#include <new>
#include <nlohmann/json.hpp>
#include <system_error>

#include "commands/case_record.h"
#include "deck/load_text.h"
#include "report/stop.h"

namespace kvx {

namespace {

namespace fs = std::filesystem;

constexpr std::int64_t FileVersion = 1;

// A file that says more than this of a row, besides its report, is none of an import: it is not
// taken into the memory.
constexpr std::uintmax_t BytesOfRow = 1000;
constexpr std::uintmax_t BytesOfReport = 64U << 20U;

// What the file holds, for those who read it.
struct OriginFile {
  ModelOrigin origin;
  std::vector<std::string> files, hashes;
  std::int64_t version = 0;
  bool hasHash = false;
};

// The list that is being read, and what its items are. At most one is not null.
struct OpenList {
  std::vector<std::int64_t>* numbers = nullptr;
  std::vector<std::int32_t>* rows = nullptr;
  std::vector<std::string>* texts = nullptr;
};

// Depth 1: the object of the whole; 2: a list of the whole, or an object of elements; 3: a list of
// such an object, or a group; 4: a list of a group.
constexpr std::size_t GroupDepth = 3;
constexpr std::size_t DeepestKey = GroupDepth;

// Is told of one token after the other by the library; a tree of all numbers would take several
// times the memory. The names of its functions are the library's.
struct OriginListener {
  OriginFile* file = nullptr;
  std::string reason;  // why reading ended early

  std::size_t depth = 0;
  std::array<std::string, DeepestKey + 1> keys;  // by depth
  OpenList list;

  bool null() { return TakeOther(); }
  bool boolean(bool) { return TakeOther(); }
  bool number_integer(std::int64_t value) { return TakeNumber(value); }
  bool number_unsigned(std::uint64_t value) {
    if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
      return TakeOther();
    }
    return TakeNumber(static_cast<std::int64_t>(value));
  }
  bool number_float(double, const std::string&) { return TakeOther(); }
  bool string(std::string& value) { return TakeText(value); }
  bool binary(std::vector<std::uint8_t>&) { return TakeOther(); }
  bool start_object(std::size_t) {
    if (!Enter()) return false;
    if (depth == GroupDepth && keys[1] == "groups" && keys[2].empty()) {
      file->origin.groups.emplace_back();
    }
    return true;
  }
  bool key(std::string& name) {
    if (depth <= DeepestKey) keys[depth] = name;
    return true;
  }
  bool end_object() {
    std::vector<OriginGroup>& groups = file->origin.groups;
    // A group without a name says nothing.
    if (depth == GroupDepth && keys[1] == "groups" && !groups.empty() &&
        groups.back().name.empty()) {
      groups.pop_back();
    }
    return Leave();
  }
  bool start_array(std::size_t) {
    if (!Enter()) return false;
    list = FindList();
    if (list.numbers != nullptr) list.numbers->clear();
    if (list.rows != nullptr) list.rows->clear();
    if (list.texts != nullptr) list.texts->clear();
    return true;
  }
  bool end_array() { return Leave(); }
  bool parse_error(std::size_t byte, const std::string&, const nlohmann::detail::exception&) {
    reason = std::string(OriginFileName) + " is no JSON text, from byte " + std::to_string(byte) +
             " on.";
    return false;
  }

 private:
  bool IsOpen() const {
    return list.numbers != nullptr || list.rows != nullptr || list.texts != nullptr;
  }

  bool Refuse() {
    reason = std::string(OriginFileName) + " is not as an import writes it.";
    return false;
  }

  // An item that no list here may hold: the items behind it would stand at wrong rows.
  bool TakeOther() { return !IsOpen() || Refuse(); }

  bool Enter() {
    if (IsOpen()) return Refuse();
    ++depth;
    if (depth <= DeepestKey) keys[depth].clear();
    return true;
  }

  bool Leave() {
    list = {};
    if (depth <= DeepestKey) keys[depth].clear();
    --depth;
    return true;
  }

  bool TakeNumber(std::int64_t value) {
    if (list.numbers != nullptr) {
      list.numbers->push_back(value);
    } else if (list.rows != nullptr) {
      const bool isRow = value >= 0 && value <= std::numeric_limits<std::int32_t>::max();
      list.rows->push_back(isRow ? static_cast<std::int32_t>(value) : -1);
    } else if (list.texts != nullptr) {
      return Refuse();
    } else if (depth == 1 && keys[1] == "kvx") {
      file->version = value;
    }
    return true;
  }

  bool TakeText(std::string& value) {
    if (list.texts != nullptr) {
      list.texts->push_back(std::move(value));
      return true;
    }
    if (IsOpen()) return Refuse();
    if (depth == 1 && keys[1] == "hash") return TakeHash(value);
    std::string* const text = FindText();
    if (text != nullptr) *text = std::move(value);
    return true;
  }

  // Where the text that stands here belongs; nullptr: nowhere.
  std::string* FindText() const {
    ModelOrigin& origin = file->origin;
    if (depth == 1 && keys[1] == "source") return &origin.source;
    if (depth == 1 && keys[1] == "format") return &origin.format;
    if (depth == GroupDepth && keys[1] == "groups" && !origin.groups.empty()) {
      if (keys[GroupDepth] == "name") return &origin.groups.back().name;
      if (keys[GroupDepth] == "source") return &origin.groups.back().source;
    }
    return nullptr;
  }

  bool TakeHash(const std::string& text) const {
    constexpr int Hexadecimal = 16;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, file->origin.hash, Hexadecimal);
    file->hasHash = result.ec == std::errc() && result.ptr == end;
    return true;
  }

  // The list that begins here.
  OpenList FindList() const {
    if (depth == 2) return FindOuterList(keys[1]);
    if (depth == GroupDepth) return FindElementList(keys[1], keys[2]);
    if (depth == GroupDepth + 1 && keys[1] == "groups" && !file->origin.groups.empty()) {
      return FindGroupList(keys[GroupDepth]);
    }
    return {};
  }

  OpenList FindOuterList(const std::string& name) const {
    ModelOrigin& origin = file->origin;
    if (name == "nodes") return {&origin.nodes, nullptr, nullptr};
    if (name == "types") return {nullptr, nullptr, &origin.types};
    if (name == "files") return {nullptr, nullptr, &file->files};
    if (name == "hashes") return {nullptr, nullptr, &file->hashes};
    if (name == "materials") return {nullptr, nullptr, &origin.materials};
    if (name == "thicknesses") return {nullptr, nullptr, &origin.thicknesses};
    if (name == "sectionsT") return {nullptr, nullptr, &origin.sectionsT};
    if (name == "sectionsL") return {nullptr, nullptr, &origin.sectionsL};
    if (name == "sectionsC") return {nullptr, nullptr, &origin.sectionsC};
    return {};
  }

  OpenList FindElementList(const std::string& kind, const std::string& name) const {
    ModelOrigin& origin = file->origin;
    ElementOrigin* elements = nullptr;
    if (kind == "shells4") elements = &origin.shells4;
    if (kind == "shells3") elements = &origin.shells3;
    if (kind == "beams") elements = &origin.beams;
    if (elements == nullptr) return {};
    if (name == "numbers") return {&elements->numbers, nullptr, nullptr};
    if (name == "types") return {nullptr, &elements->types, nullptr};
    return {};
  }

  OpenList FindGroupList(const std::string& name) const {
    OriginGroup& group = file->origin.groups.back();
    if (name == "nodes") return {nullptr, &group.nodes, nullptr};
    if (name == "shells4") return {nullptr, &group.shells4, nullptr};
    if (name == "shells3") return {nullptr, &group.shells3, nullptr};
    if (name == "beams") return {nullptr, &group.beams, nullptr};
    return {};
  }
};

// Keeps the rows that exist, ascending, each once.
void TidyRows(std::size_t count, std::vector<std::int32_t>& rows) {
  rows.erase(std::remove_if(rows.begin(), rows.end(),
                            [&](std::int32_t row) {
                              return row < 0 || static_cast<std::size_t>(row) >= count;
                            }),
             rows.end());
  if (!std::is_sorted(rows.begin(), rows.end())) std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
}

bool ReadFile(std::string_view text, OriginFile& file, std::string& reason) {
  OriginListener listener;
  listener.file = &file;
  if (!nlohmann::json::sax_parse(text.begin(), text.end(), &listener)) {
    reason = listener.reason;
    return false;
  }
  if (file.version != FileVersion || !file.hasHash) {
    reason = std::string(OriginFileName) + " is not of this version of kvx import.";
    return false;
  }
  for (OriginGroup& group : file.origin.groups) {
    TidyRows(file.origin.nodes.size(), group.nodes);
    TidyRows(file.origin.shells4.numbers.size(), group.shells4);
    TidyRows(file.origin.shells3.numbers.size(), group.shells3);
    TidyRows(file.origin.beams.numbers.size(), group.beams);
  }
  return true;
}

// Leaves the origin empty unless it fits.
OriginState FindIn(const fs::path& folder, const korvex::ModelTables& tables, ModelOrigin& origin) {
  origin = {};
  try {
    const fs::path path = folder / OriginFileName;
    std::error_code error;
    if (!fs::is_regular_file(path, error)) return OriginState::None;
    const std::uintmax_t size = fs::file_size(path, error);
    const std::uintmax_t rows = tables.Nodes.size() + tables.Shell4Properties.size() +
                                tables.Shell3Properties.size() + tables.BeamProperties.size();
    if (error || size > rows * BytesOfRow + BytesOfReport) return OriginState::Foreign;
    std::string text, reason;
    korvex::LoadText(path.string(), text);
    if (ReadOrigin(text, origin, reason) && FitsModel(origin, tables)) return OriginState::Fits;
  } catch (const korvex::Stop&) {
    // It cannot be read.
  } catch (const std::bad_alloc&) {
    // It is too large.
  } catch (const std::system_error&) {
    // Its name cannot be said in the system's own code page.
  }
  origin = {};
  return OriginState::Foreign;
}

// Whether it names a file of the folder, on every system.
bool IsPlainName(const std::string& name) {
  return !name.empty() && name != "." && name != ".." &&
         name.find_first_of("/\\:") == std::string::npos;
}

}  // namespace

bool ReadOrigin(std::string_view text, ModelOrigin& origin, std::string& reason) {
  OriginFile file;
  const bool isRead = ReadFile(text, file, reason);
  origin = isRead ? std::move(file.origin) : ModelOrigin();
  return isRead;
}

bool ReadOriginFiles(std::string_view text, std::vector<std::string>& files, std::string& reason) {
  OriginFile file;
  files.clear();
  if (!ReadFile(text, file, reason)) return false;
  std::copy_if(file.files.begin(), file.files.end(), std::back_inserter(files), IsPlainName);
  return true;
}

bool ReadImportedFiles(std::string_view text, std::vector<ImportedFile>& files,
                       std::string& reason) {
  OriginFile file;
  files.clear();
  if (!ReadFile(text, file, reason)) return false;
  for (std::size_t k = 0; k < file.files.size(); ++k) {
    if (!IsPlainName(file.files[k])) continue;
    files.push_back({file.files[k], k < file.hashes.size() ? file.hashes[k] : ""});
  }
  return true;
}

OriginState FindOrigin(const std::string& modelFile, const korvex::ModelTables& tables,
                       ModelOrigin& origin) {
  const fs::path folder = fs::u8path(modelFile).parent_path();
  const OriginState state = FindIn(folder, tables, origin);
  if (state != OriginState::None) return state;
  for (const fs::path& source : ListSourceFolders(folder)) {
    if (FindIn(source, tables, origin) == OriginState::Fits) return OriginState::Fits;
  }
  return OriginState::None;
}

}  // namespace kvx
