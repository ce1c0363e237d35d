// The good models are what they say: every one is solved, and its displacements are finite and
// not zero.
#include "support/good_models.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/solve_model.h"

namespace kvx::test {
namespace {

TEST(GoodModels, HaveFiniteDisplacements) {
  for (std::uint32_t seed = 0; seed < 50; ++seed) {
    const korvex::test::ModelText text = MakeGoodModel(seed);
    korvex::Model model;
    korvex::test::SolveModel(text, model);
    double largest = 0.0;
    for (const double u : model.Displacements) {
      ASSERT_TRUE(std::isfinite(u)) << "seed " << seed;
      largest = std::max(largest, std::abs(u));
    }
    EXPECT_GT(largest, 0.0) << "seed " << seed;
  }
}

// They are as varied as promised: all element kinds and section types occur, alone and together.
TEST(GoodModels, AreVaried) {
  int quads = 0, triangles = 0, mixed = 0, frames = 0, several = 0, stiffened = 0;
  for (std::uint32_t seed = 0; seed < 50; ++seed) {
    const korvex::test::ModelText text = MakeGoodModel(seed);
    const bool hasQuads = !text.shells4.empty(), hasTriangles = !text.shells3.empty(),
               hasBeams = !text.beams.empty();
    quads += hasQuads && !hasTriangles ? 1 : 0;
    triangles += hasTriangles && !hasQuads ? 1 : 0;
    mixed += hasQuads && hasTriangles ? 1 : 0;
    frames += hasBeams && !hasQuads && !hasTriangles ? 1 : 0;
    stiffened += hasBeams && (hasQuads || hasTriangles) ? 1 : 0;
    several += text.materials.size() > 1 && text.thicknesses.size() > 1 ? 1 : 0;
  }
  for (const int count : {quads, triangles, mixed, frames, several, stiffened}) EXPECT_GE(count, 3);
}

}  // namespace
}  // namespace kvx::test
