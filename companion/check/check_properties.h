// K106, K107, K108, K607: materials and thicknesses.
#pragma once

#include "check/checked_model.h"
#include "check/table_rows.h"
#include "finding/finding.h"

namespace kvx {

// A row that is named is doubtful afterwards.
void CheckMaterials(const TableUse& use, CheckedModel& model, FindingList& list);
void CheckThicknesses(const TableUse& use, CheckedModel& model, FindingList& list);

}  // namespace kvx
