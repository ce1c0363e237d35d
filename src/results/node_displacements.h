// The nodal displacement file.
//
// A header line, then one line per node in index order: the 0-based node number right-aligned in 14
// columns, a colon, and dx, dy, dz, rx, ry, rz right-aligned in 15 each, six significant digits,
// global axes, model units. A fixed dof shows its support force / 1e20, not zero.
#pragma once

#include <string>

#include "model/model.h"

namespace korvex {

// Returns false where the file could not be written whole. Throws a Stop where it cannot be opened.
bool WriteNodeDisplacements(const std::string& fileName, const Model& model);

}  // namespace korvex
