// A map file as records: what it says, not yet whether it fits the mesh. The keys are explained in
// import_map.h.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "base/material.h"
#include "base/vector3.h"
#include "mesh/import_model.h"
#include "mesh/map_values.h"

namespace kvx {

struct MapMaterial {
  std::string name;
  korvex::Material values;
};

// The direction of webs: a vector, or along the normals of the shells beneath.
struct MapOrientation {
  double alongNormal = 0.0;  // 1: along them, -1: against them, 0: the vector
  korvex::Vector3 vector{};
};

struct MapGroup {
  std::string name;
  std::size_t line = 0;
  Maybe<double> thickness, offset, pressure, lineLoad;
  Maybe<std::string> material, loadCase;
  Maybe<ImportSection> section;  // its name is the group's
  Maybe<MapOrientation> orientation;
  Maybe<bool> mirrored, flip, skip;
  Maybe<korvex::Vector3> edgeLoad;
  Maybe<std::array<std::int32_t, 6>> restraint;
  Maybe<std::array<double, 6>> force, totalForce;
};

struct MapCase {
  std::string name;
  std::size_t line = 0;
  Maybe<korvex::Vector3> acceleration;
};

struct MapFile {
  Maybe<korvex::Vector3> acceleration;  // of the only case
  std::vector<MapCase> cases;
  std::vector<MapMaterial> materials;
  std::vector<MapGroup> groups;
};

// Throws a Stop, "line 7: ..." where the text is no map.
void ReadMapFile(std::string_view text, MapFile& file);

}  // namespace kvx
