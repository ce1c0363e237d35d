// *CLOAD, *DLOAD, *DSLOAD: the loads that are in force.
//
// Both programs carry loads from step to step. Within a step loads of the same kind on the same
// node or element add up; in a later step a new value takes the place of the old one (manual of
// CalculiX, "*CLOAD" and "*DLOAD").
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

#include "mesh/abaqus/abaqus_mesh.h"
#include "mesh/abaqus/abaqus_surfaces.h"

namespace kvx {

// Forces and moments at a node, in the node's axes.
struct PointLoad {
  std::int32_t node = -1;
  std::array<double, 6> values{};
  std::array<std::size_t, 6> steps{};  // in which each was set last
};

// What a distributed load is.
enum class AbaqusLoadKind : std::int32_t {
  Pressure,         // P: on shells, along the normal
  LowerPressure,    // P on a surface SNEG: the same, from below
  UpperPressure,    // P on a surface SPOS: against the normal
  Traction,         // TRVEC on shells: along a direction, force per area
  SurfaceTraction,  // the same by *DSLOAD
  LineGlobal,       // PX, PY, PZ on beams: along a direction, force per length
  Line1,            // P1 on beams: along n1
  Line2,            // P2 on beams: along n2
  Gravity,          // GRAV: along a direction, acceleration
  Body,             // BX, BY, BZ: along a direction, force per volume
};

struct DistributedLoad {
  std::int32_t element = -1;  // code
  double value = 0.0;
  std::size_t step = 0;
};

// All loads of one kind and direction.
struct DistributedLoads {
  AbaqusLoadKind kind = AbaqusLoadKind::Pressure;
  korvex::Vector3 direction{};  // length 1, of kinds that have one
  std::vector<DistributedLoad> loads;
  std::unordered_map<std::int32_t, std::size_t> at;  // code -> row of loads
};

struct AbaqusLoads {
  std::vector<PointLoad> points;
  std::unordered_map<std::int32_t, std::size_t> pointAt;  // row of a node -> row of points
  std::vector<DistributedLoads> kinds;
  std::map<std::pair<AbaqusLoadKind, korvex::Vector3>, std::size_t> kindAt;  // -> row of kinds
};

// Takes one keyword. step: counted from 1.
void TakePointLoads(AbaqusImport& import, const AbaqusKeyword& keyword, std::size_t step,
                    AbaqusLoads& loads);
void TakeElementLoads(AbaqusImport& import, const AbaqusKeyword& keyword, std::size_t step,
                      AbaqusLoads& loads);
void TakeSurfaceLoads(AbaqusImport& import, const AbaqusKeyword& keyword, std::size_t step,
                      AbaqusSurfaces& surfaces, AbaqusLoads& loads);

// Ends what earlier steps have set by this keyword: *CLOAD, *DLOAD or *DSLOAD with OP=NEW.
void EndLoads(AbaqusImport& import, const AbaqusKeyword& keyword, AbaqusLoads& loads);

}  // namespace kvx
