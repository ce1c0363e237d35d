// kvx-mpi as its user meets it: on several ranks, with mpirun, beside kvx.
#include <signal.h>
#include <sys/types.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

#include "audit/displacement_file.h"
#include "model/read_input_file.h"
#include "run/file_names.h"
#include "support/read_bytes.h"
#include "support/run_program.h"
#include "support/shell_mesh.h"
#include "support/temp_folder.h"
#include "support/words.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::test::ListFolder;
using korvex::test::ModelText;
using korvex::test::ProgramRun;
using korvex::test::TempFolder;
using korvex::test::WriteFile;
using korvex::test::WriteModel;

using Json = nlohmann::json;
using Arguments = std::vector<std::string>;

// More ranks than cores, beside other work, also as root in a container.
void PrepareMpi() {
  for (const char* name : {"OMPI_ALLOW_RUN_AS_ROOT", "OMPI_ALLOW_RUN_AS_ROOT_CONFIRM",
                           "OMPI_MCA_rmaps_base_oversubscribe", "OMPI_MCA_mpi_yield_when_idle"}) {
    setenv(name, "1", 1);
  }
  setenv("OMPI_MCA_hwloc_base_binding_policy", "none", 1);
  setenv("OMPI_MCA_btl_vader_single_copy_mechanism", "none", 1);
}

bool Holds(const std::string& text, const std::string& part) {
  return JoinWords(SplitWords(text)).find(part) != std::string::npos;
}

// A folder "deck" with a model.
struct KvxMpi : testing::Test {
  TempFolder base;
  fs::path deck = base.Path() / "deck";

  void SetUp() override { PrepareMpi(); }

  void Put(const std::string& text) const {
    fs::create_directories(deck);
    WriteFile(deck / "fem_solving.txt", text);
  }
  void PutExample(const std::string& example) const {
    Put(ReadBytes(std::string(KORVEX_EXAMPLES "/") + example + "/fem_solving.txt"));
  }
  ProgramRun Mpi(int ranks, Arguments arguments) const {
    arguments.insert(arguments.begin(), {"-n", std::to_string(ranks), KVX_MPI_PROGRAM});
    return korvex::test::RunProgram(KVX_MPIRUN, base.Path(), "", arguments);
  }
  ProgramRun Alone(const Arguments& arguments) const {
    return korvex::test::RunProgram(KVX_MPI_PROGRAM, base.Path(), "", arguments);
  }
  ProgramRun Kvx(const Arguments& arguments) const {
    return korvex::test::RunProgram(KVX_PROGRAM, base.Path(), "", arguments);
  }
  std::vector<double> Displacements(const fs::path& folder) const {
    const std::string text = ReadBytes(folder / "fem_solving.txt");
    korvex::Model model;
    korvex::ReadInputText(text, model);
    std::vector<double> u;
    const auto reading = ReadDisplacementFile((folder / "displacements.bin").string(),
                                              IdentifyModelFile(text), model.Tables.NPOIN, u);
    EXPECT_EQ(reading.fit, DisplacementFit::Fits) << reading.reason;
    return u;
  }
};

// Of the largest displacement: what both models here may differ by, since they lose 7 of 16 digits
// at most (the first test looks at that more closely).
constexpr double Difference = 1e-9;

double LargestOf(const std::vector<double>& v) {
  double largest = 0.0;
  for (const double value : v) largest = std::max(largest, std::fabs(value));
  return largest;
}

double LargestDifference(const std::vector<double>& a, const std::vector<double>& b) {
  EXPECT_EQ(a.size(), b.size());
  double largest = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) largest = std::max(largest, std::fabs(a[i] - b[i]));
  return largest;
}

// The lines of the file, by what stands between blanks and commas.
std::vector<std::vector<std::string>> ReadRows(const fs::path& file) {
  std::vector<std::vector<std::string>> rows;
  std::string bytes = ReadBytes(file);
  std::replace(bytes.begin(), bytes.end(), ',', ' ');
  std::istringstream text(bytes);
  for (std::string line; std::getline(text, line);) rows.push_back(SplitWords(line));
  return rows;
}

// The numbers of a file in six digits. Two of the same six digits are at most one unit of the last
// one apart, where they lie on both sides of a rounding: 1e-5 of a number that begins with 1.
// Numbers that are sums of larger ones of the other sign are as close as the largest one of their
// column. Other words are the same.
void ExpectSixDigits(const std::vector<std::vector<std::string>>& rows,
                     const std::vector<std::vector<std::string>>& expected) {
  EXPECT_EQ(rows.size(), expected.size());
  std::vector<double> largest;
  for (const std::vector<std::string>& row : expected) {
    largest.resize(std::max(largest.size(), row.size()), 0.0);
    for (std::size_t c = 0; c < row.size(); ++c) {
      largest[c] = std::max(largest[c], std::fabs(std::atof(row[c].c_str())));
    }
  }
  for (std::size_t r = 0; r < std::min(rows.size(), expected.size()); ++r) {
    EXPECT_EQ(rows[r].size(), expected[r].size());
    for (std::size_t c = 0; c < std::min(rows[r].size(), expected[r].size()); ++c) {
      if (rows[r][c] == expected[r][c]) continue;
      char* end = nullptr;
      const double value = std::strtod(rows[r][c].c_str(), &end);
      EXPECT_EQ(*end, '\0') << rows[r][c];
      const double wanted = std::atof(expected[r][c].c_str());
      EXPECT_NEAR(value, wanted, 1e-5 * std::fabs(wanted) + 1e-8 * largest[c]) << "line " << r + 1;
    }
  }
}

constexpr std::array<const char*, 4> TextFiles{korvex::DisplacementFileName, korvex::StressFileName,
                                               korvex::AverageNodeStressFileName,
                                               korvex::AverageStressFileName};

// Each run has a backward error of a few roundings; times the condition, which solution.json has,
// that bounds the difference of two. The smallest condition of them all loses 4 digits, so that
// six digits are always there.
TEST_F(KvxMpi, AgreesWithKvxOnAnyNumberOfRanks) {
  const std::map<std::string, std::vector<int>> examples{
      {"lattice-tower", {4}},  // its detail models take time
      {"stiffened-panel", {1, 2, 4}},
      {"water-trough", {2, 4}}};
  for (const auto& [example, numbers] : examples) {
    PutExample(example);
    ASSERT_EQ(Kvx({"run", "deck", "--engine=sparse", "--threads=1"}).exitStatus, 0);
    const std::vector<double> expected = Displacements(deck);
    const Json solution = Json::parse(ReadBytes(deck / "solution.json"));
    const double bound = solution["condition"].get<double>() * 2e-15 * LargestOf(expected);
    EXPECT_LT(bound, 1e-8 * LargestOf(expected));
    std::map<std::string, std::vector<std::vector<std::string>>> texts;
    for (const char* name : TextFiles) texts[name] = ReadRows(deck / name);
    for (const int ranks : numbers) {
      SCOPED_TRACE(example + ", ranks: " + std::to_string(ranks));
      const ProgramRun run = Mpi(ranks, {"run", "deck"});
      EXPECT_EQ(run.exitStatus, 0) << run.err;
      const std::vector<double> u = Displacements(deck);
      EXPECT_LE(LargestDifference(u, expected), bound);
      for (const char* name : TextFiles) ExpectSixDigits(ReadRows(deck / name), texts[name]);
      if (ranks == 1) {
        EXPECT_EQ(u, expected);
      } else {
        EXPECT_TRUE(Holds(run.out, "sparse, " + std::to_string(ranks) + " ranks, 1 thread"));
      }
    }
    fs::remove_all(deck);
  }
}

// Each rank keeps its part of the factors in a folder of its own.
TEST_F(KvxMpi, SolvesOutOfCore) {
  PutExample("stiffened-panel");
  ASSERT_EQ(Mpi(2, {"run", "deck"}).exitStatus, 0);
  const std::vector<double> expected = Displacements(deck);
  fs::create_directory(base.Path() / "factors");
  const ProgramRun run = Mpi(2, {"run", "deck", "--out-of-core", "factors"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_TRUE(Holds(run.out, "out of core")) << run.out;
  EXPECT_LE(LargestDifference(Displacements(deck), expected), Difference * LargestOf(expected));
  EXPECT_EQ(ListFolder(base.Path() / "factors"), Arguments());
}

// The limit is that of each rank.
TEST_F(KvxMpi, KeepsToTheMemoryThatItMayTake) {
  PutExample("stiffened-panel");
  const ProgramRun run = Mpi(2, {"run", "deck", "--memory", "0.001"});
  EXPECT_EQ(run.exitStatus, 65);
  EXPECT_TRUE(Holds(run.err, "and it may take 0.001 GB.")) << run.err;
  EXPECT_TRUE(Holds(run.err, "Start more ranks, on more machines.")) << run.err;
  EXPECT_FALSE(Holds(run.err, "kvx renumber")) << run.err;
  EXPECT_EQ(ListFolder(deck), Arguments{"fem_solving.txt"});
}

// The elements of a rank are those that touch its rows: all of them together once, and those
// between the rows of two ranks twice. The entries are those of one process.
TEST_F(KvxMpi, TellsWhatEachRankDoes) {
  PutExample("stiffened-panel");
  const ProgramRun dry = Mpi(3, {"run", "deck", "--dry-run", "--json"});
  EXPECT_EQ(dry.exitStatus, 0) << dry.err;
  EXPECT_EQ(ListFolder(deck), Arguments{"fem_solving.txt"});
  const ProgramRun run = Mpi(3, {"run", "deck", "--json"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  const Json foreseen = Json::parse(dry.out)["engine"]["prediction"]["ranks"];
  const Json found = Json::parse(run.out)["engine"]["solution"]["ranks"];
  ASSERT_EQ(foreseen.size(), 3U);
  ASSERT_EQ(found.size(), 3U);
  EXPECT_EQ(Json::parse(ReadBytes(deck / "solution.json"))["ranks"], found);
  std::uint64_t elements = 0, entries = 0;
  double flops = 0.0;
  for (std::size_t rank = 0; rank < 3; ++rank) {
    EXPECT_EQ(foreseen[rank]["elements"], found[rank]["elements"]);
    EXPECT_EQ(foreseen[rank]["entries"], found[rank]["entries"]);
    EXPECT_GT(found[rank]["bytes"].get<double>(), 0.0);
    elements += found[rank]["elements"].get<std::uint64_t>();
    entries += found[rank]["entries"].get<std::uint64_t>();
    flops += found[rank]["flops"].get<double>();
  }
  constexpr std::uint64_t Elements = 1236;  // of the example: 1008 shells and 228 beams
  EXPECT_GT(elements, Elements);
  EXPECT_LT(elements, 2 * Elements);
  // Kept for kvx audit.
  EXPECT_TRUE(Holds(Kvx({"audit", "deck"}).out, "sparse, 3 ranks, 1 thread"));
  // One process does the same work, in fronts of about the same size.
  ASSERT_EQ(Kvx({"run", "deck", "--engine=sparse"}).exitStatus, 0);
  const Json alone = Json::parse(ReadBytes(deck / "solution.json"));
  EXPECT_FALSE(alone.contains("ranks"));
  EXPECT_NEAR(flops, alone["flops"].get<double>(), 0.1 * flops);
}

TEST_F(KvxMpi, SolvesLoadCases) {
  fs::create_directories(deck);
  for (const char* name : {"fem_solving.txt", "cases.toml", "pallet.txt"}) {
    fs::copy(std::string(KORVEX_EXAMPLES "/stiffened-panel/") + name, deck / name);
  }
  ASSERT_EQ(Kvx({"cases", "deck/cases.toml", "-o", "one", "--engine=sparse"}).exitStatus, 0);
  const ProgramRun run = Mpi(2, {"cases", "deck/cases.toml", "-o", "two"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_TRUE(Holds(run.out, "sparse, 2 ranks, 1 thread")) << run.out;
  std::size_t cases = 0;
  for (const auto& entry : fs::directory_iterator(base.Path() / "one")) {
    if (!fs::exists(entry.path() / "displacements.bin")) continue;
    const std::vector<double> expected = Displacements(entry.path());
    const std::vector<double> u = Displacements(base.Path() / "two" / entry.path().filename());
    EXPECT_LE(LargestDifference(u, expected), Difference * LargestOf(expected)) << entry.path();
    ++cases;
  }
  EXPECT_GT(cases, 2U);
}

// Twenty ranks for 18 equations.
TEST_F(KvxMpi, SolvesWithMoreRanksThanEquations) {
  ModelText text;
  text.materials = {{2.1e5, 0.3, 0.0}};
  text.cSections = {{50.0, 5.0}};
  for (int i = 0; i < 4; ++i) text.nodes.push_back({1000.0 * i, 0.0, 0.0});
  for (int i = 0; i < 3; ++i) {
    ModelText::Beam beam;
    beam.node1 = i;
    beam.node2 = i + 1;
    beam.BeamSecType = korvex::BeamSecTypeC;
    text.beams.push_back(beam);
  }
  text.restraints.push_back({0, {1, 1, 1, 1, 1, 1}});
  text.forces.push_back({3, korvex::test::SingleLoad(2, 1.0)});
  Put(WriteModel(text));
  ASSERT_EQ(Kvx({"run", "deck", "--engine=sparse"}).exitStatus, 0);
  const std::vector<double> expected = Displacements(deck);
  const ProgramRun run = Mpi(20, {"run", "deck"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_LE(LargestDifference(Displacements(deck), expected), Difference * LargestOf(expected));
}

// The first line of standard error; mpirun adds words of its own behind it.
TEST_F(KvxMpi, SaysAsKvxWhatItRefuses) {
  PutExample("lattice-tower");
  std::string text = ReadBytes(deck / "fem_solving.txt");
  const std::string held = "0: 1 1 1 1 1 1\n1: 1 1 1 1 1 1\n2: 1 1 1 1 1 1\n3: 1 1 1 1 1 1\n";
  const std::size_t at = text.find("NRN=4\n" + held);
  ASSERT_NE(at, std::string::npos);
  text.replace(at, 6 + held.size(), "NRN=1\n0: 1 1 1 1 0 0\n");
  Put(text);
  const Arguments force{"run", "deck", "--force", "--engine", "sparse"};
  const ProgramRun alone = Kvx(force);
  EXPECT_EQ(alone.exitStatus, 65);
  EXPECT_TRUE(Holds(alone.err, "The structure can move: node")) << alone.err;
  const ProgramRun moving = Mpi(3, force);
  EXPECT_EQ(moving.exitStatus, 65);
  std::string expected = alone.err;
  expected.insert(std::string("kvx").size(), "-mpi");  // "kvx-mpi run: ..."
  EXPECT_EQ(moving.err.substr(0, expected.size()), expected);
  EXPECT_EQ(moving.err.find("MPI_ABORT"), std::string::npos) << moving.err;

  struct Mistake {
    Arguments arguments;
    int status;
    std::string complaint;
  };
  for (const Mistake& mistake : std::vector<Mistake>{
           {{"run", "deck", "--engine", "skyline"},
            64,
            "kvx-mpi run: kvx-mpi has the sparse engine"},
           {{"audit", "deck"}, 64, "kvx-mpi: it has no command \"audit\". kvx-mpi run and"},
           {{"run", "nothing"}, 66, "kvx-mpi run: there is no folder or file \"nothing\"."},
           {{"run", "deck", "--force", "--out-of-core", "none"},
            73,
            "kvx-mpi run: the folder \""}}) {
    const ProgramRun run = Alone(mistake.arguments);  // mpirun takes seconds to end others
    EXPECT_EQ(run.exitStatus, mistake.status) << mistake.complaint;
    EXPECT_EQ(run.err.rfind(mistake.complaint, 0), 0U) << run.err;
  }
}

TEST_F(KvxMpi, HasAHelpOfItsOwn) {
  for (const char* word : {"help", "--help"}) {
    const ProgramRun run = Alone({word});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_TRUE(Holds(run.out, "mpirun -n N kvx-mpi run [DIR...]")) << run.out;
    EXPECT_FALSE(Holds(run.out, "audit")) << run.out;
  }
  EXPECT_TRUE(Holds(Alone({"run", "--help"}).out, "--out-of-core"));
}

TEST_F(KvxMpi, StartsWithoutMpirun) {
  PutExample("stiffened-panel");
  const ProgramRun run = Alone({"run", "deck"});
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_TRUE(Holds(run.out, "Engine: sparse, 1 thread.")) << run.out;
}

// A clamped plate, large enough to be at work for a while.
std::string WritePlate(int rows = 60) {
  ModelText text = korvex::test::BuildGrid(rows, rows, korvex::test::Cells::Quads,
                                           [](double s, double t) -> korvex::test::Point3 {
                                             return {1000.0 * s, 1000.0 * t, 0.0};
                                           });
  text.materials = {{2.1e5, 0.3, 0.0}};
  text.thicknesses = {10.0};
  for (int i = 0; i <= rows; ++i) text.restraints.push_back({i, {1, 1, 1, 1, 1, 1}});
  text.forces.push_back({(rows + 1) * rows, korvex::test::SingleLoad(2, 1.0)});
  return WriteModel(text);
}

void ExpectNoResults(const KvxMpi& test) {
  for (const char* name : {"displacements.bin", "solution.json", "Node_Dis.txt"}) {
    EXPECT_FALSE(fs::exists(test.deck / name)) << name;
  }
}

// Some 500 MB of addresses hold the program and MPI, and not the work space of BLAS, which tries
// for ever where it finds none. Where another machine's libraries take less, it solves.
TEST_F(KvxMpi, EndsWhereARankHasLittleMemory) {
  PutExample("stiffened-panel");
  ASSERT_EQ(Mpi(2, {"run", "deck"}).exitStatus, 0);
  const std::vector<double> expected = Displacements(deck);
  fs::remove_all(deck);
  PutExample("stiffened-panel");
  const ProgramRun run = korvex::test::RunProgram(
      KVX_MPIRUN, base.Path(), "",
      {"-n", "1", KVX_MPI_PROGRAM, "run", "deck", ":", "-n", "1", "/bin/sh", "-c",
       "ulimit -v 500000; exec " KVX_MPI_PROGRAM " run deck"});
  if (run.exitStatus == 0) {
    EXPECT_LE(LargestDifference(Displacements(deck), expected), Difference * LargestOf(expected));
    return;
  }
  EXPECT_EQ(run.exitStatus, 65) << run.err;
  EXPECT_TRUE(Holds(run.err, "Rank 1 on ")) << run.err;
  EXPECT_TRUE(Holds(run.err, "the work space of the sparse engine")) << run.err;
  ExpectNoResults(*this);
}

// The files of the second rank may have 200 blocks of 512 bytes, the first one's what they like.
// The signal for larger ones is ignored, so that writing fails.
TEST_F(KvxMpi, EndsWhereTheDiskOfOneRankIsFull) {
  Put(WritePlate());
  const fs::path factors = base.Path() / "factors";
  fs::create_directory(factors);
  WriteFile(base.Path() / "second", "trap '' XFSZ\nulimit -f 200\nexec " KVX_MPI_PROGRAM
                                    " run deck --out-of-core factors\n");
  const ProgramRun full =
      korvex::test::RunProgram(KVX_MPIRUN, base.Path(), "",
                               {"-n", "1", KVX_MPI_PROGRAM, "run", "deck", "--out-of-core",
                                "factors", ":", "-n", "1", "/bin/sh", "second"});
  EXPECT_EQ(full.exitStatus, 73) << full.err;
  EXPECT_TRUE(Holds(full.err,
                    "\"deck/fem_solving.txt\": Rank 1: The factors cannot be written to or "
                    "read from the folder for them: the disk is full"))
      << full.err;
  EXPECT_TRUE(Holds(full.err, "Give another folder (--out-of-core DIR).")) << full.err;
  ExpectNoResults(*this);
  EXPECT_FALSE(fs::exists(deck / "kvx-unfinished"));
  EXPECT_TRUE(ListFolder(factors).empty());
}

// The process of a rank whose current folder is this one or below it; 0: there is none.
pid_t FindRank(int rank, const fs::path& folder) {
  const std::string wanted = "OMPI_COMM_WORLD_RANK=" + std::to_string(rank);
  std::error_code error;
  for (const auto& entry : fs::directory_iterator("/proc", error)) {
    const std::string name = entry.path().filename().string();
    if (name.find_first_not_of("0123456789") != std::string::npos) continue;
    const fs::path here = fs::read_symlink(entry.path() / "cwd", error);
    if (error || here.string().rfind(folder.string(), 0) != 0) continue;
    const fs::path program = fs::read_symlink(entry.path() / "exe", error);
    if (error || program.filename() != fs::path(KVX_MPI_PROGRAM).filename()) continue;
    const std::string environment = ReadBytes(entry.path() / "environ");
    if (('\0' + environment).find('\0' + wanted + '\0') == std::string::npos) continue;
    return static_cast<pid_t>(std::atoi(name.c_str()));
  }
  return 0;
}

// The process that has started it.
pid_t FindParent(pid_t process) {
  const std::string status = ReadBytes(fs::path("/proc") / std::to_string(process) / "status");
  const std::size_t at = status.find("\nPPid:");
  return at == std::string::npos ? 0 : static_cast<pid_t>(std::atoi(status.c_str() + at + 6));
}

// A run of two ranks with factors out of core. The last rank makes its folder for them last; then
// the signal comes, to that rank or to mpirun.
constexpr int Mpirun = -1;
ProgramRun RunAndSignal(const KvxMpi& test, int rank, int signal) {
  const fs::path factors = test.base.Path() / "factors";
  fs::create_directory(factors);
  ProgramRun run;
  std::thread mpi([&] { run = test.Mpi(2, {"run", "deck", "--out-of-core", "factors"}); });
  using Clock = std::chrono::steady_clock;
  const Clock::time_point end = Clock::now() + std::chrono::seconds(60);
  pid_t process = 0;
  const int sought = std::max(rank, 0);
  while (Clock::now() < end && (process = FindRank(sought, test.base.Path())) == 0) usleep(1000);
  if (rank == Mpirun) process = FindParent(process);
  while (Clock::now() < end && !fs::exists(factors / "kvx-factors-2")) usleep(200);
  if (process != 0) kill(process, signal);
  mpi.join();
  return run;
}

// And it removes what a run before has left.
void ExpectThatTheNextRunSolves(const KvxMpi& test) {
  const ProgramRun next = test.Mpi(2, {"run", "deck", "--out-of-core", "factors"});
  EXPECT_EQ(next.exitStatus, 0) << next.err;
  EXPECT_TRUE(ListFolder(test.base.Path() / "factors").empty());
  EXPECT_FALSE(fs::exists(test.deck / "kvx-unfinished"));
  EXPECT_TRUE(fs::exists(test.deck / "displacements.bin"));
}

TEST_F(KvxMpi, LeavesNoHalfFilesWhereARankIsKilled) {
  Put(WritePlate());
  const ProgramRun run = RunAndSignal(*this, 1, SIGKILL);
  EXPECT_EQ(run.exitStatus, 128 + SIGKILL) << run.out << run.err;
  ExpectNoResults(*this);
  ExpectThatTheNextRunSolves(*this);
}

// The status is that of mpirun, which takes a second to pass the signal on: this plate takes
// longer. Another second later it kills the ranks.
TEST_F(KvxMpi, LeavesNoFilesWhereMpirunIsInterrupted) {
  for (const int signal : {SIGINT, SIGTERM}) {
    fs::remove_all(deck);
    Put(WritePlate(200));
    const ProgramRun run = RunAndSignal(*this, Mpirun, signal);
    EXPECT_NE(run.exitStatus, 0) << run.out << run.err;
    ExpectNoResults(*this);
    EXPECT_FALSE(fs::exists(deck / "kvx-unfinished"));
    EXPECT_TRUE(ListFolder(base.Path() / "factors").empty());
    EXPECT_EQ(FindRank(1, base.Path()), 0);
  }
  Put(WritePlate());
  ExpectThatTheNextRunSolves(*this);
}

TEST_F(KvxMpi, EndsAllRanksWhereTheFirstIsInterrupted) {
  Put(WritePlate());
  const ProgramRun run = RunAndSignal(*this, 0, SIGINT);
  EXPECT_EQ(run.exitStatus, 130) << run.out << run.err;
  EXPECT_TRUE(Holds(run.err, "interrupted.")) << run.err;
  ExpectNoResults(*this);
  EXPECT_FALSE(fs::exists(deck / "kvx-unfinished"));
  EXPECT_EQ(FindRank(1, base.Path()), 0);
  EXPECT_TRUE(ListFolder(base.Path() / "factors").empty());
  ExpectThatTheNextRunSolves(*this);
}

}  // namespace
}  // namespace kvx::test
