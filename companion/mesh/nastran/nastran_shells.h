// Shell elements of a bulk data deck: CQUAD4, CTRIA3, CQUADR, CTRIAR, CSHEAR.
#pragma once

#include <cstdint>
#include <vector>

#include "mesh/nastran/nastran_elements.h"

namespace kvx {

// Takes the elements of these rows of the deck's cards.
void TakeNastranShells(const std::vector<std::uint32_t>& cards, NastranElements& elements);

}  // namespace kvx
