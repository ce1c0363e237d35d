// Solves the cases and combinations of `kvx cases` with one factorisation, writes the folder of
// each and the envelopes, and audits them.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "commands/audit_report.h"
#include "commands/case_set.h"
#include "commands/result_table.h"
#include "engine/plan_solution.h"
#include "engine/solution_record.h"

namespace kvx {

// A case or combination that has been solved.
struct SolvedCase {
  std::filesystem::path folder;
  ForceSum loads{};                 // about the global origin
  LargestDisplacement translation;  // its value is NaN where a displacement is not finite
  korvex::Vector3 place{};          // of its node
  std::vector<PeakList> maxima;     // of the audit, and SectionVonMises
  FindingList findings;             // of the audit
  std::string verdict;
  std::size_t detailBlocks = 0;  // in which its detail models were made
};

struct SolvedEnvelope {
  std::string name;
  std::filesystem::path folder;
  std::vector<std::string> of;
  std::vector<ResultTable> tables;  // the governing values (envelope_tables.h)
};

struct SolvedCases {
  SolutionPlan plan;              // without the order of the nodes
  bool fits = false;              // the plan can be followed
  SolutionRecord solution;        // with all loads; empty in a dry run
  std::vector<SolvedCase> cases;  // as CaseSet::sets
  std::vector<SolvedEnvelope> envelopes;
  double seconds = 0.0;          // of the solution
  std::size_t detailBlocks = 0;  // in which the detail models of a case were made, the most
};

// Receives each case when its folder is complete, for what has to be said of it.
using TakeCase = std::function<void(std::size_t row, const SolvedModel&, const AuditReport&)>;

// results: the folder of the results; made where it is missing. Changes the current folder. Throws
// a Stop where CheckCaseFolders does, a case cannot be solved or its files cannot be written
// (StopKind::ResultFile), and Interrupted; folders that are complete by then stay, the others are
// as they were: none is left behind empty.
void SolveCases(const std::filesystem::path& results, const EngineSettings& settings, CaseSet& set,
                const TakeCase& take, SolvedCases& solved);

// Fills the plan alone, also as far as it went where nothing fits, and writes nothing. Throws a
// Stop where a case has loads that cannot be, or nothing fits.
void PlanCases(const EngineSettings& settings, CaseSet& set, SolvedCases& solved);

// Folders in `results` that look like results of this command, but of no case, combination or
// envelope of the set.
std::vector<std::string> ListOtherFolders(const std::filesystem::path& results, const CaseSet& set);

}  // namespace kvx
