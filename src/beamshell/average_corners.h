// Corner stresses of all detail models averaged over coincident corners of the same plate.
//
// A corner is averaged with all corners at a distance up to 0.001 (model units) that lie in its
// surface (corner_sum.h). They belong to its own detail model, the corner itself included, and to
// the detail models of beams that share an end point with its beam (distance less than 0.001).
// Corners of beams that cross or overlap without a common end point are not averaged together.
#pragma once

#include <cstdint>
#include <vector>

#include "model/beam_shell_model.h"

namespace korvex {

// Fills AvgStressTop and AvgStressBottom of all shells from NodeStressTop and NodeStressBottom.
// A sum runs over the own model, then over the others in table order, shell by shell, corner by
// corner. threads: each averages some of the models.
void AverageBeamShellStresses(std::vector<BeamShellModel>& models, int threads = 1);

// The most bytes that this takes for models with so many nodes and shells in all.
std::uint64_t CountAveragingBytes(std::uint64_t nodes, std::uint64_t shells);

}  // namespace korvex
