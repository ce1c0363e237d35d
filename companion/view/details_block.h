// The detail models of all beams as the page shows them: a block of the columns of DetailModels
// (page/src/data/page_model.ts).
//
// One after the other, in the order of the beams. A detail model's first and last node are the
// beam's own: no shell has them, and they are left out. So are beams without a detail model.
#pragma once

#include <cstdint>
#include <vector>

#include "model/model.h"
#include "view/page_block.h"
#include "view/stress_rows.h"

namespace kvx {

struct DetailModels {
  std::vector<double> coordinates;    // [nodes x 3] global, undeformed
  std::vector<double> displacements;  // [nodes x 3] translations, global
  std::vector<std::int32_t> shells;   // [shells x 4] nodes
  std::vector<std::int32_t> beams;    // [shells] the beam of each
  StressRows stresses;                // averaged as in the file (beamshell/average_corners.h)
};

// Fills the record from model.BeamShellModels; a model without them gives an empty one. Throws a
// Stop where a detail model is not whole.
void CollectDetails(const korvex::Model& model, DetailModels& details);

void AddDetails(const DetailModels& details, PageBlock& block);

}  // namespace kvx
