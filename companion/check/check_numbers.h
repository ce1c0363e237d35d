// K122: values that are not numbers, or so large or small that the solver's arithmetic leaves the
// range of doubles (1e-308 .. 1e308).
//
// The largest products of the solver are squares of stiffnesses E I e^2 / L^3, in the
// factorisation: with E <= 1e25 and lengths within 1e-12 .. 1e12 they stay below 1e266, and nothing
// underflows to 0 but what is 0. No unit of length comes near these bounds: the earth has 1.3e10
// mm.
#pragma once

#include "check/checked_model.h"
#include "check/table_rows.h"
#include "finding/finding.h"

namespace kvx {

inline constexpr double LargestLength = 1e12;  // of coordinates, sizes, offsets
inline constexpr double SmallestLength =
    1e-12;  // of thicknesses, sizes and distances that are not 0
inline constexpr double LargestModulus = 1e25;
inline constexpr double SmallestModulus = 1e-12;
// Forces, pressures: 1e20 times a prescribed displacement of the largest length, and some more.
inline constexpr double LargestLoad = 1e40;

// Looks at all tables. A row that is named is doubtful afterwards; a node also lost, and its
// elements are broken, as a beam is whose own row is named.
void CheckNumbers(const TableUse& use, CheckedModel& model, FindingList& list);

}  // namespace kvx
