// Runs the program on a model, as a process in its own folder, and reads the result files.
//
// Numbers keep the six digits and the order of the files; units are those of the model.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "support/model_text.h"

namespace korvex::book {

using test::ModelText;

using Six = std::array<double, 6>;

// The stresses on both faces at a corner of a shell: SX, SY, SZ, TXY, TXZ, TYZ.
struct Corner {
  int node = 0;
  Six top{}, bottom{};
};

// The membrane part of SX: the mean of both faces.
inline double MembraneSX(const Corner& corner) { return (corner.top[0] + corner.bottom[0]) / 2; }

// The corners of one shell, in the order of its nodes.
using Corners = std::vector<Corner>;

// The detail model of a beam, from the file of the averaged stresses of detail models.
struct Detail {
  std::vector<std::array<double, 3>> nodes;
  std::vector<Six> displacements;  // by node: ux, uy, uz, rx, ry, rz
  std::vector<Corners> shells;     // averaged
};

struct Results {
  std::vector<Six> displacements;  // by node: ux, uy, uz, rx, ry, rz
  std::vector<Corners> shells;     // not averaged; the four-node shells, then the three-node ones
  std::vector<Corners> averaged;   // averaged at the nodes, in the same order
  std::vector<Detail> details;     // by beam
};

// How much of the result files is read. Each level includes the ones before it.
enum class Read { Displacements, Stresses, Details };

// Throws std::runtime_error where the program fails or writes to the standard error stream, where a
// file is incomplete, and where an equivalent stress does not follow from its components.
Results RunModel(const ModelText& model, Read read = Read::Displacements);

}  // namespace korvex::book
