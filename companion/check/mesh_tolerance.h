// How close two places must be to count as the same.
#pragma once

#include "check/checked_model.h"

namespace kvx {

// 1e-6 of the diagonal of the box round all nodes of elements, in model units, but no more than
// 1e-3 of the usual length of an element's edge: a single node far away must not make the tolerance
// larger than elements. 0 if no element has a length.
double DefaultTolerance(const CheckedModel& model);

}  // namespace kvx
