#include "shell/bilinear_map.h"

#include "base/matrix.h"

namespace korvex {

void BilinearFunctions(double xi, double eta, Array4& N) {
  N = {(1.0 - xi) * (1.0 - eta) / 4.0, (1.0 + xi) * (1.0 - eta) / 4.0,
       (1.0 + xi) * (1.0 + eta) / 4.0, (1.0 - xi) * (1.0 + eta) / 4.0};
}

void BilinearDerivatives(double xi, double eta, Matrix2x4& dN) {
  dN = {(eta - 1.0) / 4.0, (1.0 - eta) / 4.0, (eta + 1.0) / 4.0, (-1.0 - eta) / 4.0,
        (xi - 1.0) / 4.0,  (-1.0 - xi) / 4.0, (xi + 1.0) / 4.0,  (1.0 - xi) / 4.0};
}

void BilinearJacobian(const Matrix2x4& dN, const Array4& x, const Array4& y, Array4& J,
                      double& detJ, Array4& Jinv, Matrix2x4& dNdx) {
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
