// Counts how often a stage sets up a part of a shell whose NodeCount is not that of its kind.
//
// The construction of the record sets NodeCount, and no routine changes it, so the counts are zero
// in a run. But the fixed interface demands a line on the console wherever a part of such an
// element is set up, and that the run goes on.
#pragma once

#include "model/model.h"

namespace korvex {

int CountOnReading(const Model& model);   // reading: once per shell
int CountOnForming(const Model& model);   // stiffness: membrane and plate part
int CountOnLoading(const Model& model);   // loads: once per load on a shell
int CountOnRecovery(const Model& model);  // stresses: both parts at each corner

}  // namespace korvex
