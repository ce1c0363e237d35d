#include "mesh/build_tables.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <utility>

#include "mesh/case_supports.h"
#include "mesh/case_tables.h"
#include "mesh/element_names.h"
#include "mesh/equivalent_loads.h"
#include "mesh/property_rows.h"

namespace kvx {

namespace {

// Numbers the nodes of elements in their order, and reports the others.
void BuildNodes(const ImportModel& model, ImportReport& report, BuiltModel& built,
                BuiltRows& rows) {
  rows.nodes.assign(model.nodes.size(), -1);
  const auto mark = [&](std::int32_t node) { rows.nodes[static_cast<std::size_t>(node)] = 0; };
  for (const ImportShell& shell : model.shells) {
    for (std::size_t k = 0; k < CornersOf(shell); ++k) mark(shell.nodes[k]);
  }
  for (const ImportBeam& beam : model.beams) {
    for (const std::int32_t node : beam.nodes) mark(node);
  }
  std::size_t unused = 0;
  std::string firstUnused;
  for (std::size_t k = 0; k < rows.nodes.size(); ++k) {
    if (rows.nodes[k] < 0) {
      if (unused++ == 0) firstUnused = NameNode(model, static_cast<std::int32_t>(k));
      continue;
    }
    rows.nodes[k] = static_cast<std::int32_t>(built.tables.Nodes.size());
    built.tables.Nodes.push_back(model.nodes[k]);
    built.origin.nodes.push_back(model.nodeNumbers[k]);
  }
  built.tables.NPOIN = static_cast<std::int32_t>(built.tables.Nodes.size());
  if (unused == 0) return;
  ReportCard("nodes", Fate::NoEffect, "nodes of no element", {}, firstUnused, report, unused);
}

void BuildShells(const ImportModel& model, const PropertyRows& properties, BuiltModel& built,
                 BuiltRows& rows) {
  korvex::ModelTables& tables = built.tables;
  rows.shells.reserve(model.shells.size());
  for (const ImportShell& shell : model.shells) {
    const std::size_t corners = CornersOf(shell);
    const bool isQuad = corners == 4;
    std::int32_t& count = isQuad ? tables.NELEM_S_4ND : tables.NELEM_S_3ND;
    rows.shells.push_back(count++);
    auto& nodes = isQuad ? tables.Shell4Nodes : tables.Shell3Nodes;
    for (std::size_t k = 0; k < corners; ++k) {
      nodes.push_back(rows.nodes[static_cast<std::size_t>(shell.nodes[k])]);
    }
    (isQuad ? tables.Shell4Properties : tables.Shell3Properties)
        .push_back({properties.materials[static_cast<std::size_t>(shell.material)],
                    properties.thicknesses[static_cast<std::size_t>(shell.thickness)]});
    ElementOrigin& origin = isQuad ? built.origin.shells4 : built.origin.shells3;
    origin.numbers.push_back(shell.number);
    origin.types.push_back(shell.type);
  }
}

// 0 has no sign in the model file.
korvex::Vector3 WithoutSignedZeros(const korvex::Vector3& v) {
  return {v[0] + 0.0, v[1] + 0.0, v[2] + 0.0};
}

// The beam's own orientation; of a tube that has none across its axis, a global axis.
korvex::Vector3 OrientationOf(const ImportModel& model, const ImportBeam& beam) {
  const ImportSection& section = model.sections[static_cast<std::size_t>(beam.section)];
  if (section.type != korvex::BeamSecTypeC) return beam.orientation;
  const auto [x, y, z] = BeamAxes(model, beam);
  if (korvex::Length(z) > 0.0 || korvex::Length(x) == 0.0) return beam.orientation;
  // Up where that is across, else along x.
  constexpr double Steep = 0.9;
  return std::fabs(x[2]) < Steep ? korvex::Vector3{0.0, 0.0, 1.0} : korvex::Vector3{1.0, 0.0, 0.0};
}

void BuildBeams(const ImportModel& model, const PropertyRows& properties, const BuiltRows& rows,
                BuiltModel& built) {
  korvex::ModelTables& tables = built.tables;
  for (const ImportBeam& beam : model.beams) {
    for (const std::int32_t node : beam.nodes) {
      tables.BeamNodes.push_back(rows.nodes[static_cast<std::size_t>(node)]);
    }
    const auto section = static_cast<std::size_t>(beam.section);
    tables.BeamSectionRefs.push_back({model.sections[section].type, properties.sections[section],
                                      beam.BeamSecOz, beam.BeamSecMirrored});
    tables.BeamProperties.push_back(
        {WithoutSignedZeros(OrientationOf(model, beam)),
         properties.materials[static_cast<std::size_t>(beam.material)]});
    built.origin.beams.numbers.push_back(beam.number);
    built.origin.beams.types.push_back(beam.type);
  }
  tables.NELEM_B = static_cast<std::int32_t>(model.beams.size());
}

void SortRows(std::vector<std::int32_t>& rows) {
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
}

void BuildGroups(const ImportModel& model, const BuiltRows& rows, ModelOrigin& origin) {
  for (const ImportGroup& group : model.groups) {
    OriginGroup made;
    made.name = group.name;
    made.source = group.source;
    for (const std::int32_t node : group.nodes) {
      const std::int32_t row = rows.nodes[static_cast<std::size_t>(node)];
      if (row >= 0) made.nodes.push_back(row);
    }
    for (const std::int32_t shell : group.shells) {
      const auto k = static_cast<std::size_t>(shell);
      (CornersOf(model.shells[k]) == 4 ? made.shells4 : made.shells3).push_back(rows.shells[k]);
    }
    made.beams = group.beams;
    for (auto* table : {&made.nodes, &made.shells4, &made.shells3, &made.beams}) SortRows(*table);
    if (made.nodes.empty() && made.shells4.empty() && made.shells3.empty() && made.beams.empty()) {
      continue;
    }
    origin.groups.push_back(std::move(made));
  }
}

void BuildCases(const ImportModel& model, const BuiltRows& rows, ImportReport& report,
                BuiltModel& built) {
  for (const ImportCase& each : model.cases) {
    BuiltCase made;
    made.name = each.name;
    made.hasAcceleration = each.hasAcceleration && korvex::Length(each.acceleration) > 0.0;
    if (made.hasAcceleration) made.acceleration = each.acceleration;
    const std::size_t lost = CountFate(report, Fate::Lost);
    BuildCaseLoads(model, each, rows, report, made.loads);
    const korvex::ModelTables& loads = made.loads;
    if (!made.hasAcceleration && loads.NFOR == 0 && loads.NDL_S_4ND == 0 && loads.NDL_S_3ND == 0 &&
        loads.NDL_B == 0) {
      if (each.asksForLoads || CountFate(report, Fate::Lost) > lost) {
        ReportCard(NameCase(each), Fate::Lost,
                   "a case without loads: those of the deck are lost or 0", each.place, "", report);
      } else {
        ReportCard(NameCase(each), Fate::NoEffect, "a case without loads", each.place, "", report);
      }
      continue;
    }
    built.cases.push_back(std::move(made));
  }
}

}  // namespace

void BuildTables(const ImportModel& model, ImportReport& report, BuiltModel& built) {
  built = {};
  BuiltRows rows;
  PropertyRows properties;
  built.origin.format = model.format;
  built.origin.types = model.typeNames;
  BuildNodes(model, report, built, rows);
  BuildProperties(model, report, built.tables, built.origin, properties);
  BuildShells(model, properties, built, rows);
  BuildBeams(model, properties, rows, built);
  BuildRestraints(model, FindSupports(model), rows, report, built.tables);
  BuildGroups(model, rows, built.origin);
  BuildCases(model, rows, report, built);
}

}  // namespace kvx
