// The routines of shell_lanes.h in vectors of 512 bits, eight doubles each. This file is compiled
// for processors that have these vectors and must not be called on others.
#include "shell/lanes/shell_kernel-inl.h"

namespace korvex {

void AddShells512(const ShellLanes& shells, const std::int64_t* diagonalAddress, double* values) {
  AddShells<LaneNumber<8>>(shells, diagonalAddress, values);
}

void FormShells512(const double* numbers, double* const* matrices, double* sums) {
  FormShells<LaneNumber<8>>(numbers, matrices, sums);
}

void RecoverShells512(const ShellLanes& shells, const double* displacements, double* stresses) {
  RecoverShells<LaneNumber<8>>(shells, displacements, stresses);
}

}  // namespace korvex
