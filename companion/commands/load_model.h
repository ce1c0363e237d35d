// Finds and loads the model file that a command is given.
#pragma once

#include <string>

#include "commands/exit_status.h"

namespace kvx {

inline constexpr const char* ModelFileName = "fem_solving.txt";

struct LoadedModel {
  std::string file;  // its name as the user would write it, UTF-8
  std::string text;  // its bytes
};

// place: a folder with a model file, or the file itself, UTF-8. Returns ExitFine; or, with the
// reason in `complaint`, ExitMissingInput, or ExitUnusableData where the memory is too small for
// it. Changes the current folder to that of the file.
ExitStatus LoadModel(const std::string& place, LoadedModel& model, std::string& complaint);

// Whether it is the model file of its folder: results stand beside the one that has this name, and
// the solver reads no other. The current folder must be that of the file.
bool IsModelOfFolder(const LoadedModel& model);

}  // namespace kvx
