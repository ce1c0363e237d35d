#include "size/check_detail_models.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>

#include "beamshell/extrude_outline.h"
#include "beamshell/section_outline.h"
#include "check/describe.h"
#include "deck/row_formats.h"
#include "finding/amount_text.h"
#include "report/stop.h"

namespace kvx {

using korvex::Section;

namespace {

// Rows of shells along a beam. A beam that is 5000 times as long as the widest strip of its section
// is thinner than a wire: a slip of units. Its detail model takes minutes.
constexpr double MostRows = 5000.0;

// The refinement of the section in every run.
constexpr std::int32_t MeshLevel = 0;

// The section's outline; empty where the reference leads nowhere.
korvex::SectionOutline OutlineOf(const korvex::ModelTables& tables,
                                 const korvex::BeamSectionRef& ref) {
  korvex::SectionOutline outline;
  const auto row = static_cast<std::size_t>(ref.BeamSecIndex);
  if (ref.BeamSecType == korvex::BeamSecTypeT && row < tables.TBeamSections.size()) {
    korvex::BuildTOutline(tables.TBeamSections[row], MeshLevel, outline);
  } else if (ref.BeamSecType == korvex::BeamSecTypeL && row < tables.LBeamSections.size()) {
    korvex::BuildLOutline(tables.LBeamSections[row], ref.BeamSecMirrored, MeshLevel, outline);
  } else if (ref.BeamSecType == korvex::BeamSecTypeC && row < tables.CBeamSections.size()) {
    korvex::BuildCOutline(tables.CBeamSections[row], MeshLevel, outline);
  }
  return outline;
}

// Whether a finding names the section: then its sizes say nothing.
bool IsNamed(const korvex::BeamSectionRef& ref, const FindingList& findings) {
  if (!korvex::HasSectionTable(ref.BeamSecType)) return true;
  constexpr std::array<Section, 3> Sections{Section::TBeamSections, Section::LBeamSections,
                                            Section::CBeamSections};
  const std::string_view key =
      korvex::FormatOf(Sections[static_cast<std::size_t>(ref.BeamSecType)]).key;
  return std::any_of(
      findings.findings.begin(), findings.findings.end(), [&](const Finding& finding) {
        return finding.table == key &&
               std::count(finding.rows.begin(), finding.rows.end(), ref.BeamSecIndex) > 0;
      });
}

void AddLongModel(const CheckedModel& model, std::int32_t row, double length, double segment,
                  FindingList& findings) {
  Finding finding = MakeRowFinding("K503", model, Section::Beams, row);
  finding.message = DescribeElement(model, Section::Beams, row) + ": it is " + NumberText(length) +
                    " long, the widest strip of its section " + NumberText(segment) +
                    ". Its detail model gets " + NumberText(std::floor(length / segment)) +
                    " rows of shells.";
  finding.remedy = "Check the sizes of the section against the units of the coordinates.";
  AddFinding(std::move(finding), findings);
}

// Bytes as the solver counts them; more than any memory where it could not number the equations.
double CountBytes(const korvex::SectionOutline& outline, std::int32_t row,
                  const korvex::Vector3& end1, const korvex::Vector3& end2) {
  constexpr double MoreThanAnyMemory = 1e18;
  korvex::BeamShellModel detail;
  detail.EndPoint1 = end1;
  detail.EndPoint2 = end2;
  try {
    return static_cast<double>(korvex::CountDetailBytes(outline, row, detail));
  } catch (const korvex::Stop&) {
    return MoreThanAnyMemory;
  }
}

// A finding about elements or sizes that names one of the beam's nodes: a node far away, say. Null:
// none.
Finding* FindCause(const ElementNodes& beam, FindingList& findings) {
  const auto cause =
      std::find_if(findings.findings.begin(), findings.findings.end(), [&](const Finding& finding) {
        const bool isSize = finding.code[1] == '1' || finding.code[1] == '6';
        return isSize && finding.severity != Severity::Hint &&
               std::any_of(finding.nodes.begin(), finding.nodes.end(), [&](std::int32_t node) {
                 return node == beam.nodes[0] || node == beam.nodes[1];
               });
      });
  return cause == findings.findings.end() ? nullptr : &*cause;
}

// All detail models together are too large. row: the beam with the largest one.
void AddTooLarge(const CheckedModel& model, std::int32_t row, std::uint64_t freeMemory,
                 FindingList& findings) {
  const std::string stop = "the detail models of all beams take more memory than the " +
                           FreeText(freeMemory) + ", and the run stops after the solution.";
  Finding* const cause = FindCause(NodesOf(model.tables, Section::Beams, row), findings);
  if (cause != nullptr) {
    if (cause->severity != Severity::Error) cause->message += " With it " + stop;
    cause->severity = Severity::Error;
    return;
  }
  Finding finding = MakeRowFinding("K504", model, Section::Beams, row);
  finding.message =
      DescribeElement(model, Section::Beams, row) + " has the largest detail model; " + stop;
  finding.remedy = "Check the sizes of its section against the units of the coordinates.";
  AddFinding(std::move(finding), findings);
}

}  // namespace

void CheckDetailModels(const CheckedModel& model, std::uint64_t freeMemory, FindingList& findings) {
  const korvex::ModelTables& tables = model.tables;
  double bytes = 0.0, mostBytes = 0.0;
  std::int32_t largest = 0;
  for (std::int32_t row = 0; row < CountRows(tables, Section::Beams); ++row) {
    if (StateOf(model, Section::Beams, row) == ElementState::Unusable) continue;
    const korvex::BeamSectionRef& ref = tables.BeamSectionRefs[static_cast<std::size_t>(row)];
    const korvex::SectionOutline outline = OutlineOf(tables, ref);
    if (outline.points.empty()) continue;
    const ElementNodes beam = NodesOf(tables, Section::Beams, row);
    const korvex::Vector3 end1 = PlaceOf(tables, beam.nodes[0]);
    const korvex::Vector3 end2 = PlaceOf(tables, beam.nodes[1]);
    const double own = CountBytes(outline, row, end1, end2);
    bytes += own;
    if (own > mostBytes) {
      mostBytes = own;
      largest = row;
    }
    const double length = korvex::Length(korvex::Subtract(end2, end1));
    const double segment = korvex::LongestSegment(outline);
    if (segment > 0.0 && length / segment > MostRows && bytes <= static_cast<double>(freeMemory) &&
        StateOf(model, Section::Beams, row) == ElementState::Sound &&
        !IsDoubtful(model, Section::Beams, row) && !IsNamed(ref, findings)) {
      AddLongModel(model, row, length, segment, findings);
    }
  }
  if (bytes > static_cast<double>(freeMemory)) AddTooLarge(model, largest, freeMemory, findings);
}

}  // namespace kvx
