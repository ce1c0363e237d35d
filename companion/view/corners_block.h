// The stresses of shell elements by themselves as the page shows them: a block of the columns of
// CornerStresses (page/src/data/page_model.ts).
//
// They are plane stresses in each element's own frame (shell/element_frame.h), where three
// components say all.
#pragma once

#include <vector>

#include "model/model.h"
#include "view/page_block.h"

namespace kvx {

struct CornerStresses {
  // [4 NELEM_S_4ND + 3 NELEM_S_3ND, 3] sx, sy, txy of the upper and the lower face as recovered,
  // before any average. As in the stress file a triangle has those of its first corner at all
  // three.
  std::vector<double> upper, lower;
  // [NELEM_S_4ND x 2] qx, qy at the centre, force/length (audit/shell_resultants.h)
  std::vector<double> shear;
};

// Fills the record. The model's recovered stresses must be there. Throws a Stop where the record of
// the model is not complete.
void CollectCorners(const korvex::Model& model, CornerStresses& corners);

void AddCorners(const CornerStresses& corners, PageBlock& block);

}  // namespace kvx
