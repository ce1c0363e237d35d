// What the evaluation of results needs of a solved model, and the check that it is there.
//
// A solved model is a korvex::Model with its tables, its elements and its displacements at full
// precision: six to each node, global axes. Results may come from a file and the model from
// anywhere: sizes and references are checked before they are used; NaN displacements are no error.
#pragma once

#include <array>
#include <cstdint>

#include "model/model.h"

namespace kvx {

// Each throws a korvex::Stop that names the table, the row and the number where something does not
// fit.

// All tables: nodes, displacements, shells, beams and the references to their nodes.
void CheckSolvedModel(const korvex::Model& model);

// The displacements and element e of the four-node (three-node) table alone: for single elements.
void CheckSolvedShell4(const korvex::Model& model, std::int32_t e);
void CheckSolvedShell3(const korvex::Model& model, std::int32_t e);

}  // namespace kvx
