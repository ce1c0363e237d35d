// Systems of equations to solve: how the columns' tops lie is what distinguishes them.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "skyline/skyline_matrix.h"

namespace korvex::bench {

struct SkylineSystem {
  std::string title;
  SkylineMatrix K;        // assembled and supported
  std::vector<double> F;  // [n]
  int copies = 1;         // so many are solved, one after another
};

// A system is made when it is needed and not before: the largest has 2.2 GB.
struct SkylineCase {
  const char* name;
  SkylineSystem (*make)();
};

// plate: a flat plate, its nodes numbered along the columns: two independent systems;
// sloping: the same, parallel to no coordinate plane: one system;
// stiffened: a plate with a web of two rows of shells under every fifth line of nodes, the web's
//    nodes numbered between the plate's;
// cylinder: a tube, numbered ring by ring: the last node of a ring lies beside its first;
// shuffled: a square plate whose nodes are numbered at random, hardly two columns of one height;
// details: the detail model of a T girder, many times;
// strip, square: flat plates, a long one and a large one.
extern const std::array<SkylineCase, 8> SkylineCases;

}  // namespace korvex::bench
