// The coordinates and rotations of element_parts.h. Sums run over the inner index in ascending
// order from 0.0, as in the full products that they stand for; begun otherwise, a zero could be
// negative.
#include "shell/element_parts.h"

#include <algorithm>

#include "shell/matrix.h"

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
  // The frame's columns are the local axes, so it is L^T as it stands.
  std::array<double, 9> L{}, block{}, LtBlock{};
  MatTranspose(L.data(), frame.data(), 3, 3);
  const std::size_t n = 6 * static_cast<std::size_t>(nodes);
  for (std::size_t row = 0; row < n; row += 3) {
    for (std::size_t column = 0; column < n; column += 3) {
      double* corner = K + row * n + column;
      for (std::size_t r = 0; r < 3; ++r) std::copy_n(corner + r * n, 3, &block[3 * r]);
      MatMultiply(LtBlock.data(), frame.data(), block.data(), 3, 3, 3);
      MatMultiply(block.data(), LtBlock.data(), L.data(), 3, 3, 3);
      for (std::size_t r = 0; r < 3; ++r) std::copy_n(&block[3 * r], 3, corner + r * n);
    }
  }
}

namespace {

// f <- rotation f for each of the triples of f: 6 nodes.
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
