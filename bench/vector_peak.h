// The peak rate of multiplications and subtractions on one core: an upper limit for a
// factorisation.
#pragma once

namespace korvex::bench {

// Returns products and differences per second, each rounded separately as in the factorisation.
// vectorBits: 128, 256 or 512; the processor must have these vectors.
double MeasurePeak(int vectorBits);

}  // namespace korvex::bench
