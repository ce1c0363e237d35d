// Supports by penalty: a fixed dof's diagonal entry is replaced by a very large stiffness.
//
// No equation is removed and the load vector stays as it is (Bathe 1996, sec. 3.4.1). A fixed dof
// therefore moves by its force divided by the penalty, and the support force can be read off the
// displacement: R = -PenaltyStiffness x u.
#pragma once

#include "model/model.h"

namespace korvex {

inline constexpr double PenaltyStiffness = 1e20;

// Assigns PenaltyStiffness to the diagonal entries of all fixed dofs. Only the flag 1 fixes; a
// later row cannot release what an earlier one has fixed. Throws a Stop where a fixed dof belongs
// to a node that does not exist.
void ImposeSupports(Model& model);

}  // namespace korvex
