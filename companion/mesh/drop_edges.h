// Lines of a mesh file that are no beams but edges: their groups carry supports and loads.
#pragma once

#include "mesh/import_model.h"
#include "mesh/import_report.h"

namespace kvx {

// Takes out the beams that have neither section nor material nor orientation, and reports them by
// group; their groups keep the nodes. Where the map gives a group a support or a load, or the mesh
// has them in no group, that has no effect. Other groups count as lost: a stiffener that the map
// forgets must not go without a word. To be called for mesh files (gmsh) after the map, with a map
// or without one. Not for decks: there a beam without a section is a gap.
void DropEdges(ImportModel& model, ImportReport& report);

}  // namespace kvx
