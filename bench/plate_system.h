// The assembled equations of plates for the benchmarks.
#pragma once

#include <cstdint>

#include "model/model.h"

namespace korvex::bench {

// Fills `model` with a plate of (columns - 1) x (rows - 1) squares, clamped along its first row of
// nodes, and assembles its stiffness matrix, supports and load. Nodes are numbered along the
// columns: few columns make a narrow band.
void BuildPlateSystem(std::int32_t columns, std::int32_t rows, Model& model);

}  // namespace korvex::bench
