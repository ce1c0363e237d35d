// Numbers compared as bytes: 0 and -0 differ, and a NaN equals itself.
#pragma once

#include <cstring>
#include <vector>

namespace korvex::test {

inline bool SameBits(const std::vector<double>& a, const std::vector<double>& b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0);
}

}  // namespace korvex::test
