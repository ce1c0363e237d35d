// The stiffness of the flat four-node and three-node shell elements.
//
// The sum of an in-plane part with drilling rotation and a bending part, uncoupled, formed in the
// element's local frame and rotated into global axes.
#pragma once

#include "shell/shell_element.h"

namespace korvex {

// K: 24 x 24, row-major, global axes, element dof order, written completely.
void Shell4Stiffness(const Shell4Element& element, double* K);

// K: 18 x 18, row-major, global axes, element dof order, written completely.
void Shell3Stiffness(const Shell3Element& element, double* K);

}  // namespace korvex
