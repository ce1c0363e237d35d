// The two stress files of the shell elements: corner stresses as recovered, and averaged.
//
// Per element a title with its 0-based number, a header line, and for each corner two lines, upper
// and lower face: the node number right-aligned in 14 columns and a colon, then SX, SY, SZ, TXY,
// TXZ, TYZ and the von Mises stress SE right-aligned in 15 each, six significant digits. SE is that
// of the components at full precision.
#pragma once

#include <string>

#include "model/model.h"

namespace korvex {

// Each returns false where the file could not be written whole, and throws a Stop where it cannot
// be opened.

// The corner stresses as recovered.
bool WriteElementNodeStresses(const std::string& fileName, const Model& model);

// The averages.
bool WriteAverageNodeStresses(const std::string& fileName, const Model& model);

}  // namespace korvex
