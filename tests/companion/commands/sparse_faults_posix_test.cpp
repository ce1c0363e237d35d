// kvx run with the sparse engine where memory or disk are too small, where it is interrupted or
// killed within the factorisation, and where two run at once.
// POSIX only: signals, limits of the shell, small file systems in memory.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <iterator>

#include "audit/displacement_file.h"
#include "commands/plate_runs_posix.h"
#include "model/read_input_file.h"
#include "sparse/sparse_factor.h"
#include "support/folder_bytes.h"
#include "support/read_bytes.h"
#include "support/run_program.h"
#include "support/temp_folder.h"
#include "support/words.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::test::ListFolder;
using korvex::test::ProgramRun;
using korvex::test::TempFolder;
using korvex::test::WriteFile;

const std::vector<std::string> NoNames;

const FolderBytes OldResults{{"Node_Dis.txt", "old"}};

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

void ExpectUntouched(const fs::path& folder) {
  EXPECT_EQ(ListDifferent(ReadFolder(folder), OldResults), NoNames);
  EXPECT_FALSE(fs::exists(folder / "displacements.bin"));
  EXPECT_FALSE(fs::exists(folder / "solution.json"));
}

// Folders: deck with a model and old results, factors for the factors.
struct KvxSparseFaults : testing::Test {
  TempFolder base;
  fs::path deck = base.Path() / "deck", factors = base.Path() / "factors";
  fs::path output = base.Path() / "output";
  std::string text = PlateText(40);
  const std::string outOfCore = "run deck --engine=sparse --threads=1 --out-of-core=factors";

  void SetUp() override {
    if (!HasSparseEngine()) GTEST_SKIP() << NoSparseEngine;
    fs::create_directory(factors);
  }
  void Fill(const fs::path& folder) const {
    fs::remove_all(folder);
    fs::create_directory(folder);
    WriteFile(folder / "fem_solving.txt", text);
    for (const auto& [name, bytes] : OldResults) WriteFile(folder / name, bytes);
  }
  ProgramRun Run(const std::string& command, const std::string& before = "") const {
    return korvex::test::RunProgram("/bin/sh", base.Path(), "",
                                    {"-c", before + "exec " KVX_PROGRAM " " + command});
  }
  std::vector<double> Displacements(const fs::path& folder) const {
    korvex::Model model;
    korvex::ReadInputText(text, model);
    std::vector<double> u;
    ReadDisplacementFile((folder / "displacements.bin").string(), IdentifyModelFile(text),
                         model.Tables.NPOIN, u);
    return u;
  }
  // The displacements are those: plates of this kind lose 6 of 16 digits, or fewer.
  void ExpectSolved(const fs::path& folder, const std::vector<double>& right) const {
    const std::vector<double> u = Displacements(folder);
    ASSERT_EQ(u.size(), right.size());
    double largest = 0.0, difference = 0.0;
    for (std::size_t i = 0; i < u.size(); ++i) {
      largest = std::max(largest, std::fabs(right[i]));
      difference = std::max(difference, std::fabs(u[i] - right[i]));
    }
    EXPECT_LE(difference, 1e-8 * largest);
  }
  void Solve(std::vector<double>& right) const {
    Fill(deck);
    const ProgramRun run = Run("run deck --engine=sparse");
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    right = Displacements(deck);
    ASSERT_FALSE(right.empty());
  }

  // Starts a run and waits until its factors have a file: until it factorises. 0: it did not.
  pid_t StartFactorising() const {
    Fill(deck);
    const pid_t child = StartKvx(base.Path(), output, outOfCore);
    for (int k = 0; k < 4000; ++k) {
      // By error codes: what the program makes and removes meanwhile is no failure.
      std::error_code error;
      fs::recursive_directory_iterator entry(factors, error);
      for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        if (entry->is_regular_file(error) && entry->path().filename() != "lock") return child;
      }
      Sleep(0.002);
    }
    kill(child, SIGKILL);
    AwaitKvx(child);
    return 0;
  }
};

// Linux alone tells it.
bool HasSeveralThreads(pid_t process) {
  std::error_code error;
  const fs::directory_iterator tasks("/proc/" + std::to_string(process) + "/task", error);
  return error || std::distance(tasks, {}) > 1;
}

// MUMPS looks at nothing while it factorises. The signal comes at its beginning; that a thread
// looks for it shows where BLAS has none. What it does is tested with calls that never end.
TEST_F(KvxSparseFaults, EndsWithinTheFactorisation) {
  text = PlateText(90);
  bool isWatched = false;
  for (const int signal : {SIGINT, SIGTERM, SIGINT}) {
    SCOPED_TRACE(signal);
    const pid_t child = StartFactorising();
    ASSERT_NE(child, 0) << ReadBytes(output);
    isWatched = isWatched || HasSeveralThreads(child);
    kill(child, signal);
    EXPECT_EQ(AwaitKvx(child), 130);
    EXPECT_EQ(ReadBytes(output), "kvx: interrupted.\n");
    EXPECT_EQ(ListFolder(factors), NoNames);
    ExpectUntouched(deck);
  }
  EXPECT_TRUE(isWatched);
}

TEST_F(KvxSparseFaults, ClearsAwayTheFactorsOfAKilledRun) {
  const pid_t child = StartFactorising();
  ASSERT_NE(child, 0) << ReadBytes(output);
  kill(child, SIGKILL);
  ASSERT_EQ(AwaitKvx(child), 128 + SIGKILL);
  EXPECT_EQ(ListFolder(factors), std::vector<std::string>{"kvx-factors-1"});
  const ProgramRun next = Run(outOfCore);
  EXPECT_EQ(next.exitStatus, 0) << next.err;
  EXPECT_EQ(ListFolder(factors), NoNames);
  EXPECT_FALSE(fs::exists(deck / "kvx-unfinished"));
}

TEST_F(KvxSparseFaults, GivesTwoRunsTheirOwnFactors) {
  std::vector<double> right;
  Solve(right);
  const fs::path second = base.Path() / "second";
  for (int k = 0; k < 2; ++k) {
    Fill(deck);
    Fill(second);
    const pid_t one = StartKvx(base.Path(), output, outOfCore);
    const pid_t other = StartKvx(base.Path(), base.Path() / "output2",
                                 "run second --engine=sparse --out-of-core=factors");
    EXPECT_EQ(AwaitKvx(one), 0) << ReadBytes(output);
    EXPECT_EQ(AwaitKvx(other), 0) << ReadBytes(base.Path() / "output2");
    ExpectSolved(deck, right);
    ExpectSolved(second, right);
    EXPECT_EQ(ListFolder(factors), NoNames);
  }
}

// An open file stays readable without a name; another cannot be made.
TEST_F(KvxSparseFaults, SolvesOrStopsWhereTheFolderForTheFactorsGoes) {
  std::vector<double> right;
  Solve(right);
  const pid_t child = StartFactorising();
  ASSERT_NE(child, 0) << ReadBytes(output);
  kill(child, SIGSTOP);
  fs::remove_all(factors);
  kill(child, SIGCONT);
  const int status = AwaitKvx(child);
  EXPECT_FALSE(fs::exists(factors));
  if (status == 0) return ExpectSolved(deck, right);
  EXPECT_EQ(status, 73);
  EXPECT_TRUE(Holds(ReadBytes(output), "The factors cannot be written")) << ReadBytes(output);
  ExpectUntouched(deck);
}

// Files may have 100 kB; the factors have some MB. The signal for larger ones is ignored, so that
// writing fails.
TEST_F(KvxSparseFaults, StopsWhereTheFactorsCannotBeWritten) {
  Fill(deck);
  const ProgramRun run = Run(outOfCore, "trap '' XFSZ; ulimit -f 200; ");
  EXPECT_EQ(run.exitStatus, 73);
  EXPECT_TRUE(Holds(run.err,
                    "kvx run: \"deck/fem_solving.txt\": The factors cannot be written to "
                    "or read from the folder for them: the disk is full"))
      << run.err;
  EXPECT_TRUE(Holds(run.err, "Give another folder (--out-of-core DIR).")) << run.err;
  EXPECT_EQ(ListFolder(factors), NoNames);
  ExpectUntouched(deck);
}

// A disk with less room than foreseen is refused before; its factors are not begun.
TEST_F(KvxSparseFaults, StopsWhereTheDiskForTheFactorsIsSmall) {
  Fill(deck);
  WriteFile(base.Path() / "inside",
            "mount -t tmpfs -o size=1m none factors || exit 125\n" KVX_PROGRAM " " + outOfCore +
                "\nstatus=$?\ntest -z \"$(ls factors)\" || exit 124\nexit $status\n");
  const ProgramRun run = korvex::test::RunProgram(
      "/bin/sh", base.Path(), "", {"-c", "exec unshare --mount --map-root-user sh inside"});
  if (run.exitStatus == 125 || run.exitStatus == 127 || run.err.rfind("unshare", 0) == 0) {
    GTEST_SKIP() << "no file system can be mounted: " << run.err;
  }
  EXPECT_EQ(run.exitStatus, 73);
  EXPECT_TRUE(Holds(run.err, "The factors do not fit out of core: its factors take ")) << run.err;
  EXPECT_TRUE(Holds(run.err, " on the disk, and there are 0 GB free.")) << run.err;
  ExpectUntouched(deck);
}

// An empty file stands in for the library.
TEST_F(KvxSparseFaults, TakesTheSkylineWhereTheLibraryIsMissing) {
  text = PlateText(100);  // the sparse engine is the faster one
  Fill(deck);
  fs::create_directory(base.Path() / "libraries");
  WriteFile(base.Path() / "libraries" / KVX_MUMPS_FILE, "");
  const std::string without = "export LD_LIBRARY_PATH=\"$PWD/libraries\"; ";
  const ProgramRun plan = Run("run deck --dry-run", without);
  EXPECT_EQ(plan.exitStatus, 0) << plan.err;
  EXPECT_TRUE(Holds(JoinWords(SplitWords(plan.out)),
                    "The skyline is the only engine: the sparse one cannot be loaded: "))
      << plan.out;
  const ProgramRun run = Run("run deck --engine=sparse", without);
  EXPECT_EQ(run.exitStatus, 65) << run.out;
  EXPECT_TRUE(Holds(run.err, "The sparse engine cannot be loaded: ")) << run.err;
  ExpectUntouched(deck);
}

// From addresses that do not hold the program's libraries to such that hold everything: each run
// solves the model, or ends with a message and a status. The shell's command `timeout` ends what
// would wait for ever, with the status 124.
TEST_F(KvxSparseFaults, SolvesOrStopsWithAnyMemory) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizer takes addresses of its own";
#endif
  text = PlateText(20);
  std::vector<double> right;
  Solve(right);
  int solved = 0, stopped = 0;
  for (const std::string options : {"", " --out-of-core=factors"}) {
    for (int megabytes = 10; megabytes < 800; megabytes += std::max(10, megabytes / 3)) {
      SCOPED_TRACE(options + ' ' + std::to_string(megabytes));
      Fill(deck);
      const ProgramRun run = korvex::test::RunProgram(
          "/bin/sh", base.Path(), "",
          {"-c", "ulimit -v " + std::to_string(1024 * megabytes) +
                     "; exec timeout 60 " KVX_PROGRAM " run deck --engine=sparse --threads=2" +
                     options});
      EXPECT_EQ(ListFolder(factors), NoNames);
      if (run.exitStatus == 0) {
        ++solved;
        ExpectSolved(deck, right);
        continue;
      }
      ++stopped;
      // 127: the system cannot even load the program or the command `timeout`
      EXPECT_TRUE(run.exitStatus == 65 || run.exitStatus == 127) << run.exitStatus;
      EXPECT_FALSE(run.err.empty());
      EXPECT_FALSE(Holds(run.err, "fault of kvx")) << run.err;
      ExpectUntouched(deck);
    }
  }
  EXPECT_GT(solved, 2);
  EXPECT_GT(stopped, 10);
}

}  // namespace
}  // namespace kvx::test
