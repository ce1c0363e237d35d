// Elements that a file of format 2.2 has several times, once for each of their groups.
#pragma once

#include <cstddef>
#include <vector>

#include "mesh/gmsh/gmsh_mesh.h"

namespace kvx {

struct GmshSameElement {
  std::size_t first = 0;    // row of the first one; its own row, where that is itself
  bool isReversed = false;  // it goes the other way round than the first one
};

// same: [elements]. Elements are the same if they have the same type, entity and nodes, in this or
// the opposite order. Two of the same group are two elements, though: the k-th of one group is the
// k-th of another.
void FindSameElements(const GmshMesh& mesh, std::vector<GmshSameElement>& same);

// Turns an element round: shells keep their first node, lines change their ends.
void TurnElement(GmshElement& element);

}  // namespace kvx
