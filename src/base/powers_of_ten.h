// The powers of ten as doubles.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace korvex {

// 10^-45 to 10^45. Those from 10^0 to 10^22 are exact.
inline constexpr std::int32_t LargestPower = 45, LargestExactPower = 22;
inline constexpr std::array<double, 2 * LargestPower + 1> PowersOfTen{
    1e-45, 1e-44, 1e-43, 1e-42, 1e-41, 1e-40, 1e-39, 1e-38, 1e-37, 1e-36, 1e-35, 1e-34, 1e-33,
    1e-32, 1e-31, 1e-30, 1e-29, 1e-28, 1e-27, 1e-26, 1e-25, 1e-24, 1e-23, 1e-22, 1e-21, 1e-20,
    1e-19, 1e-18, 1e-17, 1e-16, 1e-15, 1e-14, 1e-13, 1e-12, 1e-11, 1e-10, 1e-9,  1e-8,  1e-7,
    1e-6,  1e-5,  1e-4,  1e-3,  1e-2,  1e-1,  1e0,   1e1,   1e2,   1e3,   1e4,   1e5,   1e6,
    1e7,   1e8,   1e9,   1e10,  1e11,  1e12,  1e13,  1e14,  1e15,  1e16,  1e17,  1e18,  1e19,
    1e20,  1e21,  1e22,  1e23,  1e24,  1e25,  1e26,  1e27,  1e28,  1e29,  1e30,  1e31,  1e32,
    1e33,  1e34,  1e35,  1e36,  1e37,  1e38,  1e39,  1e40,  1e41,  1e42,  1e43,  1e44,  1e45};

// k: -LargestPower .. LargestPower
inline double PowerOfTen(std::int32_t k) {
  const std::int32_t index = LargestPower + k;
  return PowersOfTen[static_cast<std::size_t>(index)];
}

}  // namespace korvex
