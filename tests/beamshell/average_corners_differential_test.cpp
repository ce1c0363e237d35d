// The averages over random detail models, bit for bit against a plain loop over all pairs of
// corners.
//
// Frames of real sections with ends about one tolerance apart, and shells on random points of a
// lattice about as fine as the tolerance. Coordinates are small, large or not finite.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <utility>

#include "beamshell/average_corners.h"
#include "beamshell/extrude_outline.h"

namespace korvex {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

using Models = std::vector<BeamShellModel>;

// How often the plain loop has met each case, to be sure that all cases are tested.
struct Tally {
  int apart = 0;      // corners too far from each other
  int near = 0;       // corners within the tolerance, but not at the same place
  int placeless = 0;  // pairs whose distance is not a number
  int outside = 0;    // corners in another surface
  int upright = 0;    // corners averaged as they are
  int swapped = 0;    // and with faces swapped
  int sharing = 0;    // pairs of models with a common end
  int strange = 0;    // and without
  int empty = 0;      // corners averaged with nothing
};

// Expects that each case was met often enough for the comparison to mean something.
void ExpectAllMet(const Tally& tally) {
  for (const int cases : {tally.apart, tally.near, tally.placeless, tally.outside, tally.upright,
                          tally.swapped, tally.sharing, tally.strange, tally.empty}) {
    EXPECT_GT(cases, 1000);
  }
}

struct Sums {
  StressVector A{}, B{};
  double count = 0.0;
};

double Distance(const Vector3& a, const Vector3& b) {
  const double x = a[0] - b[0], y = a[1] - b[1], z = a[2] - b[2];
  return std::sqrt(x * x + y * y + z * z);
}

// Adds all corners of `model` that match the corner at p of the shell `own`.
void AddMatching(const BeamShellModel& model, const Shell4Element& own, const Vector3& p,
                 Sums& sums, Tally& tally) {
  for (std::size_t corner = 0; corner < model.ShellNodes.size(); ++corner) {
    const Shell4Element& other = model.Shells[corner / 4];
    const Vector3& q = model.NodeCoords[static_cast<std::size_t>(model.ShellNodes[corner])];
    const double distance = Distance(q, p);
    if (distance > 0.001) {
      ++tally.apart;
      continue;
    }
    if (distance > 0.0) ++tally.near;
    if (std::isnan(distance)) ++tally.placeless;
    Vector3 n{own.Frame[2], own.Frame[5], own.Frame[8]}, w{};
    Vector3 m{other.Frame[2], other.Frame[5], other.Frame[8]};
    const bool swapped = m[0] * n[0] + m[1] * n[1] + m[2] * n[2] <= 0.0;
    for (std::size_t i = 0; i < 3; ++i) {
      if (swapped) m[i] = -m[i];
      w[i] = other.TK / 2.0 * m[i] - own.TK / 2.0 * n[i];
    }
    const bool outside = Distance(w, {}) > own.TK / 10.0;
    ++(outside ? tally.outside : swapped ? tally.swapped : tally.upright);
    if (outside) continue;
    const StressVector& A = other.NodeStressTop[corner % 4];
    const StressVector& B = other.NodeStressBottom[corner % 4];
    for (std::size_t i = 0; i < 6; ++i) {
      sums.A[i] += swapped ? B[i] : A[i];
      sums.B[i] += swapped ? A[i] : B[i];
    }
    sums.count += 1.0;
  }
}

bool ShareAnEnd(const BeamShellModel& a, const BeamShellModel& b) {
  return Distance(a.EndPoint1, b.EndPoint1) < 0.001 || Distance(a.EndPoint1, b.EndPoint2) < 0.001 ||
         Distance(a.EndPoint2, b.EndPoint1) < 0.001 || Distance(a.EndPoint2, b.EndPoint2) < 0.001;
}

// Whether the averages are sums / count, bit for bit, or NaN where these are.
bool AreQuotients(const StressVector& averages, const StressVector& sums, double count) {
  for (std::size_t i = 0; i < 6; ++i) {
    const double quotient = sums[i] / count;
    if (std::isnan(quotient) && std::isnan(averages[i])) continue;
    if (std::memcmp(&quotient, &averages[i], sizeof quotient) != 0) return false;
  }
  return true;
}

// Compares all averages with the rule.
void CompareAll(const Models& models, Tally& tally) {
  for (std::size_t b = 0; b < models.size(); ++b) {
    const BeamShellModel& model = models[b];
    std::vector<const BeamShellModel*> family{&model};
    for (std::size_t other = 0; other < models.size(); ++other) {
      if (other == b) continue;
      const bool sharing = ShareAnEnd(model, models[other]);
      if (sharing) family.push_back(&models[other]);
      ++(sharing ? tally.sharing : tally.strange);
    }
    for (std::size_t corner = 0; corner < model.ShellNodes.size(); ++corner) {
      const Shell4Element& shell = model.Shells[corner / 4];
      const std::size_t k = corner % 4;
      const Vector3& p = model.NodeCoords[static_cast<std::size_t>(model.ShellNodes[corner])];
      Sums sums;
      for (const BeamShellModel* member : family) AddMatching(*member, shell, p, sums, tally);
      if (sums.count == 0.0) ++tally.empty;
      ASSERT_TRUE(AreQuotients(shell.AvgStressTop[k], sums.A, sums.count)) << b << ' ' << corner;
      ASSERT_TRUE(AreQuotients(shell.AvgStressBottom[k], sums.B, sums.count)) << b << ' ' << corner;
    }
  }
}

using Generator = std::mt19937;

double Uniform(Generator& random, double low, double high) {
  return std::uniform_real_distribution<double>(low, high)(random);
}

int Pick(Generator& random, int count) {
  return std::uniform_int_distribution<int>(0, count - 1)(random);
}

template <typename Value>
Value PickOf(Generator& random, const std::vector<Value>& values) {
  return values[static_cast<std::size_t>(Pick(random, static_cast<int>(values.size())))];
}

void RandomiseStresses(Generator& random, Models& models) {
  for (BeamShellModel& model : models) {
    for (Shell4Element& shell : model.Shells) {
      for (auto* face : {&shell.NodeStressTop, &shell.NodeStressBottom}) {
        for (StressVector& corner : *face) {
          for (double& value : corner) value = Uniform(random, -300.0, 300.0);
        }
      }
    }
  }
}

// The region of a model. Doubles at 1e12 are 0.0001 apart, at 1e13 0.002, at 1e16 2.
Vector3 MakeOrigin(Generator& random) {
  Vector3 origin{};
  if (Pick(random, 2) == 0) return origin;
  for (double& x : origin) x = PickOf<double>(random, {0.0, 7.0, -1e6, 1e12, -1e13, 1e16});
  return origin;
}

// `point` moved along one axis by more or less than the tolerance, mostly not at all.
Vector3 Nudge(Generator& random, Vector3 point) {
  const double below = std::nextafter(0.001, 0.0), above = std::nextafter(0.001, 1.0);
  const auto distance =
      PickOf<double>(random, {0.0, 0.0, 0.0, 0.0, 0.0004, below, 0.001, above, 0.0012, 0.009});
  point[static_cast<std::size_t>(Pick(random, 3))] += Pick(random, 2) == 0 ? distance : -distance;
  return point;
}

// A T, L or tube of about `size`, some plates without thickness or with a negative one.
void MakeRandomOutline(Generator& random, double size, SectionOutline& outline) {
  const auto thickness = [&] {
    return size * PickOf<double>(random, {0.1, 0.1, 0.1, 0.11, 0.12, 0.125, 0.0, -0.1});
  };
  const double Hw = size * PickOf<double>(random, {1.0, 1.5, 3.0}), Tw = thickness();
  const double Bf = size * PickOf<double>(random, {0.0, 1.0, 2.0}), Tf = thickness();
  const int kind = Pick(random, 5);
  if (kind < 2) BuildTOutline({Hw, Tw, Bf, Tf}, Pick(random, 2), outline);
  if (kind == 2) BuildLOutline({Hw, Tw, Bf, Tf}, Pick(random, 2) == 0, 0, outline);
  if (kind == 3) BuildLOutline({Hw, Tw, Bf, Tf}, false, 1, outline);
  if (kind == 4) BuildCOutline({Hw / 2.0, Tw}, 0, outline);
  if (Pick(random, 3) == 0) ShiftOutline(-Hw, outline);
}

// Two to five beams between three places, so that most share an end, or nearly, and some have none
// or nearly no length. The smallest sections fit into the tolerance.
Models MakeRandomFrame(Generator& random) {
  const auto size = PickOf<double>(random, {100.0, 1.0, 0.01, 0.002, 0.0005});
  const Vector3 origin = MakeOrigin(random);
  std::vector<Vector3> places(3, origin);
  for (Vector3& place : places) {
    for (double& x : place) x += size * (Pick(random, 5) - 2);
  }
  SectionOutline outline;
  Models models(static_cast<std::size_t>(2 + Pick(random, 4)));
  for (BeamShellModel& model : models) {
    model.EndPoint1 = Nudge(random, PickOf(random, places));
    model.EndPoint2 = Nudge(random, PickOf(random, places));
    model.OrientVector = PickOf<Vector3>(random, {{0, 0, 1}, {0, 0, 1}, {0, 1, 0}, {1, -2, 3}});
    // Mostly the same section, and none so small that it takes many steps.
    const double length = Distance(model.EndPoint1, model.EndPoint2);
    if (outline.points.empty() || Pick(random, 3) == 0) {
      MakeRandomOutline(random, std::max(size, length / 2.0), outline);
    }
    if (length > 10.0 * LongestSegment(outline)) MakeRandomOutline(random, length, outline);
    ExtrudeOutline(outline, 0, model);
  }
  RandomiseStresses(random, models);
  return models;
}

TEST(AverageCorners, RandomFramesAgreeWithTheRuleOverAllPairs) {
  Tally tally;
  for (unsigned seed = 1; seed <= 400; ++seed) {
    SCOPED_TRACE(seed);
    Generator random(seed);
    Models models = MakeRandomFrame(random);
    AverageBeamShellStresses(models);
    CompareAll(models, tally);
    if (HasFatalFailure()) return;
  }
  ExpectAllMet(tally);
}

// So many beams from one point to the corners of a cube around it: many lie on each other.
Models MakeStar(Generator& random, std::size_t beams) {
  SectionOutline outline;
  BuildTOutline({1.0, 0.1, 1.0, 0.1}, 0, outline);
  Models models(beams);
  for (BeamShellModel& model : models) {
    for (double& x : model.EndPoint2) x = PickOf<double>(random, {-1.0, 1.0});
    if (Pick(random, 2) == 0) std::swap(model.EndPoint1, model.EndPoint2);
    model.OrientVector = {0, 0, 1};
    ExtrudeOutline(outline, 0, model);
  }
  RandomiseStresses(random, models);
  return models;
}

// Models are asked one by one whether they have nodes near a point, unless there are too many. The
// beam has 31, 32 and 33 neighbours, and some more.
TEST(AverageCorners, StarsAgreeWithTheRuleOverAllPairs) {
  Generator random(1);
  for (const std::size_t beams : {32U, 33U, 34U, 50U}) {
    SCOPED_TRACE(beams);
    Tally tally;
    Models models = MakeStar(random, beams);
    AverageBeamShellStresses(models);
    CompareAll(models, tally);
    if (HasFatalFailure()) return;
    // Each corner is averaged with itself; that many more are corners of other beams.
    const std::size_t corners = beams * models[0].ShellNodes.size();
    EXPECT_GT(static_cast<std::size_t>(tally.upright + tally.swapped), 4 * corners);
  }
}

// A shell on any four of the model's points. Averaging reads only its normal and thickness.
void AddRandomShell(Generator& random, BeamShellModel& model) {
  const double c = std::cos(0.2), s = std::sin(0.2);  // 11.459 degrees, just within the bound
  const double C = std::cos(0.201), S = std::sin(0.201);
  const std::vector<Vector3> normals{{0, 0, 1}, {0, 0, 1},      {0, 0, -1}, {0, 0, -1},
                                     {0, s, c}, {0, -s, -c},    {S, 0, C},  {-S, 0, -C},
                                     {0, 1, 0}, {NaN, NaN, NaN}};
  for (int k = 0; k < 4; ++k) model.ShellNodes.push_back(Pick(random, 10));
  Shell4Element& shell = model.Shells.emplace_back();
  shell.TK = PickOf<double>(random, {10.0, 10.0, 10.0, 11.0, 12.0, 12.5, 0.0, -10.0, NaN});
  const Vector3 normal = PickOf(random, normals);
  for (std::size_t i = 0; i < 3; ++i) shell.Frame[3 * i + 2] = normal[i];
}

// A point of a lattice, or one beside it, or one that is not finite or very far.
Vector3 MakeRandomPoint(Generator& random, const Vector3& origin, double step) {
  Vector3 p = origin;
  for (double& x : p) x += Pick(random, 4) * step;
  double& x = p[static_cast<std::size_t>(Pick(random, 3))];
  if (Pick(random, 4) == 0) x = std::nextafter(x, -x);
  if (Pick(random, 30) == 0) {
    x = PickOf<double>(random, {NaN, NaN, Infinity, -Infinity, 1e300, -0.0});
  }
  return p;
}

// Up to four models of ten points and up to six shells each. The lattice of the points is about as
// fine as the tolerance. The ends are independent of the points.
Models MakeRandomShells(Generator& random) {
  const auto step = PickOf<double>(random, {0.00025, 0.0005, 0.001, 0.0011, 0.004, 1.0});
  const Vector3 origin = MakeOrigin(random);
  const std::vector<Vector3> ends{
      {0, 0, 0}, {5, 5, 5}, {1e16, 0, 1e16}, {NaN, 0, 0}, {Infinity, 0, 0}};
  Models models(static_cast<std::size_t>(1 + Pick(random, 4)));
  for (BeamShellModel& model : models) {
    model.EndPoint1 = Nudge(random, PickOf(random, ends));
    model.EndPoint2 = Nudge(random, PickOf(random, ends));
    for (int i = 0; i < 10; ++i) model.NodeCoords.push_back(MakeRandomPoint(random, origin, step));
    for (int shells = Pick(random, 7); shells > 0; --shells) AddRandomShell(random, model);
  }
  RandomiseStresses(random, models);
  return models;
}

TEST(AverageCorners, RandomShellsAgreeWithTheRuleOverAllPairs) {
  Tally tally;
  for (unsigned seed = 1; seed <= 1500; ++seed) {
    SCOPED_TRACE(seed);
    Generator random(seed);
    Models models = MakeRandomShells(random);
    AverageBeamShellStresses(models);
    CompareAll(models, tally);
    if (HasFatalFailure()) return;
  }
  ExpectAllMet(tally);
}

}  // namespace
}  // namespace korvex
