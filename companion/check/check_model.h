// All checks of a model, in order: text, tables, elements, mesh, supports, loads, size,
// plausibility.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "check/checked_model.h"
#include "finding/finding.h"

namespace kvx {

struct CheckOptions {
  // Nodes closer than this are at the same place, model units; 0: 1e-6 of the model's extent.
  double tolerance = 0.0;
};

struct CheckReport {
  CheckedModel model;
  FindingList findings;  // sorted
};

// text: the bytes of the model file. Any text is accepted.
void CheckModel(std::string_view text, const CheckOptions& options, CheckReport& report);

}  // namespace kvx
