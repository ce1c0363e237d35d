// Output files that cannot be opened or not completely written: each of them in turn is a folder,
// has no write permission, or lies on a full disk. Linux only: "/dev/full", where every write
// fails, and small file systems in memory.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "run/file_names.h"
#include "run/stages.h"
#include "support/dof_names.h"
#include "support/model_text.h"
#include "support/run_program.h"
#include "support/run_stages.h"
#include "support/temp_folder.h"

namespace korvex::test {
namespace {

namespace fs = std::filesystem;

// Texts on the console, GBK.
constexpr const char* DrawingFailed = "\xCE\xC4\xBC\xFE\xCA\xE4\xB3\xF6\xCA\xA7\xB0\xDC!\n";
constexpr const char* DisplacementsFailed =
    "\xBD\xDA\xB5\xE3\xCE\xBB\xD2\xC6\xCE\xC4\xBC\xFE\xCA\xE4\xB3\xF6\xCA\xA7\xB0\xDC!\n";
constexpr const char* StressesFailed =
    "\xB5\xA5\xD4\xAA\xBD\xDA\xB5\xE3\xD3\xA6\xC1\xA6\xCE\xC4\xBC\xFE\xCA\xE4\xB3\xF6\xCA\xA7\xB0"
    "\xDC!\n";
constexpr const char* DetailStressesFailed =
    "\xBD\xDA\xB5\xE3\xD3\xA6\xC1\xA6\xCE\xC4\xBC\xFE\xCA\xE4\xB3\xF6\xCA\xA7\xB0\xDC!\n";

struct OutputFile {
  const char* name;     // in the folder
  const char* said;     // its name in messages
  const char* failure;  // the last line on the console if it cannot be opened
};

// In the order in which a run opens them.
constexpr OutputFile ResultFiles[] = {
    {"structure.dxf", "structure.dxf", DrawingFailed},
    {"Node_Dis.txt", "Node_Dis.txt", DisplacementsFailed},
    {"deformation.dxf", "deformation.dxf", DrawingFailed},
    {"Shell element node stress.txt", "Shell element node stress.txt", StressesFailed},
    {"Shell element average node stress.txt", "Shell element average node stress.txt",
     StressesFailed},
    {"Korvex_AverageStrs.txt", "Korvex_AverageStrs.txt", DetailStressesFailed},
};

std::string Incomplete(const std::string& name) {
  return name + " is incomplete: writing it failed.\n";
}

constexpr const char* LogFailed =
    "Warning!\n"
    "\xE8\xAE\xA1\xE7\xAE\x97\xE6\x97\xA5\xE5\xBF\x97\xE8\xBE\x93\xE5\x87\xBA\xE5\xA4\xB1\xE8\xB4"
    "\xA5!\nPress Enter to continue.\n";

// A model with a shell and a beam, so that every result file has rows.
std::string MakeModel() {
  ModelText text;
  text.materials = {{1200.0, 0.25, 1.0}};
  text.thicknesses = {0.5};
  text.tSections = {{2.0, 0.5, 0.0, 0.0}};
  text.nodes = {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}};
  text.shells4 = {{{0, 1, 2, 3}}};
  text.beams.resize(1);
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}, {3, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{1, SingleLoad(Fz, -1.0)}};
  return WriteModel(text);
}

void WriteModelFile(const fs::path& folder) { WriteFile(folder / "fem_solving.txt", MakeModel()); }

// Expects that the console ends with the message of this file and that no later file was opened.
void ExpectStopAt(std::size_t index, const ProgramRun& run, const fs::path& folder) {
  const std::string failure = ResultFiles[index].failure;
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.err, "");
  ASSERT_GE(run.out.size(), failure.size());
  EXPECT_EQ(run.out.substr(run.out.size() - failure.size()), failure);
  for (std::size_t i = 0; i < std::size(ResultFiles); ++i) {
    if (i == index) continue;
    EXPECT_EQ(fs::exists(folder / ResultFiles[i].name), i < index) << ResultFiles[i].name;
  }
}

TEST(UnwritableFiles, AFolderInAResultFilesPlace) {
  for (std::size_t i = 0; i < std::size(ResultFiles); ++i) {
    SCOPED_TRACE(ResultFiles[i].name);
    const TempFolder folder;
    WriteModelFile(folder.Path());
    fs::create_directory(folder.Path() / ResultFiles[i].name);
    ExpectStopAt(i, RunProgram(KORVEX_PROGRAM, folder.Path()), folder.Path());
    EXPECT_TRUE(fs::is_empty(folder.Path() / ResultFiles[i].name));
  }
}

// The program waits for one character before it ends.
TEST(UnwritableFiles, TheStopWaitsForOneCharacter) {
  const TempFolder folder;
  WriteModelFile(folder.Path());
  fs::create_directory(folder.Path() / "Node_Dis.txt");
  const TempFolder tools;
  // A pipe that stays open: without a character the program would wait for ever.
  WriteFile(tools.Path() / "run", std::string("#!/bin/sh\n{ sleep 0.2; printf x; touch '") +
                                      tools.Path().string() + "/sent'; } | '" + KORVEX_PROGRAM +
                                      "'\nstatus=$?\n[ -e '" + tools.Path().string() +
                                      "/sent' ] || exit 77\nexit $status\n");
  fs::permissions(tools.Path() / "run", fs::perms::owner_all);
  EXPECT_EQ(RunProgram(tools.Path() / "run", folder.Path()).exitStatus, 1);
}

// Runs the program as a user without write permission. Root may write everything: if the test runs
// as root, the program runs as another user.
struct ForbiddenRun {
  ProgramRun run;
  bool possible = false;
};

ForbiddenRun RunForbidden(const fs::path& folder) {
  if (geteuid() != 0) return {RunProgram(KORVEX_PROGRAM, folder), true};
  const TempFolder tools;
  const fs::path script = tools.Path() / "run";
  const std::string become = "setpriv --reuid 65534 --regid 65534 --clear-groups -- ";
  WriteFile(script, "#!/bin/sh\n" + become + "test -x '" + KORVEX_PROGRAM + "' || exit 126\nexec " +
                        become + "'" + KORVEX_PROGRAM + "'\n");
  fs::permissions(script, fs::perms::owner_all);
  ForbiddenRun forbidden;
  forbidden.run = RunProgram(script, folder);
  forbidden.possible = forbidden.run.exitStatus != 126 && forbidden.run.exitStatus != 127;
  return forbidden;
}

// The file exists and is read-only; the folder is writable.
TEST(UnwritableFiles, AReadOnlyResultFile) {
  for (std::size_t i = 0; i < std::size(ResultFiles); ++i) {
    SCOPED_TRACE(ResultFiles[i].name);
    const TempFolder folder;
    fs::permissions(folder.Path(), fs::perms::all);
    WriteModelFile(folder.Path());
    WriteFile(folder.Path() / ResultFiles[i].name, "mine");
    fs::permissions(folder.Path() / ResultFiles[i].name,
                    fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    const ForbiddenRun forbidden = RunForbidden(folder.Path());
    if (!forbidden.possible) GTEST_SKIP() << "no user without permissions can run the program";
    ExpectStopAt(i, forbidden.run, folder.Path());
    EXPECT_EQ(ReadFile(folder.Path() / ResultFiles[i].name), "mine");
  }
}

TEST(UnwritableFiles, AReadOnlyFolder) {
  const TempFolder folder;
  WriteModelFile(folder.Path());
  fs::permissions(folder.Path(), fs::perms::owner_read | fs::perms::owner_exec |
                                     fs::perms::others_read | fs::perms::others_exec);
  const ForbiddenRun forbidden = RunForbidden(folder.Path());
  fs::permissions(folder.Path(), fs::perms::owner_all);
  if (!forbidden.possible) GTEST_SKIP() << "no user without permissions can run the program";
  EXPECT_EQ(forbidden.run.exitStatus, 1);
  EXPECT_EQ(forbidden.run.out, "");
  EXPECT_EQ(forbidden.run.err, LogFailed);
  EXPECT_EQ(ListFolder(folder.Path()), std::vector<std::string>{"fem_solving.txt"});
}

// A whole run with one file on a full disk: the run says so, and all other files are complete.
TEST(UnwritableFiles, AFullDiskUnderAResultFile) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  const TempFolder complete;
  WriteModelFile(complete.Path());
  ASSERT_EQ(RunProgram(KORVEX_PROGRAM, complete.Path()).exitStatus, 0);
  for (const OutputFile& file : ResultFiles) {
    SCOPED_TRACE(file.name);
    const TempFolder folder;
    WriteModelFile(folder.Path());
    fs::create_symlink("/dev/full", folder.Path() / file.name);
    const ProgramRun run = RunProgram(KORVEX_PROGRAM, folder.Path());
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_EQ(run.err, Incomplete(file.said));
    EXPECT_NE(run.out.find("Post-processing completed.\n"), std::string::npos);
    for (const OutputFile& other : ResultFiles) {
      if (other.name == file.name) continue;
      EXPECT_EQ(ReadFile(folder.Path() / other.name), ReadFile(complete.Path() / other.name));
    }
  }
}

TEST(UnwritableFiles, AFullDiskUnderTheLog) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  const TempFolder folder;
  WriteModelFile(folder.Path());
  fs::create_symlink("/dev/full", folder.Path() / LogPath());
  const ProgramRun run = RunProgram(KORVEX_PROGRAM, folder.Path());
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.err, Incomplete(LogNames()[1]));
  EXPECT_NE(run.out.find("Post-processing completed.\n"), std::string::npos);
}

// The run stops with its own message and also names the incomplete log.
TEST(UnwritableFiles, AFullDiskUnderTheLogOfAStoppedRun) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  const TempFolder folder;
  WriteModelFile(folder.Path());
  fs::create_symlink("/dev/full", folder.Path() / LogPath());
  fs::create_directory(folder.Path() / "Node_Dis.txt");
  const ProgramRun run = RunProgram(KORVEX_PROGRAM, folder.Path());
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.err, Incomplete(LogNames()[1]));
  EXPECT_EQ(run.out.find("Post-processing completed.\n"), std::string::npos);
}

// Runs in a file system of `size` kilobytes and at most `files` entries that holds the model. Exit
// status 125: such a file system cannot be made here.
ProgramRun RunOnSmallDisk(const TempFolder& tools, int size, int files) {
  const std::string base = tools.Path().string();
  WriteModelFile(tools.Path());
  fs::create_directory(tools.Path() / "disk");
  WriteFile(tools.Path() / "inside",
            "mount -t tmpfs -o size=" + std::to_string(size) + "k,nr_inodes=" +
                std::to_string(files) + " none '" + base + "/disk' || exit 125\ncd '" + base +
                "/disk' && cp ../fem_solving.txt . || exit 125\n'" + KORVEX_PROGRAM +
                "'\nstatus=$?\nls -1 >'" + base + "/listing'\nexit $status\n");
  WriteFile(tools.Path() / "run",
            "#!/bin/sh\nexec unshare --mount --map-root-user sh '" + base + "/inside'\n");
  fs::permissions(tools.Path() / "run", fs::perms::owner_all);
  return RunProgram(tools.Path() / "run", tools.Path());
}

// Room for the model (1 page of 4) and the first three result files, but not for the stress files.
// The link beside the log and empty files take no page.
TEST(UnwritableFiles, ADiskThatFillsDuringTheRun) {
  const TempFolder tools;
  const ProgramRun run = RunOnSmallDisk(tools, 20, 100);
  if (run.exitStatus == 125 || run.exitStatus == 127 || run.err.find("unshare") == 0) {
    GTEST_SKIP() << "no file system can be mounted: " << run.err;
  }
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.err, Incomplete("Shell element node stress.txt") +
                         Incomplete("Shell element average node stress.txt") +
                         Incomplete("Korvex_AverageStrs.txt"));
  EXPECT_NE(run.out.find("Post-processing completed.\n"), std::string::npos);
}

// After the root, the model, the log and its link, no entry is left for the third result file.
TEST(UnwritableFiles, ADiskWithoutRoomForAnotherFile) {
  const TempFolder tools;
  const ProgramRun run = RunOnSmallDisk(tools, 1000, 6);
  if (run.exitStatus == 125 || run.exitStatus == 127 || run.err.find("unshare") == 0) {
    GTEST_SKIP() << "no file system can be mounted: " << run.err;
  }
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.err, "");
  const std::string failure = DrawingFailed;
  ASSERT_GE(run.out.size(), failure.size());
  EXPECT_EQ(run.out.substr(run.out.size() - failure.size()), failure);
}

// The reason stands in errno of the caller's thread: who reports the failure reads it there.
TEST(UnwritableFiles, AFullDiskUnderFilesThatThreadsMake) {
  for (const int threads : ThreadCounts) {
    const TempFolder folder;
    WriteFile(folder.Path() / ModelFileName, WriteModel(MakeStiffenedGrid()));
    Job job;
    job.folder = folder.Path().string() + '/';
    job.threads = threads;
    std::vector<std::string> written;
    ForAllStages([&](const Stage& stage) {
      errno = 0;
      if (stage.file != nullptr) {
        written.push_back(job.folder + stage.file);
        fs::create_symlink("/dev/full", written.back());
      }
      stage.work(job);
      EXPECT_TRUE(stage.file == nullptr || errno == ENOSPC) << stage.name << ' ' << threads;
    });
    EXPECT_EQ(job.incompleteFiles, written) << threads;
    EXPECT_EQ(written.size(), 6U);
  }
}

}  // namespace
}  // namespace korvex::test
