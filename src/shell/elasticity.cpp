#include "shell/elasticity.h"

#include "base/matrix.h"

namespace korvex {

namespace {

// s [1 Mu 0; Mu 1 0; 0 0 (1 - Mu)/2]
void FillIsotropic(double s, double Mu, Matrix3& D) {
  D = {1.0, Mu,  0.0,  //
       Mu,  1.0, 0.0,  //
       0.0, 0.0, (1.0 - Mu) / 2.0};
  MatScale(D.data(), D.data(), s, 3, 3);
}

}  // namespace

void PlaneStressMatrix(double E, double Mu, Matrix3& D) {
  FillIsotropic(E / (1.0 - Mu * Mu), Mu, D);
}

void PlateRigidityMatrix(double E, double Mu, double TK, Matrix3& Db) {
  FillIsotropic(TK * E * TK * TK / 12.0 / (1.0 - Mu * Mu), Mu, Db);
}

}  // namespace korvex
