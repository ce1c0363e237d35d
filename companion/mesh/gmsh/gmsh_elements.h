// $Elements of both formats: points, lines, triangles and quadrilaterals into the mesh, all others
// into the report.
#pragma once

#include <cstdint>
#include <string>

#include "mesh/gmsh/gmsh_mesh.h"
#include "mesh/gmsh/gmsh_text.h"
#include "mesh/import_report.h"

namespace kvx {

void ReadGmshElements22(GmshText& text, GmshMesh& mesh, ImportReport& report);
void ReadGmshElements41(GmshText& text, GmshMesh& mesh, ImportReport& report);

// "element type 3": how the report names the elements of a type.
std::string GmshCard(std::int64_t type);

}  // namespace kvx
