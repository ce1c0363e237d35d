// The elements of a mesh as shells, beams and points of an ImportModel.
#pragma once

#include <cstdint>
#include <vector>

#include "mesh/gmsh/gmsh_members.h"
#include "mesh/gmsh/gmsh_mesh.h"
#include "mesh/import_model.h"
#include "mesh/import_report.h"

namespace kvx {

// Moves the nodes to the model and makes its shells and beams. Lines and points of no group are
// left out: they are edges and corners of the geometry. rows: [elements], the row of the shell,
// beam, or for points the node; -1: it is not in the model.
void BuildGmshElements(const std::vector<GmshMember>& members, const std::vector<GmshUse>& uses,
                       GmshMesh& mesh, ImportModel& model, ImportReport& report,
                       std::vector<std::int32_t>& rows);

}  // namespace kvx
