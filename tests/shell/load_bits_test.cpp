// The last bits of the shells' load vectors: the order of factors, terms and points. Other orders
// are mathematically equal, but their last bits differ.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "shell/shell_loads.h"
#include "support/dof_names.h"

namespace korvex {
namespace {

constexpr ElementFrame GlobalAxes{1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0};
constexpr std::array<double, 3> Q{1013.7, -211.3, 3507.1};  // intensities at nodes 1, 2, 3

// The forces along Z on an element whose local axes are the global ones.
// loadVector: Shell4LoadVector or Shell3LoadVector; x, y: one per node.
template <std::int32_t Nodes, typename Function>
std::vector<double> ForcesOn(const Function& loadVector,
                             const std::array<double, static_cast<std::size_t>(Nodes)>& x,
                             const std::array<double, static_cast<std::size_t>(Nodes)>& y) {
  ShellElement<Nodes> element;
  for (std::size_t k = 0; k < x.size(); ++k) {
    element.Coordinates[3 * k] = x[k];
    element.Coordinates[3 * k + 1] = y[k];
  }
  element.Frame = GlobalAxes;
  ShellSurfaceLoad load;
  load.q = Q;
  std::array<double, static_cast<std::size_t>(Nodes) * 6> f{};
  loadVector(element, load, f.data());
  std::vector<double> forces;
  for (std::size_t k = 0; k < x.size(); ++k) forces.push_back(f[test::Equation(k, test::Fz)]);
  return forces;
}

// ---------------------------------------------------------------------------------------------
// The quadrilateral, away from the origin.

constexpr std::array<double, 4> X4{7.03, 9.99, 10.29, 7.47}, Y4{3.1, 3.27, 5.04, 5.78};

// The plane through (x, y, q) of nodes 1, 2, 3, by its normal n.
Vector3 PlaneNormal() {
  const double ax = X4[1] - X4[0], ay = Y4[1] - Y4[0], aq = Q[1] - Q[0];
  const double bx = X4[2] - X4[0], by = Y4[2] - Y4[0], bq = Q[2] - Q[0];
  return {ay * bq - aq * by, aq * bx - ax * bq, ax * by - ay * bx};
}

// The intensity at node 4: the terms of node 1, less those of node 4, over n_z.
double FourthIntensity() {
  const auto [nx, ny, nz] = PlaneNormal();
  return (nx * X4[0] + ny * Y4[0] + nz * Q[0] - nx * X4[3] - ny * Y4[3]) / nz;
}

enum class Loops { XiOutside, EtaOutside };
enum class Factors { IntensityFirst, FunctionFirst, ProductFirst };  // of |detJ| q Nk

// The forces in plain sums: |detJ| q Nk, the weights being 1.
std::vector<double> SumQuad(double q4, Loops loops, Factors factors) {
  constexpr double G = 0.5773502692;
  std::vector<double> forces(4, 0.0);
  for (const double outer : {-G, G}) {
    for (const double inner : {-G, G}) {
      const double xi = loops == Loops::XiOutside ? outer : inner;
      const double eta = loops == Loops::XiOutside ? inner : outer;
      const double N[4] = {(1.0 - xi) * (1.0 - eta) / 4.0, (1.0 + xi) * (1.0 - eta) / 4.0,
                           (1.0 + xi) * (1.0 + eta) / 4.0, (1.0 - xi) * (1.0 + eta) / 4.0};
      const double dXi[4] = {(eta - 1.0) / 4.0, (1.0 - eta) / 4.0, (eta + 1.0) / 4.0,
                             (-1.0 - eta) / 4.0};
      const double dEta[4] = {(xi - 1.0) / 4.0, (-1.0 - xi) / 4.0, (xi + 1.0) / 4.0,
                              (1.0 - xi) / 4.0};
      double xXi = 0.0, yXi = 0.0, xEta = 0.0, yEta = 0.0;
      for (std::size_t k = 0; k < 4; ++k) {
        xXi += dXi[k] * X4[k];
        yXi += dXi[k] * Y4[k];
        xEta += dEta[k] * X4[k];
        yEta += dEta[k] * Y4[k];
      }
      const double det = std::fabs(yEta * xXi - xEta * yXi);
      const double q = N[0] * Q[0] + N[1] * Q[1] + N[2] * Q[2] + N[3] * q4;
      for (std::size_t k = 0; k < 4; ++k) {
        if (factors == Factors::IntensityFirst) forces[k] += det * q * N[k];
        if (factors == Factors::FunctionFirst) forces[k] += det * N[k] * q;
        if (factors == Factors::ProductFirst) forces[k] += det * (q * N[k]);
      }
    }
  }
  return forces;
}

TEST(LoadBits, Quadrilateral) {
  const auto forces = ForcesOn<4>(Shell4LoadVector, X4, Y4);
  const double q4 = FourthIntensity();
  const auto expected = SumQuad(q4, Loops::XiOutside, Factors::IntensityFirst);
  EXPECT_EQ(forces, expected);
  EXPECT_NE(SumQuad(q4, Loops::EtaOutside, Factors::IntensityFirst), expected);
  EXPECT_NE(SumQuad(q4, Loops::XiOutside, Factors::FunctionFirst), expected);
  EXPECT_NE(SumQuad(q4, Loops::XiOutside, Factors::ProductFirst), expected);
}

// Other orders of the terms give another intensity, and that other forces.
TEST(LoadBits, FourthIntensityIsSummedInItsOrder) {
  const auto [nx, ny, nz] = PlaneNormal();
  const auto expected = SumQuad(FourthIntensity(), Loops::XiOutside, Factors::IntensityFirst);
  for (const double other : {
           (nx * X4[0] - nx * X4[3] + ny * Y4[0] - ny * Y4[3] + nz * Q[0]) / nz,
           (nx * (X4[0] - X4[3]) + ny * (Y4[0] - Y4[3]) + nz * Q[0]) / nz,
           Q[0] + (nx * (X4[0] - X4[3]) + ny * (Y4[0] - Y4[3])) / nz,
           (nx * X4[0] + ny * Y4[0] + nz * Q[0] - (nx * X4[3] + ny * Y4[3])) / nz,
           (nx * X4[0] + ny * Y4[0] + nz * Q[0] - ny * Y4[3] - nx * X4[3]) / nz,
       }) {
    EXPECT_NE(SumQuad(other, Loops::XiOutside, Factors::IntensityFirst), expected);
  }
}

// ---------------------------------------------------------------------------------------------
// The triangle.

constexpr std::array<double, 3> X3{7.89, 9.21, 8.41}, Y3{3.41, 3.84, 5.24};

double SumArea() {
  const auto& [x1, x2, x3] = X3;
  const auto& [y1, y2, y3] = Y3;
  return std::fabs(x1 * y2 + x2 * y3 + x3 * y1 - x1 * y3 - x2 * y1 - x3 * y2) / 2.0;
}

double SumPlateArea() {
  const auto& [x1, x2, x3] = X3;
  const auto& [y1, y2, y3] = Y3;
  return std::fabs(x1 * y2 + x2 * y3 + x3 * y1 - x2 * y1 - x3 * y2 - x1 * y3) / 2.0;
}

// The forces in plain sums over the mid-sides; share(q): A q / 3 in one form or another.
template <typename Share>
std::vector<double> SumTriangle(const Share& share) {
  std::vector<double> forces(3, 0.0);
  for (const Vector3& L :
       {Vector3{0.5, 0.5, 0.0}, Vector3{0.0, 0.5, 0.5}, Vector3{0.5, 0.0, 0.5}}) {
    const double q = L[0] * Q[0] + L[1] * Q[1] + L[2] * Q[2];
    for (std::size_t k = 0; k < 3; ++k) forces[k] += share(q) * L[k];
  }
  return forces;
}

TEST(LoadBits, Triangle) {
  const double A = SumArea();
  const auto expected = SumTriangle([A](double q) { return A * 0.3333333333333333 * q; });
  EXPECT_EQ(ForcesOn<3>(Shell3LoadVector, X3, Y3), expected);
  EXPECT_NE(SumTriangle([A](double q) { return A * 0.333333333333333 * q; }), expected);
  EXPECT_NE(SumTriangle([A](double q) { return A * (0.3333333333333333 * q); }), expected);
  EXPECT_NE(SumTriangle([A](double q) { return A / 3.0 * q; }), expected);
  EXPECT_NE(SumTriangle([A](double q) { return A * q / 3.0; }), expected);
  EXPECT_NE(SumTriangle([](double q) { return SumPlateArea() * 0.3333333333333333 * q; }),
            expected);
}

}  // namespace
}  // namespace korvex
