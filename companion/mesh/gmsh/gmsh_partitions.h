// Whether a file holds the whole mesh or the part of one partition, which gmsh writes into a file
// of its own on request. A part must not be taken for the whole.
#pragma once

#include <cstdint>
#include <vector>

#include "mesh/gmsh/gmsh_mesh.h"

namespace kvx {

// The partition of a tag; ghosts have it negative.
std::int32_t PartitionOf(std::int64_t tag);

// An element belongs to these partitions, or is a ghost in them. They get sorted.
void NarrowPartitions(std::vector<std::int32_t>& partitions, GmshMesh& mesh);

// Whether there is a partition that all elements belong to.
bool IsOnePartition(const GmshMesh& mesh);

}  // namespace kvx
