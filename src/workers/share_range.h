// A range of items, done piece by piece by several threads.
//
// Threads take the pieces in ascending order, each the next one as soon as it is free. Which thread
// does which piece differs from run to run, so the results may not depend on it: a piece writes
// only what belongs to its own items, and each item is computed as one thread would do it.
#pragma once

#include <cstdint>
#include <functional>

namespace korvex {

// Does the items first .. end - 1.
using PieceWork = std::function<void(std::int64_t first, std::int64_t end)>;

// Receives the number of items that are done, never falling, on the caller's thread. May throw to
// end the work.
using ItemsDone = std::function<void(std::int64_t items)>;

// Does all items 0 .. count - 1 in pieces of `pieceItems` (at least 1; the last may be shorter).
// threads: below 2, the caller's thread does all pieces in order.
// report: called once before any piece, and before each piece of the caller's thread; may be empty.
// Where a piece throws, no other begins, and the exception of the lowest piece is rethrown when all
// threads have ended: since pieces begin in ascending order, it is the one that one thread alone
// would have met.
void ShareRange(int threads, std::int64_t count, std::int64_t pieceItems, const PieceWork& work,
                const ItemsDone& report = {});

}  // namespace korvex
