// Good models of random shape: what the checks must not complain about.
//
// Each model has one to three separate parts, each of them supported and loaded: plates, folded
// plates, closed boxes, cylinder shells, double-curved shells, girders (three shells at an edge),
// stiffened plates, frames and grillages of beams. Cells are quadrilaterals, triangles or both,
// plane ones distorted. Several thicknesses (thin and thick), materials and sections; N and mm, N
// and m, or kN and m; turned in space; nodes in random order or in that of the mesh.
#pragma once

#include <cstdint>
#include <random>

#include "support/model_text.h"

namespace kvx::test {

// A random number generator with the same numbers on every system.
struct Dice {
  std::mt19937 engine;
};
inline Dice MakeDice(std::uint32_t seed) { return {std::mt19937(seed)}; }
double Roll(Dice& dice, double low, double high);  // uniform in [low, high)
int RollInteger(Dice& dice, int low, int high);    // uniform in low .. high, both included
inline bool RollYes(Dice& dice, double share = 0.5) { return Roll(dice, 0.0, 1.0) < share; }

korvex::test::ModelText MakeGoodModel(std::uint32_t seed);

}  // namespace kvx::test
