// A range of items that several threads make piece by piece, and that the caller's thread takes in
// ascending order: matrices that are added one after the other, text that goes into a file.
//
// A piece is made in a place, memory of the caller. There are a few places for each thread, so that
// pieces which take longer hold nobody up, and the memory is bounded: a piece whose place is still
// in use waits until it has been taken.
#pragma once

#include <cstdint>
#include <functional>

namespace korvex {

// Works on the items first .. end - 1 in the place `place`.
using PlacedWork = std::function<void(int place, std::int64_t first, std::int64_t end)>;

// The number of places that MakeInOrder uses with so many threads: 0 .. CountPlaces - 1.
int CountPlaces(int threads);

// Makes and takes all items 0 .. count - 1 in pieces of `pieceItems` (at least 1; the last may be
// shorter).
// make: on any thread, several pieces at once, each in a place of its own. take: on the caller's
// thread, piece by piece in ascending order.
// threads: below 2, each piece is made and then taken.
// Where a piece throws, no other begins, and the exception of the lowest piece is rethrown when all
// threads have ended. All pieces below it have been taken, as with one thread.
void MakeInOrder(int threads, std::int64_t count, std::int64_t pieceItems, const PlacedWork& make,
                 const PlacedWork& take);

}  // namespace korvex
