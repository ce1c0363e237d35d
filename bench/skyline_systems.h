// The systems of equations of skyline_bench: how the columns' tops lie is what distinguishes them.
#pragma once

#include <string>
#include <vector>

#include "system/skyline_matrix.h"

namespace korvex::bench {

struct SkylineSystem {
  std::string name;
  SkylineMatrix K;        // assembled and supported
  std::vector<double> F;  // [n]
  int copies = 1;         // so many are solved, one after another
};

// A flat plate; nodes are numbered along the columns.
SkylineSystem MakePlate(int columns, int rows);

// A plate with a web of two rows of shells under every fifth line of nodes; the web's nodes are
// numbered between the plate's.
SkylineSystem MakeStiffenedPlate(int columns, int rows);

// A tube, numbered ring by ring: the last node of a ring lies beside its first.
SkylineSystem MakeCylinder(int columns, int rings);

// A square plate whose nodes are numbered at random: hardly two columns are of one height.
SkylineSystem MakeShuffledPlate(int columns);

// The detail model of a T girder, `copies` times.
SkylineSystem MakeDetailModels(int copies);

}  // namespace korvex::bench
