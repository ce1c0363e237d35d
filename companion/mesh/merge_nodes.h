// Nodes at the same place become one: only where the user asks for it.
#pragma once

#include <cstddef>

#include "mesh/import_model.h"
#include "mesh/import_report.h"

namespace kvx {

struct MergedNodes {
  std::size_t merged = 0;     // nodes that are gone
  std::size_t triangles = 0;  // quadrilaterals that became triangles by it
  std::size_t collapsed = 0;  // elements that lost their extent and are gone
};

// Merges nodes that are no further apart than `length`, in the order of their rows: each node
// gathers those near it that are still alone, so chains do not run away. All references move to the
// node that stays, the first one; its coordinates stay. Collapsed elements are reported as lost.
// Forces of merged nodes add up, and so do their supports. To be called before a map is applied:
// then a map's force on each node of a group acts once at a place, and webs find the shells
// beneath.
MergedNodes MergeNodes(double length, ImportModel& model, ImportReport& report);

}  // namespace kvx
