// Whole runs through the stages with a number of threads, and a model with enough of everything
// that several threads get work in each stage.
#pragma once

#include <map>
#include <string>

#include "support/model_text.h"

namespace korvex::test {

// Threads for comparisons: one, as many as this machine has at least, an odd number, many.
inline constexpr int ThreadCounts[] = {1, 2, 3, 8};

// The result files of a run by their names.
using FileTexts = std::map<std::string, std::string>;

// Goes through all stages in a folder of its own and returns the files.
FileTexts RunStages(const std::string& modelText, int threads);

// A doubly curved, clamped grid of 12 x 24 cells, quads and triangles in turn, with stiffeners of
// all kinds of sections along two of its lines, each kind in turn; nodal forces and distributed
// loads.
ModelText MakeStiffenedGrid();

// A plate of 70 x 28 quads whose equations several threads factorise: its columns have 430 rows and
// more. slope: of the plate's surface. With 0, displacements in the plane and those out of it are
// independent systems.
ModelText MakePlate(double slope);

}  // namespace korvex::test
