// Takes elements out of an ImportModel, with all references to them.
#pragma once

#include <cstddef>
#include <vector>

#include "mesh/import_model.h"

namespace kvx {

// isKept: [shells] and [beams]; 0: goes. Groups keep their nodes. Returns how many pressures and
// line loads went with the elements.
std::size_t RemoveElements(const std::vector<char>& isShellKept,
                           const std::vector<char>& isBeamKept, ImportModel& model);

}  // namespace kvx
