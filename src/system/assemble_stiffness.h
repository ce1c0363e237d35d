// The stiffness matrices of all elements of the model, and their sum, the global stiffness.
//
// An element matrix is formed, handed over and overwritten by the next one. Entry (i, j) belongs to
// the equations g[i] and g[j], with g in element dof order.
#pragma once

#include <cstdint>
#include <functional>

#include "model/model.h"

namespace korvex {

// A function that receives an element's stiffness.
// ke: n x n, row-major, global axes, symmetric; g: n, the equations of its rows. An equation occurs
// more than once if the element has the same node twice.
using TakeElementMatrix =
    std::function<void(const double* ke, const std::int32_t* g, std::int32_t n)>;

// Calls `take` with the matrices of all elements: four-node shells, three-node shells, beams, each
// in table order.
// threads: that form the matrices; `take` is called on the caller's thread alone.
void FormElementMatrices(const Model& model, const TakeElementMatrix& take, int threads = 1);

// Adds the matrices of all elements to `model.Stiffness`, whose values must be allocated and zero.
// threads: as above.
void AssembleStiffness(Model& model, int threads = 1);

}  // namespace korvex
