// The solution of one detail model: its own equation system, loaded by the beam's end
// displacements.
//
// The displacements of the end nodes are imposed by a penalty on the diagonal and the corresponding
// load (Bathe 1996, sec. 3.4.1). The links transfer them to the outline nodes of the end stations.
// The model has no other supports. If an outline node coincides with the beam's end point, its link
// has no length: the link is left out, and the displacements are imposed on the outline node too.
#pragma once

#include <cstddef>
#include <functional>

#include "model/beam_shell_model.h"
#include "system/assemble_stiffness.h"

namespace korvex {

// Sets ColumnHeights, DiagonalAddress and SkylineSize of model.Stiffness from the shells and all
// links, those without length included. Allocates Stiffness.Values and LoadVector, both zero, and
// Displacements. Throws a Stop where the memory is too small.
void BuildBeamShellProfile(BeamShellModel& model);

// Sets ColumnHeights, DiagonalAddress and SkylineSize of K alone, which is of the model's size.
void BuildBeamShellColumns(const BeamShellModel& model, SkylineMatrix& K);

// The ends of a beam.
enum class BeamEnd { First, Second };

// Calls `take` with the matrices of all links of one end except those shorter than Tolerance.
void HandOverLinks(const BeamShellModel& model, BeamEnd end, const TakeElementMatrix& take);

// Adds the stiffness of all shells, and of all links except those shorter than Tolerance.
void AssembleBeamShell(BeamShellModel& model);

// Receives an equation whose diagonal entry and load are to be replaced by these.
using DriveEquation = std::function<void(std::size_t equation, double diagonal, double load)>;

// Calls `drive` for all equations that the displacements of one end, u, are imposed on. u: 6, ux,
// uy, uz, rx, ry, rz, global.
void DriveEnd(const BeamShellModel& model, BeamEnd end, const double* u,
              const DriveEquation& drive);

// Imposes the solved displacements of the beam's first node (u1) and second node (u2).
// u1, u2: 6 each, ux, uy, uz, rx, ry, rz, global.
void ImposeEndDisplacements(const double* u1, const double* u2, BeamShellModel& model);

// All steps: fills Displacements and the corner stresses of the shells, NodeStressTop and
// NodeStressBottom. u1, u2: as above. A singular model gives infinities or NaNs without notice.
void SolveBeamShell(const double* u1, const double* u2, BeamShellModel& model);

// Moves the memory of the links from `solved`, whose results do not need them, to `next`, a model
// that is not extruded yet. Its contents are not used.
void ReuseLinks(BeamShellModel& solved, BeamShellModel& next);

// The same with the memory of the matrix and the load vector; `next` is not solved yet.
void ReuseSystem(BeamShellModel& solved, BeamShellModel& next);

}  // namespace korvex
