// Several load vectors of one structure, solved with one factorisation. Each solution has the bits
// that a run with this load alone would have.
#pragma once

#include <vector>

#include "model/model.h"
#include "skyline/work_share.h"

namespace kvx {

// model: tables and elements, as read; NEQ is set. Its Stiffness is used up and freed on return,
// also where an exception leaves.
// share: called some hundred times or more during long work; may be empty.
// loads: each NEQ, as AssembleLoadVector gives it; used up. displacements: one for each load, NEQ.
// Throws a Stop where a run would.
void SolveTogether(korvex::Model& model, std::vector<std::vector<double>>& loads,
                   const korvex::ShareCallback& share,
                   std::vector<std::vector<double>>& displacements);

}  // namespace kvx
