// The fixed dofs of each node, as the solver takes the restraint rows and as they were meant.
//
// The solver fixes a dof whose flag is 1 in any row; every other number leaves it free
// (system/supports.h). A flag such as 2 or -1 was hardly meant to leave it free.
#pragma once

#include <cstdint>
#include <vector>

#include "check/checked_model.h"

namespace kvx {

inline constexpr std::uint8_t AllDofs = 0x3F;

// Bit d stands for dof d: ux, uy, uz, rx, ry, rz.
struct FixedDofs {
  std::vector<std::uint8_t> fixed;  // [NPOIN] the flag 1
  std::vector<std::uint8_t> meant;  // [NPOIN] any flag that is not 0
};

// Rows that are lost, or whose node does not exist, count nowhere.
void CollectFixedDofs(const CheckedModel& model, FixedDofs& dofs);

inline bool IsNode(const CheckedModel& model, std::int32_t node) {
  return node >= 0 && static_cast<std::size_t>(node) < model.tables.Nodes.size();
}

inline bool IsFixed(std::uint8_t mask, std::size_t dof) { return (mask >> dof & 1U) != 0; }

}  // namespace kvx
