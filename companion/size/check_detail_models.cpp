#include "size/check_detail_models.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "beamshell/extrude_outline.h"
#include "beamshell/section_outline.h"
#include "beamshell/shared_ends.h"
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

// More than any memory, where the solver could not number the equations.
constexpr double NoMemoryHolds = 1e18;

// The memory of the detail models, in bytes as the solver counts them.
struct DetailBytes {
  std::vector<double> each;  // [beams] 0: the beam has none
  double all = 0.0;
  double largestSystem = 0.0;         // the most that one takes besides while it is solved
  std::vector<korvex::Vector3> ends;  // [2 x beams] NaN where it has none
};

// Adds the detail model of the beam at this row, which has these ends.
void AddBytes(const korvex::SectionOutline& outline, std::int32_t row, const korvex::Vector3& end1,
              const korvex::Vector3& end2, DetailBytes& bytes) {
  const auto b = static_cast<std::size_t>(row);
  korvex::BeamShellModel detail;
  detail.EndPoint1 = bytes.ends[2 * b] = end1;
  detail.EndPoint2 = bytes.ends[2 * b + 1] = end2;
  try {
    bytes.each[b] = static_cast<double>(korvex::CountDetailBytes(outline, row, detail));
    bytes.largestSystem = std::max(
        bytes.largestSystem, static_cast<double>(korvex::CountSystemBytes(outline, row, detail)));
  } catch (const korvex::Stop&) {
    bytes.each[b] = NoMemoryHolds;
  }
  bytes.all += bytes.each[b];
}

// The beam that needs most memory: its corners are averaged with those of all that share an end
// with it.
struct LargestNeed {
  std::int32_t row = 0;
  std::size_t others = 0;  // beams that share an end with it
  double bytes = 0.0;      // of all these detail models and a system
};

// The beam with the largest detail model, without the others.
LargestNeed FindLargestModel(const DetailBytes& bytes) {
  const auto largest = std::max_element(bytes.each.begin(), bytes.each.end());
  return {static_cast<std::int32_t>(largest - bytes.each.begin()), 0,
          *largest + bytes.largestSystem};
}

LargestNeed FindLargestNeed(const DetailBytes& bytes) {
  korvex::SharedEnds ends;
  korvex::IndexEnds(bytes.ends, ends);
  LargestNeed largest;
  std::vector<std::int32_t> rows;
  for (std::size_t b = 0; b < bytes.each.size(); ++b) {
    const auto row = static_cast<std::int32_t>(b);
    rows = {row};
    korvex::AppendSharing(ends, row, rows);
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    double need = bytes.largestSystem;
    for (const std::int32_t other : rows) need += bytes.each[static_cast<std::size_t>(other)];
    if (need > largest.bytes) largest = {row, rows.size() - 1, need};
  }
  return largest;
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

std::string BytesText(double bytes) {
  return GigabyteText(static_cast<std::uint64_t>(std::min(bytes, NoMemoryHolds)));
}

// All together are too large: kvx makes them in blocks. what: "all detail models together ..."
void AddTooLargeTogether(const std::string& what, const CheckedModel& model,
                         const DetailBytes& bytes, FindingList& findings) {
  const std::int32_t row = FindLargestModel(bytes).row;
  Finding* const cause = FindCause(NodesOf(model.tables, Section::Beams, row), findings);
  if (cause != nullptr) {
    cause->message += " With it " + what;
    return;
  }
  Finding finding = MakeRowFinding("K504", model, Section::Beams, row);
  finding.severity = Severity::Warning;
  finding.message = what + " The largest, " + BytesText(bytes.each[static_cast<std::size_t>(row)]) +
                    ", is that of " + DescribeElement(model, Section::Beams, row) + '.';
  finding.remedy =
      "Solve the model with kvx run, which makes them in blocks. If that is much more than you "
      "expect, check the sizes of the section against the units of the coordinates.";
  AddFinding(std::move(finding), findings);
}

// "its detail model takes 21 GB with its solution"; subject: "its detail model"
std::string NeedText(const std::string& subject, const LargestNeed& need) {
  const std::string takes = BytesText(need.bytes);
  if (need.others == 0) return subject + " takes " + takes + " with its solution";
  return subject + " and " +
         (need.others == 1 ? "that of the beam that shares"
                           : "those of the " + std::to_string(need.others) + " beams that share") +
         " an end with it take " + takes + " with the solution of one";
}

// What one beam needs is too large: nobody can make its detail model. Where a slip is the cause,
// its finding tells what comes of it. limit: ", and there are ..."
void AddTooLarge(const LargestNeed& need, const std::string& limit, const CheckedModel& model,
                 FindingList& findings) {
  const std::string stops = limit + "the run stops after the solution.";
  Finding* const cause = FindCause(NodesOf(model.tables, Section::Beams, need.row), findings);
  if (cause != nullptr) {
    const std::string subject = " With it the detail model of beam " + std::to_string(need.row);
    if (cause->severity != Severity::Error) cause->message += NeedText(subject, need) + stops;
    cause->severity = Severity::Error;
    return;
  }
  Finding finding = MakeRowFinding("K504", model, Section::Beams, need.row);
  finding.message = DescribeElement(model, Section::Beams, need.row) + ": " +
                    NeedText("its detail model", need) + stops;
  finding.remedy = "Check the sizes of its section against the units of the coordinates.";
  AddFinding(std::move(finding), findings);
}

void JudgeMemory(const CheckedModel& model, const DetailBytes& bytes, std::uint64_t freeMemory,
                 FindingList& findings) {
  const auto free = static_cast<double>(freeMemory);
  if (bytes.all + bytes.largestSystem <= free) return;
  const std::string limit = ", and there are " + FreeText(freeMemory) + ": ";
  // A model that is too large alone is the reason, whichever beams share its ends.
  LargestNeed need = FindLargestModel(bytes);
  if (need.bytes <= free) need = FindLargestNeed(bytes);
  if (need.bytes > free) return AddTooLarge(need, limit, model, findings);
  AddTooLargeTogether("all detail models together take " +
                          BytesText(bytes.all + bytes.largestSystem) + limit +
                          "korvex stops after the solution.",
                      model, bytes, findings);
}

}  // namespace

void CheckDetailModels(const CheckedModel& model, std::uint64_t freeMemory, FindingList& findings) {
  const korvex::ModelTables& tables = model.tables;
  const auto beams = static_cast<std::size_t>(std::max(CountRows(tables, Section::Beams), 0));
  constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
  DetailBytes bytes;
  bytes.each.assign(beams, 0.0);
  bytes.ends.assign(2 * beams, {Nan, Nan, Nan});
  for (std::int32_t row = 0; row < CountRows(tables, Section::Beams); ++row) {
    if (StateOf(model, Section::Beams, row) == ElementState::Unusable) continue;
    const korvex::BeamSectionRef& ref = tables.BeamSectionRefs[static_cast<std::size_t>(row)];
    const korvex::SectionOutline outline = OutlineOf(tables, ref);
    if (outline.points.empty()) continue;
    const ElementNodes beam = NodesOf(tables, Section::Beams, row);
    const korvex::Vector3 end1 = PlaceOf(tables, beam.nodes[0]);
    const korvex::Vector3 end2 = PlaceOf(tables, beam.nodes[1]);
    AddBytes(outline, row, end1, end2, bytes);
    const double length = korvex::Length(korvex::Subtract(end2, end1));
    const double segment = korvex::LongestSegment(outline);
    if (segment > 0.0 && length / segment > MostRows &&
        bytes.each[static_cast<std::size_t>(row)] <= static_cast<double>(freeMemory) &&
        StateOf(model, Section::Beams, row) == ElementState::Sound &&
        !IsDoubtful(model, Section::Beams, row) && !IsNamed(ref, findings)) {
      AddLongModel(model, row, length, segment, findings);
    }
  }
  JudgeMemory(model, bytes, freeMemory, findings);
}

}  // namespace kvx
