// K605: elements nearly as stiff as the supports.
//
// A support is a 1e20 that takes the place of the diagonal entry. So the term k of an element there
// is lost, and a support force that is read as 1e20 u is wrong by k / 1e20. At 1e20 and above, the
// matrix is no longer positive. The largest diagonal terms of an element are estimated: E t of a
// shell's membrane and E t A of its drilling; E A / L, 12 E I / L^3 and 4 E I / L + E A e^2 / L of
// a beam.
#pragma once

#include "check/checked_model.h"
#include "finding/finding.h"

namespace kvx {

// Of elements at supports: support forces are wrong by 0.1 %, in their third digit.
inline constexpr double LargestStiffness = 1e17;

// Of all elements: an error.
inline constexpr double SupportStiffness = 1e20;

// One finding for each kind of element: of the stiffest one, with the rows of
// all behind it.
void CheckSupportStiffness(const CheckedModel& model, FindingList& list);

}  // namespace kvx
