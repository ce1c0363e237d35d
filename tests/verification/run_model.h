// Runs a model through the program, as a process in a folder of its own, and reads its result
// files.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "support/model_text.h"

namespace korvex::book {

using test::ModelText;

using Six = std::array<double, 6>;

// SX, SY, SZ, TXY, TXZ, TYZ at a corner of a shell.
struct Corner {
  int node = 0;
  Six top{}, bottom{};
};

// The corners of one shell, in the order of its nodes.
using Corners = std::vector<Corner>;

// The detail model of a beam, from the file of the averaged stresses.
struct Detail {
  std::vector<std::array<double, 3>> nodes;
  std::vector<Six> displacements;
  std::vector<Corners> shells;
};

struct Results {
  std::vector<Six> displacements;  // by node: ux, uy, uz, rx, ry, rz
  std::vector<Corners> shells;     // as recovered: the four-node shells, then the three-node ones
  std::vector<Corners> averaged;   // the same, averaged
  std::vector<Detail> details;     // by beam
};

// What of the result files is read.
enum class Read { Displacements, Stresses, Details };

// Throws std::runtime_error where the program does not end as it should or a file is not complete.
Results RunModel(const ModelText& model, Read read = Read::Displacements);

}  // namespace korvex::book
