// The material matrices of isotropic plates, shared by all membrane and plate parts.
#pragma once

#include <array>

namespace korvex {

using Matrix3 = std::array<double, 9>;  // 3 x 3, row-major

// Plane stress: D = E / (1 - Mu^2) [1 Mu 0; Mu 1 0; 0 0 (1 - Mu)/2], stresses (sx, sy, txy) from
// strains (exx, eyy, gxy) (Timoshenko & Goodier 1970, ch. 2).
void PlaneStressMatrix(double E, double Mu, Matrix3& D);

// Bending: Db = E TK^3 / 12 / (1 - Mu^2) times the same, moments (Mx, My, Mxy) per length from
// curvatures (kx, ky, kxy) (Timoshenko & Woinowsky-Krieger 1959, ch. 2).
void PlateRigidityMatrix(double E, double Mu, double TK, Matrix3& Db);

}  // namespace korvex
