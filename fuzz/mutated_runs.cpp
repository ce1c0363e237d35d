// Runs the program on mutated models and counts how the runs end. An end by a signal, an exit
// status other than 0 or 1, or more time than the size of the model explains is an error, a "find".
//
//     mutated_runs PROGRAM CORPUS_FOLDER COUNT [FIRST_SEED [REFERENCE]]
//
// REFERENCE is another build of the program. Each model is then run by both, and whatever differs
// is a find: the status, what stands on the console and in notices, each file byte by byte. The
// solution time is left out.
//
// Each run is a separate process with little memory, in a folder under TMPDIR. Model and mutation
// depend on the seed only, so a find can be repeated; its model file is kept as well.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "mutate_model.h"

namespace {

namespace fs = std::filesystem;

constexpr rlim_t AddressLimit = rlim_t{48} << 20U;  // bytes; the program stops at larger models
constexpr rlim_t TimeLimit = 100;                   // seconds of processor time, against hangs

// The time that a run may take: for its start, for each written byte, for each row by its counts,
// and for each pair of beams. (Beams without rows have no length, and each corner of their detail
// models is averaged over all of them.) A machine at normal load needs a tenth of this.
constexpr double StartSeconds = 1.0;
constexpr double SecondsPerByte = 1e-6;
constexpr double SecondsPerRow = 3e-5;
constexpr double SecondsPerPair = 1e-4;

struct Run {
  int status = 0;  // as wait gives it
  double seconds = 0.0;
  double allowed = 0.0;
};

std::string ReadText(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

// Returns the models in the order of their file names, which is the same on every machine.
std::vector<std::string> ReadModels(const fs::path& corpus) {
  std::vector<fs::path> names;
  for (const auto& entry : fs::directory_iterator(corpus)) names.push_back(entry.path());
  std::sort(names.begin(), names.end());
  std::vector<std::string> models;
  for (const fs::path& name : names) models.push_back(ReadText(name));
  return models;
}

// Returns the sum of the counts after `title`, limited to the rows that the memory can hold.
double CountRows(const std::string& text, const char* title) {
  constexpr double RowsAtMost = AddressLimit / 500.0;  // of elements; all others take no time
  double rows = 0.0;
  for (std::size_t at = text.find(title); at != std::string::npos; at = text.find(title, at + 1)) {
    const std::size_t equals = text.find('=', at);
    if (equals == std::string::npos) break;
    const double count = std::strtod(text.c_str() + equals + 1, nullptr);
    if (count > 0.0) rows += std::min(count, RowsAtMost);
  }
  return std::min(rows, RowsAtMost);
}

double CountWritten(const fs::path& folder) {
  double bytes = 0.0;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.is_regular_file() && !entry.is_symlink())
      bytes += static_cast<double>(entry.file_size());
  }
  return bytes;
}

// Runs in the child process. Returns only if the program cannot be started.
void BecomeProgram(const char* program, const fs::path& folder) {
  const struct rlimit memory { AddressLimit, AddressLimit }, time{TimeLimit, TimeLimit}, core{0, 0};
  setrlimit(RLIMIT_AS, &memory);
  setrlimit(RLIMIT_CPU, &time);
  setrlimit(RLIMIT_CORE, &core);
  dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
  const auto redirect = [&](const char* name, int descriptor) {
    dup2(open((folder / name).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), descriptor);
  };
  redirect("console", STDOUT_FILENO);
  redirect("notices", STDERR_FILENO);
  if (chdir(folder.c_str()) == 0) execl(program, program, static_cast<char*>(nullptr));
}

Run RunModel(const char* program, const fs::path& folder, const std::string& text) {
  fs::remove_all(folder);
  fs::create_directory(folder);
  std::ofstream(folder / "fem_solving.txt", std::ios::binary) << text;
  const pid_t child = fork();
  if (child == 0) {
    BecomeProgram(program, folder);
    _exit(127);
  }
  Run run;
  struct rusage usage {};
  wait4(child, &run.status, 0, &usage);
  for (const struct timeval& time : {usage.ru_utime, usage.ru_stime}) {
    run.seconds += static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  }
  const double rows = CountRows(text, "Number of");
  const double beams = CountRows(text, "Number of beam elements");
  run.allowed = StartSeconds + SecondsPerByte * CountWritten(folder) + SecondsPerRow * rows +
                SecondsPerPair * beams * beams;
  return run;
}

// Returns the key by which the ends of runs are counted: exit status or signal, and the text of the
// notice with "#" for each number.
std::string NameEnd(const Run& run, const fs::path& folder) {
  if (WIFSIGNALED(run.status)) return "signal " + std::to_string(WTERMSIG(run.status));
  std::string name = "status " + std::to_string(WEXITSTATUS(run.status));
  std::ifstream notices(folder / "notices");
  std::string line;
  std::getline(notices, line);
  std::getline(notices, line);
  name += ' ';
  for (const char c : line) {
    const bool isNumber = (c >= '0' && c <= '9') || c == '.' || c == '-' || c == '+';
    if (!isNumber) name += c;
    if (isNumber && name.back() != '#') name += '#';
  }
  return name;
}

bool IsAllowed(const Run& run) {
  return WIFEXITED(run.status) && WEXITSTATUS(run.status) <= 1 && run.seconds <= run.allowed;
}

// `text` without the solution time, which differs from run to run.
std::string WithoutTime(std::string text) {
  const std::string title = "Solution time:";
  const std::size_t at = text.find(title);
  if (at == std::string::npos) return text;
  const std::size_t begin = at + title.size();
  return text.erase(begin, text.find(' ', begin) - begin);
}

// The files of a run by name, the console and notices included, and its status.
std::map<std::string, std::string> CollectTraces(const Run& run, const fs::path& folder) {
  std::map<std::string, std::string> traces{{"status", std::to_string(run.status)}};
  for (const auto& entry : fs::directory_iterator(folder)) {
    traces[entry.path().filename().string()] = WithoutTime(ReadText(entry.path()));
  }
  return traces;
}

// The names of what differs between the two programs on a model, each with a blank before it.
std::string CompareRuns(const char* program, const char* reference, const fs::path& folder,
                        const std::string& text) {
  auto ours = CollectTraces(RunModel(program, folder, text), folder);
  auto theirs = CollectTraces(RunModel(reference, folder, text), folder);
  std::string differences;
  for (const auto& [name, trace] : theirs) {
    if (ours.count(name) == 0 || ours[name] != trace) differences += " \"" + name + '"';
    ours.erase(name);
  }
  for (const auto& [name, trace] : ours) differences += " \"" + name + '"';
  return differences;
}

// Keeps the model and says why.
void KeepFind(unsigned long long seed, const std::string& text, const Run& run,
              const std::string& end, const std::string& differences) {
  const std::string kept = "find-" + std::to_string(seed) + ".txt";
  std::ofstream(kept, std::ios::binary) << text;
  std::printf("seed %llu: %s after %.2f seconds, %.1f allowed;%s%s kept as %s\n", seed, end.c_str(),
              run.seconds, run.allowed, differences.empty() ? "" : " other", differences.c_str(),
              kept.c_str());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fprintf(stderr,
                 "usage: mutated_runs PROGRAM CORPUS_FOLDER COUNT [FIRST_SEED [REFERENCE]]\n");
    return 2;
  }
  const std::string program = fs::absolute(argv[1]);
  const std::vector<std::string> models = ReadModels(argv[2]);
  const unsigned long long count = std::strtoull(argv[3], nullptr, 10);
  const unsigned long long first = argc > 4 ? std::strtoull(argv[4], nullptr, 10) : 0;
  const std::string reference = argc > 5 ? fs::absolute(argv[5]).string() : "";
  const fs::path folder =
      fs::temp_directory_path() / ("korvex-mutated-" + std::to_string(getpid()));
  if (models.empty()) return 2;

  std::map<std::string, int> ends;
  int finds = 0;
  double longest = 0.0;
  for (unsigned long long seed = first; seed < first + count; ++seed) {
    std::string text = models[seed % models.size()];
    korvex::fuzz::MutateModel(text, seed);
    const Run run = RunModel(program.c_str(), folder, text);
    ++ends[NameEnd(run, folder)];
    if (run.seconds > longest) {
      longest = run.seconds;
      std::printf("seed %llu: %.2f seconds, %.1f allowed\n", seed, run.seconds, run.allowed);
      std::fflush(stdout);
    }
    const std::string end = NameEnd(run, folder);
    std::string differences;
    if (!reference.empty()) {
      differences = CompareRuns(program.c_str(), reference.c_str(), folder, text);
    }
    if (IsAllowed(run) && differences.empty()) continue;
    ++finds;
    KeepFind(seed, text, run, end, differences);
  }
  fs::remove_all(folder);
  for (const auto& [end, runs] : ends) std::printf("%8d  %s\n", runs, end.c_str());
  std::printf("%llu runs, %d finds\n", count, finds);
  return finds == 0 ? 0 : 1;
}
