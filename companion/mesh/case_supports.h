// The supports that the cases of an ImportModel share.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "mesh/import_model.h"

namespace kvx {

// The held dofs of a node: bit d stands for dof d. Nodes ascending, each once; only nodes with a
// held dof.
using HeldNodes = std::vector<std::pair<std::int32_t, std::uint8_t>>;

// Joins the restraints of a set; a set of -1 has none.
HeldNodes JoinRestraints(const ImportModel& model, std::int32_t supports);

// The bits of a node; 0 where it is free.
std::uint8_t FindHeld(const HeldNodes& held, std::int32_t node);

// Whether the case has any load; one that has none is not written.
bool HasLoads(const ImportCase& loads);

// The row of the supports that the model has: those of the first case with loads; without such a
// case those of the first; without any case the first ones. -1: none.
std::int32_t FindSupports(const ImportModel& model);

}  // namespace kvx
