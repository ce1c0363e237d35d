// The solved model that a command about results works with.
//
// Its displacements are those of displacements.bin beside the model file, where that belongs to
// it. Otherwise the model is solved in memory, with the bits of a run; nothing is written.
#pragma once

#include <optional>
#include <string>

#include "audit/displacement_file.h"
#include "audit/solved_model.h"
#include "commands/exit_status.h"
#include "commands/load_model.h"
#include "deck/model_tables.h"
#include "engine/solution_record.h"
#include "tables/model_origin.h"

namespace kvx {

struct OpenedResults {
  LoadedModel file;
  SolvedModel solved;

  // How displacements.bin fits, and if it does not, why, as a sentence. Then the model was solved.
  DisplacementReading reading;

  // How the results in the folder were found, from solution.json, where it is of this model; and
  // why a file that is there tells nothing, as a sentence.
  std::optional<SolutionRecord> solution;
  std::string solutionProblem;

  // Where the model was imported from; without nodes where it was not.
  ModelOrigin origin;

  // What has changed since the model was made from other files (case_record.h), as a sentence;
  // empty: nothing, or it was not.
  std::string changedSources;

  // What kvx check finds in the model: a model with errors has results that mean nothing.
  std::size_t errors = 0;
  std::string firstError;  // "K104 line 7019: beam 10 ..."; empty without errors
};

// Returns ExitFine; or another status, after a complaint on standard error that names the reason.
// who: "kvx reactions". place: a folder with a model file, or the file. Says on standard error,
// also where it succeeds: why it was solved (ExplainSolving), that what the model was made from has
// changed, and that the model has errors. Changes the current
// folder to that of the model. Throws Interrupted.
ExitStatus OpenResults(const std::string& who, const std::string& place, OpenedResults& results);

// Throws a Stop where the skyline, which solves models again, does not fit into the memory: with
// the figures, and with what helps. tables: with references that are checked; reading: why the
// model has to be solved.
void CheckSkylineFits(const korvex::ModelTables& tables, const DisplacementReading& reading);

// Says on standard error why the model is solved again, if anything is in the folder that lets one
// expect otherwise: a displacements.bin that cannot be used, or results of the sparse engine, which
// the skyline does not give to the last digit.
void ExplainSolving(const std::string& who, const DisplacementReading& reading,
                    const std::optional<SolutionRecord>& solution);

// Solves the model in memory before someone who waits: SolveInMemory with its progress.
void SolveShown(const std::string& modelText, SolvedModel& solved);

}  // namespace kvx
