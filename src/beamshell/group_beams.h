// Which beams are solved side by side (solve_beam_lanes.h): those of the same shape, as many at
// once as a vector has lanes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "beamshell/section_outline.h"

namespace korvex {

// What decides which nodes the shells and links of detail models have: the steps, the number of
// outline points, and the points of each segment.
using BeamShape = std::vector<std::int32_t>;

BeamShape DescribeShape(const SectionOutline& outline, std::int32_t steps);

// The shapes of some beams.
struct BeamShapes {
  std::map<BeamShape, std::size_t> numbers;
  std::vector<std::size_t> ofBeam;         // [beams] its shape's number
  std::vector<std::uint64_t> systemBytes;  // [shapes] of the equation system of one beam
};

// Larger systems would gain little, because they do not stay in a cache, and take much memory.
inline constexpr std::uint64_t MaxGroupBytes = std::uint64_t{256} << 20U;

// Adds the next beam. systemBytes: as from CountSystemBytes (extrude_outline.h).
void AddBeam(const BeamShape& shape, std::uint64_t systemBytes, BeamShapes& shapes);

// Beams 0, 1 .. in groups, each ascending; the first beams of the groups ascend too.
struct BeamGroups {
  std::vector<std::vector<std::size_t>> beams;  // [groups]
  // Bytes of the systems of a thread: the largest ones side by side, and beside them the largest
  // one alone, which beams of any group may need.
  std::uint64_t threadBytes = 0;
};

// Forms groups of at most `lanes` beams.
// freeBytes: what the systems of a group may take. Beams are alone where a group of their shape
// would take more, or more than MaxGroupBytes, and where they would fill less than half of the
// lanes.
BeamGroups GroupBeams(const BeamShapes& shapes, std::size_t lanes, std::uint64_t freeBytes);

}  // namespace korvex
