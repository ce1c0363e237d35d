// The report of an import as JSON, the same in import.json and in `kvx import --json`:
//
//   {"cards": {"GRID": {"count", "file", "line"}, ...},
//    "entries": [{"card", "fate", "reason", "count", "file", "line", "example"}]}
//
// Fates: "limited", "no effect", "lost", "refused". "file" and "line" are null where the place is
// none. Linear time, also for a deck of as many cards as it has lines.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "mesh/import_report.h"

namespace kvx {

nlohmann::ordered_json ImportReportJson(const ImportReport& report);

}  // namespace kvx
