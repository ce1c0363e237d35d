// Supports by penalty: the diagonal entry of a fixed dof is replaced by a very large stiffness.
//
// No equation is removed, and the load vector does not change (Bathe 1996, sec. 3.4.1). A fixed dof
// therefore moves by its force divided by the penalty. The support force follows from the
// displacement: R = -PenaltyStiffness x u.
#pragma once

#include "model/model.h"

namespace korvex {

inline constexpr double PenaltyStiffness = 1e20;

// Sets the diagonal entries of all fixed dofs to PenaltyStiffness. A dof is fixed if its flag is 1
// in any row; a later row cannot release it. Throws a Stop where a fixed dof belongs to a node that
// does not exist.
void ImposeSupports(Model& model);

}  // namespace korvex
