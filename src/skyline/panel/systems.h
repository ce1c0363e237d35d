// Factorisation, forward reduction and back substitution of several systems with one profile, each
// in a lane of its own:
//   K = L D L^T,  L y = F,  D L^T u = y
//
// All values have a place for each lane: entry (i, j) of all systems is one vector. Each lane
// receives the terms of the plain routine (solve_skyline_plain.h) one by one, in its order: it has
// its bits, unless a NaN occurs (its sign: see factor_skyline.cpp).
//
// As in panel.h, the routines of all vector lengths share this header with their caller, and it
// holds plain data only.
#pragma once

#include <cstdint>

namespace korvex {

// Columns that are factorised together, at most: the dofs of a node.
constexpr std::int64_t MaxGroupColumns = 6;

// The arrays of the systems. Lanes: the doubles of a vector.
struct SystemLanes {
  std::int64_t n;
  const std::int32_t* columnHeights;    // [n]
  const std::int64_t* diagonalAddress;  // [n]
  double* values;                       // entries x lanes: A(i, j), then D and L^T
  double* loads;                        // n x lanes: F, then y, then u
  double* multipliers;  // rows of the highest column x MaxGroupColumns x lanes; scratch
};

// Factorises the columns first .. end - 1 and reduces their loads. All columns before are finished.
// Those behind `end` are not read: they need not be assembled yet. first, end: multiples of six,
// the dofs of a node, where speed matters.
using FactorSystemsRoutine = void (*)(const SystemLanes& systems, std::int64_t first,
                                      std::int64_t end);

// Computes u from y in place. reach: n; the last column that reaches row i, at least i.
using SubstituteSystemsRoutine = void (*)(const SystemLanes& systems, const std::int64_t* reach);

// The routines of a vector length.
struct SystemRoutines {
  int lanes;
  FactorSystemsRoutine factor;
  SubstituteSystemsRoutine substitute;
};

void FactorSystems128(const SystemLanes& systems, std::int64_t first, std::int64_t end);
void FactorSystems256(const SystemLanes& systems, std::int64_t first, std::int64_t end);
void FactorSystems512(const SystemLanes& systems, std::int64_t first, std::int64_t end);
void SubstituteSystems128(const SystemLanes& systems, const std::int64_t* reach);
void SubstituteSystems256(const SystemLanes& systems, const std::int64_t* reach);
void SubstituteSystems512(const SystemLanes& systems, const std::int64_t* reach);

}  // namespace korvex
