// K109 .. K112: the sections of beams.
//
//   T, L: web Hw x Tw, flange Bf x Tf; with Bf = 0 or Tf = 0 the solver takes a flat bar Hw x Tw.
//   tube: mean radius R, wall T; the inner radius is R - T/2.
#pragma once

#include "check/checked_model.h"
#include "check/table_rows.h"
#include "finding/finding.h"

namespace kvx {

// A row that is named is doubtful afterwards.
void CheckSections(const TableUse& use, CheckedModel& model, FindingList& list);

}  // namespace kvx
