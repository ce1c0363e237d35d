// Findings as JSON, the same for all commands: {"code", "severity", "line", "column", "table",
// "rows", "nodes", "position", "message", "remedy"}. What is not known is null.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "finding/finding.h"

namespace kvx {

// Adds "findings", "errors", "warnings" and "hints" to the object.
void AddFindingsJson(const FindingList& list, nlohmann::ordered_json& json);

}  // namespace kvx
