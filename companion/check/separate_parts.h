// K207: the separate parts of a model, with their sizes and places.
#pragma once

#include "check/parts.h"
#include "finding/finding.h"

namespace kvx {

// Names the parts if there is more than one.
void NameSeparateParts(const CheckedModel& model, const Parts& parts, double tolerance,
                       FindingList& findings);

}  // namespace kvx
