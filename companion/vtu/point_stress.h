// The stresses at the points of a VTU file, and their arrays.
//
// A point of its own for each corner of each shell has the stresses of that corner. A point that
// all corners at a node share has the mean of these corners, component by component; its von Mises
// stress is the mean of theirs. Where plates meet at an angle, or normals of neighbours point to
// opposite sides, such a mean mixes what does not belong together.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "shell/shell_element.h"
#include "vtu/vtu_file.h"

namespace kvx {

struct PointStress {
  korvex::StressVector upper{}, lower{};  // SX .. TYZ, global axes, as the solver has them
  double upperMises = 0.0, lowerMises = 0.0;
};

// The stresses of one face of a corner, and of the other.
PointStress MakePointStress(const korvex::StressVector& upper, const korvex::StressVector& lower);

// What a point without a shell has: NaN everywhere.
PointStress NoStress();

// The stresses at a point. Called with any point of the file.
using FindStress = std::function<PointStress(std::size_t point)>;

// The means at nodes. corners: the stresses of corner k; nodes: [corners] the node of each,
// below nodeCount. Nodes without corners have NaN. The sums run in the order of the corners.
void AverageAtNodes(const FindStress& corners, const std::vector<std::int32_t>& nodes,
                    std::size_t nodeCount, std::vector<PointStress>& means);

// Adds "stress_upper", "stress_lower" (XX, YY, ZZ, XY, YZ, XZ: VTK's order, in which the solver's
// last two change places), "von_mises_upper" and "von_mises_lower", with the suffix behind.
void AddStressArrays(const FindStress& find, const std::string& suffix, std::size_t points,
                     std::vector<VtuArray>& arrays);

}  // namespace kvx
