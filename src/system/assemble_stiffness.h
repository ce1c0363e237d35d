// The stiffness of all elements of the model, element by element.
#pragma once

#include <cstdint>
#include <functional>

#include "model/model.h"

namespace korvex {

// Takes an element's stiffness.
// ke: n x n, row-major, global axes, symmetric; g: n, the equations of its rows. Where an element
// repeats a node, an equation occurs more than once.
using TakeElementMatrix =
    std::function<void(const double* ke, const std::int32_t* g, std::int32_t n)>;

// Hands over the matrices of all elements: four-node shells, three-node shells, beams, each in
// table order.
void FormElementMatrices(const Model& model, const TakeElementMatrix& take);

// Adds them to `model.Stiffness`, which must have its zero values.
void AssembleStiffness(Model& model);

}  // namespace korvex
