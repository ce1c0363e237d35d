// The solution of one detail model: its own equation system, loaded by the beam's end
// displacements.
//
// The displacements of the end nodes are imposed by a penalty on the diagonal and the corresponding
// load (Bathe 1996, sec. 3.4.1). The links transfer them to the outline nodes of the end stations.
// The model has no other supports. If an outline node coincides with the beam's end point, its link
// has no length: the link is left out, and the displacements are imposed on the outline node too.
#pragma once

#include "model/beam_shell_model.h"

namespace korvex {

// Sets ColumnHeights, DiagonalAddress and SkylineSize of model.Stiffness from the shells and all
// links, those without length included. Allocates Stiffness.Values and LoadVector, both zero, and
// Displacements. Throws a Stop where the memory is too small.
void BuildBeamShellProfile(BeamShellModel& model);

// Adds the stiffness of all shells, and of all links except those shorter than Tolerance.
void AssembleBeamShell(BeamShellModel& model);

// Imposes the solved displacements of the beam's first node (u1) and second node (u2).
// u1, u2: 6 each, ux, uy, uz, rx, ry, rz, global.
void ImposeEndDisplacements(const double* u1, const double* u2, BeamShellModel& model);

// All steps: fills Displacements and the corner stresses of the shells, NodeStressTop and
// NodeStressBottom. u1, u2: as above. A singular model gives infinities or NaNs without notice.
void SolveBeamShell(const double* u1, const double* u2, BeamShellModel& model);

// Moves the memory of the links, the matrix and the load vector from `solved`, whose results do not
// need them, to `next`, a model that is not extruded yet. Their contents are not used.
void ReuseMemory(BeamShellModel& solved, BeamShellModel& next);

}  // namespace korvex
