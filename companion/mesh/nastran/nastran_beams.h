// Beam elements of a bulk data deck: CBAR and CBEAM, with the defaults of BAROR and BEAMOR.
//
// Element axes of the deck: x from end A to end B, y the part of the orientation vector across x,
// z = x x y. Its line stands off the nodes by the offset vectors. On the line lies the centroid of
// a CBAR (PBARL, remark on the neutral axis) and the shear centre of a CBEAM (CBEAM, offset
// vectors).
#pragma once

#include <cstdint>
#include <vector>

#include "mesh/nastran/nastran_elements.h"

namespace kvx {

// Takes the elements of these rows of the deck's cards. defaults: rows of BAROR and BEAMOR.
void TakeNastranBeams(const std::vector<std::uint32_t>& cards,
                      const std::vector<std::uint32_t>& defaults, NastranElements& elements);

}  // namespace kvx
