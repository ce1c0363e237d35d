// Shells in the lanes of vectors against the single routines, bit for bit, for every vector length
// that this processor has.
#include "shell/lanes/shell_lanes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <utility>

#include "base/finite.h"
#include "platform/vector_bits.h"
#include "results/corner_stress.h"
#include "shell/bilinear_map.h"
#include "shell/element_parts.h"
#include "shell/lanes/form_shells.h"
#include "shell/shell_stiffness.h"
#include "skyline/skyline_matrix.h"
#include "support/same_bits.h"

namespace korvex {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

constexpr std::int32_t Nodes = 7, Places = 3;

// Three shells with nodes in no order; two of them share an edge.
constexpr std::array<std::int32_t, 4 * Places> ShellNodes{0, 4, 2, 6, 6, 2, 5, 1, 3, 1, 4, 0};

using Numbers = std::vector<double>;

using Corners = std::array<std::array<double, 2>, 4>;  // of a quadrilateral in its plane

constexpr Corners Square{{{0, 0}, {1, 0}, {1, 1}, {0, 1}}};

// The element's normal is that of its first corner. Seen from there, these quadrilaterals have a
// negative Jacobian determinant at some integration points.
constexpr Corners BowTie{{{0, 0}, {1, 0}, {0.1, 0.9}, {0.8, 1.1}}};
constexpr Corners ConcaveAtThird{{{0, 0}, {1, 0}, {0.1, 0.12}, {0, 1}}};
constexpr Corners ConcaveAtFirst{{{0.2, 0.25}, {1, 0}, {-0.1, -0.1}, {0, 1}}};

// The shells of one lane, and displacements.
struct Lane {
  std::vector<Shell4Element> shells;
  Numbers displacements;
};

// Warped quadrilaterals that lie anywhere, each with corners of its own shape nearby.
Lane MakeLane(const Corners& shape, std::mt19937& random) {
  std::uniform_real_distribution<double> shift(-0.2, 0.2), place(-50.0, 50.0);
  const double most = shape == Square ? 1.0 : 0.1;  // so that other shapes keep their kind
  Lane lane;
  for (std::int32_t e = 0; e < Places; ++e) {
    Vector3 x = Normalise({place(random), place(random), place(random)});
    const Vector3 y = Normalise(Cross(x, {place(random), place(random), place(random)}));
    const Vector3 origin{place(random), place(random), place(random)};
    std::array<double, 12> coordinates{};
    for (std::size_t k = 0; k < 4; ++k) {
      const double a = shape[k][0] + most * shift(random), b = shape[k][1] + most * shift(random);
      for (std::size_t i = 0; i < 3; ++i) {
        coordinates[3 * k + i] = origin[i] + a * x[i] + b * y[i] + 0.1 * most * shift(random);
      }
    }
    lane.shells.emplace_back();
    SetGeometry(lane.shells.back(), coordinates.data(), 4, 2e11 * (1 + shift(random)),
                0.25 + shift(random), 0.3 + shift(random));
  }
  for (std::int32_t i = 0; i < 6 * Nodes; ++i) lane.displacements.push_back(shift(random));
  return lane;
}

// Shells in coordinate planes with edges along the axes, in one of 48 positions: coordinates and
// frames have zeros, many of them negative, and so have the displacements.
Lane MakeParallelLane(unsigned position, std::mt19937& random) {
  const std::size_t first = position % 3, second = (first + 1 + position / 3 % 2) % 3;
  const double a = position / 6 % 2 == 0 ? 1.0 : -1.0, b = position / 12 % 2 == 0 ? 0.5 : -0.5;
  const double zero = position / 24 % 2 == 0 ? 0.0 : -0.0;
  Lane lane;
  for (std::int32_t e = 0; e < Places; ++e) {
    std::array<double, 12> coordinates{};
    coordinates.fill(zero);
    for (std::size_t k = 0; k < 4; ++k) {
      if (k == 1 || k == 2) coordinates[3 * k + first] = a * (e + 1);
      if (k >= 2) coordinates[3 * k + second] = b;
    }
    lane.shells.emplace_back();
    SetGeometry(lane.shells.back(), coordinates.data(), 4, 2e11, 0.25, 0.02);
  }
  for (std::int32_t i = 0; i < 6 * Nodes; ++i) {
    const double displacements[]{0.0, -0.0, 0.001, -0.002};
    lane.displacements.push_back(displacements[random() % 4]);
  }
  return lane;
}

// The integration points of a shell at which its Jacobian determinant is negative.
int CountNegative(const Shell4Element& shell) {
  Array4 x{}, y{}, J{}, Jinv{};
  Matrix2x4 dN{}, dNdx{};
  ComputeLocalCoordinates(shell.Coordinates.data(), 4, shell.Frame, x.data(), y.data());
  int count = 0;
  for (const double xi : GaussPoints) {
    for (const double eta : GaussPoints) {
      double detJ = 0.0;
      BilinearDerivatives(xi, eta, dN);
      BilinearJacobian(dN, x, y, J, detJ, Jinv, dNdx);
      if (detJ < 0.0) ++count;
    }
  }
  return count;
}

// The last corners first. The frame stays, so that the determinants change their sign.
void ReverseCorners(Shell4Element& shell) {
  for (std::size_t i = 0; i < 3; ++i) {
    std::swap(shell.Coordinates[i], shell.Coordinates[9 + i]);
    std::swap(shell.Coordinates[3 + i], shell.Coordinates[6 + i]);
  }
}

// Another system of axes: the plane's second axis and the normal point the other way.
void TurnFrame(Shell4Element& shell) {
  for (const std::size_t i : {1U, 2U, 4U, 5U, 7U, 8U}) shell.Frame[i] = -shell.Frame[i];
}

SkylineMatrix MakeProfile() {
  SkylineMatrix K;
  InitColumnHeights(K, 6 * Nodes);
  for (std::size_t j = 0; j < K.ColumnHeights.size(); ++j) {
    K.ColumnHeights[j] = static_cast<std::int32_t>(j) + 1;
  }
  ComputeDiagonalAddresses(K);
  AllocateValues(K);
  return K;
}

// What the single routines give one lane.
void SolveAlone(const Lane& lane, SkylineMatrix& K, Numbers& stresses) {
  for (std::size_t e = 0; e < Places; ++e) {
    std::array<double, 576> ke{};
    std::array<std::int32_t, 24> g{};
    std::array<double, 24> d{};
    for (std::size_t i = 0; i < 24; ++i) {
      g[i] = ShellNodes[4 * e + i / 6] * 6 + static_cast<std::int32_t>(i % 6);
      d[i] = lane.displacements[static_cast<std::size_t>(g[i])];
    }
    Shell4Stiffness(lane.shells[e], ke.data());
    ScatterElement(ke.data(), g.data(), 24, K);
    for (std::size_t k = 0; k < 4; ++k) {
      StressVector top, bottom;
      Shell4CornerStress(lane.shells[e], top, bottom, d.data(), CornerXi[k], CornerEta[k]);
      stresses.insert(stresses.end(), top.begin(), top.end());
      stresses.insert(stresses.end(), bottom.begin(), bottom.end());
    }
  }
}

// The numbers of a shell in the order of shell_lanes.h.
Numbers NumbersOf(const Shell4Element& shell) {
  Numbers numbers(shell.Coordinates.begin(), shell.Coordinates.end());
  numbers.insert(numbers.end(), shell.Frame.begin(), shell.Frame.end());
  numbers.insert(numbers.end(), {shell.E, shell.Mu, shell.TK});
  return numbers;
}

// values[i * lanes + lane] of all lanes.
void SetLane(const Numbers& numbers, std::size_t lanes, std::size_t lane, std::size_t first,
             Numbers& all) {
  all.resize(std::max(all.size(), (first + numbers.size()) * lanes));
  for (std::size_t i = 0; i < numbers.size(); ++i) all[(first + i) * lanes + lane] = numbers[i];
}

Numbers GetLane(const Numbers& all, std::size_t lanes, std::size_t lane) {
  Numbers numbers;
  for (std::size_t i = lane; i < all.size(); i += lanes) numbers.push_back(all[i]);
  return numbers;
}

// The bits of a lane, or at least something that tells that it has to be computed alone.
template <typename Expected>
void ExpectBits(const Numbers& numbers, const Expected& expected) {
  if (AreFinite(expected.data(), expected.size())) {
    EXPECT_TRUE(test::SameBits(numbers, expected));
  } else {
    EXPECT_FALSE(AreFinite(numbers.data(), numbers.size()));
  }
}

void ExpectBitsOfSingleRoutines(const ShellRoutines& routines, const std::vector<Lane>& all) {
  const std::size_t lanes = all.size();
  Numbers numbers, displacements;
  for (std::size_t lane = 0; lane < lanes; ++lane) {
    SetLane(all[lane].displacements, lanes, lane, 0, displacements);
    for (std::size_t e = 0; e < Places; ++e) {
      SetLane(NumbersOf(all[lane].shells[e]), lanes, lane, e * ShellNumbers, numbers);
    }
  }
  SkylineMatrix K = MakeProfile();
  Numbers values(K.Values.size() * lanes), stresses(Places * ShellStresses * lanes);
  const ShellLanes shells = {Places, numbers.data(), ShellNodes.data()};
  routines.add(shells, K.DiagonalAddress.data(), values.data());
  routines.recover(shells, displacements.data(), stresses.data());
  for (std::size_t lane = 0; lane < lanes; ++lane) {
    SCOPED_TRACE(testing::Message() << "lane " << lane << " of " << lanes);
    AllocateValues(K);
    Numbers expected;
    SolveAlone(all[lane], K, expected);
    ExpectBits(GetLane(values, lanes, lane), K.Values);
    ExpectBits(GetLane(stresses, lanes, lane), expected);
  }
}

// The matrices of the shells of all lanes but the last two shells, which leave lanes empty. NaNs
// have their signs, too.
void ExpectMatricesOfSingleRoutine(int bits, const std::vector<Lane>& all) {
  std::vector<Shell4Element> shells;
  for (const Lane& lane : all) shells.insert(shells.end(), lane.shells.begin(), lane.shells.end());
  const std::size_t count = shells.size() - 2;
  std::vector<Numbers> matrices(count, Numbers(24 * 24, NaN));
  std::vector<double*> places;
  for (Numbers& matrix : matrices) places.push_back(matrix.data());
  FormShell4Stiffnesses(bits, shells.data(), count, places.data());
  for (std::size_t e = 0; e < count; ++e) {
    Numbers expected(24 * 24);
    Shell4Stiffness(shells[e], expected.data());
    EXPECT_TRUE(test::SameBits(matrices[e], expected)) << bits << " bits, shell " << e;
  }
}

// Compares `repeats` groups of lanes made by `make` for every vector length.
template <typename Make>
void CompareWidths(int repeats, const Make& make) {
  for (const int bits : {128, 256, 512}) {
    if (bits > WidestVectorBits()) continue;
    const ShellRoutines routines = FindShellRoutines(bits);
    for (int repeat = 0; repeat < repeats; ++repeat) {
      std::vector<Lane> lanes;
      while (lanes.size() < static_cast<std::size_t>(routines.lanes)) lanes.push_back(make());
      ExpectBitsOfSingleRoutines(routines, lanes);
      ExpectMatricesOfSingleRoutine(bits, lanes);
    }
  }
}

TEST(ShellLanes, BitsOfTheSingleRoutines) {
  std::mt19937 random(1);
  CompareWidths(20, [&] { return MakeLane(Square, random); });
}

TEST(ShellLanes, NegativeDeterminants) {
  std::mt19937 random(2);
  for (const Corners& shape : {BowTie, ConcaveAtThird, ConcaveAtFirst}) {
    CompareWidths(5, [&] {
      Lane lane = MakeLane(shape, random);
      for (const Shell4Element& shell : lane.shells) EXPECT_GT(CountNegative(shell), 0);
      return lane;
    });
  }
  for (const auto change : {ReverseCorners, TurnFrame}) {
    CompareWidths(5, [&] {
      Lane lane = MakeLane(Square, random);
      change(lane.shells[1]);
      EXPECT_EQ(CountNegative(lane.shells[1]), 4);
      return lane;
    });
  }
}

TEST(ShellLanes, NegativeThicknessAndMaterial) {
  std::mt19937 random(3);
  CompareWidths(20, [&] {
    Lane lane = MakeLane(random() % 2 == 0 ? Square : BowTie, random);
    for (Shell4Element& shell : lane.shells) {
      double* const changed[]{&shell.TK, &shell.E, &shell.Mu};
      double& number = *changed[random() % 3];
      number = -number;
    }
    return lane;
  });
}

TEST(ShellLanes, ParallelToTheAxes) {
  std::mt19937 random(4);
  unsigned position = 0;
  int negativeZeros = 0;
  CompareWidths(48, [&] {
    Lane lane = MakeParallelLane(position++, random);
    for (const double entry : lane.shells[0].Frame) {
      if (entry == 0.0 && std::signbit(entry)) ++negativeZeros;
    }
    return lane;
  });
  EXPECT_GT(negativeZeros, 0);
}

// One lane has something that gives infinities or NaNs. It tells, and the others keep their bits.
TEST(ShellLanes, SpoiltLanes) {
  const std::vector<void (*)(Shell4Element&)> spoil{
      [](Shell4Element& shell) { shell.Coordinates.fill(1.0); },
      [](Shell4Element& shell) { shell.Coordinates[4] = NaN; },
      [](Shell4Element& shell) { shell.Coordinates[7] = Infinity; },
      [](Shell4Element& shell) { shell.Frame.fill(NaN); },
      [](Shell4Element& shell) { shell.Frame[5] = Infinity; },
      [](Shell4Element& shell) { shell.E = Infinity; },
      [](Shell4Element& shell) { shell.Mu = 1.0; },
      [](Shell4Element& shell) { shell.TK = NaN; },
      [](Shell4Element& shell) { shell.TK = 0.0; },
      [](Shell4Element& shell) { shell.E = 1e308; },
  };
  std::mt19937 random(5);
  unsigned made = 0;
  CompareWidths(40, [&] {
    Lane lane = MakeLane(Square, random);
    if (++made % 2 == 0) spoil[made / 2 % spoil.size()](lane.shells[random() % Places]);
    return lane;
  });
}

TEST(ShellLanes, NoLanesWithoutVectors) {
  EXPECT_EQ(FindShellRoutines(0).lanes, 1);
  EXPECT_EQ(FindShellRoutines(0).add, nullptr);
  std::mt19937 random(6);
  ExpectMatricesOfSingleRoutine(0, {MakeLane(Square, random)});
}

}  // namespace
}  // namespace korvex
