// Threads whose tables memory cannot hold: the caller's thread works alone. POSIX only: a child
// process gets a limit of its addresses, and asks for more threads than it holds.
#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>

#include "support/limited_child.h"
#include "workers/make_in_order.h"
#include "workers/run_threads.h"

namespace korvex::test {
namespace {

// Each has 8 bytes in a table of RunThreads and 4 places of one byte in one of MakeInOrder.
constexpr int Threads = 1 << 27;
constexpr std::uint64_t Limit = std::uint64_t{64} << 20U;

TEST(WithoutMemory, RunThreadsWorksAlone) {
  if (IsMemoryUnlimited) GTEST_SKIP() << "the sanitizer asks for addresses of its own";
  EXPECT_TRUE(SucceedsWithin(Limit, [] {
    int calls = 0;
    RunThreads(Threads, [&](int) { ++calls; });
    if (calls != 1) throw std::runtime_error("calls");
  }));
}

TEST(WithoutMemory, PiecesAreMadeOneByOne) {
  if (IsMemoryUnlimited) GTEST_SKIP() << "the sanitizer asks for addresses of its own";
  EXPECT_TRUE(SucceedsWithin(Limit, [] {
    int made = 0, taken = 0;
    MakeInOrder(
        Threads, 5, 1, [&](int, std::int64_t, std::int64_t) { ++made; },
        [&](int, std::int64_t first, std::int64_t) {
          if (first != taken || ++taken != made) throw std::runtime_error("pieces");
        });
    if (taken != 5) throw std::runtime_error("pieces");
  }));
}

}  // namespace
}  // namespace korvex::test
