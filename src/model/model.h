// All data of a run: the tables of the model file, the elements made from them, the equation
// system, the displacements, the detail models.
//
// A run has one Model; routines get it by reference. Entry k of an element table is row k of the
// file. Units are those of the file: nothing is converted.
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
  SkylineMatrix Stiffness;            // NEQ columns; used up by the solution
  std::vector<double> LoadVector;     // [NEQ]; forward-reduced after the solution
  std::vector<double> Displacements;  // [NEQ], written by the solution

  // The refinement of the detail models' sections: 0, 1 or 2. Neither the model file nor an option
  // sets it; it belongs to the fixed interface of the detail models.
  std::int32_t BeamShellMeshLevel = 0;
  std::vector<BeamShellModel> BeamShellModels;  // [NELEM_B]
};

// Frees all tables and arrays; a second call does nothing.
inline void ReleaseModel(Model& model) { model = Model(); }

}  // namespace korvex
