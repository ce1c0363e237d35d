// Forces and moments at nodes, and gravity: FORCE, FORCE1, FORCE2, MOMENT, MOMENT1, MOMENT2, GRAV.
#pragma once

#include "mesh/import_model.h"
#include "mesh/nastran/nastran_load_input.h"

namespace kvx {

// Adds the load of a card; what it names in vain is reported.
void TakeNodalLoad(const NastranCard& card, NastranLoadInput& in, ImportCase& loads);
void TakeGravity(const NastranCard& card, NastranLoadInput& in, ImportCase& loads);

}  // namespace kvx
