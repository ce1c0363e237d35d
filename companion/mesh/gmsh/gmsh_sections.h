// The sections of a mesh file that are the same in all formats, and those that are left out.
#pragma once

#include "mesh/gmsh/gmsh_mesh.h"
#include "mesh/gmsh/gmsh_text.h"
#include "mesh/import_report.h"

namespace kvx {

// What to do about a format that is not read.
constexpr const char* SaveAnew =
    "save the mesh anew in format 4.1: gmsh FILE -save -format msh41 -o NEW.msh, or "
    "Mesh.MshFileVersion=4.1";

// Begins the next section: its name into text.section, which it returns; counts it. false: the
// file has no more. A section begins with a line "$Name" and ends with one "$EndName".
bool BeginSection(GmshText& text, ImportReport& report);

// Ends a section that was read. Ends the import where its end mark does not follow.
void EndSection(GmshText& text);

// $MeshFormat: version, text or binary, order of the bytes. Other versions end the import.
void ReadGmshFormat(GmshText& text, GmshMesh& mesh);

// $PhysicalNames: dimension, tag and name of each group.
void ReadGmshNames(GmshText& text, GmshMesh& mesh);

// Any other section: goes to its end mark, and reports it.
void SkipSection(GmshText& text, ImportReport& report);

}  // namespace kvx
