// What the solver makes of a file from a slip on: found by reading on with its own reader.
#pragma once

#include <string>
#include <string_view>

#include "check/read_checked.h"
#include "finding/finding.h"

namespace kvx {

// Sentences, such as "Read as 1 0 0 0 0 0; every later row is lost.".
// finding: the one that the sentences are for; a row that it does not name is named.
std::string DescribeSolverReading(std::string_view text, const Slip& slip, const Finding& finding);

}  // namespace kvx
