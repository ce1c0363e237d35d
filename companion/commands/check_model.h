// All checks of a model in their order: text, tables and elements, mesh, supports, loads,
// plausibility, size, mechanisms. Nothing is printed.
//
// An earlier check keeps a later one from naming the same slip again (check/checked_model.h).
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "check/checked_model.h"
#include "check/parts.h"
#include "check/sum_loads.h"
#include "check/weigh_model.h"
#include "finding/finding.h"
#include "size/check_size.h"
#include "tables/model_origin.h"

namespace kvx {

struct CheckOptions {
  // Nodes closer than this are at the same place, model units; 0: 1e-6 of the model's extent.
  double tolerance = 0.0;
  // Look for mechanisms in any case. Without it they are looked for where that takes no more than
  // about a second, and no error has been found; what other findings explain is then left out.
  bool deep = false;
  // Whether the matrix fits into the memory (K502): not asked where the engines are planned, one of
  // which may fit (engine/plan_solution.h), nor of a model that has been solved.
  bool asksMemory = true;
};

struct CheckReport {
  CheckedModel model;
  FindingList findings;  // sorted
  Parts parts;
  LoadSums loads;
  ModelWeight weight;
  SolutionSize size;

  // Not filled by the checks: where the model was imported from (AddOrigin in check_report.h).
  ModelOrigin origin;
  bool hasForeignOrigin = false;  // the import.json beside the model is that of another
};

// text: the bytes of the model file. Any text is accepted.
void CheckModel(std::string_view text, const CheckOptions& options, CheckReport& report);

}  // namespace kvx
