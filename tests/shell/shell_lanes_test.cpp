// Shells in the lanes of vectors against the single routines, bit for bit, for every vector length
// that this processor has.
#include "shell/lanes/shell_lanes.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/vector_bits.h"
#include "results/corner_stress.h"
#include "shell/bilinear_map.h"
#include "shell/shell_stiffness.h"
#include "skyline/skyline_matrix.h"
#include "support/same_bits.h"

namespace korvex {
namespace {

constexpr std::int32_t Nodes = 7, Places = 3;

// Three shells with nodes in no order; two of them share an edge.
constexpr std::array<std::int32_t, 4 * Places> ShellNodes{0, 4, 2, 6, 6, 2, 5, 1, 3, 1, 4, 0};

using Numbers = std::vector<double>;

// The shells of one lane, warped quadrilaterals that lie anywhere, and displacements.
struct Lane {
  std::vector<Shell4Element> shells;
  Numbers displacements;
};

Lane MakeLane(std::mt19937& random) {
  std::uniform_real_distribution<double> shift(-0.2, 0.2), place(-50.0, 50.0);
  const std::array<std::array<double, 2>, 4> square{{{0, 0}, {1, 0}, {1, 1}, {0, 1}}};
  Lane lane;
  for (std::int32_t e = 0; e < Places; ++e) {
    Vector3 x = Normalise({place(random), place(random), place(random)});
    const Vector3 y = Normalise(Cross(x, {place(random), place(random), place(random)}));
    const Vector3 origin{place(random), place(random), place(random)};
    std::array<double, 12> coordinates{};
    for (std::size_t k = 0; k < 4; ++k) {
      const double a = square[k][0] + shift(random), b = square[k][1] + shift(random);
      for (std::size_t i = 0; i < 3; ++i) {
        coordinates[3 * k + i] = origin[i] + a * x[i] + b * y[i] + 0.1 * shift(random);
      }
    }
    lane.shells.emplace_back();
    SetGeometry(lane.shells.back(), coordinates.data(), 4, 2e11 * (1 + shift(random)),
                0.25 + shift(random), 0.3 + shift(random));
  }
  for (std::int32_t i = 0; i < 6 * Nodes; ++i) lane.displacements.push_back(shift(random));
  return lane;
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

void ExpectBitsOfSingleRoutines(int bits, unsigned seed) {
  std::mt19937 random(seed);
  const ShellRoutines routines = FindShellRoutines(bits);
  const auto lanes = static_cast<std::size_t>(routines.lanes);
  std::vector<Lane> all;
  Numbers numbers, displacements;
  for (std::size_t lane = 0; lane < lanes; ++lane) {
    all.push_back(MakeLane(random));
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
    AllocateValues(K);
    Numbers expected;
    SolveAlone(all[lane], K, expected);
    EXPECT_TRUE(test::SameBits(GetLane(values, lanes, lane), K.Values)) << bits << ' ' << lane;
    EXPECT_TRUE(test::SameBits(GetLane(stresses, lanes, lane), expected)) << bits << ' ' << lane;
  }
}

TEST(ShellLanes, BitsOfTheSingleRoutines) {
  for (const int bits : {128, 256, 512}) {
    if (bits > WidestVectorBits()) continue;
    for (unsigned seed = 1; seed <= 20; ++seed) ExpectBitsOfSingleRoutines(bits, seed);
  }
}

TEST(ShellLanes, NoLanesWithoutVectors) {
  EXPECT_EQ(FindShellRoutines(0).lanes, 1);
  EXPECT_EQ(FindShellRoutines(0).add, nullptr);
}

}  // namespace
}  // namespace korvex
