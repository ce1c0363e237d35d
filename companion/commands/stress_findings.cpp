// K721 .. K723: beams whose detail models should not be read, stresses above yield.
#include <algorithm>
#include <cmath>

#include "check/describe.h"
#include "commands/result_findings.h"
#include "commands/rough_text.h"
#include "finding/text_layout.h"

namespace kvx {

using korvex::Section;

namespace {

// Whether the displacements are no solution: then stresses mean nothing.
bool IsSpoilt(const AuditReport& report) {
  return report.verdict.notFinite.nodes > 0 || !IsBalanced(report.reactions) ||
         HasResidual(report.reactions);
}

void AddUndivided(const CheckedModel& places, AuditReport& report) {
  for (const UndividedBeam& beam : report.undivided) {
    Finding finding = MakeRowFinding("K721", places, Section::Beams, beam.beam);
    finding.message = DescribeElement(places, Section::Beams, beam.beam) +
                      ": its detail model does not see the line load between its ends; at "
                      "mid-length it lacks a bending stress of " +
                      NumberText(beam.missingStress) + ", from " + RoughText(beam.part) +
                      " of the largest moment of the girder.";
    finding.remedy =
        "Divide it into " + CountText(static_cast<std::size_t>(beam.pieces), "beam", "beams") + ".";
    AddFinding(finding, report.findings);
  }
}

void AddShortDetails(const CheckedModel& places, AuditReport& report) {
  for (const ShortDetail& beam : report.shortDetails) {
    Finding finding = MakeRowFinding("K722", places, Section::Beams, beam.beam);
    finding.message = DescribeElement(places, Section::Beams, beam.beam) +
                      ": its detail model has only " +
                      CountText(static_cast<std::size_t>(beam.steps), "row", "rows") +
                      " of shells along it; the rigid ends spoil its stresses.";
    finding.remedy = "Take the stress from the section forces.";
    AddFinding(finding, report.findings);
  }
}

const PeakList* FindList(const AuditReport& report, Quantity quantity) {
  const auto list = std::find_if(report.maxima.begin(), report.maxima.end(),
                                 [&](const PeakList& l) { return l.quantity == quantity; });
  return list == report.maxima.end() ? nullptr : &*list;
}

// "355 is 1.511 of the yield stress 235"
std::string BeyondText(double stress, double yield) {
  return NumberText(stress) + " is " + UtilisationText(stress / yield) + " of the yield stress " +
         NumberText(yield);
}

void AddYieldingShells(const CheckedModel& places, AuditReport& report) {
  const PeakList* const list = FindList(report, Quantity::VonMises);
  if (list == nullptr || list->beyondYield == 0) return;
  const Peak& worst = list->peaks.front();
  const Section section = worst.holder == Holder::Shell4 ? Section::Shells4 : Section::Shells3;
  Finding finding = MakeRowFinding("K723", places, section, worst.element);
  finding.rows.clear();
  for (const Peak& peak : list->peaks) {
    const bool isBeyond = peak.value > report.yield && peak.holder == worst.holder;
    if (isBeyond) finding.rows.push_back(peak.element);
  }
  finding.hasPosition = true;
  finding.position = worst.place;
  finding.message =
      DescribeElement(places, section, worst.element) + ": its von Mises stress " +
      BeyondText(worst.value, report.yield) + "; " +
      CountText(static_cast<std::size_t>(list->beyondYield), "shell is", "shells are") +
      " above it.";
  finding.remedy = "kvx top lists them.";
  AddFinding(finding, report.findings);
}

// Beams by the larger of their stresses from section forces and by detail model.
void AddYieldingBeams(const CheckedModel& places, AuditReport& report) {
  std::vector<double> stresses = report.beamVonMises;
  const PeakList* const details = FindList(report, Quantity::BeamVonMises);
  if (details != nullptr) {
    for (const Peak& peak : details->peaks) {
      double& stress = stresses[static_cast<std::size_t>(peak.element)];
      stress = std::isnan(stress) ? peak.value : std::max(stress, peak.value);
    }
  }
  std::vector<std::pair<double, std::int32_t>> beyond;
  for (std::size_t b = 0; b < stresses.size(); ++b) {
    if (stresses[b] > report.yield) beyond.emplace_back(-stresses[b], static_cast<std::int32_t>(b));
  }
  if (beyond.empty()) return;
  std::sort(beyond.begin(), beyond.end());
  const std::int32_t worst = beyond[0].second;
  Finding finding = MakeRowFinding("K723", places, Section::Beams, worst);
  finding.rows.clear();
  for (const auto& beam : beyond) finding.rows.push_back(beam.second);
  finding.message = DescribeElement(places, Section::Beams, worst) + ": its von Mises stress " +
                    BeyondText(-beyond[0].first, report.yield) + "; " +
                    CountText(beyond.size(), "beam is", "beams are") + " above it.";
  finding.remedy = "kvx top and kvx forces list them.";
  AddFinding(finding, report.findings);
}

}  // namespace

void AddStressFindings(const CheckedModel& places, AuditReport& report) {
  if (IsSpoilt(report)) return;
  AddUndivided(places, report);
  AddShortDetails(places, report);
  if (report.yield <= 0.0) return;
  AddYieldingShells(places, report);
  AddYieldingBeams(places, report);
}

}  // namespace kvx
