// The bilinear map of a four-node element and its 2 x 2 integration points, shared by its membrane
// and plate parts.
//
// Nodes at (xi, eta) = (-1, -1), (1, -1), (1, 1), (-1, 1); N = (1 +- xi)(1 +- eta) / 4.
#pragma once

#include <array>

namespace korvex {

using Array4 = std::array<double, 4>;
using Matrix2x4 = std::array<double, 8>;  // row-major; row 0 d/dxi or d/dx, row 1 d/deta or d/dy

// 1 / sqrt(3) to ten decimals. The integration rule is defined with this number; the exact root
// would change the stiffness from about the tenth digit on.
inline constexpr double GaussAbscissa = 0.5773502692;
inline constexpr std::array<double, 2> GaussPoints{-GaussAbscissa, GaussAbscissa};
inline constexpr std::array<double, 2> GaussWeights{1.0, 1.0};

// N: 4 shape functions at (xi, eta).
void BilinearFunctions(double xi, double eta, Array4& N);

// dN: 2 x 4 derivatives to xi (row 0) and eta (row 1) at (xi, eta).
void BilinearDerivatives(double xi, double eta, Matrix2x4& dN);

// The Jacobian of the map and the derivatives to x and y.
// dN: 2 x 4; x, y: 4 each, local node coordinates.
// J, Jinv: 2 x 2, row-major; row 0 of J is dx/dxi, dy/dxi, row 1 is dx/deta, dy/deta. detJ is
// signed. dNdx: 2 x 4 = Jinv dN. A degenerate element (detJ = 0) gives non-finite values.
void BilinearJacobian(const Matrix2x4& dN, const Array4& x, const Array4& y, Array4& J,
                      double& detJ, Array4& Jinv, Matrix2x4& dNdx);

}  // namespace korvex
