// Models by their name and size, as programs that measure are asked for them.
#pragma once

#include <string>

#include "deck/model_tables.h"

namespace korvex::bench {

// name: plate (shuffled, plane), grillage, ring, box (order_models.h); girders, beams alone
// (stage_models.h). equations: about so many. Returns false where no model has this name.
bool MakeNamedModel(const std::string& name, double equations, ModelTables& tables);

// The model as a file of this name, which is replaced. Returns false where it cannot be written.
bool WriteModelFile(const ModelTables& tables, const std::string& fileName);

}  // namespace korvex::bench
