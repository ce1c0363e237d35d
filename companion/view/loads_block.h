// The loads of a load case as the page shows them: a block of the columns of CaseLoads
// (page/src/data/page_model.ts).
//
// Rows of a load table that refer to the same node or element are one load, their sum, as in the
// solver; loads of zero are left out. A row whose node or element does not exist is left out, too:
// the page also shows models that cannot be solved.
#pragma once

#include <cstdint>
#include <vector>

#include "deck/model_tables.h"
#include "view/page_block.h"

namespace kvx {

// Pressures at the element's nodes 1, 2 and 3, along its normal, force/area.
struct ElementPressures {
  std::vector<std::int32_t> elements;  // ascending
  std::vector<double> pressures;       // [elements x 3]
};

struct CaseLoads {
  // Forces that prescribe displacements are no loads (tables/prescribed_displacements.h).
  std::vector<std::int32_t> forceNodes;  // ascending
  std::vector<double> forces;            // [forceNodes x 6] Fx .. Mz, global

  std::vector<std::int32_t> prescribedNodes;  // ascending, by node and dof
  std::vector<std::int32_t> prescribedDofs;   // 0 .. 5: ux .. rz, global
  std::vector<double> prescribedValues;       // length in model units, or radians

  ElementPressures shells, triangles;  // four-node and three-node elements

  std::vector<std::int32_t> beams;  // ascending
  std::vector<double> lineLoads;    // [beams x 2] at the first and second node, along local z
};

void CollectLoads(const korvex::ModelTables& tables, CaseLoads& loads);

void AddLoads(const CaseLoads& loads, PageBlock& block);

}  // namespace kvx
