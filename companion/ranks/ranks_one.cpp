// For programs that are one process.
#include <cstring>

#include "ranks/ranks.h"

namespace kvx {

bool IsProgramOfRanks() { return false; }

int CountRanks() { return 1; }
int RankOfThis() { return 0; }
int CountRanksHere() { return 1; }

void BeginRanks(int& /*argc*/, char**& /*argv*/) {}
void EndRanks() {}

void Tell(RankTask /*task*/) {}
RankTask AwaitTask() { return RankTask::End; }

void SendToAll(const void* /*bytes*/, std::size_t /*count*/) {}
void ReceiveFromFirst(void* /*bytes*/, std::size_t /*count*/) {}
void Send(int /*rank*/, const void* /*bytes*/, std::size_t /*count*/) {}
void Receive(int /*rank*/, void* /*bytes*/, std::size_t /*count*/) {}
void AddToFirst(double* /*values*/, std::size_t /*count*/) {}

void Gather(const void* mine, std::size_t count, void* all) { std::memcpy(all, mine, count); }

void AbortRanks(int /*status*/) {}

void DoTogether(const std::function<void()>& work) { work(); }

}  // namespace kvx
