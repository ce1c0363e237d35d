// The routines of shell_lanes.h in vectors of 128 bits, two doubles each. This file is compiled for
// processors that have these vectors and must not be called on others.
#include "shell/lanes/shell_kernel-inl.h"

namespace korvex {

void AddShells128(const ShellLanes& shells, const std::int64_t* diagonalAddress, double* values) {
  AddShells<LaneNumber<2>>(shells, diagonalAddress, values);
}

void FormShells128(const double* numbers, double* const* matrices, double* sums) {
  FormShells<LaneNumber<2>>(numbers, matrices, sums);
}

void RecoverShells128(const ShellLanes& shells, const double* displacements, double* stresses) {
  RecoverShells<LaneNumber<2>>(shells, displacements, stresses);
}

}  // namespace korvex
