// Frames of shells from an axis: against vectors found by hand, and where the axis has no
// projection.
#include "audit/shell_frame.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/expect_stop.h"

namespace kvx::test {
namespace {

using korvex::ElementFrame, korvex::Vector3;

// An element in the plane x + z = 0 turned so that e1 is no axis of interest: e3 = (1, 0, 1)/sqrt
// 2, e1 = (1, 1, -1)/sqrt 3.
ElementFrame Inclined(double side = 1.0) {
  const Vector3 e3 = korvex::Normalise({side, 0.0, side});
  const Vector3 e1 = korvex::Normalise({1.0, 1.0, -1.0});
  const Vector3 e2 = korvex::Cross(e3, e1);
  return {e1[0], e2[0], e3[0], e1[1], e2[1], e3[1], e1[2], e2[2], e3[2]};
}

ElementFrame Flat() { return {0.6, -0.8, 0.0, 0.8, 0.6, 0.0, 0.0, 0.0, 1.0}; }

void ExpectAxes(const ShellFrame& frame, const Vector3& first, const Vector3& second,
                const Vector3& third) {
  for (std::size_t r = 0; r < 3; ++r) {
    EXPECT_NEAR(frame.axes[3 * r], first[r], 1e-15) << r;
    EXPECT_NEAR(frame.axes[3 * r + 1], second[r], 1e-15) << r;
    EXPECT_NEAR(frame.axes[3 * r + 2], third[r], 1e-15) << r;
  }
}

TEST(ShellFrame, IsTheElementsOwnWithoutAnAxis) {
  const ShellFrame frame = MakeShellFrame(Inclined(), {});
  EXPECT_EQ(frame.axes, Inclined());
  EXPECT_EQ(frame.source, FrameSource::Element);
}

// z less its part along (1, 0, 1)/sqrt 2 is (-1, 0, 1)/2; e3 x (-1, 0, 1)/sqrt 2 = (0, -1, 0).
TEST(ShellFrame, FollowsTheProjectionOfTheAxis) {
  const double half = std::sqrt(0.5);
  for (const double length : {1.0, 1e-200, 7.0, 1e300}) {
    const ShellFrame frame = MakeShellFrame(Inclined(), {true, {0.0, 0.0, length}});
    EXPECT_EQ(frame.source, FrameSource::Axis);
    ExpectAxes(frame, {-half, 0.0, half}, {0.0, -1.0, 0.0}, {half, 0.0, half});
  }
}

// A neighbour that faces the other way has the same first axis.
TEST(ShellFrame, KeepsTheFirstAxisWhereTheNormalIsReversed) {
  const double half = std::sqrt(0.5);
  const ShellFrame frame = MakeShellFrame(Inclined(-1.0), {true, {0.0, 0.0, 1.0}});
  ExpectAxes(frame, {-half, 0.0, half}, {0.0, 1.0, 0.0}, {-half, 0.0, -half});
}

TEST(ShellFrame, TakesAGlobalAxisWhereTheAxisIsNormal) {
  const ShellFrame flat = MakeShellFrame(Flat(), {true, {0.0, 0.0, -3.0}});
  EXPECT_EQ(flat.source, FrameSource::GlobalX);
  ExpectAxes(flat, {1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0});
  // Normal x.
  const ElementFrame wall{0.0, 0.0, 1.0, 0.6, -0.8, 0.0, 0.8, 0.6, 0.0};
  const ShellFrame upright = MakeShellFrame(wall, {true, {1.0, 0.0, 0.0}});
  EXPECT_EQ(upright.source, FrameSource::GlobalY);
  ExpectAxes(upright, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}, {1.0, 0.0, 0.0});
}

// On both sides of the sine 1e-3.
TEST(ShellFrame, TakesTheAxisFromTheThresholdOn) {
  const auto source = [](double sine) {
    return MakeShellFrame(Flat(), {true, {sine, 0.0, 1.0}}).source;
  };
  EXPECT_EQ(source(0.99e-3), FrameSource::GlobalX);
  EXPECT_EQ(source(1.01e-3), FrameSource::Axis);
}

TEST(ShellFrame, StopsAtAnAxisWithoutDirection) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  const auto expect = [](const Vector3& axis, const char* text) {
    korvex::test::ExpectStop([&axis] { MakeShellFrame(Flat(), {true, axis}); }, text);
  };
  expect({0.0, 0.0, 0.0}, "The axis (0, 0, 0) has no direction.");
  expect({1.0, nan, 0.0}, "The axis (1, nan, 0) has no direction.");
  expect({inf, 0.0, 2.5}, "The axis (inf, 0, 2.5) has no direction.");
}

TEST(ShellFrame, IsNanForAnElementWithoutAPlane) {
  ElementFrame none;
  none.fill(std::numeric_limits<double>::quiet_NaN());
  const ShellFrame frame = MakeShellFrame(none, {true, {1.0, 0.0, 0.0}});
  for (const double entry : frame.axes) EXPECT_TRUE(std::isnan(entry));
}

}  // namespace
}  // namespace kvx::test
