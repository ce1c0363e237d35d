// Nodal forces along e3 by the integration rules of the stiffness, w_k = sum of weight N_k q: 2 x 2
// points for the four-node element, the mid-side points for the three-node element.
#include "shell/shell_loads.h"

#include <algorithm>
#include <cmath>

#include "base/vector3.h"
#include "shell/element_parts.h"
#include "shell/quad_plate.h"
#include "shell/tri_plate.h"

namespace korvex {

namespace {

// Returns the intensity at node 4, on the plane through the points (x, y, q) of nodes 1, 2, 3.
double ExtrapolateIntensity(const QuadPlate& plate, const std::array<double, 3>& q) {
  const auto& x = plate.x;
  const auto& y = plate.y;
  const Vector3 a{x[1] - x[0], y[1] - y[0], q[1] - q[0]};
  const Vector3 b{x[2] - x[0], y[2] - y[0], q[2] - q[0]};
  const Vector3 n = Cross(a, b);
  return (n[0] * x[0] + n[1] * y[0] + n[2] * q[0] - n[0] * x[3] - n[1] * y[3]) / n[2];
}

// Rotates nodal forces along e3 to global axes. w: nodes; f: 6 * nodes, global, written completely.
void SpreadForces(const ElementFrame& frame, const double* w, std::int32_t nodes, double* f) {
  std::fill(f, f + 6 * nodes, 0.0);
  for (std::int32_t k = 0; k < nodes; ++k) f[6 * k + 2] = w[k];
  RotateVectorToGlobal(frame, nodes, f);
}

}  // namespace

void Shell4LoadVector(const Shell4Element& element, const ShellSurfaceLoad& load, double* f) {
  QuadPlate plate;
  SetUpPart(element, plate);
  const double q1 = load.q[0], q2 = load.q[1], q3 = load.q[2];
  const double q4 = ExtrapolateIntensity(plate, load.q);
  std::array<double, 4> w{};
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t j = 0; j < 2; ++j) {
      plate.ShapeFunctions(GaussPoints[i], GaussPoints[j]);
      plate.Jacobian();
      const auto& N = plate.N;
      const double q = N[0] * q1 + N[1] * q2 + N[2] * q3 + N[3] * q4;
      const double s = std::fabs(plate.detJ) * GaussWeights[i] * GaussWeights[j] * q;
      for (std::size_t k = 0; k < 4; ++k) w[k] += s * N[k];
    }
  }
  SpreadForces(element.Frame, w.data(), 4, f);
}

void Shell3LoadVector(const Shell3Element& element, const ShellSurfaceLoad& load, double* f) {
  TriPlate plate;
  SetUpPart(element, plate);
  const double A = TriangleArea(plate.x, plate.y);
  std::array<double, 3> w{};
  for (const Array3& L : MidSidePoints) {
    const double q = L[0] * load.q[0] + L[1] * load.q[1] + L[2] * load.q[2];
    for (std::size_t k = 0; k < 3; ++k) w[k] += A * MidSideWeight * q * L[k];
  }
  SpreadForces(element.Frame, w.data(), 3, f);
}

}  // namespace korvex
