// An imported deck, and the sums of what its load cases load it with.
#pragma once

#include <array>

#include "mesh/import_model.h"
#include "mesh/import_report.h"

namespace kvx::test {

struct ImportedDeck {
  ImportModel model;
  ImportReport report;
};

// Fx, Fy, Fz of all loads of a case but gravity, and their Mx, My, Mz about the origin. Found
// without the program's own integrals: a pressure over its plane, in triangles, with three
// midpoints each (exact for what is quadratic); a line load by Simpson's rule.
using LoadSums = std::array<double, 6>;
LoadSums SumLoads(const ImportModel& model, const ImportCase& loads);

}  // namespace kvx::test
