#include "check/table_rows.h"

#include "check/describe.h"

namespace kvx {

using korvex::Section;

namespace {

void CountOne(std::int32_t row, std::vector<std::uint32_t>& counts) {
  if (row >= 0 && static_cast<std::size_t>(row) < counts.size()) {
    ++counts[static_cast<std::size_t>(row)];
  }
}

void CountShells(const std::vector<korvex::ShellRowProperties>& shells, TableUse& use) {
  for (const korvex::ShellRowProperties& shell : shells) {
    CountOne(shell.material, use.materials);
    CountOne(shell.thickness, use.thicknesses);
  }
}

}  // namespace

void CountUse(const CheckedModel& model, TableUse& use) {
  const korvex::ModelTables& tables = model.tables;
  use.materials.assign(tables.Materials.size(), 0);
  use.thicknesses.assign(tables.ShellThicknesses.size(), 0);
  for (std::int32_t type = 0; type < 3; ++type) {
    use.sections[static_cast<std::size_t>(type)].assign(
        static_cast<std::size_t>(CountRows(tables, SectionTableOf(type))), 0);
  }
  CountShells(tables.Shell4Properties, use);
  CountShells(tables.Shell3Properties, use);
  for (std::size_t row = 0; row < tables.BeamProperties.size(); ++row) {
    CountOne(tables.BeamProperties[row].material, use.materials);
    const korvex::BeamSectionRef& ref = tables.BeamSectionRefs[row];
    if (!korvex::HasSectionTable(ref.BeamSecType)) continue;
    CountOne(ref.BeamSecIndex, use.sections[static_cast<std::size_t>(ref.BeamSecType)]);
  }
}

std::uint32_t UsesOf(const TableUse& use, Section section, std::int32_t row) {
  const auto at = static_cast<std::size_t>(row);
  if (section == Section::Materials) return use.materials[at];
  if (section == Section::ShellThicknesses) return use.thicknesses[at];
  return use.sections[IndexOf(section) - IndexOf(Section::TBeamSections)][at];
}

std::string NameRow(Section section, std::int32_t row) {
  const auto nameOf = [&] {
    switch (section) {
      case Section::Materials:
        return "material ";
      case Section::ShellThicknesses:
        return "thickness ";
      case Section::TBeamSections:
        return "T section ";
      case Section::LBeamSections:
        return "L section ";
      default:
        return "tube section ";
    }
  };
  return nameOf() + std::to_string(row);
}

std::string DescribeRow(const TableUse& use, Section section, std::int32_t row) {
  const std::uint32_t count = UsesOf(use, section, row);
  const std::string users = count == 0   ? "no element uses it"
                            : count == 1 ? "1 element"
                                         : std::to_string(count) + " elements";
  return NameRow(section, row) + " (" + users + ")";
}

Finding MakeTableFinding(const char* code, const CheckedModel& model, const TableUse& use,
                         Section section, std::int32_t row) {
  Finding finding = MakeRowFinding(code, model, section, row);
  if (UsesOf(use, section, row) == 0) finding.severity = Severity::Hint;
  return finding;
}

korvex::ShellRowProperties ShellPropertiesOf(const korvex::ModelTables& tables,
                                             korvex::Section section, std::int32_t row) {
  const auto at = static_cast<std::size_t>(row);
  return section == korvex::Section::Shells4 ? tables.Shell4Properties[at]
                                             : tables.Shell3Properties[at];
}

bool IsKnown(const CheckedModel& model, const korvex::ShellRowProperties& properties) {
  const auto isKnown = [&](korvex::Section section, std::int32_t row) {
    return IsRow(model.tables, section, row) && !IsDoubtful(model, section, row);
  };
  return isKnown(korvex::Section::Materials, properties.material) &&
         isKnown(korvex::Section::ShellThicknesses, properties.thickness);
}

}  // namespace kvx
