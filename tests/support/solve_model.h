// Assembles and solves a model in the test's own process, for results at full precision.
//
// If the environment variable KORVEX_KEEP_MODELS names a folder, every model file is kept there, to
// be solved with the program.
#pragma once

#include "model/model.h"
#include "support/model_text.h"

namespace korvex::test {

// Reads the model from a temporary folder and assembles it: `model` then holds the tables, the
// stiffness matrix with supports and the load vector.
void AssembleModel(const ModelText& text, Model& model);

// Assembles and solves the model: `model` holds the displacements too.
void SolveModel(const ModelText& text, Model& model);

}  // namespace korvex::test
