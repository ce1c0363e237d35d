// Young's modulus that a model usually has: that of the material that most elements have, of
// equally many the softer one.
//
// Rigid arms and soft skins are fewer than the elements that they join or cover, so that neither
// the largest nor the smallest E of a model says what it is made of.
#pragma once

#include "check/checked_model.h"
#include "check/table_rows.h"

namespace kvx {

// Model units; 0: no element has a material with a known E above 0.
double FindUsualModulus(const CheckedModel& model, const TableUse& use);

}  // namespace kvx
