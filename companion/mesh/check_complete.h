// Whether an ImportModel has all that a model file needs.
#pragma once

#include "mesh/import_model.h"
#include "mesh/import_report.h"

namespace kvx {

// Reports as refused, by group and reason, the elements that lack a node, a thickness or section, a
// material or an orientation, and where the deck says why, that reason; supports that differ from
// case to case; displacements that are prescribed without a support, or twice with different
// values; a model without elements. The caller goes on only where
// CountFate(report, Fate::Refused) is 0. Tubes need no orientation as long as they have no offset.
// Elements without an extent are left to the check of the model. Returns whether a map file could
// give any of what is missing.
bool CheckComplete(const ImportModel& model, ImportReport& report);

}  // namespace kvx
