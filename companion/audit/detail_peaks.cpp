#include "audit/detail_peaks.h"

#include <utility>

#include "audit/peak_offers.h"

namespace kvx {

void AppendDetailPeaks(const DetailBlock& block, const DetailChoice& choice, DetailPeaks& peaks) {
  for (std::size_t i = 0; i < block.count; ++i) {
    peaks.stresses.push_back(FindDetailStress(block.details[i]));
    peaks.offers.push_back(
        OfferDetail(block.details[i], block.firstBeam + i, choice.slots, choice.place));
  }
}

void FindDetailPeaks(const korvex::Model& model, const DetailWork& work, const DetailChoice& choice,
                     DetailPeaks& peaks) {
  peaks = {};
  DetailPeaks found;
  found.blocks = MakeDetailModels(model, work, [&](const DetailBlock& block) {
    AppendDetailPeaks(block, choice, found);
    return true;
  });
  peaks = std::move(found);
}

}  // namespace kvx
