// *MATERIAL with *ELASTIC and *DENSITY.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include "mesh/abaqus/abaqus_mesh.h"

namespace kvx {

struct AbaqusMaterial {
  std::int32_t row = -1;  // of the model's materials; -1: it is no isotropic elastic one
  std::string lacks;      // then why
};

using AbaqusMaterials = std::unordered_map<std::string, AbaqusMaterial>;  // by NameKey

// Takes all materials of the deck into the model.
void TakeAbaqusMaterials(AbaqusImport& import, AbaqusMaterials& materials);

}  // namespace kvx
