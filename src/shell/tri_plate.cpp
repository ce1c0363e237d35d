// Curvatures Bb = G M + corner terms: M gives the mid-side rotations from the corner dofs, G the
// derivatives of the mid-side functions. Edge e runs from node e to node e + 1 (cyclic).
#include "shell/tri_plate.h"

#include <algorithm>
#include <cmath>

#include "base/matrix.h"
#include "shell/part_products.h"

namespace korvex {

namespace {

// The area. The order of the sum differs from that of TriangleArea, and so may the last bit.
double PlateArea(const Array3& x, const Array3& y) {
  return std::fabs(x[0] * y[1] + x[1] * y[2] + x[2] * y[0] - x[1] * y[0] - x[2] * y[1] -
                   x[0] * y[2]) *
         0.5;
}

// M: 6 x 9, row-major: rx and ry at the mid-sides of edges 1-2, 2-3, 3-1 from w, rx, ry of the
// corners.
void MidSideRotations(const TriPlate& plate, std::array<double, 54>& M) {
  M.fill(0.0);
  for (std::size_t edge = 0; edge < 3; ++edge) {
    const std::size_t i = edge, j = (edge + 1) % 3;
    const double dx = plate.x[j] - plate.x[i];
    const double dy = plate.y[j] - plate.y[i];
    const double l = std::sqrt(dx * dx + dy * dy);
    const double c = -dx / l;
    const double s = dy / l;
    const double a = 0.5 * (c * c) - 0.25 * (s * s);
    const double b = 0.5 * (s * s) - 0.25 * (c * c);
    const double e = -0.75 * c * s;
    double* rx = &M[18 * edge];
    double* ry = rx + 9;
    rx[3 * i] = -1.5 * s / l, rx[3 * i + 1] = a, rx[3 * i + 2] = e;
    rx[3 * j] = 1.5 * s / l, rx[3 * j + 1] = a, rx[3 * j + 2] = e;
    ry[3 * i] = -1.5 * c / l, ry[3 * i + 1] = e, ry[3 * i + 2] = b;
    ry[3 * j] = 1.5 * c / l, ry[3 * j + 1] = e, ry[3 * j + 2] = b;
  }
}

}  // namespace

void TriPlate::Init() {
  nodes = 3;
  dofs = 9;
}

void TriPlate::BendingRigidity(double* out) const {
  Matrix3 Db;
  PlateRigidityMatrix(E, Mu, TK, Db);
  std::copy(Db.begin(), Db.end(), out);
}

void TriPlate::CurvatureMatrix(const Array3& L, double* out) const {
  const double A = PlateArea(x, y);
  // 2A dL/dx and 2A dL/dy of each corner.
  std::array<double, 3> dy{}, dx{};
  for (std::size_t k = 0; k < 3; ++k) {
    const std::size_t j = (k + 1) % 3, m = (k + 2) % 3;
    dy[k] = y[j] - y[m];
    dx[k] = x[m] - x[j];
  }

  // G: 3 x 6, row-major: curvatures from the mid-side rotations, whose functions are 4 Li Lj.
  std::array<double, 18> G{};
  for (std::size_t edge = 0; edge < 3; ++edge) {
    const std::size_t i = edge, j = (edge + 1) % 3;
    const double ddx = 2.0 / A * (dy[j] * L[i] + dy[i] * L[j]);
    const double ddy = 2.0 / A * (dx[j] * L[i] + dx[i] * L[j]);
    G[2 * edge + 1] = ddx;    // kx = d(ry)/dx
    G[6 + 2 * edge] = -ddy;   // ky = -d(rx)/dy
    G[12 + 2 * edge] = -ddx;  // kxy = d(ry)/dy - d(rx)/dx
    G[12 + 2 * edge + 1] = ddy;
  }
  std::array<double, 54> M{};
  MidSideRotations(*this, M);
  MatMultiply(out, G.data(), M.data(), 3, 6, 9);

  // Curvatures from the corner rotations, whose functions are Lk (2 Lk - 1).
  for (std::size_t k = 0; k < 3; ++k) {
    const double ddx = (4.0 * L[k] - 1.0) / 2.0 * dy[k] / A;
    const double ddy = (4.0 * L[k] - 1.0) / 2.0 * dx[k] / A;
    out[3 * k + 2] += ddx;
    out[9 + 3 * k + 1] += -ddy;
    out[18 + 3 * k + 1] += -ddx;
    out[18 + 3 * k + 2] += ddy;
  }
}

void TriPlate::Stiffness() {
  Matrix3 Db{};
  BendingRigidity(Db.data());
  std::array<double, 27> Bb{};
  K.fill(0.0);
  for (const Array3& point : MidSidePoints) {
    CurvatureMatrix(point, Bb.data());
    AddStiffnessProduct<3, 9, 3>(Bb.data(), Db.data(), MidSideWeight, K.data());
  }
  MatScale(K.data(), K.data(), PlateArea(x, y), 9, 9);
}

}  // namespace korvex
