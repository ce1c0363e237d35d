// The material matrices against the compliance of a bar and against stresses summed over the
// thickness.
#include "shell/elasticity.h"

#include <gtest/gtest.h>

namespace korvex {
namespace {

constexpr double E = 2.1e5, Mu = 0.3, TK = 12.5;

// Strains of unit stresses: exx = (sx - Mu sy) / E, gxy = 2 (1 + Mu) txy / E.
TEST(Elasticity, PlaneStressInvertsTheCompliance) {
  Matrix3 D;
  PlaneStressMatrix(E, Mu, D);
  const Matrix3 C{1.0 / E, -Mu / E, 0.0, -Mu / E, 1.0 / E, 0.0, 0.0, 0.0, 2.0 * (1.0 + Mu) / E};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 3; ++j) {
      double sum = 0.0;
      for (std::size_t k = 0; k < 3; ++k) sum += D[3 * i + k] * C[3 * k + j];
      EXPECT_NEAR(sum, i == j ? 1.0 : 0.0, 1e-15) << i << j;  // some roundings of 1
    }
  }
}

// Moments are the integrals of z sigma, with strains z kappa: D TK^3 / 12.
TEST(Elasticity, RigidityIsTheSecondMomentOfThePlaneStressMatrix) {
  Matrix3 D, Db;
  PlaneStressMatrix(E, Mu, D);
  PlateRigidityMatrix(E, Mu, TK, Db);
  for (std::size_t i = 0; i < 9; ++i)
    EXPECT_NEAR(Db[i], D[i] * TK * TK * TK / 12.0, 1e-15 * Db[0]) << i;  // roundings
}

// The order of the operations counts: others differ in the last bit for these values.
TEST(Elasticity, OrderOfTheOperations) {
  const double e = 2.06e11, mu = 0.3, t = 0.009;
  Matrix3 D, Db;
  PlaneStressMatrix(e, mu, D);
  PlateRigidityMatrix(e, mu, t, Db);
  const double s = t * e * t * t / 12.0 / (1.0 - mu * mu);
  EXPECT_EQ(Db, (Matrix3{s, s * mu, 0.0, s * mu, s, 0.0, 0.0, 0.0, s * ((1.0 - mu) / 2.0)}));
  const double d = e / (1.0 - mu * mu);
  EXPECT_EQ(D, (Matrix3{d, d * mu, 0.0, d * mu, d, 0.0, 0.0, 0.0, d * ((1.0 - mu) / 2.0)}));
  EXPECT_NE(s, e * (t * t * t) / 12.0 / (1.0 - mu * mu));
  EXPECT_NE(s, t * e * t * t / (12.0 * (1.0 - mu * mu)));
  EXPECT_NE(s, d * t * t * t / 12.0);
}

}  // namespace
}  // namespace korvex
