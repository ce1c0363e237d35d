// Models of different kind, small enough to be solved by both engines within a test: plates, curved
// and folded shells, girders, frames, and what loses digits.
#pragma once

#include <string>
#include <vector>

#include "support/model_text.h"

namespace kvx::test {

// One of a table.
struct EngineModel {
  std::string name;
  korvex::test::ModelText text;
};

std::vector<EngineModel> MakeEngineModels();

}  // namespace kvx::test
