// Whether two models have the same global stiffness, bit by bit, supports included.
//
// K is the sum of the element matrices in the order of the tables, and these are made of the
// element records and the node indices. So equal bits of both, and the same held dofs, give equal
// bits of K; no second matrix is needed. Loads, names, densities and unused rows do not count; the
// stresses that the records of shells also hold neither.
#pragma once

#include "model/model.h"

namespace kvx {

// a, b: models with their tables and elements, as read. Numbers are compared by their bits: -0 and
// +0 differ. Returns false where a restraint holds a node that does not exist: such a model has no
// K.
bool HaveSameStiffness(const korvex::Model& a, const korvex::Model& b);

}  // namespace kvx
