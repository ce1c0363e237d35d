#include "check/check_properties.h"

#include <string>
#include <utility>

#include "check/describe.h"

namespace kvx {

using korvex::Section;

namespace {

// Adds a finding about a row; what the solver makes of it only where an element uses it.
void AddRowFinding(const char* code, Section section, std::int32_t row, const std::string& fault,
                   const char* consequence, const char* remedy, const TableUse& use,
                   CheckedModel& model, FindingList& list) {
  Finding finding = MakeTableFinding(code, model, use, section, row);
  finding.message = DescribeRow(use, section, row) + ": " + fault;
  if (UsesOf(use, section, row) > 0) finding.message += std::string("; ") + consequence;
  finding.message += ".";
  finding.remedy = remedy;
  AddFinding(std::move(finding), list);
  MarkNamed(model, section, row);
}

// Poisson's ratio of a stable isotropic material lies between -1 and 0.5 (Timoshenko & Goodier
// 1970, sec. 6): at -1 the shear modulus is infinite, above 0.5 the material would grow under
// pressure from all sides.
void CheckPoisson(double Mu, std::int32_t row, const TableUse& use, CheckedModel& model,
                  FindingList& list) {
  const std::string value = "Mu = " + NumberText(Mu);
  if (Mu <= -1.0 || Mu > 0.5) {
    AddRowFinding("K107", Section::Materials, row,
                  value + " is impossible, it lies between -1 and 0.5",
                  Mu == 1.0 || Mu == -1.0 ? "displacements are not numbers"
                                          : "stiffness and stresses are wrong",
                  "Write Poisson's ratio: 0.3 for steel, 0.33 for aluminium.", use, model, list);
  } else if (Mu == 0.5) {
    Finding finding = MakeRowFinding("K107", model, Section::Materials, row);
    finding.severity = Severity::Hint;
    finding.message = DescribeRow(use, Section::Materials, row) +
                      ": Mu = 0.5 is that of a material whose volume cannot change, such as "
                      "rubber; shells and beams can be solved with it.";
    finding.remedy = "Look whether it is meant: 0.3 for steel, 0.33 for aluminium.";
    AddFinding(std::move(finding), list);
  } else if (Mu < 0.0) {
    AddRowFinding("K607", Section::Materials, row,
                  value + " is negative: pulled, such a material grows thicker",
                  "the solver takes it as it is",
                  "Write a positive value, 0.3 for steel, unless it is meant.", use, model, list);
  }
}

}  // namespace

void CheckMaterials(const TableUse& use, CheckedModel& model, FindingList& list) {
  for (std::int32_t row = 0; row < CountRows(model.tables, Section::Materials); ++row) {
    if (IsDoubtful(model, Section::Materials, row)) continue;
    const korvex::Material material = model.tables.Materials[static_cast<std::size_t>(row)];
    if (material.E > 0.0) {
      CheckPoisson(material.Mu, row, use, model, list);
      continue;
    }
    AddRowFinding("K106", Section::Materials, row,
                  "E = " + NumberText(material.E) + " is not positive",
                  material.E == 0.0 ? "its elements have no stiffness, displacements may not be "
                                      "numbers"
                                    : "its elements push where they should hold",
                  "Write Young's modulus in the units of the model: steel has 206000 in N and mm, "
                  "2.06e11 in N and m.",
                  use, model, list);
  }
}

void CheckThicknesses(const TableUse& use, CheckedModel& model, FindingList& list) {
  for (std::int32_t row = 0; row < CountRows(model.tables, Section::ShellThicknesses); ++row) {
    if (IsDoubtful(model, Section::ShellThicknesses, row)) continue;
    const double TK = model.tables.ShellThicknesses[static_cast<std::size_t>(row)].TK;
    if (TK > 0.0) continue;
    AddRowFinding("K108", Section::ShellThicknesses, row,
                  "TK = " + NumberText(TK) + " is not positive",
                  TK == 0.0 ? "its shells have no stiffness, displacements may not be numbers"
                            : "its shells push where they should hold",
                  "Write the thickness of the plate.", use, model, list);
  }
}

}  // namespace kvx
