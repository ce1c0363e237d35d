// *TRANSFORM: axes of nodes, in which their supports and loads are meant.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "mesh/abaqus/abaqus_axes.h"
#include "mesh/abaqus/abaqus_mesh.h"

namespace kvx {

// The axes that *TRANSFORM gives to nodes, in which their supports and loads are meant.
struct AbaqusTransform {
  char kind = 'R';  // R, C or S: rectangular, cylindrical, spherical
  bool isSound = false;
  korvex::Vector3 origin{};  // of C and S
  AbaqusAxes axes{};         // of R; of C the axis is axes[2]
};

struct AbaqusTransforms {
  std::vector<AbaqusTransform> transforms;
  std::unordered_map<std::int32_t, std::int32_t> ofNode;  // row of a node -> row of transforms
};

void TakeAbaqusTransforms(AbaqusImport& import, AbaqusTransforms& transforms);

// The axes of a node; the global ones where it has no transform. Returns false where it lies on the
// axis of a cylindrical or spherical system, where there are none: then, too, they are the global
// ones.
bool AxesOfNode(const ImportModel& model, const AbaqusTransforms& transforms, std::int32_t node,
                AbaqusAxes& axes);

}  // namespace kvx
