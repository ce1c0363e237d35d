// The orientation point of the links: their first node plus the vector along the beam, at both
// ends. On an oblique beam every other rule gives another point.
#include <gtest/gtest.h>

#include "support/detail_beams.h"

namespace korvex::test {
namespace {

// A beam that is parallel to no axis. EndPoint1 plus the vector to EndPoint2 is not EndPoint2
// in the last bit of any coordinate.
constexpr Vector3 End1{1.6, 1.9, 2.7}, End2{-0.9, -0.2, 0.4}, Orientation{0.3, -0.2, 0.9};

BeamShellModel MakeModel(const TestSection& section) {
  DetailBeam beam;
  beam.section = section;
  beam.end1 = End1;
  beam.end2 = End2;
  beam.orientation = Orientation;
  beam.E = 2.06e11;
  beam.Mu = 0.3;
  return ExtrudeBeam(beam);
}

TEST(LinkOrientation, IsTheFirstNodePlusTheVectorAlongTheBeam) {
  const Vector3 d{End2[0] - End1[0], End2[1] - End1[1], End2[2] - End1[2]};
  const Vector3 fromEnd1{End1[0] + d[0], End1[1] + d[1], End1[2] + d[2]};
  const Vector3 fromEnd2{End2[0] + d[0], End2[1] + d[1], End2[2] + d[2]};
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NE(fromEnd1[i], End2[i]);
  for (const TestSection& section : AllSections()) {
    const BeamShellModel model = MakeModel(section);
    const std::size_t P = static_cast<std::size_t>(model.ProfileNodeCount);
    ASSERT_EQ(model.Links.size(), 2 * P) << section;
    for (std::size_t i = 0; i < P; ++i) {
      EXPECT_EQ(model.Links[i].RefPoint, fromEnd1) << section << i;
      EXPECT_EQ(model.Links[P + i].RefPoint, fromEnd2) << section << i;
    }
  }
}

}  // namespace
}  // namespace korvex::test
