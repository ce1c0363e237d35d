// Work in a child process that may take only so much memory. POSIX only.
#pragma once

#include <cstdint>
#include <functional>

namespace korvex::test {

// Sanitizers ask for addresses of their own: where they are built in, a limit means nothing.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool IsMemoryUnlimited = true;
#else
inline constexpr bool IsMemoryUnlimited = false;
#endif

// Calls `work` in a child process that can get `bytes` bytes of addresses. Returns whether it
// returned without an exception.
bool SucceedsWithin(std::uint64_t bytes, const std::function<void()>& work);

}  // namespace korvex::test
