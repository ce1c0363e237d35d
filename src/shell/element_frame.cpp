#include "shell/element_frame.h"

namespace korvex {

void ComputeElementFrame(const Vector3& p1, const Vector3& p2, const Vector3& pLast,
                         ElementFrame& frame) {
  const Vector3 a = Subtract(p2, p1);
  const Vector3 b = Subtract(pLast, p1);
  const Vector3 n = Cross(a, b);
  const Vector3 e1 = Normalise(a);
  const Vector3 e2 = Normalise(Cross(n, a));
  const Vector3 e3 = Normalise(n);
  for (std::size_t r = 0; r < 3; ++r) {
    frame[3 * r + 0] = e1[r];
    frame[3 * r + 1] = e2[r];
    frame[3 * r + 2] = e3[r];
  }
}

}  // namespace korvex
