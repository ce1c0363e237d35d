// *PART, *INSTANCE, *ASSEMBLY: which keywords belong together.
#pragma once

#include "mesh/abaqus/abaqus_deck.h"

namespace kvx {

// Sets the scope of each keyword. The part of the deck's first instance is the one that is used;
// keywords of others are reported.
void MarkAbaqusScopes(AbaqusDeck& deck, ImportReport& report);

}  // namespace kvx
