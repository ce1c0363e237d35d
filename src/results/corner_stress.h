// The stresses of one shell element at a point, on both faces.
//
// Six components SX, SY, SZ, TXY, TXZ, TYZ, global axes. The upper face lies on the side of the
// element's local +z axis. Each face is in plane stress: membrane stress D B d plus or minus the
// bending stress 6 M / TK^2 of the moments M = Db Bb d.
#pragma once

#include "shell/shell_element.h"

namespace korvex {

// The stresses of a four-node element.
// top, bottom: written completely; displacements: 24, global axes, element dof order; xi, eta:
// natural coordinates of the point.
void Shell4CornerStress(const Shell4Element& element, StressVector& top, StressVector& bottom,
                        const double* displacements, double xi, double eta);

// The stresses of a three-node element.
// top, bottom: written completely; displacements: 18, global axes, element dof order; L: area
// coordinates of the point.
void Shell3CornerStress(const Shell3Element& element, StressVector& top, StressVector& bottom,
                        const double* displacements, const std::array<double, 3>& L);

// Returns R sigma R^T, the stress `local` (SX .. TYZ in the local axes) in global axes. R is the
// frame: its columns are the local axes.
StressVector StressToGlobal(const ElementFrame& frame, const StressVector& local);

// Returns the von Mises stress.
double EquivalentStress(const StressVector& stress);

}  // namespace korvex
