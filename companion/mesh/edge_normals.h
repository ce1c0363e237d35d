// The normals of shells along the beams that lie on their edges: the direction of stiffeners on
// curved plating.
#pragma once

#include <cstdint>
#include <vector>

#include "base/vector3.h"
#include "mesh/import_model.h"

namespace kvx {

struct EdgeNormal {
  bool isFound = false;    // the beam lies on an edge of a shell
  bool isClear = false;    // the normals of all its shells are within 30 degrees of their mean
  korvex::Vector3 mean{};  // length 1
};

// beams: rows of the model's beams. Returns the mean of the normals (length 1 each) of the shells
// that have the beam's nodes as an edge, for each of them.
std::vector<EdgeNormal> FindEdgeNormals(const ImportModel& model,
                                        const std::vector<std::int32_t>& beams);

}  // namespace kvx
