// What `kvx cases` works on: the structure, and the loads of each case and combination, read and
// checked.
#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "cases/case_file.h"
#include "commands/case_record.h"
#include "commands/commands.h"
#include "commands/load_model.h"
#include "finding/finding.h"
#include "model/model.h"
#include "tables/model_origin.h"

namespace kvx {

// A case or a combination.
struct LoadSet {
  std::string name;
  bool isCombination = false;
  korvex::ModelTables loads;  // these alone

  std::set<std::size_t> sources;  // rows of CaseSet::sources that these loads come from

  // Where the case has a file of loads: its name as the user would write it, and what the check
  // finds in it. Lines are those of this file.
  std::string loadsFile;
  FindingList findings;
};

struct CaseSet {
  std::string file;              // the case file, as the user would write it
  std::filesystem::path folder;  // of the case file, absolute
  LoadedModel structure;
  std::vector<CaseSource> sources;  // all files that were read: structure, case file, loads
  FindingList findings;             // of the structure and its own loads

  // Why the solver cannot read the structure: the findings have errors then, and what follows is
  // empty. Empty: it can.
  std::string unreadable;

  korvex::Model model;                // the structure as read, without loads
  ModelOrigin origin;                 // where it was imported from; without nodes: it was not
  std::vector<LoadSet> sets;          // cases, then combinations, in the order of the file
  std::vector<EnvelopeOf> envelopes;  // by rows of sets
};

// Reads and checks all files. Returns ExitFine, also where the findings have errors; or another
// status, after a complaint on standard error, where there is nothing to go on with. The current
// folder stays as it is. Throws Interrupted.
ExitStatus OpenCases(const CasesCommand& command, CaseSet& set);

// How many findings of this severity there are in all files.
std::size_t CountFindings(const CaseSet& set, Severity severity);

}  // namespace kvx
