// The material matrices of isotropic plates, used by all membrane and plate parts.
//
// Both are a factor times [1 Mu 0; Mu 1 0; 0 0 (1 - Mu)/2], local axes, x, y, xy in this order.
// Nothing is checked: Mu = 1 or -1 gives infinities or NaNs. Number: as in bilinear_map.h.
#pragma once

#include <array>

#include "base/matrix.h"

namespace korvex {

template <typename Number>
using MatrixOf3 = std::array<Number, 9>;  // 3 x 3, row-major

using Matrix3 = MatrixOf3<double>;

// D = s [1 Mu 0; Mu 1 0; 0 0 (1 - Mu)/2]
template <typename Number>
inline void FillIsotropic(Number s, Number Mu, MatrixOf3<Number>& D) {
  D = {1.0, Mu,  0.0,  //
       Mu,  1.0, 0.0,  //
       0.0, 0.0, (1.0 - Mu) / 2.0};
  MatScale(D.data(), D.data(), s, 3, 3);
}

// D: 3 x 3, factor E / (1 - Mu^2): plane stresses (sx, sy, txy) from strains (exx, eyy, gxy)
// (Timoshenko & Goodier 1970, ch. 2).
template <typename Number>
inline void PlaneStressMatrix(Number E, Number Mu, MatrixOf3<Number>& D) {
  FillIsotropic(E / (1.0 - Mu * Mu), Mu, D);
}

// Db: 3 x 3, factor E TK^3 / 12 / (1 - Mu^2): moments per length (Mx, My, Mxy) from curvatures (kx,
// ky, kxy) (Timoshenko & Woinowsky-Krieger 1959, ch. 2).
template <typename Number>
inline void PlateRigidityMatrix(Number E, Number Mu, Number TK, MatrixOf3<Number>& Db) {
  FillIsotropic(TK * E * TK * TK / 12.0 / (1.0 - Mu * Mu), Mu, Db);
}

}  // namespace korvex
