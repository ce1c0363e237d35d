#include "check/check_units.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string>
#include <utility>

#include "check/describe.h"

namespace kvx {

using korvex::Section;

namespace {

// A system of units: what 1 GPa is in it, and 1 kg/m3 by the unit of mass that makes force = mass
// times acceleration.
struct UnitSystem {
  double gigapascal;
  double density;
  bool hasMetres;
  const char* name;
  const char* steelDensity;
};

constexpr std::array<UnitSystem, 4> Systems{{{1e9, 1.0, true, "N and m", "7850 kg/m3"},
                                             {1e6, 1e-3, true, "kN and m", "7.85 t/m3"},
                                             {1e3, 1e-12, false, "N and mm", "7.85e-9 t/mm3"},
                                             {1.0, 1e-9, false, "kN and mm", "7.85e-6 kg/mm3"}}};

constexpr double SoftestMetal = 60.0, StiffestMetal = 220.0;  // GPa

const UnitSystem* FindSystem(double E) {
  for (const UnitSystem& system : Systems) {
    if (E >= SoftestMetal * system.gigapascal && E <= StiffestMetal * system.gigapascal) {
      return &system;
    }
  }
  return nullptr;
}

// The smallest and the largest thickness of the plates of shells and beams in use.
SizeRange MeasurePlates(const CheckedModel& model, const TableUse& use) {
  constexpr double Infinity = std::numeric_limits<double>::infinity();
  SizeRange plates{Infinity, 0.0};
  const auto include = [&](Section section, std::int32_t row, double thickness) {
    if (!(thickness > 0.0) || UsesOf(use, section, row) == 0) return;
    if (IsDoubtful(model, section, row)) return;
    plates.smallest = std::min(plates.smallest, thickness);
    plates.largest = std::max(plates.largest, thickness);
  };
  const korvex::ModelTables& tables = model.tables;
  std::int32_t row = 0;
  for (const auto& t : tables.ShellThicknesses) include(Section::ShellThicknesses, row++, t.TK);
  row = 0;
  for (const auto& s : tables.TBeamSections) include(Section::TBeamSections, row++, s.Tw);
  row = 0;
  for (const auto& s : tables.LBeamSections) include(Section::LBeamSections, row++, s.Tw);
  row = 0;
  for (const auto& s : tables.CBeamSections) include(Section::CBeamSections, row++, s.T);
  return plates;
}

// Names a modulus whose unit of length is not that of the plates.
void CheckModulus(const UnitSystem& system, std::int32_t row, const SizeRange& plates,
                  double extent, const TableUse& use, CheckedModel& model, FindingList& list) {
  const bool areMillimetres =
      system.hasMetres && plates.largest >= ThickestPlate && plates.smallest >= ThickestThinnest;
  const bool areMetres = !system.hasMetres && plates.largest <= ThinnestPlate &&
                         extent <= LargestFoilModel && extent >= 1.0;
  if (!areMillimetres && !areMetres) return;
  const double E = model.tables.Materials[static_cast<std::size_t>(row)].E;
  Finding finding = MakeTableFinding("K604", model, use, Section::Materials, row);
  finding.message = DescribeRow(use, Section::Materials, row) + ": E = " + NumberText(E) +
                    " is that of a metal in " + system.name + ", but an extent of " +
                    NumberText(extent) + " with plates of " + NumberText(plates.smallest) + " .. " +
                    NumberText(plates.largest) + " seems to be in " +
                    (areMillimetres ? "mm" : "m") + "; displacements are wrong by powers of 10.";
  finding.remedy = areMillimetres ? "Write E in N/mm2 (steel 206000), with forces in N."
                                  : "Write E in N/m2 (steel 2.06e11), with forces in N.";
  AddFinding(std::move(finding), list);
  MarkNamed(model, Section::Materials, row);
}

void CheckDensity(const UnitSystem& system, std::int32_t row, const TableUse& use,
                  CheckedModel& model, FindingList& list) {
  const double density = model.tables.Materials[static_cast<std::size_t>(row)].Density;
  if (density == 0.0) return;  // not given
  if (density >= SmallestDensity * system.density && density <= LargestDensity * system.density) {
    return;
  }
  Finding finding = MakeTableFinding("K606", model, use, Section::Materials, row);
  finding.message = DescribeRow(use, Section::Materials, row) +
                    ": Density = " + NumberText(density) +
                    " does not fit E, which is that of a "
                    "metal in " +
                    system.name + "; the solver does not use it.";
  finding.remedy = std::string("Steel has ") + system.steelDensity + " in these units.";
  AddFinding(std::move(finding), list);
}

}  // namespace

void CheckUnits(const TableUse& use, const ElementSizes& sizes, CheckedModel& model,
                FindingList& list) {
  const SizeRange plates = MeasurePlates(model, use);
  for (std::int32_t row = 0; row < CountRows(model.tables, Section::Materials); ++row) {
    if (IsDoubtful(model, Section::Materials, row) || UsesOf(use, Section::Materials, row) == 0) {
      continue;
    }
    const UnitSystem* system = FindSystem(model.tables.Materials[static_cast<std::size_t>(row)].E);
    if (system == nullptr) continue;
    if (plates.largest > 0.0) {
      CheckModulus(*system, row, plates, sizes.extent, use, model, list);
    }
    if (!IsDoubtful(model, Section::Materials, row)) CheckDensity(*system, row, use, model, list);
  }
}

}  // namespace kvx
