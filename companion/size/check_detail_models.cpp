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

// The memory of the detail models, in bytes.
struct DetailBytes {
  double all = 0.0, largest = 0.0;
  std::int32_t row = 0;  // of the beam with the largest one
};

std::string BytesText(double bytes) {
  constexpr double Limit = 1e18;  // so that it is an integer
  return GigabyteText(static_cast<std::uint64_t>(std::min(bytes, Limit)));
}

constexpr const char* AllTogether = "all detail models together ";

// The finding names a slip that makes the detail models so large: it tells what comes of it.
void TellCause(const std::string& what, Finding& cause) {
  if (cause.severity != Severity::Error) cause.message += " With it " + what;
  cause.severity = Severity::Error;
}

// All together are too large: kvx makes them in blocks. takes: "take 51 GB, and ..."
void AddTooLargeTogether(const std::string& takes, const DetailBytes& bytes,
                         const CheckedModel& model, FindingList& findings) {
  Finding finding = MakeRowFinding("K504", model, Section::Beams, bytes.row);
  finding.severity = Severity::Warning;
  finding.message = AllTogether + takes + " The largest, " + BytesText(bytes.largest) +
                    ", is that of " + DescribeElement(model, Section::Beams, bytes.row) + '.';
  finding.remedy =
      "Solve the model with kvx run, which makes them in blocks. If that is much more than you "
      "expect, check the sizes of the section against the units of the coordinates.";
  AddFinding(std::move(finding), findings);
}

// One detail model alone is too large: nobody can make it. takes: "takes 51 GB, and ..."
void AddTooLarge(const std::string& takes, const DetailBytes& bytes, const CheckedModel& model,
                 FindingList& findings) {
  Finding finding = MakeRowFinding("K504", model, Section::Beams, bytes.row);
  finding.message =
      DescribeElement(model, Section::Beams, bytes.row) + ": its detail model " + takes;
  finding.remedy = "Check the sizes of its section against the units of the coordinates.";
  AddFinding(std::move(finding), findings);
}

void JudgeMemory(const CheckedModel& model, const DetailBytes& bytes, std::uint64_t freeMemory,
                 FindingList& findings) {
  const auto free = static_cast<double>(freeMemory);
  if (bytes.all <= free) return;
  const std::string limit = ", and there are " + FreeText(freeMemory) + ": ";
  Finding* const cause = FindCause(NodesOf(model.tables, Section::Beams, bytes.row), findings);
  if (bytes.largest > free) {
    const std::string takes =
        "takes " + BytesText(bytes.largest) + limit + "the run stops after the solution.";
    if (cause == nullptr) return AddTooLarge(takes, bytes, model, findings);
    TellCause("the detail model of beam " + std::to_string(bytes.row) + ' ' + takes, *cause);
  } else {
    const std::string takes =
        "take " + BytesText(bytes.all) + limit + "korvex stops after the solution.";
    if (cause == nullptr) return AddTooLargeTogether(takes, bytes, model, findings);
    TellCause(AllTogether + takes, *cause);
  }
}

}  // namespace

void CheckDetailModels(const CheckedModel& model, std::uint64_t freeMemory, FindingList& findings) {
  const korvex::ModelTables& tables = model.tables;
  DetailBytes bytes;
  for (std::int32_t row = 0; row < CountRows(tables, Section::Beams); ++row) {
    if (StateOf(model, Section::Beams, row) == ElementState::Unusable) continue;
    const korvex::BeamSectionRef& ref = tables.BeamSectionRefs[static_cast<std::size_t>(row)];
    const korvex::SectionOutline outline = OutlineOf(tables, ref);
    if (outline.points.empty()) continue;
    const ElementNodes beam = NodesOf(tables, Section::Beams, row);
    const korvex::Vector3 end1 = PlaceOf(tables, beam.nodes[0]);
    const korvex::Vector3 end2 = PlaceOf(tables, beam.nodes[1]);
    const double own = CountBytes(outline, row, end1, end2);
    bytes.all += own;
    if (own > bytes.largest) {
      bytes.largest = own;
      bytes.row = row;
    }
    const double length = korvex::Length(korvex::Subtract(end2, end1));
    const double segment = korvex::LongestSegment(outline);
    if (segment > 0.0 && length / segment > MostRows && own <= static_cast<double>(freeMemory) &&
        StateOf(model, Section::Beams, row) == ElementState::Sound &&
        !IsDoubtful(model, Section::Beams, row) && !IsNamed(ref, findings)) {
      AddLongModel(model, row, length, segment, findings);
    }
  }
  JudgeMemory(model, bytes, freeMemory, findings);
}

}  // namespace kvx
