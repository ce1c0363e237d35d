// What an import has come to, and what it says of it: as text, and as JSON. Their form is described
// in docs/import.md.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "commands/check_model.h"
#include "commands/exit_status.h"
#include "commands/import_cases.h"
#include "commands/import_output.h"
#include "finding/findings_text.h"
#include "mesh/import_report.h"
#include "mesh/merge_nodes.h"
#include "renumber/order_cost.h"

namespace kvx {

enum class ImportEnd {
  Refused,  // something without which there is no model
  Strict,   // something is lost or limited, and --strict allows neither
  Written,
};

// The findings of a file of loads.
struct LoadsFindings {
  std::string file;
  FindingList findings;
};

struct ImportOutcome {
  std::string deck;    // as the user named it
  std::string folder;  // the same
  std::string format;  // "gmsh 4.1"
  ImportReport report;
  ImportEnd end = ImportEnd::Refused;

  bool hasMap = false;      // --map was given
  bool canMapHelp = false;  // what is refused lacks what a map file can give

  bool hasMerged = false;  // --merge was given
  double mergeLength = 0.0;
  MergedNodes merged;
  std::string onlyCase;                 // of --case, as the deck names it; "": all of them
  std::vector<std::string> otherCases;  // those left out by it

  // From here on only where it is Written.
  std::vector<ImportedCase> cases;
  std::vector<std::string> files;  // without folder
  ImportWriting writing;
  std::string orderName;  // of FindBestOrder
  OrderCost orderCost, givenCost;
  CheckReport check;                      // of the model file
  std::vector<LoadsFindings> loadsFiles;  // of the files of loads
};

// Whether its load cases stand in cases.toml.
bool HasCaseFile(const ImportOutcome& outcome);

std::size_t CountFindings(const ImportOutcome& outcome, Severity severity);

std::string ImportText(const ImportOutcome& outcome, const TextStyle& style);

// One line of ASCII.
std::string ImportJson(const ImportOutcome& outcome, ExitStatus status);

// The part of ImportText that lists what became of the cards.
std::string ImportReportText(const ImportReport& report, const TextStyle& style);

// How many cards are lost or limited, once more below all else; "": none. Ends with a line end.
std::string LossText(const ImportReport& report, const TextStyle& style);

}  // namespace kvx
