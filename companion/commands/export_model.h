// The files that `kvx export` makes of one solved model.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "commands/commands.h"
#include "commands/made_folders.h"
#include "vtu/mesh_vtu.h"

namespace kvx {

inline constexpr const char* ExportName = "kvx export";

struct ModelExport {
  std::string place;             // of the model: its folder or its file, as the user would write it
  std::filesystem::path folder;  // of the files, absolute; "": that of the model
  std::string shown;             // the same as messages show it, with a slash behind; "" likewise
};

// Receives the results when the files are complete, as long as they are there. The current folder
// is that of the files.
using TakeResults = std::function<void(const MeshResults& results)>;

// Opens or solves the model, writes its files and says which. take: may be empty. Returns ExitFine,
// ExitFindings where the model has errors, or another status after a complaint. The current folder
// stays as it is. Throws Interrupted.
ExitStatus ExportModel(const ExportCommand& command, const ModelExport& job,
                       const TakeResults& take);

// Runs `work`, which throws a Stop or std::bad_alloc where it cannot go on. Returns ExitFine, or
// the status after a complaint. file: what it is about.
ExitStatus TryExport(const std::string& file, const std::function<void()>& work);

// Makes the folder, absolute, where it is missing, notes it, and makes it the current one. Throws a
// Stop where files cannot be made in it.
void EnterOutput(const std::filesystem::path& folder, MadeFolders& made);

// Writes text that ends with its line to standard output. Throws a Stop where that fails.
void SayExported(const std::string& text);

// Writes the grid into the current folder. shown: the folder, as messages show it. Throws a Stop
// where the file cannot be written, and Interrupted.
void WriteGrid(const std::string& name, const std::string& shown, const VtuGrid& grid);

}  // namespace kvx
