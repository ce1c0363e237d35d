// What is kept of the detail models when they go: of each beam its largest stresses and their
// places.
#pragma once

#include <vector>

#include "audit/detail_blocks.h"
#include "audit/detail_stress.h"
#include "audit/maxima.h"

namespace kvx {

struct DetailPeaks {
  std::vector<DetailStress> stresses;  // [beams] averaged stresses at mid-length
  std::vector<PeakOffer> offers;       // [beams] what FindMaxima takes
  std::size_t blocks = 0;              // in which the detail models were made
};

// Which stresses of the detail models offers are made from, as a MaximaRequest names them.
struct DetailChoice {
  StressSlots slots = StressSlots::Averaged;
  BeamPlace place = BeamPlace::MidLength;
};

// Appends those of the block: blocks must come in their order. Throws a Stop where a detail model
// is not whole.
void AppendDetailPeaks(const DetailBlock& block, const DetailChoice& choice, DetailPeaks& peaks);

// Makes the detail models of all beams for their peaks alone. Throws a Stop as MakeDetailModels;
// then `peaks` is empty.
void FindDetailPeaks(const korvex::Model& model, const DetailWork& work, const DetailChoice& choice,
                     DetailPeaks& peaks);

}  // namespace kvx
