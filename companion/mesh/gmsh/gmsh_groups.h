// The physical groups of a mesh as groups of an ImportModel.
#pragma once

#include <cstdint>
#include <vector>

#include "mesh/gmsh/gmsh_members.h"
#include "mesh/gmsh/gmsh_mesh.h"
#include "mesh/import_model.h"
#include "mesh/import_report.h"

namespace kvx {

// Adds a group for each physical group with elements in the model, by dimension and tag. It has the
// physical group's name, or one such as "surface 3" where that has none; groups that share a name
// are told apart by "(lines)" or, where that does not do, "(line 7)" behind it.
//
// Shells of no group are a group, too, so that a map can name them: "all" in a file without any,
// else "rest". A name without elements is no group: a map that gave it a support would hold
// nothing.
void BuildGmshGroups(const GmshMesh& mesh, const std::vector<GmshMember>& members,
                     const std::vector<std::int32_t>& rows, ImportModel& model,
                     ImportReport& report);

}  // namespace kvx
