// *ELEMENT: shells, beams, and what is not taken over.
#pragma once

#include "mesh/abaqus/abaqus_mesh.h"

namespace kvx {

// Takes all elements of the deck, with the sets that they name. The nodes must be there. An element
// that is refused keeps its number, so that sets and loads may name it.
void TakeAbaqusElements(AbaqusImport& import);

}  // namespace kvx
