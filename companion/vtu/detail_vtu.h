// The detail models of all beams as the grid of a VTU file: flat shells with four corners.
//
// Points. By corners: 4 k + c for corner c of shell k. Shared: the points of the outlines, beam by
// beam, station by station. The end nodes of the beams, at which no shell stands, are left out.
// Cells: the shells, beam by beam, station by station. Arrays as in docs/results.md.
#pragma once

#include <cstdint>
#include <vector>

#include "model/model.h"
#include "vtu/point_stress.h"
#include "vtu/vtu_file.h"

namespace kvx {

// A shell or a node of a detail model.
struct DetailRef {
  std::int32_t beam = 0;
  std::int32_t row = 0;
};

// A grid whose arrays refer to this record and to the model.
struct DetailGrid {
  bool isShared = false;
  std::vector<DetailRef> shells;          // by cell
  std::vector<DetailRef> nodes;           // shared: by point; else empty
  std::vector<std::int32_t> cornerNodes;  // shared: [shells x 4] the point of each corner
  std::vector<PointStress> means;         // shared: by point
  VtuGrid grid;

  DetailGrid() = default;
  DetailGrid(const DetailGrid&) = delete;
  DetailGrid& operator=(const DetailGrid&) = delete;
};

// model: solved, with the detail models of all beams; parts: as in MeshResults. Both must stay as
// they are until the file is written.
void BuildDetailGrid(const korvex::Model& model, const std::vector<std::int32_t>& parts,
                     bool isShared, DetailGrid& details);

}  // namespace kvx
