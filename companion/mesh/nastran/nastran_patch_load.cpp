#include "mesh/nastran/nastran_patch_load.h"

#include <cstddef>

#include "base/vector3.h"
#include "shell/bilinear_map.h"

namespace kvx {

namespace {

using korvex::Vector3;

void AddForce(std::int32_t node, double factor, const Vector3& direction, ImportCase& loads) {
  korvex::NodalForce force;
  force.node = node;
  for (std::size_t k = 0; k < 3; ++k) force.components[k] = factor * direction[k];
  loads.forces.push_back(force);
}

}  // namespace

int SenseOfCorners(const ImportShell& shell, const std::array<std::int32_t, 4>& nodes) {
  const std::size_t corners = CornersOf(shell);
  std::size_t first = 0;
  while (first + 1 < corners && shell.nodes[first] != nodes[0]) ++first;
  bool isSame = true, isReversed = true;
  for (std::size_t k = 0; k < corners; ++k) {
    isSame = isSame && shell.nodes[(first + k) % corners] == nodes[k];
    isReversed = isReversed && shell.nodes[(first + corners - k) % corners] == nodes[k];
  }
  if (isSame) return 1;
  return isReversed ? -1 : 0;
}

void AddPatchPressure(const ImportModel& model, const std::array<std::int32_t, 4>& nodes, double p,
                      ImportCase& loads) {
  const std::size_t corners = nodes[3] < 0 ? 3 : 4;
  std::array<Vector3, 4> x{}, forces{};
  for (std::size_t k = 0; k < corners; ++k) x[k] = PlaceOf(model, nodes[k]);
  if (corners == 3) {
    const Vector3 twice = korvex::Cross(korvex::Subtract(x[1], x[0]), korvex::Subtract(x[2], x[0]));
    for (std::size_t k = 0; k < 3; ++k) AddForce(nodes[k], p / 6.0, twice, loads);
    return;
  }
  // n dA is quadratic in each direction with N: two Gauss points are exact.
  for (const double xi : korvex::GaussPoints) {
    for (const double eta : korvex::GaussPoints) {
      korvex::Array4 N;
      korvex::Matrix2x4 dN;
      korvex::BilinearFunctions(xi, eta, N);
      korvex::BilinearDerivatives(xi, eta, dN);
      Vector3 alongXi{}, alongEta{};
      for (std::size_t k = 0; k < 4; ++k) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
          alongXi[axis] += dN[k] * x[k][axis];
          alongEta[axis] += dN[4 + k] * x[k][axis];
        }
      }
      const Vector3 normal = korvex::Cross(alongXi, alongEta);
      for (std::size_t k = 0; k < 4; ++k) {
        for (std::size_t axis = 0; axis < 3; ++axis) forces[k][axis] += N[k] * normal[axis];
      }
    }
  }
  for (std::size_t k = 0; k < 4; ++k) AddForce(nodes[k], p, forces[k], loads);
}

}  // namespace kvx
