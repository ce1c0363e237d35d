#include "engine/rank_folders.h"

#include "ranks/ranks.h"

namespace kvx {

namespace {

// One rank after the other: a folder that has just been made looks like one that was left.
void MakeInTurn(const std::string& parent, FactorFolder& folder) {
  for (int rank = 0; rank < CountRanks(); ++rank) {
    DoTogether([&] {
      if (rank == RankOfThis()) MakeFactorFolder(parent, folder);
    });
  }
}

}  // namespace

void MakeRankFolders(const std::string& parent, FactorFolder& folder) {
  Tell(RankTask::MakeFolder);
  const std::uint64_t size = parent.size();
  SendToAll(&size, sizeof size);
  SendToAll(parent.data(), parent.size());
  MakeInTurn(parent, folder);
}

void HelpMakeFolders(FactorFolder& folder) {
  std::uint64_t size = 0;
  ReceiveFromFirst(&size, sizeof size);
  std::string parent(size, ' ');
  ReceiveFromFirst(parent.data(), parent.size());
  MakeInTurn(parent, folder);
}

}  // namespace kvx
