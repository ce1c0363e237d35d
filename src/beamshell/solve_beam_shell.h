// The solution of one detail model: its own system, driven by the beam's end displacements.
//
// The end nodes take their displacements from a penalty on the diagonal and the matching load
// (Bathe 1996, sec. 3.4.1), the links carry them to the outline of the end stations, and nothing
// else holds the model. An outline node that lies on the beam's end point has a link without
// length: that link is left out, and the node gets the end node's displacements directly.
#pragma once

#include "model/beam_shell_model.h"

namespace korvex {

// Sets up ColumnHeights and addresses of `model.Stiffness` and its zero values, LoadVector and
// Displacements. Links count for the profile whatever their length.
void BuildBeamShellProfile(BeamShellModel& model);

// Adds the stiffness of all shells and of the links that are not shorter than Tolerance.
void AssembleBeamShell(BeamShellModel& model);

// Imposes the solved displacements of the beam's first and second node.
// u1, u2: 6 each, ux, uy, uz, rx, ry, rz, global.
void ImposeEndDisplacements(const double* u1, const double* u2, BeamShellModel& model);

// All stages: afterwards `model` holds its displacements and the corner stresses of its shells.
// u1, u2 as above. A singular model gives infinities or NaNs, silently.
void SolveBeamShell(const double* u1, const double* u2, BeamShellModel& model);

// Hands what the results of `solved` do not need, its links, matrix and load vector, on to a model
// that is yet to be extruded: it uses their memory and nothing of their contents.
void ReuseMemory(BeamShellModel& solved, BeamShellModel& next);

}  // namespace korvex
