// Assembles and solves a model in the test's own process, for results at full precision.
//
// Where the environment variable KORVEX_KEEP_MODELS names a folder, every model file stays there,
// for whoever wants to solve it with the program.
#pragma once

#include "model/model.h"
#include "support/model_text.h"

namespace korvex::test {

// Reads and assembles the model in a folder of its own: afterwards `model` holds the tables, the
// stiffness matrix with its supports and the load vector.
void AssembleModel(const ModelText& text, Model& model);

// The same and solves it: `model` holds the displacements.
void SolveModel(const ModelText& text, Model& model);

}  // namespace korvex::test
