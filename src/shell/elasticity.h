// The material matrices of isotropic plates, used by all membrane and plate parts.
//
// Both are a factor times [1 Mu 0; Mu 1 0; 0 0 (1 - Mu)/2], local axes, x, y, xy in this order.
// Nothing is checked: Mu = 1 or -1 gives infinities or NaNs.
#pragma once

#include <array>

namespace korvex {

using Matrix3 = std::array<double, 9>;  // 3 x 3, row-major

// D: 3 x 3, factor E / (1 - Mu^2): plane stresses (sx, sy, txy) from strains (exx, eyy, gxy)
// (Timoshenko & Goodier 1970, ch. 2).
void PlaneStressMatrix(double E, double Mu, Matrix3& D);

// Db: 3 x 3, factor E TK^3 / 12 / (1 - Mu^2): moments per length (Mx, My, Mxy) from curvatures (kx,
// ky, kxy) (Timoshenko & Woinowsky-Krieger 1959, ch. 2).
void PlateRigidityMatrix(double E, double Mu, double TK, Matrix3& Db);

}  // namespace korvex
