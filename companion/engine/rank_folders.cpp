#include "engine/rank_folders.h"

#include "ranks/ranks.h"

namespace kvx {

namespace {

void MakeOwn(const std::string& parent, FactorFolder& folder) {
  DoTogether([&] { RemoveLeftFactors(parent); });
  DoTogether([&] { TakeFactorFolder(parent, 1 + RankOfThis(), folder); });
}

}  // namespace

void MakeRankFolders(const std::string& parent, FactorFolder& folder) {
  Tell(RankTask::MakeFolder);
  const std::uint64_t size = parent.size();
  SendToAll(&size, sizeof size);
  SendToAll(parent.data(), parent.size());
  MakeOwn(parent, folder);
}

void HelpMakeFolders(FactorFolder& folder) {
  std::uint64_t size = 0;
  ReceiveFromFirst(&size, sizeof size);
  std::string parent(size, ' ');
  ReceiveFromFirst(parent.data(), parent.size());
  MakeOwn(parent, folder);
}

}  // namespace kvx
