// How often the stages meet a shell record whose node count is not that of its kind.
//
// The count is a field of the record, set when it is made; nothing here changes it. The fixed
// interface demands a line on the console wherever a part of such an element is set up, and that
// the run goes on.
#pragma once

#include "model/model.h"

namespace korvex {

int CountOnReading(const Model& model);   // once a shell
int CountOnForming(const Model& model);   // its membrane and its plate part
int CountOnLoading(const Model& model);   // once a load on a shell
int CountOnRecovery(const Model& model);  // both parts at each corner

}  // namespace korvex
