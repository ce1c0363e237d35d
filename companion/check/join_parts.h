// Parts that were meant to be one: nodes at the same place that are not merged, or nodes on
// elements that they do not belong to, keep them apart.
#pragma once

#include <vector>

#include "check/gap.h"
#include "check/parts.h"
#include "finding/finding.h"

namespace kvx {

// Fills `joined` with the parts as if the two nodes of each gap were connected.
void JoinParts(const Parts& parts, const std::vector<Gap>& gaps, Parts& joined);

// Makes an error of the findings K201, K202, K204 and K205 whose gaps leave a part of `parts`
// without a hold: such a part has no displacements that mean anything.
// moves: [parts] 1 where the part moves; joinedMoves: [joined parts] the same.
void RaiseGapsOfLooseParts(const Parts& parts, const Parts& joined, const std::vector<Gap>& gaps,
                           const std::vector<char>& moves, const std::vector<char>& joinedMoves,
                           FindingList& findings);

}  // namespace kvx
