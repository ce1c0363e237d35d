#include "mesh/case_tables.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

#include "mesh/element_names.h"
#include "tables/prescribed_displacements.h"

namespace kvx {

namespace {

template <std::size_t N>
bool IsZero(const std::array<double, N>& values) {
  return std::all_of(values.begin(), values.end(), [](double x) { return x == 0.0; });
}

// Values of a row, with the place of its source among those of the case.
template <std::size_t N>
struct PlacedValues {
  std::int32_t row = 0;
  std::array<double, N> values{};
};

// Brings rows into order and adds up those of the same row, in the order in which they came.
template <std::size_t N>
void SumByRow(std::vector<PlacedValues<N>>& rows) {
  std::stable_sort(rows.begin(), rows.end(),
                   [](const auto& a, const auto& b) { return a.row < b.row; });
  std::size_t kept = 0;
  for (std::size_t k = 0; k < rows.size(); ++k) {
    if (kept > 0 && rows[kept - 1].row == rows[k].row) {
      for (std::size_t i = 0; i < N; ++i) rows[kept - 1].values[i] += rows[k].values[i];
    } else {
      rows[kept++] = rows[k];
    }
  }
  rows.resize(kept);
}

// The row of a node that a load acts on; -1, reported, for a node of no element.
std::int32_t LoadedRow(const ImportModel& model, const ImportCase& loads, std::int32_t node,
                       const BuiltRows& rows, ImportReport& report) {
  const std::int32_t row = rows.nodes[static_cast<std::size_t>(node)];
  if (row < 0) {
    ReportCard(NameCase(loads), Fate::Lost, "a load on a node of no element", loads.place,
               NameNode(model, node), report);
  }
  return row;
}

// A prescribed displacement takes the place of the forces on its dof. One of 0 leaves them: the
// support carries them.
void Prescribe(const std::vector<PlacedValues<6>>& prescribed,
               std::vector<PlacedValues<6>>& forces) {
  for (const PlacedValues<6>& each : prescribed) {
    const auto at = std::lower_bound(
        forces.begin(), forces.end(), each.row,
        [](const PlacedValues<6>& force, std::int32_t row) { return force.row < row; });
    for (std::size_t d = 0; d < 6; ++d) {
      if (each.values[d] != 0.0) at->values[d] = each.values[d];
    }
  }
}

void BuildForces(const ImportModel& model, const ImportCase& loads, const BuiltRows& rows,
                 ImportReport& report, korvex::ModelTables& tables) {
  std::vector<PlacedValues<6>> forces, prescribed;
  for (const korvex::NodalForce& each : loads.forces) {
    if (IsZero(each.components)) continue;
    const std::int32_t row = LoadedRow(model, loads, each.node, rows, report);
    if (row >= 0) forces.push_back({row, each.components});
  }
  for (const PrescribedDof& each : loads.prescribed) {
    if (each.value == 0.0) continue;
    const std::int32_t row = LoadedRow(model, loads, each.node, rows, report);
    if (row < 0) continue;
    std::array<double, 6> values{};
    values[static_cast<std::size_t>(each.dof)] = Penalty * each.value;
    prescribed.push_back({row, values});
    forces.push_back({row, {}});  // the row that it will stand in
  }
  SumByRow(forces);
  Prescribe(prescribed, forces);
  for (const PlacedValues<6>& each : forces) {
    if (!IsZero(each.values)) tables.NodalForces.push_back({each.row, each.values});
  }
  tables.NFOR = static_cast<std::int32_t>(tables.NodalForces.size());
}

void BuildPressures(const ImportModel& model, const ImportCase& loads, const BuiltRows& rows,
                    korvex::ModelTables& tables) {
  std::array<std::vector<PlacedValues<3>>, 2> kinds;  // four nodes, three nodes
  for (const ImportPressure& each : loads.pressures) {
    const auto shell = static_cast<std::size_t>(each.shell);
    const std::size_t kind = CornersOf(model.shells[shell]) == 4 ? 0 : 1;
    kinds[kind].push_back({rows.shells[shell], each.q});
  }
  for (std::size_t kind = 0; kind < 2; ++kind) {
    SumByRow(kinds[kind]);
    auto& table = kind == 0 ? tables.Shell4SurfaceLoads : tables.Shell3SurfaceLoads;
    for (const PlacedValues<3>& each : kinds[kind]) {
      if (!IsZero(each.values)) table.push_back({each.row, each.values});
    }
  }
  tables.NDL_S_4ND = static_cast<std::int32_t>(tables.Shell4SurfaceLoads.size());
  tables.NDL_S_3ND = static_cast<std::int32_t>(tables.Shell3SurfaceLoads.size());
}

void BuildLineLoads(const ImportCase& loads, korvex::ModelTables& tables) {
  std::vector<PlacedValues<2>> beams;
  for (const korvex::BeamLineLoad& each : loads.lineLoads) beams.push_back({each.element, each.q});
  SumByRow(beams);
  for (const PlacedValues<2>& each : beams) {
    if (!IsZero(each.values)) tables.BeamLineLoads.push_back({each.row, each.values});
  }
  tables.NDL_B = static_cast<std::int32_t>(tables.BeamLineLoads.size());
}

}  // namespace

void BuildCaseLoads(const ImportModel& model, const ImportCase& loads, const BuiltRows& rows,
                    ImportReport& report, korvex::ModelTables& tables) {
  BuildForces(model, loads, rows, report, tables);
  BuildPressures(model, loads, rows, tables);
  BuildLineLoads(loads, tables);
}

void BuildRestraints(const ImportModel& model, std::int32_t supports, const BuiltRows& rows,
                     ImportReport& report, korvex::ModelTables& tables) {
  for (const auto& [node, bits] : JoinRestraints(model, supports)) {
    const std::int32_t row = rows.nodes[static_cast<std::size_t>(node)];
    if (row < 0) {
      ReportCard(model.supports[static_cast<std::size_t>(supports)].name, Fate::Lost,
                 "a support on a node of no element", {}, NameNode(model, node), report);
      continue;
    }
    korvex::NodalRestraint restraint;
    restraint.node = row;
    for (std::size_t d = 0; d < 6; ++d) restraint.fixed[d] = (bits >> d & 1U) != 0 ? 1 : 0;
    tables.NodalRestraints.push_back(restraint);
  }
  tables.NRN = static_cast<std::int32_t>(tables.NodalRestraints.size());
}

}  // namespace kvx
