// Numbers compared as bytes: 0 and -0 differ, and a NaN equals itself.
#pragma once

#include <cstring>
#include <vector>

namespace korvex::test {

// a, b: vectors of doubles, each with an allocator of its own.
template <typename A = std::vector<double>, typename B = std::vector<double>>
bool SameBits(const A& a, const B& b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0);
}

}  // namespace korvex::test
