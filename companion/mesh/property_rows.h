// Materials, thicknesses and sections of an ImportModel as rows of the model file's tables: equal
// ones are one row, and those that no element has are left out.
#pragma once

#include <cstdint>
#include <vector>

#include "deck/model_tables.h"
#include "mesh/import_model.h"
#include "mesh/import_report.h"
#include "tables/model_origin.h"

namespace kvx {

// From the rows of the ImportModel to those of the tables; -1: no element has it.
struct PropertyRows {
  std::vector<std::int32_t> materials, thicknesses, sections;
};

// Fills the tables with their counts, the names in `origin` and `rows`. Properties of no element
// are reported.
void BuildProperties(const ImportModel& model, ImportReport& report, korvex::ModelTables& tables,
                     ModelOrigin& origin, PropertyRows& rows);

}  // namespace kvx
