#include "audit/detail_file.h"

#include <utility>

#include "beamshell/average_stress_file.h"

namespace kvx {

bool WriteDetailFile(const std::string& fileName, const korvex::Model& model,
                     const DetailWork& work, const std::function<void()>& beforeLast,
                     DetailPeaks& peaks) {
  peaks = {};
  DetailPeaks found;
  korvex::ResultFile file;
  // The file is opened when the first block is there, so that none is begun for a model whose
  // detail models cannot be made.
  const auto begin = [&](bool isLast) {
    if (isLast && beforeLast) beforeLast();
    if (!file.stream.is_open()) {
      korvex::BeginAverageStressFile(fileName, model, work.threads, file);
    }
  };
  if (model.BeamElements.empty()) begin(true);
  found.blocks = MakeDetailModels(model, work, [&](const DetailBlock& block) {
    begin(block.isLast);
    korvex::AddDetailModels(block.firstBeam, block.details, block.count, file);
    AppendDetailPeaks(block, {}, found);
    return file.stream.good();  // with a full disk the rest need not be made
  });
  if (!korvex::CloseResultFile(file)) return false;
  peaks = std::move(found);
  return true;
}

}  // namespace kvx
