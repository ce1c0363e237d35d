// The two stress files of the shell elements: corner stresses as recovered, and averaged.
//
// Per element a title with its 0-based number, a header line, and for each corner two lines, first
// the upper face, then the lower one: the node number right-aligned in 14 columns and a colon, then
// SX, SY, SZ, TXY, TXZ, TYZ and the von Mises stress SE right-aligned in 15 columns each. Six
// significant digits, global axes, model units. SE is computed before the components are rounded.
#pragma once

#include <string>

#include "model/model.h"

namespace korvex {

// Both routines return false if the file could not be written completely, and throw a Stop where it
// cannot be opened. threads: that make the text.

// Writes the corner stresses as recovered.
bool WriteElementNodeStresses(const std::string& fileName, const Model& model, int threads = 1);

// Writes the averaged corner stresses.
bool WriteAverageNodeStresses(const std::string& fileName, const Model& model, int threads = 1);

}  // namespace korvex
