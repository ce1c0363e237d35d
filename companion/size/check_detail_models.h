// The size of the beams' detail models (beamshell/extrude_outline.h): one that is out of
// proportion, the largest one and all of them against the memory.
#pragma once

#include <cstdint>

#include "check/checked_model.h"
#include "finding/finding.h"

namespace kvx {

// Adds K503 and K504. freeMemory: bytes that the solver may use.
void CheckDetailModels(const CheckedModel& model, std::uint64_t freeMemory, FindingList& findings);

}  // namespace kvx
