// The stresses of a solved model, made as a run makes them, before someone who waits.
#pragma once

#include "audit/solved_model.h"

namespace kvx {

// Fills the corner stresses of all shells, as recovered and averaged; with `withBeams` also the
// detail models of all beams, which may take longer than the solution. Shows the progress, and
// throws Interrupted after an interrupt. Throws a Stop where a run would: where a beam's section
// type has no table, or the memory is too small for the detail models.
void RecoverStresses(bool withBeams, SolvedModel& solved);

}  // namespace kvx
