// The results of a load case as the page shows them: a block of the columns of CaseResults
// (page/src/data/page_model.ts).
#pragma once

#include <cstdint>
#include <vector>

#include "audit/reactions.h"
#include "audit/section_forces.h"
#include "audit/solved_model.h"
#include "view/page_block.h"
#include "view/stress_rows.h"

namespace kvx {

struct CaseResults {
  std::vector<double> displacements;        // [NPOIN x 6] ux .. rz, global
  std::vector<std::int32_t> reactionNodes;  // nodes that are held, ascending
  std::vector<double> reactions;            // [reactionNodes x 6] Fx .. Mz on the structure, global
  StressRows shells;                        // four-node shells, then three-node shells
  std::vector<double> forces;               // [NELEM_B x 6 x 4] BeamForces::curves
  // [NELEM_B] the largest von Mises stress of each detail model at mid-length (detail_stress.h);
  // NaN of a beam without one; empty where the model has no detail models.
  std::vector<double> detailStresses;
};

// Fills the record. The model's averaged stresses must be there, its detail models may be. Throws a
// Stop where the record of the model is not complete. Numbers that are not finite stay so.
void CollectResults(const SolvedModel& solved, CaseResults& results);

// The same where reactions and the forces of all beams are known.
void CollectResults(const SolvedModel& solved, const Reactions& reactions,
                    const std::vector<BeamForces>& beams, CaseResults& results);

// Adds the record's columns; detailStresses only where there are any.
void AddResults(const CaseResults& results, PageBlock& block);

}  // namespace kvx
