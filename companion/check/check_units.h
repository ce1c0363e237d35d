// K604, K606, K608: units that do not fit each other, told from the moduli of metals.
//
// Structural metals have 60 to 220 GPa. That is 6e10 .. 2.2e11 with N and m, 6e7 .. 2.2e8 with kN
// and m, 6e4 .. 2.2e5 with N and mm, 60 .. 220 with kN and mm; the ranges do not overlap, nor do
// the usual metals in kgf/cm2 (2.1e6), kgf/mm2 (21000), lbf/in2 (3e7), kip/in2 (29000), tf/m2
// (2.1e7). Of other values only a vanishing one is named. Plates tell metres from millimetres, and
// so do densities and the other materials; rigid arms, stiff beams beside softer elements, do not.
#pragma once

#include "check/checked_model.h"
#include "check/element_sizes.h"
#include "check/table_rows.h"
#include "finding/finding.h"

namespace kvx {

// Metres: no structure of metal consists of plates of 0.3 to 1.5 m and more. Millimetres: none
// consists of foil of 0.1 mm and less and is 1 mm to 1 m long.
inline constexpr double ThickestPlate = 1.5;        // metres, the thickest of a structure
inline constexpr double ThickestThinnest = 0.3;     // metres, the thinnest of a structure
inline constexpr double ThinnestPlate = 0.1;        // millimetres
inline constexpr double LargestFoilModel = 1000.0;  // millimetres

// The densities of metals from magnesium to lead, with a margin of two, kg/m3.
inline constexpr double SmallestDensity = 800.0;
inline constexpr double LargestDensity = 25000.0;

// Magnesium has 1740 kg/m3. Lighter materials, plastics, say nothing about the units of a metal.
inline constexpr double LightestMetal = 1700.0;

// Two materials without densities are the same metal in two systems of units if their moduli, in
// GPa, are that close. Foams and plastics come near metals in the wrong units, but not so near.
inline constexpr double SameModulus = 0.01;

// The softest foam, 0.01 MPa, has 5e-8 of the E of steel. What is softer beside the usual E of a
// model is none; large E are those of rigid arms.
inline constexpr double SoftestMaterial = 1e-8;

void CheckUnits(const TableUse& use, const ElementSizes& sizes, CheckedModel& model,
                FindingList& list);

}  // namespace kvx
