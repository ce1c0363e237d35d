// The detail models of single beams, without those of all others.
//
// A run averages the corner stresses of a detail model with those of beams that share an end with
// it (beamshell/average_corners.h). At mid-length only beams count that pass there, as one drawn
// twice; others meet it at its ends. So a beam needs its own detail model and those of the beams
// that share an end and come near its middle: mostly none. The stresses have the bits of a run.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "audit/detail_stress.h"
#include "model/model.h"

namespace kvx {

// Fills the largest von Mises stress at mid-length of the detail models of `beams`, which are rows
// of the table. A beam without a detail model (no section table, too many steps for the memory) has
// NaN and no steps. before: called with the index in `beams` before each; may throw; may be empty.
// Throws a Stop where the record of the model is not complete or a row is outside the table.
void FindDetailStresses(const korvex::Model& model, const std::vector<std::int32_t>& beams,
                        const std::function<void(std::size_t index)>& before,
                        std::vector<DetailStress>& stresses);

}  // namespace kvx
