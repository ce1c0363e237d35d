// $Entities and $PartitionedEntities of format 4.1: the parts of the geometry, which carry the
// physical groups of the elements on them.
#pragma once

#include <cstdint>

#include "mesh/gmsh/gmsh_mesh.h"
#include "mesh/gmsh/gmsh_text.h"

namespace kvx {

void ReadGmshEntities(GmshText& text, GmshMesh& mesh);

// The parts of the entities that a partitioned mesh lies on instead. A part that was made of an
// entity of more dimensions lies between partitions: gmsh gives it the groups of that entity,
// though it is no part of the structure.
void ReadGmshPartitionedEntities(GmshText& text, GmshMesh& mesh);

// The row of an entity, GhostEntity, or NoEntity where the file does not tell of it.
std::int32_t FindEntity(const GmshMesh& mesh, std::int64_t dimension, std::int64_t tag);

}  // namespace kvx
