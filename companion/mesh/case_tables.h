// The loads of a case of an ImportModel as load tables.
#pragma once

#include <cstdint>
#include <vector>

#include "deck/model_tables.h"
#include "mesh/case_supports.h"
#include "mesh/import_model.h"
#include "mesh/import_report.h"

namespace kvx {

// From the rows of the ImportModel to those of the tables. Shells are numbered within their kind.
struct BuiltRows {
  std::vector<std::int32_t> nodes;   // [nodes] -1: of no element
  std::vector<std::int32_t> shells;  // [shells]
};

// Fills the load tables of `tables`: one row to a node, shell and beam, ascending; see
// build_tables.h.
void BuildCaseLoads(const ImportModel& model, const ImportCase& loads, const BuiltRows& rows,
                    ImportReport& report, korvex::ModelTables& tables);

// Fills the restraints: one row to a node, ascending.
void BuildRestraints(const ImportModel& model, std::int32_t supports, const BuiltRows& rows,
                     ImportReport& report, korvex::ModelTables& tables);

}  // namespace kvx
