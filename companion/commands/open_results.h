// The solved model that a command about results works with.
//
// Its displacements are those of displacements.bin beside the model file, where that belongs to
// it. Otherwise the model is solved in memory, with the bits of a run; nothing is written.
#pragma once

#include <string>

#include "audit/displacement_file.h"
#include "audit/solved_model.h"
#include "commands/exit_status.h"
#include "commands/load_model.h"
#include "tables/model_origin.h"

namespace kvx {

struct OpenedResults {
  LoadedModel file;
  SolvedModel solved;

  // How displacements.bin fits, and if it does not, why, as a sentence. Then the model was solved.
  DisplacementReading reading;

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
// also where it succeeds: that displacements.bin does not fit (not that it is missing), that
// what the model was made from has changed, and that the model has errors. Changes the current
// folder to that of the model. Throws Interrupted.
ExitStatus OpenResults(const std::string& who, const std::string& place, OpenedResults& results);

// Solves the model in memory before someone who waits: SolveInMemory with its progress.
void SolveShown(const std::string& modelText, SolvedModel& solved);

}  // namespace kvx
