#include "beamshell/group_beams.h"

#include <algorithm>

namespace korvex {

BeamShape DescribeShape(const SectionOutline& outline, std::int32_t steps) {
  BeamShape shape = {steps, static_cast<std::int32_t>(outline.points.size())};
  for (const OutlineSegment& segment : outline.segments) {
    shape.insert(shape.end(), segment.points.begin(), segment.points.end());
  }
  return shape;
}

void AddBeam(const BeamShape& shape, std::uint64_t systemBytes, BeamShapes& shapes) {
  const auto [place, isNew] = shapes.numbers.emplace(shape, shapes.numbers.size());
  if (isNew) shapes.systemBytes.push_back(systemBytes);
  shapes.ofBeam.push_back(place->second);
}

BeamGroups GroupBeams(const BeamShapes& shapes, std::size_t lanes, std::uint64_t freeBytes) {
  const std::uint64_t limit = std::min(freeBytes, MaxGroupBytes);
  BeamGroups groups;
  std::uint64_t sideBySide = 0, alone = 0;  // bytes of the largest systems
  const auto close = [&](std::vector<std::size_t>& beams, std::size_t shape) {
    const std::uint64_t bytes = shapes.systemBytes[shape];
    alone = std::max(alone, bytes);
    if (beams.size() > 1) sideBySide = std::max(sideBySide, bytes * lanes);
    groups.beams.push_back(std::move(beams));
    beams.clear();
  };
  std::vector<std::vector<std::size_t>> open(shapes.systemBytes.size());  // by shape
  for (std::size_t beam = 0; beam < shapes.ofBeam.size(); ++beam) {
    const std::size_t shape = shapes.ofBeam[beam];
    open[shape].push_back(beam);
    const bool hasRoom = shapes.systemBytes[shape] <= limit / lanes;
    if (!hasRoom || open[shape].size() == lanes) close(open[shape], shape);
  }
  for (std::size_t shape = 0; shape < open.size(); ++shape) {
    const std::size_t left = open[shape].size();
    if (left > 1 && 2 * left >= lanes) close(open[shape], shape);
    for (const std::size_t beam : open[shape]) {
      std::vector<std::size_t> single = {beam};
      close(single, shape);
    }
  }
  groups.threadBytes = sideBySide + alone;
  std::sort(groups.beams.begin(), groups.beams.end());
  return groups;
}

}  // namespace korvex
