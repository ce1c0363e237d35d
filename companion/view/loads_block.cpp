#include "view/loads_block.h"

#include <algorithm>
#include <array>

#include "tables/held_dofs.h"
#include "tables/node_box.h"
#include "tables/prescribed_displacements.h"

namespace kvx {

namespace {

using korvex::ModelTables;

// The sums of the rows of a load table, row by row of what they load.
template <std::size_t Count>
struct LoadSums {
  std::vector<std::array<double, Count>> sums;
};

template <std::size_t Count>
void BeginSums(std::size_t rows, LoadSums<Count>& loads) {
  loads.sums.assign(rows, {});
}

// Adds `values` to the sum of this row, where there is one.
template <std::size_t Count>
void AddToSum(std::int32_t row, const std::array<double, Count>& values, LoadSums<Count>& loads) {
  if (row < 0 || static_cast<std::size_t>(row) >= loads.sums.size()) return;
  std::array<double, Count>& sum = loads.sums[static_cast<std::size_t>(row)];
  for (std::size_t i = 0; i < Count; ++i) sum[i] += values[i];
}

// Lists the sums that are not zero.
template <std::size_t Count>
void ListSums(const LoadSums<Count>& loads, std::vector<std::int32_t>& rows,
              std::vector<double>& values) {
  for (std::size_t row = 0; row < loads.sums.size(); ++row) {
    const std::array<double, Count>& sum = loads.sums[row];
    if (std::all_of(sum.begin(), sum.end(), [](double value) { return value == 0.0; })) continue;
    rows.push_back(static_cast<std::int32_t>(row));
    values.insert(values.end(), sum.begin(), sum.end());
  }
}

constexpr std::size_t Dofs = 6;
using NodeSums = LoadSums<Dofs>;

void CollectForces(const ModelTables& tables, CaseLoads& loads) {
  const double extent = MeasureNodeBox(tables).diagonal;
  const std::vector<std::uint8_t> held = ListHeldDofs(tables);
  NodeSums forces, prescribing;
  BeginSums(held.size(), forces);
  BeginSums(held.size(), prescribing);
  for (const korvex::NodalForce& row : tables.NodalForces) {
    if (row.node < 0 || static_cast<std::size_t>(row.node) >= held.size()) continue;
    std::array<double, Dofs> load = row.components, moving{};
    for (std::size_t d = 0; d < Dofs; ++d) {
      const bool isHeld = IsHeld(held[static_cast<std::size_t>(row.node)], d);
      if (isHeld && IsPrescribing(d, load[d], extent)) std::swap(load[d], moving[d]);
    }
    AddToSum(row.node, load, forces);
    AddToSum(row.node, moving, prescribing);
  }
  ListSums(forces, loads.forceNodes, loads.forces);
  for (std::size_t node = 0; node < prescribing.sums.size(); ++node) {
    for (std::size_t d = 0; d < Dofs; ++d) {
      const double force = prescribing.sums[node][d];
      if (force == 0.0) continue;
      loads.prescribedNodes.push_back(static_cast<std::int32_t>(node));
      loads.prescribedDofs.push_back(static_cast<std::int32_t>(d));
      loads.prescribedValues.push_back(force / Penalty);
    }
  }
}

void CollectPressures(const korvex::ZeroedTable<korvex::ShellSurfaceLoad>& table,
                      std::size_t elements, ElementPressures& loads) {
  LoadSums<3> sums;
  BeginSums(elements, sums);
  for (const korvex::ShellSurfaceLoad& row : table) AddToSum(row.element, row.q, sums);
  ListSums(sums, loads.elements, loads.pressures);
}

}  // namespace

void CollectLoads(const ModelTables& tables, CaseLoads& loads) {
  loads = {};
  CollectForces(tables, loads);
  CollectPressures(tables.Shell4SurfaceLoads, tables.Shell4Properties.size(), loads.shells);
  CollectPressures(tables.Shell3SurfaceLoads, tables.Shell3Properties.size(), loads.triangles);
  LoadSums<2> beams;
  BeginSums(tables.BeamProperties.size(), beams);
  for (const korvex::BeamLineLoad& row : tables.BeamLineLoads) AddToSum(row.element, row.q, beams);
  ListSums(beams, loads.beams, loads.lineLoads);
}

void AddLoads(const CaseLoads& loads, PageBlock& block) {
  AddIntegers("forceNodes", loads.forceNodes, block);
  AddDecimals("forces", loads.forces, block, Dofs);
  AddIntegers("prescribedNodes", loads.prescribedNodes, block);
  AddIntegers("prescribedDofs", loads.prescribedDofs, block);
  AddDecimals("prescribedValues", loads.prescribedValues, block);
  AddIntegers("shellLoads", loads.shells.elements, block);
  AddDecimals("shellPressures", loads.shells.pressures, block, 3);
  AddIntegers("triangleLoads", loads.triangles.elements, block);
  AddDecimals("trianglePressures", loads.triangles.pressures, block, 3);
  AddIntegers("beamLoads", loads.beams, block);
  AddDecimals("lineLoads", loads.lineLoads, block, 2);
}

}  // namespace kvx
