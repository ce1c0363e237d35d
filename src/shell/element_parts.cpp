// The rotations multiply block by block and give the same bits as the full matrix products: each
// sum starts at 0.0 and runs over the inner index in ascending order. Without the 0.0 a sum could
// be -0 instead of 0.
#include "shell/element_parts.h"

#include "base/matrix.h"

namespace korvex {

void ComputeLocalCoordinates(const double* coordinates, std::int32_t nodes,
                             const ElementFrame& frame, double* x, double* y) {
  for (std::int32_t k = 0; k < nodes; ++k) {
    const double* P = coordinates + 3 * k;
    x[k] = 0.0 + frame[0] * P[0] + frame[3] * P[1] + frame[6] * P[2];  // e1 . P
    y[k] = 0.0 + frame[1] * P[0] + frame[4] * P[1] + frame[7] * P[2];  // e2 . P
  }
}

void RotateMatrixToGlobal(const ElementFrame& frame, std::int32_t nodes, double* K) {
  const auto& R = frame;  // L^T, because its columns are the local axes
  const std::size_t n = 6 * static_cast<std::size_t>(nodes);
  for (std::size_t row = 0; row < n; row += 3) {
    double *k0 = K + row * n, *k1 = k0 + n, *k2 = k1 + n;
    for (std::size_t j = 0; j < n; ++j) {  // L^T K
      const double x = k0[j], y = k1[j], z = k2[j];
      k0[j] = 0.0 + R[0] * x + R[1] * y + R[2] * z;
      k1[j] = 0.0 + R[3] * x + R[4] * y + R[5] * z;
      k2[j] = 0.0 + R[6] * x + R[7] * y + R[8] * z;
    }
  }
  for (double* k = K; k != K + n * n; k += 3) {  // (L^T K) L
    const double x = k[0], y = k[1], z = k[2];
    k[0] = 0.0 + x * R[0] + y * R[1] + z * R[2];
    k[1] = 0.0 + x * R[3] + y * R[4] + z * R[5];
    k[2] = 0.0 + x * R[6] + y * R[7] + z * R[8];
  }
}

namespace {

// Multiplies each triple of f by `rotation` in place. rotation: 3 x 3, row-major; f: 6 * nodes.
void RotateTriples(const std::array<double, 9>& rotation, std::int32_t nodes, double* f) {
  std::array<double, 3> rotated{};
  for (double* triple = f; triple != f + 6 * nodes; triple += 3) {
    MatMultiply(rotated.data(), rotation.data(), triple, 3, 3, 1);
    for (std::size_t i = 0; i < 3; ++i) triple[i] = rotated[i];
  }
}

}  // namespace

void RotateVectorToGlobal(const ElementFrame& frame, std::int32_t nodes, double* f) {
  RotateTriples(frame, nodes, f);
}

void RotateVectorToLocal(const ElementFrame& frame, std::int32_t nodes, double* f) {
  std::array<double, 9> L{};
  MatTranspose(L.data(), frame.data(), 3, 3);
  RotateTriples(L, nodes, f);
}

}  // namespace korvex
