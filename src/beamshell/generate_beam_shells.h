// The detail models of all beams: each stiffener rebuilt as shells, driven by its solved end
// displacements, and its plates' stresses.
#pragma once

#include "model/model.h"

namespace korvex {

// Fills `model.BeamShellModels` from the beams and the displacements, beam by beam, and averages
// the corner stresses of all. Does nothing where there is no beam. Throws a Stop at a beam whose
// BeamSecType has no section table.
void GenerateBeamShells(Model& model);

}  // namespace korvex
