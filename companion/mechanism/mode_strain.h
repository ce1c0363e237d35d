// How much a displacement strains the elements that take part in it.
//
//   v_e^T k_e v_e / (|v_e|^T |k_e| |v_e|)
//
// It is 1e-16 or so where an element moves as a rigid body: the roundings of k_e alone. Units and
// the stiffness of other elements do not matter.
#pragma once

#include <vector>

#include "model/model.h"

namespace kvx {

// Whether the largest of these ratios reaches `limit`, of the elements that move as far as a
// thousandth of the one that moves farthest: the others hold the roundings of v. Elements without
// stiffness, or whose matrix is not finite, resist nothing.
// v: NEQ displacements, finite.
bool IsStrained(const korvex::Model& model, const std::vector<double>& v, double limit);

}  // namespace kvx
