// A whole structure of quads, triangles and beams: turned in space it gives the turned results, and
// the forces of its supports balance the pressures.
//
// The structure is a folded roof: two plates that meet at a ridge at about 53 degrees to the
// horizontal, the first of quads, the second of triangles, a beam along the ridge and one along an
// eave, with pressures that vary over both plates.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "results/average_stresses.h"
#include "results/corner_stress.h"
#include "results/shell_stresses.h"
#include "support/dof_names.h"
#include "support/shell_mesh.h"
#include "support/solve_model.h"

namespace korvex::test {
namespace {

constexpr double E = 2.1e11, Mu = 0.3, TK = 0.02;

constexpr int Across = 4;  // cells across either plate
constexpr int Along = 5;   // cells along the ridge
constexpr double Length = 5.0, Width = 3.0, Height = 4.0;
constexpr int NodesAcross = 2 * Across + 1;

int FoldNode(int i, int j) { return i + NodesAcross * j; }

// From eave (x = -3, z = 0) over the ridge (x = 0, z = 4) to the other eave, along y.
ModelText BuildFold() {
  ModelText model;
  model.materials = {{E, Mu, 7850.0}};
  model.thicknesses = {TK};
  model.tSections = {{0.2, 0.01, 0.1, 0.012}};
  for (int j = 0; j <= Along; ++j) {
    for (int i = 0; i < NodesAcross; ++i) {
      const double s = static_cast<double>(i - Across) / Across;
      model.nodes.push_back({Width * s, Length * j / Along, Height * (1 - std::fabs(s))});
    }
  }
  for (int j = 0; j < Along; ++j) {
    for (int i = 0; i < 2 * Across; ++i) {
      const Corners corners{FoldNode(i, j), FoldNode(i + 1, j), FoldNode(i + 1, j + 1),
                            FoldNode(i, j + 1)};
      AddCell(model, i < Across ? Cells::Quads : Cells::Triangles, 0, corners);
    }
  }
  for (int j = 0; j < Along; ++j) {
    for (const int i : {0, Across}) {
      ModelText::Beam beam;
      beam.node1 = FoldNode(i, j);
      beam.node2 = FoldNode(i, j + 1);
      beam.orientation = {i == 0 ? 0.5 : 0.0, 0.0, 1.0};
      model.beams.push_back(beam);
    }
  }
  return model;
}

// Pressures, as functions of the place on a plate: on the quads 1e3 (1 + y/5), on the triangles
// 2e3 (1 + z/4), along their normals.
double QuadPressure(const Point3& p) { return 1e3 * (1 + p[1] / Length); }
double TrianglePressure(const Point3& p) { return 2e3 * (1 + p[2] / Height); }

template <typename Shells>
std::vector<ModelText::ShellLoad> Press(const ModelText& model, const Shells& shells,
                                        double (*pressure)(const Point3&)) {
  std::vector<ModelText::ShellLoad> loads;
  for (std::size_t e = 0; e < shells.size(); ++e) {
    ModelText::ShellLoad load{static_cast<int>(e), {}};
    for (std::size_t k = 0; k < 3; ++k) {
      load.q[k] = pressure(model.nodes[static_cast<std::size_t>(shells[e].nodes[k])]);
    }
    loads.push_back(load);
  }
  return loads;
}

// Both ends of the first eave and the middle of the second are clamped: supports in all six dofs
// turn with the model.
ModelText LoadFold() {
  ModelText model = BuildFold();
  model.shell4Loads = Press(model, model.shells4, QuadPressure);
  model.shell3Loads = Press(model, model.shells3, TrianglePressure);
  for (const int node : {FoldNode(0, 0), FoldNode(0, Along), FoldNode(2 * Across, 2)}) {
    model.restraints.push_back({node, {1, 1, 1, 1, 1, 1}});
  }
  return model;
}

// A nodal force with a moment and a line load on a beam as well.
ModelText LoadFoldEverywhere() {
  ModelText model = LoadFold();
  model.forces = {{FoldNode(2, 2), {4e3, -3e3, 5e3, 2e2, 1e2, -3e2}}};
  model.beamLoads = {{3, 1e3, 2e3}};
  return model;
}

void SolveFold(const ModelText& text, Model& model) {
  SolveModel(text, model);
  RecoverShellStresses(model);
  AverageNodeStresses(model);
}

// The largest size of a translation (first = Ux) or rotation (first = Rx).
double FindLargest(const Model& model, Dof first) {
  double largest = 0.0;
  for (int node = 0; node < model.Tables.NPOIN; ++node) {
    const auto u = NodeDisplacements(model, node);
    for (std::size_t d = first; d < first + 3; ++d) largest = std::max(largest, std::fabs(u[d]));
  }
  return largest;
}

// The two differ by rounding alone. The plates are (5 / TK)^2 = 6e4 times as stiff in their plane
// as in bending, and every entry of the turned matrix mixes both. Measured: 1.4e-11 in the
// displacements and 3e-10 in the stresses, which are their derivatives.
constexpr double DisplacementBound = 1e-9;
constexpr double StressBound = 1e-8;

TEST(TurnedShells, GiveTurnedDisplacements) {
  const ModelText text = LoadFoldEverywhere();
  Model before, after;
  SolveFold(text, before);
  SolveFold(TurnModel(text), after);
  for (const Dof first : {Ux, Rx}) {
    const double largest = FindLargest(before, first);
    ASSERT_GT(largest, 1e-6);
    for (int node = 0; node < before.Tables.NPOIN; ++node) {
      const auto expected = TurnSix(NodeDisplacements(before, node));
      const auto computed = NodeDisplacements(after, node);
      for (std::size_t d = first; d < first + 3; ++d) {
        EXPECT_NEAR(computed[d], expected[d], DisplacementBound * largest)
            << "node " << node << " dof " << d;
      }
    }
  }
}

// The von Mises stress stays, and the six components turn. The components are compared relative to
// the largest von Mises stress of the element's corners, because that of one corner may be small by
// chance.
void ExpectSameStress(const StressVector& before, const StressVector& after, double largest) {
  const double equivalent = EquivalentStress(before);
  EXPECT_NEAR(EquivalentStress(after), equivalent, StressBound * equivalent);
  const StressVector expected = TurnStress(before);
  for (std::size_t c = 0; c < 6; ++c) {
    EXPECT_NEAR(after[c], expected[c], StressBound * largest) << "component " << c;
  }
}

template <typename Elements>
void ExpectSameStresses(const Elements& before, const Elements& after) {
  ASSERT_EQ(before.size(), after.size());
  for (std::size_t e = 0; e < before.size(); ++e) {
    double largest = 0.0;
    for (std::size_t k = 0; k < before[e].NodeStressTop.size(); ++k) {
      largest = std::max({largest, EquivalentStress(before[e].NodeStressTop[k]),
                          EquivalentStress(before[e].NodeStressBottom[k])});
    }
    for (std::size_t k = 0; k < before[e].NodeStressTop.size(); ++k) {
      SCOPED_TRACE(testing::Message() << "element " << e << " corner " << k);
      ExpectSameStress(before[e].NodeStressTop[k], after[e].NodeStressTop[k], largest);
      ExpectSameStress(before[e].NodeStressBottom[k], after[e].NodeStressBottom[k], largest);
      ExpectSameStress(before[e].AvgStressTop[k], after[e].AvgStressTop[k], largest);
      ExpectSameStress(before[e].AvgStressBottom[k], after[e].AvgStressBottom[k], largest);
    }
  }
}

TEST(TurnedShells, KeepTheirStresses) {
  const ModelText text = LoadFoldEverywhere();
  Model before, after;
  SolveFold(text, before);
  SolveFold(TurnModel(text), after);
  ExpectSameStresses(before.Shell4Elements, after.Shell4Elements);
  ExpectSameStresses(before.Shell3Elements, after.Shell3Elements);
}

Point3 Product(const Point3& a, const Point3& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

// Force and moment about the origin of a force at a point.
std::array<double, 6> At(const Point3& p, const Point3& f) {
  const Point3 m = Product(p, f);
  return {f[0], f[1], f[2], m[0], m[1], m[2]};
}

// The resultant of the pressures, by hand. Either plate is 5 wide (3, 4, 5) and 5 long, A = 25; its
// normal is that of (cells across) x (along): (-4, 0, 3) / 5 for the quads, that rise, and
// (4, 0, 3) / 5 for the triangles. A linear pressure a + b v on a length from v = 0 to h has the
// mean a + b h/2, and its centre lies at (a h/2 + b h^2/3) / (a + b h/2).
//   Quads: 1e3 (1 + y/5): mean 1500, y = 5 (1/2 + 1/3) / 1.5 = 25/9; x = -1.5, z = 2 of the middle.
//   Triangles: 2e3 (1 + z/4): mean 3000, z = 4 (1/2 + 1/3) / 1.5 = 20/9, x = 3 (1 - z/4) = 4/3;
//   y = 2.5.
std::array<double, 6> SumPressures() {
  const double quads = 1500.0 * 25.0, triangles = 3000.0 * 25.0;
  const auto a = At({-1.5, 25.0 / 9.0, 2.0}, {-0.8 * quads, 0.0, 0.6 * quads});
  const auto b = At({4.0 / 3.0, 2.5, 20.0 / 9.0}, {0.8 * triangles, 0.0, 0.6 * triangles});
  std::array<double, 6> sum{};
  for (std::size_t d = 0; d < 6; ++d) sum[d] = a[d] + b[d];
  return sum;
}

// What the supports' springs exert on the structure, as a force and a moment about the origin.
std::array<double, 6> SumSupports(const ModelText& text, const Model& model) {
  std::array<double, 6> sum{};
  for (const auto& restraint : text.restraints) {
    const auto u = NodeDisplacements(model, restraint.node);
    const Point3 force{-SupportPenalty * u[Ux], -SupportPenalty * u[Uy], -SupportPenalty * u[Uz]};
    const auto part = At(text.nodes[static_cast<std::size_t>(restraint.node)], force);
    for (std::size_t d = 0; d < 6; ++d) sum[d] += part[d];
    for (const Dof d : {Rx, Ry, Rz}) sum[d] -= SupportPenalty * u[d];
  }
  return sum;
}

// In the fold's own place and turned into space. The bound is 1e-9 of forces of 1e5 on arms of a
// metre; measured, 8e-6: rounding of displacements of 1e-3 under stiffnesses of up to 1e10.
void ExpectBalance(const ModelText& text, const std::array<double, 6>& load) {
  Model model;
  SolveModel(text, model);
  const auto supports = SumSupports(text, model);
  for (std::size_t d = 0; d < 6; ++d) {
    EXPECT_NEAR(supports[d], -load[d], 1e-9 * 1e5) << "component " << d;
  }
}

TEST(FoldedShells, SupportForcesBalanceThePressures) { ExpectBalance(LoadFold(), SumPressures()); }

TEST(FoldedShells, SupportForcesBalanceThePressuresInSpace) {
  ExpectBalance(TurnModel(LoadFold()), TurnSix(SumPressures()));
}

}  // namespace
}  // namespace korvex::test
