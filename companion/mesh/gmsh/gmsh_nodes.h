// $Nodes of both formats, and $ParametricNodes, which format 2.2 has instead where gmsh saves the
// parameters of nodes on their curve or surface. These are not needed.
#pragma once

#include "mesh/gmsh/gmsh_mesh.h"
#include "mesh/gmsh/gmsh_text.h"

namespace kvx {

void ReadGmshNodes22(GmshText& text, GmshMesh& mesh);
void ReadGmshParametricNodes22(GmshText& text, GmshMesh& mesh);
void ReadGmshNodes41(GmshText& text, GmshMesh& mesh);

}  // namespace kvx
