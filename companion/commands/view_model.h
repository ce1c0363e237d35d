// A model that `kvx view` shows: as the checks see it, and solved where it can be.
#pragma once

#include <filesystem>
#include <string>

#include "audit/displacement_file.h"
#include "audit/solved_model.h"
#include "commands/check_model.h"
#include "commands/exit_status.h"
#include "commands/load_model.h"

namespace kvx {

struct ViewedModel {
  LoadedModel file;

  // With the tables, parts and lines. Without a check: the tables alone, as the solver reads them.
  CheckReport check;
  std::size_t errors = 0;
  std::string firstError;  // "K104 line 7019: beam 10 ..."; empty without errors

  bool isSolved = false;
  bool isRefused = false;  // it was to be solved, and could not be
  // Why it is not solved, though it was to be, or why its results mean little; else empty.
  std::string note;
  DisplacementReading reading;
  SolvedModel solved;
  std::string changedSources;  // as OpenedResults has it
};

// The tables to be shown: those that were solved, or those of the check.
const korvex::ModelTables& TablesOf(const ViewedModel& viewed);

// Loads the model. Returns ExitFine, or another status with the reason in `complaint`: also for
// models without nodes, and for those too large for a page. Changes the current folder to that of
// the model. isChecked: the checks are wanted, too. Throws Interrupted.
ExitStatus OpenViewed(const std::string& place, bool isChecked, ViewedModel& viewed,
                      std::string& complaint);

// Finds the solution in displacements.bin, or solves the model unless it has errors. What keeps it
// from being solved is its note. The current folder must be that of the model. Says on standard
// error what OpenResults says. Throws Interrupted.
void SolveViewed(const std::string& who, ViewedModel& viewed);

}  // namespace kvx
