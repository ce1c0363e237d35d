// What `kvx check` says about a model: as text, and as JSON. Its form is described in
// docs/companion.md.
#pragma once

#include <string>

#include "commands/check_model.h"
#include "commands/load_model.h"
#include "finding/findings_text.h"

namespace kvx {

// Takes the import.json in the current folder into the report, and its names into the findings.
void AddOrigin(CheckReport& report);

// Where a model without loads (K407) is the structure of the cases.toml beside it: the finding says
// so. The current folder must be that of the model.
void PointToCases(const LoadedModel& model, FindingList& findings);

// Takes that finding out: a structure whose loads are those of its cases needs none of its own.
void DropNoLoads(FindingList& findings);

// The findings, and a summary for a report. file: the name of the model file, any bytes.
std::string ReportText(const std::string& file, const CheckReport& report, const TextStyle& style);

// One JSON object in one line, which ends with "\n"; ASCII. Numbers that are not finite, and what
// is not known, are null; bytes that are no UTF-8 become U+FFFD.
std::string ReportJson(const CheckReport& report);

}  // namespace kvx
