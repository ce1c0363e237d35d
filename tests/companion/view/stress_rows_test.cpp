// Which corners share a row of stresses.
#include "view/stress_rows.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "results/corner_stress.h"
#include "support/page_columns.h"

namespace kvx::test {
namespace {

using korvex::Shell3Element, korvex::Shell4Element, korvex::StressVector;

// Stresses whose components differ from one another.
StressVector MakeStress(double scale) {
  return {scale, 0.5 * scale, -0.25 * scale, 0.125 * scale, 0.1 * scale, -0.3 * scale};
}

// A shell with the same stress at all corners of both faces.
Shell4Element MakeShell(const StressVector& stress) {
  Shell4Element shell;
  shell.AvgStressTop.fill(stress);
  shell.AvgStressBottom.fill(stress);
  return shell;
}

StressRows Share(const std::vector<Shell4Element>& shells,
                 const std::vector<Shell3Element>& triangles = {}) {
  StressRowTable table;
  StressRows rows;
  AddStressCorners(shells, table, rows);
  AddStressCorners(triangles, table, rows);
  return rows;
}

using Rows = std::vector<std::int32_t>;

TEST(StressRows, AreNumberedByTheirFirstCorners) {
  std::vector<Shell4Element> shells(2);
  for (std::size_t k = 0; k < 4; ++k) {
    shells[0].AvgStressTop[k] = MakeStress(k == 2 ? 1.0 : 2.0);
    shells[1].AvgStressTop[k] = MakeStress(k == 0 ? 3.0 : 1.0);
  }
  std::vector<Shell3Element> triangles(1);
  triangles[0].AvgStressTop = {MakeStress(4.0), MakeStress(3.0), MakeStress(2.0)};
  const StressRows rows = Share(shells, triangles);
  EXPECT_EQ(rows.rows, (Rows{0, 0, 1, 0, 2, 1, 1, 1, 3, 2, 0}));
  ASSERT_EQ(rows.upper.size(), 24U);
  EXPECT_EQ(rows.lower.size(), 24U);
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_EQ(rows.upper[6 + i], MakeStress(1.0)[i]) << i;
    EXPECT_EQ(rows.upper[18 + i], MakeStress(4.0)[i]) << i;
  }
  EXPECT_EQ(rows.upperMises[2], korvex::EquivalentStress(MakeStress(3.0)));
  EXPECT_EQ(rows.lowerMises, std::vector<double>(4, 0.0));
}

// Averages over the same corners in another order differ in their last digits.
TEST(StressRows, LastDigitsDoNotCount) {
  const std::vector<Shell4Element> shells{MakeShell(MakeStress(123.456)),
                                          MakeShell(MakeStress(std::nextafter(123.456, 1000.0)))};
  EXPECT_EQ(Share(shells).rows, Rows(8, 0));
}

// Each of the twelve components counts, in its sixth digit.
TEST(StressRows, SixthDigitOfEachComponentCounts) {
  for (std::size_t i = 0; i < 12; ++i) {
    std::vector<Shell4Element> shells(2, MakeShell(MakeStress(123.456)));
    auto& face = i < 6 ? shells[1].AvgStressTop : shells[1].AvgStressBottom;
    for (StressVector& stress : face) stress[i % 6] *= 1.0 + 1e-5;
    EXPECT_EQ(Share(shells).rows, (Rows{0, 0, 0, 0, 1, 1, 1, 1})) << i;
  }
}

// The same digits a thousand times as large are another stress; so is the other sign. All twelve
// components of these shells change, and the von Mises stress does not with the sign.
TEST(StressRows, ExponentAndSignCount) {
  const std::vector<Shell4Element> shells{MakeShell(MakeStress(1.0)), MakeShell(MakeStress(1000.0)),
                                          MakeShell(MakeStress(-1.0)), MakeShell(MakeStress(1.0))};
  EXPECT_EQ(Share(shells).rows, (Rows{0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 0, 0, 0, 0}));
}

// Components that agree in six digits each, and a von Mises stress that does not: it is the small
// difference of components that are nearly equal. Hydrostatic 1000.004 against 999.9961 along z has
// 0.0079; 1000 in all three has 0.
TEST(StressRows, VonMisesStressCountsByItself) {
  const StressVector equal{1000.0, 1000.0, 1000.0, 0.0, 0.0, 0.0};
  const StressVector nearly{1000.004, 1000.004, 999.9961, 0.0, 0.0, 0.0};
  const StressRows rows = Share({MakeShell(equal), MakeShell(nearly)});
  EXPECT_EQ(rows.rows, (Rows{0, 0, 0, 0, 1, 1, 1, 1}));
  EXPECT_NEAR(rows.upperMises[1], 0.0079, 1e-9);
}

TEST(StressRows, ZerosHaveNoSign) {
  StressVector minus{};
  minus.fill(-0.0);
  EXPECT_EQ(Share({MakeShell({}), MakeShell(minus)}).rows, Rows(8, 0));
}

TEST(StressRows, NotANumberEqualsItselfAndInfinitiesTheirs) {
  constexpr double Infinite = std::numeric_limits<double>::infinity();
  StressVector none{}, high{}, low{};
  none[3] = std::nan("");
  high[3] = Infinite;
  low[3] = -Infinite;
  const StressRows rows =
      Share({MakeShell(none), MakeShell(high), MakeShell(none), MakeShell(low), MakeShell({})});
  EXPECT_EQ(rows.rows, (Rows{0, 0, 0, 0, 1, 1, 1, 1, 0, 0, 0, 0, 2, 2, 2, 2, 3, 3, 3, 3}));
  EXPECT_TRUE(std::isnan(rows.upper[3]));
  EXPECT_EQ(rows.upper[9], Infinite);
  EXPECT_EQ(rows.lower[15], -Infinite);
  EXPECT_EQ(rows.upperMises[1], Infinite);
}

// Ten thousand different rows, each found again: the table grows several times.
TEST(StressRows, ManyRowsAreFoundAgain) {
  constexpr std::int32_t Count = 10000;
  std::vector<Shell4Element> shells;
  for (std::int32_t i = 0; i < Count; ++i) shells.push_back(MakeShell(MakeStress(1.0 + i)));
  for (std::int32_t i = 0; i < Count; ++i) shells.push_back(shells[static_cast<std::size_t>(i)]);
  const StressRows rows = Share(shells);
  ASSERT_EQ(rows.upperMises.size(), static_cast<std::size_t>(Count));
  for (std::size_t c = 0; c < rows.rows.size(); ++c) {
    ASSERT_EQ(rows.rows[c], static_cast<std::int32_t>(c / 4) % Count);
  }
}

// Ten thousand rows of the same digits: powers of ten from 1 to 10^9 in four components. Some fall
// on one another's places.
TEST(StressRows, RowsOfTheSameDigitsAreToldApart) {
  constexpr std::int32_t Count = 10000;
  std::vector<Shell4Element> shells;
  for (std::int32_t i = 0; i < Count; ++i) {
    StressVector stress{};
    for (std::int32_t c = 0, rest = i; c < 4; ++c, rest /= 10) {
      stress[static_cast<std::size_t>(c)] = std::pow(10.0, rest % 10);
    }
    shells.push_back(MakeShell(stress));
  }
  const StressRows rows = Share(shells);
  EXPECT_EQ(rows.upperMises.size(), static_cast<std::size_t>(Count));
  EXPECT_EQ(rows.rows.back(), Count - 1);
}

TEST(StressRows, ColumnsHaveTheRecordsNumbers) {
  const StressRows rows = Share({MakeShell(MakeStress(3.0)), MakeShell(MakeStress(-7.0))});
  PageBlock block;
  AddStressColumns("shells", rows, block);
  EXPECT_EQ(ReadIntegers(block, "shells.rows"), rows.rows);
  EXPECT_EQ(ReadDecimals(block, "shells.upper").size(), 12U);
  for (const char* face : {"upper", "lower"}) {
    const std::vector<double> stresses = ReadDecimals(block, std::string("shells.") + face);
    const std::vector<double> mises = ReadDecimals(block, std::string("shells.") + face + "Mises");
    ASSERT_EQ(mises.size(), 2U);
    for (std::size_t i = 0; i < 12; ++i) {
      EXPECT_EQ(ShowNumber(stresses[i]), ShowNumber(MakeStress(i < 6 ? 3.0 : -7.0)[i % 6])) << i;
    }
    EXPECT_EQ(ShowNumber(mises[1]), ShowNumber(korvex::EquivalentStress(MakeStress(7.0))));
  }
}

}  // namespace
}  // namespace kvx::test
