// From an ImportModel to the tables of a model file, and where each row comes from.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "deck/model_tables.h"
#include "mesh/check_complete.h"
#include "mesh/import_model.h"
#include "mesh/import_report.h"
#include "tables/model_origin.h"

namespace kvx {

// The loads of a case, in load tables; all other tables are empty.
struct BuiltCase {
  std::string name;
  korvex::ModelTables loads;
  bool hasAcceleration = false;
  korvex::Vector3 acceleration{};
};

struct BuiltModel {
  korvex::ModelTables tables;    // structure and supports, without loads; counts are set
  std::vector<BuiltCase> cases;  // those with any load; a case without is reported
  ModelOrigin origin;            // without source and hash, which the caller knows
};

// Builds the tables of a complete model. All rows keep their order; shells of four and three nodes
// that within their kind.
//   Equal thicknesses, materials and sections are one row with the name of the first. Those of no
//   element are left out, as are nodes of no element; both are reported, a support or a load of
//   such a node as lost.
//   Supports of a node are one row, in the order of the nodes. Forces on a node in a case are one
//   row, too, as are pressures on a shell and line loads on a beam: their sums in the order of the
//   deck, and none where the sum is 0. A prescribed displacement is the force 1e20 times it, in
//   place of other forces on the same degree of freedom.
//   A tube without an orientation across its axis gets one.
void BuildTables(const ImportModel& model, ImportReport& report, BuiltModel& built);

}  // namespace kvx
