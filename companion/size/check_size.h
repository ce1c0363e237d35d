// The size of the solution: memory and time of the matrix, and what a better order of the nodes
// would give.
#pragma once

#include <cstdint>
#include <limits>
#include <string>

#include "check/checked_model.h"
#include "finding/finding.h"
#include "renumber/orders.h"

namespace kvx {

struct SolutionSize {
  double gigabytes = 0.0;                         // of the matrix as the nodes stand, 2^30 bytes
  double seconds = 0.0;                           // about, for its factorisation on this processor
  double bestGigabytes = 0.0, bestSeconds = 0.0;  // in the best order found
  std::string bestOrder;                          // its name, "given" where none is better
};

// What no matrix takes.
inline constexpr std::uint64_t UnlimitedMemory = std::numeric_limits<std::uint64_t>::max();

// "0.024 GB, about 0.2 s"
std::string DescribeSize(double gigabytes, double seconds);

// What the file's order and the best one cost, as time and memory of the solver.
// vectorBits: the processor's vector registers, see platform/vector_bits.h.
SolutionSize PredictSize(const BestOrder& best, int vectorBits);

// Whether the best order takes less than half of the time.
bool SavesMuch(const SolutionSize& size);

// What the solver may use, and who else solves the model.
struct SizeLimits {
  std::uint64_t freeMemory = UnlimitedMemory;  // bytes
  int vectorBits = 0;                          // as above
  bool hasOtherEngine = false;                 // one that needs no skyline: K502 is then no error
};

// Fills `size` and adds K501 and K502.
void CheckSize(const CheckedModel& model, const SizeLimits& limits, SolutionSize& size,
               FindingList& findings);

}  // namespace kvx
