// The averages over detail models: each rule on a few shells or a few beams.
//
// The six stresses at corner k of shell e of model m are v times 1, 2, 4, 8, 16, 32, where v = 1000
// (m + 1) + 10 (e + 1) + k on the upper face, and 1000000 more on the lower face. Sums of these
// numbers are exact in any order, and a power of two scales a rounded quotient without another
// rounding. So everything is compared bit for bit.
#include "beamshell/average_corners.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "beamshell/extrude_outline.h"
#include "support/dof_names.h"

namespace korvex {
namespace {

using test::SX, test::SY, test::SZ, test::TXZ;

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

constexpr double Bottom = 1000000.0;  // added to v on the lower face

using Models = std::vector<BeamShellModel>;

// A corner. facesDown: its normal is opposite to that of the other corners of the test.
struct Corner {
  std::size_t model, shell, k;
  bool facesDown = false;
};

StressVector Stress(double v) { return {v, 2 * v, 4 * v, 8 * v, 16 * v, 32 * v}; }

double UpperNumber(const Corner& c) {
  return 1000.0 * static_cast<double>(c.model + 1) + 10.0 * static_cast<double>(c.shell + 1) +
         static_cast<double>(c.k);
}

// Numbers all corners and averages.
void NumberAndAverage(Models& models) {
  for (std::size_t m = 0; m < models.size(); ++m) {
    for (std::size_t e = 0; e < models[m].Shells.size(); ++e) {
      for (std::size_t k = 0; k < 4; ++k) {
        const double v = UpperNumber({m, e, k});
        models[m].Shells[e].NodeStressTop[k] = Stress(v);
        models[m].Shells[e].NodeStressBottom[k] = Stress(v + Bottom);
      }
    }
  }
  AverageBeamShellStresses(models);
}

// Expects that corner `own` has the average of `parts`, with the faces exchanged of each part that
// faces the other way than `own`.
void ExpectAverage(const Models& models, const Corner& own, const std::vector<Corner>& parts) {
  double top = 0.0, bottom = 0.0;
  for (const Corner& part : parts) {
    const bool swapped = part.facesDown != own.facesDown;
    top += UpperNumber(part) + (swapped ? Bottom : 0.0);
    bottom += UpperNumber(part) + (swapped ? 0.0 : Bottom);
  }
  const auto count = static_cast<double>(parts.size());
  const Shell4Element& shell = models[own.model].Shells[own.shell];
  EXPECT_EQ(shell.AvgStressTop[own.k], Stress(top / count)) << UpperNumber(own);
  EXPECT_EQ(shell.AvgStressBottom[own.k], Stress(bottom / count)) << UpperNumber(own);
}

// Expects that these corners are averaged with one another and with no other corners.
void ExpectTogether(const Models& models, const std::vector<Corner>& corners) {
  for (const Corner& own : corners) ExpectAverage(models, own, corners);
}

void ExpectOwn(const Models& models, const Corner& own) { ExpectAverage(models, own, {own}); }

// ---- Single shells ------------------------------------------------------------------------------

// A model of a beam between these ends with shell nodes 1, 2, ... at `points`.
BeamShellModel MakeModel(const Vector3& end1, const Vector3& end2,
                         const std::vector<Vector3>& points) {
  BeamShellModel model;
  model.EndPoint1 = end1;
  model.EndPoint2 = end2;
  model.NodeCoords = {end1};
  model.NodeCoords.insert(model.NodeCoords.end(), points.begin(), points.end());
  model.NodeCoords.push_back(end2);
  model.NodeCount = static_cast<std::int32_t>(model.NodeCoords.size());
  return model;
}

void AddShell(BeamShellModel& model, const std::array<std::int32_t, 4>& nodes, double TK = 10.0) {
  std::vector<double> coordinates;
  for (const std::int32_t node : nodes) {
    const Vector3& point = model.NodeCoords[static_cast<std::size_t>(node)];
    coordinates.insert(coordinates.end(), point.begin(), point.end());
    model.ShellNodes.push_back(node);
  }
  model.Shells.emplace_back();
  SetGeometry(model.Shells.back(), coordinates.data(), 4, 1.0, 0.0, TK);
  ++model.ShellCount;
}

// One model for two squares of side 1 with a common edge. The left one faces up and is shell 0. The
// right one, folded up about the edge by `degrees`, is added by the test.
//
//   4---3---6     y
//   | 0 |   |     |
//   1---2---5     o--x
Models MakeFold(double degrees, double TK = 10.0) {
  const double angle = degrees * std::acos(-1.0) / 180.0;
  const double x = std::cos(angle), z = std::sin(angle);
  Models models{MakeModel({-1, 0, 0}, {1, 0, 0},
                          {{-1, 0, 0}, {0, 0, 0}, {0, 1, 0}, {-1, 1, 0}, {x, 0, z}, {x, 1, z}})};
  AddShell(models[0], {1, 2, 3, 4}, TK);
  return models;
}

// Expects averages at the fold's edge, where the right square is {2, 5, 6, 3}.
void ExpectFoldAveraged(const Models& models) {
  ExpectTogether(models, {{0, 0, 1}, {0, 1, 0}});
  ExpectTogether(models, {{0, 0, 2}, {0, 1, 3}});
}

// A model with one unit square, its lower left corner at (x, y). Corners 0 to 3 go round it from
// there, to the right if it faces up, else upwards.
BeamShellModel MakeSquare(double x, double y, const Vector3& end1, const Vector3& end2,
                          bool facesDown = false) {
  BeamShellModel model =
      MakeModel(end1, end2, {{x, y, 0}, {x + 1, y, 0}, {x + 1, y + 1, 0}, {x, y + 1, 0}});
  if (facesDown) {
    AddShell(model, {1, 4, 3, 2});
  } else {
    AddShell(model, {1, 2, 3, 4});
  }
  return model;
}

// Four models with a square each, round the origin, which is corner Origin[m] of model m. All beams
// begin at the origin.
constexpr std::array<std::size_t, 4> Origin{2, 3, 0, 1};
Models MakeFourSquares() {
  return {MakeSquare(-1, -1, {0, 0, 0}, {-9, -9, 0}), MakeSquare(0, -1, {0, 0, 0}, {9, -9, 0}),
          MakeSquare(0, 0, {0, 0, 0}, {9, 9, 0}), MakeSquare(-1, 0, {0, 0, 0}, {-9, 9, 0})};
}

// Equal thickness t: the difference of the offsets is t sin(angle / 2), the bound t / 10. The limit
// is 2 asin(1 / 10) = 11.47834 degrees.
TEST(AverageCorners, ShallowFoldsAreAveraged) {
  for (const double degrees : {0.0, 5.0, -5.0, 11.0, -11.0, 11.478}) {
    SCOPED_TRACE(degrees);
    Models models = MakeFold(degrees);
    AddShell(models[0], {2, 5, 6, 3});
    NumberAndAverage(models);
    ExpectFoldAveraged(models);
  }
}

TEST(AverageCorners, SteepFoldsAreNot) {
  for (const double degrees : {11.479, 12.0, -12.0, 45.0, 90.0, -90.0, 135.0}) {
    SCOPED_TRACE(degrees);
    Models models = MakeFold(degrees);
    AddShell(models[0], {2, 5, 6, 3});
    NumberAndAverage(models);
    for (std::size_t k = 0; k < 4; ++k) {
      ExpectOwn(models, {0, 0, k});
      ExpectOwn(models, {0, 1, k});
    }
  }
}

// The right square faces down. Its corners on the edge are 0 and 1.
TEST(AverageCorners, OppositeNormalsSwapTheFaces) {
  for (const double degrees : {0.0, 11.0, -11.0}) {
    SCOPED_TRACE(degrees);
    Models models = MakeFold(degrees);
    AddShell(models[0], {2, 3, 6, 5});
    NumberAndAverage(models);
    ExpectTogether(models, {{0, 0, 1}, {0, 1, 0, true}});
    ExpectTogether(models, {{0, 0, 2}, {0, 1, 1, true}});
  }
}

// With two corners both faces have the same average. A third corner shows which face is which.
TEST(AverageCorners, OppositeNormalsAreSeenFromTheOwnShell) {
  Models models = MakeFourSquares();
  models[1] = MakeSquare(0, -1, {0, 0, 0}, {9, -9, 0}, true);
  NumberAndAverage(models);
  ExpectTogether(models, {{0, 0, 2}, {1, 0, 1, true}, {2, 0, 0}, {3, 0, 1}});
}

// Folded back by 175 degrees the right square lies 5 degrees above the left one and faces the other
// way.
TEST(AverageCorners, ShellFoldedBackIsAveragedWithFacesSwapped) {
  Models models = MakeFold(175);
  AddShell(models[0], {2, 5, 6, 3});
  NumberAndAverage(models);
  ExpectTogether(models, {{0, 0, 1}, {0, 1, 0, true}});
}

// Normals at a right angle count as opposite. With thicknesses above zero this makes no difference:
// the difference of the offsets is sqrt(t_f^2 + t_e^2) / 2 >= t_e / 2 with either sign and always
// exceeds t_e / 10. Without thickness both the difference and the bound are zero.
TEST(AverageCorners, PerpendicularNormalsCountAsOpposite) {
  Models models = MakeFold(0, 0.0);
  models[0].NodeCoords[5] = {0, 0, 1};  // exactly, which the cosine of 90 degrees is not
  models[0].NodeCoords[6] = {0, 1, 1};
  AddShell(models[0], {2, 5, 6, 3}, 0.0);
  NumberAndAverage(models);
  ExpectTogether(models, {{0, 0, 1}, {0, 1, 0, true}});
}

// In one plane the difference is |12.5 - 10| / 2 = 1.25, exactly. The bound is 10 / 10 for the
// thinner and 12.5 / 10 = 1.25, also exactly, for the thicker: at equality corners are averaged.
TEST(AverageCorners, ThickerShellIncludesTheThinnerAndNotTheReverse) {
  Models models = MakeFold(0, 10.0);
  AddShell(models[0], {2, 5, 6, 3}, 12.5);
  NumberAndAverage(models);
  ExpectOwn(models, {0, 0, 1});
  ExpectOwn(models, {0, 0, 2});
  ExpectAverage(models, {0, 1, 0}, {{0, 0, 1}, {0, 1, 0}});
  ExpectAverage(models, {0, 1, 3}, {{0, 0, 2}, {0, 1, 3}});
}

// The bound is a quotient: 1.8 - 1.5 exceeds 3 / 10 by its rounding, not 3 times 0.1.
TEST(AverageCorners, RoundedDifferenceBeyondATenth) {
  Models models = MakeFold(0, 3.0);
  AddShell(models[0], {2, 5, 6, 3}, 3.6);
  NumberAndAverage(models);
  ExpectOwn(models, {0, 0, 1});
  ExpectAverage(models, {0, 1, 0}, {{0, 0, 1}, {0, 1, 0}});
}

// One unit in the last place less on the thinner side, and 1.25 is exceeded.
TEST(AverageCorners, ThicknessesBeyondTheBoundAreNotAveraged) {
  Models models = MakeFold(0, std::nextafter(10.0, 0.0));
  AddShell(models[0], {2, 5, 6, 3}, 12.5);
  NumberAndAverage(models);
  ExpectOwn(models, {0, 0, 1});
  ExpectOwn(models, {0, 1, 0});
}

// 10 and 12: the difference 1 equals the bound of the thinner and is below that of the thicker.
TEST(AverageCorners, ThicknessesWithinBothBoundsAreAveragedBothWays) {
  Models models = MakeFold(0, 10.0);
  AddShell(models[0], {2, 5, 6, 3}, 12.0);
  NumberAndAverage(models);
  ExpectFoldAveraged(models);
}

// A negative thickness gives a negative bound, which every distance exceeds: such a shell is not
// even averaged with itself, and its average 0 / 0 is NaN.
TEST(AverageCorners, ShellOfNegativeThicknessHasNoAverage) {
  Models models = MakeFold(0);
  AddShell(models[0], {2, 5, 6, 3}, -10.0);
  NumberAndAverage(models);
  for (std::size_t k = 0; k < 4; ++k) {
    ExpectOwn(models, {0, 0, k});
    for (const double s : models[0].Shells[1].AvgStressTop[k]) EXPECT_TRUE(std::isnan(s));
    for (const double s : models[0].Shells[1].AvgStressBottom[k]) EXPECT_TRUE(std::isnan(s));
  }
}

// The normal is NaN, so that all comparisons with it are false: it is neither opposite nor too far.
TEST(AverageCorners, ShellWithoutAreaIsIncluded) {
  Models models = MakeFold(0);
  AddShell(models[0], {2, 3, 6, 5});
  AddShell(models[0], {2, 3, 3, 2});
  NumberAndAverage(models);
  ExpectAverage(models, {0, 0, 1}, {{0, 0, 1}, {0, 1, 0, true}, {0, 2, 0}, {0, 2, 3}});
  // The square that faces down also takes the stresses of the shell without area with its faces as
  // they are.
  ExpectAverage(models, {0, 1, 0}, {{0, 1, 0}, {0, 0, 1, true}, {0, 2, 0}, {0, 2, 3}});
  ExpectAverage(models, {0, 2, 0}, {{0, 0, 1}, {0, 1, 0}, {0, 2, 0}, {0, 2, 3}});
}

// Squares folded up and down by 8 degrees on one edge are 16 degrees apart: both average with the
// flat one, which averages with both, and not with each other.
TEST(AverageCorners, BeingInASurfaceIsNotPassedOn) {
  Models models = MakeFold(8);
  BeamShellModel& model = models[0];
  const Vector3 a = model.NodeCoords[5], b = model.NodeCoords[6];
  model.NodeCoords.push_back({a[0], a[1], -a[2]});  // node 8; node 7 is the second end
  model.NodeCoords.push_back({b[0], b[1], -b[2]});
  AddShell(model, {2, 5, 6, 3});
  AddShell(model, {2, 8, 9, 3});
  NumberAndAverage(models);
  ExpectAverage(models, {0, 0, 1}, {{0, 0, 1}, {0, 1, 0}, {0, 2, 0}});
  ExpectAverage(models, {0, 1, 0}, {{0, 0, 1}, {0, 1, 0}});
  ExpectAverage(models, {0, 2, 0}, {{0, 0, 1}, {0, 2, 0}});
}

// Two squares without common nodes: corner 1 of the left one is at the origin, corner 0 of the
// right one at `point`. Along the normal, `point` is so near that the fold does not matter.
Models MakeGap(const Vector3& point) {
  Models models = MakeFold(0);
  BeamShellModel& model = models[0];
  model.NodeCoords.insert(model.NodeCoords.end(), {point, {1, 0, 0}, {1, 1, 0}, {0.5, 1, 0}});
  AddShell(model, {8, 9, 10, 11});
  return models;
}

// The length of a vector along an axis is its component, to the last bit: the root of a rounded
// square is the number itself.
TEST(AverageCorners, CornersOneThousandthApartCoincide) {
  for (const double sign : {1.0, -1.0}) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const auto averageAt = [&](double distance) {
        Vector3 point{};
        point[axis] = sign * distance;
        Models models = MakeGap(point);
        NumberAndAverage(models);
        return models;
      };
      for (const double distance : {0.0, 1e-9, 0.0005, 0.001}) {
        ExpectTogether(averageAt(distance), {{0, 0, 1}, {0, 1, 0}});
      }
      for (const double distance : {std::nextafter(0.001, 1.0), 0.0011, 0.01, 0.1}) {
        const Models models = averageAt(distance);
        ExpectOwn(models, {0, 0, 1});
        ExpectOwn(models, {0, 1, 0});
      }
    }
  }
}

// The distance counts, not the largest of three differences: 0.0008 sqrt(2) = 0.00113.
TEST(AverageCorners, DistanceIsThatInSpace) {
  Models near = MakeGap({0.0006, 0.0007, 0});  // 0.00092
  NumberAndAverage(near);
  ExpectTogether(near, {{0, 0, 1}, {0, 1, 0}});
  Models far = MakeGap({0.0008, 0.0008, 0});
  NumberAndAverage(far);
  ExpectOwn(far, {0, 0, 1});
}

// Corners at x = 0, 0.0008 and 0.0016: the middle one coincides with both others.
TEST(AverageCorners, CoincidingIsNotPassedOn) {
  Models models = MakeGap({0.0008, 0, 0});
  models[0].NodeCoords.insert(models[0].NodeCoords.end(),
                              {{0.0016, 0, 0}, {1, -1, 0}, {2, -1, 0}, {2, 0, 0}});
  AddShell(models[0], {12, 13, 14, 15});
  NumberAndAverage(models);
  ExpectAverage(models, {0, 0, 1}, {{0, 0, 1}, {0, 1, 0}});
  ExpectAverage(models, {0, 1, 0}, {{0, 0, 1}, {0, 1, 0}, {0, 2, 0}});
  ExpectAverage(models, {0, 2, 0}, {{0, 1, 0}, {0, 2, 0}});
}

// A shell of 0.0005 x 1: its corners 0 and 1 coincide, and so do 2 and 3.
TEST(AverageCorners, NarrowShellIsAveragedOverItsOwnCorners) {
  Models models{
      MakeModel({0, 0, 0}, {5, 0, 0}, {{0, 0, 0}, {0.0005, 0, 0}, {0.0005, 1, 0}, {0, 1, 0}})};
  AddShell(models[0], {1, 2, 3, 4});
  NumberAndAverage(models);
  ExpectTogether(models, {{0, 0, 0}, {0, 0, 1}});
  ExpectTogether(models, {{0, 0, 2}, {0, 0, 3}});
}

// (1 + 1 + 3) / 3. A product with 1.0 / 3, which is a little less than a third, would be smaller in
// the last bit.
TEST(AverageCorners, SumsAreDividedByTheCount) {
  ASSERT_NE(5.0 / 3.0, 5.0 * (1.0 / 3.0));
  Models models = MakeFourSquares();
  models.pop_back();
  for (std::size_t m = 0; m < 3; ++m) {
    models[m].Shells[0].NodeStressTop[Origin[m]] = Stress(m == 2 ? 3.0 : 1.0);
    models[m].Shells[0].NodeStressBottom[Origin[m]] = Stress(m == 2 ? -3.0 : -1.0);
  }
  AverageBeamShellStresses(models);
  for (std::size_t m = 0; m < 3; ++m) {
    EXPECT_EQ(models[m].Shells[0].AvgStressTop[Origin[m]], Stress(5.0 / 3.0));
    EXPECT_EQ(models[m].Shells[0].AvgStressBottom[Origin[m]], Stress(-5.0 / 3.0));
  }
}

// Sums begin with zero, and 0 + -0 is 0: result files show no minus sign.
TEST(AverageCorners, NegativeZeroLosesItsSign) {
  Models models = MakeFold(0);
  models[0].Shells[0].NodeStressTop[0].fill(-0.0);
  AverageBeamShellStresses(models);
  for (const double s : models[0].Shells[0].AvgStressTop[0]) {
    EXPECT_EQ(s, 0.0);
    EXPECT_FALSE(std::signbit(s));
  }
}

// A NaN or an infinity affects the averages of its own component and corner only.
TEST(AverageCorners, NonFiniteStressesPassOnWhereTheyBelong) {
  Models models = MakeFold(0);
  AddShell(models[0], {2, 5, 6, 3});
  models[0].Shells[0].NodeStressTop[1] = {NaN, 1, Infinity, 1, -Infinity, 1};
  models[0].Shells[0].NodeStressTop[2] = {Infinity, 1, 1, 1, 1, 1};
  models[0].Shells[1].NodeStressTop[3] = {-Infinity, 1, 1, 1, 1, 1};
  AverageBeamShellStresses(models);
  const StressVector& mixed = models[0].Shells[1].AvgStressTop[0];
  EXPECT_TRUE(std::isnan(mixed[SX]));
  EXPECT_EQ(mixed[SY], 0.5);
  EXPECT_EQ(mixed[SZ], Infinity);
  EXPECT_EQ(mixed[TXZ], -Infinity);
  EXPECT_TRUE(std::isnan(models[0].Shells[0].AvgStressTop[2][SX]));
  EXPECT_EQ(models[0].Shells[0].AvgStressTop[0], StressVector{});
  EXPECT_EQ(models[0].Shells[0].AvgStressBottom[1], StressVector{});
}

// Averages are computed from the recovered stresses, not from averages. The recovered stresses do
// not change.
TEST(AverageCorners, AveragingAgainChangesNothing) {
  Models models = MakeFourSquares();
  for (BeamShellModel& model : models) {
    model.Shells[0].AvgStressTop.fill(Stress(7));
    model.Shells[0].AvgStressBottom.fill(Stress(NaN));
  }
  NumberAndAverage(models);
  const Models before = models;
  AverageBeamShellStresses(models);
  for (std::size_t m = 0; m < models.size(); ++m) {
    const Shell4Element &now = models[m].Shells[0], &then = before[m].Shells[0];
    EXPECT_EQ(now.AvgStressTop, then.AvgStressTop);
    EXPECT_EQ(now.AvgStressBottom, then.AvgStressBottom);
    for (std::size_t k = 0; k < 4; ++k) {
      EXPECT_EQ(now.NodeStressTop[k], Stress(UpperNumber({m, 0, k})));
      EXPECT_EQ(now.NodeStressBottom[k], Stress(UpperNumber({m, 0, k}) + Bottom));
    }
  }
}

TEST(AverageCorners, WithoutShellsNothingHappens) {
  Models models;
  AverageBeamShellStresses(models);
  EXPECT_TRUE(models.empty());
  models = {BeamShellModel{}, MakeSquare(0, 0, {0, 0, 0}, {1, 0, 0}), BeamShellModel{}};
  NumberAndAverage(models);
  for (std::size_t k = 0; k < 4; ++k) ExpectOwn(models, {1, 0, k});
}

// ---- Ends ---------------------------------------------------------------------------------------

// Ends far from all other ends.
constexpr Vector3 Far1{500, 0, 0}, Far2{0, 600, 0}, Far3{0, 0, 700}, Far4{-800, 0, 0};

// Whether the squares of two beams with these ends are averaged with each other, the first over the
// second and the second over the first. The squares lie side by side, wherever the ends are.
bool AreAveraged(const std::array<Vector3, 2>& ends1, const std::array<Vector3, 2>& ends2) {
  Models models{MakeSquare(-1, 0, ends1[0], ends1[1]), MakeSquare(0, 0, ends2[0], ends2[1])};
  NumberAndAverage(models);
  const bool averaged = models[0].Shells[0].AvgStressTop[1] != Stress(UpperNumber({0, 0, 1}));
  if (averaged) {
    ExpectTogether(models, {{0, 0, 1}, {1, 0, 0}});
    ExpectTogether(models, {{0, 0, 2}, {1, 0, 3}});
  } else {
    ExpectOwn(models, {1, 0, 0});
  }
  ExpectOwn(models, {0, 0, 0});
  ExpectOwn(models, {1, 0, 1});
  return averaged;
}

TEST(AverageCorners, AnyTwoEndsCanBeTheSharedOne) {
  const Vector3 e{3, 4, 5};
  EXPECT_TRUE(AreAveraged({e, Far1}, {e, Far2}));
  EXPECT_TRUE(AreAveraged({e, Far1}, {Far2, e}));
  EXPECT_TRUE(AreAveraged({Far1, e}, {e, Far2}));
  EXPECT_TRUE(AreAveraged({Far1, e}, {Far2, e}));
  EXPECT_FALSE(AreAveraged({Far1, Far2}, {Far3, Far4}));
}

// Unlike corners, ends exactly 0.001 apart are different ends.
TEST(AverageCorners, EndsCloserThanOneThousandthAreOne) {
  for (const double sign : {1.0, -1.0}) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const auto areAveragedAt = [&](double distance) {
        Vector3 end{};
        end[axis] = sign * distance;
        return AreAveraged({Far1, Vector3{}}, {end, Far2});
      };
      for (const double near : {0.0, 1e-9, 0.0005, std::nextafter(0.001, 0.0)}) {
        EXPECT_TRUE(areAveragedAt(near)) << near;
      }
      for (const double far : {0.001, std::nextafter(0.001, 1.0), 0.0011, 0.01, 1.0}) {
        EXPECT_FALSE(areAveragedAt(far)) << far;
      }
    }
  }
  EXPECT_TRUE(AreAveraged({Vector3{}, Far1}, {Vector3{0.0006, 0.0007, 0}, Far2}));   // 0.00092
  EXPECT_FALSE(AreAveraged({Vector3{}, Far1}, {Vector3{0.0008, 0, 0.0008}, Far2}));  // 0.00113
}

// Both ends are common, in the same or the opposite order, or both ends of one beam are at one end
// of the other: each corner still counts once.
TEST(AverageCorners, SharingTwiceCountsOnce) {
  const Vector3 e{3, 4, 5}, nearE{3.0005, 4, 5};
  EXPECT_TRUE(AreAveraged({e, Far1}, {e, Far1}));
  EXPECT_TRUE(AreAveraged({e, Far1}, {Far1, e}));
  EXPECT_TRUE(AreAveraged({e, nearE}, {e, Far1}));
  EXPECT_TRUE(AreAveraged({e, Far1}, {nearE, e}));
  EXPECT_TRUE(AreAveraged({e, e}, {e, e}));
}

// An end that is not finite is common to no beam, not even with the same end. The other end counts.
TEST(AverageCorners, EndsThatAreNotFiniteAreNotShared) {
  for (const double x : {NaN, Infinity, -Infinity}) {
    const Vector3 end{x, 0, 0}, e{3, 4, 5};
    EXPECT_FALSE(AreAveraged({end, Far1}, {end, Far2}));
    EXPECT_FALSE(AreAveraged({end, end}, {end, end}));
    EXPECT_FALSE(AreAveraged({end, Vector3{}}, {Far1, end}));
    EXPECT_TRUE(AreAveraged({end, e}, {e, end}));
    EXPECT_TRUE(AreAveraged({e, end}, {e, end}));
  }
}

// Doubles at 1e16 are 2 apart; the squares of 1e300 overflow, and so does the difference of the
// largest.
TEST(AverageCorners, EndsFarOutAreShared) {
  for (const double x : {1e6, 1e12, 1e16, 1e300, std::numeric_limits<double>::max()}) {
    const Vector3 end{x, -x, x}, opposite{-x, x, -x};
    const Vector3 next{x, std::nextafter(-x, 0.0), x};
    EXPECT_TRUE(AreAveraged({end, Far1}, {Far2, end})) << x;
    EXPECT_FALSE(AreAveraged({end, Far1}, {opposite, Far2})) << x;
    EXPECT_EQ(AreAveraged({end, Far1}, {next, Far2}), x < 2e12) << x;
  }
}

// Beam 1 shares an end with 0 and another with 2. The squares of all three meet at the origin.
TEST(AverageCorners, SharingIsNotPassedOn) {
  Models models = MakeFourSquares();
  models.pop_back();
  const std::array<std::array<Vector3, 2>, 3> ends{{{Far1, Far2}, {Far2, Far3}, {Far3, Far4}}};
  for (std::size_t m = 0; m < 3; ++m) {
    models[m].EndPoint1 = ends[m][0];
    models[m].EndPoint2 = ends[m][1];
  }
  NumberAndAverage(models);
  const std::vector<Corner> all{{0, 0, 2}, {1, 0, 3}, {2, 0, 0}};
  ExpectAverage(models, all[0], {all[0], all[1]});
  ExpectAverage(models, all[1], all);
  ExpectAverage(models, all[2], {all[1], all[2]});
}

// ---- Order --------------------------------------------------------------------------------------

// Large is 2^53: doubles from there on are even. 3 + Large is half way between Large + 2 and
// Large + 4 and becomes the latter, whose last bit is even, so (3 + Large) - Large = 4; but
// (3 - Large) + Large = 3 and (Large - Large) + 3 = 3.
constexpr double Large = 9007199254740992.0;

// Gives the four squares these numbers at the origin, averages and returns the first components
// there times 4.
std::array<double, 4> AverageFourSquares(const std::array<double, 4>& v) {
  Models models = MakeFourSquares();
  for (std::size_t m = 0; m < 4; ++m) {
    models[m].Shells[0].NodeStressTop[Origin[m]] = Stress(v[m]);
    models[m].Shells[0].NodeStressBottom[Origin[m]] = Stress(-v[m]);
  }
  AverageBeamShellStresses(models);
  std::array<double, 4> sums{};
  for (std::size_t m = 0; m < 4; ++m) {
    const StressVector& top = models[m].Shells[0].AvgStressTop[Origin[m]];
    EXPECT_EQ(top, Stress(top[0]));
    EXPECT_EQ(models[m].Shells[0].AvgStressBottom[Origin[m]], Stress(-top[0]));
    sums[m] = 4 * top[0];
  }
  return sums;
}

TEST(AverageCorners, OwnModelComesFirstThenTheTableOrder) {
  using Sums = std::array<double, 4>;
  // ((L - L) + 3) + 0, ((-L + L) + 3) + 0, ((3 + L) - L) + 0, ((0 + L) - L) + 3.
  EXPECT_EQ(AverageFourSquares({Large, -Large, 3, 0}), (Sums{3, 3, 4, 3}));
  // ((3 + L) - L), (L + 3) - L, (-L + 3) + L, ((0 + 3) + L) - L.
  EXPECT_EQ(AverageFourSquares({3, Large, -Large, 0}), (Sums{4, 4, 3, 4}));
  // L + 3 - L, (0 + L) + 3 - L, (3 + L) - L, (-L + L) + 3.
  EXPECT_EQ(AverageFourSquares({Large, 0, 3, -Large}), (Sums{4, 4, 4, 3}));
}

// Within its own model the sum runs shell by shell; a corner's own shell does not come first.
TEST(AverageCorners, OwnModelsShellsComeInTheirOrder) {
  for (const bool largeFirst : {true, false}) {
    Models models{MakeModel({0, 0, 0}, {9, 0, 0}, {})};
    for (const BeamShellModel& square : MakeFourSquares()) {
      const auto first = static_cast<std::int32_t>(models[0].NodeCoords.size());
      models[0].NodeCoords.insert(models[0].NodeCoords.end(), square.NodeCoords.begin() + 1,
                                  square.NodeCoords.end() - 1);
      AddShell(models[0], {first, first + 1, first + 2, first + 3});
    }
    const std::array<double, 4> v = largeFirst ? std::array<double, 4>{Large, -Large, 3, 0}
                                               : std::array<double, 4>{Large, 3, 0, -Large};
    for (std::size_t e = 0; e < 4; ++e) {
      models[0].Shells[e].NodeStressTop[Origin[e]] = Stress(v[e]);
    }
    AverageBeamShellStresses(models);
    for (std::size_t e = 0; e < 4; ++e) {
      EXPECT_EQ(models[0].Shells[e].AvgStressTop[Origin[e]], Stress((largeFirst ? 3 : 4) / 4.0));
    }
  }
}

// All corners of a shell that is small enough coincide.
TEST(AverageCorners, CornersOfAShellComeInTheirOrder) {
  Models models{MakeModel({0, 0, 0}, {9, 0, 0},
                          {{0, 0, 0}, {0.0002, 0, 0}, {0.0002, 0.0002, 0}, {0, 0.0002, 0}})};
  AddShell(models[0], {1, 2, 3, 4});
  const std::array<double, 4> v{3, Large, -Large, 0};
  for (std::size_t k = 0; k < 4; ++k) models[0].Shells[0].NodeStressTop[k] = Stress(v[k]);
  AverageBeamShellStresses(models);
  for (std::size_t k = 0; k < 4; ++k) {
    EXPECT_EQ(models[0].Shells[0].AvgStressTop[k], Stress(4 / 4.0)) << k;
  }
}

// ---- Corners with non-finite coordinates --------------------------------------------------------

// A distance that is NaN excludes no corner, and a normal that is NaN excludes none either: the
// corner at the NaN node, number 1 of the right square, is averaged with all corners of the beam.
TEST(AverageCorners, CornerThatIsNotANumberCoincidesWithAll) {
  Models models = MakeFold(0);
  models[0].NodeCoords[5] = {0, NaN, 0};
  AddShell(models[0], {2, 5, 6, 3});
  NumberAndAverage(models);
  ExpectAverage(models, {0, 0, 0}, {{0, 0, 0}, {0, 1, 1}});
  ExpectAverage(models, {0, 0, 1}, {{0, 0, 1}, {0, 1, 0}, {0, 1, 1}});
  ExpectAverage(models, {0, 0, 2}, {{0, 0, 2}, {0, 1, 1}, {0, 1, 3}});
  ExpectAverage(
      models, {0, 1, 1},
      {{0, 0, 0}, {0, 0, 1}, {0, 0, 2}, {0, 0, 3}, {0, 1, 0}, {0, 1, 1}, {0, 1, 2}, {0, 1, 3}});
}

// The distance of a corner at infinity is infinite to finite corners, and NaN to itself and to
// other corners at infinity.
TEST(AverageCorners, CornersAtInfinityCoincideAmongThemselves) {
  Models models = MakeFold(0);
  models[0].NodeCoords[5] = {Infinity, 0, 0};
  models[0].NodeCoords[6] = {Infinity, 1, 0};
  AddShell(models[0], {2, 5, 6, 3});
  NumberAndAverage(models);
  ExpectOwn(models, {0, 0, 0});
  ExpectFoldAveraged(models);
  ExpectTogether(models, {{0, 1, 1}, {0, 1, 2}});
}

// The sum runs in corner order although finite and NaN corners are found in different ways: 3, of a
// shell at a NaN node, comes between Large and -Large. 1 + 4 + 1 corners.
TEST(AverageCorners, CornersAtNaNKeepTheirPlaceInTheOrder) {
  Models models{MakeModel({0, 0, 0}, {9, 0, 0}, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}})};
  BeamShellModel& model = models[0];
  model.NodeCoords.push_back({NaN, NaN, NaN});
  AddShell(model, {1, 2, 3, 4});
  AddShell(model, {6, 6, 6, 6});
  AddShell(model, {1, 2, 3, 4});
  model.Shells[0].NodeStressTop[0] = Stress(Large);
  model.Shells[1].NodeStressTop[2] = Stress(3);
  model.Shells[2].NodeStressTop[0] = Stress(-Large);
  AverageBeamShellStresses(models);
  for (const std::size_t e : {0U, 2U}) {
    EXPECT_EQ(model.Shells[e].AvgStressTop[0], Stress(4 / 6.0)) << e;
  }
  for (std::size_t k = 0; k < 4; ++k) {
    EXPECT_EQ(model.Shells[1].AvgStressTop[k], Stress(4 / 12.0)) << k;
  }
}

// ---- Beams --------------------------------------------------------------------------------------

// Segments of the T outline, from the web's foot over the left to the right half of the flange.
constexpr std::size_t Foot = 0, Top = 2, Left = 3, Right = 4;

// The detail model of a T beam whose web runs along Z. Its segments are 90 or 100 long: a beam of
// 200 has two steps.
BeamShellModel MakeT(const Vector3& end1, const Vector3& end2) {
  BeamShellModel model;
  model.EndPoint1 = end1;
  model.EndPoint2 = end2;
  model.OrientVector = {0, 0, 1};
  SectionOutline outline;
  BuildTOutline({270.0, 10.0, 200.0, 20.0}, 0, outline);
  ExtrudeOutline(outline, 0, model);
  return model;
}

// Corner k of the shell that the segment makes in the step (1, 2, ...) of T beam m. Corners 0 and 3
// lie at the step's beginning, 1 and 2 at its end; 0 and 1 at the segment's first point, which is
// the lower one in the web and the middle one in the flange.
Corner At(std::size_t m, std::size_t step, std::size_t segment, std::size_t k,
          bool facesDown = false) {
  return {m, (step - 1) * 5 + segment, k, facesDown};
}

// At a tip there is one corner only: its averages are its own stresses to the last bit.
TEST(AverageCorners, FlangeTipAtAnEndKeepsItsStresses) {
  Models models{MakeT({0, 0, 0}, {200, 0, 0})};
  for (const Corner& tip : {At(0, 1, Left, 3), At(0, 1, Right, 3), At(0, 2, Left, 2)}) {
    Shell4Element& shell = models[0].Shells[tip.shell];
    shell.NodeStressTop[tip.k] = {0.1, -0.2, 1.0 / 3.0, 1e-300, -1e300, 0.7};
    shell.NodeStressBottom[tip.k] = {-0.3, 0.9, 1.0 / 7.0, 5e-324, 12.3, 0.0};
    AverageBeamShellStresses(models);
    EXPECT_EQ(shell.AvgStressTop[tip.k], shell.NodeStressTop[tip.k]);
    EXPECT_EQ(shell.AvgStressBottom[tip.k], shell.NodeStressBottom[tip.k]);
  }
}

// A shell's normal is the cross product of axis and segment: the left half of the flange faces
// down, the right half up, towards +z.
TEST(AverageCorners, PlatesOfATAreAveragedEachByItself) {
  Models models{MakeT({0, 0, 0}, {200, 0, 0})};
  ASSERT_EQ(models[0].Shells.size(), 10U);
  NumberAndAverage(models);
  // The web's foot: one shell at the ends, two in the middle. One point higher: two and four
  // shells.
  ExpectOwn(models, At(0, 1, Foot, 0));
  ExpectOwn(models, At(0, 2, Foot, 1));
  ExpectTogether(models, {At(0, 1, Foot, 1), At(0, 2, Foot, 0)});
  ExpectTogether(models, {At(0, 1, Foot, 3), At(0, 1, 1, 0)});
  ExpectTogether(models, {At(0, 1, Foot, 2), At(0, 1, 1, 1), At(0, 2, Foot, 3), At(0, 2, 1, 0)});
  // Where web and flange meet.
  ExpectOwn(models, At(0, 1, Top, 3));
  ExpectTogether(models, {At(0, 1, Left, 0, true), At(0, 1, Right, 0)});
  ExpectTogether(models, {At(0, 1, Top, 2), At(0, 2, Top, 3)});
  ExpectTogether(models, {At(0, 1, Left, 1, true), At(0, 1, Right, 1), At(0, 2, Left, 0, true),
                          At(0, 2, Right, 0)});
  ExpectOwn(models, At(0, 2, Top, 2));
  ExpectTogether(models, {At(0, 2, Left, 1, true), At(0, 2, Right, 1)});
  // The tips.
  ExpectOwn(models, At(0, 1, Left, 3));
  ExpectTogether(models, {At(0, 1, Left, 2), At(0, 2, Left, 3)});
  ExpectTogether(models, {At(0, 1, Right, 2), At(0, 2, Right, 3)});
  ExpectOwn(models, At(0, 2, Right, 2));
}

// Web segments 0, 1, 2 and the flange 3 have the same thickness: only the angle separates them.
TEST(AverageCorners, PlatesOfAnLAreAveragedEachByItself) {
  for (const bool mirrored : {false, true}) {
    Models models{MakeModel({0, 0, 0}, {200, 0, 0}, {})};
    models[0].OrientVector = {0, 0, 1};
    SectionOutline outline;
    BuildLOutline({265.0, 10.0, 100.0, 10.0}, mirrored, 0, outline);
    ExtrudeOutline(outline, 0, models[0]);
    ASSERT_EQ(models[0].Shells.size(), 8U);
    NumberAndAverage(models);
    ExpectTogether(models, {{0, 1, 2}, {0, 2, 1}, {0, 5, 3}, {0, 6, 0}});
    ExpectTogether(models, {{0, 2, 2}, {0, 6, 3}});
    ExpectTogether(models, {{0, 3, 1}, {0, 7, 0}});
    ExpectTogether(models, {{0, 3, 2}, {0, 7, 3}});
    ExpectOwn(models, {0, 2, 3});
    ExpectOwn(models, {0, 3, 0});
  }
}

// The plates of a tube meet at 360 / 8, 360 / 12 and 360 / 16 = 22.5 degrees: each is averaged only
// with those before and after it along the beam. The length of 2.5 segments gives two steps.
TEST(AverageCorners, PlatesOfATubeStayApart) {
  for (const std::int32_t level : {0, 1, 2}) {
    Models models{MakeModel({0, 0, 0}, {0, 0, 0}, {})};
    SectionOutline outline;
    BuildCOutline({100.0, 5.0}, level, outline);
    models[0].EndPoint2 = {2.5 * LongestSegment(outline), 0, 0};
    models[0].OrientVector = {0, 0, 1};
    ExtrudeOutline(outline, 0, models[0]);
    const std::size_t ring = outline.segments.size();
    ASSERT_EQ(models[0].Shells.size(), 2 * ring);
    NumberAndAverage(models);
    for (std::size_t e = 0; e < ring; ++e) {
      ExpectOwn(models, {0, e, 0});
      ExpectTogether(models, {{0, e, 1}, {0, ring + e, 0}});
      ExpectTogether(models, {{0, e, 2}, {0, ring + e, 3}});
      ExpectOwn(models, {0, ring + e, 2});
    }
  }
}

// If the section is smaller than 0.001, all corners coincide; web and flange are still averaged
// separately.
TEST(AverageCorners, TinyBeamIsAveragedPlateByPlate) {
  Models models{MakeModel({0, 0, 0}, {0.0001, 0, 0}, {})};
  models[0].OrientVector = {0, 0, 1};
  SectionOutline outline;
  BuildTOutline({0.00027, 0.00001, 0.0002, 0.00002}, 0, outline);
  ExtrudeOutline(outline, 0, models[0]);
  ASSERT_EQ(models[0].Shells.size(), 5U);
  NumberAndAverage(models);
  std::vector<Corner> web, flange;
  for (std::size_t k = 0; k < 4; ++k) {
    for (const std::size_t segment : {0U, 1U, 2U}) web.push_back(At(0, 1, segment, k));
    flange.insert(flange.end(), {At(0, 1, Left, k, true), At(0, 1, Right, k)});
  }
  ExpectTogether(models, web);
  ExpectTogether(models, flange);
}

TEST(AverageCorners, BeamThatGoesOnIsAveragedAtItsEnd) {
  Models models{MakeT({0, 0, 0}, {200, 0, 0}), MakeT({200, 0, 0}, {400, 0, 0})};
  NumberAndAverage(models);
  ExpectTogether(models, {At(0, 2, Foot, 1), At(1, 1, Foot, 0)});
  ExpectTogether(models, {At(0, 2, Foot, 2), At(0, 2, 1, 1), At(1, 1, Foot, 3), At(1, 1, 1, 0)});
  ExpectTogether(models, {At(0, 2, Top, 2), At(1, 1, Top, 3)});
  ExpectTogether(models, {At(0, 2, Left, 1, true), At(0, 2, Right, 1), At(1, 1, Left, 0, true),
                          At(1, 1, Right, 0)});
  ExpectTogether(models, {At(0, 2, Left, 2), At(1, 1, Left, 3)});
  ExpectTogether(models, {At(0, 2, Right, 2), At(1, 1, Right, 3)});
  ExpectOwn(models, At(0, 1, Foot, 0));
  ExpectOwn(models, At(1, 2, Foot, 1));
  ExpectTogether(models, {At(1, 1, Foot, 1), At(1, 2, Foot, 0)});
}

// The second beam has the opposite direction: its web faces the other way, and the left half of its
// flange adjoins the right half of the first. In both beams the left half faces down.
TEST(AverageCorners, BeamThatComesFromTheOtherSideIsAveragedAtItsEnd) {
  Models models{MakeT({0, 0, 0}, {200, 0, 0}), MakeT({400, 0, 0}, {200, 0, 0})};
  NumberAndAverage(models);
  ExpectTogether(models, {At(0, 2, Foot, 1), At(1, 2, Foot, 1, true)});
  ExpectTogether(
      models, {At(0, 2, Foot, 2), At(0, 2, 1, 1), At(1, 2, Foot, 2, true), At(1, 2, 1, 1, true)});
  ExpectTogether(models, {At(0, 2, Left, 1, true), At(0, 2, Right, 1), At(1, 2, Left, 1, true),
                          At(1, 2, Right, 1)});
  ExpectTogether(models, {At(0, 2, Left, 2, true), At(1, 2, Right, 2)});
  ExpectTogether(models, {At(0, 2, Right, 2), At(1, 2, Left, 2, true)});
}

// The webs are averaged up to 11.48 degrees; the flanges, in one plane, at any angle, at their
// common point above the node. The tips are apart.
TEST(AverageCorners, BeamsAtAnAngle) {
  for (const double degrees : {11.0, 12.0, -12.0, 60.0, 120.0}) {
    SCOPED_TRACE(degrees);
    const double angle = degrees * std::acos(-1.0) / 180.0;
    const Vector3 end{200 + 200 * std::cos(angle), 200 * std::sin(angle), 0};
    Models models{MakeT({0, 0, 0}, {200, 0, 0}), MakeT({200, 0, 0}, end)};
    ASSERT_EQ(models[1].Shells.size() % 5, 0U);
    NumberAndAverage(models);
    if (degrees == 11.0) {
      ExpectTogether(models, {At(0, 2, Foot, 1), At(1, 1, Foot, 0)});
      ExpectTogether(models, {At(0, 2, Top, 2), At(1, 1, Top, 3)});
    } else {
      ExpectOwn(models, At(0, 2, Foot, 1));
      ExpectOwn(models, At(1, 1, Foot, 0));
      ExpectOwn(models, At(1, 1, Top, 3));
    }
    ExpectTogether(models, {At(0, 2, Left, 1, true), At(0, 2, Right, 1), At(1, 1, Left, 0, true),
                            At(1, 1, Right, 0)});
    ExpectOwn(models, At(0, 2, Left, 2));
    ExpectOwn(models, At(1, 1, Right, 3));
  }
}

// At a right angle the right tip of the second beam lies on the middle of the first beam's flange,
// 100 before its end. The left tip lies beyond that end.
TEST(AverageCorners, TipThatMeetsTheMiddleOfAnotherFlange) {
  Models models{MakeT({0, 0, 0}, {200, 0, 0}), MakeT({200, 0, 0}, {200, 200, 0})};
  NumberAndAverage(models);
  ExpectTogether(models, {At(0, 1, Left, 1, true), At(0, 1, Right, 1), At(0, 2, Left, 0, true),
                          At(0, 2, Right, 0), At(1, 1, Right, 3)});
  ExpectTogether(models, {At(0, 1, Top, 2), At(0, 2, Top, 3)});
  ExpectOwn(models, At(1, 1, Left, 3));
}

// Three beams at one node, one of them ending there: all six halves of the flange.
TEST(AverageCorners, ThreeBeamsMeet) {
  Models models{MakeT({0, 0, 0}, {200, 0, 0}), MakeT({200, 0, 0}, {400, 0, 0}),
                MakeT({200, 200, 0}, {200, 0, 0})};
  NumberAndAverage(models);
  ExpectTogether(models, {At(0, 2, Left, 1, true), At(0, 2, Right, 1), At(1, 1, Left, 0, true),
                          At(1, 1, Right, 0), At(2, 2, Left, 1, true), At(2, 2, Right, 1)});
  ExpectTogether(models, {At(0, 2, Top, 2), At(1, 1, Top, 3)});
  ExpectOwn(models, At(2, 2, Top, 2));
}

// Expects that model m has the same averages as without the other models.
void ExpectAsAlone(const Models& models, std::size_t m) {
  Models alone{models[m]};
  AverageBeamShellStresses(alone);
  for (std::size_t e = 0; e < models[m].Shells.size(); ++e) {
    EXPECT_EQ(models[m].Shells[e].AvgStressTop, alone[0].Shells[e].AvgStressTop) << m << ' ' << e;
    EXPECT_EQ(models[m].Shells[e].AvgStressBottom, alone[0].Shells[e].AvgStressBottom)
        << m << ' ' << e;
  }
}

// Beams on one line, station on station, without a common end; beams that cross.
TEST(AverageCorners, BeamsWithoutACommonEndStayApart) {
  Models overlapping{MakeT({0, 0, 0}, {400, 0, 0}), MakeT({100, 0, 0}, {300, 0, 0}),
                     MakeT({0, -100, 0}, {0, 100, 0})};
  ASSERT_EQ(overlapping[0].NodeCoords[7], overlapping[1].NodeCoords[1]);
  NumberAndAverage(overlapping);
  for (std::size_t m = 0; m < 3; ++m) ExpectAsAlone(overlapping, m);
}

// Two beams on one line from the same end are averaged at every station that they have in common.
TEST(AverageCorners, BeamsFromACommonEndAreAveragedOverTheirLength) {
  Models models{MakeT({0, 0, 0}, {300, 0, 0}), MakeT({0, 0, 0}, {200, 0, 0})};
  NumberAndAverage(models);
  ExpectTogether(models, {At(0, 1, Foot, 0), At(1, 1, Foot, 0)});
  ExpectTogether(models,
                 {At(0, 1, Foot, 1), At(0, 2, Foot, 0), At(1, 1, Foot, 1), At(1, 2, Foot, 0)});
  ExpectTogether(models, {At(0, 2, Foot, 1), At(0, 3, Foot, 0), At(1, 2, Foot, 1)});
  ExpectOwn(models, At(0, 3, Foot, 1));
}

// The same beam twice, and once more with its ends exchanged.
TEST(AverageCorners, BeamsWithBothEndsInCommon) {
  Models models{MakeT({0, 0, 0}, {200, 0, 0}), MakeT({0, 0, 0}, {200, 0, 0}),
                MakeT({200, 0, 0}, {0, 0, 0})};
  NumberAndAverage(models);
  ExpectTogether(models, {At(0, 1, Foot, 0), At(1, 1, Foot, 0), At(2, 2, Foot, 1, true)});
  ExpectTogether(models, {At(0, 2, Left, 2, true), At(1, 2, Left, 2, true), At(2, 1, Right, 3)});
}

// All shell nodes of a beam without length are NaN, and so are its normals. Each of its corners is
// averaged with all its own corners and all corners of the adjoining beam, with faces unexchanged.
// Each corner of the adjoining beam is averaged with all of them, besides its usual corners. The
// third beam, at the other end, has no common end with it.
TEST(AverageCorners, BeamWithoutLengthIsAveragedWithAllCornersBesideIt) {
  Models models{MakeT({0, 0, 0}, {200, 0, 0}), MakeT({200, 0, 0}, {200, 0, 0}),
                MakeT({-200, 0, 0}, {0, 0, 0})};
  ASSERT_EQ(models[1].Shells.size(), 5U);
  NumberAndAverage(models);
  std::vector<Corner> placeless, all;
  for (std::size_t e = 0; e < 5; ++e) {
    for (std::size_t k = 0; k < 4; ++k) placeless.push_back({1, e, k});
  }
  all = placeless;
  for (std::size_t e = 0; e < 10; ++e) {
    for (std::size_t k = 0; k < 4; ++k) all.push_back({0, e, k});
  }
  for (const Corner& own : placeless) ExpectAverage(models, own, all);

  const auto expectWithPlaceless = [&](const Corner& own, std::vector<Corner> parts) {
    for (Corner c : placeless) {
      c.facesDown = own.facesDown;
      parts.push_back(c);
    }
    ExpectAverage(models, own, parts);
  };
  expectWithPlaceless(At(0, 2, Foot, 1), {At(0, 2, Foot, 1)});
  expectWithPlaceless(At(0, 1, Foot, 1), {At(0, 1, Foot, 1), At(0, 2, Foot, 0)});
  expectWithPlaceless(At(0, 2, Left, 1, true), {At(0, 2, Left, 1, true), At(0, 2, Right, 1)});
  expectWithPlaceless(At(0, 2, Right, 1), {At(0, 2, Left, 1, true), At(0, 2, Right, 1)});
  expectWithPlaceless(At(0, 1, Foot, 0), {At(0, 1, Foot, 0), At(2, 2, Foot, 1)});
  ExpectTogether(models, {At(2, 1, Foot, 1), At(2, 2, Foot, 0)});
  ExpectAverage(models, At(2, 2, Foot, 1), {At(0, 1, Foot, 0), At(2, 2, Foot, 1)});
}

}  // namespace
}  // namespace korvex
