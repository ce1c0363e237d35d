// For programs of several processes that MPI has started.
//
// MPI waits by asking again and again, which takes a whole core. Here it is asked with pauses: only
// what is a solution's own work keeps the other ranks busy.
#include <mpi.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <exception>
#include <new>
#include <thread>

#include "ranks/ranks.h"
#include "report/stop.h"

namespace kvx {

namespace {

// MPI counts with int: larger blocks go in pieces.
constexpr std::size_t MostBytes = std::size_t{1} << 30U;

constexpr int Tag = 1;

// Set once, when the program begins: asking needs all ranks together.
int RanksHere = 1;

// What comes soon is asked for again soon: at once, then in short pauses for about a second.
constexpr int TriesAtOnce = 200, TriesSoon = 10000;
constexpr std::chrono::microseconds ShortPause(50), LongPause(1000);

// Begins something by start(request), and comes back when it is done.
template <typename Start>
void Await(const Start& start) {
  MPI_Request request = MPI_REQUEST_NULL;
  start(request);
  int isDone = 0;
  for (int tries = 0; isDone == 0; ++tries) {
    MPI_Test(&request, &isDone, MPI_STATUS_IGNORE);
    if (isDone != 0 || tries < TriesAtOnce) continue;
    std::this_thread::sleep_for(tries < TriesSoon ? ShortPause : LongPause);
  }
}  // NOLINT(clang-analyzer-optin.mpi.MPI-Checker): it does not know MPI_Test

// Calls start(offset, count, request) for pieces of `total` items of `size` bytes.
template <typename Start>
void InPieces(std::size_t total, std::size_t size, const Start& start) {
  const std::size_t most = MostBytes / size;
  for (std::size_t offset = 0; offset < total; offset += most) {
    const auto count = static_cast<int>(std::min(most, total - offset));
    Await([&](MPI_Request& request) { start(offset, count, request); });
  }
}

// Why work failed, as it goes from rank to rank.
struct Failure {
  std::exception_ptr thrown;
  korvex::StopKind kind = korvex::StopKind::Notice;
  std::string text;
};

void Describe(const std::exception_ptr& thrown, Failure& failure) {
  failure.thrown = thrown;
  try {
    std::rethrow_exception(thrown);
  } catch (const korvex::Stop& stop) {
    failure.kind = stop.kind;
    failure.text = stop.text;
  } catch (const std::bad_alloc&) {
    failure.text = "there is not enough memory.";
  } catch (const std::exception& error) {
    failure.text = error.what();
  } catch (...) {  // rank 0 knows what it throws
    failure.text = "the work was ended.";
  }
}

std::string NameOfMachine() {
  std::array<char, MPI_MAX_PROCESSOR_NAME> name{};
  int length = 0;
  MPI_Get_processor_name(name.data(), &length);
  return {name.data(), static_cast<std::size_t>(length)};
}

// From that rank to rank 0, which throws it.
void SendFailure(const Failure& failure) {
  const std::string text =
      "Rank " + std::to_string(RankOfThis()) + " on " + NameOfMachine() + ": " + failure.text;
  const std::uint64_t size = text.size();
  Send(0, &failure.kind, sizeof failure.kind);
  Send(0, &size, sizeof size);
  Send(0, text.data(), text.size());
}

[[noreturn]] void ThrowFailureOf(int rank) {
  korvex::StopKind kind = korvex::StopKind::Notice;
  std::uint64_t size = 0;
  Receive(rank, &kind, sizeof kind);
  Receive(rank, &size, sizeof size);
  std::string text(size, ' ');
  Receive(rank, text.data(), text.size());
  throw korvex::Stop{kind, text};
}

}  // namespace

bool IsProgramOfRanks() { return true; }

int CountRanks() {
  int count = 1;
  MPI_Comm_size(MPI_COMM_WORLD, &count);
  return count;
}

int RankOfThis() {
  int rank = 0;
  MPI_Comm_rank(MPI_COMM_WORLD, &rank);
  return rank;
}

int CountRanksHere() { return RanksHere; }

void BeginRanks(int& argc, char**& argv) {
  int provided = 0;
  MPI_Init_thread(&argc, &argv, MPI_THREAD_MULTIPLE, &provided);
  MPI_Comm here = MPI_COMM_NULL;
  MPI_Comm_split_type(MPI_COMM_WORLD, MPI_COMM_TYPE_SHARED, 0, MPI_INFO_NULL, &here);
  MPI_Comm_size(here, &RanksHere);
  MPI_Comm_free(&here);
}

void EndRanks() {
  Await([&](MPI_Request& request) { MPI_Ibarrier(MPI_COMM_WORLD, &request); });
  MPI_Finalize();
}

void Tell(RankTask task) { SendToAll(&task, sizeof task); }

RankTask AwaitTask() {
  RankTask task = RankTask::End;
  ReceiveFromFirst(&task, sizeof task);
  return task;
}

void SendToAll(const void* bytes, std::size_t count) {
  // MPI reads them only on this rank.
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
  ReceiveFromFirst(const_cast<void*>(bytes), count);
}

void ReceiveFromFirst(void* bytes, std::size_t count) {
  InPieces(count, 1, [&](std::size_t offset, int size, MPI_Request& request) {
    MPI_Ibcast(static_cast<char*>(bytes) + offset, size, MPI_BYTE, 0, MPI_COMM_WORLD, &request);
  });
}

void Send(int rank, const void* bytes, std::size_t count) {
  InPieces(count, 1, [&](std::size_t offset, int size, MPI_Request& request) {
    MPI_Isend(static_cast<const char*>(bytes) + offset, size, MPI_BYTE, rank, Tag, MPI_COMM_WORLD,
              &request);
  });
}

void Receive(int rank, void* bytes, std::size_t count) {
  InPieces(count, 1, [&](std::size_t offset, int size, MPI_Request& request) {
    MPI_Irecv(static_cast<char*>(bytes) + offset, size, MPI_BYTE, rank, Tag, MPI_COMM_WORLD,
              &request);
  });
}

void AddToFirst(double* values, std::size_t count) {
  const bool isFirst = RankOfThis() == 0;
  InPieces(count, sizeof(double), [&](std::size_t offset, int size, MPI_Request& request) {
    double* const piece = values + offset;
    MPI_Ireduce(isFirst ? MPI_IN_PLACE : piece, isFirst ? piece : nullptr, size, MPI_DOUBLE,
                MPI_SUM, 0, MPI_COMM_WORLD, &request);
  });
}

void Gather(const void* mine, std::size_t count, void* all) {
  const auto size = static_cast<int>(count);
  Await([&](MPI_Request& request) {
    MPI_Igather(mine, size, MPI_BYTE, all, size, MPI_BYTE, 0, MPI_COMM_WORLD, &request);
  });
}

void AbortRanks(int status) {
  int level = MPI_THREAD_SINGLE, isMain = 0;
  MPI_Query_thread(&level);
  MPI_Is_thread_main(&isMain);
  if (level == MPI_THREAD_MULTIPLE || isMain != 0) MPI_Abort(MPI_COMM_WORLD, status);
}

void DoTogether(const std::function<void()>& work) {
  Failure failure;
  try {
    work();
  } catch (...) {
    Describe(std::current_exception(), failure);
  }
  const int rank = RankOfThis(), none = CountRanks();
  int mine = failure.thrown ? rank : none, first = none;
  Await([&](MPI_Request& request) {
    MPI_Iallreduce(&mine, &first, 1, MPI_INT, MPI_MIN, MPI_COMM_WORLD, &request);
  });
  if (first == none) return;
  if (first == rank && rank != 0) SendFailure(failure);
  if (rank == 0 && failure.thrown) std::rethrow_exception(failure.thrown);
  if (rank == 0) ThrowFailureOf(first);
  // Also where this one has failed, whatever that was: rank 0 ends all of them, and tells why.
  throw korvex::Stop{korvex::StopKind::Notice, "Another rank has failed."};
}

}  // namespace kvx
