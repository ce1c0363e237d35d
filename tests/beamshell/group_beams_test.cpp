// Which beams are solved side by side.
#include "beamshell/group_beams.h"

#include <gtest/gtest.h>

#include "support/detail_beams.h"

namespace korvex {
namespace {

using Groups = std::vector<std::vector<std::size_t>>;

constexpr std::uint64_t Enough = 1U << 30U;

// Beams of these shapes, each with a system of 1000 bytes times its shape.
BeamShapes MakeShapes(const std::vector<std::int32_t>& shapes) {
  BeamShapes result;
  for (const std::int32_t shape : shapes) {
    AddBeam({shape}, 1000U * static_cast<std::uint64_t>(shape), result);
  }
  return result;
}

TEST(GroupBeams, BeamsOfOneShapeInTheirOrder) {
  const BeamGroups groups = GroupBeams(MakeShapes({1, 2, 1, 1, 2, 2, 1, 2}), 4, Enough);
  EXPECT_EQ(groups.beams, (Groups{{0, 2, 3, 6}, {1, 4, 5, 7}}));
  EXPECT_EQ(groups.threadBytes, 10000U);  // four of shape 2, and one more
}

// Half of the lanes or more are worth a group, fewer are not, and one alone never is.
TEST(GroupBeams, LeftOverBeams) {
  EXPECT_EQ(GroupBeams(MakeShapes({1, 1, 1, 1, 1, 1}), 4, Enough).beams,
            (Groups{{0, 1, 2, 3}, {4, 5}}));
  EXPECT_EQ(GroupBeams(MakeShapes({1, 1, 1}), 8, Enough).beams, (Groups{{0}, {1}, {2}}));
  EXPECT_EQ(GroupBeams(MakeShapes({1, 1, 1}), 2, Enough).beams, (Groups{{0, 1}, {2}}));
}

TEST(GroupBeams, WithoutVectorsEachIsAlone) {
  const BeamGroups groups = GroupBeams(MakeShapes({1, 1, 3}), 1, Enough);
  EXPECT_EQ(groups.beams, (Groups{{0}, {1}, {2}}));
  EXPECT_EQ(groups.threadBytes, 3000U);
}

// Four systems of shape 2 need 8000 bytes.
TEST(GroupBeams, GroupsThatHaveNoRoomAreDivided) {
  const BeamShapes shapes = MakeShapes({2, 2, 2, 2});
  EXPECT_EQ(GroupBeams(shapes, 4, 8000).beams, (Groups{{0, 1, 2, 3}}));
  const BeamGroups alone = GroupBeams(shapes, 4, 7999);
  EXPECT_EQ(alone.beams, (Groups{{0}, {1}, {2}, {3}}));
  EXPECT_EQ(alone.threadBytes, 2000U);
}

// The systems of a group take 256 MB at most, however much memory is free.
TEST(GroupBeams, LargeSystemsAreAlone) {
  constexpr std::uint64_t Most = 256U << 20U;
  for (const std::size_t lanes : {2U, 4U, 8U}) {
    for (const std::uint64_t more : {0U, 1U}) {
      BeamShapes shapes;
      while (shapes.ofBeam.size() < lanes) AddBeam({1}, Most / lanes + more, shapes);
      const BeamGroups groups = GroupBeams(shapes, lanes, 1024 * Most);
      EXPECT_EQ(groups.beams.size(), more == 0 ? 1U : lanes);
      EXPECT_EQ(groups.threadBytes, Most / lanes + (more == 0 ? Most : 1));
    }
  }
}

TEST(GroupBeams, ShapesDependOnStepsAndConnectivity) {
  const SectionOutline t = test::BuildOutline({"T", BeamSecTypeT, {0.3, 0.02, 0.16, 0.025}}, 0);
  const SectionOutline wide = test::BuildOutline({"T", BeamSecTypeT, {0.3, 0.02, 0.2, 0.03}}, 0);
  const SectionOutline bar = test::BuildOutline({"Bar", BeamSecTypeT, {0.3, 0.02, 0.0, 0.0}}, 0);
  EXPECT_EQ(DescribeShape(t, 5), DescribeShape(wide, 5));
  EXPECT_NE(DescribeShape(t, 5), DescribeShape(t, 6));
  EXPECT_NE(DescribeShape(t, 5), DescribeShape(bar, 5));
}

}  // namespace
}  // namespace korvex
