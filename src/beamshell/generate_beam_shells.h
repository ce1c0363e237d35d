// The detail models of all beams: each beam is rebuilt as flat shells along its outline, loaded by
// its solved end displacements and solved.
//
// Per beam: outline (section_outline.h), extrusion (extrude_outline.h), solution
// (solve_beam_shell.h); after the last beam the corner stresses are averaged (average_corners.h).
#pragma once

#include "model/model.h"
#include "skyline/work_share.h"

namespace korvex {

// Fills model.BeamShellModels from the beams and the displacements, in table order. Does nothing if
// there is no beam. share: called before each beam with the share of the beams that are done, 0 for
// the first alone; may be empty. Throws a Stop where a beam's BeamSecType has no section table,
// where a detail model has too many equations, and where the memory is too small.
void GenerateBeamShells(Model& model, const ShareCallback& share = {});

}  // namespace korvex
