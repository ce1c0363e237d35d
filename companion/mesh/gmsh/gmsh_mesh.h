// What a mesh file holds, before it becomes an ImportModel.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "base/vector3.h"
#include "deck/model_tables.h"
#include "mesh/source_files.h"

namespace kvx {

enum class GmshVersion { None, V22, V41 };

// A named physical group. Groups are told apart by dimension and tag.
struct GmshName {
  std::int32_t dimension = 0;
  std::int32_t tag = 0;
  std::string name;  // UTF-8
  SourcePlace place;
};

// A point, curve, surface or volume of the geometry, or a part of one that belongs to a partition.
// Format 4.1.
struct GmshEntity {
  std::vector<std::int32_t> physicals;  // tags; negative: its elements are to be turned round
  bool isInterface = false;  // between partitions: made from an entity of more dimensions
  std::vector<std::int32_t> partitions;
};

// A point, line, triangle or quadrilateral.
struct GmshElement {
  std::int64_t number = 0;
  std::array<std::int64_t, 4> nodes{};  // numbers; only as many as the type has
  std::uint32_t line = 0;               // 0 in binary files
  std::int32_t type = 0;
  std::int32_t entity = -1;   // 2.2: tag of the entity; 4.1: row of entities or one of the below
  std::int32_t physical = 0;  // 2.2: its one group; negative as above, 0: none
};

constexpr std::int32_t NoEntity = -1;     // the file tells of no entities
constexpr std::int32_t GhostEntity = -2;  // one that holds copies of another partition's elements

struct GmshMesh {
  GmshVersion version = GmshVersion::None;
  std::vector<GmshName> names;

  // 4.1: by dimension, then by tag, ascending once all are read.
  struct EntityKey {
    std::int32_t dimension = 0;
    std::int32_t tag = 0;
    std::int32_t row = 0;
  };
  std::vector<EntityKey> entityKeys;
  std::vector<GmshEntity> entities;
  std::vector<std::int32_t> ghostEntities;  // tags, ascending
  bool hasEntities = false;

  std::vector<korvex::Node> nodes;
  std::vector<std::int64_t> nodeNumbers;  // [nodes]
  std::vector<std::uint32_t> nodeLines;   // [nodes]; 0 in binary files
  bool hasNodes = false;
  std::vector<GmshElement> elements;
  bool hasElements = false;

  // The partitions that each element so far belongs to or is a ghost of. If one is left in the end,
  // the file holds that partition alone.
  bool hasPartitions = false;                  // of elements
  std::vector<std::int32_t> commonPartitions;  // ascending
};

}  // namespace kvx
