// One folder of `kvx run`: what stands there, and what becomes of it.
#pragma once

#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "commands/commands.h"
#include "engine/plan_solution.h"
#include "engine/solution_record.h"
#include "engine/unfinished_folder.h"
#include "finding/finding.h"

namespace kvx {

struct FolderRun {
  std::string place;  // as the user wrote it
  std::string file;   // of the model, as the user would write it
  std::filesystem::path folder;

  // Of the check. The text is freed when the folder is done.
  bool isChecked = false;
  std::string text;
  FindingList findings;
  std::string checkJson;      // ReportJson, where JSON is wanted
  std::uint64_t meshKey = 0;  // differs where nodes or elements do

  // Whether it is still to be solved; and whether results of an earlier state of the model stay,
  // because it is not.
  bool isWaiting = false, hasStale = false;

  bool isDry = false;  // it is to be planned alone

  // How it is solved, or would be; none: it was not planned. Without the order of the nodes.
  std::optional<SolutionPlan> plan;
  bool fits = false;      // the plan can be followed
  std::size_t loads = 0;  // that were planned together

  // Of the solution.
  UnfinishedFolder unfinished;
  std::vector<std::string> removed;   // stale results
  std::vector<std::string> together;  // the places of all that were solved together
  double seconds = 0.0;
  std::size_t equations = 0;
  SolutionRecord solution;       // with one load, that of this folder
  std::size_t detailBlocks = 0;  // in which the detail models of its beams were made
  bool isSolved = false;

  // Of the end.
  std::string said;       // the text or JSON about it
  std::string complaint;  // why it was not checked, not solved or not audited; empty: it was
  ExitStatus status = ExitFine;
};

// Not movable: a folder that is being written stays where it is.
using FolderRuns = std::deque<FolderRun>;

// Loads and checks the models at the command's places, in their order. What cannot be solved is
// told on standard error and has a status. A folder that is named twice is there once. Changes the
// current folder. Throws Interrupted.
void CheckFolders(const RunCommand& command, FolderRuns& runs);

// Solves what is waiting; models with the same stiffness with one factorisation. Writes the results
// and audits them. In a dry run it is only planned, and nothing is written. Calls `report` for each
// folder, in their order, as soon as it is done. Returns the number of factorisations. Throws
// Interrupted.
std::size_t SolveFolders(const RunCommand& command, const EngineSettings& settings,
                         FolderRuns& runs, const std::function<void(const FolderRun&)>& report);

// What ends work on a folder: told on standard error.
void GiveUp(ExitStatus status, const std::string& complaint, FolderRun& run);

}  // namespace kvx
