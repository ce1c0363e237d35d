// The solution of several detail models with the same connectivity side by side, one in each lane
// of a vector.
//
// Beams whose outlines have the same points and segments, in as many steps, are the same structure
// with other numbers. Shells are formed and recovered (shell/lanes/shell_lanes.h) and the systems
// factorised (skyline/panel/systems.h) in lanes, so each model has the bits that SolveBeamShell
// gives it. Links and end displacements are added lane by lane, because some models leave links
// out. Where an infinity or a NaN occurs, the model has to be solved alone.
#pragma once

#include <cstdint>
#include <vector>

#include "model/beam_shell_model.h"

namespace korvex {

// An extruded detail model and the solved displacements of its beam's nodes, as for SolveBeamShell.
struct LaneBeam {
  const double* u1 = nullptr;
  const double* u2 = nullptr;
  BeamShellModel* model = nullptr;
};

// The memory of the systems that are solved side by side.
struct BeamLanes {
  SkylineMatrix profile;            // without values; that of each lane's system
  std::vector<std::int64_t> reach;  // [n] the last column that reaches a row
  std::vector<double> values;       // of all lanes
};

// Returns how many models are solved side by side with vectors of so many bits, 1 for none.
// vectorBits: as for FactorSkyline (skyline/factor_skyline.h).
int CountBeamLanes(int vectorBits);

// Solves the models: fills Displacements and the corner stresses of the shells.
// beams: at least one, at most CountBeamLanes(vectorBits), which is more than 1; all models have
// the same counts and nodes of shells and links.
// Returns the beams that have to be solved alone: what is written in them is undefined. Where the
// memory is too small for their systems together, these are all beams.
// Throws a Stop where the memory is too small for the displacements.
std::vector<LaneBeam> SolveBeamLanes(int vectorBits, const std::vector<LaneBeam>& beams,
                                     BeamLanes& memory);

}  // namespace korvex
