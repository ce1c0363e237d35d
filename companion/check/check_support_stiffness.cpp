#include "check/check_support_stiffness.h"

#include <algorithm>
#include <string>
#include <utility>

#include "check/describe.h"
#include "check/solver_beam.h"
#include "check/table_rows.h"

namespace kvx {

using korvex::Length;
using korvex::Section;
using korvex::Subtract;

namespace {

// 0 where material or thickness are not known.
double ShellStiffness(const CheckedModel& model, Section section, std::int32_t row) {
  const korvex::ModelTables& tables = model.tables;
  const korvex::ShellRowProperties properties = ShellPropertiesOf(tables, section, row);
  if (!IsKnown(model, properties)) return 0.0;
  const ElementNodes shell = NodesOf(tables, section, row);
  const korvex::Vector3 first = PlaceOf(tables, shell.nodes[0]);
  const double area =
      Length(korvex::Cross(Subtract(PlaceOf(tables, shell.nodes[1]), first),
                           Subtract(PlaceOf(tables, shell.nodes[shell.count - 1]), first)));
  const double Et = tables.Materials[static_cast<std::size_t>(properties.material)].E *
                    tables.ShellThicknesses[static_cast<std::size_t>(properties.thickness)].TK;
  return std::max(Et, Et * area);
}

// 0 where material or section are not known.
double BeamStiffnessOf(const CheckedModel& model, std::int32_t row) {
  korvex::BeamElement beam;
  double L = 0.0;
  if (!MakeSolverBeam(model, row, beam, L)) return 0.0;
  const korvex::SectionProperties& s = beam.Section;
  const double EI = beam.E * std::max(s.Iy, s.Iz), EA = beam.E * s.A;
  const double e2 = s.Ey * s.Ey + s.Ez * s.Ez;
  return std::max({EA / L, 12.0 * EI / (L * L * L), 4.0 * EI / L + EA * e2 / L});
}

// The nodes that have a support.
std::vector<bool> FindSupported(const CheckedModel& model) {
  std::vector<bool> isSupported(model.tables.Nodes.size());
  for (const korvex::NodalRestraint& restraint : model.tables.NodalRestraints) {
    const bool fixes =
        std::find(restraint.fixed.begin(), restraint.fixed.end(), 1) != restraint.fixed.end();
    if (fixes && IsRow(model.tables, Section::Nodes, restraint.node)) {
      isSupported[static_cast<std::size_t>(restraint.node)] = true;
    }
  }
  return isSupported;
}

// The elements of one table that are too stiff.
struct StiffElements {
  std::vector<std::int32_t> rows;
  std::int32_t stiffest = -1;
  double largest = 0.0;
};

StiffElements FindStiff(const CheckedModel& model, Section section,
                        const std::vector<bool>& isSupported) {
  StiffElements stiff;
  for (std::int32_t row = 0; row < CountRows(model.tables, section); ++row) {
    if (StateOf(model, section, row) != ElementState::Sound || IsDoubtful(model, section, row)) {
      continue;
    }
    const double k = section == Section::Beams ? BeamStiffnessOf(model, row)
                                               : ShellStiffness(model, section, row);
    if (!(k > LargestStiffness)) continue;
    const ElementNodes element = NodesOf(model.tables, section, row);
    const bool meetsSupport =
        std::any_of(element.nodes, element.nodes + element.count,
                    [&](auto node) { return isSupported[static_cast<std::size_t>(node)]; });
    if (!meetsSupport && k < SupportStiffness) continue;
    stiff.rows.push_back(row);
    if (k <= stiff.largest) continue;
    stiff.largest = k;
    stiff.stiffest = row;
  }
  return stiff;
}

}  // namespace

void CheckSupportStiffness(const CheckedModel& model, FindingList& list) {
  const std::vector<bool> isSupported = FindSupported(model);
  for (const Section section : ElementSections) {
    StiffElements stiff = FindStiff(model, section, isSupported);
    if (stiff.stiffest < 0) continue;
    const bool isError = stiff.largest >= SupportStiffness;
    Finding finding = MakeRowFinding("K605", model, section, stiff.stiffest);
    if (isError) finding.severity = Severity::Error;
    const std::string more =
        stiff.rows.size() == 1 ? "" : " (and " + std::to_string(stiff.rows.size() - 1) + " more)";
    finding.message = DescribeElement(model, section, stiff.stiffest) + more +
                      ": has a stiffness of about " + NumberText(stiff.largest) +
                      " beside the supports' 1e20; " +
                      (isError ? "displacements and support forces are wrong or not numbers."
                               : "support forces there are wrong by about " +
                                     NumberText(100.0 * stiff.largest / SupportStiffness) + " %.");
    finding.remedy =
        "Take a smaller E: a rigid arm needs no more than a thousand times the stiffness of what "
        "it joins. Or look at the units.";
    finding.rows = std::move(stiff.rows);
    std::iter_swap(finding.rows.begin(),
                   std::find(finding.rows.begin(), finding.rows.end(), stiff.stiffest));
    AddFinding(std::move(finding), list);
  }
}

}  // namespace kvx
