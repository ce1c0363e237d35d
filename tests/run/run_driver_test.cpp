// Whole runs of the program as a process: console, log and every file byte by byte, and every way
// to fail, with its texts, their order, the exit status and the files that are missing.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "support/model_text.h"
#include "support/notices.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace korvex::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* EmptyDrawing = "  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n  0\nEOF\n";

constexpr const char* DisplacementHeader =
    "           Node             dx             dy             dz"
    "             rx             ry             rz\n";

// The notices that a run should show.
std::vector<std::string> Notices(const std::vector<std::string>& texts) {
  std::vector<std::string> notices;
  for (const std::string& text : texts) notices.push_back(ExpectedNotice(text));
  return notices;
}

ProgramRun RunIn(const TempFolder& folder, const std::string& input = "") {
  return RunProgram(KORVEX_PROGRAM, folder.Path(), input);
}

// The console of a complete run whose solver prints `progress`.
std::string Console(const std::string& gigabytes, const std::string& progress) {
  return "The global stiffness matrix will occupy " + gigabytes +
         " GB of memory space.\n"
         "Assembling the global stiffness matrix...\n"
         "Solute the equilibrium equations..." +
         progress +
         "(Solution time:# seconds)\n"
         "Post-processing in progress...\n"
         "\tDeformation result file Node_Dis.txt, generated.\n"
         "\tShell element average node stress.txt, generated.\n"
         "\tGenerating Beam-Shells. The detailed stress calculation may take a considerable amount "
         "of "
         "time. Please wait patiently...\n"
         "Post-processing completed.\n";
}

// Checks the console and all files of a complete run of a model without shells.
void ExpectCompleteRun(const std::string& model, const std::string& gigabytes,
                       const std::string& progress, const std::string& displacements) {
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", model);
  const ProgramRun run = RunIn(folder);
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_TRUE(run.notices.empty());
  EXPECT_EQ(MaskTime(run.out), Console(gigabytes, progress));
  const std::size_t unit = run.out.find(" seconds)");
  ASSERT_NE(unit, std::string::npos);
  EXPECT_EQ(run.out[unit - 3], '.');  // two decimals
  EXPECT_EQ(ReadFile(folder.Path() / "Node_Dis.txt"), DisplacementHeader + displacements);
  EXPECT_EQ(ReadFile(folder.Path() / "structure.dxf"), EmptyDrawing);
  EXPECT_EQ(ReadFile(folder.Path() / "deformation.dxf"), EmptyDrawing);
  // Two lines; the time in the stream's general notation.
  EXPECT_EQ(MaskTime(ReadFile(folder.Path() / LogPath()), "+-.0123456789e"),
            "The global stiffness matrix will occupy " + gigabytes +
                " GB of memory space.\nSolution time:# seconds.\n");
  EXPECT_EQ(ReadFile(folder.Path() / "Shell element node stress.txt"), "");
  EXPECT_EQ(ReadFile(folder.Path() / "Shell element average node stress.txt"), "");
  EXPECT_EQ(ListFolder(folder.Path()),
            WithLog({"Korvex_AverageStrs.txt", "Node_Dis.txt",
                     "Shell element average node stress.txt", "Shell element node stress.txt",
                     "deformation.dxf", "fem_solving.txt", "structure.dxf"}));
}

// A supported node moves by its load / 1e20. Six columns of one entry each: 48 bytes.
TEST(RunDriver, SingleSupportedNode) {
  ModelText text;
  text.nodes = {{1, 2, 3}};
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{0, {1000, 0, -500, 2.5, 0, 1e20}}};
  ExpectCompleteRun(WriteModel(text), "4.47035e-08", "100%Completed.",
                    "             0:          1e-17              0         -5e-18"
                    "        2.5e-20              0              1\n");
}

// A flat bar 2 x 0.5 of length 2 along X; the offset -1 puts the centroid on the nodes.
// E = 1200, G = 480, A = 1, Iy = 1/3, Iz = 1/48, J = 1/12, shear area 2/3. At the free end:
//   u = 600 L / E A = 1;  rx = 40 L / G J = 2;
//   w = 3 L^3 / 3 E Iy + 3 L / (G 2/3) = 0.02 + 0.01875;  ry = -3 L^2 / 2 E Iy = -0.015;
//   v = 0.25 L^3 / 3 E Iz = 2/75;  rz = 0.25 L^2 / 2 E Iz = 0.02.
// The clamped end takes the load and its moment -3 L about y and 0.25 L about z, over 1e20.
// Twelve columns, 78 entries of 8 bytes: 624 / 2^30 GB.
ModelText MakeCantilever() {
  ModelText text;
  text.materials = {{1200.0, 0.25, 1.0}};
  text.tSections = {{2.0, 0.5, 0.0, 0.0}};
  text.nodes = {{0, 0, 0}, {2, 0, 0}};
  text.beams.resize(1);
  text.beams[0].BeamSecOz = -1.0;
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{1, {600, 0.25, 3, 40, 0, 0}}};
  return text;
}

constexpr const char* CantileverDisplacements =
    "             0:          6e-18        2.5e-21          3e-20"
    "          4e-19         -6e-20          5e-21\n"
    "             1:              1      0.0266667        0.03875"
    "              2         -0.015           0.02\n";

TEST(RunDriver, Cantilever) {
  ExpectCompleteRun(WriteModel(MakeCantilever()), "5.81145e-07", "100%Completed.",
                    CantileverDisplacements);
}

// Ten supported nodes: p = 20, 40, 60 and 80 for one column each (j = 11, 23, 35, 47).
TEST(RunDriver, ProgressStepsBackOverItself) {
  ModelText text;
  std::string displacements;
  for (int n = 0; n < 10; ++n) {
    text.nodes.push_back({1.0 * n, 0, 0});
    text.restraints.push_back({n, {1, 1, 1, 1, 1, 1}});
    displacements += "             " + std::to_string(n) +
                     ":              0              0              0"
                     "              0              0              0\n";
  }
  const std::string back(13, '\b');
  ExpectCompleteRun(WriteModel(text), "4.47035e-07",
                    "20%Completed." + back + "40%Completed." + back + "60%Completed." + back +
                        "80%Completed." + back + "100%Completed.",
                    displacements);
}

TEST(RunDriver, ModelWithoutNodes) { ExpectCompleteRun(WriteModel(ModelText()), "0", "", ""); }

TEST(RunDriver, SecondRunReplacesTheFirst) {
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", WriteModel(MakeCantilever()));
  WriteFile(folder.Path() / "Node_Dis.txt", std::string(10000, 'x'));
  WriteFile(folder.Path() / LogPath(), std::string(10000, 'x'));
  EXPECT_EQ(RunIn(folder).exitStatus, 0);
  EXPECT_EQ(RunIn(folder).exitStatus, 0);
  EXPECT_EQ(ReadFile(folder.Path() / "Node_Dis.txt"),
            std::string(DisplacementHeader) + CantileverDisplacements);
  const std::string log = ReadFile(folder.Path() / LogPath());
  EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 2);
}

TEST(RunDriver, MissingModelFile) {
  const TempFolder folder;
  for (const char* input : {"", "\n\n"}) {
    const ProgramRun run = RunIn(folder, input);
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.notices, Notices({"File Read Error!", "Preprocessor file read error!"}));
    EXPECT_EQ(ListFolder(folder.Path()), WithLog({}));
    EXPECT_EQ(ReadFile(folder.Path() / LogPath()), "");
  }
}

TEST(RunDriver, WrongRelease) {
  const TempFolder folder;
  ModelText text = MakeCantilever();
  text.release = "3.01";
  WriteFile(folder.Path() / "fem_solving.txt", WriteModel(text));
  const ProgramRun run = RunIn(folder);
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.notices, Notices({"Release File Number error!"}));
  EXPECT_EQ(ListFolder(folder.Path()), WithLog({"fem_solving.txt"}));
  EXPECT_EQ(ReadFile(folder.Path() / LogPath()), "");
}

// The log comes first: the model is not read and nothing else is written.
TEST(RunDriver, UnwritableLog) {
  const TempFolder folder;
  fs::create_directory(folder.Path() / LogPath());
  const ProgramRun run = RunIn(folder);
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.notices, Notices({"计算日志输出失败!"}));
  EXPECT_EQ(ListFolder(folder.Path()), std::vector<std::string>{LogPath().u8string()});
}

// The console up to the solution and its time.
std::string ConsoleBeforeResults() {
  const std::string console = Console("5.81145e-07", "100%Completed.");
  return console.substr(0, console.find("\tDeformation"));
}

TEST(RunDriver, UnwritableDisplacementFile) {
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", WriteModel(MakeCantilever()));
  fs::create_directory(folder.Path() / "Node_Dis.txt");
  for (const char* input : {"", "x"}) {
    const ProgramRun run = RunIn(folder, input);
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_EQ(run.err, "");
    EXPECT_TRUE(run.notices.empty());
    EXPECT_EQ(MaskTime(run.out), ConsoleBeforeResults() +
                                     "\xBD\xDA\xB5\xE3\xCE\xBB\xD2\xC6\xCE\xC4\xBC\xFE"
                                     "\xCA\xE4\xB3\xF6\xCA\xA7\xB0\xDC!\n");
    EXPECT_EQ(ListFolder(folder.Path()),
              WithLog({"fem_solving.txt", "Node_Dis.txt", "structure.dxf"}));
    EXPECT_TRUE(fs::is_empty(folder.Path() / "Node_Dis.txt"));
  }
}

TEST(RunDriver, UnwritableStructureDrawing) {
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", WriteModel(MakeCantilever()));
  fs::create_directory(folder.Path() / "structure.dxf");
  const ProgramRun run = RunIn(folder);
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.err, "");
  EXPECT_TRUE(run.notices.empty());
  EXPECT_EQ(run.out,
            "The global stiffness matrix will occupy 5.81145e-07 GB of memory space.\n"
            "\xCE\xC4\xBC\xFE\xCA\xE4\xB3\xF6\xCA\xA7\xB0\xDC!\n");
  EXPECT_EQ(ListFolder(folder.Path()), WithLog({"fem_solving.txt", "structure.dxf"}));
}

// The displacement file is complete before, and so is its line on the console.
TEST(RunDriver, UnwritableDeformationDrawing) {
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", WriteModel(MakeCantilever()));
  fs::create_directory(folder.Path() / "deformation.dxf");
  const ProgramRun run = RunIn(folder);
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(MaskTime(run.out), ConsoleBeforeResults() +
                                   "\tDeformation result file Node_Dis.txt, generated.\n"
                                   "\xCE\xC4\xBC\xFE\xCA\xE4\xB3\xF6\xCA\xA7\xB0\xDC!\n");
  EXPECT_EQ(ReadFile(folder.Path() / "Node_Dis.txt"),
            std::string(DisplacementHeader) + CantileverDisplacements);
}

// A run that stops in the detail models has written everything else before. The last line on its
// console is theirs.
void ExpectStopInDetailModels(const ProgramRun& run, const TempFolder& folder,
                              std::vector<std::string> furtherFiles,
                              const std::string& consoleEnd) {
  EXPECT_EQ(run.exitStatus, 1);
  const std::string console = MaskTime(run.out);
  const std::size_t results = console.find("Post-processing in progress...");
  ASSERT_NE(results, std::string::npos);
  const std::string complete = Console("", "");
  const std::size_t from = complete.find("Post-processing in progress...");
  const std::size_t to = complete.find("Post-processing completed.");
  EXPECT_EQ(console.substr(results), complete.substr(from, to - from) + consoleEnd);
  for (const char* name :
       {"Node_Dis.txt", "Shell element average node stress.txt", "Shell element node stress.txt",
        "deformation.dxf", "fem_solving.txt", "structure.dxf"}) {
    furtherFiles.emplace_back(name);
  }
  EXPECT_EQ(ListFolder(folder.Path()), WithLog(furtherFiles));
}

// A section type without a table stops the run only when its detail model needs the outline.
TEST(RunDriver, SectionTypeWithoutTable) {
  for (const int type : {3, -1}) {
    const TempFolder folder;
    ModelText text = MakeCantilever();
    text.beams[0].BeamSecType = type;
    WriteFile(folder.Path() / "fem_solving.txt", WriteModel(text));
    const ProgramRun run = RunIn(folder);
    EXPECT_EQ(run.notices, Notices({"梁截面类型数字错误!"}));
    ExpectStopInDetailModels(run, folder, {}, "");
    const std::string displacements = ReadFile(folder.Path() / "Node_Dis.txt");
    EXPECT_EQ(std::count(displacements.begin(), displacements.end(), '\n'), 3);
  }
}

TEST(RunDriver, UnwritableDetailStressFile) {
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", WriteModel(MakeCantilever()));
  fs::create_directory(folder.Path() / "Korvex_AverageStrs.txt");
  const ProgramRun run = RunIn(folder, "x");
  EXPECT_EQ(run.err, "");
  EXPECT_TRUE(run.notices.empty());
  // "节点应力文件输出失败!" in GBK.
  ExpectStopInDetailModels(run, folder, {"Korvex_AverageStrs.txt"},
                           "\xBD\xDA\xB5\xE3\xD3\xA6\xC1\xA6\xCE\xC4\xBC\xFE"
                           "\xCA\xE4\xB3\xF6\xCA\xA7\xB0\xDC!\n");
}

}  // namespace
}  // namespace korvex::test
