#include "commands/solve_cases.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <limits>
#include <set>
#include <system_error>
#include <utility>

#include "audit/peak_offers.h"
#include "base/release_vector.h"
#include "cases/case_envelopes.h"
#include "cases/folder_name.h"
#include "cases/load_tables.h"
#include "commands/case_folders.h"
#include "commands/envelope_tables.h"
#include "commands/made_folders.h"
#include "commands/progress.h"
#include "commands/solution_file.h"
#include "commands/solution_text.h"
#include "commands/watched_call.h"
#include "commands/write_shown.h"
#include "deck/write_tables.h"
#include "engine/result_folder.h"
#include "engine/solve_sparse.h"
#include "engine/solve_together.h"
#include "report/stop.h"
#include "system/load_vector.h"
#include "system/profile.h"

namespace kvx {

namespace fs = std::filesystem;
using korvex::Model;

namespace {

[[noreturn]] void StopOutput(const std::string& text) {
  throw korvex::Stop{korvex::StopKind::ResultFile, text};
}

// Adds the name of the case to what stops the work on it.
template <typename Work>
void InCase(const LoadSet& set, const Work& work) {
  try {
    work();
  } catch (korvex::Stop& stop) {
    const char* kind = set.isCombination ? "combination \"" : "case \"";
    stop.text = kind + set.name + "\": " + stop.text;
    throw;
  }
}

// Files get names without their folder: not every folder has a name in the system's code page.
void GoTo(const fs::path& folder, MadeFolders& made) {
  std::error_code error;
  MakeFolder(folder, made, error);
  if (error) {
    StopOutput("the folder \"" + folder.u8string() + "\" cannot be made: " + error.message() + ".");
  }
  fs::current_path(folder, error);
  if (error) {
    StopOutput("the folder \"" + folder.u8string() + "\" cannot be entered: " + error.message() +
               ".");
  }
}

// The load vectors of all cases.
void AssembleLoads(CaseSet& set, std::vector<std::vector<double>>& loads) {
  korvex::NumberEquations(set.model);
  for (LoadSet& each : set.sets) {
    SwapLoads(set.model.Tables, each.loads);
    InCase(each, [&] { korvex::AssembleLoadVector(set.model); });
    SwapLoads(set.model.Tables, each.loads);
    loads.push_back(std::move(set.model.LoadVector));
  }
  korvex::ReleaseVector(set.model.Displacements);
}

// The loads of all cases, and how they are solved.
struct Task {
  MadeFolders made;
  std::vector<std::vector<double>> loads;
  SolutionPlan plan;
};

// isDryRun: what each rank would do is looked at, too.
void Plan(const EngineSettings& settings, bool isDryRun, CaseSet& set, Task& task,
          SolvedCases& solved) {
  AssembleLoads(set, task.loads);
  Progress progress;
  BeginProgress("Predicting time and memory", progress);
  const EngineSettings watched =
      WatchCalls(settings, progress, [&] { RemoveEmptyFolders(task.made); });
  try {
    PlanSolution(
        set.model, task.loads.size(), watched, [&](double share) { ShowShare(share, progress); },
        task.plan);
    if (isDryRun) PredictRanks(set.model, task.loads.size(), watched, task.plan);
  } catch (const korvex::Stop&) {
    solved.plan = CopyWithoutOrder(task.plan);
    throw;
  }
  solved.plan = CopyWithoutOrder(task.plan);
  solved.fits = true;
}

void Solve(const EngineSettings& settings, CaseSet& set, Task& task,
           std::vector<std::vector<double>>& displacements, SolvedCases& solved) {
  using Clock = std::chrono::steady_clock;
  Progress progress;
  const std::string what = "Solving " + std::to_string(task.loads.size()) + " load cases";
  BeginProgress(SolvingText(what, task.plan), progress);
  const EngineSettings watched =
      WatchCalls(settings, progress, [&] { RemoveEmptyFolders(task.made); });
  const Clock::time_point begin = Clock::now();
  SolveTogether(
      set.model, task.loads, watched, task.plan, [&](double share) { ShowShare(share, progress); },
      displacements, solved.solution);
  solved.seconds = std::chrono::duration<double>(Clock::now() - begin).count();
}

// The structure keeps its text, with the names that people gave to its sections; but not where the
// text has slips, behind which loads would be misread.
std::string WriteModelText(const CaseSet& set) {
  const auto& list = set.findings.findings;
  const bool hasSlip = std::any_of(list.begin(), list.end(), [](const Finding& finding) {
    return finding.code.rfind("K0", 0) == 0 && finding.severity != Severity::Hint;
  });
  return hasSlip ? korvex::WriteTables(set.model.Tables)
                 : ComposeModelText(set.structure.text, set.model.Tables);
}

void WriteText(const std::string& folder, const char* name, const std::string& text) {
  std::ofstream stream(folder + name, std::ios::binary);
  stream.write(text.data(), static_cast<std::streamsize>(text.size()));
  stream.close();
  if (!stream) StopOutput(std::string(name) + " cannot be written.");
}

// What the loads are made from, for the folder that is the current one.
std::string MakeRecord(const CaseSet& set, const LoadSet& loads, const fs::path& folder) {
  std::vector<CaseSource> sources;
  for (const std::size_t row : loads.sources) sources.push_back(set.sources[row]);
  return CaseRecordText(loads.name, sources, folder);
}

// The model file, its record and the result files get their names together: the record first, so
// that there is never a model without it.
void WriteFolder(const SolvedText& solved, const std::string& record, Model& model,
                 DetailPeaks& details) {
  std::vector<FileToMake> files = NameResultFiles();
  files.insert(files.begin(),
               {{CaseRecordFileName, CaseRecordFileName}, {ModelFileName, ModelFileName}});
  UnfinishedFolder unfinished;
  BeginUnfinished("", files, unfinished);
  WriteText(unfinished.prefix, CaseRecordFileName, record);
  WriteText(unfinished.prefix, ModelFileName, std::string(solved.modelText));
  WriteShown(solved, model, details, unfinished);
}

void Describe(const SolvedModel& solved, AuditReport& report, SolvedCase& result) {
  result.loads = report.reactions.loads;
  result.translation = report.verdict.translation;
  if (report.verdict.notFinite.nodes > 0) {
    result.translation = {std::numeric_limits<double>::quiet_NaN(), report.verdict.notFinite.node};
  }
  if (result.translation.node >= 0) {
    const auto node = static_cast<std::size_t>(result.translation.node);
    const korvex::Node& at = solved.model.Tables.Nodes[node];
    result.place = {at.x, at.y, at.z};
  }
  result.verdict = VerdictText(report);
  result.maxima = std::move(report.maxima);
  const NominalPeak& nominal = report.nominal.vonMises;
  if (nominal.beam >= 0 && report.verdict.notFinite.nodes == 0) {
    PeakList list;
    list.quantity = Quantity::SectionVonMises;
    const auto beam = static_cast<std::size_t>(nominal.beam);
    list.peaks = {MakeSectionPeak(solved.model, beam, nominal.stress)};
    result.maxima.push_back(std::move(list));
  }
  result.findings = std::move(report.findings);
  result.detailBlocks = solved.details.blocks;
}

// All envelopes of the set, while cases are added.
struct EnvelopeWork {
  EnvelopeItems items;
  std::vector<CaseEnvelopes> envelopes;  // as CaseSet::envelopes
};

void AddToEnvelopes(const CaseSet& set, std::size_t row, const SolvedModel& solved,
                    const AuditReport& report, EnvelopeWork& work) {
  if (work.envelopes.empty()) {
    ListEnvelopeItems(solved, work.items);
    work.envelopes.resize(set.envelopes.size());
    for (CaseEnvelopes& each : work.envelopes) InitCaseEnvelopes(work.items, each);
  }
  const auto contains = [&](const EnvelopeOf& envelope) {
    return std::binary_search(envelope.of.begin(), envelope.of.end(), row);
  };
  if (std::none_of(set.envelopes.begin(), set.envelopes.end(), contains)) return;
  CaseValues values;
  ComputeCaseValues(solved, report.reactions, report.beams, values);
  for (std::size_t k = 0; k < set.envelopes.size(); ++k) {
    if (!contains(set.envelopes[k])) continue;
    AddCaseValues(values, static_cast<std::int32_t>(row), work.envelopes[k]);
  }
}

// One case, from its displacements to its folder, its audit and its part of the envelopes. The
// model lends its elements and gets them back.
struct CaseJob {
  std::size_t row;
  const fs::path& results;
  double seconds;
  std::uint64_t memory;     // for its detail models at once, bytes; 0: what is free limits them
  SolutionRecord solution;  // of this case
  const TakeCase& take;
  MadeFolders& made;
};

void FinishCase(const CaseJob& job, CaseSet& set, std::vector<double>& displacements,
                EnvelopeWork& work, SolvedCase& result) {
  LoadSet& loads = set.sets[job.row];
  result.folder = job.results / fs::u8path(loads.name);
  GoTo(result.folder, job.made);
  SwapLoads(set.model.Tables, loads.loads);
  const std::string text = WriteModelText(set);
  set.model.Displacements = std::move(displacements);
  const ModelFileId file = IdentifyModelFile(text);
  const std::string solution = SolutionFileText(file, job.solution);
  SolvedModel solved;
  WriteFolder({loads.name, text, job.seconds, solution, job.solution.threads, job.memory},
              MakeRecord(set, loads, result.folder), set.model, solved.details);
  solved.model = std::move(set.model);
  solved.file = file;
  CompleteSolvedModel(solved);
  AuditOptions options;
  options.threads = job.solution.threads;
  options.comparesFiles = false;  // they have just been written
  options.hasStresses = true;     // for them
  options.modelText = text;
  options.solution = job.solution;
  options.deck = set.origin;
  AuditReport report;
  AuditModel(options, solved, report);
  AddToEnvelopes(set, job.row, solved, report, work);
  job.take(job.row, solved, report);
  Describe(solved, report, result);
  set.model = std::move(solved.model);
  SwapLoads(set.model.Tables, loads.loads);
}

void WriteEnvelopes(const fs::path& results, const CaseSet& set, const EnvelopeWork& work,
                    MadeFolders& made, SolvedCases& solved) {
  std::vector<std::string> names;
  for (const LoadSet& each : set.sets) names.push_back(each.name);
  for (std::size_t k = 0; k < set.envelopes.size(); ++k) {
    SolvedEnvelope envelope;
    envelope.name = set.envelopes[k].name;
    envelope.folder = results / fs::u8path(EnvelopeFolderPrefix + envelope.name);
    for (const std::size_t row : set.envelopes[k].of) envelope.of.push_back(names[row]);
    GoTo(envelope.folder, made);
    const EnvelopeView view{work.items, work.envelopes[k], names, &set.origin};
    for (std::size_t kind = 0; kind < EnvelopeKindCount; ++kind) {
      WriteEnvelopeFile("", static_cast<EnvelopeKind>(kind), view);
    }
    MakeEnvelopeTables(view, envelope.tables);
    solved.envelopes.push_back(std::move(envelope));
  }
}

}  // namespace

void PlanCases(const EngineSettings& settings, CaseSet& set, SolvedCases& solved) {
  Task task;
  Plan(settings, true, set, task, solved);
}

void SolveCases(const fs::path& results, const EngineSettings& settings, CaseSet& set,
                const TakeCase& take, SolvedCases& solved) {
  Task task;
  CheckCaseFolders(results, set, task.made);
  Plan(settings, false, set, task, solved);
  std::vector<std::vector<double>> displacements;
  Solve(settings, set, task, displacements, solved);
  task.loads = {};
  task.plan = {};
  EnvelopeWork work;
  solved.cases.resize(set.sets.size());
  for (std::size_t row = 0; row < set.sets.size(); ++row) {
    StopIfInterrupted();
    const CaseJob job{
        row,  results,  solved.seconds, settings.memory, SolutionOfLoad(solved.solution, row),
        take, task.made};
    InCase(set.sets[row],
           [&] { FinishCase(job, set, displacements[row], work, solved.cases[row]); });
    displacements[row] = {};
    solved.detailBlocks = std::max(solved.detailBlocks, solved.cases[row].detailBlocks);
  }
  WriteEnvelopes(results, set, work, task.made, solved);
}

std::vector<std::string> ListOtherFolders(const fs::path& results, const CaseSet& set) {
  std::set<std::string> own;
  for (const LoadSet& each : set.sets) own.insert(FoldCase(each.name));
  for (const EnvelopeOf& each : set.envelopes) {
    own.insert(FoldCase(EnvelopeFolderPrefix + each.name));
  }
  std::vector<std::string> others;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(results, error)) {
    const std::string name = entry.path().filename().u8string();
    if (!entry.is_directory(error) || own.count(FoldCase(name)) > 0) continue;
    const bool isCase = fs::exists(entry.path() / ExactDisplacementFileName, error);
    const bool isEnvelope =
        name.rfind(EnvelopeFolderPrefix, 0) == 0 &&
        fs::exists(entry.path() / EnvelopeFileName(EnvelopeDisplacements), error);
    if (isCase || isEnvelope) others.push_back(name);
  }
  std::sort(others.begin(), others.end());
  return others;
}

}  // namespace kvx
