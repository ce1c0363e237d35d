// The stages of solve_skyline.h in the longest vectors that the processor has.
#include "system/solve_skyline.h"

#include "platform/vector_bits.h"
#include "system/factor_skyline.h"
#include "system/substitute_back.h"

namespace korvex {

void SolveSkyline(SkylineMatrix& K, std::vector<double>& F, std::vector<double>& u,
                  SolverProgress progress) {
  FactorSkyline(WidestVectorBits(), K, F, progress);
  SubstituteBack(K, F, u);
}

}  // namespace korvex
