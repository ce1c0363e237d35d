// The element types of a deck: what becomes of each, and how many nodes it has.
#pragma once

#include <cstddef>
#include <string_view>

#include "mesh/abaqus/abaqus_mesh.h"

namespace kvx {

struct AbaqusElementType {
  AbaqusElementKind kind = AbaqusElementKind::Other;
  std::size_t nodes = 0;  // 0: not known; such an element goes on where its line ends with a comma
  std::string_view reason;  // why it is not taken over, or in which way it is limited; may be empty
  Fate fate = Fate::Lost;   // with a reason
};

// type: in upper case.
AbaqusElementType TypeOfElement(std::string_view type);

}  // namespace kvx
