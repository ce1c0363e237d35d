// How often a test repeats itself with other random models.
//
// An optimised build of this system does all of them. A sanitizer makes a model take twenty times
// as long, and what it finds is found by any model that walks through the same code; the same is
// true of another system. Such builds do KORVEX_REPEAT_SHARE of them, a share in per cent.
#pragma once

#include <cstdint>

namespace korvex::test {

// At least one.
inline constexpr std::uint32_t Repeats(std::uint32_t all) {
  const std::uint32_t share = all * KORVEX_REPEAT_SHARE / 100;
  return share > 0 ? share : 1;
}

}  // namespace korvex::test
