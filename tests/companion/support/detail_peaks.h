// What is kept of the detail models of a model that has them all.
#pragma once

#include "audit/detail_peaks.h"

namespace kvx::test {

inline DetailPeaks TakeDetailPeaks(const korvex::Model& model, const DetailChoice& choice = {}) {
  DetailPeaks peaks;
  const std::vector<korvex::BeamShellModel>& models = model.BeamShellModels;
  AppendDetailPeaks({0, models.data(), models.size(), true}, choice, peaks);
  return peaks;
}

}  // namespace kvx::test
