// The rank of the constraints: against exact arithmetic on integer places, and on planted lines and
// planes in oblique axes, whose coordinates are rounded; in mm and m, near the origin and far away.
#include "check/rigid_motions.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "check/motion_text.h"
#include "support/good_models.h"

namespace kvx::test {
namespace {

using korvex::Vector3;

// What a body moves at a place, for a free motion.
std::array<double, 6> DisplacementAt(const RigidMotion& motion, const Vector3& place) {
  if (!motion.turns)
    return {motion.direction[0], motion.direction[1], motion.direction[2], 0, 0, 0};
  const Vector3 turn = korvex::Cross(motion.direction, korvex::Subtract(place, motion.point));
  std::array<double, 6> u{};
  for (std::size_t i = 0; i < 3; ++i) {
    u[i] = turn[i] + motion.pitch * motion.direction[i];
    u[3 + i] = motion.direction[i];
  }
  return u;
}

// Every motion leaves all fixed dofs at rest. tolerance: of displacements, for a turn of 1.
void ExpectFree(const std::vector<SupportPoint>& supports, const std::vector<RigidMotion>& motions,
                double tolerance) {
  for (const RigidMotion& motion : motions) {
    EXPECT_NEAR(korvex::Length(motion.direction), 1.0, 1e-12);  // some roundings
    for (const SupportPoint& support : supports) {
      const std::array<double, 6> u = DisplacementAt(motion, support.place);
      for (std::size_t d = 0; d < 6; ++d) {
        if ((support.fixed >> d & 1U) == 0) continue;
        EXPECT_NEAR(u[d], 0.0, d < 3 ? tolerance : 1e-9) << "dof " << d;
      }
    }
  }
}

// The rank of an integer matrix modulo a prime of 31 bits: that over the rationals, except where
// the prime divides a subdeterminant, by chance once in 10^9.
std::size_t ExactRank(std::vector<std::array<std::int64_t, 6>> rows) {
  constexpr std::int64_t Prime = 2147483647;
  const auto power = [](std::int64_t base, std::int64_t exponent) {
    std::int64_t result = 1;
    for (; exponent > 0; exponent /= 2, base = base * base % Prime) {
      if (exponent % 2 == 1) result = result * base % Prime;
    }
    return result;
  };
  for (auto& row : rows) {
    for (std::int64_t& value : row) value = (value % Prime + Prime) % Prime;
  }
  std::size_t rank = 0;
  for (std::size_t column = 0; column < 6; ++column) {
    std::size_t pivot = rank;
    while (pivot < rows.size() && rows[pivot][column] == 0) ++pivot;
    if (pivot == rows.size()) continue;
    std::swap(rows[pivot], rows[rank]);
    const std::int64_t inverse = power(rows[rank][column], Prime - 2);
    for (std::size_t r = rank + 1; r < rows.size(); ++r) {
      const std::int64_t factor = rows[r][column] * inverse % Prime;
      for (std::size_t j = column; j < 6; ++j) {
        rows[r][j] = (rows[r][j] + (Prime - factor) * rows[rank][j]) % Prime;
      }
    }
    ++rank;
  }
  return rank;
}

using Lattice = std::array<std::int64_t, 3>;

std::array<std::int64_t, 6> ExactRow(const Lattice& p, std::size_t dof) {
  std::array<std::int64_t, 6> row{};
  row[dof] = 1;
  // e x . (w x p) = w . (p x e)
  if (dof == 0) row[4] = p[2], row[5] = -p[1];
  if (dof == 1) row[3] = -p[2], row[5] = p[0];
  if (dof == 2) row[3] = p[1], row[4] = -p[0];
  return row;
}

Body MakeBody(const Vector3& centroid, double radius) {
  Body body;
  body.centroid = centroid;
  body.radius = radius;
  for (const double value : centroid) body.largest = std::max(body.largest, std::abs(value));
  body.largest += 2.0 * radius;
  return body;
}

// Random fixed dofs at random lattice places, few enough that every rank occurs; many of the places
// lie in lines and planes, oblique ones too. The offset keeps the places exact.
TEST(RigidMotions, HaveTheRankOfExactArithmetic) {
  Dice dice = MakeDice(1);
  std::array<int, 7> ranks{};
  for (int trial = 0; trial < 20000; ++trial) {
    const std::int64_t offset = trial % 3 == 0 ? 1000000 : 0;
    const int span = trial % 2 == 0 ? 3 : 1000;
    const auto roll = [&] { return std::int64_t{RollInteger(dice, -span, span)}; };
    const Lattice start{roll() + offset, roll() - offset, roll()}, step{roll(), roll(), roll()};
    std::vector<std::array<std::int64_t, 6>> rows;
    std::vector<SupportPoint> supports;
    for (int k = RollInteger(dice, 1, 5); k > 0; --k) {
      Lattice p = start;
      const std::int64_t along = RollInteger(dice, -4, 4);
      const bool strays = RollYes(dice, 0.2);
      for (std::size_t i = 0; i < 3; ++i) p[i] += along * step[i] + (strays ? roll() : 0);
      std::uint8_t fixed = 0;
      const bool pinned = RollYes(dice);
      for (std::size_t d = 0; d < 6; ++d) {
        if (!(pinned ? d < 3 : RollYes(dice, 0.25))) continue;
        fixed = static_cast<std::uint8_t>(fixed | 1U << d);
        rows.push_back(ExactRow(p, d));
      }
      supports.push_back(
          {{static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])},
           fixed});
    }
    const Body body =
        MakeBody({static_cast<double>(offset), static_cast<double>(-offset), 0.0}, 4.0 * span);
    Holding holding;
    FindFreeMotions(body, supports, holding);
    const std::size_t rank = ExactRank(rows);
    ++ranks[rank];
    ASSERT_EQ(6 - holding.freeMotions.size(), rank) << "trial " << trial;
    // Axes may lie far away: their points have the roundings of that distance.
    double reach = body.largest;
    for (const RigidMotion& motion : holding.freeMotions) {
      reach = std::max(reach, korvex::Length(motion.point));
    }
    ExpectFree(supports, holding.freeMotions, 1e-9 * reach);
  }
  for (const int count : ranks) EXPECT_GT(count, 50);
}

// A unit vector in a random direction.
Vector3 RollDirection(Dice& dice) {
  for (;;) {
    const Vector3 v{Roll(dice, -1, 1), Roll(dice, -1, 1), Roll(dice, -1, 1)};
    if (korvex::Length(v) > 0.1 && korvex::Length(v) < 1.0) return korvex::Normalise(v);
  }
}

Vector3 Along(const Vector3& start, const Vector3& direction, double distance) {
  Vector3 p = start;
  for (std::size_t i = 0; i < 3; ++i) p[i] += distance * direction[i];
  return p;
}

constexpr std::uint8_t Pinned = 0x07;

struct Scene {
  double size;    // of the body
  double reach;   // of the supports
  double offset;  // of the body from the origin
};

// N and mm, N and m; at the origin and far from it; supports close together.
constexpr std::array<Scene, 6> Scenes{{{1.0, 1.0, 0.0},
                                       {5000.0, 5000.0, 0.0},
                                       {1.0, 1.0, 1e6},
                                       {5000.0, 2000.0, 1e6},
                                       {5000.0, 1.0, 0.0},
                                       {10.0, 0.01, 1e4}}};

// Pinned nodes in an oblique line: the part turns about this line, and about nothing else.
TEST(RigidMotions, FindAnObliqueLineOfPins) {
  Dice dice = MakeDice(2);
  for (int trial = 0; trial < 3000; ++trial) {
    const Scene& scene = Scenes[static_cast<std::size_t>(trial) % Scenes.size()];
    const Vector3 start = Along({}, RollDirection(dice), scene.offset);
    const Vector3 line = RollDirection(dice);
    std::vector<SupportPoint> supports;
    for (int k = RollInteger(dice, 3, 40); k > 0; --k) {
      supports.push_back({Along(start, line, Roll(dice, -1, 1) * scene.reach), Pinned});
    }
    supports.push_back({Along(start, line, scene.reach), Pinned});
    const Body body = MakeBody(Along(start, RollDirection(dice), scene.size), scene.size);
    Holding holding;
    FindFreeMotions(body, supports, holding);
    ASSERT_EQ(holding.freeMotions.size(), 1U) << "trial " << trial;
    const RigidMotion& motion = holding.freeMotions[0];
    EXPECT_TRUE(motion.turns);
    EXPECT_EQ(motion.pitch, 0.0);
    // The places are rounded by 1e-16 of the offset, over the distance of the supports.
    const double exact = 1e-14 * (1.0 + scene.offset / scene.reach);
    EXPECT_NEAR(korvex::Length(korvex::Cross(motion.direction, line)), 0.0, exact);
    const Vector3 toPoint = korvex::Subtract(motion.point, start);
    EXPECT_NEAR(korvex::Length(korvex::Cross(toPoint, line)), 0.0,
                10.0 * exact * (scene.size + scene.reach));
  }
}

// A third pin beside the line by a thousandth of its length holds, and so does one by 1e-8: that is
// far above the rounding; but then the part is hardly held.
TEST(RigidMotions, SeeAPinBesideTheLine) {
  Dice dice = MakeDice(3);
  for (int trial = 0; trial < 1000; ++trial) {
    const double length = trial % 2 == 0 ? 1.0 : 5000.0;
    const double aside = trial % 4 < 2 ? 1e-3 : 1e-8;
    const Vector3 start = Along({}, RollDirection(dice), length), line = RollDirection(dice);
    const Vector3 across = korvex::Normalise(korvex::Cross(line, RollDirection(dice)));
    const std::vector<SupportPoint> supports{
        {start, Pinned},
        {Along(start, line, length), Pinned},
        {Along(Along(start, line, 0.5 * length), across, aside * length), Pinned}};
    Holding holding;
    FindFreeMotions(MakeBody(start, length), supports, holding);
    EXPECT_TRUE(holding.freeMotions.empty());
    // The turn about the line moves the third pin by `aside` and the body by its radius.
    EXPECT_NEAR(holding.grip, aside / std::sqrt(3.0), 0.5 * aside);
    EXPECT_NEAR(korvex::Length(korvex::Cross(holding.weakest.direction, line)), 0.0, 10.0 * aside);
  }
}

// Supports along a direction, of nodes anywhere in an oblique plane: only three fixed dofs.
TEST(RigidMotions, FindThreeFreedomsOfRollersInAPlane) {
  Dice dice = MakeDice(4);
  for (int trial = 0; trial < 1000; ++trial) {
    const Scene& scene = Scenes[static_cast<std::size_t>(trial) % Scenes.size()];
    const Vector3 start = Along({}, RollDirection(dice), scene.offset);
    const auto dof = static_cast<std::size_t>(RollInteger(dice, 0, 2));
    std::vector<SupportPoint> supports;
    for (int k = 0; k < 12; ++k) {
      supports.push_back({Along(start, RollDirection(dice), Roll(dice, 0.5, 1) * scene.reach),
                          static_cast<std::uint8_t>(1U << dof)});
    }
    const Body body = MakeBody(start, scene.size);
    Holding holding;
    FindFreeMotions(body, supports, holding);
    ASSERT_EQ(holding.freeMotions.size(), 3U);
    const std::string axis(1, static_cast<char>('x' + dof));
    EXPECT_EQ(holding.freeMotions[0].turns, false);
    EXPECT_EQ(holding.freeMotions[1].turns, false);
    // The turn in the plane is about the axis through the centroid: the others are named already.
    EXPECT_EQ(DirectionText(holding.freeMotions[2].direction), axis);
    EXPECT_NEAR(
        korvex::Length(korvex::Cross(korvex::Subtract(holding.freeMotions[2].point, body.centroid),
                                     holding.freeMotions[2].direction)),
        0.0, 1e-9 * (scene.size + scene.offset));
  }
}

std::string TextOf(const std::vector<SupportPoint>& supports, double z = 0.0) {
  const Body body = MakeBody({2.0, 3.0, z}, 5.0);
  Holding holding;
  FindFreeMotions(body, supports, holding);
  return MotionsText(body, holding.freeMotions);
}

TEST(RigidMotions, AreSaidInWords) {
  EXPECT_EQ(TextOf({}), "move and turn in all directions");
  EXPECT_EQ(TextOf({{{1, 1, 1}, 0x3F}}), "");
  EXPECT_EQ(TextOf({{{1, 2, 3}, Pinned}}), "turn about any axis through (1, 2, 3)");
  EXPECT_EQ(TextOf({{{1, 1, 1}, 0x3E}}), "move along x");
  EXPECT_EQ(TextOf({{{1, 1, 1}, 0x3C}}), "move along x and move along y");
  EXPECT_EQ(TextOf({{{0, 0, 0}, Pinned}, {{3, 4, 0}, Pinned}}),
            "turn about the line through (2.16, 2.88, 0) along <0.6, 0.8, 0>");
  EXPECT_EQ(TextOf({{{0, 0, 0}, 0x06}, {{7, 0, 0}, 0x06}}),
            "move along x and turn about the line through (2, 0, 0) along x");
  // A ball at the origin, and the rotation about z fixed.
  EXPECT_EQ(TextOf({{{0, 0, 0}, 0x27}}),
            "turn about the line through (2, 0, 0) along x and turn about the line through "
            "(0, 3, 0) along y");
}

// Three turns whose axes do not meet: about x at y = 5, about y at x = 0, about z at y = 1.
TEST(RigidMotions, AreNotSaidToMeetWhereTheyDoNot) {
  EXPECT_EQ(TextOf({{{0, 1, 0}, 0x01}, {{0, 0, 0}, 0x02}, {{0, 5, 0}, 0x04}}),
            "turn about the line through (2, 5, 0) along x, turn about the line through (0, 3, 0) "
            "along y and turn about the line through (0, 1, 0) along z");
}

// The body is free along x, and to turn about <1, 1, 0> in the plane z = 0; its centroid lies
// above. With a motion along x added, the turn is no screw: the axis passes through (2.5, 2.5, 0).
TEST(RigidMotions, UseFreeDirectionsToBePlainTurns) {
  EXPECT_EQ(TextOf({{{0, 0, 0}, 0x06}, {{5, 0, 0}, 0x02}, {{3, 3, 0}, 0x04}}, 4.0),
            "move along x and turn about the line through (2.5, 2.5, 0) along <0.707107, 0.707107, "
            "0>");
}

// The screw w = (1, 1, 0), t = (1, 1, 0): u = (1 + z, 1 - z, y - x), so its pitch is 1. The five
// fixed dofs lie where it moves nothing: ux where z = -1, uy where z = 1, uz where x = y.
TEST(RigidMotions, FindAScrew) {
  const std::vector<SupportPoint> supports{{{0, 0, -1}, 0x01},
                                           {{0, 4, -1}, 0x01},
                                           {{0, 0, 1}, 0x02},
                                           {{0, 0, 0}, 0x04},
                                           {{3, 3, 0}, 0x04}};
  const Body body = MakeBody({2.0, 3.0, 0.0}, 5.0);
  Holding holding;
  FindFreeMotions(body, supports, holding);
  ASSERT_EQ(holding.freeMotions.size(), 1U);
  EXPECT_EQ(MotionsText(body, holding.freeMotions),
            "turn about the line through (2.5, 2.5, 0) along <0.707107, 0.707107, 0> like a screw, "
            "which moves 1 along it in each radian");
}

}  // namespace
}  // namespace kvx::test
