// Which beams share an end: those whose detail models a run averages together.
//
// Ends are shared below a distance of 0.001, in model units (CoincidenceTolerance).
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "model/model.h"

namespace kvx {

// The finite ends of all beams by their height along one direction: ends that are shared stand near
// each other.
struct EndIndex {
  std::vector<std::pair<double, std::int32_t>> ends;  // height, beam; ascending
};

// model: with the elements of its beams.
void IndexEnds(const korvex::Model& model, EndIndex& index);

// Appends the rows of all beams that share an end with this one: the beam itself, and beams twice,
// may be among them; an end that is not finite is shared with none.
void AppendSharing(const korvex::Model& model, const EndIndex& index, std::int32_t row,
                   std::vector<std::int32_t>& rows);

}  // namespace kvx
