// Mesh files of gmsh: formats 2.2 and 4.1, ASCII and binary -> ImportModel.
//
// Taken: nodes, two-node lines (as beams), three-node triangles and four-node quadrilaterals (as
// shells), points and all of their physical groups. A mesh has no thickness, section, support or
// load: a map file gives them to the groups. See docs/import.md.
#pragma once

#include "mesh/import_model.h"
#include "mesh/import_report.h"
#include "mesh/source_files.h"

namespace kvx {

// file: the mesh; any bytes. model and report: empty; report.files has the file's name.
// Throws a Stop with the file's name and the line (binary: the byte) where it is broken or
// truncated.
void ImportGmsh(const SourceFile& file, ImportModel& model, ImportReport& report);

}  // namespace kvx
