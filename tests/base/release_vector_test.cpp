// The memory is given back, whatever the allocator.
#include "base/release_vector.h"

#include <gtest/gtest.h>

#include <vector>

#include "base/zeroed_memory.h"

namespace korvex {
namespace {

TEST(ReleaseVector, LeavesNoCapacity) {
  std::vector<double> numbers(1000);
  ReleaseVector(numbers);
  EXPECT_EQ(numbers.capacity(), 0U);
  std::vector<double, ZeroedMemory<double>> zeros(1000);
  ReleaseVector(zeros);
  EXPECT_EQ(zeros.capacity(), 0U);
}

}  // namespace
}  // namespace korvex
