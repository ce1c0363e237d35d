// The text of a model file as it was meant: whole rows as they stand, others mended or zero.
#pragma once

#include <string>
#include <string_view>

#include "check/checked_model.h"
#include "check/list_sections.h"

namespace kvx {

// Appends the mended text to `mended`; fills lines, title lines, doubtful and lost rows of `model`.
// Adds a finding for each row that is not whole, and for each line that is no row.
void MendText(std::string_view text, const SectionTexts& sections, std::string& mended,
              CheckedModel& model, FindingList& findings);

}  // namespace kvx
