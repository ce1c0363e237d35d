// Model files with counts far beyond their rows, and files that are no models at all, solved with
// the program as a process: it ends, says why, and takes no memory for rows that are not in the
// file.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <filesystem>

#include "model/model.h"
#include "model/read_input_file.h"
#include "platform/free_memory.h"
#include "support/dof_names.h"
#include "support/expect_stop.h"
#include "support/model_text.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace korvex::test {
namespace {

namespace fs = std::filesystem;

struct Section {
  const char* key;
  const char* rows;       // the rows, or one row, in the words of notices
  std::uint64_t rowSize;  // bytes of a row as it is stored
};

constexpr Section Sections[] = {
    {"NMT", "materials", sizeof(Material)},
    {"NTK", "shell thicknesses", sizeof(ShellThickness)},
    {"NTBS", "T_beam sections", sizeof(BeamSection)},
    {"NLBS", "L_beam sections", sizeof(BeamSection)},
    {"NCBS", "C_beam sections", sizeof(CBeamSection)},
    {"NPOIN", "nodal points", sizeof(Node)},
    {"NELEM_S_4ND", "four-node shell elements", sizeof(Shell4Element)},
    {"NELEM_S_3ND", "three-node shell elements", sizeof(Shell3Element)},
    {"NELEM_B", "beam elements", sizeof(BeamElement)},
    {"NRN", "restricted nodal points", sizeof(NodalRestraint)},
    {"NFOR", "forces", sizeof(NodalForce)},
    {"NDL_S_4ND", "distributed loads on four-node shell elements", sizeof(ShellSurfaceLoad)},
    {"NDL_S_3ND", "distributed loads on three-node shell elements", sizeof(ShellSurfaceLoad)},
    {"NDL_B", "distributed loads on beam elements", sizeof(BeamLineLoad)},
};

// A file without rows that ends after the count `key`, whose value is `count`.
std::string EndAfterCount(const std::string& key, const std::string& count) {
  const std::string empty = WriteModel(ModelText());
  return empty.substr(0, empty.find(":" + key + "=") + key.size() + 2) + count;
}

#if defined(__SANITIZE_ADDRESS__)
// The sanitizer needs terabytes of addresses and writes a byte for every eight allocated bytes.
constexpr bool HasLimitedMemory = false;
#else
constexpr bool HasLimitedMemory = true;
#endif

std::uint64_t PeakOfChildren() {
  struct rusage usage {};
  getrusage(RUSAGE_CHILDREN, &usage);
  return static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
}

// A count of two thousand million rows in a file of a few lines. If memory could hold the rows, the
// count is accepted, otherwise a notice says so. Neither run uses a gigabyte.
TEST(HostileModels, ACountFarBeyondTheFileTouchesNoMemory) {
  const std::uint64_t before = PeakOfChildren();
  for (const Section& section : Sections) {
    SCOPED_TRACE(section.key);
    const TempFolder folder;
    WriteFile(folder.Path() / "fem_solving.txt", EndAfterCount(section.key, "2000000000\n"));
    const ProgramRun run = RunProgram(KORVEX_PROGRAM, folder.Path());
    const std::uint64_t bytes = 2000000000U * section.rowSize;
    const std::string notice =
        std::string("Warning!\nNot enough memory for 2000000000 ") + section.rows + ": ";
    const bool isNoticed = run.err.compare(0, notice.size(), notice) == 0;
    // The program could get less than the free memory of this moment: it needs some for itself.
    EXPECT_TRUE(isNoticed || bytes <= ReadFreeMemory()) << run.err;
    if (isNoticed) {
      EXPECT_EQ(run.exitStatus, 1);
      EXPECT_EQ(run.out, "");
    } else if (std::string(section.key) == "NPOIN") {
      EXPECT_EQ(run.exitStatus, 1);  // its equations have no numbers
    } else if (run.exitStatus != 0) {
      // Loads on missing nodes or elements: the file ends before any of them.
      EXPECT_EQ(run.exitStatus, 1);
      EXPECT_NE(run.err.find(" refers to "), std::string::npos) << run.err;
    }
  }
  if (!HasLimitedMemory) return;
  EXPECT_LT(std::max(PeakOfChildren(), before) - before, std::uint64_t{1} << 30U);
}

// Elements are built row by row: of five million rows (6 GB of shells), the first one stops the
// run, as its node does not exist.
TEST(HostileModels, ElementsBehindABadReferenceAreNotBuilt) {
  const std::uint64_t before = PeakOfChildren();
  const Section elements[] = {{"NELEM_S_4ND", "Four-node shell element", sizeof(Shell4Element)},
                              {"NELEM_S_3ND", "Three-node shell element", sizeof(Shell3Element)},
                              {"NELEM_B", "Beam element", sizeof(BeamElement)}};
  for (const Section& section : elements) {
    SCOPED_TRACE(section.key);
    const TempFolder folder;
    WriteFile(folder.Path() / "fem_solving.txt", EndAfterCount(section.key, "5000000\n"));
    const ProgramRun run = RunProgram(KORVEX_PROGRAM, folder.Path());
    EXPECT_EQ(run.exitStatus, 1);
    if (run.err.find("Not enough memory for 5000000") != std::string::npos) continue;
    EXPECT_EQ(run.err, std::string("Warning!\n") + section.rows +
                           " 0 refers to node 0; there are 0 nodal points.\nPress Enter to "
                           "continue.\n");
  }
  if (!HasLimitedMemory) return;
  EXPECT_LT(std::max(PeakOfChildren(), before) - before, std::uint64_t{1} << 29U);
}

// A count of fifty million nodes; the file has one of them and a part of the next.
TEST(HostileModels, RowsBehindTheEndOfTheFileAreZeros) {
  Model model;
  ReadInputText(EndAfterCount("NPOIN", "50000000\n0:1,2,3\n1:4"), model);
  ASSERT_EQ(model.Tables.NPOIN, 50000000);
  ASSERT_EQ(model.Tables.Nodes.size(), 50000000U);
  EXPECT_EQ(model.Tables.Nodes[0].z, 3.0);
  EXPECT_EQ(model.Tables.Nodes[1].x, 4.0);
  EXPECT_EQ(model.Tables.Nodes[1].y, 0.0);
  EXPECT_EQ(model.Tables.Nodes[49999999].x, 0.0);
}

// A row that does not match takes nothing of the text, and its fields stay zero; so do all further
// rows.
TEST(HostileModels, RowsThatDoNotMatchAreZeros) {
  Model model;
  ReadInputText(EndAfterCount("NMT", "3\n#0:\nE=7\nMu=8\nDensity=9\nNot a row\nE=5\n"), model);
  ASSERT_EQ(model.Tables.Materials.size(), 3U);
  EXPECT_EQ(model.Tables.Materials[0].Density, 9.0);
  EXPECT_EQ(model.Tables.Materials[1].E, 0.0);
  EXPECT_EQ(model.Tables.Materials[2].E, 0.0);
}

// A row of which only the last fields match takes their text. The next row is read from there.
TEST(HostileModels, ARowAfterOneThatMatchesInPartIsRead) {
  Model model;
  ReadInputText(EndAfterCount("NMT", "3\nE=7\nMu=8\nDensity=9\n#1:\nE=1\nMu=2\nDensity=3\n"),
                model);
  EXPECT_EQ(model.Tables.Materials[0].E, 7.0);
  EXPECT_EQ(model.Tables.Materials[1].E, 1.0);
  EXPECT_EQ(model.Tables.Materials[1].Density, 3.0);
  EXPECT_EQ(model.Tables.Materials[2].E, 0.0);
}

// 6 x 357913941 = 2147483646 is the largest number of equations that an int32 can count.
TEST(HostileModels, MoreEquationsThanNumbersAreNoticed) {
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", EndAfterCount("NPOIN", "357913942"));
  const ProgramRun run = RunProgram(KORVEX_PROGRAM, folder.Path());
  EXPECT_EQ(run.exitStatus, 1);
  if (run.err.find("Not enough memory for 357913942 nodal points") == std::string::npos) {
    EXPECT_EQ(run.err,
              "Warning!\n357913942 nodal points have 2147483652 equations; at most 2147483647 can "
              "be numbered.\nPress Enter to continue.\n");
  }
  EXPECT_EQ(run.out, "");
}

// Runs the program with an address space of `kilobytes`.
ProgramRun RunWithin(int kilobytes, const TempFolder& folder) {
  const TempFolder tools;
  WriteFile(tools.Path() / "run", "#!/bin/sh\nulimit -v " + std::to_string(kilobytes) + "\nexec '" +
                                      KORVEX_PROGRAM + "'\n");
  fs::permissions(tools.Path() / "run", fs::perms::owner_all);
  return RunProgram(tools.Path() / "run", folder.Path());
}

// Notices with sizes: of a table, 24 bytes per material, 24 x 10^7 / 2^30 = 0.223517; and of the
// system, 36 bytes per equation, 6 x 10^6 x 36 / 2^30 = 0.201166.
TEST(HostileModels, AMachineThatIsTooSmallSaysWhatForAndHowMuch) {
  if (!HasLimitedMemory) GTEST_SKIP() << "not under the address sanitizer";
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", EndAfterCount("NMT", "10000000"));
  ProgramRun run = RunWithin(200000, folder);
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.err,
            "Warning!\nNot enough memory for 10000000 materials: 0.223517 GB.\n"
            "Press Enter to continue.\n");

  WriteFile(folder.Path() / "fem_solving.txt", EndAfterCount("NPOIN", "1000000"));
  run = RunWithin(200000, folder);
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            "Warning!\nNot enough memory for the system of 6000000 equations: 0.201166 GB.\n"
            "Press Enter to continue.\n");
}

// Beams from node 0 to each of 3999 other nodes: every column reaches up to row 0. The matrix has
// 24000 x 24001 / 2 = 288012000 entries of 8 bytes, 2.14586 GB. The estimate is printed before the
// notice.
TEST(HostileModels, AMatrixThatIsTooLargeIsEstimatedBeforeTheNotice) {
  if (!HasLimitedMemory) GTEST_SKIP() << "not under the address sanitizer";
  ModelText text;
  text.materials = {{1.0, 0.25, 0.0}};
  text.tSections = {{1.0, 0.5, 0.0, 0.0}};
  for (int n = 0; n < 4000; ++n) text.nodes.push_back({1.0 * n, 0.0, 0.0});
  for (int n = 1; n < 4000; ++n) text.beams.push_back({0, n});
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", WriteModel(text));
  const ProgramRun run = RunWithin(1000000, folder);
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out, "The global stiffness matrix will occupy 2.14586 GB of memory space.\n");
  EXPECT_EQ(run.err,
            "Warning!\nNot enough memory for the global stiffness matrix: 2.14586 GB.\n"
            "Press Enter to continue.\n");
  EXPECT_EQ(ReadFile(folder.Path() / LogPath()), run.out);
}

// A tube of radius 1e-4 and length 1000 has 13 million steps of 2 R sin(pi / 8), with 8 shells of a
// kilobyte each. The notice comes before any of them is made.
TEST(HostileModels, ADetailModelThatIsTooLargeIsNoticed) {
  ModelText text;
  text.materials = {{1.0, 0.25, 0.0}};
  text.cSections = {{1e-4, 1e-5}};
  text.nodes = {{0, 0, 0}, {1000, 0, 0}};
  text.beams.resize(1);
  text.beams[0].BeamSecType = BeamSecTypeC;
  text.restraints = {{0}};
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", WriteModel(text));
  const std::uint64_t before = PeakOfChildren();
  const ProgramRun run =
      HasLimitedMemory ? RunWithin(4000000, folder) : RunProgram(KORVEX_PROGRAM, folder.Path());
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.err.substr(0, 69),
            "Warning!\nNot enough memory for the detail models of 1 beam elements: ");
  EXPECT_LT(std::max(PeakOfChildren(), before) - before, std::uint64_t{1} << 30U);
}

// 12 x 12 shells and a beam along one edge, with a load and a support.
std::string MakePlate() {
  constexpr int Sides = 12;
  ModelText text;
  text.materials = {{1200.0, 0.25, 1.0}};
  text.thicknesses = {0.5};
  text.tSections = {{2.0, 0.5, 1.0, 0.5}};
  for (int i = 0; i <= Sides; ++i) {
    for (int j = 0; j <= Sides; ++j) text.nodes.push_back({2.0 * i, 2.0 * j, 0.0});
  }
  for (int i = 0; i < Sides; ++i) {
    for (int j = 0; j < Sides; ++j) {
      const int corner = i * (Sides + 1) + j;
      text.shells4.push_back({{corner, corner + Sides + 1, corner + Sides + 2, corner + 1}});
    }
  }
  text.beams.push_back({0, Sides});
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{Sides, SingleLoad(Fz, -1.0)}};
  return WriteModel(text);
}

// Limits from one at which the program can hardly start to one at which it completes: every run
// that fails ends with a notice, and nearly every notice says what the memory is for. Small blocks
// have no such text, but they rarely need memory from the system, as the C library gets 132 kB at a
// time. The memory for an exception is reserved when the program starts. Each of the two may fail
// at up to three limits.
TEST(HostileModels, WhereverMemoryEndsANoticeSaysSo) {
  if (!HasLimitedMemory) GTEST_SKIP() << "not under the address sanitizer";
  constexpr int CannotBeLoaded = 127;
  constexpr int Step = 50;  // kB
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", MakePlate());
  int named = 0, withoutException = 0, unnamed = 0;
  for (int kilobytes = 2000; kilobytes < 1000000; kilobytes += Step) {
    const ProgramRun run = RunWithin(kilobytes, folder);
    if (run.exitStatus == 0) break;
    if (run.exitStatus == CannotBeLoaded) continue;
    EXPECT_EQ(run.exitStatus, 1) << kilobytes << " kB\n" << run.err;
    if (run.err.find("Warning!\nNot enough memory for ") == 0) {
      ++named;
    } else if (run.err == "Not enough memory.\n") {
      ++withoutException;
    } else {
      EXPECT_EQ(run.err, "Warning!\nNot enough memory.\nPress Enter to continue.\n");
      ++unnamed;
    }
  }
  EXPECT_GT(named, 20);
  EXPECT_LE(withoutException, 3);
  EXPECT_LE(unnamed, 3);
}

// A number as long as its file: its conversion needs memory for the digits.
TEST(HostileModels, ANumberThatIsTooLongIsNoticed) {
  if (!HasLimitedMemory) GTEST_SKIP() << "not under the address sanitizer";
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt",
            EndAfterCount("NMT", "1\n#0:\nE=" + std::string(std::size_t{20} << 20U, '1')));
  const ProgramRun run = RunWithin(60000, folder);
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.err.substr(0, 53), "Warning!\nNot enough memory for the digits of a number");
}

// A file without an end: the reader asks for memory before it reads on.
TEST(HostileModels, AnEndlessModelFileIsNoticed) {
  if (!HasLimitedMemory) GTEST_SKIP() << "not under the address sanitizer";
  if (!fs::exists("/dev/zero")) GTEST_SKIP() << "no /dev/zero";
  const TempFolder folder;
  fs::create_symlink("/dev/zero", folder.Path() / "fem_solving.txt");
  const ProgramRun run = RunWithin(100000, folder);
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.err.substr(0, 57), "Warning!\nNot enough memory for the text of the model file");
}

// A sparse file of 2^43 bytes = 8192 GB.
TEST(HostileModels, AModelFileLargerThanMemoryIsNoticed) {
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", "### ");
  std::error_code failed;
  fs::resize_file(folder.Path() / "fem_solving.txt", std::uintmax_t{1} << 43U, failed);
  if (failed) GTEST_SKIP() << "the file system has no files of this size";
  const ProgramRun run = RunProgram(KORVEX_PROGRAM, folder.Path());
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.err,
            "Warning!\nNot enough memory for the text of the model file: 8192 GB.\n"
            "Press Enter to continue.\n");
}

TEST(HostileModels, FilesThatAreNoModelStop) {
  std::string bytes;
  for (int i = 0; i < 100000; ++i) bytes += static_cast<char>(i * 7919 % 256);
  for (const std::string& text : {std::string(), std::string(1, '\0'), bytes}) {
    const TempFolder folder;
    WriteFile(folder.Path() / "fem_solving.txt", text);
    const ProgramRun run = RunProgram(KORVEX_PROGRAM, folder.Path());
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_EQ(run.err, "Warning!\nRelease File Number error!\nPress Enter to continue.\n");
  }
}

// The material is checked first, then the section.
TEST(HostileModels, OfTwoWrongReferencesTheFirstUsedIsNamed) {
  for (const int type : {BeamSecTypeT, BeamSecTypeL, BeamSecTypeC}) {
    ModelText text;
    text.nodes = {{0, 0, 0}, {1, 0, 0}};
    text.beams.resize(1);
    text.beams[0].BeamSecType = type;
    text.beams[0].BeamSecIndex = 5;
    text.beams[0].material = 6;
    const std::string file = WriteModel(text);
    ExpectStop(
        [&] {
          Model model;
          ReadInputText(file, model);
        },
        "Beam element 0 refers to material 6; there are 0 materials.");
  }
}

// References that are never used are not checked: those of a beam whose section type has no table,
// and of a restraint that fixes nothing.
TEST(HostileModels, ReferencesThatAreNotUsedPass) {
  ModelText text;
  text.nodes = {{0, 0, 0}, {1, 0, 0}};
  text.beams.resize(1);
  text.beams[0].BeamSecType = 3;  // has no section table
  text.beams[0].BeamSecIndex = 77;
  text.beams[0].material = 88;
  text.restraints = {{99, {0, 2, -1, 0, 0, 0}}};
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", WriteModel(text));
  const ProgramRun run = RunProgram(KORVEX_PROGRAM, folder.Path());
  EXPECT_EQ(run.err, "Warning!\n梁截面类型数字错误!\nPress Enter to continue.\n");
}

}  // namespace
}  // namespace korvex::test
