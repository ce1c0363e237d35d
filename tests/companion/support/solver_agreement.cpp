#include "support/solver_agreement.h"

#include <algorithm>
#include <cmath>

#include "commands/check_model.h"
#include "deck/write_tables.h"
#include "model/read_input_file.h"
#include "report/stop.h"
#include "run/stages.h"

namespace kvx::test {

namespace {

using korvex::Stage;

template <typename Values>
bool AreFinite(const Values& values) {
  return std::all_of(values.begin(), values.end(), [](double x) { return std::isfinite(x); });
}

template <typename Elements>
bool HaveFiniteStresses(const Elements& elements) {
  return std::all_of(elements.begin(), elements.end(), [](const auto& element) {
    for (const auto* faces : {&element.NodeStressTop, &element.NodeStressBottom,
                              &element.AvgStressTop, &element.AvgStressBottom}) {
      for (const korvex::StressVector& stress : *faces) {
        if (!AreFinite(stress)) return false;
      }
    }
    return true;
  });
}

std::string FindNotFinite(const korvex::Model& model) {
  for (std::size_t k = 0; k < model.Displacements.size(); ++k) {
    if (std::isfinite(model.Displacements[k])) continue;
    return "displacement " + std::to_string(k % 6) + " of node " + std::to_string(k / 6) +
           " is not finite";
  }
  if (!HaveFiniteStresses(model.Shell4Elements)) return "a stress of a quadrilateral is not finite";
  if (!HaveFiniteStresses(model.Shell3Elements)) return "a stress of a triangle is not finite";
  for (std::size_t b = 0; b < model.BeamShellModels.size(); ++b) {
    const korvex::BeamShellModel& detail = model.BeamShellModels[b];
    if (!AreFinite(detail.Displacements) || !HaveFiniteStresses(detail.Shells)) {
      return "the detail model of beam " + std::to_string(b) + " is not finite";
    }
  }
  return "";
}

// Runs all stages but the first, which reads, and the last, which frees the model.
std::string RunStages(korvex::Job& job) {
  for (std::size_t k = 1; k < korvex::AssemblyStages.size(); ++k) {
    korvex::AssemblyStages[k].work(job);
  }
  korvex::SolutionStage.work(job);
  for (const korvex::Stage& stage : korvex::ResultStages) stage.work(job);
  for (const korvex::Stage& stage : korvex::DetailStages) stage.work(job);
  return FindNotFinite(job.model);
}

}  // namespace

std::string FindDisagreement(const std::string& text, const std::string& folder) {
  CheckReport report;
  CheckModel(text, {}, report);
  if (CountFindings(report.findings, Severity::Error) > 0) return "";
  korvex::Job job;
  job.folder = folder;
  try {
    korvex::ReadInputText(text, job.model);
    if (korvex::WriteTables(job.model.Tables) != korvex::WriteTables(report.model.tables)) {
      return "the solver reads other tables than the checks";
    }
    return RunStages(job);
  } catch (const korvex::Stop& stop) {
    return "the solver stops: " + stop.text;
  }
}

}  // namespace kvx::test
