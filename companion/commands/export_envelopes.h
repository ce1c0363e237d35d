// The envelopes of `kvx export`: the largest and the smallest values at the points of a VTU file
// over load cases, and the cases that govern.
#pragma once

#include <string>
#include <vector>

#include "cases/case_file.h"
#include "cases/envelope.h"
#include "vtu/mesh_vtu.h"

namespace kvx {

// An envelope while cases are added.
struct PointEnvelope {
  std::vector<std::size_t> of;  // the rows of its cases
  bool hasBegun = false;
  MeshPoints points;
  Envelope motion;    // by node: ux, uy, uz, and the size of the displacement
  Envelope stresses;  // by point: von Mises of the upper and lower face, and the larger of both
};

// Adds the results of a case. row: of the case; it is the number with which the case is named.
// Throws a Stop where the case is of another mesh.
void AddToPointEnvelope(const MeshResults& results, bool isShared, std::size_t row,
                        PointEnvelope& envelope);

// Fills the grid of the envelope. results: of any case of the structure; they and the envelope must
// stay as they are until the file is written.
void BuildEnvelopeGrid(const MeshResults& results, const PointEnvelope& envelope, MeshGrid& mesh);

}  // namespace kvx
