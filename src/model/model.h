// Everything that a run knows: the tables of the model file, the elements built from them, the
// equation system, the displacements, the detail models.
//
// There is one Model in a run; whoever needs it gets it by reference. Entry k of an element table
// is row k of the file. Units are those of the file: nothing is converted.
#pragma once

#include <cstdint>
#include <vector>

#include "beam/beam_element.h"
#include "deck/model_tables.h"
#include "model/beam_shell_model.h"
#include "shell/shell_element.h"
#include "skyline/skyline_matrix.h"

namespace korvex {

struct Model {
  ModelTables Tables;

  std::vector<Shell4Element> Shell4Elements;  // [NELEM_S_4ND]
  std::vector<Shell3Element> Shell3Elements;  // [NELEM_S_3ND]
  std::vector<BeamElement> BeamElements;      // [NELEM_B]

  std::int32_t NEQ = 0;               // equations: NPOIN x DofsPerNode
  SkylineMatrix Stiffness;            // NEQ columns; its factors after the solution
  std::vector<double> LoadVector;     // [NEQ]; forward-reduced after the solution
  std::vector<double> Displacements;  // [NEQ], written by the solution

  // How finely the detail models divide their sections: 0, 1 or 2. Neither the model file nor an
  // option sets it; it belongs to the detail models' fixed interface.
  std::int32_t BeamShellMeshLevel = 0;
  std::vector<BeamShellModel> BeamShellModels;  // [NELEM_B]
};

// Frees every table and array; a second release is harmless.
inline void ReleaseModel(Model& model) { model = Model(); }

}  // namespace korvex
