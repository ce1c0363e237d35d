// What an audit computes, in its order.
#include "commands/audit_report.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cmath>

#include "check/check_text.h"
#include "commands/origin_words.h"
#include "commands/progress.h"
#include "commands/recover_stresses.h"
#include "commands/result_findings.h"
#include "report/stop.h"

namespace kvx {

using korvex::Model;

namespace {

void CompareFiles(const AuditOptions& options, SolvedModel& solved, AuditReport& report) {
  const auto begin = std::chrono::steady_clock::now();
  Progress line;
  ComparisonProgress progress;
  progress.before = [&](const char* name) {
    BeginProgress(std::string("Comparing ") + name, line);
    ShowBegin(begin, line);
  };
  progress.details = [&](double share) { ShowDetailShare(share, "", line); };
  CompareResults(options.folder, progress, solved, report.files, options.threads);
  if (!options.hasSparseFiles) return;
  for (ResultState& file : report.files) {
    if (file.fit == ResultFit::Differs)
      file = {file.name, ResultFit::Unknown, 0, SparseFilesReason};
  }
}

// The stresses that a run makes. What the comparison of files has found in detail models is kept:
// they cost the most.
void MakeStresses(SolvedModel& solved, AuditReport& report) {
  const bool areMade = solved.details.offers.size() == solved.model.BeamElements.size();
  try {
    RecoverStresses(areMade ? DetailWish::None : DetailWish::Peaks, {}, solved);
  } catch (const korvex::Stop& stop) {
    report.noDetails = stop.text;
  }
}

void FindPeaks(const SolvedModel& solved, AuditReport& report) {
  const Model& model = solved.model;
  MaximaRequest request;
  request.yield = report.yield;
  request.quantities = {Quantity::DisplacementSize};
  if (!model.Shell4Elements.empty() || !model.Shell3Elements.empty()) {
    request.quantities.push_back(Quantity::VonMises);
  }
  if (!model.BeamElements.empty() && report.noDetails.empty()) {
    request.quantities.push_back(Quantity::BeamVonMises);
  }
  FindMaxima(model, request, {}, solved.details.offers, report.maxima);
}

// Takes the beam's stress if it is larger than that of `peak`; value: its size.
void RaisePeak(std::int32_t beam, const PlacedStress& stress, double FibreStress::*value,
               double sign, NominalPeak& peak) {
  const double x = sign * stress.fibre.*value;
  if (!std::isfinite(x)) return;
  if (peak.beam < 0 || x > sign * peak.stress.fibre.*value) peak = {beam, stress};
}

void FindNominalStresses(const Model& model, AuditReport& report) {
  report.beamVonMises.clear();
  for (std::size_t b = 0; b < report.beams.size(); ++b) {
    const BeamStresses stresses = FindBeamStresses(model, b, report.beams[b]);
    const auto beam = static_cast<std::int32_t>(b);
    NominalPeaks& peaks = report.nominal;
    RaisePeak(beam, stresses.tension, &FibreStress::sigma, 1.0, peaks.tension);
    RaisePeak(beam, stresses.compression, &FibreStress::sigma, -1.0, peaks.compression);
    RaisePeak(beam, stresses.shear, &FibreStress::tau, 1.0, peaks.shear);
    RaisePeak(beam, stresses.vonMises, &FibreStress::vonMises, 1.0, peaks.vonMises);
    report.beamVonMises.push_back(stresses.vonMises.fibre.vonMises);
  }
}

// Stresses of detail models that are too short are those of their rigid ends.
void RaiseByDetails(const std::vector<DetailStress>& details, AuditReport& report) {
  if (details.size() != report.beamVonMises.size() || !report.noDetails.empty()) return;
  auto isShort = report.shortDetails.begin();
  for (std::size_t b = 0; b < report.beamVonMises.size(); ++b) {
    if (isShort != report.shortDetails.end() && static_cast<std::size_t>(isShort->beam) == b) {
      ++isShort;
      continue;
    }
    const double stress = details[b].vonMises;
    double& largest = report.beamVonMises[b];
    if (std::isnan(largest) || stress > largest) largest = stress;
  }
}

void AuditBeams(const SolvedModel& solved, AuditReport& report) {
  const Model& model = solved.model;
  ComputeBeamForces(model, report.beams);
  FindNominalStresses(model, report);
  FindShortDetails(model, report.shortDetails);
  RaiseByDetails(solved.details.stresses, report);
  FindUndividedBeams(model, report.beams, report.undivided);
  std::stable_sort(report.undivided.begin(), report.undivided.end(),
                   [](const UndividedBeam& a, const UndividedBeam& b) {
                     return a.missingStress > b.missingStress;
                   });
}

// The solver's tables, and where their rows stand in the text.
void FindPlaces(const AuditOptions& options, const Model& model, CheckedModel& places) {
  FindingList unused;
  if (!options.modelText.empty()) CheckText(options.modelText, places, unused);
  places.tables = model.Tables;
  for (auto& rows : places.lostRows) rows.clear();
}

// The first finding of this severity by its code: the groups' order is that of gravity. Null: none.
const Finding* FindGravest(const FindingList& list, Severity severity) {
  const Finding* gravest = nullptr;
  for (const Finding& finding : list.findings) {
    if (finding.severity != severity) continue;
    if (gravest == nullptr || finding.code < gravest->code) gravest = &finding;
  }
  return gravest;
}

// The title of the finding's kind within a sentence.
std::string TitleOf(const Finding& finding) {
  std::string title = FindCode(finding.code)->title;
  title[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(title[0])));
  return title;
}

}  // namespace

void AuditModel(const AuditOptions& options, SolvedModel& solved, AuditReport& report) {
  report = {};
  report.yield = options.yield;
  report.origin = options.origin;
  report.deck = options.deck;
  report.solution = options.solution;
  if (options.hasStresses) report.noDetails = options.noDetails;
  ComputeReactions(solved, report.reactions, options.threads);
  StopIfInterrupted();
  JudgeSolution(solved, report.verdict);
  report.isLoaded = report.reactions.isLoaded || !report.reactions.moved.empty();
  if (options.comparesFiles) CompareFiles(options, solved, report);
  if (report.verdict.notFinite.nodes == 0) {
    if (!options.hasStresses) MakeStresses(solved, report);
    FindPeaks(solved, report);
  }
  AuditBeams(solved, report);

  CheckedModel places;
  FindPlaces(options, solved.model, places);
  AddSolutionFindings(options, places, solved, report);
  AddFileFindings(options, report);
  AddStressFindings(places, report);
  // By severity alone: of each kind the worst stands first.
  std::stable_sort(report.findings.findings.begin(), report.findings.findings.end(),
                   [](const Finding& a, const Finding& b) { return a.severity < b.severity; });
  NameInDeck(report.deck, solved.model.Tables, report.findings);
}

std::string VerdictText(const AuditReport& report) {
  if (const Finding* error = FindGravest(report.findings, Severity::Error)) return TitleOf(*error);
  std::string balanced = report.isLoaded ? "balanced" : "no loads";
  if (const Finding* warning = FindGravest(report.findings, Severity::Warning)) {
    return balanced + ", but " + TitleOf(*warning);
  }
  return balanced;
}

}  // namespace kvx
