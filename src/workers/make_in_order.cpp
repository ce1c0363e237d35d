#include "workers/make_in_order.h"

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <new>
#include <vector>

#include "workers/run_threads.h"

namespace korvex {

namespace {

using Lock = std::unique_lock<std::mutex>;

// The threads take one piece at a time. With fewer places, those that make pieces would wait while
// the caller's thread makes one itself.
constexpr int PlacesPerThread = 4;

// What the threads of one range share.
struct PieceQueue {
  std::int64_t count = 0, items = 0, pieces = 0;  // of all; of a piece
  std::int64_t places = 0;

  std::mutex mutex;  // guards all that follows
  std::condition_variable changed;
  std::int64_t next = 0;      // the first piece that nobody has begun
  std::int64_t taken = 0;     // pieces
  std::vector<char> isMade;   // [places] whether the piece in it can be taken
  std::int64_t failedAt = 0;  // the lowest piece that threw; `pieces`: none
  std::exception_ptr failure;
};

bool CanBegin(const PieceQueue& queue) {
  return queue.failedAt == queue.pieces && queue.next < queue.pieces &&
         queue.next < queue.taken + queue.places;
}

// Does one piece without the lock and records its failure.
void DoPiece(const PlacedWork& work, std::int64_t piece, Lock& lock, PieceQueue& queue) {
  const std::int64_t first = piece * queue.items;
  const std::int64_t end = std::min(first + queue.items, queue.count);
  std::exception_ptr failure;
  lock.unlock();
  try {
    work(static_cast<int>(piece % queue.places), first, end);
  } catch (...) {
    failure = std::current_exception();
  }
  lock.lock();
  if (!failure || piece >= queue.failedAt) return;
  queue.failedAt = piece;
  queue.failure = failure;
}

void MakePiece(const PlacedWork& make, Lock& lock, PieceQueue& queue) {
  const std::int64_t piece = queue.next++;
  DoPiece(make, piece, lock, queue);
  queue.isMade[static_cast<std::size_t>(piece % queue.places)] = 1;  // failed: nobody takes it
  queue.changed.notify_all();
}

// The work of the other threads.
void MakePieces(const PlacedWork& make, PieceQueue& queue) {
  Lock lock(queue.mutex);
  for (;;) {
    const auto isOver = [&] { return queue.failedAt < queue.pieces || queue.next >= queue.pieces; };
    queue.changed.wait(lock, [&] { return isOver() || CanBegin(queue); });
    if (isOver()) return;
    MakePiece(make, lock, queue);
  }
}

// The work of the caller's thread: it takes what can be taken, and makes a piece where nothing can.
void TakePieces(const PlacedWork& make, const PlacedWork& take, PieceQueue& queue) {
  Lock lock(queue.mutex);
  while (queue.taken < queue.failedAt) {
    char& isMade = queue.isMade[static_cast<std::size_t>(queue.taken % queue.places)];
    if (isMade != 0) {
      DoPiece(take, queue.taken, lock, queue);
      isMade = 0;
      ++queue.taken;
      queue.changed.notify_all();
    } else if (CanBegin(queue)) {
      MakePiece(make, lock, queue);
    } else {
      queue.changed.wait(lock);
    }
  }
}

// Needs no memory.
void MakeAlone(const PlacedWork& make, const PlacedWork& take, const PieceQueue& queue) {
  for (std::int64_t piece = 0; piece < queue.pieces; ++piece) {
    const std::int64_t first = piece * queue.items;
    const std::int64_t end = std::min(first + queue.items, queue.count);
    make(0, first, end);
    take(0, first, end);
  }
}

// Returns false where memory cannot hold the table of the places.
bool MakePlaces(int threads, PieceQueue& queue) {
  queue.places = CountPlaces(threads);
  try {
    queue.isMade.assign(static_cast<std::size_t>(queue.places), 0);
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

}  // namespace

int CountPlaces(int threads) { return threads < 2 ? 1 : threads * PlacesPerThread; }

void MakeInOrder(int threads, std::int64_t count, std::int64_t pieceItems, const PlacedWork& make,
                 const PlacedWork& take) {
  if (count < 1) return;
  PieceQueue queue;
  queue.count = count;
  queue.items = std::max<std::int64_t>(pieceItems, 1);
  queue.pieces = (count - 1) / queue.items + 1;
  queue.failedAt = queue.pieces;
  const auto useful = static_cast<int>(std::min<std::int64_t>(threads, queue.pieces));
  if (useful < 2 || !MakePlaces(threads, queue)) {
    MakeAlone(make, take, queue);
    return;
  }
  RunThreads(useful, [&](int number) {
    if (number == 0) {
      TakePieces(make, take, queue);
    } else {
      MakePieces(make, queue);
    }
  });
  if (queue.failure) std::rethrow_exception(queue.failure);
}

}  // namespace korvex
