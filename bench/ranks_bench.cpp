// The work and the memory of each rank of `kvx-mpi run` beside `kvx run`, on the same model, and
// how far the displacements differ: a table, a line for each number of ranks.
//
//   ranks_bench KVX KVX_MPI FOLDER [MODEL [SIZE [RANKS ...]]]
//
// KVX, KVX_MPI: the programs. FOLDER: for the model, results and factors; it is made. MODEL: as of
// write_model; grillage. SIZE: thousands of equations, 250. RANKS: 2 and 4. The last line has the
// smallest number of ranks out of core. Times are not told: ranks of one machine share its cores.
// `mpirun` is looked for in PATH. POSIX systems.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "base/gigabyte.h"
#include "child_process.h"
#include "named_models.h"
#include "run/file_names.h"

namespace {

namespace fs = std::filesystem;
using korvex::bench::ProcessUse;
using Json = nlohmann::json;

// Displacements of the last run, as their file keeps them: doubles behind a head.
std::vector<double> ReadDisplacements(const fs::path& folder, std::size_t count) {
  std::ifstream file(folder / "displacements.bin", std::ios::binary);
  const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), {});
  std::vector<double> values(count);
  if (bytes.size() < count * sizeof(double)) return {};
  std::memcpy(values.data(), bytes.data() + bytes.size() - count * sizeof(double),
              count * sizeof(double));
  return values;
}

// The largest difference over the largest displacement.
double Compare(const std::vector<double>& a, const std::vector<double>& b) {
  double difference = 0.0, largest = 0.0;
  for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
    difference = std::max(difference, std::fabs(a[i] - b[i]));
    largest = std::max(largest, std::fabs(b[i]));
  }
  return difference / largest;
}

// "27203 to 28000", of one value "27203".
std::string Range(const Json& ranks, const char* key, double unit, const char* format) {
  double least = 1e300, most = 0.0;
  for (const Json& rank : ranks) {
    const double value = rank.value(key, 0.0) / unit;
    least = std::min(least, value);
    most = std::max(most, value);
  }
  constexpr std::size_t Size = 40;
  char first[Size], last[Size];
  std::snprintf(first, Size, format, least);
  std::snprintf(last, Size, format, most);
  return std::strcmp(first, last) == 0 ? first : std::string(first) + " to " + last;
}

// elements: of the model.
void PrintRow(const std::string& name, std::size_t elements, const Json& solution,
              const ProcessUse& use, double difference) {
  // kvx has no list of ranks: it is the only one. It does not tell its entries.
  const bool isAlone = !solution.contains("ranks");
  const Json ranks = isAlone ? Json::array({solution}) : solution["ranks"];
  std::printf(
      "| %s | %s | %s | %s | %s | %.2f | %.1e |\n", name.c_str(),
      isAlone ? std::to_string(elements).c_str() : Range(ranks, "elements", 1.0, "%.0f").c_str(),
      isAlone ? "" : Range(ranks, "entries", 1.0, "%.0f").c_str(),
      Range(ranks, "flops", 1e9, "%.2g").c_str(),
      Range(ranks, "bytes", korvex::BytesPerGigabyte, "%.2f").c_str(),
      use.bytes / korvex::BytesPerGigabyte, difference);
  std::fflush(stdout);
}

struct Work {
  std::string kvx, kvxMpi;
  fs::path folder;  // of the model
  fs::path factors;
  std::size_t equations = 0, elements = 0;
  std::vector<double> displacements;  // of kvx
};

// ranks: 0: kvx alone.
void Run(int ranks, bool isOutOfCore, Work& work) {
  std::vector<std::string> words{work.kvx};
  if (ranks > 0) {
    words = {"mpirun", "--oversubscribe",     "--mca",    "mpi_yield_when_idle", "1",
             "-n",     std::to_string(ranks), work.kvxMpi};
  }
  words.insert(words.end(), {"run", work.folder.string(), "--engine", "sparse", "--threads", "1"});
  if (isOutOfCore) words.insert(words.end(), {"--out-of-core", work.factors.string()});
  const fs::path said = work.factors / "said.txt";
  const ProcessUse use = korvex::bench::RunProcess(words, said.string());
  std::ifstream file(work.folder / "solution.json");
  const Json solution = Json::parse(file, nullptr, false);
  if (!use.isFine || !solution.is_object()) {
    std::fprintf(stderr, "%s failed with status %d; %s has what it says.\n", words[0].c_str(),
                 use.status, said.string().c_str());
    std::exit(EXIT_FAILURE);
  }
  const std::vector<double> u = ReadDisplacements(work.folder, work.equations);
  if (work.displacements.empty()) work.displacements = u;
  PrintRow((ranks > 0 ? std::to_string(ranks) : std::string("1 (`kvx`)")) +
               (isOutOfCore ? ", out of core" : ""),
           work.elements, solution, use, Compare(u, work.displacements));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fputs("usage: ranks_bench KVX KVX_MPI FOLDER [MODEL [SIZE [RANKS ...]]]\n", stderr);
    return EXIT_FAILURE;
  }
  Work work;
  work.kvx = fs::absolute(argv[1]).string();
  work.kvxMpi = fs::absolute(argv[2]).string();
  work.folder = fs::absolute(argv[3]) / "model";
  work.factors = fs::absolute(argv[3]) / "factors";
  fs::create_directories(work.folder);
  fs::create_directories(work.factors);
  const std::string name = argc > 4 ? argv[4] : "grillage";
  korvex::ModelTables tables;
  if (!korvex::bench::MakeNamedModel(name, 1000.0 * (argc > 5 ? std::atof(argv[5]) : 250.0),
                                     tables) ||
      !korvex::bench::WriteModelFile(tables, (work.folder / korvex::ModelFileName).string())) {
    std::fputs("The model cannot be made.\n", stderr);
    return EXIT_FAILURE;
  }
  work.equations = 6 * tables.Nodes.size();
  std::vector<int> counts;
  for (int k = 6; k < argc; ++k) counts.push_back(std::max(std::atoi(argv[k]), 1));
  if (counts.empty()) counts = {2, 4};
  // Containers are often run by root, whom mpirun refuses.
  setenv("OMPI_ALLOW_RUN_AS_ROOT", "1", 1);
  setenv("OMPI_ALLOW_RUN_AS_ROOT_CONFIRM", "1", 1);
  const std::size_t shells = tables.Shell4Properties.size() + tables.Shell3Properties.size();
  const std::size_t beams = tables.BeamProperties.size();
  work.elements = shells + beams;
  std::printf("%s of %zu equations, %zu shells, %zu beams\n\n", name.c_str(), work.equations,
              shells, beams);
  std::printf(
      "| ranks | elements | entries | 1e9 operations | GB of MUMPS | GB of the process | "
      "difference |\n|---|---|---|---|---|---|---|\n");
  Run(0, false, work);
  for (const int ranks : counts) Run(ranks, false, work);
  Run(*std::min_element(counts.begin(), counts.end()), true, work);
  return EXIT_SUCCESS;
}
