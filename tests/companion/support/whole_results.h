// Models with all results of a run, in memory: the examples and good models of random shape.
#pragma once

#include <string>
#include <vector>

#include "audit/solved_model.h"
#include "support/model_text.h"

namespace kvx::test {

struct NamedModel {
  std::string name;
  SolvedModel solved;  // with stresses and detail models
};

SolvedModel SolveWhole(const std::string& modelText);

inline SolvedModel SolveWhole(const korvex::test::ModelText& model) {
  return SolveWhole(korvex::test::WriteModel(model));
}

// The three examples, and good models with shells of both kinds and beams among them. They are
// solved once.
const std::vector<NamedModel>& ListSolvedModels();

}  // namespace kvx::test
