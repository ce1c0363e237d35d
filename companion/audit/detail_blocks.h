// The detail models of all beams, made in blocks where the memory does not hold all of them.
//
// A block is a range of beams in the order of the table. With its beams it makes those that share
// an end with them: the averages of a detail model take in theirs (beamshell/average_corners.h). So
// all values have the bits of a run, which makes all detail models together; what several blocks
// cost is that the beams at their borders are made in each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "model/model.h"
#include "skyline/work_share.h"

namespace kvx {

struct DetailWork {
  int threads = 1;
  std::uint64_t memory = 0;     // bytes for a block and its systems; 0: what is free limits them
  korvex::ShareCallback share;  // of all blocks, as GenerateBeamShells calls it; may be empty
};

struct DetailBlock {
  std::size_t firstBeam = 0;                        // row of the table
  const korvex::BeamShellModel* details = nullptr;  // [count] of firstBeam, firstBeam + 1, ...
  std::size_t count = 0;
  bool isLast = false;
};

// Receives a block, which goes afterwards. Returns whether more is wanted.
using TakeDetails = std::function<bool(const DetailBlock& block)>;

// Calls `take` for one block after the other, so that each beam is in one of them. A block of one
// beam may be larger than the memory that is named. Throws a Stop, before the first block, where a
// beam's section type has no table, its detail model has too many equations, or the free memory is
// too small for a block. Returns the number of blocks.
// model: with the elements of its beams and the displacements.
std::size_t MakeDetailModels(const korvex::Model& model, const DetailWork& work,
                             const TakeDetails& take);

// Throws a Stop that names the first beam whose section type has no table. The solver's own does
// not name the beam.
void CheckSectionTypes(const korvex::ModelTables& tables);

}  // namespace kvx
