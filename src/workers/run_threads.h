// One function on several threads, the caller's among them.
//
// Threads take their work from a common list, so the function must work with any number of threads:
// where the system has no more of them, or no memory for them, fewer run.
#pragma once

#include <functional>

namespace korvex {

// Calls work(0) on the caller's thread and work(1) .. work(threads - 1) on threads of their own,
// and returns when all have returned. threads: below 2, the caller's thread works alone. Rethrows
// the exception of the lowest number. The others are not told of it: work that takes long has a way
// to end them (share_range.h).
void RunThreads(int threads, const std::function<void(int number)>& work);

}  // namespace korvex
