// The nodal displacement file.
//
// A header line, then one line per node in index order: the 0-based node number right-aligned in 14
// columns, a colon, and dx, dy, dz, rx, ry, rz right-aligned in 15 columns each. Six significant
// digits, global axes, model units. A fixed dof is not zero: it has its force / 1e20 (supports.h).
#pragma once

#include <string>

#include "model/model.h"

namespace korvex {

// Returns false if the file could not be written completely. Throws a Stop where it cannot be
// opened.
// threads: that make the text.
bool WriteNodeDisplacements(const std::string& fileName, const Model& model, int threads = 1);

}  // namespace korvex
