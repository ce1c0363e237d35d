// The processes that share a solution: "ranks", of which the first, 0, does everything else alone.
//
// Rank 0 tells the others what to do next; they wait for it without using the processor. All of
// them then call the same routine, each with its own part of the data. A program that is one
// process, as kvx is, is rank 0 of 1: then all of this does nothing.
//
// Which of both a program is, is decided when it is linked: ranks_one.cpp or ranks_mpi.cpp. What a
// rank throws while all of them are at work must be handled there, before they meet again
// (DoTogether).
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace kvx {

enum class RankTask : std::int32_t {
  End,
  TakeRows,    // sparse/shared_matrix.h
  MakeFolder,  // engine/rank_folders.h
  Analyse,     // sparse/sparse_factor.h
  Factor,
  Solve,
  Multiply,  // sparse/multiply.h
  SumRows,
  Release  // engine/serve_ranks.h: of what all these have left
};

// Whether the program is that of several processes, also where it is one now.
bool IsProgramOfRanks();

int CountRanks();
int RankOfThis();

// The ranks that run on this machine, this one included.
int CountRanksHere();

// To be called once each, as the first and the last that the program does.
void BeginRanks(int& argc, char**& argv);
void EndRanks();

// Of rank 0. Does nothing where there is no other.
void Tell(RankTask task);

// Of the others: what rank 0 tells next.
RankTask AwaitTask();

// All ranks call these together, and those that send and receive the same number of bytes.

// From rank 0 to all others.
void SendToAll(const void* bytes, std::size_t count);
void ReceiveFromFirst(void* bytes, std::size_t count);

// Between rank 0 and one other.
void Send(int rank, const void* bytes, std::size_t count);
void Receive(int rank, void* bytes, std::size_t count);

// Adds the vectors of all ranks, on rank 0; those of the others stay as they are.
void AddToFirst(double* values, std::size_t count);

// all: count bytes of each rank, on rank 0; of the others it may be null.
void Gather(const void* mine, std::size_t count, void* all);

// Does the work that each rank does alone. Where it throws on any rank, all of them leave: rank 0
// with what it has thrown, or the text of another rank with its number and machine; the others with
// a Stop.
void DoTogether(const std::function<void()>& work);

// Ends all ranks at once: for one that has no other way. A second thread may call it, beside what
// the first one does, and comes back where this MPI does not allow that: then the end of this
// process must tell the program that has started all of them.
void AbortRanks(int status);

}  // namespace kvx
