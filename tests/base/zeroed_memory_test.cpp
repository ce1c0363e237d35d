// Vectors whose memory is zero when it comes.
#include "base/zeroed_memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

namespace korvex {
namespace {

using Zeroed = std::vector<double, ZeroedMemory<double>>;

// Blocks of all sizes, most of which another vector has used and given back.
TEST(ZeroedMemory, NewBlocksAreZero) {
  for (int repeat = 0; repeat < 3; ++repeat) {
    for (const std::size_t size : {1U, 7U, 100U, 5000U, 100000U, 3000000U}) {
      Zeroed numbers;
      numbers.reserve(size);
      numbers.resize(size);
      EXPECT_EQ(std::count(numbers.begin(), numbers.end(), 0.0), static_cast<std::ptrdiff_t>(size));
      std::fill(numbers.begin(), numbers.end(), 7.0);
    }
  }
}

TEST(ZeroedMemory, NumbersAreKept) {
  Zeroed numbers = {1.0, 2.0};
  for (int i = 3; i <= 100; ++i) numbers.push_back(i);
  numbers.insert(numbers.end(), 50, -0.5);
  for (std::size_t i = 0; i < 100; ++i) EXPECT_EQ(numbers[i], static_cast<double>(i + 1));
  EXPECT_EQ(std::count(numbers.begin(), numbers.end(), -0.5), 50);
  numbers.assign(3, 9.0);
  EXPECT_EQ(numbers, (Zeroed{9.0, 9.0, 9.0}));
}

// Their bytes are more than a size can count.
TEST(ZeroedMemory, RefusesTooManyNumbers) {
  ZeroedMemory<double> memory;
  EXPECT_THROW(memory.allocate(std::numeric_limits<std::size_t>::max() / 4), std::bad_alloc);
}

}  // namespace
}  // namespace korvex
