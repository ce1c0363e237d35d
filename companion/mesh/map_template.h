// A map file to fill in, for the groups of a mesh (see import_map.h).
#pragma once

#include <string>

#include "mesh/import_model.h"

namespace kvx {

// A map with all groups of the model: what they are, how many elements and nodes they have, and the
// keys that fit them, as comments. It is a map as it stands, one that says nothing; with the
// comment signs before its keys taken away and numbers filled in it says something.
std::string WriteMapTemplate(const ImportModel& model);

}  // namespace kvx
