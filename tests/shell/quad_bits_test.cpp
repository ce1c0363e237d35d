// The last bits of the four-node element: xi runs outside and eta inside, every point adds bending
// before shear, and the drilling penalty multiplies its rows first. Other orders are
// mathematically equal, but their last bits differ.
#include <gtest/gtest.h>

#include <cmath>

#include "shell/quad_membrane.h"
#include "shell/quad_plate.h"
#include "support/shell_shapes.h"

namespace korvex {
namespace {

// Dofs of a node of the in-plane part.
enum InPlaneDof : std::size_t { U, V, Drilling };

// A quadrilateral for which the orders below differ.
constexpr Array4 X{0.31, 2.73, 3.19, -0.17}, Y{0.47, 0.83, 2.61, 2.29};
constexpr double E = 2.06e11, Mu = 0.3, TK = 0.013;
constexpr double G = 0.5773502692;  // the abscissa

using Matrix12 = std::array<double, 144>;

template <typename Part>
Part MakePart() {
  test::PlaneShape<4> shape{};
  for (std::size_t k = 0; k < shape.size(); ++k) shape[k] = {X[k], Y[k]};
  return test::SetUpShape<Part>(shape, E, Mu, TK);
}

enum class Loops { XiOutside, EtaOutside };

// Calls f(xi, eta) for the four points.
template <typename Function>
void ForPoints(Loops loops, const Function& f) {
  for (const double outer : {-G, G}) {
    for (const double inner : {-G, G}) {
      if (loops == Loops::XiOutside) f(outer, inner);
      if (loops == Loops::EtaOutside) f(inner, outer);
    }
  }
}

// How the factor s and the row b of the penalty are multiplied.
enum class Penalty { RowsFirst, FactorWithRow, FactorWithColumn };

// The penalty's row at (xi, eta); returns the determinant.
double FillPenaltyRow(double xi, double eta, std::array<double, 12>& b) {
  const double N[4] = {(1.0 - xi) * (1.0 - eta) / 4.0, (1.0 + xi) * (1.0 - eta) / 4.0,
                       (1.0 + xi) * (1.0 + eta) / 4.0, (1.0 - xi) * (1.0 + eta) / 4.0};
  const double dXi[4] = {(eta - 1.0) / 4.0, (1.0 - eta) / 4.0, (eta + 1.0) / 4.0,
                         (-1.0 - eta) / 4.0};
  const double dEta[4] = {(xi - 1.0) / 4.0, (-1.0 - xi) / 4.0, (xi + 1.0) / 4.0, (1.0 - xi) / 4.0};
  double xXi = 0.0, yXi = 0.0, xEta = 0.0, yEta = 0.0;
  for (std::size_t k = 0; k < 4; ++k) {
    xXi += dXi[k] * X[k];
    yXi += dXi[k] * Y[k];
    xEta += dEta[k] * X[k];
    yEta += dEta[k] * Y[k];
  }
  const double det = yEta * xXi - xEta * yXi;
  for (std::size_t k = 0; k < 4; ++k) {
    b[3 * k + U] = 0.5 * (-xEta / det * dXi[k] + xXi / det * dEta[k]);
    b[3 * k + V] = -0.5 * (yEta / det * dXi[k] + -yXi / det * dEta[k]);
    b[3 * k + Drilling] = N[k];
  }
  return det;
}

// The drilling penalty in plain sums.
Matrix12 SumPenalty(Loops loops, Penalty form) {
  const double gamma = E * 0.5 / (Mu + 1.0) * 10.0 * TK;
  Matrix12 K{};
  ForPoints(loops, [&](double xi, double eta) {
    std::array<double, 12> b{};
    const double s = std::fabs(FillPenaltyRow(xi, eta, b)) * gamma;
    for (std::size_t i = 0; i < 12; ++i) {
      for (std::size_t j = 0; j < 12; ++j) {
        if (form == Penalty::RowsFirst) K[12 * i + j] += s * (b[j] * b[i]);
        if (form == Penalty::FactorWithRow) K[12 * i + j] += s * b[i] * b[j];
        if (form == Penalty::FactorWithColumn) K[12 * i + j] += s * b[j] * b[i];
      }
    }
  });
  return K;
}

TEST(QuadBits, DrillingPenalty) {
  Matrix12 K{};
  MakePart<QuadMembrane>().DrillingStiffness(K.data());
  const Matrix12 expected = SumPenalty(Loops::XiOutside, Penalty::RowsFirst);
  EXPECT_EQ(K, expected);
  EXPECT_NE(SumPenalty(Loops::EtaOutside, Penalty::RowsFirst), expected);
  EXPECT_NE(SumPenalty(Loops::XiOutside, Penalty::FactorWithRow), expected);
  EXPECT_NE(SumPenalty(Loops::XiOutside, Penalty::FactorWithColumn), expected);
}

// K += s B^T (D B) in plain sums. B: Rows x 12, D: Rows x Rows.
template <std::size_t Rows>
void AddProduct(const std::array<double, 12 * Rows>& B, const std::array<double, Rows * Rows>& D,
                double s, Matrix12& K) {
  for (std::size_t i = 0; i < 12; ++i) {
    for (std::size_t j = 0; j < 12; ++j) {
      double sum = 0.0;
      for (std::size_t r = 0; r < Rows; ++r) {
        double DB = 0.0;
        for (std::size_t c = 0; c < Rows; ++c) DB += D[Rows * r + c] * B[12 * c + j];
        sum += B[12 * r + i] * DB;
      }
      K[12 * i + j] += s * sum;
    }
  }
}

// Which integrals a walk through the points adds.
enum class Parts { Both, Bending, Shear };

// Adds the plate's integrals, point by point.
void SumPlate(Loops loops, Parts parts, Matrix12& K) {
  const double rigidity = TK * E * TK * TK / 12.0 / (1.0 - Mu * Mu);
  const std::array<double, 9> Db{rigidity,      rigidity * Mu, 0.0,
                                 rigidity * Mu, rigidity,      0.0,
                                 0.0,           0.0,           rigidity * ((1.0 - Mu) / 2.0)};
  const double shear = E * TK / ((Mu + 1.0) * 2.0 * 1.2);
  const std::array<double, 4> Ds{shear, 0.0, 0.0, shear};
  QuadPlate plate = MakePart<QuadPlate>();  // for its strains at the points
  ForPoints(loops, [&](double xi, double eta) {
    plate.ShapeFunctions(xi, eta);
    plate.Jacobian();
    plate.CurvatureMatrix();
    plate.ShearStrainMatrix(plate.detJ, xi, eta);
    const double s = std::fabs(plate.detJ);
    if (parts != Parts::Shear) AddProduct<3>(plate.Bb, Db, s, K);
    if (parts != Parts::Bending) AddProduct<2>(plate.Bs, Ds, s, K);
  });
}

TEST(QuadBits, PlateStiffness) {
  QuadPlate plate = MakePart<QuadPlate>();
  plate.Stiffness();
  Matrix12 expected{}, etaOutside{}, oneAfterTheOther{};
  SumPlate(Loops::XiOutside, Parts::Both, expected);
  EXPECT_EQ(plate.K, expected);
  SumPlate(Loops::EtaOutside, Parts::Both, etaOutside);
  EXPECT_NE(etaOutside, expected);
  SumPlate(Loops::XiOutside, Parts::Bending, oneAfterTheOther);
  SumPlate(Loops::XiOutside, Parts::Shear, oneAfterTheOther);
  EXPECT_NE(oneAfterTheOther, expected);
}

}  // namespace
}  // namespace korvex
