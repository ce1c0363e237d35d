// The mesh of a model with its results as the grid of a VTU file.
//
// Points. By corners: one for each corner of each shell, 4 e + c of four-node shells, then those of
// three-node shells, then two for each beam, then one for each node of no element. So stresses may
// jump between neighbours. Shared: point k is node k.
// Cells: four-node shells, three-node shells, beams, each in the order of its table.
//
// The arrays, their units and signs are listed in docs/results.md. A double that does not apply is
// NaN, an integer -1. Forces of loads and supports are 0 where there are none: what has no
// direction cannot be drawn.
#pragma once

#include <cstdint>
#include <vector>

#include "audit/reactions.h"
#include "audit/section_forces.h"
#include "audit/shell_resultants.h"
#include "audit/solved_model.h"
#include "tables/model_origin.h"
#include "vtu/point_stress.h"
#include "vtu/vtu_file.h"

namespace kvx {

// What the file is made of. It must stay as it is until the file is written.
struct MeshResults {
  // With the corner stresses of its shells, recovered and averaged; with `hasDetails` also with the
  // detail models of its beams.
  const SolvedModel& solved;
  const Reactions& reactions;                 // of it
  const std::vector<BeamForces>& beamForces;  // of all its beams
  // The number of each element's part: four-node shells, three-node shells, beams.
  const std::vector<std::int32_t>& parts;
  bool hasDetails = false;
  const ModelOrigin* origin = nullptr;  // where the model was imported from; null: it was not
};

// The points of a file.
struct MeshPoints {
  bool isShared = false;
  std::vector<std::int32_t> cornerNodes;  // by corner, as above, those of beams included
  std::size_t points = 0;
  std::vector<PointStress> means;  // shared: by node; else empty
};

// The array at the first and at the second node of a beam.
inline constexpr const char* SectionForceArrays[2] = {"section_forces_1", "section_forces_2"};

// A grid whose arrays refer to this record and to what it was made from.
struct MeshGrid {
  MeshPoints points;
  std::vector<CentreResultants> centres;  // of four-node, then of three-node shells
  VtuGrid grid;

  MeshGrid() = default;
  MeshGrid(const MeshGrid&) = delete;
  MeshGrid& operator=(const MeshGrid&) = delete;
};

// The node that a point stands at.
std::int32_t NodeOfPoint(const MeshPoints& points, std::size_t point);

// The averaged stresses at a point, which are those of the first arrays: of its corner, or the mean
// of its node's corners.
PointStress StressAtPoint(const korvex::Model& model, const MeshPoints& points, std::size_t point);

// Fills `points`. The model: with averaged corner stresses where the points are shared.
void ListMeshPoints(const korvex::Model& model, bool isShared, MeshPoints& points);

// Fills points, cells and what tells them apart: "node_id", "element", "kind", "thickness",
// "material", "part", "section_type", "section", "axis_x", "axis_z"; of an imported model
// "deck_node" and "deck_element" besides. Throws a Stop where the results do not fit the model.
void BuildMesh(const MeshResults& results, bool isShared, MeshGrid& mesh);

// The same and all results.
void BuildMeshGrid(const MeshResults& results, bool isShared, MeshGrid& mesh);

}  // namespace kvx
