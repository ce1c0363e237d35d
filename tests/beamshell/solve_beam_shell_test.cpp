// The stages of a detail model's solution: the profile against the elements' pairs of equations,
// the matrix bit for bit against a dense sum, the driven nodes one by one, the displacements
// against elimination in long double, the stresses corner by corner.
#include "beamshell/solve_beam_shell.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>

#include "beam/beam_stiffness.h"
#include "beamshell/extrude_outline.h"
#include "results/corner_stress.h"
#include "shell/shell_stiffness.h"
#include "skyline/reserve_system.h"
#include "skyline/solve_skyline.h"
#include "support/detail_beams.h"
#include "support/dof_names.h"

namespace korvex::test {
namespace {

// For most of these values, two products with 1e20 and one product with 1e40 differ in the last
// bit.
constexpr Six U1{0.001, -0.002, 0.0125, 0.1, -0.004, 0.2};
constexpr Six U2{0.7, 0.0001, 0.0002, -0.0125, 0.00023, -0.001};

// An oblique beam of two or three steps at level 0, and of some more at the others.
BeamShellModel MakeOblique(const TestSection& section, std::int32_t meshLevel = 0) {
  return ExtrudeBeam(
      {section, {1.0, -2.0, 0.5}, {1.3, -1.9, 0.8}, {0.25, 1.0, 0.5}, 2e11, 0.3, meshLevel});
}

// A flat bar along X with its web along Z: 3 high, 0.5 thick, 6 long. Its outline points lie at
// z = 0, 1, 2, 3 plus the offset, nodes 1 to 4 at x = 0 and so on to nodes 25 to 28 at x = 6; node
// 29 is the last. All coordinates, and the distances to the axis, are exact.
BeamShellModel MakeBar(double BeamSecOz) {
  const TestSection section{"Bar", BeamSecTypeT, {3.0, 0.5, 0.0, 0.0}, BeamSecOz, false};
  return ExtrudeBeam({section, {0, 0, 0}, {6, 0, 0}, {0, 0, 1}, 2e5, 0.3, 0});
}

constexpr std::size_t BarLastNode = 29;

class BeamShellStages : public testing::TestWithParam<TestSection> {};

INSTANTIATE_TEST_SUITE_P(AllSections, BeamShellStages, testing::ValuesIn(AllSections()),
                         [](const testing::TestParamInfo<TestSection>& section) {
                           return section.param.name;
                         });

// lowest[i]: the lowest node that shares an element with node i.
void LowerToElements(const std::vector<std::int32_t>& connectivity, std::size_t nodesPerElement,
                     std::vector<std::int32_t>& lowest) {
  for (std::size_t a = 0; a < connectivity.size(); ++a) {
    const std::size_t first = a - a % nodesPerElement;
    for (std::size_t b = first; b < first + nodesPerElement; ++b) {
      std::int32_t& low = lowest[static_cast<std::size_t>(connectivity[a])];
      low = std::min(low, connectivity[b]);
    }
  }
}

// A column's height is 1 + its equation number - the lowest equation that an element couples with
// it.
TEST_P(BeamShellStages, ColumnsReachTheLowestCoupledEquation) {
  for (const std::int32_t level : {0, 1, 2}) {
    BeamShellModel model = MakeOblique(GetParam(), level);
    std::vector<std::int32_t> lowest(model.NodeCoords.size());
    for (std::size_t i = 0; i < lowest.size(); ++i) lowest[i] = static_cast<std::int32_t>(i);
    LowerToElements(model.ShellNodes, 4, lowest);
    LowerToElements(model.LinkNodes, 2, lowest);
    std::vector<std::int32_t> heights;
    std::vector<std::int64_t> addresses;
    std::int64_t size = 0;
    for (std::int32_t equation = 0; equation < model.NEQ; ++equation) {
      heights.push_back(equation - 6 * lowest[static_cast<std::size_t>(equation / 6)] + 1);
      addresses.push_back(size);
      size += heights.back();
    }

    model.LoadVector = {1.0, 2.0};  // old contents must not matter
    model.Stiffness.Values = {3.0, 4.0};
    BuildBeamShellProfile(model);
    EXPECT_EQ(model.Stiffness.ColumnHeights, heights);
    EXPECT_EQ(model.Stiffness.DiagonalAddress, addresses);
    EXPECT_EQ(model.Stiffness.SkylineSize, size);
    EXPECT_EQ(model.Stiffness.Values, MatrixValues(static_cast<std::size_t>(size), 0.0));
    EXPECT_EQ(model.LoadVector, std::vector<double>(static_cast<std::size_t>(model.NEQ), 0.0));
    EXPECT_EQ(model.Displacements.size(), static_cast<std::size_t>(model.NEQ));
  }
}

// The bar's lowest point lies on the axis. Its links have no length and no stiffness, but the
// profile couples node 1 with node 0, and node 29 with node 25, all the same.
TEST(SolveBeamShell, LinksWithoutLengthRaiseTheirColumns) {
  BeamShellModel model = MakeBar(0.0);
  BuildBeamShellProfile(model);
  for (std::size_t d = 0; d < 6; ++d) {
    EXPECT_EQ(model.Stiffness.ColumnHeights[Equation(1, d)], static_cast<std::int32_t>(6 + d + 1));
    EXPECT_EQ(model.Stiffness.ColumnHeights[Equation(29, d)],
              static_cast<std::int32_t>(6 * 4 + d + 1));
  }
}

using FullMatrix = std::vector<std::vector<double>>;  // [n][n]; only the upper triangle is used

// Adds an element's matrix, pair of dofs by pair of dofs. ke: n x n; nodes: n / 6.
void AddElement(const std::vector<double>& ke, const std::int32_t* nodes, std::size_t n,
                FullMatrix& sum) {
  const auto equation = [nodes](std::size_t i) { return Equation(nodes[i / 6], i % 6); };
  for (std::size_t r = 0; r < n; ++r) {
    for (std::size_t c = r; c < n; ++c) {
      const std::size_t a = equation(r), b = equation(c);
      sum[std::min(a, b)][std::max(a, b)] += ke[r * n + c];
    }
  }
}

void AddShells(const BeamShellModel& model, FullMatrix& sum) {
  std::vector<double> ke(24 * 24);
  for (std::size_t e = 0; e < model.Shells.size(); ++e) {
    Shell4Stiffness(model.Shells[e], ke.data());
    AddElement(ke, &model.ShellNodes[4 * e], 24, sum);
  }
}

void AddLinks(const BeamShellModel& model, const std::set<std::size_t>& leftOut, FullMatrix& sum) {
  std::vector<double> ke(12 * 12);
  for (std::size_t i = 0; i < model.Links.size(); ++i) {
    if (leftOut.count(i) > 0) continue;
    BeamStiffness(model.Links[i], ke.data());
    AddElement(ke, &model.LinkNodes[2 * i], 12, sum);
  }
}

// The sum of all shells and then of all links except `leftOut`, or first of the links.
FullMatrix SumElements(const BeamShellModel& model, const std::set<std::size_t>& leftOut,
                       bool linksFirst = false) {
  const auto n = static_cast<std::size_t>(model.NEQ);
  FullMatrix sum(n, std::vector<double>(n, 0.0));
  if (linksFirst) AddLinks(model, leftOut, sum);
  AddShells(model, sum);
  if (!linksFirst) AddLinks(model, leftOut, sum);
  return sum;
}

FullMatrix FillOut(const SkylineMatrix& K) {
  const std::size_t n = K.ColumnHeights.size();
  FullMatrix full(n, std::vector<double>(n, 0.0));
  for (std::size_t j = 0; j < n; ++j) {
    for (std::size_t h = 0; h < static_cast<std::size_t>(K.ColumnHeights[j]); ++h) {
      full[j - h][j] = K.Values[static_cast<std::size_t>(K.DiagonalAddress[j]) + h];
    }
  }
  return full;
}

// The links whose outline point lies on the axis: for T, L and bar without an offset those of the
// first point. With the offset of -0.11 no point lies on the axis, and a tube has none there.
std::set<std::size_t> FindIdleLinks(const TestSection& section, const BeamShellModel& model) {
  if (section.BeamSecType == BeamSecTypeC || section.BeamSecOz != 0.0) return {};
  return {0, static_cast<std::size_t>(model.ProfileNodeCount)};
}

// Bit for bit. The rounding errors depend on the order: links first gives other bits. They differ
// only at the nodes of the end stations, where the links' 1e20 is added to the shells' 1e11.
TEST_P(BeamShellStages, MatrixIsTheSumOfTheShellsAndThenOfTheLinks) {
  BeamShellModel model = MakeOblique(GetParam());
  const std::set<std::size_t> leftOut = FindIdleLinks(GetParam(), model);
  BuildBeamShellProfile(model);
  AssembleBeamShell(model);
  EXPECT_EQ(FillOut(model.Stiffness), SumElements(model, leftOut));
  EXPECT_NE(SumElements(model, leftOut, true), SumElements(model, leftOut));
}

// Links of lengths 0, 1, 2, 3 at each end. Only links shorter than the tolerance are left out.
TEST(SolveBeamShell, LinksShorterThanToleranceAreLeftOut) {
  const struct {
    double tolerance;
    std::set<std::size_t> leftOut;
  } cases[]{{6.0 / 10000.0, {0, 4}},
            {1.0, {0, 4}},
            {std::nextafter(1.0, 2.0), {0, 1, 4, 5}},
            {2.0, {0, 1, 4, 5}},
            {3.0, {0, 1, 2, 4, 5, 6}},
            {std::nextafter(3.0, 4.0), {0, 1, 2, 3, 4, 5, 6, 7}}};
  for (const auto& [tolerance, leftOut] : cases) {
    BeamShellModel model = MakeBar(0.0);
    model.Tolerance = tolerance;
    BuildBeamShellProfile(model);
    AssembleBeamShell(model);
    EXPECT_EQ(FillOut(model.Stiffness), SumElements(model, leftOut)) << tolerance;
  }
}

// With a tolerance of zero no link is shorter: a link without length stays, with its NaNs.
TEST(SolveBeamShell, ZeroToleranceLeavesNoLinkOut) {
  BeamShellModel model = MakeBar(0.0);
  model.Tolerance = 0.0;
  BuildBeamShellProfile(model);
  AssembleBeamShell(model);
  EXPECT_TRUE(std::isnan(FillOut(model.Stiffness)[Equation(0, Ux)][Equation(1, Ux)]));
}

// Imposes U1 and U2 on a system whose entries are so large that a sum with 1e40 differs from 1e40.
// Expects U1 at the nodes `driven1`, U2 at `driven2`, and everything else unchanged.
void ExpectDriven(BeamShellModel& model, const std::set<std::size_t>& driven1,
                  const std::set<std::size_t>& driven2) {
  BuildBeamShellProfile(model);
  MatrixValues& values = model.Stiffness.Values;
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = 1e39 * static_cast<double>(1 + i % 7);
  for (std::size_t i = 0; i < model.LoadVector.size(); ++i) {
    model.LoadVector[i] = 1e38 * static_cast<double>(1 + i % 5);
  }
  MatrixValues expectedValues = values;
  std::vector<double> expectedLoads = model.LoadVector;
  const auto drive = [&](std::size_t node, const Six& u) {
    for (std::size_t d = 0; d < 6; ++d) {
      const auto diagonal = model.Stiffness.DiagonalAddress[Equation(node, d)];
      expectedValues[static_cast<std::size_t>(diagonal)] = 1e40;
      const double once = u[d] * 1e20;
      expectedLoads[Equation(node, d)] = once * 1e20;
    }
  };
  for (const std::size_t node : driven1) drive(node, U1);
  for (const std::size_t node : driven2) drive(node, U2);

  ImposeEndDisplacements(U1.data(), U2.data(), model);
  EXPECT_EQ(values, expectedValues);
  EXPECT_EQ(model.LoadVector, expectedLoads);
}

TEST(SolveBeamShell, LoadsAreRoundedTwice) {
  for (const Six& u : {U1, U2}) {
    int others = 0;
    for (const double value : u) {
      const double once = value * 1e20;
      if (once * 1e20 != value * 1e40) ++others;
    }
    EXPECT_GE(others, 3);
  }
}

TEST(SolveBeamShell, BarOnTheAxisIsDrivenAtItsLowestPoint) {
  BeamShellModel model = MakeBar(0.0);
  EXPECT_EQ(model.Tolerance, 6.0 / 10000.0);
  ExpectDriven(model, {0, 1}, {25, BarLastNode});
}

TEST(SolveBeamShell, OutlineBesideTheAxisIsNotDriven) {
  BeamShellModel model = MakeBar(1.5);
  ExpectDriven(model, {0}, {BarLastNode});
}

// The tolerance is the length / 10000, on either side of the axis.
TEST(SolveBeamShell, DistanceToTheAxisIsComparedWithTolerance) {
  for (const double side : {1.0, -1.0}) {
    BeamShellModel below = MakeBar(side * std::nextafter(6.0 / 10000.0, 0.0));
    ExpectDriven(below, {0, 1}, {25, BarLastNode});
    BeamShellModel at = MakeBar(side * 6.0 / 10000.0);
    ExpectDriven(at, {0}, {BarLastNode});
    BeamShellModel above = MakeBar(side * std::nextafter(6.0 / 10000.0, 1.0));
    ExpectDriven(above, {0}, {BarLastNode});
  }
}

// Each of the four points on the axis in turn.
TEST(SolveBeamShell, AnyPointOnTheAxisIsDriven) {
  for (const std::size_t point : {0U, 1U, 2U, 3U}) {
    BeamShellModel model = MakeBar(-static_cast<double>(point));
    ExpectDriven(model, {0, 1 + point}, {25 + point, BarLastNode});
  }
}

// Distances 1, 0, 1, 2. At the tolerance a node keeps its link and is not driven.
TEST(SolveBeamShell, AllPointsWithinToleranceAreDriven) {
  BeamShellModel at = MakeBar(-1.0);
  at.Tolerance = 1.0;
  ExpectDriven(at, {0, 2}, {26, BarLastNode});
  BeamShellModel above = MakeBar(-1.0);
  above.Tolerance = std::nextafter(1.0, 2.0);
  ExpectDriven(above, {0, 1, 2, 3}, {25, 26, 27, BarLastNode});
}

// Only nodes of the end stations are driven, although points of the next two stations lie within
// the tolerance of 2.5 of an end.
TEST(SolveBeamShell, InnerStationsAreNotDriven) {
  BeamShellModel model = MakeBar(0.0);
  model.Tolerance = 2.5;
  ExpectDriven(model, {0, 1, 2, 3}, {25, 26, 27, BarLastNode});
}

// The axis may run through any point: through the flange of a T, the top (point 2, the third) and
// the bottom (point 6) of a tube. The beams are oblique, so that the distances are rounding errors,
// not zeros.
TEST(SolveBeamShell, PointOnTheAxisIsFoundByItsDistanceAlone) {
  const struct {
    TestSection section;
    std::size_t point;
  } cases[]{{{"T", BeamSecTypeT, {0.3, 0.02, 0.16, 0.025}, -0.3125, false}, 3},
            {{"L", BeamSecTypeL, {0.3, 0.02, 0.16, 0.025}, -0.1, true}, 1},
            {{"Tube", BeamSecTypeC, {0.15, 0.02, 0.0, 0.0}, -0.15, false}, 2},
            {{"Tube", BeamSecTypeC, {0.15, 0.02, 0.0, 0.0}, 0.15, false}, 6}};
  for (const auto& [section, point] : cases) {
    SCOPED_TRACE(section.name);
    BeamShellModel model = MakeOblique(section);
    const auto lastNode = static_cast<std::size_t>(model.NodeCount) - 1;
    const auto P = static_cast<std::size_t>(model.ProfileNodeCount);
    ExpectDriven(model, {0, 1 + point}, {lastNode - P + point, lastNode});
  }
}

// Solves K u = F by L D L^T factors in long double. K: upper triangle.
std::vector<long double> SolveDense(const FullMatrix& K, const std::vector<double>& F) {
  const std::size_t n = F.size();
  std::vector<std::vector<long double>> a(n);
  for (std::size_t i = 0; i < n; ++i) a[i].assign(K[i].begin(), K[i].end());
  std::vector<long double> u(F.begin(), F.end());
  for (std::size_t k = 0; k < n; ++k) {
    for (std::size_t i = k + 1; i < n; ++i) {
      const long double factor = a[k][i] / a[k][k];
      if (factor == 0.0L) continue;
      for (std::size_t j = i; j < n; ++j) a[i][j] -= factor * a[k][j];
      u[i] -= factor * u[k];
    }
  }
  for (std::size_t i = n; i-- > 0;) {
    for (std::size_t j = i + 1; j < n; ++j) u[i] -= a[i][j] * u[j];
    u[i] /= a[i][i];
  }
  return u;
}

// Translations and rotations of about a thousandth.
constexpr Six Motion1{1e-3, -2e-3, 1.5e-3, 2e-3, -1e-3, 3e-3};
constexpr Six Motion2{-1e-3, 1e-3, 2e-3, -1e-3, 2e-3, 1e-3};

// The stiffnesses of a short beam's shells, from bending to drilling, span about five decades,
// which leaves eleven of sixteen digits. The much stiffer links and penalties cost no digits: each
// of them dominates its own equation.
TEST_P(BeamShellStages, DisplacementsAreThoseOfADenseSolution) {
  BeamShellModel model = MakeOblique(GetParam());
  const FullMatrix sum = SumElements(model, FindIdleLinks(GetParam(), model));
  BuildBeamShellProfile(model);
  AssembleBeamShell(model);
  ImposeEndDisplacements(Motion1.data(), Motion2.data(), model);
  const std::vector<double> loads = model.LoadVector;
  const FullMatrix imposed = FillOut(model.Stiffness);
  FullMatrix K = sum;
  for (std::size_t i = 0; i < K.size(); ++i) {
    if (loads[i] != 0.0) K[i][i] = 1e40;
  }
  EXPECT_EQ(K, imposed);

  const std::vector<long double> exact = SolveDense(K, loads);
  BeamShellModel solved = MakeOblique(GetParam());
  SolveBeamShell(Motion1.data(), Motion2.data(), solved);
  double largest = 0.0, worst = 0.0;
  for (std::size_t i = 0; i < exact.size(); ++i) {
    const auto value = static_cast<double>(exact[i]);
    largest = std::max(largest, std::fabs(value));
    worst = std::max(worst, std::fabs(solved.Displacements[i] - value));
  }
  EXPECT_LT(worst, 1e-11 * largest);
}

// A driven node moves as prescribed: the penalty exceeds the links' stiffness by more than 1e13.
TEST_P(BeamShellStages, EndNodesTakeTheirDisplacements) {
  BeamShellModel model = MakeOblique(GetParam());
  const auto lastNode = static_cast<std::size_t>(model.NodeCount) - 1;
  SolveBeamShell(Motion1.data(), Motion2.data(), model);
  for (std::size_t d = 0; d < 6; ++d) {
    EXPECT_NEAR(model.Displacements[d], Motion1[d], 1e-13 * std::fabs(Motion1[d]));
    EXPECT_NEAR(model.Displacements[Equation(lastNode, d)], Motion2[d],
                1e-13 * std::fabs(Motion2[d]));
  }
}

// The whole solution gives the bits of its stages run one after another.
TEST_P(BeamShellStages, SolutionRunsTheStages) {
  BeamShellModel model = MakeOblique(GetParam());
  BeamShellModel stages = model;
  SolveBeamShell(Motion1.data(), Motion2.data(), model);
  BuildBeamShellProfile(stages);
  AssembleBeamShell(stages);
  ImposeEndDisplacements(Motion1.data(), Motion2.data(), stages);
  SolveSkyline(stages.Stiffness, stages.LoadVector, stages.Displacements, {});
  EXPECT_EQ(model.Displacements, stages.Displacements);
}

TEST_P(BeamShellStages, StressesAreThoseOfTheCorners) {
  BeamShellModel model = MakeOblique(GetParam());
  SolveBeamShell(Motion1.data(), Motion2.data(), model);
  const double corners[4][2]{{-1.0, -1.0}, {1.0, -1.0}, {1.0, 1.0}, {-1.0, 1.0}};
  for (std::size_t e = 0; e < model.Shells.size(); ++e) {
    const Shell4Element& shell = model.Shells[e];
    std::array<double, 24> d{};
    for (std::size_t i = 0; i < 24; ++i) {
      const auto node = static_cast<std::size_t>(model.ShellNodes[4 * e + i / 6]);
      d[i] = model.Displacements[Equation(node, i % 6)];
    }
    for (std::size_t k = 0; k < 4; ++k) {
      StressVector top{}, bottom{};
      Shell4CornerStress(shell, top, bottom, d.data(), corners[k][0], corners[k][1]);
      EXPECT_EQ(shell.NodeStressTop[k], top) << e << ' ' << k;
      EXPECT_EQ(shell.NodeStressBottom[k], bottom) << e << ' ' << k;
      if (k > 0) {
        EXPECT_NE(shell.NodeStressTop[k], shell.NodeStressTop[0]) << e << ' ' << k;
      }
    }
    EXPECT_EQ(shell.AvgStressTop, (std::array<StressVector, 4>{}));  // not computed by this stage
  }
}

// Hundreds of beams keep results only. The next model takes over the matrix, by far the largest
// part. The counts stay.
TEST_P(BeamShellStages, HandedOnSystemLeavesResultsOnly) {
  BeamShellModel model = MakeOblique(GetParam()), next;
  SolveBeamShell(Motion1.data(), Motion2.data(), model);
  const double* values = model.Stiffness.Values.data();
  ReuseLinks(model, next);
  ReuseSystem(model, next);
  EXPECT_TRUE(model.Links.empty());
  EXPECT_TRUE(model.LinkNodes.empty());
  EXPECT_TRUE(model.LoadVector.empty());
  EXPECT_EQ(model.Stiffness.Values.capacity(), 0U);
  EXPECT_EQ(model.Stiffness.ColumnHeights.capacity(), 0U);
  EXPECT_EQ(model.Stiffness.DiagonalAddress.capacity(), 0U);
  EXPECT_EQ(model.LinkCount, 2 * model.ProfileNodeCount);
  EXPECT_EQ(model.NEQ, 6 * model.NodeCount);
  EXPECT_EQ(next.Stiffness.Values.data(), values);  // the memory itself, no copy
}

// The model before was smaller or larger: its data do not matter.
TEST_P(BeamShellStages, HandedOnSystemChangesNoResult) {
  for (const std::int32_t before : {0, 2}) {
    BeamShellModel spare = MakeOblique(GetParam(), before);
    SolveBeamShell(Motion2.data(), Motion1.data(), spare);

    const DetailBeam beam{GetParam(), {3.0, 0.0, 1.0}, {3.0, 0.5, 1.0}, {0.0, 0.5, 1.0}, 2e11, 0.3,
                          1};
    BeamShellModel fresh = ExtrudeBeam(beam), reused;
    ReuseLinks(spare, reused);
    ReuseSystem(spare, reused);
    ExtrudeBeam(beam, reused);
    SolveBeamShell(Motion1.data(), Motion2.data(), fresh);
    SolveBeamShell(Motion1.data(), Motion2.data(), reused);
    EXPECT_EQ(reused.Displacements, fresh.Displacements);
    EXPECT_EQ(reused.LinkNodes, fresh.LinkNodes);
    EXPECT_EQ(reused.Links.size(), fresh.Links.size());
    EXPECT_EQ(reused.Stiffness.Values, fresh.Stiffness.Values);
    EXPECT_EQ(reused.LoadVector, fresh.LoadVector);
  }
}

// No system takes more than what is counted for it. The count is no more than twice too high: half
// of a column of the first station, at most, is not stored, and the tables are small.
TEST_P(BeamShellStages, CountedBytesHoldTheSystem) {
  for (const std::int32_t level : {0, 1, 2}) {
    BeamShellModel model = MakeOblique(GetParam(), level);
    SolveBeamShell(Motion1.data(), Motion2.data(), model);
    const auto bytes =
        static_cast<double>(CountSystemBytes(BuildOutline(GetParam(), level), 0, model));
    const auto entries = static_cast<double>(model.Stiffness.SkylineSize);
    const auto equations = static_cast<double>(model.NEQ);
    const double taken = entries * sizeof(double) + equations * BytesPerEquation +
                         static_cast<double>(model.Links.size() * sizeof(BeamElement));
    EXPECT_GE(bytes, taken) << level;
    EXPECT_LE(bytes, 2.5 * taken) << level;
  }
}

TEST(SolveBeamShell, PrintsNothing) {
  BeamShellModel model = MakeBar(0.0);
  testing::internal::CaptureStdout();
  SolveBeamShell(Motion1.data(), Motion2.data(), model);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

}  // namespace
}  // namespace korvex::test
