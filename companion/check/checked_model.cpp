#include "check/checked_model.h"

#include "base/dof_counts.h"

namespace kvx {

using korvex::Section;

ElementNodes NodesOf(const korvex::ModelTables& tables, Section section, std::int32_t row) {
  const auto at = static_cast<std::size_t>(row);
  if (section == Section::Shells4) return {&tables.Shell4Nodes[at * 4], 4};
  if (section == Section::Shells3) return {&tables.Shell3Nodes[at * 3], 3};
  return {&tables.BeamNodes[at * 2], 2};
}

std::int32_t CountRows(const korvex::ModelTables& tables, Section section) {
  const auto count = [](const auto& table) { return static_cast<std::int32_t>(table.size()); };
  switch (section) {
    case Section::Header:
      return 0;
    case Section::Materials:
      return count(tables.Materials);
    case Section::ShellThicknesses:
      return count(tables.ShellThicknesses);
    case Section::TBeamSections:
      return count(tables.TBeamSections);
    case Section::LBeamSections:
      return count(tables.LBeamSections);
    case Section::CBeamSections:
      return count(tables.CBeamSections);
    case Section::Nodes:
      return count(tables.Nodes);
    case Section::Shells4:
      return count(tables.Shell4Properties);
    case Section::Shells3:
      return count(tables.Shell3Properties);
    case Section::Beams:
      return count(tables.BeamProperties);
    case Section::Restraints:
      return count(tables.NodalRestraints);
    case Section::Forces:
      return count(tables.NodalForces);
    case Section::Shell4Loads:
      return count(tables.Shell4SurfaceLoads);
    case Section::Shell3Loads:
      return count(tables.Shell3SurfaceLoads);
    case Section::BeamLoads:
      return count(tables.BeamLineLoads);
  }
  return 0;
}

}  // namespace kvx
