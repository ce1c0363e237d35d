#include "commands/move_case_loads.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include "cases/case_file.h"
#include "cases/load_tables.h"
#include "check/check_text.h"
#include "check/read_checked.h"
#include "commands/folder_cases.h"
#include "commands/load_model.h"
#include "commands/regular_file.h"
#include "renumber/permute_nodes.h"
#include "renumber/rewrite_text.h"
#include "report/stop.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void Refuse(const std::string& file, const std::string& reason) {
  throw korvex::Stop{korvex::StopKind::Notice, file + ": " + reason};
}

// A file of loads, and who names it.
struct NamedLoads {
  fs::path place;     // as from the folder
  std::string owner;  // "cases.toml, line 7"
  bool isOurs = false;
};

// Returns false where it is something else, such as the map file of an import.
bool ReadCases(const fs::path& name, CaseFile& cases) {
  std::string text;
  const std::string shown = name.u8string();
  const bool isRead = ReadRegularFile(name, text);
  // Of the name that kvx cases takes by itself, or with a table of cases: it was meant as one.
  const bool isMeant = shown == CaseFileName || text.find("[case.") != std::string::npos;
  if (!isRead && isMeant) Refuse(shown, "it cannot be read; its loads have numbers of nodes, too.");
  if (!isRead) return false;
  try {
    ReadCaseFile(text, cases);
  } catch (const korvex::Stop& stop) {
    if (isMeant) Refuse(shown, stop.text + " Its loads have numbers of nodes, too: mend it first.");
    return false;
  }
  return true;
}

// A model by its folder or its file.
fs::path FileOf(const std::string& named) {
  const fs::path place = fs::u8path(named);
  std::error_code error;
  return fs::is_directory(place, error) ? place / ModelFileName : place;
}

bool IsModel(const fs::path& place) {
  std::error_code error;
  return fs::equivalent(place, ModelFileName, error);
}

std::vector<NamedLoads> ListLoads() {
  std::vector<NamedLoads> loads;
  for (const fs::path& name : ListTomlFiles(".")) {
    CaseFile cases;
    if (!ReadCases(name, cases)) continue;
    const bool isOurs = IsModel(FileOf(cases.structure));
    for (const LoadCase& loadCase : cases.cases) {
      if (loadCase.loads.empty()) continue;
      const fs::path place = FileOf(loadCase.loads);
      const std::string owner = name.u8string() + ", line " + std::to_string(loadCase.loadsLine);
      if (!IsModel(place)) loads.push_back({place, owner, isOurs});
    }
  }
  return loads;
}

// The file as from the folder, links resolved.
fs::path NameInFolder(const NamedLoads& loads) {
  std::error_code error;
  const fs::path folder = fs::canonical(".", error);
  const fs::path place = error ? fs::path() : fs::canonical(loads.place, error);
  if (error) Refuse(loads.owner, "there is no file \"" + loads.place.u8string() + "\".");
  fs::path name = place.lexically_relative(folder);
  if (name.empty() || *name.begin() == "..") {
    Refuse(loads.owner,
           '"' + loads.place.u8string() +
               "\" stands outside the folder of the model, and may be of other models, too. Copy "
               "it into the folder and name the copy.");
  }
  return name;
}

std::string MoveLoads(const std::vector<std::int32_t>& places, const std::string& owner,
                      const fs::path& name) {
  const std::string shown = name.generic_u8string();
  std::string text;
  if (!ReadRegularFile(name, text)) Refuse(owner, '"' + shown + "\" cannot be read.");
  LoadText isolated;
  try {
    IsolateLoads(text, isolated);
  } catch (const korvex::Stop& stop) {
    Refuse('"' + shown + '"', stop.text);
  }
  const std::size_t first = text.find_first_not_of(" \t\r\n\v\f\xEF\xBB\xBF");
  if (text[first] == '#') {
    Refuse(owner, '"' + shown +
                      "\" is a whole model file, whose loads alone are used. Write them into a "
                      "file of their own: the sections from NFOR on.");
  }
  CheckedModel checked;
  const CheckedReading reading = ReadChecked(isolated.text, checked);
  CheckedModel mended;
  FindingList findings;
  CheckText(isolated.text, mended, findings);
  if (!reading.isWhole || CountFindings(findings, Severity::Error) > 0) {
    Refuse('"' + shown + '"',
           "not all of it is read as it is written; kvx cases names where. Mend it first.");
  }
  MoveNodeReferences(places, checked.tables);
  const std::size_t behind = isolated.text.size() - reading.end;
  return RewriteLoads(text, text.size() - behind, checked.tables);
}

}  // namespace

void MoveCaseLoads(const std::vector<std::int32_t>& places, std::vector<MovedFile>& files) {
  const std::vector<NamedLoads> all = ListLoads();
  std::vector<fs::path> done;
  for (const NamedLoads& loads : all) {
    if (!loads.isOurs) continue;
    const fs::path name = NameInFolder(loads);
    if (std::find(done.begin(), done.end(), name) != done.end()) continue;
    done.push_back(name);
    std::error_code error;
    for (const NamedLoads& other : all) {
      if (other.isOurs || !fs::equivalent(other.place, name, error)) continue;
      Refuse(loads.owner, '"' + name.generic_u8string() + "\" is also loads of another model, in " +
                              other.owner + ". Give each model a file of its own.");
    }
    files.push_back({name, name.generic_u8string(), MoveLoads(places, loads.owner, name)});
  }
}

}  // namespace kvx
