#include "mesh/property_rows.h"

#include <array>
#include <cstddef>
#include <map>
#include <string>

namespace kvx {

namespace {

// What two properties must share to be one row: kind of section (else 0) and values.
using Key = std::array<double, 5>;

Key KeyOf(const ImportMaterial& material) {
  return {0.0, material.values.E, material.values.Mu, material.values.Density, 0.0};
}

Key KeyOf(const ImportThickness& thickness) { return {0.0, thickness.TK, 0.0, 0.0, 0.0}; }

Key KeyOf(const ImportSection& section) {
  const auto type = static_cast<double>(section.type);
  if (section.type == korvex::BeamSecTypeC) return {type, section.tube.R, section.tube.T, 0.0, 0.0};
  const korvex::BeamSection& plates = section.plates;
  return {type, plates.Hw, plates.Tw, plates.Bf, plates.Tf};
}

struct UsedProperties {
  std::vector<char> materials, thicknesses, sections;
};

void Mark(std::int32_t row, std::vector<char>& isUsed) {
  if (row >= 0) isUsed[static_cast<std::size_t>(row)] = 1;
}

void MarkUsed(const ImportModel& model, UsedProperties& used) {
  used.materials.assign(model.materials.size(), 0);
  used.thicknesses.assign(model.thicknesses.size(), 0);
  used.sections.assign(model.sections.size(), 0);
  for (const ImportShell& shell : model.shells) {
    Mark(shell.material, used.materials);
    Mark(shell.thickness, used.thicknesses);
  }
  for (const ImportBeam& beam : model.beams) {
    Mark(beam.material, used.materials);
    Mark(beam.section, used.sections);
  }
}

// Gives the used ones of `table` their rows: add(entry) appends one and returns its row.
template <typename Table, typename Add>
void NumberRows(const Table& table, const std::vector<char>& isUsed, ImportReport& report,
                std::vector<std::int32_t>& rows, const Add& add) {
  std::map<Key, std::int32_t> known;
  rows.assign(table.size(), -1);
  for (std::size_t k = 0; k < table.size(); ++k) {
    if (isUsed[k] == 0) {
      ReportCard(table[k].name, Fate::NoEffect,
                 "no element has this property: none asks for it, or a map gives another", {}, "",
                 report);
      continue;
    }
    const auto [at, isNew] = known.emplace(KeyOf(table[k]), 0);
    if (isNew) at->second = add(table[k]);
    rows[k] = at->second;
  }
}

std::int32_t LastRow(const std::vector<std::string>& names) {
  return static_cast<std::int32_t>(names.size()) - 1;
}

std::int32_t AddSection(const ImportSection& section, korvex::ModelTables& tables,
                        ModelOrigin& origin) {
  if (section.type == korvex::BeamSecTypeC) {
    tables.CBeamSections.push_back(section.tube);
    origin.sectionsC.push_back(section.name);
    return tables.NCBS++;
  }
  const bool isL = section.type == korvex::BeamSecTypeL;
  (isL ? tables.LBeamSections : tables.TBeamSections).push_back(section.plates);
  (isL ? origin.sectionsL : origin.sectionsT).push_back(section.name);
  return isL ? tables.NLBS++ : tables.NTBS++;
}

}  // namespace

void BuildProperties(const ImportModel& model, ImportReport& report, korvex::ModelTables& tables,
                     ModelOrigin& origin, PropertyRows& rows) {
  UsedProperties used;
  MarkUsed(model, used);
  NumberRows(model.materials, used.materials, report, rows.materials,
             [&](const ImportMaterial& material) {
               tables.Materials.push_back(material.values);
               origin.materials.push_back(material.name);
               return LastRow(origin.materials);
             });
  NumberRows(model.thicknesses, used.thicknesses, report, rows.thicknesses,
             [&](const ImportThickness& thickness) {
               tables.ShellThicknesses.push_back({thickness.TK});
               origin.thicknesses.push_back(thickness.name);
               return LastRow(origin.thicknesses);
             });
  tables.NMT = static_cast<std::int32_t>(tables.Materials.size());
  tables.NTK = static_cast<std::int32_t>(tables.ShellThicknesses.size());
  NumberRows(model.sections, used.sections, report, rows.sections,
             [&](const ImportSection& section) { return AddSection(section, tables, origin); });
}

}  // namespace kvx
