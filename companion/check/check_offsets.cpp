#include "check/check_offsets.h"

#include <cmath>
#include <string>
#include <utility>

#include "check/describe.h"
#include "check/table_rows.h"

namespace kvx {

using korvex::Section;

namespace {

// The height of the beam's section, of a tube its diameter; 0 where it is not known or a finding
// names it.
double HeightOf(const CheckedModel& model, const korvex::BeamSectionRef& ref) {
  if (!korvex::HasSectionTable(ref.BeamSecType)) return 0.0;
  const Section table = SectionTableOf(ref.BeamSecType);
  if (!IsRow(model.tables, table, ref.BeamSecIndex)) return 0.0;
  if (IsDoubtful(model, table, ref.BeamSecIndex)) return 0.0;
  const auto row = static_cast<std::size_t>(ref.BeamSecIndex);
  if (table == Section::CBeamSections) {
    const korvex::CBeamSection& tube = model.tables.CBeamSections[row];
    return 2.0 * tube.R + tube.T;
  }
  const korvex::BeamSection& section = table == Section::TBeamSections
                                           ? model.tables.TBeamSections[row]
                                           : model.tables.LBeamSections[row];
  return section.Bf > 0.0 ? section.Hw + section.Tf : section.Hw;
}

}  // namespace

void CheckOffsets(CheckedModel& model, FindingList& list) {
  for (std::int32_t row = 0; row < CountRows(model.tables, Section::Beams); ++row) {
    if (StateOf(model, Section::Beams, row) != ElementState::Sound) continue;
    if (IsDoubtful(model, Section::Beams, row)) continue;
    const korvex::BeamSectionRef& ref = model.tables.BeamSectionRefs[static_cast<std::size_t>(row)];
    const double height = HeightOf(model, ref);
    const double offset = std::fabs(ref.BeamSecOz);
    if (!(height > 0.0) || !(offset > LargestOffset * height)) continue;
    Finding finding = MakeRowFinding("K609", model, Section::Beams, row);
    finding.message =
        DescribeElement(model, Section::Beams, row) + ": BeamSecOz = " + NumberText(ref.BeamSecOz) +
        " is " + NumberText(offset / height) + " times the height of its section, " +
        NumberText(height) + "; the solver joins the section to its nodes over this " +
        "distance, as by a rigid arm.";
    finding.remedy =
        "Write the distance from the node to the section, in the unit of the coordinates: look at "
        "the unit and the decimal point.";
    AddFinding(std::move(finding), list);
    MarkNamed(model, Section::Beams, row);
  }
}

}  // namespace kvx
