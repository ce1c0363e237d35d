#include "shell/tri_membrane.h"

#include <algorithm>

#include "base/matrix.h"
#include "shell/part_products.h"

namespace korvex {

namespace {

// Points in area coordinates and weights for the drilling penalty. The usual cubic rule has the
// weight -0.5625 at the centroid; here it is positive, deliberately. The weights sum to 2.125
// instead of 1, which increases the penalty.
constexpr std::array<Array3, 4> DrillingPoints{
    {{1.0 / 3.0, 1.0 / 3.0, 1.0 / 3.0}, {0.6, 0.2, 0.2}, {0.2, 0.6, 0.2}, {0.2, 0.2, 0.6}}};
constexpr std::array<double, 4> DrillingWeights{0.5625, 0.5208333333333334, 0.5208333333333334,
                                                0.5208333333333334};

}  // namespace

void TriMembrane::Init() {
  nodes = 3;
  membraneDofs = 6;
  dofs = 9;
  strains = 3;
}

void TriMembrane::StrainMatrix(double* out) const {
  const double x1 = x[0], x2 = x[1], x3 = x[2];
  const double y1 = y[0], y2 = y[1], y3 = y[2];
  const std::array<double, 18> rows{y2 - y3, 0.0,     y3 - y1, 0.0,     y1 - y2, 0.0,       // exx
                                    0.0,     x3 - x2, 0.0,     x1 - x3, 0.0,     x2 - x1,   // eyy
                                    x3 - x2, y2 - y3, x1 - x3, y3 - y1, x2 - x1, y1 - y2};  // gxy
  const double twiceA = TriangleArea(x, y) * 2.0;
  for (std::size_t i = 0; i < rows.size(); ++i) out[i] = rows[i] / twiceA;
}

void TriMembrane::ElasticityMatrix(double* out) const {
  Matrix3 D;
  PlaneStressMatrix(E, Mu, D);
  std::copy(D.begin(), D.end(), out);
}

void TriMembrane::MembraneStiffness(double* out) const {
  std::array<double, 18> B{};
  Matrix3 D{};
  StrainMatrix(B.data());
  ElasticityMatrix(D.data());
  std::fill(out, out + 36, 0.0);
  AddStiffnessProduct<3, 6, 2>(B.data(), D.data(), TriangleArea(x, y) * TK, out);
}

void TriMembrane::DrillingStiffness(double* out) const {
  const double A = TriangleArea(x, y);
  const double gamma = DrillingPenalty(E, Mu, TK);
  std::fill(out, out + 81, 0.0);
  for (std::size_t point = 0; point < DrillingPoints.size(); ++point) {
    const Array3& L = DrillingPoints[point];
    const double px = L[0] * x[0] + L[1] * x[1] + L[2] * x[2];
    const double py = L[0] * y[0] + L[1] * y[1] + L[2] * y[2];
    std::array<double, 9> b{};
    for (std::size_t k = 0; k < 3; ++k) {
      const std::size_t i = (k + 1) % 3, j = (k + 2) % 3;
      // The area coordinate L[k], computed again from the position: the last bit may differ.
      const double Lk =
          (x[i] * y[j] - x[j] * y[i] + (y[i] - y[j]) * px + (x[j] - x[i]) * py) / (2.0 * A);
      b[3 * k] = (x[j] - x[i]) / (4.0 * A);
      b[3 * k + 1] = -(y[i] - y[j]) / (4.0 * A);
      b[3 * k + 2] = Lk;
    }
    AddOuterProduct<9, 3>(b.data(), gamma * DrillingWeights[point], out);
  }
  MatScale(out, out, A, 9, 9);
}

void TriMembrane::Stiffness() {
  DrillingStiffness(K.data());
  std::array<double, 36> Km{};
  MembraneStiffness(Km.data());
  AddMembranePart<3>(Km.data(), K.data());
}

}  // namespace korvex
