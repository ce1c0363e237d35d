#include "support/imported.h"

#include "commands/origin_file.h"
#include "deck/read_tables.h"

namespace kvx::test {

namespace {

ElementOrigin NumberElements(std::size_t count, std::int64_t first, std::int32_t type) {
  ElementOrigin elements;
  for (std::size_t k = 0; k < count; ++k) {
    elements.numbers.push_back(first + 3 * static_cast<std::int64_t>(k));
    elements.types.push_back(type);
  }
  return elements;
}

std::vector<std::string> NameRows(const std::string& name, std::size_t count, int step) {
  std::vector<std::string> names;
  for (std::size_t k = 1; k <= count; ++k) {
    names.push_back(name + std::to_string(k * static_cast<std::size_t>(step)));
  }
  return names;
}

}  // namespace

korvex::ModelTables TablesOfText(const korvex::test::ModelText& model) {
  korvex::ModelTables tables;
  korvex::ReadTables(korvex::test::WriteModel(model), {}, tables);
  return tables;
}

ModelOrigin MakeOrigin(const korvex::ModelTables& tables) {
  ModelOrigin origin;
  origin.source = "deck.bdf";
  origin.format = "Nastran bulk data";
  origin.hash = HashStructure(tables);
  origin.types = {"CQUAD4", "CTRIA3", "CBAR"};
  for (std::size_t k = 0; k < tables.Nodes.size(); ++k) {
    origin.nodes.push_back(1001 + 2 * static_cast<std::int64_t>(k));
  }
  origin.shells4 = NumberElements(tables.Shell4Properties.size(), 5001, 0);
  origin.shells3 = NumberElements(tables.Shell3Properties.size(), 6001, 1);
  origin.beams = NumberElements(tables.BeamProperties.size(), 7001, 2);
  origin.materials = NameRows("MAT1 ", tables.Materials.size(), 1);
  origin.thicknesses = NameRows("PSHELL ", tables.ShellThicknesses.size(), 10);
  origin.sectionsT = NameRows("PBARL T", tables.TBeamSections.size(), 1);
  origin.sectionsL = NameRows("PBARL L", tables.LBeamSections.size(), 1);
  origin.sectionsC = NameRows("PBARL C", tables.CBeamSections.size(), 1);
  for (const std::string& name : origin.thicknesses) {
    origin.groups.push_back({name, name, {}, {}, {}, {}});
  }
  const auto add = [&](const auto& properties, std::vector<std::int32_t> OriginGroup::*rows) {
    for (std::size_t k = 0; k < properties.size(); ++k) {
      const auto thickness = static_cast<std::size_t>(properties[k].thickness);
      (origin.groups[thickness].*rows).push_back(static_cast<std::int32_t>(k));
    }
  };
  add(tables.Shell4Properties, &OriginGroup::shells4);
  add(tables.Shell3Properties, &OriginGroup::shells3);
  OriginGroup& beams = origin.groups.emplace_back();
  beams.name = "stiffeners";
  beams.source = "*ELSET";
  for (std::size_t k = 0; k < tables.BeamProperties.size(); ++k) {
    beams.beams.push_back(static_cast<std::int32_t>(k));
  }
  origin.groups.push_back({"edge", "*NSET", {0, 1}, {}, {}, {}});
  return origin;
}

std::string OriginText(const ModelOrigin& origin) { return WriteOrigin(origin, {}, {}); }

}  // namespace kvx::test
