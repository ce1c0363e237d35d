// The files of a run in a folder: those of the solver, with its bytes, its log, solution.json,
// which tells how the displacements were found, and displacements.bin.
//
// All of them are written into a folder of their own beside their places, "kvx-unfinished", and get
// their names together when the last one is complete: what is in the folder stays as it is until
// then, and where anything fails. What an earlier, interrupted run left there is removed
// (unfinished_folder.h).
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "audit/detail_peaks.h"
#include "engine/unfinished_folder.h"
#include "model/model.h"
#include "skyline/work_share.h"

namespace kvx {

// How the displacements were found, and how exact they are; for those who know it, commands/
// solution_file.h.
inline constexpr const char* SolutionFileName = "solution.json";

// All files that WriteResults leaves.
std::vector<FileToMake> NameResultFiles();

struct ResultWriting {
  std::string_view modelText;  // the bytes of the model file
  double seconds = 0.0;        // of the solution, for the log
  std::string_view solution;   // the bytes of solution.json; empty: it is not written

  // Called before each file, and while the detail models are made. Both may be empty, and may throw
  // to interrupt the work.
  std::function<void(const char* name)> before;
  korvex::ShareCallback detailShare;

  int threads = 1;                 // for stresses, averages, detail models and the text of files
  std::uint64_t detailMemory = 0;  // bytes for detail models at once; 0: what is free limits them
};

// unfinished: begun with NameResultFiles, so that it is known before the solution whether the
// folder can be written to. Its prefix must lead to it from the current folder.
// model: as a run has it behind its solution, with tables, elements and Displacements; gets the
// stresses of its shells. Its Stiffness is freed. details: becomes what is kept of the detail
// models, which are made in blocks where the memory does not hold all of them.
// Throws a Stop where a run would stop, and where a file cannot be written whole.
void WriteResults(const ResultWriting& writing, korvex::Model& model, DetailPeaks& details,
                  UnfinishedFolder& unfinished);

// The files of an earlier run that are in the folder: those of NameResultFiles. UTF-8.
std::vector<std::string> ListResultFiles(const std::string& folder);

// Whether the folder's displacements.bin says that its results are of another model, or of another
// state of this one. Without displacements.bin nothing is known: false.
bool HasStaleResults(const std::string& folder, std::string_view modelText);

// Removes stale results (HasStaleResults) from the folder. Returns their names as ListResultFiles.
// Throws a Stop where one cannot be removed.
std::vector<std::string> RemoveStaleResults(const std::string& folder, std::string_view modelText);

}  // namespace kvx
