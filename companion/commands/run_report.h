// What `kvx run` says about a folder.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "commands/audit_report.h"
#include "commands/folder_run.h"
#include "finding/findings_text.h"

namespace kvx {

// The findings of the check in brief, and what was done, or would be. Errors that keep the model
// from being solved are shown in full.
std::string RunText(const FolderRun& run, const TextStyle& style);

// One line. audit: AuditJson, or null.
std::string RunJson(const FolderRun& run, const nlohmann::ordered_json& audit);

// One row of MakeAuditTable. report: null where nothing was solved.
std::string RunCsv(const FolderRun& run, const AuditReport* report);

// What to call next: the last lines for a user. factorisations: of all folders.
std::string NextText(const FolderRuns& runs, std::size_t factorisations, const TextStyle& style);

}  // namespace kvx
