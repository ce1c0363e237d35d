// The routines of shell_lanes.h in vectors of 256 bits, four doubles each. This file is compiled
// for processors that have these vectors and must not be called on others.
#include "shell/lanes/shell_kernel-inl.h"

namespace korvex {

void AddShells256(const ShellLanes& shells, const std::int64_t* diagonalAddress, double* values) {
  AddShells<LaneNumber<4>>(shells, diagonalAddress, values);
}

void FormShells256(const double* numbers, double* const* matrices, double* sums) {
  FormShells<LaneNumber<4>>(numbers, matrices, sums);
}

void RecoverShells256(const ShellLanes& shells, const double* displacements, double* stresses) {
  RecoverShells<LaneNumber<4>>(shells, displacements, stresses);
}

}  // namespace korvex
