#include "check/check_numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>
#include <string>
#include <utility>

#include "check/describe.h"

namespace kvx {

using korvex::Section;

namespace {

// A value with its name, and the bounds of its size.
struct Value {
  const char* name;
  double value;
  double smallest;  // unless it is 0
  double largest;
};

Value Coordinate(const char* name, double value) { return {name, value, 0.0, LargestLength}; }
Value Size(const char* name, double value) { return {name, value, SmallestLength, LargestLength}; }
Value LoadValue(const char* name, double value) { return {name, value, 0.0, LargestLoad}; }

bool IsOutside(const Value& value) {
  const double size = std::fabs(value.value);
  return !std::isfinite(size) || size > value.largest || (size > 0.0 && size < value.smallest);
}

// "E = nan is not a number", "x = 1e+30 is too large to calculate with", or "".
std::string DescribeFault(std::initializer_list<Value> values) {
  for (const Value& value : values) {
    if (!IsOutside(value)) continue;
    const char* fault = !std::isfinite(value.value) ? " is not a finite number"
                        : std::fabs(value.value) > value.largest
                            ? " is too large to calculate with"
                            : " is too small to calculate with";
    return std::string(value.name) + " = " + NumberText(value.value) + fault;
  }
  return {};
}

constexpr const char* Consequence = "; displacements may not be numbers.";
constexpr const char* Remedy = "Write a number, in the units of the model.";

// Names the row where one of the values is outside.
void CheckTableRow(Section section, std::int32_t row, std::initializer_list<Value> values,
                   const TableUse& use, CheckedModel& model, FindingList& list) {
  if (IsDoubtful(model, section, row)) return;
  const std::string fault = DescribeFault(values);
  if (fault.empty()) return;
  Finding finding = MakeTableFinding("K122", model, use, section, row);
  const bool isUsed = finding.severity == Severity::Error;
  finding.message = DescribeRow(use, section, row) + ": " + fault + (isUsed ? Consequence : ".");
  finding.remedy = Remedy;
  AddFinding(std::move(finding), list);
  MarkNamed(model, section, row);
}

// The solver does not use densities; the mass of the model would be wrong.
void CheckDensity(std::int32_t row, const TableUse& use, CheckedModel& model, FindingList& list) {
  if (IsDoubtful(model, Section::Materials, row)) return;
  const double density = model.tables.Materials[static_cast<std::size_t>(row)].Density;
  const std::string fault = DescribeFault({LoadValue("Density", density)});
  if (fault.empty()) return;
  Finding finding = MakeTableFinding("K122", model, use, Section::Materials, row);
  if (finding.severity == Severity::Error) finding.severity = Severity::Warning;
  finding.message =
      DescribeRow(use, Section::Materials, row) + ": " + fault + "; the solver does not use it.";
  finding.remedy = Remedy;
  AddFinding(std::move(finding), list);
  MarkNamed(model, Section::Materials, row);
}

void CheckPropertyTables(const TableUse& use, CheckedModel& model, FindingList& list) {
  const korvex::ModelTables& tables = model.tables;
  std::int32_t row = 0;
  for (const korvex::Material& m : tables.Materials) {
    CheckTableRow(Section::Materials, row++,
                  {{"E", m.E, SmallestModulus, LargestModulus}, {"Mu", m.Mu, 0.0, LargestModulus}},
                  use, model, list);
    CheckDensity(row - 1, use, model, list);
  }
  row = 0;
  for (const korvex::ShellThickness& t : tables.ShellThicknesses) {
    CheckTableRow(Section::ShellThicknesses, row++, {Size("TK", t.TK)}, use, model, list);
  }
  for (const Section section : {Section::TBeamSections, Section::LBeamSections}) {
    row = 0;
    for (const korvex::BeamSection& s :
         section == Section::TBeamSections ? tables.TBeamSections : tables.LBeamSections) {
      CheckTableRow(section, row++,
                    {Size("Hw", s.Hw), Size("Tw", s.Tw), Size("Bf", s.Bf), Size("Tf", s.Tf)}, use,
                    model, list);
    }
  }
  row = 0;
  for (const korvex::CBeamSection& s : tables.CBeamSections) {
    CheckTableRow(Section::CBeamSections, row++, {Size("R", s.R), Size("T", s.T)}, use, model,
                  list);
  }
}

// Adds the finding about a row of no property table. subject: of the message.
void AddFault(Section section, std::int32_t row, const std::string& subject,
              const std::string& fault, CheckedModel& model, FindingList& list) {
  Finding finding = MakeRowFinding("K122", model, section, row);
  finding.message = subject + ": " + fault + Consequence;
  finding.remedy = Remedy;
  AddFinding(std::move(finding), list);
}

void CheckNodes(CheckedModel& model, FindingList& list) {
  std::int32_t row = -1;
  for (const korvex::Node& node : model.tables.Nodes) {
    ++row;
    const std::string fault =
        DescribeFault({Coordinate("x", node.x), Coordinate("y", node.y), Coordinate("z", node.z)});
    if (fault.empty() || IsLost(model, Section::Nodes, row)) continue;
    const bool isNamed = IsDoubtful(model, Section::Nodes, row);
    MarkNamed(model, Section::Nodes, row);
    model.lostRows[IndexOf(Section::Nodes)].insert(row);  // without a place in messages
    if (!isNamed) {
      AddFault(Section::Nodes, row, "node " + std::to_string(row), fault, model, list);
    }
  }
}

void CheckBeams(CheckedModel& model, FindingList& list) {
  const korvex::ModelTables& tables = model.tables;
  for (std::int32_t row = 0; row < CountRows(tables, Section::Beams); ++row) {
    const auto at = static_cast<std::size_t>(row);
    const korvex::Vector3& v = tables.BeamProperties[at].orientation;
    const std::string fault = DescribeFault(
        {Coordinate("orientation vector: x", v[0]), Coordinate("orientation vector: y", v[1]),
         Coordinate("orientation vector: z", v[2]),
         Coordinate("BeamSecOz", tables.BeamSectionRefs[at].BeamSecOz)});
    if (fault.empty() || StateOf(model, Section::Beams, row) != ElementState::Sound) continue;
    StateOf(model, Section::Beams, row) = ElementState::Broken;
    if (IsDoubtful(model, Section::Beams, row)) continue;
    AddFault(Section::Beams, row, DescribeElement(model, Section::Beams, row), fault, model, list);
  }
}

void CheckLoadRow(Section section, std::int32_t row, const char* subject,
                  std::initializer_list<Value> values, CheckedModel& model, FindingList& list) {
  if (IsDoubtful(model, section, row)) return;
  const std::string fault = DescribeFault(values);
  if (fault.empty()) return;
  AddFault(section, row, subject + std::to_string(row), fault, model, list);
  MarkNamed(model, section, row);
}

void CheckLoads(CheckedModel& model, FindingList& list) {
  const korvex::ModelTables& tables = model.tables;
  std::int32_t row = 0;
  for (const korvex::NodalForce& force : tables.NodalForces) {
    const auto& f = force.components;
    CheckLoadRow(Section::Forces, row++, "force row ",
                 {LoadValue("Fx", f[0]), LoadValue("Fy", f[1]), LoadValue("Fz", f[2]),
                  LoadValue("Mx", f[3]), LoadValue("My", f[4]), LoadValue("Mz", f[5])},
                 model, list);
  }
  for (const Section section : {Section::Shell4Loads, Section::Shell3Loads}) {
    row = 0;
    for (const korvex::ShellSurfaceLoad& load :
         section == Section::Shell4Loads ? tables.Shell4SurfaceLoads : tables.Shell3SurfaceLoads) {
      CheckLoadRow(
          section, row++, "shell load row ",
          {LoadValue("q1", load.q[0]), LoadValue("q2", load.q[1]), LoadValue("q3", load.q[2])},
          model, list);
    }
  }
  row = 0;
  for (const korvex::BeamLineLoad& load : tables.BeamLineLoads) {
    CheckLoadRow(Section::BeamLoads, row++, "beam load row ",
                 {LoadValue("q1", load.q[0]), LoadValue("q2", load.q[1])}, model, list);
  }
}

}  // namespace

void CheckNumbers(const TableUse& use, CheckedModel& model, FindingList& list) {
  CheckPropertyTables(use, model, list);
  CheckNodes(model, list);
  CheckBeams(model, list);
  CheckLoads(model, list);
}

}  // namespace kvx
