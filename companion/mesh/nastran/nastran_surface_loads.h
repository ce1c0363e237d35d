// Loads on shells: PLOAD, PLOAD2, PLOAD4.
//
// A positive pressure acts along the normal that the right-hand rule gives for the order of the
// element's grids, which is the e3 of a model file; for PLOAD, of the card's own grids. With a
// vector, PLOAD4 acts along it, per true area; the vector's length means nothing.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "mesh/import_model.h"
#include "mesh/nastran/nastran_load_input.h"

namespace kvx {

// The corners of a shell in ascending order.
struct ShellCorners {
  std::array<std::int32_t, 4> nodes{};
  std::int32_t shell = -1;
};

// What the surface loads look up. Each is filled when the first card needs it.
struct SurfaceIndex {
  bool hasCorners = false;
  std::vector<ShellCorners> corners;  // ascending
  bool hasElements = false;
  std::vector<std::int64_t> elements;  // numbers on the cards of elements, ascending
};

// Adds the loads of a card; what it names in vain is reported.
void TakeSurfaceLoad(const NastranCard& card, NastranLoadInput& in, SurfaceIndex& index,
                     ImportCase& loads);

}  // namespace kvx
