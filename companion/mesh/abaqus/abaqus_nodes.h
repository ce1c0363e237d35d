// *NODE with *SYSTEM.
#pragma once

#include "mesh/abaqus/abaqus_mesh.h"

namespace kvx {

// Takes all nodes of the deck into the model, with the sets that they name. Two nodes of one number
// at different places are refused.
void TakeAbaqusNodes(AbaqusImport& import);

}  // namespace kvx
