// The equivalent nodal loads of pressures: closed integrals, resultants of linear fields, and the
// pressure field, which follows from the intensities at the first three nodes alone.
#include "shell/shell_loads.h"

#include <gtest/gtest.h>

#include <cmath>

#include "shell/bilinear_map.h"
#include "support/dof_names.h"
#include "support/shell_shapes.h"

namespace korvex {
namespace {

using test::Equation, test::Fx, test::Fz, test::Mx;

using Vector24 = std::array<double, 24>;
using Vector18 = std::array<double, 18>;

Vector24 LoadVectorOf(const Shell4Element& element, const std::array<double, 3>& q) {
  Vector24 f;
  f.fill(-7.0);  // the caller's buffer is not clean; every entry must be written
  ShellSurfaceLoad load;
  load.q = q;
  Shell4LoadVector(element, load, f.data());
  return f;
}

Vector18 LoadVectorOf(const Shell3Element& element, const std::array<double, 3>& q) {
  Vector18 f;
  f.fill(-7.0);
  ShellSurfaceLoad load;
  load.q = q;
  Shell3LoadVector(element, load, f.data());
  return f;
}

// The intensities of c + gx x + gy y at the shape's first three nodes.
struct LinearPressure {
  double c, gx, gy;
  double At(const std::array<double, 2>& p) const { return c + gx * p[0] + gy * p[1]; }
  template <std::size_t Nodes>
  std::array<double, 3> AtNodes(const test::PlaneShape<Nodes>& shape) const {
    return {At(shape[0]), At(shape[1]), At(shape[2])};
  }
};

TEST(ShellLoads, UniformPressureOnARectangleIsSharedEqually) {
  const auto element =
      test::PlaceShape({{{0.0, 0.0}, {3.0, 0.0}, {3.0, 1.25}, {0.0, 1.25}}}, test::InGlobalPlane);
  const Vector24 f = LoadVectorOf(element, {8.0, 8.0, 8.0});
  for (std::size_t k = 0; k < 4; ++k)
    EXPECT_NEAR(f[Equation(k, Fz)], 8.0 * 3.0 * 1.25 / 4.0, 1e-14) << k;  // rounding
}

// The determinant is linear in xi and eta and Nk has its centroid at (xi_k / 3, eta_k / 3): the
// integral of Nk over the element is the determinant there.
TEST(ShellLoads, UniformPressureOnAnyQuad) {
  constexpr std::array<double, 4> nodeXi{-1.0, 1.0, 1.0, -1.0}, nodeEta{-1.0, -1.0, 1.0, 1.0};
  for (const auto& named : test::AllQuads()) {
    const Vector24 f =
        LoadVectorOf(test::PlaceShape(named.shape, test::InGlobalPlane), {8.0, 8.0, 8.0});
    Array4 x{}, y{};
    for (std::size_t k = 0; k < 4; ++k) {
      x[k] = named.shape[k][0];
      y[k] = named.shape[k][1];
    }
    for (std::size_t k = 0; k < 4; ++k) {
      // 4 x the derivatives of x and y at that point, from the sides' vectors.
      const double xi = nodeXi[k] / 3.0, eta = nodeEta[k] / 3.0;
      const double xXi = (x[1] - x[0]) * (1.0 - eta) + (x[2] - x[3]) * (1.0 + eta);
      const double yXi = (y[1] - y[0]) * (1.0 - eta) + (y[2] - y[3]) * (1.0 + eta);
      const double xEta = (x[3] - x[0]) * (1.0 - xi) + (x[2] - x[1]) * (1.0 + xi);
      const double yEta = (y[3] - y[0]) * (1.0 - xi) + (y[2] - y[1]) * (1.0 + xi);
      // 1e-10: the ten-digit abscissa.
      EXPECT_NEAR(f[Equation(k, Fz)], 8.0 * (xXi * yEta - yXi * xEta) / 16.0, 8e-10) << named << k;
    }
  }
}

TEST(ShellLoads, UniformPressureOnATriangleIsSharedEqually) {
  for (const auto& named : test::AllTriangles()) {
    const Vector18 f =
        LoadVectorOf(test::PlaceShape(named.shape, test::InGlobalPlane), {8.0, 8.0, 8.0});
    const double area = test::IntegrateMonomial(named.shape, 0, 0);
    for (std::size_t k = 0; k < 3; ++k)
      EXPECT_NEAR(f[Equation(k, Fz)], 8.0 * area / 3.0, 1e-14 * area) << named;  // rounding
  }
}

// A linear pressure on a triangle: A / 12 (2 qk + qi + qj).
TEST(ShellLoads, LinearPressureOnATriangle) {
  const Vector18 f =
      LoadVectorOf(test::PlaceShape(test::ScaleneTriangle, test::InGlobalPlane), {8.0, -4.0, 20.0});
  const std::array<double, 3> expected{3.0 / 12.0 * (16.0 - 4.0 + 20.0),
                                       3.0 / 12.0 * (8.0 - 8.0 + 20.0),
                                       3.0 / 12.0 * (8.0 - 4.0 + 40.0)};
  for (std::size_t k = 0; k < 3; ++k)
    EXPECT_NEAR(f[Equation(k, Fz)], expected[k], 1e-14);  // rounding
}

// q = (0, 0, p) on the unit square is the plane q = p y, so p at node 4 as well: the forces are
// the integrals of y N, 1/12 at y = 0 and 1/6 at y = 1. 1e-10: the ten-digit abscissa.
TEST(ShellLoads, FirstThreeIntensitiesDefineTheField) {
  const Vector24 f =
      LoadVectorOf(test::PlaceShape(test::UnitSquare, test::InGlobalPlane), {0.0, 0.0, 6.0});
  EXPECT_NEAR(f[Equation(0, Fz)], 0.5, 1e-10);
  EXPECT_NEAR(f[Equation(1, Fz)], 0.5, 1e-10);
  EXPECT_NEAR(f[Equation(2, Fz)], 1.0, 1e-10);
  EXPECT_NEAR(f[Equation(3, Fz)], 1.0, 1e-10);
}

// Forces and moments about the local axes of a linear pressure, against the polygon's integrals:
// the nodal forces f do the work of the pressure for every linear deflection. The integrand is
// cubic along xi and eta, which the rule integrates; 1e-9 is for its ten digits.
template <std::size_t Nodes>
void ExpectResultants(const test::NamedShape<Nodes>& named) {
  const LinearPressure q{2.0, -1.25, 3.5};  // e.g. hydrostatic
  const auto element = test::PlaceShape(named.shape, test::InObliquePlane);
  const auto f = LoadVectorOf(element, q.AtNodes(named.shape));
  const auto integral = [&named](int i, int j) {
    return test::IntegrateMonomial(named.shape, i, j);
  };
  double force = 0.0, momentX = 0.0, momentY = 0.0;
  for (std::size_t k = 0; k < Nodes; ++k) {
    double normal = 0.0;
    for (std::size_t i = 0; i < 3; ++i)
      normal += test::InObliquePlane.axes[3 * i + 2] * f[Equation(k, Fx + i)];
    force += normal;
    momentX += normal * named.shape[k][0];
    momentY += normal * named.shape[k][1];
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_NEAR(f[Equation(k, Fx + i)], normal * test::InObliquePlane.axes[3 * i + 2], 1e-13)
          << named;                                     // along e3 and nothing across; rounding
      EXPECT_EQ(f[Equation(k, Mx + i)], 0.0) << named;  // no moment
    }
  }
  EXPECT_NEAR(force, q.c * integral(0, 0) + q.gx * integral(1, 0) + q.gy * integral(0, 1), 1e-9)
      << named;
  EXPECT_NEAR(momentX, q.c * integral(1, 0) + q.gx * integral(2, 0) + q.gy * integral(1, 1), 1e-9)
      << named;
  EXPECT_NEAR(momentY, q.c * integral(0, 1) + q.gx * integral(1, 1) + q.gy * integral(0, 2), 1e-9)
      << named;
}

TEST(ShellLoads, LinearPressuresHaveTheirResultantsAndNoMoments) {
  for (const auto& named : test::AllQuads()) ExpectResultants(named);
  for (const auto& named : test::AllTriangles()) ExpectResultants(named);
}

// The pressure of water, linear in global Z, is linear in the plane of an oblique panel too: its
// resultant is the pressure at the centroid times the area.
TEST(ShellLoads, HydrostaticPressureOnAnObliquePanel) {
  const auto& shape = test::DistortedQuad;
  const Shell4Element element = test::PlaceShape(shape, test::InObliquePlane);
  const auto pressure = [](double z) { return 9.81 * (12.0 - z); };
  const auto& c = element.Coordinates;
  const Vector24 f = LoadVectorOf(element, {pressure(c[2]), pressure(c[5]), pressure(c[8])});
  const double area = test::IntegrateMonomial(shape, 0, 0);
  const ElementFrame& R = test::InObliquePlane.axes;
  const double centroidZ =
      test::InObliquePlane.origin[2] +
      (R[6] * test::IntegrateMonomial(shape, 1, 0) + R[7] * test::IntegrateMonomial(shape, 0, 1)) /
          area;
  for (std::size_t i = 0; i < 3; ++i) {
    double force = 0.0;
    for (std::size_t k = 0; k < 4; ++k) force += f[Equation(k, Fx + i)];
    EXPECT_NEAR(force, pressure(centroidZ) * area * R[3 * i + 2],
                1e-8);  // the ten-digit abscissa in forces of some hundreds
  }
}

// The Gauss rule in plain sums, with the fourth intensity from the same linear pressure. 1e-13 is
// above the rounding and well below the 1e-11 that the exact abscissa would change. Determinants
// enter by their absolute value.
TEST(ShellLoads, QuadRule) {
  const LinearPressure pressure{2.0, -1.25, 3.5};
  for (const auto& shape : {test::DistortedQuad, test::BowTie}) {
    const auto sumRule = [&](double g) {
      std::array<double, 4> forces{};
      for (const double xi : {-g, g}) {
        for (const double eta : {-g, g}) {
          Array4 N, J, Jinv, x{}, y{};
          Matrix2x4 dN, dNdx;
          double det = 0.0, q = 0.0;
          BilinearFunctions(xi, eta, N);
          BilinearDerivatives(xi, eta, dN);
          for (std::size_t k = 0; k < 4; ++k) {
            x[k] = shape[k][0];
            y[k] = shape[k][1];
            q += N[k] * pressure.At(shape[k]);
          }
          BilinearJacobian(dN, x, y, J, det, Jinv, dNdx);
          for (std::size_t k = 0; k < 4; ++k) forces[k] += std::fabs(det) * q * N[k];
        }
      }
      return forces;
    };
    const Vector24 f =
        LoadVectorOf(test::PlaceShape(shape, test::InGlobalPlane), pressure.AtNodes(shape));
    const std::array<double, 4> forces{f[Equation(0, Fz)], f[Equation(1, Fz)], f[Equation(2, Fz)],
                                       f[Equation(3, Fz)]};
    EXPECT_EQ(test::FindDifference(forces, sumRule(0.5773502692), 1e-13), "");
    EXPECT_NE(test::FindDifference(forces, sumRule(std::sqrt(1.0 / 3.0)), 1e-13), "");
  }
}

TEST(ShellLoads, PressureActsAlongTheNormal) {
  // Numbered the other way round, the square's normal points down.
  const std::array<double, 12> coordinates{0.0, 0.0, 0.0, 0.0, 1.0, 0.0,
                                           1.0, 1.0, 0.0, 1.0, 0.0, 0.0};
  Shell4Element element;
  SetGeometry(element, coordinates.data(), 4, test::ShapeE, test::ShapeMu, test::ShapeTK);
  for (std::size_t k = 0; k < 4; ++k)
    EXPECT_NEAR(LoadVectorOf(element, {8.0, 8.0, 8.0})[Equation(k, Fz)], -2.0, 1e-15);  // rounding
}

// A warped quadrilateral is loaded as its projection along e3.
TEST(ShellLoads, WarpedQuadIsItsProjection) {
  const Shell4Element flat = test::PlaceShape(test::DistortedQuad, test::InGlobalPlane);
  Shell4Element warped = flat;
  warped.Coordinates[3 * 2 + 2] = 1.5;  // z of node 3
  EXPECT_EQ(LoadVectorOf(warped, {1.0, 2.0, 4.0}), LoadVectorOf(flat, {1.0, 2.0, 4.0}));
}

// Nodes 1, 2 and 3 on a line: no plane goes through their intensities alone.
TEST(ShellLoads, FirstThreeNodesOnALineGiveNoFourthIntensity) {
  const auto element =
      test::PlaceShape({{{0.0, 0.0}, {1.0, 0.0}, {2.0, 0.0}, {0.0, 1.0}}}, test::InGlobalPlane);
  const Vector24 f = LoadVectorOf(element, {1.0, 2.0, 4.0});
  for (std::size_t k = 0; k < 4; ++k) EXPECT_FALSE(std::isfinite(f[Equation(k, Fz)])) << k;
}

TEST(ShellLoads, OtherNodeCountIsIgnored) {
  const auto expectSame = [](auto element) {
    const auto f = LoadVectorOf(element, {1.0, 2.0, 4.0});
    element.NodeCount = 5;
    EXPECT_EQ(LoadVectorOf(element, {1.0, 2.0, 4.0}), f);
  };
  expectSame(test::PlaceShape(test::DistortedQuad, test::InObliquePlane));
  expectSame(test::PlaceShape(test::ScaleneTriangle, test::InObliquePlane));
}

}  // namespace
}  // namespace korvex
