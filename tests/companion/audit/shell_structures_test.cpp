// Resultants against known solutions: moments and shear of square plates under uniform pressure,
// mesh by mesh, and membrane forces of a tube under internal pressure.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "audit/shell_resultants.h"
#include "support/dof_names.h"
#include "support/shell_mesh.h"
#include "support/solve_model.h"

namespace kvx::test {
namespace {

using korvex::Model;
using korvex::test::Cells, korvex::test::GridNode, korvex::test::ModelText, korvex::test::Point3;
using korvex::test::Rx, korvex::test::Ry, korvex::test::Rz;
using korvex::test::Ux, korvex::test::Uy, korvex::test::Uz;

constexpr double Pi = 3.14159265358979323846;

constexpr double L = 10.0, Mu = 0.3, Pressure = 1e-3;
constexpr double Thin = 0.01;  // t / L = 1e-3

enum class Edges { Supported, Clamped };

// A quarter of the plate, the centre at the origin, n x n cells; normal and pressure along +z. The
// plane's own displacements and the rotations about z are held: nothing strains there.
ModelText BuildQuarter(Cells cells, Edges edges, int n) {
  ModelText model = korvex::test::BuildGrid(n, n, cells, [](double s, double t) {
    return Point3{L / 2 * s, L / 2 * t, 0.0};
  });
  model.materials = {{2.1e5, Mu, 0.0}};
  model.thicknesses = {Thin};
  const bool clamped = edges == Edges::Clamped;
  for (int j = 0; j <= n; ++j) {
    for (int i = 0; i <= n; ++i) {
      std::array<int, 6> fixed{};
      fixed[Ux] = fixed[Uy] = fixed[Rz] = 1;
      if (i == n || j == n) fixed[Uz] = 1;
      if (j == 0 || i == n || (clamped && j == n)) fixed[Rx] = 1;  // dw/dy = 0
      if (i == 0 || j == n || (clamped && i == n)) fixed[Ry] = 1;  // dw/dx = 0
      model.restraints.push_back({GridNode(n, i, j), fixed});
    }
  }
  const std::array<double, 3> p{Pressure, Pressure, Pressure};
  for (std::size_t e = 0; e < model.shells4.size(); ++e) {
    model.shell4Loads.push_back({static_cast<int>(e), p});
  }
  for (std::size_t e = 0; e < model.shells3.size(); ++e) {
    model.shell3Loads.push_back({static_cast<int>(e), p});
  }
  return model;
}

std::vector<ShellResultants> Solve(const ModelText& text, const FrameChoice& choice) {
  Model model;
  SolveModel(text, model);
  std::vector<ShellResultants> all;
  ShellResultants r;
  for (std::int32_t e = 0; e < model.Tables.NELEM_S_4ND; ++e) {
    ComputeShell4Resultants(model, e, choice, r);
    all.push_back(r);
  }
  for (std::int32_t e = 0; e < model.Tables.NELEM_S_3ND; ++e) {
    ComputeShell3Resultants(model, e, choice, r);
    all.push_back(r);
  }
  return all;
}

constexpr FrameChoice AlongX{true, {1.0, 0.0, 0.0}};

// mx / (p L^2) at the corner of the grid at x, y = 0: the mean of the elements there.
double MomentAt(const std::vector<ShellResultants>& all, double x) {
  double sum = 0.0;
  int count = 0;
  for (const ShellResultants& r : all) {
    for (std::size_t k = 0; k < static_cast<std::size_t>(r.corners); ++k) {
      const auto& place = r.corner[k].place;
      if (std::hypot(place[0] - x, place[1]) > 1e-9) continue;
      sum += r.corner[k].m.x;
      ++count;
    }
  }
  return sum / count / (Pressure * L * L);
}

// Navier's series (Timoshenko & Woinowsky-Krieger 1959, secs. 28 to 30; there y, z and the sign of
// moments point down, as the load) at X, Y in the whole plate's sides: mx / (p L^2), mxy / (p L^2)
// and qx / (p L). The deflection along the pressure is
//   w = 16 p L^4 / (pi^6 D) sum of sin(m pi X) sin(n pi Y) / (m n (m^2 + n^2)^2), m and n odd.
struct PlateSums {
  double mx = 0.0, mxy = 0.0, qx = 0.0;
};

PlateSums SumNavier(double X, double Y, int terms) {
  PlateSums sums;
  for (int m = 1; m < terms; m += 2) {
    for (int n = 1; n < terms; n += 2) {
      const double mm = m, nn = n, k2 = mm * mm + nn * nn;
      const double w = 16.0 / (Pi * Pi * mm * nn * k2 * k2);  // times p L^4 / (pi^4 D)
      const double sinM = std::sin(mm * Pi * X), sinN = std::sin(nn * Pi * Y);
      const double cosM = std::cos(mm * Pi * X), cosN = std::cos(nn * Pi * Y);
      sums.mx += w / (Pi * Pi) * (mm * mm + Mu * nn * nn) * sinM * sinN;
      sums.mxy -= w / (Pi * Pi) * (1 - Mu) * mm * nn * cosM * cosN;
      sums.qx += w / Pi * mm * k2 * cosM * sinN;
    }
  }
  return sums;
}

struct Plate {
  std::string name;
  Cells cells;
  Edges edges;
  double x;        // place on the centre line y = 0: 0, the centre, or L/2, the edge
  double exact;    // mx / (p L^2)
  double order;    // of the fall of the error with the mesh size
  double largest;  // error of the finest mesh, relative
};

std::ostream& operator<<(std::ostream& out, const Plate& plate) { return out << plate.name; }

// The clamped plate: 0.0231 and -0.0513 p L^2 (Timoshenko & Woinowsky-Krieger 1959, table 35); more
// digits from a Ritz solution, found apart: polynomials (1 - X^2)^2 (1 - Y^2)^2 Pi(X) Pj(Y), X and
// Y from -1 to 1 and P of Legendre, with 12 and 14 even ones along each axis.
constexpr double ClampedCentre = 0.0229051, ClampedEdge = -0.051334;

// The curvatures of both elements are exact to first order, and so are the moments at the edge. At
// the centre, a line of symmetry, the first-order errors of both sides cancel in the mean. The
// largest errors are those that were measured, and a tenth more.
std::vector<Plate> AllPlates() {
  const double supported = SumNavier(0.5, 0.5, 2000).mx;  // 0.0479, table 8
  return {
      {"SupportedCentreQuads", Cells::Quads, Edges::Supported, 0.0, supported, 2.0, 4e-6},
      {"ClampedCentreQuads", Cells::Quads, Edges::Clamped, 0.0, ClampedCentre, 2.0, 3e-4},
      {"ClampedEdgeQuads", Cells::Quads, Edges::Clamped, L / 2, ClampedEdge, 1.0, 0.07},
      {"SupportedCentreTriangles", Cells::Triangles, Edges::Supported, 0.0, supported, 2.0, 2.6e-4},
      {"ClampedCentreTriangles", Cells::Triangles, Edges::Clamped, 0.0, ClampedCentre, 2.0, 2e-3},
      {"ClampedEdgeTriangles", Cells::Triangles, Edges::Clamped, L / 2, ClampedEdge, 1.0, 4.8e-3}};
}

class PlateMoments : public testing::TestWithParam<Plate> {};

INSTANTIATE_TEST_SUITE_P(All, PlateMoments, testing::ValuesIn(AllPlates()),
                         [](const auto& plate) { return plate.param.name; });

// Cells across half of the plate: 8, 16, 32. The measured orders are 2.08 to 1.94 for 2, 2.18 for
// the supported triangles, and 0.89 to 1.10 for 1.
TEST_P(PlateMoments, ConvergeToTheSeries) {
  const Plate& plate = GetParam();
  std::array<double, 3> errors{};
  for (std::size_t mesh = 0; mesh < 3; ++mesh) {
    const int n = 8 << mesh;
    const auto all = Solve(BuildQuarter(plate.cells, plate.edges, n), AlongX);
    errors[mesh] = MomentAt(all, plate.x) / plate.exact - 1;
  }
  for (std::size_t mesh = 0; mesh < 2; ++mesh) {
    EXPECT_NEAR(std::log2(errors[mesh] / errors[mesh + 1]), plate.order, 0.2)
        << "errors " << errors[mesh] << " and " << errors[mesh + 1];
  }
  EXPECT_LT(std::fabs(errors[2]), plate.largest);
}

// The moment at the clamped edge from the centres of the two last cells beside the centre line,
// half a cell and one and a half from the edge: to second order.
TEST(PlateResultants, ReachTheClampedEdgeFromTheCentresOfQuads) {
  double before = 0.0;
  for (const int n : {8, 16, 32}) {
    const auto all = Solve(BuildQuarter(Cells::Quads, Edges::Clamped, n), AlongX);
    const auto last = static_cast<std::size_t>(n - 1);  // of the first row of cells
    const double edge = 1.5 * all[last].centre.m.x - 0.5 * all[last - 1].centre.m.x;
    const double error = edge / (Pressure * L * L) / ClampedEdge - 1;
    if (n > 8) {
      EXPECT_NEAR(std::log2(before / error), 2.0, 0.3) << n << ' ' << error;
    }
    EXPECT_LT(std::fabs(error), 3.0 / (n * n)) << n;
    before = error;
  }
}

// At the centre of a quadrilateral moments and shear are exact to second order. The point
// (3/8, 1/8) L from the plate's centre is the centre of a cell in meshes of 2, 6, 18 and 54 cells.
TEST(PlateResultants, AtTheCentresOfQuadsAreExactToSecondOrder) {
  const double x = 0.375 * L, y = 0.125 * L;
  // Where the terms still matter they have both signs: 1000 and 2000 of them agree in nine digits.
  const PlateSums exact = SumNavier(0.5 + 0.375, 0.5 + 0.125, 2000);
  std::array<double, 3> before{};
  for (const int n : {6, 18, 54}) {
    std::array<double, 3> errors{};
    for (const ShellResultants& r :
         Solve(BuildQuarter(Cells::Quads, Edges::Supported, n), AlongX)) {
      const ShellPoint& point = r.centre;
      if (std::hypot(point.place[0] - x, point.place[1] - y) > 1e-9) continue;
      errors = {point.m.x / (Pressure * L * L) / exact.mx - 1,
                point.m.xy / (Pressure * L * L) / exact.mxy - 1,
                point.qx / (Pressure * L) / exact.qx - 1};
    }
    for (std::size_t i = 0; i < 3; ++i) {
      // Measured: 1.99 to 2.02.
      if (n > 6) {
        EXPECT_NEAR(std::log(before[i] / errors[i]) / std::log(3.0), 2.0, 0.03) << i;
      }
      EXPECT_LT(std::fabs(errors[i]), 0.8 / (n * n)) << i << ' ' << n;
    }
    before = errors;
  }
}

// A tube about the z axis, closed ends: the pressure on them, p pi r^2, pulls at the nodes of the
// upper end, and the lower end stands on rollers. N flat panels around, four along. The panels
// bulge nowhere: their nodes move outwards alike.
constexpr double R = 5.0, WallThickness = 0.05, TubeLength = 8.0;

ModelText BuildTube(int N) {
  constexpr int Along = 4;
  ModelText model;
  model.materials = {{2e5, 0.3, 0.0}};
  model.thicknesses = {WallThickness};
  for (int j = 0; j <= Along; ++j) {
    for (int i = 0; i < N; ++i) {
      const double a = 2 * Pi * i / N;
      model.nodes.push_back({R * std::cos(a), R * std::sin(a), TubeLength * j / Along});
    }
  }
  for (int j = 0; j < Along; ++j) {
    for (int i = 0; i < N; ++i) {
      const int next = (i + 1) % N;
      // The normal points outwards, and every second panel begins at another node.
      std::array<int, 4> nodes{j * N + i, j * N + next, (j + 1) * N + next, (j + 1) * N + i};
      if (i % 2 == 1) std::rotate(nodes.begin(), nodes.begin() + 1, nodes.end());
      model.shell4Loads.push_back(
          {static_cast<int>(model.shells4.size()), {Pressure, Pressure, Pressure}});
      model.shells4.push_back({nodes, 0, 0});
    }
  }
  for (int i = 0; i < N; ++i) {
    std::array<int, 6> fixed{0, 0, 1, 0, 0, 0};
    if (i == 0 || i == N / 2) fixed[Uy] = 1;  // on the x axis: free to move outwards
    if (i == N / 4) fixed[Ux] = 1;            // on the y axis
    model.restraints.push_back({i, fixed});
    const double share = Pressure * Pi * R * R / N;
    model.forces.push_back({Along * N + i, {0.0, 0.0, share, 0.0, 0.0, 0.0}});
  }
  return model;
}

// Hand values: hoop force p r and axial force p r / 2. Exact for the polygon: of a ring cut through
// the middles of two opposite panels, each carries half of the pressure on the width between them,
// p a with a = R cos(pi / N); and the end's force is spread over N panels of the width 2 R sin(pi /
// N). Both approach p r as 1 / N^2.
TEST(Tube, UnderPressureHasItsHoopAndAxialForce) {
  constexpr int N = 64;
  const ModelText text = BuildTube(N);
  const double hoop = Pressure * R * std::cos(Pi / N);
  const double axial = Pressure * Pi * R * R / (N * 2 * R * std::sin(Pi / N));
  EXPECT_NEAR(hoop, Pressure * R, 2e-3 * hoop);
  EXPECT_NEAR(axial, Pressure * R / 2, 2e-3 * axial);

  const double bound = 1e-9 * hoop;
  const auto check = [&](const ShellPoint& point, double first, double second) {
    EXPECT_NEAR(point.n.x, first, bound);
    EXPECT_NEAR(point.n.y, second, bound);
    EXPECT_NEAR(point.n.xy, 0.0, bound);
    // No bending, to the digits that the solution keeps beside the stiffer membrane.
    EXPECT_NEAR(point.bending.x * WallThickness, 0.0, 1e3 * bound);
    EXPECT_NEAR(point.bending.y * WallThickness, 0.0, 1e3 * bound);
  };
  int along = 0, fallbacks = 0;
  for (const ShellResultants& r : Solve(text, {true, {0.0, 0.0, 1.0}})) {
    EXPECT_EQ(r.frame.source, FrameSource::Axis);
    check(r.centre, axial, hoop);
    for (const ShellPoint& corner : r.corner) check(corner, axial, hoop);
    // The greatest tension runs around: along the panel, across z.
    const FaceState& middle = r.centre.faces[static_cast<std::size_t>(Face::Middle)];
    EXPECT_NEAR(middle.principal.larger, hoop / WallThickness, bound / WallThickness);
    EXPECT_NEAR(middle.principal.smaller, axial / WallThickness, bound / WallThickness);
    EXPECT_NEAR(middle.direction[2], 0.0, 1e-8);
    const double a = hoop / WallThickness, b = axial / WallThickness;
    EXPECT_NEAR(middle.vonMises, std::sqrt(a * a - a * b + b * b), bound / WallThickness);
    ++along;
  }
  EXPECT_EQ(along, 4 * N);
  // The x axis lies around the tube, but is normal to panels where the tube crosses it: their
  // middles are pi / N from it, sin 2.8 degrees, so none takes another axis.
  for (const ShellResultants& r : Solve(text, {true, {1.0, 0.0, 0.0}})) {
    fallbacks += r.frame.source == FrameSource::Axis ? 0 : 1;
    check(r.centre, hoop, axial);
  }
  EXPECT_EQ(fallbacks, 0);
}

// In the elements' own frames the first axis runs around or along, by the element's first node: the
// reason for a frame by an axis.
TEST(Tube, HasMixedForcesInItsElementsFrames) {
  int hoopFirst = 0, axialFirst = 0;
  for (const ShellResultants& r : Solve(BuildTube(16), {})) {
    ++(r.centre.n.x > 0.75 * Pressure * R ? hoopFirst : axialFirst);
  }
  EXPECT_EQ(hoopFirst, 32);
  EXPECT_EQ(axialFirst, 32);
}

}  // namespace
}  // namespace kvx::test
