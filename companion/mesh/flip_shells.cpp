#include "mesh/flip_shells.h"

#include <array>
#include <cstddef>
#include <utility>

#include "mesh/equivalent_loads.h"

namespace kvx {

namespace {

using CornerValues = std::array<double, 4>;

bool IsFlipped(const std::vector<char>& isFlipped, const ImportPressure& pressure) {
  return isFlipped[static_cast<std::size_t>(pressure.shell)] != 0;
}

// The values at the corners of the shells as they will be, for each pressure of a case.
std::vector<CornerValues> FindFlippedValues(const ImportModel& model,
                                            const std::vector<char>& isFlipped,
                                            const ImportCase& loads) {
  std::vector<CornerValues> values;
  for (const ImportPressure& each : loads.pressures) {
    if (!IsFlipped(isFlipped, each)) continue;
    const auto& q = each.q;
    const bool isQuad = CornersOf(model.shells[static_cast<std::size_t>(each.shell)]) == 4;
    values.push_back(isQuad ? CornerValues{-q[0], -PressureAtCorner4(model, each), -q[2], -q[1]}
                            : CornerValues{-q[0], -q[2], -q[1], 0.0});
  }
  return values;
}

}  // namespace

void FlipShells(const std::vector<char>& isFlipped, ImportModel& model) {
  std::vector<std::vector<CornerValues>> values;
  for (const ImportCase& loads : model.cases) {
    values.push_back(FindFlippedValues(model, isFlipped, loads));
  }
  for (std::size_t k = 0; k < model.shells.size(); ++k) {
    ImportShell& shell = model.shells[k];
    if (isFlipped[k] != 0) std::swap(shell.nodes[1], shell.nodes[CornersOf(shell) - 1]);
  }
  for (std::size_t k = 0; k < model.cases.size(); ++k) {
    ImportCase& loads = model.cases[k];
    const std::vector<ImportPressure> before = std::move(loads.pressures);
    loads.pressures.clear();
    std::size_t next = 0;
    for (const ImportPressure& each : before) {
      if (IsFlipped(isFlipped, each)) {
        AddPressure(model, each.shell, values[k][next++], loads);
      } else {
        loads.pressures.push_back(each);
      }
    }
  }
}

}  // namespace kvx
