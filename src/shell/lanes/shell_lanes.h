// Stiffness and stresses of several four-node shells side by side, one in each lane of a vector.
//
// For the sums of systems and the stresses, the shells stand at the same place of structures with
// the same connectivity; matrices are formed of any shells. Each lane has the operations of the
// single routines (shell_stiffness.h, results/corner_stress.h), whose formulas are compiled once
// more for vectors, and so its bits, unless a NaN occurs.
//
// The routines of all vector lengths share this header with their caller. It holds plain data only:
// a function shared by units compiled for different processors may be linked in the wrong version.
#pragma once

#include <cstdint>

namespace korvex {

// The numbers of a shell's record that its stiffness and stresses depend on: twelve coordinates,
// the frame, E, Mu and TK.
constexpr std::int64_t ShellNumbers = 12 + 9 + 3;

// Stress components of a shell: of each corner the upper face, then the lower one, six each.
constexpr std::int64_t ShellStresses = 4 * 2 * 6;

// The shells at `count` places of the structures.
struct ShellLanes {
  std::int64_t count;
  const double* numbers;      // count x ShellNumbers x lanes
  const std::int32_t* nodes;  // count x 4, the same in all lanes
};

// Adds the upper triangles of the stiffness matrices to those of the lanes' systems, place by
// place. diagonalAddress: of their common profile (skyline/skyline_matrix.h); values: entries x
// lanes.
using AddShellsRoutine = void (*)(const ShellLanes& shells, const std::int64_t* diagonalAddress,
                                  double* values);

// Forms the stiffness matrix of a shell in each lane. numbers: ShellNumbers x lanes; matrices:
// lanes, each 24 x 24, row-major, global axes, written completely; sums: lanes, of the entries of
// each, so that an infinity or a NaN is noticed.
using FormShellsRoutine = void (*)(const double* numbers, double* const* matrices, double* sums);

// Computes the corner stresses. displacements: equations x lanes; stresses: count x ShellStresses x
// lanes, written completely.
using RecoverShellsRoutine = void (*)(const ShellLanes& shells, const double* displacements,
                                      double* stresses);

// The routines of a vector length.
struct ShellRoutines {
  int lanes;
  AddShellsRoutine add;
  FormShellsRoutine form;
  RecoverShellsRoutine recover;
};

// The most lanes of all vector lengths.
constexpr std::int64_t MaxShellLanes = 8;

// Returns the routines for vectorBits = 128, 256 or 512; null pointers for other lengths, and where
// the program has no such routines.
ShellRoutines FindShellRoutines(int vectorBits);

void AddShells128(const ShellLanes& shells, const std::int64_t* diagonalAddress, double* values);
void AddShells256(const ShellLanes& shells, const std::int64_t* diagonalAddress, double* values);
void AddShells512(const ShellLanes& shells, const std::int64_t* diagonalAddress, double* values);
void FormShells128(const double* numbers, double* const* matrices, double* sums);
void FormShells256(const double* numbers, double* const* matrices, double* sums);
void FormShells512(const double* numbers, double* const* matrices, double* sums);
void RecoverShells128(const ShellLanes& shells, const double* displacements, double* stresses);
void RecoverShells256(const ShellLanes& shells, const double* displacements, double* stresses);
void RecoverShells512(const ShellLanes& shells, const double* displacements, double* stresses);

}  // namespace korvex
