// What is said about engines and about the digits of a solution.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "commands/solution_text.h"

namespace kvx::test {
namespace {

TEST(CountCorrectDigits, IsTheBoundOfTheError) {
  const double rounding = std::ldexp(1.0, -53);  // of a double: 2^-53 = 1.1e-16
  EXPECT_NEAR(CountCorrectDigits({0.0, 0.0, 1.0, 0.0}), -std::log10(rounding), 1e-12);
  EXPECT_NEAR(CountCorrectDigits({0.0, rounding, 1e6, 6.0}), -std::log10(rounding) - 6.0, 1e-12);
  // A solution that is worse than its rounding has fewer: 1e-9 x 1e4.
  EXPECT_NEAR(CountCorrectDigits({0.0, 1e-9, 1e4, 4.0}), 5.0, 1e-12);
  EXPECT_EQ(CountCorrectDigits({0.0, 1e-16, 1e20, 20.0}), 0.0);
  EXPECT_EQ(CountCorrectDigits({0.0, 1e-16, std::numeric_limits<double>::infinity(), 20.0}), 0.0);
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(CountCorrectDigits({LoadQuality::Unknown, LoadQuality::Unknown, infinity, infinity}),
            0.0);
  EXPECT_TRUE(std::isnan(CountCorrectDigits({})));
  EXPECT_TRUE(std::isnan(CountCorrectDigits({0.0, 0.0, 0.0, 0.0})));  // nothing moves
  EXPECT_TRUE(std::isnan(CountCorrectDigits({1e-17, 1e-16, LoadQuality::Unknown, 0.0})));
}

TEST(AccuracyText, SaysWhatIsKnown) {
  EXPECT_EQ(AccuracyText({}), "digits lost: not estimated");
  EXPECT_EQ(AccuracyText({1.23e-17, 2e-16, LoadQuality::Unknown, LoadQuality::Unknown}),
            "scaled residual 1.2e-17, backward error 2e-16, digits lost: not estimated");
  EXPECT_EQ(AccuracyText({1.23e-17, 2e-16, 1.5e5, 5.18}),
            "scaled residual 1.2e-17, backward error 2e-16, 5.2 of about 16 digits lost");
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(AccuracyText({1.23e-17, 2e-16, infinity, infinity}),
            "scaled residual 1.2e-17, backward error 2e-16, all digits lost");
  EXPECT_EQ(AccuracyText({LoadQuality::Unknown, LoadQuality::Unknown, infinity, infinity}),
            "all digits lost");
  EXPECT_EQ(AccuracyText({0.0, 0.0, 0.0, 0.0}),
            "scaled residual 0, backward error 0, digits lost: not estimated, nothing moves");
}

TEST(EngineText, NamesEngineAndThreads) {
  SolutionRecord solution;
  EXPECT_EQ(EngineText(solution), "skyline, 1 thread");
  solution.engine = EngineChoice::Sparse;
  solution.isOutOfCore = true;
  solution.threads = 4;
  EXPECT_EQ(EngineText(solution), "sparse, out of core, 4 threads");
  solution.isOutOfCore = false;
  solution.threads = 1;
  solution.ranks.resize(2);
  EXPECT_EQ(EngineText(solution), "sparse, 2 ranks, 1 thread");
}

SolutionPlan MakePlan() {
  SolutionPlan plan;
  plan.engine = EngineChoice::Sparse;
  plan.isOutOfCore = true;
  plan.reason = "It fits.";
  plan.equations = 6000;
  plan.freeEquations = 5900;
  plan.skyline = {false, "It takes 120 GB.", 7000.0, 120ULL << 30U, 0};
  plan.sparse = {false, "The memory is too small.", 0.0, 0, 0};
  plan.outOfCore = {true, "", 12.3, 1ULL << 20U, 3ULL << 30U};
  plan.order = {1, 0};
  return plan;
}

TEST(SolvingText, TellsTheEngineAndItsTime) {
  SolutionPlan plan = MakePlan();
  EXPECT_EQ(SolvingText("Solving", plan), "Solving (sparse, out of core, about 12 s)");
  plan.isOutOfCore = false;
  EXPECT_EQ(SolvingText("Solving", plan), "Solving (sparse, less than 0.1 s)");
  plan.engine = EngineChoice::Skyline;
  EXPECT_EQ(SolvingText("Solving 2 models", plan), "Solving 2 models (skyline, about 117 min)");
}

TEST(PlanTable, ShowsTheEngines) {
  const SolutionPlan plan = MakePlan();
  EXPECT_EQ(TableText(MakePlanTable(plan, true), {}),
            "  engine               time     GB     GB on disk\n"
            "  skyline              117 min  120                It takes 120 GB.\n"
            "  sparse                                           The memory is too small.\n"
            "  sparse, out of core  12 s     0.001  3           is taken\n"
            "Predicted, before the solution. Reading, stresses and files come on top.\n");
  EXPECT_EQ(TableText(MakePlanTable(plan, false), {}).find("is taken"), std::string::npos);
  EXPECT_EQ(PlanText(plan, 2), "6000 equations, 5900 of them free; 2 loads.");
}

TEST(CopyWithoutOrder, LeavesTheOrderToThePlan) {
  SolutionPlan plan = MakePlan();
  const SolutionPlan copy = CopyWithoutOrder(plan);
  EXPECT_TRUE(copy.order.empty());
  EXPECT_EQ(plan.order, (std::vector<std::int32_t>{1, 0}));
  EXPECT_EQ(copy.reason, "It fits.");
}

}  // namespace
}  // namespace kvx::test
