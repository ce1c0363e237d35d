#include "mesh/gmsh/gmsh_partitions.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace kvx {

std::int32_t PartitionOf(std::int64_t tag) {
  return static_cast<std::int32_t>(tag < 0 ? -tag : tag);
}

void NarrowPartitions(std::vector<std::int32_t>& partitions, GmshMesh& mesh) {
  std::sort(partitions.begin(), partitions.end());
  if (!mesh.hasPartitions) {
    mesh.hasPartitions = true;
    mesh.commonPartitions = partitions;
    return;
  }
  std::vector<std::int32_t> common;
  std::set_intersection(mesh.commonPartitions.begin(), mesh.commonPartitions.end(),
                        partitions.begin(), partitions.end(), std::back_inserter(common));
  mesh.commonPartitions.swap(common);
}

bool IsOnePartition(const GmshMesh& mesh) {
  return mesh.hasPartitions && !mesh.commonPartitions.empty();
}

}  // namespace kvx
