// What `kvx audit` says about a solved model, as data, as text and as JSON. `kvx run` and `kvx
// cases` say the same of what they have solved. The form is described in docs/companion.md.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "audit/beam_advice.h"
#include "audit/displacement_file.h"
#include "audit/maxima.h"
#include "audit/reactions.h"
#include "audit/section_forces.h"
#include "audit/section_stresses.h"
#include "audit/stale_results.h"
#include "audit/verdict.h"
#include "engine/solution_record.h"
#include "finding/findings_text.h"
#include "tables/model_origin.h"

namespace kvx {

struct AuditOptions {
  int threads = 1;            // for element matrices and for what files are compared with
  double yield = 0.0;         // yield stress, model units; 0: none is given
  bool comparesFiles = true;  // the result files in the folder with what this model gives
  bool hasStresses = false;  // the model has its stresses and detail models already, as after a run
  std::string noDetails;     // with hasStresses: why it has no detail models; empty: it has them
  std::string folder;        // precedes their names; empty, or ends with a slash

  // The bytes of the model file, for the lines in which findings stand; empty: they have none.
  std::string_view modelText;
  // How displacements.bin fits, where it was asked.
  DisplacementReading reading;
  // What has changed since the model was made, as a sentence (case_record.h); empty: nothing.
  std::string changedSources;
  // Where the displacements come from, as part of a sentence: "solved in memory"; may be empty.
  std::string origin;
  // How the displacements were found, and how exact they are: with one load, that of the model;
  // none: nothing is known of it.
  std::optional<SolutionRecord> solution;
  // Why solution.json, which is there, tells nothing of it, as a sentence; empty: it does.
  std::string solutionProblem;
  // The result files are of the sparse engine, and the displacements of the skyline: last digits
  // may differ.
  bool hasSparseFiles = false;
  // Where the model was imported from; without nodes where it was not.
  ModelOrigin deck;
  // What kvx check finds in the model: how many errors, and the text of the first.
  std::size_t modelErrors = 0;
  std::string firstError;
};

// The largest stresses from section forces of one kind.
struct NominalPeak {
  std::int32_t beam = -1;  // -1: no beam has a number
  PlacedStress stress;
};
struct NominalPeaks {
  NominalPeak tension, compression, shear, vonMises;
};

struct AuditReport {
  double yield = 0.0;                      // as in the options
  std::string origin;                      // as in the options
  ModelOrigin deck;                        // as in the options
  std::optional<SolutionRecord> solution;  // as in the options
  bool isLoaded = true;                    // there is a load, or a prescribed displacement
  Reactions reactions;
  Verdict verdict;
  std::vector<BeamForces> beams;          // [NELEM_B]
  std::vector<double> beamVonMises;       // [NELEM_B] the largest from section forces; NaN: none
  NominalPeaks nominal;                   // of all beams
  std::vector<PeakList> maxima;           // of the whole model
  std::string noDetails;                  // why there are no detail models; empty: they are there
  std::vector<UndividedBeam> undivided;   // those that lack most stress first
  std::vector<ShortDetail> shortDetails;  // in the order of the table
  std::vector<ResultState> files;         // empty unless they were compared
  FindingList findings;                   // codes K7xx, by severity
};

// Fills the report. solved: gets its stresses and detail models. Throws a Stop where the record of
// the model is not complete, Interrupted after an interrupt.
void AuditModel(const AuditOptions& options, SolvedModel& solved, AuditReport& report);

// A screenful. file: the name of the model file, any bytes.
std::string AuditText(const std::string& file, const SolvedModel& solved, const AuditReport& report,
                      const TextStyle& style);

nlohmann::ordered_json AuditJson(const SolvedModel& solved, const AuditReport& report);

// "balanced", or the gravest thing that is wrong, in a few words.
std::string VerdictText(const AuditReport& report);

}  // namespace kvx
