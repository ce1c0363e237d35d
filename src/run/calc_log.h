// The lines of the calculation log. The memory estimate stands on the console, too.
#pragma once

#include <ostream>

namespace korvex {

// gigabytes: of 2^30 bytes (EstimateGigabytes).
void WriteMemoryEstimate(double gigabytes, std::ostream& stream);

void WriteSolutionTime(double seconds, std::ostream& stream);

}  // namespace korvex
