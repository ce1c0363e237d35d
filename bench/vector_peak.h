// How fast one core multiplies and subtracts: the most that a factorisation can reach.
#pragma once

namespace korvex::bench {

// Products and differences a second, in vectors of `vectorBits` (128, 256 or 512; the processor
// must have them), rounded one by one as the factorisation does it.
double MeasurePeak(int vectorBits);

}  // namespace korvex::bench
