// kvx run where it is interrupted or killed, where two run at once, and where it cannot write; kvx
// view and kvx export in the same places.
// POSIX only: signals, users without permissions, small file systems in memory.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "commands/plate_runs_posix.h"
#include "commands/terminal.h"
#include "sparse/sparse_factor.h"
#include "support/folder_bytes.h"
#include "support/good_models.h"
#include "support/one_core_posix.h"
#include "support/read_bytes.h"
#include "support/repeats.h"
#include "support/run_program.h"
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
using std::chrono::steady_clock;

const std::vector<std::string> NoNames;

// Old results of korvex: nothing says that they are stale.
const FolderBytes OldResults{
    {"structure.dxf", "old"}, {"Node_Dis.txt", "old"}, {"Shell element node stress.txt", "old"}};

struct KvxRunPosix : testing::Test {
  TempFolder base;
  fs::path folder = base.Path() / "deck";
  fs::path output = base.Path() / "output";
  std::string text = PlateText(40);
  FolderBytes whole;
  double seconds = 0.0;  // of a whole run

  void Fill() const {
    fs::remove_all(folder);
    fs::remove(output);
    fs::create_directory(folder);
    WriteFile(folder / "fem_solving.txt", text);
    for (const auto& [name, bytes] : OldResults) WriteFile(folder / name, bytes);
  }
  void RunWhole() {
    Fill();
    const steady_clock::time_point begin = steady_clock::now();
    ASSERT_EQ(AwaitKvx(StartKvx(folder, output)), 0) << ReadBytes(output);
    seconds = std::chrono::duration<double>(steady_clock::now() - begin).count();
    whole = ReadFolder(folder);
    ASSERT_EQ(ListDifferent(whole, RunSolver(text)), NoNames);
  }

  // Runs the command and sends it a signal after this share of `seconds`. Returns its status. Where
  // the signal came too late, `seconds` is mended: a busy machine may have measured too long a
  // time.
  int RunAndSignal(const std::string& command, int signal, double share) {
    const steady_clock::time_point begin = steady_clock::now();
    const pid_t child = StartKvx(folder, output, command);
    Sleep(seconds * share);
    kill(child, signal);
    const int status = AwaitKvx(child);
    if (status == 0) {
      const std::chrono::duration<double> time = steady_clock::now() - begin;
      seconds = std::min(seconds, time.count());
    }
    return status;
  }

  // Interrupts a command that makes one file, where an old one is, at many moments. The old file is
  // whole, or the new one is, and nothing else is left. before: the folder with the old file.
  void ExpectTheOldOrTheNewFile(const std::string& command, const std::string& name,
                                const FolderBytes& before) {
    const steady_clock::time_point begin = steady_clock::now();
    ASSERT_EQ(AwaitKvx(StartKvx(folder, output, command)), 0) << ReadBytes(output);
    seconds = std::chrono::duration<double>(steady_clock::now() - begin).count();
    whole = ReadFolder(folder);
    EXPECT_EQ(ListDifferent(whole, before), std::vector<std::string>{name});
    constexpr int Times = 12;
    int interrupted = 0;
    for (int k = 0; k < Times; ++k) {
      SCOPED_TRACE(k);
      WriteFile(folder / name, before.at(name));
      const int status = RunAndSignal(command, SIGINT, 1.0 * k / Times);
      if (ReadBytes(output) == "kvx: interrupted.\n") {
        ++interrupted;
        EXPECT_EQ(status, 130);
      }
      // By default the signal ends a program that has not yet begun to look for it.
      EXPECT_EQ(ListDifferent(ReadFolder(folder), status == 0 ? whole : before), NoNames);
    }
    EXPECT_GT(interrupted, Times / 4);
  }
};

// At any moment: the old files are whole, or the new ones are, and nothing else is left.
TEST_F(KvxRunPosix, LeavesOldOrNewFilesWhereItIsInterrupted) {
  RunWhole();
  constexpr int Times = 16;
  int interrupted = 0;
  for (int k = 0; k < Times; ++k) {
    Fill();
    const int signal = k % 2 == 0 ? SIGINT : SIGTERM;
    const int status = RunAndSignal("run", signal, 1.0 * k / Times);
    SCOPED_TRACE(k);
    if (status == 0) {
      EXPECT_EQ(ListDifferent(ReadFolder(folder), whole), NoNames);
      EXPECT_TRUE(fs::exists(folder / "displacements.bin"));
      continue;
    }
    if (!ReadBytes(output).empty()) {
      ++interrupted;
      EXPECT_EQ(status, 130);
      EXPECT_EQ(ReadBytes(output), "kvx: interrupted.\n");
    } else {
      EXPECT_EQ(status, 128 + signal);  // it had not yet begun to look for signals
    }
    const bool isNew = fs::exists(folder / "displacements.bin");
    EXPECT_EQ(ListDifferent(ReadFolder(folder), isNew ? whole : OldResults), NoNames);
  }
  EXPECT_GT(interrupted, Times / 4);
}

// The sparse engine, with its factors in a file: none of it is left, at whatever moment it ends.
TEST_F(KvxRunPosix, LeavesNoFactorsWhereItIsInterrupted) {
  const std::string command = "run --engine=sparse --out-of-core=../factors";
  const fs::path factors = base.Path() / "factors";
  fs::create_directory(factors);
  Fill();
  const steady_clock::time_point begin = steady_clock::now();
  const int status = AwaitKvx(StartKvx(folder, output, command));
  if (status == 65) GTEST_SKIP() << ReadBytes(output);
  ASSERT_EQ(status, 0) << ReadBytes(output);
  seconds = std::chrono::duration<double>(steady_clock::now() - begin).count();
  EXPECT_EQ(ListFolder(factors), NoNames);
  constexpr int Times = 12;
  int interrupted = 0;
  for (int k = 0; k < Times; ++k) {
    SCOPED_TRACE(k);
    Fill();
    interrupted += RunAndSignal(command, SIGINT, 1.0 * k / Times) == 130 ? 1 : 0;
    EXPECT_EQ(ListFolder(factors), NoNames);
    if (!fs::exists(folder / "displacements.bin")) {
      EXPECT_EQ(ListDifferent(ReadFolder(folder), OldResults), NoNames);
      EXPECT_FALSE(fs::exists(folder / "solution.json"));
    }
  }
  EXPECT_GT(interrupted, Times / 4);
}

// Killed, it cannot clear away; the next run does, and is not held up.
TEST_F(KvxRunPosix, ClearsAwayWhatAKilledRunHasLeft) {
  RunWhole();
  constexpr int Times = 8;
  for (int k = 0; k < Times; ++k) {
    Fill();
    const pid_t child = StartKvx(folder, output);
    Sleep(seconds * (k + 0.5) / Times);
    kill(child, SIGKILL);
    SCOPED_TRACE(k);
    if (AwaitKvx(child) != 0) {
      FolderBytes left = ReadFolder(folder);
      left.erase("kvx-unfinished");
      const bool isNew = fs::exists(folder / "displacements.bin");
      EXPECT_EQ(ListDifferent(left, isNew ? whole : OldResults), NoNames);
    }
    EXPECT_EQ(AwaitKvx(StartKvx(folder, output)), 0) << ReadBytes(output);
    EXPECT_EQ(ListDifferent(ReadFolder(folder), whole), NoNames);
  }
}

// Whether a process has the lock. The file alone says little: it is there before it is locked.
bool IsHeld(const fs::path& lock) {
  const int descriptor = open(lock.c_str(), O_RDWR | O_CLOEXEC);
  if (descriptor < 0) return false;
  const bool isHeld = flock(descriptor, LOCK_EX | LOCK_NB) != 0;
  close(descriptor);
  return isHeld;
}

TEST_F(KvxRunPosix, DoesNotMixWithAnotherRun) {
  RunWhole();
  const fs::path lock = folder / "kvx-unfinished" / "lock";
  pid_t first = 0;
  // On a busy machine it may have ended before it is stopped.
  for (int attempt = 0; attempt < 20 && !IsHeld(lock); ++attempt) {
    if (first != 0) {
      kill(first, SIGCONT);
      AwaitKvx(first);
    }
    Fill();
    first = StartKvx(folder, output);
    for (int k = 0; k < 1000 && !fs::exists(lock); ++k) Sleep(0.002);
    kill(first, SIGSTOP);
    Sleep(0.01);  // until it has stopped
  }
  ASSERT_TRUE(IsHeld(lock));
  const ProgramRun second = korvex::test::RunProgram(KVX_PROGRAM, folder, "", {"run"});
  kill(first, SIGCONT);
  EXPECT_EQ(second.exitStatus, 73);
  EXPECT_EQ(second.err,
            "kvx run: \"fem_solving.txt\": The folder cannot be written: another run is at work "
            "there; wait for its end, or solve a copy of the folder.\n");
  EXPECT_EQ(AwaitKvx(first), 0) << ReadBytes(output);
  EXPECT_EQ(ListDifferent(ReadFolder(folder), whole), NoNames);
}

// Runs a line of the shell as a user without write permission. Root may write everything: if the
// test runs as root, the program runs as another user. Exit status 126: it cannot.
ProgramRun RunForbidden(const fs::path& folder, const std::string& command = "run") {
  std::string become;
  if (geteuid() == 0) become = "setpriv --reuid 65534 --regid 65534 --clear-groups -- ";
  return korvex::test::RunProgram("/bin/sh", folder, "",
                                  {"-c", become + "test -x " KVX_PROGRAM " || exit 126\nexec " +
                                             become + KVX_PROGRAM " " + command});
}

TEST_F(KvxRunPosix, SaysThatAFolderCannotBeWritten) {
  Fill();
  fs::permissions(base.Path(), fs::perms::all);
  fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_read |
                              fs::perms::others_exec);
  const ProgramRun run = RunForbidden(folder);
  fs::permissions(folder, fs::perms::owner_all);
  if (run.exitStatus == 126 || run.exitStatus == 127) {
    GTEST_SKIP() << "no user without permissions can run the program";
  }
  EXPECT_EQ(run.exitStatus, 73);
  EXPECT_EQ(run.err,
            "kvx run: \"fem_solving.txt\": The folder cannot be written: Permission denied.\n");
  EXPECT_EQ(ListDifferent(ReadFolder(folder), OldResults), NoNames);
}

TEST_F(KvxRunPosix, SaysThatTheFolderForTheFactorsCannotBeWritten) {
  Fill();
  const fs::path factors = base.Path() / "factors";
  fs::create_directory(factors);
  fs::permissions(base.Path(), fs::perms::all);
  fs::permissions(folder, fs::perms::all);
  fs::permissions(factors, fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_read |
                               fs::perms::others_exec);
  const ProgramRun run = RunForbidden(folder, "run --out-of-core ../factors");
  fs::permissions(factors, fs::perms::owner_all);
  if (run.exitStatus == 126 || run.exitStatus == 127) {
    GTEST_SKIP() << "no user without permissions can run the program";
  }
  EXPECT_EQ(run.exitStatus, 73);
  EXPECT_EQ(run.err, "kvx run: the folder \"" + factors.string() +
                         "\" for the factors cannot be written to: Permission denied.\n");
  EXPECT_EQ(ListDifferent(ReadFolder(folder), OldResults), NoNames);
}

// A strip of 2000 shells, held at every 50th station, whose stations are numbered from both ends in
// turn: its columns reach over half of the structure on average, 1.1 GB, and its factor is small.
std::string BadlyNumberedStrip() {
  constexpr int Stations = 2001, HeldStations = 50;
  ModelText text;
  text.materials = {{210000.0, 0.3, 7.85e-9}};
  text.thicknesses = {10.0};
  text.nodes.resize(2 * static_cast<std::size_t>(Stations));
  const auto node = [&](int station, int side) {
    return 2 * (station % 2 == 0 ? station / 2 : Stations - 1 - station / 2) + side;
  };
  for (int station = 0; station < Stations; ++station) {
    for (int side = 0; side < 2; ++side) {
      text.nodes[static_cast<std::size_t>(node(station, side))] = {50.0 * station, 50.0 * side,
                                                                   0.0};
      if (station % HeldStations == 0) text.restraints.push_back({node(station, side)});
    }
    if (station == 0) continue;
    text.shells4.push_back(
        {{node(station - 1, 0), node(station, 0), node(station, 1), node(station - 1, 1)}, 0, 0});
    text.shell4Loads.push_back({station - 1, {0.0, 0.0, -0.001}});
  }
  return korvex::test::WriteModel(text);
}

// The check of a run does not refuse for the skyline's memory what the sparse engine solves.
TEST_F(KvxRunPosix, SolvesWithTheOtherEngineWhatTheSkylineHasNoMemoryFor) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizer takes addresses of its own";
#endif
  fs::create_directories(folder);
  WriteFile(folder / "fem_solving.txt", BadlyNumberedStrip());
  const auto run = [&](const std::string& command) {
    return korvex::test::RunProgram("/bin/sh", base.Path(), "",
                                    {"-c", "ulimit -v 1000000; exec " KVX_PROGRAM " " + command});
  };
  const ProgramRun skyline = run("run deck --engine=skyline");
  EXPECT_EQ(skyline.exitStatus, 65);
  EXPECT_NE(skyline.err.find(" GB free within the limit of addresses (ulimit -v). "),
            std::string::npos)
      << skyline.err;
  const ProgramRun solved = run("run deck");
  if (!HasSparseEngine()) GTEST_SKIP() << NoSparseEngine;
  // What keeps korvex from it is no error; and the nodes in a better order show what moves.
  const ProgramRun check = run("check deck --deep");
  EXPECT_EQ(check.exitStatus, 0);
  const std::string said = JoinWords(SplitWords(check.out));
  EXPECT_NE(said.find("WARN K502"), std::string::npos) << said;
  EXPECT_NE(said.find("kvx run looks whether its sparse engine fits."), std::string::npos) << said;
  EXPECT_EQ(said.find("Mechanisms were not looked for"), std::string::npos) << said;
  EXPECT_EQ(solved.exitStatus, 0) << solved.err << solved.out;
  EXPECT_NE(solved.out.find("Engine: sparse"), std::string::npos) << solved.out;
  // Nor does it send him to a better order, which saves the skyline's time alone.
  EXPECT_EQ(solved.out.find("kvx renumber"), std::string::npos) << solved.out;
  EXPECT_EQ(run("audit deck").exitStatus, 0);
  // Without the displacements the others would need the skyline: they say what to do.
  fs::remove(folder / "displacements.bin");
  for (const std::string command :
       {"reactions", "forces", "top", "audit", "export --csv", "view"}) {
    const ProgramRun refused = run(command + " deck");
    EXPECT_EQ(refused.exitStatus, 65) << command;
    EXPECT_NE(
        refused.err.find("displacements.bin does not exist. Without it the model is solved by "
                         "the skyline, which takes "),
        std::string::npos)
        << refused.err;
    EXPECT_NE(refused.err.find(". Call kvx run: its sparse engine takes less memory, and it "
                               "leaves displacements.bin."),
              std::string::npos)
        << refused.err;
  }
}

// A file system of `size` kilobytes that holds the model and old results. Exit status 125: such a
// file system cannot be made here.
ProgramRun RunOnSmallDisk(const fs::path& base, int size, const std::string& command = "run") {
  WriteFile(base / "inside", "mount -t tmpfs -o size=" + std::to_string(size) + "k none '" +
                                 base.string() + "/disk' || exit 125\ncd '" + base.string() +
                                 "/disk' && cp -r ../deck/* . || exit 125\n" KVX_PROGRAM " " +
                                 command + "\nstatus=$?\ncp -r . '" + base.string() +
                                 "/after'\nexit $status\n");
  fs::create_directory(base / "disk");
  return korvex::test::RunProgram(
      "/bin/sh", base, "",
      {"-c", "exec unshare --mount --map-root-user sh \"" + (base / "inside").string() + "\""});
}

// From a disk that holds nothing more to one that all fits on: where it does not, the old files are
// whole and the reason is named.
TEST_F(KvxRunPosix, LeavesOldFilesOnAFullDisk) {
  text = PlateText(6);
  RunWhole();
  std::uintmax_t bytes = 0;
  for (const auto& entry : fs::directory_iterator(folder)) bytes += fs::file_size(entry.path());
  const int most = static_cast<int>(bytes / 1024) + 200;
  int full = 0;
  for (int size = 40; size <= most; size += most / 12) {
    SCOPED_TRACE(size);
    fs::remove_all(base.Path() / "disk");
    fs::remove_all(base.Path() / "after");
    Fill();
    const ProgramRun run = RunOnSmallDisk(base.Path(), size);
    if (run.exitStatus == 125 || run.exitStatus == 127 || run.err.find("unshare") == 0) {
      if (size == 40) GTEST_SKIP() << "no file system can be mounted: " << run.err;
      continue;
    }
    if (run.exitStatus == 0) {
      EXPECT_EQ(ListDifferent(ReadFolder(base.Path() / "after"), whole), NoNames);
      continue;
    }
    ++full;
    EXPECT_EQ(run.exitStatus, 73);
    EXPECT_EQ(run.err.rfind("kvx run: \"fem_solving.txt\": ", 0), 0U) << run.err;
    EXPECT_NE(run.err.find(" cannot be written: No space left on device.\n"), std::string::npos)
        << run.err;
    EXPECT_EQ(ListDifferent(ReadFolder(base.Path() / "after"), OldResults), NoNames);
  }
  EXPECT_GE(full, 3);
}

// What a terminal is shown on standard error while the shell runs the commands in the folder.
// Returns false where there are no terminals.
bool ShowAtTerminal(const fs::path& folder, const std::string& commands, std::string& shown) {
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
  if (terminal < 0 || grantpt(terminal) != 0 || unlockpt(terminal) != 0) return false;
  const std::string name = ptsname(terminal);  // NOLINT(concurrency-mt-unsafe)
  const int keeper = open(name.c_str(), O_RDWR | O_NOCTTY);
  if (keeper < 0) return false;
  const ProgramRun run =
      korvex::test::RunProgram("/bin/sh", folder, "", {"-c", commands + " >/dev/null 2>" + name});
  EXPECT_EQ(run.exitStatus, 0) << commands;
  std::array<char, 4096> buffer{};
  for (ssize_t count = 0; (count = read(terminal, buffer.data(), buffer.size())) > 0;) {
    shown.append(buffer.data(), static_cast<std::size_t>(count));
  }
  close(keeper);
  close(terminal);
  return true;
}

// A beam of 120 slender pieces. Their detail models have from 214 to 333 steps: no two have the
// same shape, so all are solved alone. That takes seconds.
std::string SlenderBeamText() {
  constexpr int Pieces = 120;
  constexpr double LongestPiece = 10000.0, FlangeWidth = 30.0;  // a step is as long as that
  ModelText model;
  model.materials = {{210000.0, 0.3, 7.85e-9}};
  model.tSections = {{FlangeWidth, 3.0, 20.0, 3.0}};
  model.nodes = {{0.0, 0.0, 0.0}};
  for (int k = 0; k < Pieces; ++k) {
    model.nodes.push_back({model.nodes.back()[0] + LongestPiece - FlangeWidth * k, 0.0, 0.0});
    model.restraints.push_back({k});
    model.beams.push_back({k, k + 1});
    model.beamLoads.push_back({k, 0.001, 0.001});
  }
  model.restraints.push_back({Pieces});
  return WriteModel(model);
}

// The detail models take longer than the half second without a line. All commands that make them
// say so.
TEST_F(KvxRunPosix, ShowsItsProgressAtATerminalAlone) {
  const korvex::test::OneCore one;  // kvx audit takes all cores that it may use
  text = SlenderBeamText();
  Fill();
  WriteFile(folder / "cases.toml",
            "structure = \"fem_solving.txt\"\n[case.wind]\nloads = \"fem_solving.txt\"\n");
  const std::string detailModels = "Making detail models of beams";
  std::vector<std::pair<std::string, std::string>> commands{
      {"run", detailModels}, {"audit", detailModels}, {"cases", detailModels + " (wind)"}};
  commands.resize(korvex::test::Repeats(3));
  for (const auto& [command, line] : commands) {
    std::string shown;
    if (!ShowAtTerminal(folder, KVX_PROGRAM " " + command, shown)) {
      GTEST_SKIP() << "there are no terminals here";
    }
    EXPECT_NE(shown.find('\r' + line + " ... "), std::string::npos) << shown;
    EXPECT_NE(shown.find(" s left"), std::string::npos) << shown;
    // The last of it is blank.
    const std::size_t last = shown.find_last_not_of("\r ");
    EXPECT_NE(shown.find('\r', last), std::string::npos) << shown;
  }
}

// kvx view, which solves the plate; a page of another day is there.
struct KvxViewPosix : KvxRunPosix {};

TEST_F(KvxViewPosix, LeavesTheOldOrTheNewPageWhereItIsInterrupted) {
  Fill();
  WriteFile(folder / "view.html",
            "<!doctype html><meta name=\"generator\" content=\"kvx view\">old");
  ExpectTheOldOrTheNewFile("view", "view.html", ReadFolder(folder));
}

// kvx export on a plate that has been solved; an old file is there.
struct KvxExportPosix : KvxRunPosix {
  FolderBytes before;

  void Prepare(int n) {
    text = PlateText(n);
    Fill();
    ASSERT_EQ(AwaitKvx(StartKvx(folder, output)), 0) << ReadBytes(output);
    WriteFile(folder / "model.vtu", "old");
    before = ReadFolder(folder);
  }
};

TEST_F(KvxExportPosix, LeavesTheOldOrTheNewFileWhereItIsInterrupted) {
  Prepare(60);
  ExpectTheOldOrTheNewFile("export --vtu", "model.vtu", before);
}

TEST_F(KvxExportPosix, SaysThatAFolderCannotBeWritten) {
  Prepare(4);
  fs::permissions(base.Path(), fs::perms::all);
  fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_read |
                              fs::perms::others_exec);
  const ProgramRun vtu = RunForbidden(folder, "export --vtu");
  const ProgramRun csv = RunForbidden(folder, "export --csv");
  fs::permissions(folder, fs::perms::owner_all);
  if (vtu.exitStatus == 126 || vtu.exitStatus == 127) {
    GTEST_SKIP() << "no user without permissions can run the program";
  }
  EXPECT_EQ(vtu.exitStatus, 73);
  EXPECT_EQ(vtu.err,
            "kvx export: \"fem_solving.txt\": model.vtu cannot be written: Permission denied.\n");
  EXPECT_EQ(csv.exitStatus, 73);
  EXPECT_EQ(csv.err.rfind("kvx export: \"fem_solving.txt\": the folder ", 0), 0U) << csv.err;
  EXPECT_NE(csv.err.find(" cannot be used: Permission denied.\n"), std::string::npos) << csv.err;
  EXPECT_EQ(ListDifferent(ReadFolder(folder), before), NoNames);
}

TEST_F(KvxExportPosix, LeavesTheOldFileOnAFullDisk) {
  Prepare(30);
  std::uintmax_t bytes = 0;
  for (const auto& entry : fs::directory_iterator(folder)) bytes += fs::file_size(entry.path());
  // Room for what is there, in pages of 4 kB, and a part of the new file, which has 500 kB.
  const int least = static_cast<int>(bytes / 1024) + 100;
  int full = 0;
  for (const std::string form : {"--vtu", "--csv"}) {
    for (const int room : {0, 100, 300}) {
      SCOPED_TRACE(form + ' ' + std::to_string(room));
      fs::remove_all(base.Path() / "disk");
      fs::remove_all(base.Path() / "after");
      const ProgramRun run = RunOnSmallDisk(base.Path(), least + room, "export " + form);
      if (run.exitStatus == 125 || run.exitStatus == 127 || run.err.find("unshare") == 0) {
        GTEST_SKIP() << "no file system can be mounted: " << run.err;
      }
      ++full;
      EXPECT_EQ(run.exitStatus, 73);
      EXPECT_NE(run.err.find(" cannot be written: No space left on device.\n"), std::string::npos)
          << run.err;
      EXPECT_EQ(run.out, "");
      EXPECT_EQ(ListDifferent(ReadFolder(base.Path() / "after"), before), NoNames);
    }
  }
  EXPECT_EQ(full, 6);
}

// The shell makes of it the argument that it was.
TEST(QuoteArgument, GivesAShellTheSameArgument) {
  EXPECT_EQ(QuoteArgument("decks/deck-2.b"), "decks/deck-2.b");
  const TempFolder script;
  for (const std::string argument :
       {"", "my deck", "it's", "''", "$HOME", "`id`", "$(id)", "a\"b", "a\\b", "a\nb", "~", "!1",
        "{a,b}", "*", "a;b", "a&b", "#a", "Br\u00fccke"}) {
    WriteFile(script.Path() / "script", "printf %s. " + QuoteArgument(argument));
    const ProgramRun run = korvex::test::RunProgram("/bin/sh", script.Path(), "", {"script"});
    EXPECT_EQ(run.out, argument + '.');
  }
}

}  // namespace
}  // namespace kvx::test
