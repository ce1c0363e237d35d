#include "beam/beam_stiffness.h"

#include <algorithm>

#include "base/finite.h"
#include "base/matrix.h"
#include "beam/beam_frame.h"

namespace korvex {

namespace {

constexpr std::size_t Dofs = 12;

// k: 12 x 12, row-major, local axes at the centroid, written completely.
void BuildLocalStiffness(const BeamElement& beam, BeamMatrix& k) {
  const SectionProperties& s = beam.Section;
  const double L = BeamLength(beam);
  const double G = beam.E * 0.5 / (beam.Mu + 1.0);
  const double Py = s.ShearFactorY;
  const double Pz = s.ShearFactorZ;
  const double a = beam.E * s.A / L;
  const double t = G * s.J / L;
  const double by = beam.E * s.Iy / (Py + 1.0) / (L * L * L);
  const double bz = beam.E * s.Iz / (Pz + 1.0) / (L * L * L);

  k.fill(0.0);
  const auto set = [&k](std::size_t i, std::size_t j, double value) { k[i * Dofs + j] = value; };
  set(0, 0, a), set(6, 6, a), set(0, 6, -a);  // axial
  set(3, 3, t), set(9, 9, t), set(3, 9, -t);  // torsion

  // bending in the x-y plane: v and rz
  set(1, 1, 12.0 * bz), set(7, 7, 12.0 * bz), set(1, 7, -12.0 * bz);
  set(1, 5, 6.0 * bz * L), set(1, 11, 6.0 * bz * L);
  set(5, 7, -6.0 * bz * L), set(7, 11, -6.0 * bz * L);
  set(5, 5, (Pz + 4.0) * bz * (L * L)), set(11, 11, (Pz + 4.0) * bz * (L * L));
  set(5, 11, (2.0 - Pz) * bz * (L * L));

  // bending in the x-z plane: w and ry; positive ry turns z towards x
  set(2, 2, 12.0 * by), set(8, 8, 12.0 * by), set(2, 8, -12.0 * by);
  set(2, 4, -6.0 * by * L), set(2, 10, -6.0 * by * L);
  set(4, 8, 6.0 * by * L), set(8, 10, 6.0 * by * L);
  set(4, 4, (Py + 4.0) * by * (L * L)), set(10, 10, (Py + 4.0) * by * (L * L));
  set(4, 10, (2.0 - Py) * by * (L * L));

  for (std::size_t i = 0; i < Dofs; ++i) {
    for (std::size_t j = i + 1; j < Dofs; ++j) k[j * Dofs + i] = k[i * Dofs + j];
  }
}

// B: 12 x 12, row-major, local axes, written completely: the displacements of the centroids from
// those of the nodes, u_centroid = u_node + theta x e.
void EccentricityMatrix(const SectionProperties& section, BeamMatrix& B) {
  B.fill(0.0);
  for (std::size_t i = 0; i < Dofs; ++i) B[i * Dofs + i] = 1.0;
  for (std::size_t node = 0; node < 2; ++node) {
    const std::size_t u = 6 * node, v = u + 1, w = u + 2;
    const std::size_t rx = u + 3, ry = u + 4, rz = u + 5;
    B[u * Dofs + ry] = section.Ez;
    B[u * Dofs + rz] = -section.Ey;
    B[v * Dofs + rx] = -section.Ez;
    B[v * Dofs + rz] = section.Ex;
    B[w * Dofs + rx] = section.Ey;
    B[w * Dofs + ry] = -section.Ex;
  }
}

// C = A B without the terms of zeros in A. They would change nothing if B is finite: a sum that
// begins with 0.0 is never -0. A, B, C: 12 x 12, row-major; C must not alias A or B.
void MultiplySparse(const BeamMatrix& A, const BeamMatrix& B, BeamMatrix& C) {
  C.fill(0.0);
  for (std::size_t i = 0; i < Dofs; ++i) {
    for (std::size_t k = 0; k < Dofs; ++k) {
      const double a = A[i * Dofs + k];
      if (a == 0.0) continue;
      for (std::size_t j = 0; j < Dofs; ++j) C[i * Dofs + j] += a * B[k * Dofs + j];
    }
  }
}

// K = X^T K X. K, X: 12 x 12, row-major.
void TransformDense(const BeamMatrix& X, BeamMatrix& K) {
  BeamMatrix Xt, XtK;
  MatTranspose(Xt.data(), X.data(), Dofs, Dofs);
  MatMultiply(XtK.data(), Xt.data(), K.data(), Dofs, Dofs, Dofs);
  MatMultiply(K.data(), XtK.data(), X.data(), Dofs, Dofs, Dofs);
}

// The same without the zeros of X, most of its entries.
void TransformCongruently(const BeamMatrix& X, BeamMatrix& K) {
  if (!AreFinite(X.data(), X.size()) || !AreFinite(K.data(), K.size())) {
    TransformDense(X, K);
    return;
  }
  BeamMatrix Xt, XtK, KX, XtKX;  // the last two are transposed
  MatTranspose(Xt.data(), X.data(), Dofs, Dofs);
  MultiplySparse(Xt, K, XtK);
  if (!AreFinite(XtK.data(), XtK.size())) {
    TransformDense(X, K);
    return;
  }
  MatTranspose(KX.data(), XtK.data(), Dofs, Dofs);
  MultiplySparse(Xt, KX, XtKX);
  MatTranspose(K.data(), XtKX.data(), Dofs, Dofs);
}

}  // namespace

void BeamStiffness(const BeamElement& beam, double* K) {
  BeamMatrix k;
  BuildLocalStiffness(beam, k);

  const SectionProperties& s = beam.Section;
  const bool isCentric = s.Ex == 0.0 && s.Ey == 0.0 && s.Ez == 0.0;
  // Without eccentricity B is the identity. Of an infinity it makes a NaN.
  if (!isCentric || !AreFinite(k.data(), k.size())) {
    BeamMatrix B;
    EccentricityMatrix(s, B);
    TransformCongruently(B, k);
  }

  BeamFrame frame;
  BeamMatrix T;
  ComputeBeamFrame(beam, frame);
  BuildBeamRotation(frame, T);
  TransformCongruently(T, k);

  std::copy(k.begin(), k.end(), K);
}

}  // namespace korvex
