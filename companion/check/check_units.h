// K604, K606: units that do not fit each other, told from the moduli of metals.
//
// Structural metals have 60 to 220 GPa. That is 6e10 .. 2.2e11 with N and m, 6e7 .. 2.2e8 with kN
// and m, 6e4 .. 2.2e5 with N and mm, 60 .. 220 with kN and mm; the ranges do not overlap, nor do
// the usual metals in kgf/cm2 (2.1e6), kgf/mm2 (21000), lbf/in2 (3e7), kip/in2 (29000), tf/m2
// (2.1e7). Of other values nothing is said.
//   metres: no structure of metal consists of plates of 0.3 to 1.5 m and more;
//   millimetres: none consists of foil of 0.1 mm and less and is 1 mm to 1 m long.
#pragma once

#include "check/checked_model.h"
#include "check/element_sizes.h"
#include "check/table_rows.h"
#include "finding/finding.h"

namespace kvx {

inline constexpr double ThickestPlate = 1.5;        // metres, the thickest of a structure
inline constexpr double ThickestThinnest = 0.3;     // metres, the thinnest of a structure
inline constexpr double ThinnestPlate = 0.1;        // millimetres
inline constexpr double LargestFoilModel = 1000.0;  // millimetres

// The densities of metals from magnesium to lead, with a margin of two, kg/m3.
inline constexpr double SmallestDensity = 800.0;
inline constexpr double LargestDensity = 25000.0;

void CheckUnits(const TableUse& use, const ElementSizes& sizes, CheckedModel& model,
                FindingList& list);

}  // namespace kvx
