// The bilinear map of a four-node element and its 2 x 2 integration points, shared by its membrane
// and plate parts.
//
// Nodes at (xi, eta) = (-1, -1), (1, -1), (1, 1), (-1, 1); N = (1 +- xi)(1 +- eta) / 4.
// Number: double, or a vector of lanes (lanes/lane_number-inl.h).
#pragma once

#include <array>
#include <cstddef>

#include "base/matrix.h"

namespace korvex {

template <typename Number>
using ArrayOf4 = std::array<Number, 4>;
template <typename Number>
using MatrixOf2x4 = std::array<Number, 8>;  // row-major; row 0 d/dxi or d/dx, row 1 d/deta or d/dy

using Array4 = ArrayOf4<double>;
using Matrix2x4 = MatrixOf2x4<double>;

// 1 / sqrt(3) to ten decimals. The integration rule is defined with this number; the exact root
// would change the stiffness from about the tenth digit on.
inline constexpr double GaussAbscissa = 0.5773502692;
inline constexpr double GaussPoints[2]{-GaussAbscissa, GaussAbscissa};
inline constexpr double GaussWeights[2]{1.0, 1.0};

// The natural coordinates of the nodes.
inline constexpr double CornerXi[4]{-1.0, 1.0, 1.0, -1.0};
inline constexpr double CornerEta[4]{-1.0, -1.0, 1.0, 1.0};

// N: 4 shape functions at (xi, eta).
template <typename Number>
inline void BilinearFunctions(double xi, double eta, ArrayOf4<Number>& N) {
  N = {(1.0 - xi) * (1.0 - eta) / 4.0, (1.0 + xi) * (1.0 - eta) / 4.0,
       (1.0 + xi) * (1.0 + eta) / 4.0, (1.0 - xi) * (1.0 + eta) / 4.0};
}

// dN: 2 x 4 derivatives to xi (row 0) and eta (row 1) at (xi, eta).
template <typename Number>
inline void BilinearDerivatives(double xi, double eta, MatrixOf2x4<Number>& dN) {
  dN = {(eta - 1.0) / 4.0, (1.0 - eta) / 4.0, (eta + 1.0) / 4.0, (-1.0 - eta) / 4.0,
        (xi - 1.0) / 4.0,  (-1.0 - xi) / 4.0, (xi + 1.0) / 4.0,  (1.0 - xi) / 4.0};
}

// The Jacobian of the map and the derivatives to x and y.
// dN: 2 x 4; x, y: 4 each, local node coordinates.
// J, Jinv: 2 x 2, row-major; row 0 of J is dx/dxi, dy/dxi, row 1 is dx/deta, dy/deta. detJ is
// signed. dNdx: 2 x 4 = Jinv dN. A degenerate element (detJ = 0) gives non-finite values.
template <typename Number>
inline void BilinearJacobian(const MatrixOf2x4<Number>& dN, const ArrayOf4<Number>& x,
                             const ArrayOf4<Number>& y, ArrayOf4<Number>& J, Number& detJ,
                             ArrayOf4<Number>& Jinv, MatrixOf2x4<Number>& dNdx) {
  J.fill(0.0);
  for (std::size_t k = 0; k < 4; ++k) {
    J[0] += dN[k] * x[k];
    J[1] += dN[k] * y[k];
    J[2] += dN[4 + k] * x[k];
    J[3] += dN[4 + k] * y[k];
  }
  detJ = J[3] * J[0] - J[2] * J[1];
  Jinv = {J[3] / detJ, -J[1] / detJ, -J[2] / detJ, J[0] / detJ};
  MatMultiply(dNdx.data(), Jinv.data(), dN.data(), 2, 2, 4);
}

}  // namespace korvex
