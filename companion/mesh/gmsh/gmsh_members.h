// Which element belongs to which physical groups, and which way round it goes.
//
// In format 4.1 the entity that an element lies on has the groups. In 2.2 each element has one
// group, and gmsh writes an element of several groups several times, with different numbers. So
// elements of the same nodes and the same entity, but of different groups, are one element.
//
// A negative group, in 4.1 or 2.2, means that the element's nodes are to be turned round. 2.2 as
// gmsh writes it has them turned already. Where groups differ in this, the first of them decides.
#pragma once

#include <cstdint>
#include <vector>

#include "mesh/gmsh/gmsh_mesh.h"
#include "mesh/import_report.h"

namespace kvx {

// An element in a group.
struct GmshMember {
  std::int32_t dimension = 0;
  std::int32_t tag = 0;       // positive
  std::uint32_t element = 0;  // row of the mesh's elements
};

enum class GmshUse : std::uint8_t {
  Whole,      // an element
  Again,      // the same as one before
  Interface,  // lies between partitions
  Ghost,      // a copy for another partition
};

// members: by dimension, tag and element, each once. uses: [elements]. Turns the nodes of elements
// round where their groups want it. Ends the import where two elements have the same number.
void ListGmshMembers(GmshMesh& mesh, ImportReport& report, std::vector<GmshMember>& members,
                     std::vector<GmshUse>& uses);

}  // namespace kvx
