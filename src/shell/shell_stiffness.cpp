#include "shell/shell_stiffness.h"

#include <algorithm>

#include "shell/element_parts.h"
#include "shell/quad_membrane.h"
#include "shell/quad_plate.h"
#include "shell/tri_membrane.h"
#include "shell/tri_plate.h"

namespace korvex {

namespace {

// Adds a part's stiffness to that of its element.
// part: 3 * nodes square; place: the positions of its dofs among a node's six; K: 6 * nodes square.
void AddPart(const double* part, std::int32_t nodes, const std::int32_t (&place)[3], double* K) {
  const std::int32_t n = 3 * nodes;
  const auto elementDof = [&place](std::int32_t a) { return 6 * (a / 3) + place[a % 3]; };
  for (std::int32_t a = 0; a < n; ++a) {
    for (std::int32_t b = 0; b < n; ++b)
      K[elementDof(a) * 6 * nodes + elementDof(b)] += part[a * n + b];
  }
}

template <typename Membrane, typename Plate, std::int32_t Nodes>
void FormStiffness(const ShellElement<Nodes>& element, double* K) {
  Membrane membrane;
  SetUpPart(element, membrane);
  membrane.Stiffness();
  Plate plate;
  SetUpPart(element, plate);
  plate.Stiffness();

  constexpr std::int32_t n = 6 * Nodes;
  std::fill(K, K + n * n, 0.0);
  AddPart(membrane.K.data(), Nodes, MembranePlace, K);
  AddPart(plate.K.data(), Nodes, PlatePlace, K);
  RotateMatrixToGlobal(element.Frame, Nodes, K);
}

}  // namespace

void Shell4Stiffness(const Shell4Element& element, double* K) {
  FormStiffness<QuadMembrane, QuadPlate>(element, K);
}

void Shell3Stiffness(const Shell3Element& element, double* K) {
  FormStiffness<TriMembrane, TriPlate>(element, K);
}

}  // namespace korvex
