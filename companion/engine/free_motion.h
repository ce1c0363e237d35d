// What to say of a structure that can move, as the sparse factorisation finds it: which node, which
// way.
//
// A pivot that is left out, or a solution that is huge, is no proof: slender structures have soft
// modes. The mode decides, by the strain of the elements that take part in it
// (mechanism/mode_strain.h).
#pragma once

#include "model/model.h"
#include "sparse/condition.h"
#include "sparse/free_dofs.h"
#include "sparse/sparse_factor.h"

namespace kvx {

// Throws a Stop where pivots were left out: it names node and dof of the first ones, and says apart
// which can move and which are only too soft for the digits of a double.
void StopWhereFree(const korvex::Model& model, const FreeDofs& dofs, SparseFactor& factor);

// Throws a Stop where the estimate is large and its mode strains nothing, or is not finite.
void StopWhereModeIsFree(const korvex::Model& model, const FreeDofs& dofs,
                         const ConditionEstimate& estimate);

}  // namespace kvx
