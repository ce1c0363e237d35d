// A pressure on three or four nodes that a card names itself: PLOAD.
#pragma once

#include <array>
#include <cstdint>

#include "mesh/import_model.h"

namespace kvx {

// Whether the nodes go round the shell as its own do (1), the other way (-1), or across it (0).
// nodes: those of the shell, the last is -1 for a triangle.
int SenseOfCorners(const ImportShell& shell, const std::array<std::int32_t, 4>& nodes);

// Adds the nodal forces of a pressure p on the surface between the nodes, along its normal by the
// right-hand rule: the integrals of N_k p n dA with linear or bilinear N_k.
void AddPatchPressure(const ImportModel& model, const std::array<std::int32_t, 4>& nodes, double p,
                      ImportCase& loads);

}  // namespace kvx
