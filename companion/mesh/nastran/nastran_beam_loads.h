// Loads along bars and beams: PLOAD1.
#pragma once

#include "mesh/import_model.h"
#include "mesh/nastran/nastran_load_input.h"

namespace kvx {

// Adds the load of a card; what it names in vain, and what is lost of it, is reported.
void TakeBeamLoad(const NastranCard& card, NastranLoadInput& in, ImportCase& loads);

}  // namespace kvx
