// The box around the nodes of a model along the global axes: its middle and its size.
//
// Coordinates that are not finite are left out, each for itself. Of a model without nodes the
// middle is the origin and the size 0.
#pragma once

#include "base/vector3.h"
#include "deck/model_tables.h"

namespace kvx {

struct NodeBox {
  korvex::Vector3 middle{};
  double diagonal = 0.0;  // model units
};

NodeBox MeasureNodeBox(const korvex::ModelTables& tables);

}  // namespace kvx
