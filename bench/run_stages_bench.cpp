// Where `kvx run` spends its time, stage by stage: the calls of the command in their order, without
// what it says.
//
//   run_stages_bench MODEL SIZE FOLDER [ROUNDS [THREADS]]
//
// MODEL, SIZE: as of write_model. FOLDER: for the model and its results; it is made. ROUNDS: 3;
// medians of them. THREADS: 1. With one thread, times are of the processor, which other programs do
// not disturb; with more, by the clock.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "commands/audit_report.h"
#include "commands/check_model.h"
#include "commands/load_model.h"
#include "commands/solution_file.h"
#include "engine/result_folder.h"
#include "engine/solve_together.h"
#include "measure.h"
#include "model/read_input_file.h"
#include "named_models.h"
#include "report/stop.h"
#include "system/load_vector.h"
#include "system/profile.h"

namespace {

namespace fs = std::filesystem;

// The stages of all rounds, in the order in which they were met first.
struct Times {
  bool isByClock = false;
  std::vector<std::pair<std::string, std::vector<double>>> stages;
  double begin = 0.0;  // of the stage that runs
};

double Now(const Times& times) {
  if (!times.isByClock) return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// seconds: of the stage in this round.
void Take(const std::string& stage, double seconds, std::size_t round, Times& times) {
  const auto isIt = [&](const auto& each) { return each.first == stage; };
  auto found = std::find_if(times.stages.begin(), times.stages.end(), isIt);
  if (found == times.stages.end()) {
    times.stages.push_back({stage, {}});
    found = times.stages.end() - 1;
  }
  found->second.resize(round + 1);
  found->second[round] += seconds;
}

void EndStage(const std::string& stage, std::size_t round, Times& times) {
  const double now = Now(times);
  Take(stage, now - times.begin, round, times);
  times.begin = now;
}

void ReadAndNumber(const std::string& text, korvex::Model& model) {
  korvex::ReadInputText(text, model);
  korvex::NumberEquations(model);
}

// Plans and solves; the model is freed.
void Solve(const std::string& text, const kvx::EngineSettings& settings, std::size_t round,
           Times& times, std::vector<std::vector<double>>& displacements,
           kvx::SolutionRecord& record) {
  korvex::Model model;
  ReadAndNumber(text, model);
  korvex::AssembleLoadVector(model);
  EndStage("read, loads", round, times);
  std::vector<std::vector<double>> loads{std::move(model.LoadVector)};
  kvx::SolutionPlan plan;
  kvx::PlanSolution(model, 1, settings, {}, plan);
  EndStage("order, prediction", round, times);
  kvx::SolveTogether(model, loads, settings, plan, {}, displacements, record);
  EndStage("solution", round, times);
}

// A file's stage is its writing and the work up to the next one, such as the stresses for it.
void Write(const std::string& text, const kvx::SolutionRecord& record,
           const kvx::EngineSettings& settings, std::size_t round, Times& times,
           kvx::SolvedModel& solved) {
  kvx::UnfinishedFolder unfinished;
  kvx::BeginUnfinished("", kvx::NameResultFiles(), unfinished);
  const std::string solution = kvx::SolutionFileText(kvx::IdentifyModelFile(text), record);
  std::string stage = "memory of the matrix";
  kvx::ResultWriting writing;
  writing.modelText = text;
  writing.solution = solution;
  writing.threads = settings.threads;
  const auto begin = [&](const std::string& next) {
    EndStage(stage, round, times);
    stage = next;
  };
  writing.before = [&](const char* file) { begin(file); };
  writing.detailShare = [&](double share) {
    if (share == 0.0) begin("detail models");
  };
  kvx::WriteResults(writing, solved.model, solved.details, unfinished);
  kvx::EndUnfinished(unfinished);
  EndStage(stage, round, times);
}

void RunOnce(const kvx::EngineSettings& settings, std::size_t round, Times& times) {
  times.begin = Now(times);
  kvx::LoadedModel file;
  std::string complaint;
  if (kvx::LoadModel(".", file, complaint) != kvx::ExitFine) std::exit(EXIT_FAILURE);
  EndStage("load the file", round, times);
  {
    kvx::CheckOptions options;
    options.asksMemory = false;
    kvx::CheckReport check;
    kvx::CheckModel(file.text, options, check);
  }
  EndStage("check", round, times);
  std::vector<std::vector<double>> displacements;
  kvx::SolutionRecord record;
  Solve(file.text, settings, round, times, displacements, record);
  kvx::SolvedModel solved;
  ReadAndNumber(file.text, solved.model);
  solved.model.Displacements = std::move(displacements[0]);
  EndStage("read again", round, times);
  Write(file.text, record, settings, round, times, solved);
  solved.file = kvx::IdentifyModelFile(file.text);
  kvx::CompleteSolvedModel(solved);
  kvx::AuditOptions options;
  options.threads = settings.threads;
  options.comparesFiles = false;
  options.hasStresses = true;
  options.modelText = file.text;
  options.solution = record;
  kvx::AuditReport report;
  kvx::AuditModel(options, solved, report);
  EndStage("audit", round, times);
}

void PrintTable(const Times& times) {
  double all = 0.0;
  for (const auto& [stage, rounds] : times.stages) {
    const double seconds = korvex::bench::Median(rounds);
    std::printf("| %s | %.2f |\n", stage.c_str(), seconds);
    all += seconds;
  }
  std::printf("| all | %.2f |\n", all);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fputs("usage: run_stages_bench MODEL SIZE FOLDER [ROUNDS [THREADS]]\n", stderr);
    return EXIT_FAILURE;
  }
  korvex::ModelTables tables;
  fs::create_directories(argv[3]);
  if (!korvex::bench::MakeNamedModel(argv[1], 1000.0 * std::atof(argv[2]), tables) ||
      !korvex::bench::WriteModelFile(tables, (fs::path(argv[3]) / kvx::ModelFileName).string())) {
    std::fputs("The model cannot be made.\n", stderr);
    return EXIT_FAILURE;
  }
  const std::size_t equations = 6 * tables.Nodes.size();
  tables = {};
  fs::current_path(argv[3]);
  const int rounds = argc > 4 ? std::max(std::atoi(argv[4]), 1) : 3;
  kvx::EngineSettings settings;
  settings.threads = argc > 5 ? std::max(std::atoi(argv[5]), 1) : 1;
  Times times;
  times.isByClock = settings.threads > 1;
  try {
    for (int round = 0; round < rounds; ++round) {
      RunOnce(settings, static_cast<std::size_t>(round), times);
    }
  } catch (const korvex::Stop& stop) {
    std::fprintf(stderr, "%s\n", stop.text.c_str());
    return EXIT_FAILURE;
  }
  std::printf("%s of %zu equations, %d threads, seconds %s, medians of %d rounds\n\n", argv[1],
              equations, settings.threads, times.isByClock ? "by the clock" : "of the processor",
              rounds);
  std::printf("| stage | seconds |\n|---|---|\n");
  PrintTable(times);
  return EXIT_SUCCESS;
}
