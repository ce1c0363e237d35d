// The two stress files of the shell elements: corner stresses as recovered, and averaged.
//
// Per element a title with its 0-based number, a header line, and for each corner two lines, upper
// and lower face: the node number right-aligned in 14 columns and a colon, then SX, SY, SZ, TXY,
// TXZ, TYZ and the von Mises stress SE right-aligned in 15 each, six significant digits. SE is that
// of the components at full precision.
#pragma once

#include "model/model.h"

namespace korvex {

// Writes "Shell element node stress.txt". Stops the run where it cannot be opened.
void WriteElementNodeStresses(const Model& model);

// Writes "Shell element average node stress.txt". Stops the run where it cannot be opened.
void WriteAverageNodeStresses(const Model& model);

}  // namespace korvex
