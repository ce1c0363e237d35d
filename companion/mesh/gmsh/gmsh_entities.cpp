#include "mesh/gmsh/gmsh_entities.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

namespace kvx {

namespace {

using EntityKey = GmshMesh::EntityKey;

bool IsBefore(const EntityKey& a, const EntityKey& b) {
  return std::pair(a.dimension, a.tag) < std::pair(b.dimension, b.tag);
}

// A list of ints behind its length.
void TakeInts(GmshText& text, const char* what, std::vector<std::int32_t>& list) {
  constexpr std::size_t Shortest = 2;  // a digit and a blank
  const std::size_t count = BelieveCount(text, TakeSize(text, "a count"), Shortest, what);
  list.reserve(count);
  for (std::size_t k = 0; k < count; ++k) {
    list.push_back(static_cast<std::int32_t>(TakeInt(text, what)));
  }
}

// The numbers of points, curves, surfaces and volumes.
std::array<std::int64_t, 4> TakeCounts(GmshText& text) {
  BeginRow(text);
  std::array<std::int64_t, 4> counts{};
  for (std::int64_t& count : counts) count = TakeSize(text, "the number of entities");
  EndRow(text);
  return counts;
}

// The place or the box of an entity, its groups, and its border, of which nothing is needed.
void TakeExtentAndGroups(GmshText& text, std::int32_t dimension, GmshEntity& entity) {
  const int reals = dimension == 0 ? 3 : 6;
  for (int k = 0; k < reals; ++k) TakeReal(text, "a coordinate");
  TakeInts(text, "physical tags", entity.physicals);
  std::vector<std::int32_t> border;
  if (dimension > 0) TakeInts(text, "entities of a border", border);
}

void AddEntity(std::int32_t dimension, std::int64_t tag, GmshEntity& entity, GmshMesh& mesh) {
  const auto row = static_cast<std::int32_t>(mesh.entities.size());
  mesh.entityKeys.push_back({dimension, static_cast<std::int32_t>(tag), row});
  mesh.entities.push_back(std::move(entity));
}

void SortKeys(GmshMesh& mesh) {
  std::stable_sort(mesh.entityKeys.begin(), mesh.entityKeys.end(), IsBefore);
}

void TakeGhostEntities(GmshText& text, std::vector<std::int32_t>& ghosts) {
  BeginRow(text);
  const std::size_t count =
      BelieveCount(text, TakeSize(text, "the number of ghost entities"), 3, "ghost entities");
  EndRow(text);
  for (std::size_t k = 0; k < count; ++k) {
    BeginRow(text);
    ghosts.push_back(static_cast<std::int32_t>(TakeInt(text, "the tag of a ghost entity")));
    TakeInt(text, "the partition of a ghost entity");
    EndRow(text);
  }
  std::sort(ghosts.begin(), ghosts.end());
}

}  // namespace

void ReadGmshEntities(GmshText& text, GmshMesh& mesh) {
  mesh.hasEntities = true;
  const std::array<std::int64_t, 4> counts = TakeCounts(text);
  for (std::int32_t dimension = 0; dimension < 4; ++dimension) {
    for (std::int64_t k = 0; k < counts[static_cast<std::size_t>(dimension)]; ++k) {
      BeginRow(text);
      const std::int64_t tag = TakeInt(text, "the tag of an entity");
      GmshEntity entity;
      TakeExtentAndGroups(text, dimension, entity);
      EndRow(text);
      AddEntity(dimension, tag, entity, mesh);
    }
  }
  SortKeys(mesh);
}

void ReadGmshPartitionedEntities(GmshText& text, GmshMesh& mesh) {
  mesh.hasEntities = true;
  BeginRow(text);
  TakeSize(text, "the number of partitions");
  EndRow(text);
  TakeGhostEntities(text, mesh.ghostEntities);
  const std::array<std::int64_t, 4> counts = TakeCounts(text);
  for (std::int32_t dimension = 0; dimension < 4; ++dimension) {
    for (std::int64_t k = 0; k < counts[static_cast<std::size_t>(dimension)]; ++k) {
      BeginRow(text);
      const std::int64_t tag = TakeInt(text, "the tag of an entity");
      GmshEntity entity;
      entity.isInterface = TakeInt(text, "the dimension of the whole entity") > dimension;
      TakeInt(text, "the tag of the whole entity");
      TakeInts(text, "partitions", entity.partitions);
      std::sort(entity.partitions.begin(), entity.partitions.end());
      TakeExtentAndGroups(text, dimension, entity);
      EndRow(text);
      AddEntity(dimension, tag, entity, mesh);
    }
  }
  SortKeys(mesh);
}

std::int32_t FindEntity(const GmshMesh& mesh, std::int64_t dimension, std::int64_t tag) {
  const EntityKey key{static_cast<std::int32_t>(dimension), static_cast<std::int32_t>(tag), 0};
  const auto behind =
      std::upper_bound(mesh.entityKeys.begin(), mesh.entityKeys.end(), key, IsBefore);
  if (behind != mesh.entityKeys.begin() && !IsBefore(*(behind - 1), key)) return (behind - 1)->row;
  return std::binary_search(mesh.ghostEntities.begin(), mesh.ghostEntities.end(), key.tag)
             ? GhostEntity
             : NoEntity;
}

}  // namespace kvx
