// What stands beside the factor, counted by hand.
#include "engine/factor_budget.h"

#include <gtest/gtest.h>

namespace kvx::test {
namespace {

// Two free equations of six, three entries, one fixed row with two; two loads.
TEST(FactorBudget, CountsWhatStandsBeside) {
  const UpperMatrix A{{0, 2, 3}, {0, 1, 1}, {2.0, -1.0, 2.0}, false, 0, {}};
  const FixedRows C{{0, 2}, {0, 1}, {0.5, 0.5}};
  EngineSettings settings;
  settings.memory = 1234;
  const FactorSettings factor = MakeFactorSettings(settings, A, C, 6, 2);
  // displacements of six numbers; three columns of two numbers for each load and four more for the
  // condition (refined_columns.h); MUMPS copies the loads' columns and the condition's last three
  const std::uint64_t coming = 6 * 2 * 8 + 2 * (3 * 2 + 4) * 8 + 2 * (2 + 3) * 8;
  EXPECT_EQ(factor.coming, coming);
  // loads; A and C with their places; row and column of A's entries as MUMPS wants them; place and
  // scale of each free equation
  const std::uint64_t standing =
      6 * 2 * 8 + (3 * 8 + 3 * 12) + (2 * 8 + 2 * 12) + 3 * 8 + 2 * (4 + 8);
  EXPECT_EQ(factor.beside, coming + standing);
  EXPECT_EQ(factor.memory, 1234U);
  EXPECT_EQ(factor.outOfCore, "");
}

}  // namespace
}  // namespace kvx::test
