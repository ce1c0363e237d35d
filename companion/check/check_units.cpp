#include "check/check_units.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "check/describe.h"
#include "check/usual_modulus.h"

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

bool IsDensityIn(const UnitSystem& system, double density) {
  return density >= SmallestDensity * system.density && density <= LargestDensity * system.density;
}

// The system in which the density is that of a metal; null: none.
const UnitSystem* FindDensitySystem(double density) {
  for (const UnitSystem& system : Systems) {
    if (density >= LightestMetal * system.density && IsDensityIn(system, density)) return &system;
  }
  return nullptr;
}

// [NMT] whether shells use the material.
std::vector<char> FindShellMaterials(const CheckedModel& model) {
  std::vector<char> hasShells(model.tables.Materials.size(), 0);
  const auto include = [&](const std::vector<korvex::ShellRowProperties>& shells) {
    for (const korvex::ShellRowProperties& shell : shells) {
      if (!IsRow(model.tables, Section::Materials, shell.material)) continue;
      hasShells[static_cast<std::size_t>(shell.material)] = 1;
    }
  };
  include(model.tables.Shell4Properties);
  include(model.tables.Shell3Properties);
  return hasShells;
}

// More than the stiffest metal beside the softest, 220 to 60. The E of a rigid arm, a beam so much
// stiffer than what most elements have, is chosen: it belongs to no metal.
constexpr double RigidArm = 100.0;

void CheckDensity(const UnitSystem& system, std::int32_t row, const TableUse& use,
                  CheckedModel& model, FindingList& list) {
  const korvex::Material material = model.tables.Materials[static_cast<std::size_t>(row)];
  const double density = material.Density;
  if (density == 0.0 || IsDensityIn(system, density)) return;  // 0: not given
  const UnitSystem* const other = FindDensitySystem(density);
  Finding finding = MakeTableFinding("K606", model, use, Section::Materials, row);
  finding.message = DescribeRow(use, Section::Materials, row) + ": ";
  const std::string E = "E = " + NumberText(material.E);
  const std::string Density = "Density = " + NumberText(density);
  if (other == nullptr) {
    finding.severity = Severity::Hint;
    finding.message += Density + " does not fit E, which is that of a metal in " + system.name +
                       "; the solver does not use it.";
    finding.remedy = std::string("Steel has ") + system.steelDensity + " in these units.";
  } else {
    finding.message += E + " and " + Density + " belong to different systems of units: E is that " +
                       "of a metal in " + system.name + ", Density in " + other->name +
                       "; the solver uses E as it is, and not the density.";
    finding.remedy =
        std::string("If the model is in ") + other->name +
        ", write E = " + NumberText(material.E * (other->gigapascal / system.gigapascal)) +
        "; if it is in " + system.name +
        ", write Density = " + NumberText(density * (system.density / other->density)) + ".";
    MarkNamed(model, Section::Materials, row);
  }
  AddFinding(std::move(finding), list);
}

// A material that is a metal in one of the systems.
struct Metal {
  std::int32_t row = 0;
  const UnitSystem* system = nullptr;
};

// E in GPa.
double ModulusOf(const CheckedModel& model, const Metal& metal) {
  return model.tables.Materials[static_cast<std::size_t>(metal.row)].E / metal.system->gigapascal;
}

// The system that most elements have, of equal ones the first in the table: its first metal.
Metal FindUsual(const std::vector<Metal>& metals, const TableUse& use) {
  std::array<std::uint64_t, Systems.size()> uses{};
  const auto usesOf = [&](const Metal& metal) -> std::uint64_t& {
    return uses[static_cast<std::size_t>(metal.system - Systems.data())];
  };
  for (const Metal& metal : metals) usesOf(metal) += UsesOf(use, Section::Materials, metal.row);
  return *std::max_element(metals.begin(), metals.end(),
                           [&](const Metal& a, const Metal& b) { return usesOf(a) < usesOf(b); });
}

void AddOtherSystem(const Metal& metal, const Metal& usual, const TableUse& use,
                    CheckedModel& model, FindingList& list) {
  const auto modulusText = [&](const Metal& of, const UnitSystem& system) {
    return "E = " + NumberText(ModulusOf(model, of) * system.gigapascal);
  };
  Finding finding = MakeTableFinding("K604", model, use, Section::Materials, metal.row);
  finding.message = DescribeRow(use, Section::Materials, metal.row) + ": " +
                    modulusText(metal, *metal.system) + " is that of a metal in " +
                    metal.system->name + ", but " + modulusText(usual, *usual.system) + " of " +
                    NameRow(Section::Materials, usual.row) + " is that of one in " +
                    usual.system->name + "; the solver takes both as they are.";
  finding.remedy = std::string("Write both in one system of units: in ") + usual.system->name +
                   " this one has " + modulusText(metal, *usual.system) + ".";
  AddFinding(std::move(finding), list);
  MarkNamed(model, Section::Materials, metal.row);
}

// Names the metals that are not in the system that most elements have: their densities say the
// same, or there is the same metal in the usual system.
void CompareMetals(const std::vector<Metal>& metals, const TableUse& use, CheckedModel& model,
                   FindingList& list) {
  if (metals.size() < 2) return;
  const Metal usual = FindUsual(metals, use);
  std::vector<double> usualModuli;
  for (const Metal& metal : metals) {
    if (metal.system == usual.system) usualModuli.push_back(ModulusOf(model, metal));
  }
  std::sort(usualModuli.begin(), usualModuli.end());
  for (const Metal& metal : metals) {
    if (metal.system == usual.system) continue;
    const double E = ModulusOf(model, metal);
    const auto same =
        std::lower_bound(usualModuli.begin(), usualModuli.end(), E * (1.0 - SameModulus));
    const bool isSameMetal = same != usualModuli.end() && *same <= E * (1.0 + SameModulus);
    const double density = model.tables.Materials[static_cast<std::size_t>(metal.row)].Density;
    if (!isSameMetal && FindDensitySystem(density) != metal.system) continue;
    AddOtherSystem(metal, usual, use, model, list);
  }
}

// Names an E that vanishes beside the usual one. Metals are left out: rigid arms may be many.
void CheckSoftMaterials(double usual, const TableUse& use, CheckedModel& model, FindingList& list) {
  for (std::int32_t row = 0; row < CountRows(model.tables, Section::Materials); ++row) {
    const double E = model.tables.Materials[static_cast<std::size_t>(row)].E;
    if (!(E > 0.0) || !(E < SoftestMaterial * usual) || FindSystem(E) != nullptr) continue;
    if (IsDoubtful(model, Section::Materials, row)) continue;
    if (UsesOf(use, Section::Materials, row) == 0) continue;
    Finding finding = MakeTableFinding("K608", model, use, Section::Materials, row);
    finding.message = DescribeRow(use, Section::Materials, row) + ": E = " + NumberText(E) +
                      " is next to nothing beside E = " + NumberText(usual) +
                      ", which most elements have; its elements carry nothing.";
    finding.remedy = "Write E in the unit of the other materials, or remove the elements.";
    AddFinding(std::move(finding), list);
    MarkNamed(model, Section::Materials, row);
  }
}

}  // namespace

void CheckUnits(const TableUse& use, const ElementSizes& sizes, CheckedModel& model,
                FindingList& list) {
  const SizeRange plates = MeasurePlates(model, use);
  const double usual = FindUsualModulus(model, use);
  const std::vector<char> hasShells = FindShellMaterials(model);
  CheckSoftMaterials(usual, use, model, list);
  std::vector<Metal> metals;
  for (std::int32_t row = 0; row < CountRows(model.tables, Section::Materials); ++row) {
    if (IsDoubtful(model, Section::Materials, row) || UsesOf(use, Section::Materials, row) == 0) {
      continue;
    }
    const double E = model.tables.Materials[static_cast<std::size_t>(row)].E;
    if (hasShells[static_cast<std::size_t>(row)] == 0 && E > RigidArm * usual) continue;
    const UnitSystem* system = FindSystem(E);
    if (system == nullptr) continue;
    if (plates.largest > 0.0) {
      CheckModulus(*system, row, plates, sizes.extent, use, model, list);
    }
    if (!IsDoubtful(model, Section::Materials, row)) CheckDensity(*system, row, use, model, list);
    if (!IsDoubtful(model, Section::Materials, row)) metals.push_back({row, system});
  }
  CompareMetals(metals, use, model, list);
}

}  // namespace kvx
