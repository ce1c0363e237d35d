// Load cases of a good model, each solved alone, for tests of envelopes.
#pragma once

#include <cstdint>
#include <vector>

#include "audit/reactions.h"
#include "audit/section_forces.h"
#include "audit/solved_model.h"
#include "support/model_text.h"

namespace kvx::test {

// The results of one load case.
struct SolvedCase {
  SolvedModel solved;  // with stresses and detail models
  Reactions reactions;
  std::vector<BeamForces> beams;
};

SolvedCase SolveCase(const korvex::test::ModelText& text);

// The good model of this seed with its loads scaled at random, row by row, each time anew.
std::vector<SolvedCase> SolveRandomCases(std::uint32_t seed, int count);

}  // namespace kvx::test
