// The beam's stiffness, whose products leave zeros out, bit for bit against plain products of whole
// matrices: oblique beams and beams along the axes, with and without offsets, and numbers that
// overflow on the way.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "beam/beam_frame.h"
#include "beam/beam_stiffness.h"

namespace korvex {
namespace {

constexpr std::size_t Dofs = 12;

double Draw(std::mt19937& random, double low, double high) {
  return std::uniform_real_distribution<double>(low, high)(random);
}

BeamMatrix Multiply(const BeamMatrix& A, const BeamMatrix& B) {
  BeamMatrix C{};
  for (std::size_t i = 0; i < Dofs; ++i) {
    for (std::size_t j = 0; j < Dofs; ++j) {
      double sum = 0.0;
      for (std::size_t k = 0; k < Dofs; ++k) sum += A[i * Dofs + k] * B[k * Dofs + j];
      C[i * Dofs + j] = sum;
    }
  }
  return C;
}

// (X^T K) X.
BeamMatrix Transform(const BeamMatrix& X, const BeamMatrix& K) {
  BeamMatrix Xt{};
  for (std::size_t i = 0; i < Dofs; ++i) {
    for (std::size_t j = 0; j < Dofs; ++j) Xt[i * Dofs + j] = X[j * Dofs + i];
  }
  return Multiply(Multiply(Xt, K), X);
}

// The displacements of the centroids from those of the nodes: u + theta x e.
BeamMatrix MakeArm(const SectionProperties& s) {
  BeamMatrix B{};
  for (std::size_t i = 0; i < Dofs; ++i) B[i * Dofs + i] = 1.0;
  const double arm[3][3] = {{0.0, s.Ez, -s.Ey}, {-s.Ez, 0.0, s.Ex}, {s.Ey, -s.Ex, 0.0}};
  for (const std::size_t node : {0U, 6U}) {
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 3; ++j) B[(node + i) * Dofs + node + 3 + j] = arm[i][j];
    }
  }
  return B;
}

// Of a beam without offset along the first axis, whose frame is the identity. It has the bits of
// the matrix in local axes, but no -0, which in the sums of a product is as good as 0. The length
// is that of the beam: the root of a square is exact.
BeamMatrix LocalStiffness(BeamElement beam) {
  beam.NodeJ = {BeamLength(beam), 0.0, 0.0};
  beam.NodeI = {0.0, 0.0, 0.0};
  beam.RefPoint = {0.0, 0.0, 1.0};
  beam.Section.Ex = beam.Section.Ey = beam.Section.Ez = 0.0;
  BeamMatrix K{};
  BeamStiffness(beam, K.data());
  return K;
}

BeamMatrix PlainStiffness(const BeamElement& beam) {
  BeamFrame frame;
  BeamMatrix T;
  ComputeBeamFrame(beam, frame);
  BuildBeamRotation(frame, T);
  return Transform(T, Transform(MakeArm(beam.Section), LocalStiffness(beam)));
}

// NaNs may differ in their sign: which of two a product has depends on the order of its factors.
void ExpectPlainBits(const BeamElement& beam) {
  BeamMatrix K;
  K.fill(-7.0);  // every entry must be written
  BeamStiffness(beam, K.data());
  const BeamMatrix expected = PlainStiffness(beam);
  for (std::size_t i = 0; i < K.size(); ++i) {
    if (std::isnan(K[i]) && std::isnan(expected[i])) continue;
    ASSERT_EQ(std::memcmp(&K[i], &expected[i], sizeof(double)), 0)
        << i / Dofs << ',' << i % Dofs << ": " << K[i] << " instead of " << expected[i];
  }
}

// Everything at random, some of the section's numbers zero.
BeamElement MakeBeam(std::mt19937& random) {
  BeamElement beam;
  for (std::size_t i = 0; i < 3; ++i) {
    beam.NodeI[i] = Draw(random, -20.0, 20.0);
    beam.NodeJ[i] = beam.NodeI[i] + Draw(random, -3.0, 3.0);
    beam.RefPoint[i] = beam.NodeI[i] + Draw(random, -1.0, 1.0);
  }
  beam.E = Draw(random, 1e10, 3e11), beam.Mu = Draw(random, -0.4, 0.5);
  SectionProperties& s = beam.Section;
  for (double* number : {&s.A, &s.Iy, &s.Iz, &s.J, &s.ShearFactorY, &s.ShearFactorZ}) {
    *number = random() % 5 == 0 ? 0.0 : Draw(random, 0.01, 1.0);
  }
  for (double* number : {&s.Ex, &s.Ey, &s.Ez}) {
    const double offsets[]{0.0, -0.0, Draw(random, -0.5, 0.5)};
    *number = offsets[random() % 3];
  }
  return beam;
}

// Along an axis, with zeros of both signs among the differences of the coordinates.
BeamElement MakeParallelBeam(unsigned position, std::mt19937& random) {
  BeamElement beam = MakeBeam(random);
  const std::size_t along = position % 3, up = (along + 1 + position / 3 % 2) % 3;
  const double zero = position / 24 % 2 == 0 ? 0.0 : -0.0;
  beam.NodeI = {0.0, 0.0, 0.0};
  beam.NodeJ = beam.RefPoint = {zero, zero, zero};
  beam.NodeJ[along] = position / 6 % 2 == 0 ? 2.1 : -2.1;
  beam.RefPoint[up] = position / 12 % 2 == 0 ? 1.0 : -1.0;
  return beam;
}

TEST(SparseProducts, ObliqueBeams) {
  std::mt19937 random(1);
  for (int repeat = 0; repeat < 500; ++repeat) ExpectPlainBits(MakeBeam(random));
}

// In a coordinate plane one component of each axis is zero; along an axis two are.
TEST(SparseProducts, BeamsParallelToTheAxes) {
  std::mt19937 random(2);
  for (unsigned position = 0; position < 480; ++position) {
    BeamElement beam = MakeParallelBeam(position, random);
    ExpectPlainBits(beam);
    beam.NodeJ[random() % 3] += 0.7;
    ExpectPlainBits(beam);
  }
}

// The local matrix is finite, and products are not: then zeros make NaNs of infinities.
TEST(SparseProducts, InfinitiesOnTheWay) {
  std::mt19937 random(3);
  int finite = 0, infinite = 0;
  for (unsigned position = 0; position < 480; ++position) {
    BeamElement beam = position % 2 == 0 ? MakeBeam(random) : MakeParallelBeam(position, random);
    const BeamMatrix local = LocalStiffness(beam);
    const double largest = *std::max_element(local.begin(), local.end());
    if (position % 4 < 2) {
      beam.E *= std::numeric_limits<double>::max() / largest / Draw(random, 1.001, 3.0);
    } else {
      beam.Section.Ez = std::pow(10.0, Draw(random, 100.0, 320.0));
    }
    ExpectPlainBits(beam);
    ++(std::isfinite(PlainStiffness(beam)[0]) ? finite : infinite);
  }
  EXPECT_GT(finite, 100);
  EXPECT_GT(infinite, 100);
}

TEST(SparseProducts, NoLengthAndNoOrientation) {
  std::mt19937 random(4);
  for (unsigned position = 0; position < 48; ++position) {
    BeamElement beam = MakeParallelBeam(position, random);
    BeamElement turned = beam;
    turned.RefPoint = turned.NodeJ;
    ExpectPlainBits(turned);
    beam.NodeJ = beam.NodeI;
    ExpectPlainBits(beam);
  }
}

}  // namespace
}  // namespace korvex
