// Sine and cosine against a table of 90 digits, rounded to double.
#include "beamshell/sine_cosine.h"

#include <gtest/gtest.h>

#include <cmath>

namespace korvex {
namespace {

struct TableRow {
  int points, i;  // the angle 2 pi i / points, computed in double
  double sine, cosine;
};

// Computed with mpmath, a library of arbitrary precision, at 300 bits, for the double that the
// angle is, and rounded to the nearest double: mpmath.sin(mpmath.mpf(2.0 * math.acos(-1.0) * i /
// points)). Some libraries of C miss a last bit here.
constexpr TableRow Table[] = {
    {8, 0, 0x0.0p+0, 0x1.0000000000000p+0},
    {8, 1, 0x1.6a09e667f3bccp-1, 0x1.6a09e667f3bcdp-1},
    {8, 2, 0x1.0000000000000p+0, 0x1.1a62633145c07p-54},
    {8, 3, 0x1.6a09e667f3bcdp-1, -0x1.6a09e667f3bccp-1},
    {8, 4, 0x1.1a62633145c07p-53, -0x1.0000000000000p+0},
    {8, 5, -0x1.6a09e667f3bccp-1, -0x1.6a09e667f3bcep-1},
    {8, 6, -0x1.0000000000000p+0, -0x1.a79394c9e8a0ap-53},
    {8, 7, -0x1.6a09e667f3bcep-1, 0x1.6a09e667f3bcbp-1},
    {12, 0, 0x0.0p+0, 0x1.0000000000000p+0},
    {12, 1, 0x1.fffffffffffffp-2, 0x1.bb67ae8584cabp-1},
    {12, 2, 0x1.bb67ae8584caap-1, 0x1.0000000000001p-1},
    {12, 3, 0x1.0000000000000p+0, 0x1.1a62633145c07p-54},
    {12, 4, 0x1.bb67ae8584cabp-1, -0x1.ffffffffffffcp-2},
    {12, 5, 0x1.fffffffffffffp-2, -0x1.bb67ae8584cabp-1},
    {12, 6, 0x1.1a62633145c07p-53, -0x1.0000000000000p+0},
    {12, 7, -0x1.ffffffffffffbp-2, -0x1.bb67ae8584cacp-1},
    {12, 8, -0x1.bb67ae8584ca8p-1, -0x1.0000000000004p-1},
    {12, 9, -0x1.0000000000000p+0, -0x1.a79394c9e8a0ap-53},
    {12, 10, -0x1.bb67ae8584caap-1, 0x1.0000000000001p-1},
    {12, 11, -0x1.0000000000004p-1, 0x1.bb67ae8584ca8p-1},
    {16, 0, 0x0.0p+0, 0x1.0000000000000p+0},
    {16, 1, 0x1.87de2a6aea963p-2, 0x1.d906bcf328d46p-1},
    {16, 2, 0x1.6a09e667f3bccp-1, 0x1.6a09e667f3bcdp-1},
    {16, 3, 0x1.d906bcf328d46p-1, 0x1.87de2a6aea964p-2},
    {16, 4, 0x1.0000000000000p+0, 0x1.1a62633145c07p-54},
    {16, 5, 0x1.d906bcf328d46p-1, -0x1.87de2a6aea962p-2},
    {16, 6, 0x1.6a09e667f3bcdp-1, -0x1.6a09e667f3bccp-1},
    {16, 7, 0x1.87de2a6aea965p-2, -0x1.d906bcf328d46p-1},
    {16, 8, 0x1.1a62633145c07p-53, -0x1.0000000000000p+0},
    {16, 9, -0x1.87de2a6aea961p-2, -0x1.d906bcf328d47p-1},
    {16, 10, -0x1.6a09e667f3bccp-1, -0x1.6a09e667f3bcep-1},
    {16, 11, -0x1.d906bcf328d44p-1, -0x1.87de2a6aea96dp-2},
    {16, 12, -0x1.0000000000000p+0, -0x1.a79394c9e8a0ap-53},
    {16, 13, -0x1.d906bcf328d45p-1, 0x1.87de2a6aea967p-2},
    {16, 14, -0x1.6a09e667f3bcep-1, 0x1.6a09e667f3bcbp-1},
    {16, 15, -0x1.87de2a6aea96ep-2, 0x1.d906bcf328d44p-1},
};

TEST(SineCosine, EveryProfilePointToTheLastBit) {
  const double pi = std::acos(-1.0);
  for (const TableRow& row : Table) {
    const SineCosine angle = ComputeSineCosine(2.0 * pi * row.i / row.points);
    EXPECT_EQ(angle.sine, row.sine) << row.i << " of " << row.points;
    EXPECT_EQ(angle.cosine, row.cosine) << row.i << " of " << row.points;
  }
}

// Between the profiles' angles, where a library is not asked for its last bit: it stays within one.
TEST(SineCosine, AnglesOfOtherDivisions) {
  const double pi = std::acos(-1.0);
  for (int i = 0; i < 1000; ++i) {
    const double a = 2.0 * pi * i / 1000.0;
    const SineCosine angle = ComputeSineCosine(a);
    EXPECT_NEAR(angle.sine, std::sin(a), 2.3e-16) << i;
    EXPECT_NEAR(angle.cosine, std::cos(a), 2.3e-16) << i;
  }
}

}  // namespace
}  // namespace korvex
