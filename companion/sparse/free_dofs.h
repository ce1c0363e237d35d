// Which dofs are free, numbered anew, and which are fixed.
//
// A fixed dof has no equation here. What a support's penalty would give it is prescribed: first
// u = F / 1e20, which is the displacement where such a force stands for one.
#pragma once

#include <cstdint>
#include <vector>

#include "deck/model_tables.h"

namespace kvx {

struct FreeDofs {
  std::vector<std::int32_t> places;     // [NEQ] of an equation among the free, or among the fixed
  std::vector<std::uint8_t> isFixed;    // [NEQ] 1: a restraint holds it
  std::vector<std::int32_t> equations;  // [free] ascending
  std::vector<std::int32_t> fixed;      // [fixed] equations, ascending
};

// Throws a Stop where a restraint holds a node that does not exist, as a run does, and where memory
// is too small.
void ListFreeDofs(const korvex::ModelTables& tables, FreeDofs& dofs);

}  // namespace kvx
