// Two nodes that no element connects although they were meant to be connected: nodes at the same
// place, or a node and a node of the element on which it lies.
#pragma once

#include <cstdint>

namespace kvx {

struct Gap {
  std::int32_t node = 0;
  std::int32_t other = 0;
};

}  // namespace kvx
