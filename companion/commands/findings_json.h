// Findings as JSON, the same for all commands: {"code", "severity", "line", "column", "table",
// "rows", "nodes", "position", "message", "remedy"}. What is not known is null. Of an imported
// model each has "original" besides (OriginalJson).
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "deck/model_tables.h"
#include "finding/finding.h"
#include "tables/model_origin.h"

namespace kvx {

// Adds "findings", "errors", "warnings" and "hints" to the object. tables: those of the model.
void AddFindingsJson(const FindingList& list, const ModelOrigin& origin,
                     const korvex::ModelTables& tables, nlohmann::ordered_json& json);

// Of a model that is not imported.
void AddFindingsJson(const FindingList& list, nlohmann::ordered_json& json);

}  // namespace kvx
