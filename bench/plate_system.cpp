// The plate of plate_system.h.
#include "plate_system.h"

#include "system/assemble_system.h"
#include "system/load_vector.h"
#include "system/profile.h"
#include "system/supports.h"

namespace korvex::bench {

namespace {

void AddSquares(std::int32_t columns, std::int32_t rows, Model& model) {
  for (std::int32_t j = 0; j + 1 < rows; ++j) {
    for (std::int32_t i = 0; i + 1 < columns; ++i) {
      const std::int32_t n = j * columns + i;
      const std::array<std::int32_t, 4> nodes{n, n + 1, n + 1 + columns, n + columns};
      std::array<double, 12> coordinates{};
      for (std::size_t k = 0; k < 4; ++k) {
        const Node& node = model.Nodes[static_cast<std::size_t>(nodes[k])];
        coordinates[3 * k] = node.x;
        coordinates[3 * k + 1] = node.y;
        coordinates[3 * k + 2] = node.z;
      }
      model.Shell4Nodes.insert(model.Shell4Nodes.end(), nodes.begin(), nodes.end());
      model.Shell4Elements.emplace_back();
      SetGeometry(model.Shell4Elements.back(), coordinates.data(), NodesPerShell4, 206000.0, 0.3,
                  10.0);
    }
  }
}

}  // namespace

void BuildPlateSystem(std::int32_t columns, std::int32_t rows, Model& model) {
  model = Model();
  model.NPOIN = columns * rows;
  for (std::int32_t n = 0; n < model.NPOIN; ++n) {
    model.Nodes.push_back({100.0 * (n % columns), 100.0 * (n / columns), 0.0});
  }
  AddSquares(columns, rows, model);
  model.NELEM_S_4ND = static_cast<std::int32_t>(model.Shell4Elements.size());
  model.NRN = columns;
  for (std::int32_t n = 0; n < columns; ++n) {
    model.NodalRestraints.push_back({{1, 1, 1, 1, 1, 1}, n});
  }
  model.NFOR = 1;
  model.NodalForces = {{model.NPOIN - 1, {100.0, 200.0, -1000.0, 0.0, 0.0, 0.0}}};

  model.NEQ = model.NPOIN * DofsPerNode;
  BuildProfile(model);
  ComputeDiagonalAddresses(model.Stiffness);
  AllocateValues(model.Stiffness);
  AssembleStiffness(model);
  AssembleLoadVector(model);
  ImposeSupports(model);
}

}  // namespace korvex::bench
