#include "engine/serve_ranks.h"

#include <vector>

#include "engine/rank_folders.h"
#include "ranks/ranks.h"
#include "report/stop.h"
#include "sparse/multiply.h"
#include "sparse/shared_matrix.h"
#include "sparse/sparse_factor.h"

namespace kvx {

namespace {

// What this rank has of a solution.
struct Part {
  FactorFolder folder;  // goes last
  UpperMatrix A;
  std::vector<double> work;  // of its products
  SparseFactor factor;
};

void Analyse(Part& part) {
  FactorSettings settings;
  settings.outOfCore = part.folder.path.u8string();
  AnalyseMatrix(part.A, {}, settings, part.factor);
}

void Factorise(Part& part) {
  FactorSettings settings;
  settings.outOfCore = part.folder.path.u8string();
  FactorMatrix(part.A, settings, part.factor);
}

void Do(RankTask task, Part& part) {
  switch (task) {
    case RankTask::TakeRows:
      return HelpAssemble(part.A, part.work);
    case RankTask::Analyse:
      return Analyse(part);
    case RankTask::Factor:
      return Factorise(part);
    case RankTask::Solve:
      return SolveColumns(part.factor, 0, nullptr);
    case RankTask::Multiply:
      return HelpMultiply(part.A, part.work);
    case RankTask::SumRows:
      return HelpSumRows(part.A, part.work);
    case RankTask::MakeFolder:
    case RankTask::Release:
    case RankTask::End:
      return;
  }
}

// Until its factor is no longer needed. Returns false at the end of all.
bool ServeSolution(const CallGuard& guard) {
  Part part;
  const auto removeFactors = [&] { RemoveFactorFolder(part.folder); };
  for (;;) {
    RankTask task = RankTask::End;
    guard([&] { task = AwaitTask(); }, removeFactors);
    if (task == RankTask::Release) return true;
    if (task == RankTask::End) return false;
    try {
      if (task == RankTask::MakeFolder) {
        HelpMakeFolders(part.folder);
      } else {
        guard([&] { Do(task, part); }, removeFactors);
      }
    } catch (const korvex::Stop&) {  // rank 0 knows it
    }
  }
}

}  // namespace

void ServeRanks(const CallGuard& guard) {
  while (ServeSolution(guard)) {
  }
}

}  // namespace kvx
