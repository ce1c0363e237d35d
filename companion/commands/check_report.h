// What `kvx check` says about a model: as text, and as JSON. Its form is described in
// docs/companion.md.
#pragma once

#include <string>

#include "commands/check_model.h"
#include "finding/findings_text.h"

namespace kvx {

// The findings, and a summary for a report. file: the name of the model file, any bytes.
std::string ReportText(const std::string& file, const CheckReport& report, const TextStyle& style);

// One JSON object in one line, which ends with "\n"; ASCII. Numbers that are not finite, and what
// is not known, are null; bytes that are no UTF-8 become U+FFFD.
std::string ReportJson(const CheckReport& report);

}  // namespace kvx
