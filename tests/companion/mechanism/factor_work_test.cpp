// The work and size of the matrix, against sums by hand and the solver's own profile.
#include "mechanism/factor_work.h"

#include <gtest/gtest.h>

#include "skyline/skyline_matrix.h"
#include "support/expect_findings.h"
#include "support/good_models.h"
#include "system/profile.h"

namespace kvx::test {
namespace {

// A beam: columns of the heights 1 .. 12, the sum of h^2 / 2 is 12 x 13 x 25 / 12, that of h 78.
TEST(FactorWork, OfABeam) {
  korvex::ModelTables tables;
  tables.Nodes.resize(2);
  tables.BeamNodes = {0, 1};
  const FactorWork work = PredictFactorWork(tables);
  EXPECT_EQ(work.multiplications, 325.0);
  EXPECT_EQ(work.bytes, 8.0 * 78.0);
}

TEST(FactorWork, IsThatOfTheSolversProfile) {
  for (std::uint32_t seed = 0; seed < 20; ++seed) {
    korvex::Model model;
    model.Tables = Check(MakeGoodModel(seed)).model.tables;
    korvex::NumberEquations(model);
    korvex::BuildProfile(model);
    korvex::ComputeDiagonalAddresses(model.Stiffness);
    double work = 0.0;
    for (const std::int32_t h : model.Stiffness.ColumnHeights) work += 0.5 * h * h;
    const FactorWork predicted = PredictFactorWork(model.Tables);
    EXPECT_DOUBLE_EQ(predicted.multiplications, work);
    EXPECT_EQ(predicted.bytes, 8.0 * static_cast<double>(model.Stiffness.SkylineSize));
  }
}

TEST(FactorWork, TakesReferencesThatLeadOutside) {
  korvex::ModelTables tables;
  tables.Nodes.resize(1);
  tables.BeamNodes = {0, 7, -3, 0};
  EXPECT_EQ(PredictFactorWork(tables).bytes, 8.0 * 21.0);
}

}  // namespace
}  // namespace kvx::test
