// Elements from the rows of the tables: each gets its own copy of what its routines read.
//
// A row's references are checked where they are used first: nodes, material, thickness or section.
#pragma once

#include <cstdint>

#include "deck/model_tables.h"

namespace korvex {

// Each sets up `element`, freshly constructed, from row `row` of its table. Throws a Stop that
// names the first reference that leads outside its table.

// Coordinates, material, thickness and frame.
void BuildShell4(const ModelTables& tables, std::int32_t row, Shell4Element& element);
void BuildShell3(const ModelTables& tables, std::int32_t row, Shell3Element& element);

// End points, orientation point, material and section properties. A section type without a table
// leaves the element as it was constructed: its stiffness is meaningless, and its detail model ends
// the run.
void BuildBeam(const ModelTables& tables, std::int32_t row, BeamElement& beam);

}  // namespace korvex
