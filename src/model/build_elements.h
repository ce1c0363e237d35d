// Makes the elements from the rows of the tables. Each element gets a copy of the data that its
// routines read.
//
// A row's references are checked in the order of their use: nodes, material, thickness or section.
#pragma once

#include <cstdint>

#include "deck/model_tables.h"

namespace korvex {

// Each routine fills `element`, newly constructed, from row `row` of its table. Throws a Stop where
// a reference leads outside its table; the notice names the first one.

// Fill coordinates, material, thickness and frame.
void BuildShell4(const ModelTables& tables, std::int32_t row, Shell4Element& element);
void BuildShell3(const ModelTables& tables, std::int32_t row, Shell3Element& element);

// Fills end points, orientation point, material and section properties. With a section type without
// a table the element stays as constructed: its stiffness is meaningless, and the run stops when
// its detail model is made.
void BuildBeam(const ModelTables& tables, std::int32_t row, BeamElement& beam);

}  // namespace korvex
