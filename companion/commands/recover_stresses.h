// The stresses of a solved model, made as a run makes them, before someone who waits.
#pragma once

#include "audit/solved_model.h"

namespace kvx {

enum class DetailWish {
  None,
  Peaks,   // what is kept of the beams' detail models (SolvedModel::details)
  Models,  // that and the detail models themselves (Model::BeamShellModels)
};

// Fills the corner stresses of all shells, as recovered and averaged, and what is wished of detail
// models, which may take longer than the solution. choice: of their peaks. Shows the progress, and
// throws Interrupted after an interrupt. Throws a Stop where a run would: where a beam's section
// type has no table, or the memory is too small; for peaks it holds those of a few beams at least.
void RecoverStresses(DetailWish wish, const DetailChoice& choice, SolvedModel& solved);

}  // namespace kvx
