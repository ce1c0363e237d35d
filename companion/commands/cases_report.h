// What `kvx cases` says: of the files that it has read, and of the cases that it has solved. The
// form is described in docs/companion.md.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "commands/case_set.h"
#include "commands/solve_cases.h"
#include "finding/findings_text.h"

namespace kvx {

// The findings of all files, each file by its name; then their number.
std::string CaseFindingsText(const CaseSet& set, const TextStyle& style);

// A line for each case and combination, what governs, and where the results are. others: folders of
// earlier runs.
std::string SolvedCasesText(const CaseSet& set, const SolvedCases& solved,
                            const std::vector<std::string>& others, const TextStyle& style);

// What a dry run foretells; empty where nothing could be foretold.
std::string ForecastText(const CaseSet& set, const SolvedCases& solved, const TextStyle& style);

// The same as one line of JSON. solved: without cases where nothing was solved, and with a plan
// where it was planned; audits: AuditJson of each.
std::string CasesJson(const CaseSet& set, const SolvedCases& solved,
                      const std::vector<nlohmann::ordered_json>& audits,
                      const std::vector<std::string>& others);

}  // namespace kvx
