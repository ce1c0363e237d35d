// The examples that several tests solve whole, to compare files, tables or engines.
//
// Where tests repeat less (support/repeats.h), lattice-tower is left out: its 320 detail models
// take most of the time, and stiffened-panel's 228 walk through the same code.
#pragma once

#include <string>
#include <vector>

namespace kvx::test {

// Folders of examples/, ascending.
std::vector<std::string> ListSolvedExamples();

}  // namespace kvx::test
