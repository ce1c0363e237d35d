// Shells with their normals turned round.
#pragma once

#include <vector>

#include "mesh/import_model.h"

namespace kvx {

// isFlipped: [shells]; 1: nodes 1, 2, 3, 4 become 1, 4, 3, 2, and those of a triangle 1, 3, 2. The
// loads of all cases stay what they are: pressures get the opposite sign.
void FlipShells(const std::vector<char>& isFlipped, ImportModel& model);

}  // namespace kvx
