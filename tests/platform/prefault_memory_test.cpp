// Prefaulting leaves the contents of a block, and of the bytes beside it, unchanged.
#include "platform/prefault_memory.h"

#include <gtest/gtest.h>

#include <vector>

namespace korvex::test {
namespace {

TEST(PrefaultMemory, ContentsStay) {
  for (const std::size_t bytes : {std::size_t{0}, std::size_t{1}, std::size_t{4095},
                                  std::size_t{4096}, std::size_t{8193}, std::size_t{1} << 24}) {
    std::vector<unsigned char> block(bytes + 2, 0x5A);
    PrefaultMemory(block.data() + 1, bytes);
    EXPECT_EQ(block, std::vector<unsigned char>(bytes + 2, 0x5A)) << bytes;
  }
}

TEST(PrefaultMemory, NoBlock) { PrefaultMemory(nullptr, 0); }

}  // namespace
}  // namespace korvex::test
