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

TEST(SineCosine, EveryOutlinePointToTheLastBit) {
  const double pi = std::acos(-1.0);
  for (const TableRow& row : Table) {
    const SineCosine angle = ComputeSineCosine(2.0 * pi * row.i / row.points);
    EXPECT_EQ(angle.sine, row.sine) << row.i << " of " << row.points;
    EXPECT_EQ(angle.cosine, row.cosine) << row.i << " of " << row.points;
  }
}

struct HardAngle {
  double angle, sine, cosine;
};

// Angles at which a lower precision than documented gives wrong last bits, rounded with mpmath as
// above.
constexpr HardAngle HardAngles[] = {
    // Just below pi / 4, found among 7e10 neighbours: the cosine lies 3e-12 to 2e-11 of its last
    // bit
    // above the middle between two doubles. The series' thirteenth term is 4.4e-11 of that bit.
    {0x1.921f888a1387cp-1, 0x1.6a09c6c771857p-1, 0x1.6a0a06087330ep-1},
    {0x1.921f4e59ada6fp-1, 0x1.6a099da213857p-1, 0x1.6a0a2f2dc5537p-1},
    {0x1.921f1d61f19c7p-1, 0x1.6a097b01f0905p-1, 0x1.6a0a51cdd70d4p-1},
    // The same of the sine, among 1e10: 1e-11 above and 9e-11 below. The eleventh term is 1.1e-6,
    // the
    // twelfth -1.3e-9 of the last bit.
    {0x1.921fa843aafd2p-1, 0x1.6a09dd3647e93p-1, 0x1.6a09ef999f54ap-1},
    {0x1.921fa36ae26c7p-1, 0x1.6a09d9c8ea028p-1, 0x1.6a09f306fd066p-1},
    // One bit above the doubles nearest to pi / 2, pi and 2 pi. The remainder after the first two
    // parts of pi / 2 is exactly the middle between two doubles; the third part decides.
    {0x1.921fb54442d19p+0, 0x1.0000000000000p+0, -0x1.72cece675d1fdp-53},
    {0x1.921fb54442d19p+1, -0x1.72cece675d1fdp-52, -0x1.0000000000000p+0},
    {0x1.921fb54442d19p+2, 0x1.72cece675d1fdp-51, 0x1.0000000000000p+0},
};

TEST(SineCosine, HardAnglesToTheLastBit) {
  for (const HardAngle& row : HardAngles) {
    const SineCosine angle = ComputeSineCosine(row.angle);
    EXPECT_EQ(angle.sine, row.sine) << row.angle;
    EXPECT_EQ(angle.cosine, row.cosine) << row.angle;
  }
}

// Between the outlines' angles, where a library is not asked for its last bit: it stays within one.
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
