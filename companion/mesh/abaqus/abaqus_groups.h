// The sets of a deck as groups of the model.
#pragma once

#include "mesh/abaqus/abaqus_mesh.h"

namespace kvx {

// One group for each set, in their order; and one for each element type whose elements stand in no
// set, so that a map file can name them.
void MakeAbaqusGroups(AbaqusImport& import);

}  // namespace kvx
