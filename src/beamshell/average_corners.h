// Corner stresses of all detail models averaged over coincident corners of the same plate.
//
// A corner is averaged with every corner within 0.001 (model units) that lies in its surface
// (corner_sum.h): corners of its own model, its own included, and those of models whose beams share
// an end point with its own, ends closer than 0.001 counting as one. Beams that merely cross or
// overlap stay apart.
#pragma once

#include <vector>

#include "model/beam_shell_model.h"

namespace korvex {

// Fills AvgStressTop and AvgStressBottom of all shells from NodeStressTop and NodeStressBottom.
// Sums run over the own model and then over the others in table order, shell by shell, corner by
// corner.
void AverageBeamShellStresses(std::vector<BeamShellModel>& models);

}  // namespace korvex
