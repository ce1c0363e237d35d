#include "workers/share_range.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>

#include "workers/run_threads.h"

namespace korvex {

namespace {

// What the threads of one range share.
struct Pieces {
  std::int64_t count = 0, items = 0;   // of all; of a piece
  std::atomic<std::int64_t> next{0};   // the first item that nobody has taken
  std::atomic<std::int64_t> done{0};   // items
  std::atomic<bool> hasFailed{false};  // nobody takes another piece
  std::mutex mutex;                    // guards the next two
  std::int64_t failedAt = -1;          // the first item of the lowest piece that threw; -1: none
  std::exception_ptr failure;
};

void RecordFailure(std::int64_t first, Pieces& pieces) {
  const std::lock_guard<std::mutex> lock(pieces.mutex);
  pieces.hasFailed = true;
  if (pieces.failedAt >= 0 && pieces.failedAt < first) return;
  pieces.failedAt = first;
  pieces.failure = std::current_exception();
}

// report: of the caller's thread; null on the others.
void TakePieces(const PieceWork& work, const ItemsDone* report, Pieces& pieces) {
  while (!pieces.hasFailed) {
    const std::int64_t first = pieces.next.fetch_add(pieces.items);
    if (first >= pieces.count) return;
    const std::int64_t end = std::min(first + pieces.items, pieces.count);
    try {
      if (report != nullptr && *report) (*report)(pieces.done);
      work(first, end);
    } catch (...) {
      RecordFailure(first, pieces);
      return;
    }
    pieces.done += end - first;
  }
}

}  // namespace

void ShareRange(int threads, std::int64_t count, std::int64_t pieceItems, const PieceWork& work,
                const ItemsDone& report) {
  if (count < 1) return;
  Pieces pieces;
  pieces.count = count;
  pieces.items = std::max<std::int64_t>(pieceItems, 1);
  const std::int64_t pieceCount = (count - 1) / pieces.items + 1;
  const auto useful = static_cast<int>(std::min<std::int64_t>(threads, pieceCount));
  // The others may take all pieces before the caller's thread gets one.
  if (useful > 1 && report) report(0);
  RunThreads(useful,
             [&](int number) { TakePieces(work, number == 0 ? &report : nullptr, pieces); });
  if (pieces.failure) std::rethrow_exception(pieces.failure);
}

}  // namespace korvex
