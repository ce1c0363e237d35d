// What `kvx view` is to show: models and their load cases, from the places that it is given.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "commands/exit_status.h"

namespace kvx {

struct ViewPlace {
  std::string name;   // of the load case; empty: the only one
  std::string place;  // a folder with a model file, or the file, as LoadModel takes it
};

struct ViewPlaces {
  // The model that gives the structure: that of the first case, or the one that the case file
  // names.
  std::string structure;
  bool isCaseFile = false;
  std::vector<ViewPlace> cases;
  std::filesystem::path folder;  // where the page goes unless it has a name; absolute
  std::string shownFolder;       // the same as the user would write it, with "/"; empty: here
};

// places: of the command, relative to the current folder, which stays as it is. A case file is
// read; the folders of its results must be there, in `results` unless that is empty. Returns
// ExitFine; or another status with the reason in `complaint`. Models themselves are not looked at.
ExitStatus ListViewPlaces(const std::vector<std::string>& places, const std::string& results,
                          ViewPlaces& list, std::string& complaint);

}  // namespace kvx
