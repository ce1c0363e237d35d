// The nodes of a bulk data deck: GRID, with the defaults of GRDSET.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "mesh/import_model.h"
#include "mesh/nastran/nastran_systems.h"

namespace kvx {

// Fills the model's nodes, their numbers, and the coordinate systems. The lists are rows of the
// deck's cards: GRID, CORD.., GRDSET.
void TakeNastranNodes(const NastranDeck& deck, const std::vector<std::uint32_t>& grids,
                      const std::vector<std::uint32_t>& systemCards,
                      const std::vector<std::uint32_t>& defaults, ImportModel& model,
                      NastranNumbers& numbers, NastranSystems& systems, ImportReport& report);

}  // namespace kvx
