#include "commands/view_places.h"

#include <algorithm>
#include <system_error>

#include "cases/case_file.h"
#include "cases/load_tables.h"
#include "commands/case_place.h"
#include "commands/load_model.h"
#include "deck/read_tables.h"
#include "finding/text_layout.h"
#include "report/stop.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

// What ends the listing.
struct Refusal {
  ExitStatus status;
  std::string complaint;
};

std::string Quoted(const std::string& text) { return '"' + text + '"'; }

fs::path Absolute(const fs::path& place) {
  std::error_code error;
  const fs::path absolute = fs::absolute(place, error);
  if (error) throw Refusal{ExitMissingInput, "the current folder cannot be found."};
  return absolute.lexically_normal();
}

// The folder of a file, for the page; of a pipe and the like it is the current one.
void SetFolder(const fs::path& file, ViewPlaces& list) {
  std::error_code error;
  if (fs::is_other(file, error)) return SetFolder(ModelFileName, list);
  list.folder = Absolute(file).parent_path();
  list.shownFolder = file.has_parent_path() ? (file.parent_path() / "").u8string() : "";
}

// Loads a file and leaves the current folder as it is.
void Load(const std::string& place, LoadedModel& file) {
  std::error_code error;
  const fs::path start = fs::current_path(error);
  std::string complaint;
  const ExitStatus status = LoadModel(place, file, complaint);
  if (!start.empty()) fs::current_path(start, error);
  if (status != ExitFine) throw Refusal{status, complaint};
}

// Whether the structure has loads of its own, which are a case. A file that cannot be read has
// none; what is wrong with it is told where it is opened.
bool HasOwnLoads(const std::string& structure) {
  LoadedModel model;
  Load(structure, model);
  try {
    korvex::ModelTables tables;
    korvex::ReadTables(model.text, {}, tables);
    return HasLoads(tables);
  } catch (const korvex::Stop&) {
    return false;
  }
}

void AddCase(const std::string& file, const fs::path& results, const std::string& name,
             ViewPlaces& list) {
  const fs::path folder = results / fs::u8path(name);
  std::error_code error;
  if (!fs::exists(folder / ModelFileName, error)) {
    throw Refusal{ExitMissingInput, DescribeMissingCase(file, name, results)};
  }
  list.cases.push_back({name, folder.u8string()});
}

void ListCases(const std::string& place, const std::string& named, ViewPlaces& list) {
  LoadedModel file;
  Load(place, file);
  CaseFile cases;
  try {
    ReadCaseFile(file.text, cases);
  } catch (const korvex::Stop& stop) {
    throw Refusal{ExitUnusableData, Quoted(place) + ": " + stop.text};
  }
  const fs::path folder = fs::u8path(place).parent_path();
  list.isCaseFile = true;
  SetFolder(fs::u8path(place), list);
  list.structure = (folder / fs::u8path(cases.structure)).lexically_normal().u8string();
  if (HasOwnLoads(list.structure)) AddBaseCase(cases);
  const fs::path results = ResultsOfCases(place, named);
  for (const LoadCase& each : cases.cases) AddCase(place, results, each.name, list);
  for (const Combination& each : cases.combinations) {
    AddCase(place, results, each.name, list);
  }
  if (list.cases.empty()) {
    throw Refusal{ExitUnusableData, Quoted(place) + ": it has no load cases."};
  }
}

// The model files at the places, as the user would write them.
std::vector<fs::path> ListFiles(const std::vector<std::string>& places) {
  std::vector<fs::path> files;
  files.reserve(places.size());
  for (const std::string& place : places) {
    std::error_code error;
    const fs::path path = fs::u8path(place);
    files.push_back(fs::is_directory(path, error) ? path / ModelFileName : path);
  }
  return files;
}

// By the name of the folder where that tells all of them apart; else as the user wrote them.
void NameCases(const std::vector<fs::path>& files, ViewPlaces& list) {
  std::vector<std::string> names;
  names.reserve(files.size());
  for (const fs::path& file : files) {
    names.push_back(CleanText(Absolute(file).parent_path().filename().u8string()));
  }
  std::vector<std::string> sorted = names;
  std::sort(sorted.begin(), sorted.end());
  const bool areApart = std::adjacent_find(sorted.begin(), sorted.end()) == sorted.end();
  for (std::size_t k = 0; k < list.cases.size(); ++k) {
    list.cases[k].name = areApart ? names[k] : CleanText(list.cases[k].place);
  }
}

void RefuseDoubled(const std::vector<std::string>& places, const std::vector<fs::path>& files) {
  for (std::size_t k = 0; k < files.size(); ++k) {
    for (std::size_t j = 0; j < k; ++j) {
      std::error_code error;
      if (!fs::equivalent(files[j], files[k], error)) continue;
      throw Refusal{ExitUsage, Quoted(places[j]) + " and " + Quoted(places[k]) +
                                   " are the same model. Name each load case once."};
    }
  }
}

void ListFolders(const std::vector<std::string>& places, ViewPlaces& list) {
  if (std::count(places.begin(), places.end(), "") > 0) {
    throw Refusal{ExitMissingInput, "there is no folder or file \"\"."};
  }
  const std::vector<fs::path> files = ListFiles(places);
  RefuseDoubled(places, files);
  for (const std::string& place : places) list.cases.push_back({"", place});
  list.structure = places.front();
  SetFolder(files.front().lexically_normal(), list);
  if (places.size() > 1) NameCases(files, list);
}

}  // namespace

ExitStatus ListViewPlaces(const std::vector<std::string>& places, const std::string& results,
                          ViewPlaces& list, std::string& complaint) {
  try {
    const auto file = std::find_if(places.begin(), places.end(), IsCaseFile);
    if (file == places.end()) {
      ListFolders(places, list);
    } else if (places.size() > 1) {
      throw Refusal{ExitUsage, Quoted(*file) + " is a file of load cases: name it alone."};
    } else {
      ListCases(*file, results, list);
    }
  } catch (const Refusal& refusal) {
    complaint = refusal.complaint;
    return refusal.status;
  }
  return ExitFine;
}

}  // namespace kvx
