#include "commands/write_shown.h"

#include <chrono>

#include "commands/progress.h"
#include "engine/result_folder.h"

namespace kvx {

void WriteShown(const SolvedText& solved, korvex::Model& model, DetailPeaks& details,
                UnfinishedFolder& unfinished) {
  const auto begin = std::chrono::steady_clock::now();
  const std::string of = solved.name.empty() ? "" : " (" + solved.name + ')';
  Progress progress;
  ResultWriting writing;
  writing.modelText = solved.modelText;
  writing.seconds = solved.seconds;
  writing.solution = solved.solution;
  writing.threads = solved.threads;
  writing.detailMemory = solved.memory;
  writing.before = [&](const char* file) {
    BeginProgress(std::string("Writing ") + file + of, progress);
    ShowBegin(begin, progress);
  };
  writing.detailShare = [&](double share) { ShowDetailShare(share, solved.name, progress); };
  WriteResults(writing, model, details, unfinished);
}

}  // namespace kvx
