// K410: pressures and line loads out of line with the others of their table, and pressures that no
// material bears.
//
// The size of a row is its largest value. A table says what is usual where it has some rows other
// than 0: 95 % of them are at most so large. That bound leaves hydrostatic pressures, which grow
// from 0. Forces are not compared: one large force beside many small ones is usual.
#pragma once

#include "check/checked_model.h"
#include "check/table_rows.h"
#include "finding/finding.h"

namespace kvx {

inline constexpr double UsualShare = 0.95;
inline constexpr double OutOfLineLoad = 100.0;  // over the usual size
inline constexpr std::size_t FewestLoads = 10;

// Pressure over Young's modulus: metals yield below 1/100 of E, plates under pressure far earlier.
inline constexpr double LargestPressure = 0.01;

void CheckLoadSizes(const CheckedModel& model, const TableUse& use, FindingList& list);

}  // namespace kvx
