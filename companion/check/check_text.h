// K0xx: the text of a model file. Each slip is named where it stands; then the file is read as it
// was meant, so that the other checks see the rest of the model.
//
// A file without a slip is read once, by the solver's reader. Otherwise its lines are looked at one
// by one (list_sections.h, settle_rows.h, mend_row.h), a mended text is made of them, and the
// reader reads that.
#pragma once

#include <string_view>

#include "check/checked_model.h"
#include "finding/finding.h"

namespace kvx {

// Fills `model`, which must be empty, from any text. Where nothing can be made of the text, the
// model stays empty and its notChecked says so.
void CheckText(std::string_view text, CheckedModel& model, FindingList& findings);

}  // namespace kvx
