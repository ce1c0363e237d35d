// Systems of equations for the measurements. They differ in the top rows of their columns.
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
  int copies = 1;         // number of equal systems solved one after another
};

// A system is made only when it is needed: the largest takes 2.2 GB.
struct SkylineCase {
  const char* name;
  SkylineSystem (*make)();
};

// A plate of columns x rows nodes that is parallel to no coordinate plane: one system.
SkylineSystem MakeSlopingPlate(int columns, int rows);

// plate: a flat plate in a coordinate plane, two independent systems;
// sloping: the same plate, inclined, one system;
// stiffened: a plate with a web of two rows of shells under every fifth line of nodes, the web's
//    nodes numbered between the plate's;
// cylinder: a tube, numbered ring by ring, so that elements couple the last node of a ring and its
//    first;
// shuffled: a square plate numbered at random, so that few nodes have columns of equal height;
// details: 500 copies of the detail model of a T girder;
// strip, square: a long flat plate and a large one.
extern const std::array<SkylineCase, 8> SkylineCases;

}  // namespace korvex::bench
