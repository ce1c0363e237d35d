// Measures the factorisation with vectors of each length, and the substitution, against the plain
// routines.
//
// Google Benchmark runs one case after another. It repeats each routine of a case, in random order,
// so that other load on the machine affects all routines equally. Times are processor times. The
// peak (vector_peak.h) is measured right before and after each factorisation. A table after each
// case gives the ratios of medians, and whether factors, loads and solutions have the same bits.
// Its last line is the complete solution as in a run of the program, by independent systems where
// there are any.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <regex>
#include <string>
#include <vector>

#include "measure.h"
#include "platform/vector_bits.h"
#include "skyline/factor_skyline.h"
#include "skyline/solve_skyline.h"
#include "skyline/solve_skyline_plain.h"
#include "skyline/substitute_back.h"
#include "skyline_systems.h"
#include "vector_peak.h"

namespace {

using namespace korvex;
using namespace korvex::bench;

constexpr int Plain = 0;  // instead of a vector length
constexpr double Giga = 1e9;
constexpr int UsageError = 2;  // exit status

constexpr std::uint64_t HashStart = 14695981039346656037U;  // the hash of no values

// Times and results of one routine, for each repetition.
struct Record {
  int vectorBits = Plain;
  std::string name;                        // of its benchmark
  std::vector<double> factor, substitute;  // seconds
  std::vector<double> peak;                // operations per second; 0 for the plain routine
  std::vector<std::uint64_t> loadHashes;   // of reduced load and solution
  std::vector<std::uint64_t> factorHashes;
};

// Times and results of the complete solution. Its factors are not compared, because independent
// systems have other skylines.
struct RunRecord {
  bool isChosen = false;
  std::string name;
  std::vector<double> seconds;
  std::vector<std::uint64_t> loadHashes;  // of reduced load and solution
};

// A case: its system, made by the first routine that needs it, and its routines.
struct Job {
  const SkylineCase* source = nullptr;
  SkylineSystem system;
  double operations = 0.0;
  std::vector<Record> records;
  RunRecord run;
};

// Products, differences and quotients of the factorisation and the forward reduction.
double CountOperations(const SkylineMatrix& K) {
  double count = 0.0;
  const auto n = static_cast<std::int64_t>(K.ColumnHeights.size());
  for (std::int64_t j = 0; j < n; ++j) {
    const std::int64_t top = TopRow(K, j);
    for (std::int64_t i = top; i < j; ++i) {
      count += 2.0 * static_cast<double>(i - std::max(TopRow(K, i), top));
    }
    count += 5.0 * static_cast<double>(j - top);
  }
  return count;
}

// A hash of the bits of all values (Fowler, Noll & Vo, by words).
// hash: the hash of the values before these.
template <typename Numbers>
std::uint64_t HashBits(const Numbers& values, std::uint64_t hash) {
  for (const double value : values) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    hash = (hash ^ bits) * 1099511628211U;
    hash ^= hash >> 32;
  }
  return hash;
}

std::uint64_t HashLoads(const std::vector<double>& F, const std::vector<double>& u) {
  return HashBits(u, HashBits(F, HashStart));
}

void MakeSystem(Job& job) {
  job.system = job.source->make();
  job.operations = CountOperations(job.system.K) * job.system.copies;
}

// One repetition: solves all copies of the system. The benchmark's time is that of the
// factorisation; other results are its counters.
void Solve(const Job& job, benchmark::State& state, Record& record) {
  const SkylineSystem& system = job.system;
  const auto copies = static_cast<std::size_t>(system.copies);
  std::vector<SkylineMatrix> K(copies, system.K);
  std::vector<std::vector<double>> F(copies, system.F), u(copies, system.F);
  const bool isPlain = record.vectorBits == Plain;
  double peak = isPlain ? 0.0 : MeasurePeak(record.vectorBits);
  double factor = 0.0;
  for (auto _ : state) {
    factor = Measure([&] {
      for (std::size_t i = 0; i < copies; ++i) {
        ColumnCounter columns;
        FactorSkyline(record.vectorBits, K[i], F[i], columns);
      }
    });
    state.SetIterationTime(factor);
  }
  if (!isPlain) peak = 0.5 * (peak + MeasurePeak(record.vectorBits));
  const double substitute = Measure([&] {
    for (std::size_t i = 0; i < copies; ++i) {
      if (isPlain) {
        SubstituteBackPlain(K[i], F[i], u[i]);
      } else {
        SubstituteBack(K[i], F[i], u[i]);
      }
    }
  });
  record.factor.push_back(factor);
  record.substitute.push_back(substitute);
  record.peak.push_back(peak);
  record.loadHashes.push_back(HashLoads(F[0], u[0]));
  record.factorHashes.push_back(HashBits(K[0].Values, HashStart));
  state.counters["Gflop/s"] = job.operations / factor / Giga;
  state.counters["substitution_s"] = substitute;
  if (isPlain) return;
  state.counters["peak_Gflop/s"] = peak / Giga;
  state.counters["of_peak"] = job.operations / factor / peak;
}

// One repetition of the complete solution.
void SolveRun(const Job& job, benchmark::State& state, RunRecord& record) {
  const auto copies = static_cast<std::size_t>(job.system.copies);
  std::vector<SkylineMatrix> K(copies, job.system.K);
  std::vector<std::vector<double>> F(copies, job.system.F), u(copies, job.system.F);
  for (auto _ : state) {
    record.seconds.push_back(Measure([&] {
      for (std::size_t i = 0; i < copies; ++i) {
        SolveSkyline(K[i], F[i], u[i], {});
      }
    }));
    state.SetIterationTime(record.seconds.back());
  }
  record.loadHashes.push_back(HashLoads(F[0], u[0]));
}

// Whether --benchmark_filter selects the benchmark, by the library's rule: if the pattern matches a
// part of its full name or, with a minus before it, if it does not.
bool IsChosen(const std::string& shortName) {
  const std::string name = shortName + "/iterations:1/manual_time";  // the library's suffix
  const std::string filter = benchmark::GetBenchmarkFilter();
  if (filter.empty() || filter == "all") return true;
  const bool isNegative = filter[0] == '-';
  const std::regex pattern(filter.substr(isNegative ? 1 : 0), std::regex::extended);
  return std::regex_search(name, pattern) != isNegative;
}

// Lists the selected routines of a case, the plain one first.
void ListRoutines(Job& job) {
  const auto add = [&](int vectorBits, const std::string& routine) {
    Record record;
    record.vectorBits = vectorBits;
    record.name = job.source->name + ('/' + routine);
    if (IsChosen(record.name)) job.records.push_back(record);
  };
  add(Plain, "plain");
  for (int bits = 128; bits <= WidestVectorBits(); bits *= 2) add(bits, std::to_string(bits));
  job.run.name = std::string(job.source->name) + "/run";
  job.run.isChosen = IsChosen(job.run.name);
}

void PrintRecord(const Record& record, const Record& first, double operations, bool isSame) {
  const double factor = Median(record.factor), substitute = Median(record.substitute);
  std::fprintf(stderr, "%-16s %10.4f %8.1f %8.1f", record.name.c_str(), factor,
               operations / factor / Giga, Median(first.factor) / factor);
  if (record.vectorBits == Plain) {
    std::fprintf(stderr, "%16s", "");
  } else {
    std::vector<double> shares;
    for (std::size_t i = 0; i < record.peak.size(); ++i) {
      shares.push_back(operations / record.factor[i] / record.peak[i]);
    }
    std::fprintf(stderr, "  %3.0f %% of %5.1f", 100.0 * Median(shares), Median(record.peak) / Giga);
  }
  std::fprintf(stderr, " %10.4f %8.1f%s\n", substitute, Median(first.substitute) / substitute,
               isSame ? "" : "  OTHER BITS");
}

// first: null if no other routine is selected.
void PrintRun(const RunRecord& record, const Record* first, bool isSame) {
  const double seconds = Median(record.seconds);
  std::fprintf(stderr, "%-16s %10.4f", record.name.c_str(), seconds);
  if (first != nullptr) {
    std::fprintf(stderr, "%9s%8.1f", "",
                 (Median(first->factor) + Median(first->substitute)) / seconds);
  }
  std::fprintf(stderr, "  with substitution%s\n", isSame ? "" : "  OTHER BITS");
}

// Whether all hashes are equal to `first`.
bool AreAll(const std::vector<std::uint64_t>& hashes, std::uint64_t first) {
  return std::all_of(hashes.begin(), hashes.end(),
                     [&](std::uint64_t hash) { return hash == first; });
}

// Prints medians, ratios to the first routine, and whether all results have its bits. The table
// goes to the standard error output, because the standard output may be JSON.
bool PrintTable(const Job& job) {
  const Record* first = job.records.empty() ? nullptr : &job.records[0];
  std::fprintf(stderr, "\n%s: %zu equations, %.1f million entries, %.2f Gflop, medians of %zu\n",
               job.system.title.c_str(), job.system.F.size(),
               static_cast<double>(job.system.K.SkylineSize) * 1e-6, job.operations / Giga,
               first == nullptr ? job.run.seconds.size() : first->factor.size());
  std::fprintf(stderr, "%-16s %10s %8s %8s %15s %10s %8s\n", "", "factor, s", "Gflop/s", "x first",
               "of the peak", "subst., s", "x first");
  bool areSame = true;
  for (const Record& record : job.records) {
    const bool isSame = AreAll(record.loadHashes, first->loadHashes[0]) &&
                        AreAll(record.factorHashes, first->factorHashes[0]);
    PrintRecord(record, *first, job.operations, isSame);
    areSame = areSame && isSame;
  }
  if (job.run.isChosen) {
    const std::vector<std::uint64_t>& hashes =
        first == nullptr ? job.run.loadHashes : first->loadHashes;
    const bool isSame = AreAll(job.run.loadHashes, hashes[0]);
    PrintRun(job.run, first, isSame);
    areSame = areSame && isSame;
  }
  std::fprintf(stderr, "\n");
  return areSame;
}

// Whether the option asks for output of a single run: each run of the library overwrites its file
// and completes its JSON text.
bool IsForOneRun(const std::string& option) {
  return option.rfind("--benchmark_out=", 0) == 0 || option == "--benchmark_format=json";
}

// Whether all routines gave the same bits in all repetitions.
bool RunJob(benchmark::BenchmarkReporter& reporter, Job& job) {
  const auto add = [&job](const std::string& name, auto& record, auto solve) {
    const auto run = [&job, &record, solve](benchmark::State& state) {
      if (job.system.F.empty()) MakeSystem(job);
      solve(job, state, record);
    };
    benchmark::RegisterBenchmark(name.c_str(), run)
        ->Iterations(1)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
  };
  for (Record& record : job.records) add(record.name, record, Solve);
  if (job.run.isChosen) add(job.run.name, job.run, SolveRun);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::ClearRegisteredBenchmarks();
  const bool isOnlyListed = job.system.F.empty();
  return isOnlyListed || PrintTable(job);
}

}  // namespace

// Arguments: those of the library. The exit status is 1 if bits differ.
int main(int count, char** arguments) {
  // Defaults. The caller's arguments follow and take precedence.
  char interleaving[] = "--benchmark_enable_random_interleaving=true";
  char repetitions[] = "--benchmark_repetitions=3";
  std::vector<char*> all{arguments[0], interleaving, repetitions};
  all.insert(all.end(), arguments + 1, arguments + count);
  const bool takesOneCase = std::any_of(all.begin(), all.end(), IsForOneRun);
  auto allCount = static_cast<int>(all.size());
  benchmark::Initialize(&allCount, all.data());
  if (benchmark::ReportUnrecognizedArguments(allCount, all.data())) return UsageError;

  std::vector<Job> jobs;
  for (const SkylineCase& source : SkylineCases) {
    Job job;
    job.source = &source;
    ListRoutines(job);
    if (!job.records.empty() || job.run.isChosen) jobs.push_back(job);
  }
  if (jobs.empty() || (takesOneCase && jobs.size() > 1)) {
    std::fprintf(stderr, jobs.empty()
                             ? "The filter leaves no case.\n"
                             : "A file or JSON takes one case: choose it by the filter.\n");
    return UsageError;
  }
  // One reporter for all cases: version 1.7.1 of the library deletes its own after the first run
  // and then uses it again.
  benchmark::BenchmarkReporter& reporter = *benchmark::CreateDefaultDisplayReporter();
  bool areSame = true;
  for (Job& job : jobs) {
    areSame = RunJob(reporter, job) && areSame;
    job.system = {};
  }
  return areSame ? 0 : 1;
}
