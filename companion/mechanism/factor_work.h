// What the factorisation of a model's stiffness takes, from the node numbers of the elements alone.
//
// Column j of the skyline has the height h from its topmost coupled row: about h^2 / 2
// multiplications and 8 h bytes (Bathe 1996, sec. 8.2.3).
#pragma once

#include "deck/model_tables.h"

namespace kvx {

struct FactorWork {
  double multiplications = 0.0;
  double bytes = 0.0;  // of the matrix
};

// Any tables; references that lead outside count nowhere.
FactorWork PredictFactorWork(const korvex::ModelTables& tables);

}  // namespace kvx
