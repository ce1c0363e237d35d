// Whole runs of models with shells as a process: the console, every file, stresses against statics,
// and stress files that cannot be written.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <sstream>

#include "support/dof_names.h"
#include "support/model_text.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace korvex::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* ElementFileName = "Shell element node stress.txt";
constexpr const char* AverageFileName = "Shell element average node stress.txt";

// "单元节点应力文件输出失败!" in GBK.
constexpr const char* StressFileFailed =
    "\xB5\xA5\xD4\xAA\xBD\xDA\xB5\xE3\xD3\xA6\xC1\xA6\xCE\xC4\xBC\xFE"
    "\xCA\xE4\xB3\xF6\xCA\xA7\xB0\xDC!\n";

std::size_t Count(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

constexpr std::size_t SE = 6;  // behind the six components

// One line of a stress file: node, SX to TYZ, SE.
struct StressLine {
  int node = -1;
  std::array<double, 7> values{};
};

// The lines of a stress file, two for each corner, upper face first; by title.
using StressBlocks = std::map<std::string, std::vector<StressLine>>;

StressBlocks ParseStressFile(const std::string& bytes) {
  StressBlocks blocks;
  std::istringstream file(bytes);
  std::string line, title, header;
  while (std::getline(file, line)) {
    if (line.find("element:") != std::string::npos) {
      title = line;
      std::getline(file, header);
      continue;
    }
    std::istringstream fields(line);
    StressLine row;
    char colon = 0;
    fields >> row.node >> colon;
    for (double& value : row.values) fields >> value;
    EXPECT_TRUE(fields && colon == ':') << line;
    blocks[title].push_back(row);
  }
  return blocks;
}

// The rows of Node_Dis.txt without its header.
std::vector<std::array<double, 6>> ParseDisplacements(const std::string& bytes) {
  std::istringstream file(bytes);
  std::string line;
  std::getline(file, line);
  std::vector<std::array<double, 6>> rows;
  while (std::getline(file, line)) {
    std::istringstream fields(line.substr(15));
    rows.emplace_back();
    for (double& value : rows.back()) fields >> value;
    EXPECT_TRUE(fields) << line;
  }
  return rows;
}

// A cantilever plate of 3 x 1 m, clamped along x = 0, of two quadrilaterals and two triangles, with
// a flat bar (=) along its edge y = 0. Pressures on quadrilateral 1 and on triangle 0, the lower
// one, and a force on node 7. N, m, Pa.
//
//   1---3---5---7     y
//   | 0 | 1 |1/ |
//   |   |   | /0|     |
//   0===2===4===6     o--x
ModelText MakePlate() {
  ModelText text;
  text.materials = {{2e11, 0.3, 7850.0}};
  text.thicknesses = {0.02};
  text.tSections = {{0.1, 0.01, 0.0, 0.0}};
  for (const double x : {0.0, 1.0, 2.0, 3.0}) {
    for (const double y : {0.0, 1.0}) text.nodes.push_back({x, y, 0.0});
  }
  text.shells4 = {{{0, 2, 3, 1}}, {{2, 4, 5, 3}}};
  text.shells3 = {{{4, 6, 7}}, {{4, 7, 5}}};
  for (int n = 0; n < 6; n += 2) {
    text.beams.emplace_back();
    text.beams.back().node1 = n;
    text.beams.back().node2 = n + 2;
  }
  for (const int n : {0, 1}) text.restraints.push_back({n, {1, 1, 1, 1, 1, 1}});
  text.forces = {{7, SingleLoad(Fz, -100.0)}};
  text.shell4Loads = {{1, {-1000, -1000, -1000}}};
  text.shell3Loads = {{0, {-600, -600, -600}}};
  return text;
}

// The lowest neighbours of nodes 0 to 7 are 0, 0, 0, 0, 2, 2, 4, 4. A node that reaches b nodes
// back has 36 b + 21 entries: 36 x (0 + 1 + 2 + 3 + 2 + 3 + 2 + 3) + 8 x 21 = 744, and 8 x 744 /
// 2^30 = 5.54323e-06.
constexpr const char* PlateEstimate =
    "The global stiffness matrix will occupy 5.54323e-06 GB of memory space.\n";

// A complete run in a temporary folder.
struct PlateRun {
  explicit PlateRun(const ModelText& text) {
    WriteFile(folder.Path() / "fem_solving.txt", WriteModel(text));
    run = RunProgram(KORVEX_PROGRAM, folder.Path());
  }
  std::string Read(const fs::path& name) const { return ReadFile(folder.Path() / name); }

  TempFolder folder;
  ProgramRun run;
};

// The console from the results on.
std::string ResultLines(const std::string& console) {
  return console.substr(console.find("Post-processing in progress..."));
}

TEST(ShellRun, ConsoleAndFilesOfAPlate) {
  const PlateRun plate(MakePlate());
  EXPECT_EQ(plate.run.exitStatus, 0);
  EXPECT_EQ(plate.run.err, "");
  EXPECT_TRUE(plate.run.notices.empty());
  const std::string console = MaskTime(plate.run.out);
  EXPECT_EQ(console.find(std::string(PlateEstimate) + "Assembling the global stiffness matrix...\n"
                                                      "Solute the equilibrium equations..."),
            0U);
  EXPECT_NE(console.find("100%Completed.(Solution time:# seconds)\nPost-processing in progress..."),
            std::string::npos);
  EXPECT_EQ(
      ResultLines(console),
      "Post-processing in progress...\n"
      "\tDeformation result file Node_Dis.txt, generated.\n"
      "\tShell element average node stress.txt, generated.\n"
      "\tGenerating Beam-Shells. The detailed stress calculation may take a considerable amount "
      "of time. Please wait patiently...\n"
      "Post-processing completed.\n");
  EXPECT_EQ(ListFolder(plate.folder.Path()),
            WithLog({"Korvex_AverageStrs.txt", "Node_Dis.txt", AverageFileName, ElementFileName,
                     "deformation.dxf", "fem_solving.txt", "structure.dxf"}));
  EXPECT_EQ(Count(plate.Read(LogPath()), "\n"), 2U);
}

// Four edges of each quadrilateral and three of each triangle; a beam has none.
TEST(ShellRun, DrawingsHoldTheEdgesOfTheShells) {
  const PlateRun plate(MakePlate());
  for (const char* name : {"structure.dxf", "deformation.dxf"}) {
    EXPECT_EQ(Count(plate.Read(name), "LINE\n"), 14U) << name;
  }
  // The first edge, from node 0 to node 2, as it lies in the model.
  EXPECT_EQ(plate.Read("structure.dxf")
                .find("  0\nSECTION\n  2\nENTITIES\n  0\nLINE\n  8\n0\n"
                      " 10\n0\n 20\n0\n 30\n0\n 11\n1\n 21\n0\n 31\n0\n  0\nLINE\n"),
            0U);
}

// The loads, all downwards: 1000 N on the square, with its centroid at (1.5, 0.5); 600 x 0.5 =
// 300 N on the triangle 4-6-7, at (8/3, 1/3); 100 N at (3, 1). The supports carry 1400 N upwards.
// About X a force F along Z has the moment y F: 500 + 100 + 100 = 700 N m. About Y it has -x F; all
// of it is -(1500 + 800 + 300) = -2600 N m. R = -1e20 u, six digits of some 1000 N or N m: 0.005.
TEST(ShellRun, SupportForcesBalancePressuresAndForces) {
  const PlateRun plate(MakePlate());
  const auto u = ParseDisplacements(plate.Read("Node_Dis.txt"));
  ASSERT_EQ(u.size(), 8U);
  EXPECT_NEAR(-1e20 * (u[0][Uz] + u[1][Uz]), 1400.0, 0.05);
  EXPECT_NEAR(-1e20 * (u[0][Rx] + u[1][Rx] + 1.0 * u[1][Uz]), 700.0, 0.05);  // node 1 at y = 1
  EXPECT_NEAR(-1e20 * (u[0][Ry] + u[1][Ry]), -2600.0, 0.05);                 // both at x = 0
  EXPECT_LT(u[7][Uz], 0.0);                                                  // down, with the loads
}

// Titles, nodes in the order of the model, faces in pairs.
TEST(ShellRun, StressFilesListElementsAndNodes) {
  const PlateRun plate(MakePlate());
  const StressBlocks own = ParseStressFile(plate.Read(ElementFileName));
  const StressBlocks average = ParseStressFile(plate.Read(AverageFileName));
  EXPECT_EQ(own.size(), 4U);
  EXPECT_EQ(average.size(), 4U);
  const auto expectNodes = [](const std::vector<StressLine>& lines, const std::vector<int>& nodes) {
    ASSERT_EQ(lines.size(), 2 * nodes.size());
    for (std::size_t i = 0; i < lines.size(); ++i) EXPECT_EQ(lines[i].node, nodes[i / 2]);
  };
  expectNodes(own.at("Four-nodes shell element:0"), {0, 2, 3, 1});
  expectNodes(own.at("Four-nodes shell element:1"), {2, 4, 5, 3});
  expectNodes(own.at("Three-nodes shell element:0"), {4, 6, 7});
  expectNodes(own.at("Three-nodes shell element:1"), {4, 7, 5});
  expectNodes(average.at("Four-nodes element:0"), {0, 2, 3, 1});
  expectNodes(average.at("Four-nodes element:1"), {2, 4, 5, 3});
  expectNodes(average.at("Three-nodes element:0"), {4, 6, 7});
  expectNodes(average.at("Three-nodes element:1"), {4, 7, 5});
}

// The values of all corners at a node in a stress file, by node and face (0: upper).
using NodeValues = std::map<std::pair<int, std::size_t>, std::vector<std::array<double, 7>>>;

NodeValues GatherByNode(const StressBlocks& blocks) {
  NodeValues values;
  for (const auto& block : blocks) {
    for (std::size_t i = 0; i < block.second.size(); ++i) {
      values[{block.second[i].node, i % 2}].push_back(block.second[i].values);
    }
  }
  return values;
}

// All elements lie in one plane and have the same normal and thickness: the average at a node is
// the mean over all elements at it, and is the same in all their blocks. At a node of a single
// element both files have the same line.
TEST(ShellRun, AveragesAreTheMeansOfTheElementFile) {
  const PlateRun plate(MakePlate());
  const NodeValues own = GatherByNode(ParseStressFile(plate.Read(ElementFileName)));
  const NodeValues average = GatherByNode(ParseStressFile(plate.Read(AverageFileName)));
  EXPECT_EQ(own.size(), 16U);  // eight nodes, two faces
  for (const auto& [place, corners] : own) {
    SCOPED_TRACE(place.first);
    const auto& averages = average.at(place);
    ASSERT_EQ(averages.size(), corners.size());
    for (const auto& values : averages) EXPECT_EQ(values, averages[0]);
    if (corners.size() == 1) {
      EXPECT_EQ(averages, corners);
    }
    for (std::size_t c = 0; c < 6; ++c) {
      double sum = 0.0, size = 0.0;
      for (const auto& corner : corners) {
        sum += corner[c];
        size = std::max(size, std::fabs(corner[c]));
      }
      // Half a unit of the sixth digit in each printed value, mean and average alike.
      EXPECT_NEAR(averages[0][c], sum / static_cast<double>(corners.size()), 1e-5 * size);
    }
  }
}

// Plane stress in X and Y: SE^2 = SX^2 - SX SY + SY^2 + 3 TXY^2. From values of six digits, of
// which none exceeds SE by more than 2 / sqrt(3), SE comes out to a few units of the sixth digit.
TEST(ShellRun, EquivalentStressesFollowFromTheirLines) {
  const PlateRun plate(MakePlate());
  for (const char* name : {ElementFileName, AverageFileName}) {
    for (const auto& block : ParseStressFile(plate.Read(name))) {
      for (const StressLine& line : block.second) {
        const auto& s = line.values;
        const double se =
            std::sqrt(s[SX] * s[SX] - s[SX] * s[SY] + s[SY] * s[SY] + 3 * s[TXY] * s[TXY]);
        EXPECT_NEAR(s[SE], se, 2e-5 * se) << name << ' ' << block.first << ' ' << line.node;
        EXPECT_GT(se, 0.0);
      }
    }
  }
}

// Two squares of 1 m side and 0.5 m thickness, pulled along X with 2 x 25 N at the far edge: the
// stress is 50 / (1 x 0.5) = 100 everywhere. With E = 1000 and Mu = 0.25 the far edge moves by
// 2 x 0.1 = 0.2 and the edges Y = 1 by -0.025. Node 0 is fixed; node 1 can move along Y only.
ModelText MakeStrip() {
  ModelText text;
  text.materials = {{1000.0, 0.25, 1.0}};
  text.thicknesses = {0.5};
  text.nodes = {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {1, 1, 0}, {2, 0, 0}, {2, 1, 0}};
  text.shells4 = {{{0, 2, 3, 1}}, {{2, 4, 5, 3}}};
  text.restraints = {{0, {1, 1, 1, 1, 1, 0}}, {1, {1, 0, 1, 1, 1, 0}}};
  text.forces = {{4, SingleLoad(Fx, 25.0)}, {5, SingleLoad(Fx, 25.0)}};
  return text;
}

// A line of the strip: SX and SE are 100. The element's axes are the global ones, so that SZ, TXZ
// and TYZ are exactly zero. SY and TXY are rounding errors of at most 1e-10 of E.
void ExpectStripLine(const std::string& line, int node) {
  const auto column = [&](std::size_t c) { return line.substr(15 * c, 15); };
  const std::string zero = "              0", hundred = "            100";
  ASSERT_EQ(line.size(), 8U * 15U) << line;
  EXPECT_EQ(column(0), "             " + std::to_string(node) + ":");
  EXPECT_EQ(column(1), hundred);
  EXPECT_NEAR(std::stod(column(2)), 0.0, 1e-7);
  EXPECT_EQ(column(3), zero);
  EXPECT_NEAR(std::stod(column(4)), 0.0, 1e-7);
  EXPECT_EQ(column(5), zero);
  EXPECT_EQ(column(6), zero);
  EXPECT_EQ(column(7), hundred);
}

TEST(ShellRun, PulledStrip) {
  const PlateRun strip(MakeStrip());
  ASSERT_EQ(strip.run.exitStatus, 0);
  const std::array<std::array<int, 4>, 2> nodes{{{0, 2, 3, 1}, {2, 4, 5, 3}}};
  for (const std::string name : {ElementFileName, AverageFileName}) {
    SCOPED_TRACE(name);
    const std::string title =
        name == ElementFileName ? "Four-nodes shell element:" : "Four-nodes element:";
    std::istringstream file(strip.Read(name));
    std::string line;
    for (std::size_t e = 0; e < 2; ++e) {
      std::getline(file, line);
      EXPECT_EQ(line, title + std::to_string(e));
      std::getline(file, line);
      EXPECT_EQ(line,
                "           Node             SX             SY             SZ"
                "            TXY            TXZ            TYZ             SE");
      for (std::size_t i = 0; i < 8; ++i) {
        std::getline(file, line);
        ExpectStripLine(line, nodes[e][i / 2]);
      }
    }
    EXPECT_FALSE(std::getline(file, line));
  }
  const auto u = ParseDisplacements(strip.Read("Node_Dis.txt"));
  EXPECT_NEAR(u[5][Ux], 0.2, 1e-6);  // six digits
  EXPECT_NEAR(u[5][Uy], -0.025, 1e-7);
}

// The strip above, bent by 2 x 1/24 N m about +Y at the far edge. The moment per length is m =
// 1/12, the stress on the faces 6 m / t^2 = 0.5 / 0.25 = 2. A moment about +Y rotates the end's z
// axis towards +x: the upper face (z > 0) is in tension. With Mu = 0 there is no stress across.
TEST(ShellRun, BentStripHasOppositeFaces) {
  ModelText text = MakeStrip();
  text.materials = {{1000.0, 0.0, 1.0}};
  text.forces = {{4, SingleLoad(My, 1.0 / 24.0)}, {5, SingleLoad(My, 1.0 / 24.0)}};
  const PlateRun strip(text);
  ASSERT_EQ(strip.run.exitStatus, 0);
  const StressBlocks blocks = ParseStressFile(strip.Read(ElementFileName));
  ASSERT_EQ(blocks.size(), 2U);
  for (const auto& block : blocks) {
    for (std::size_t i = 0; i < block.second.size(); ++i) {
      EXPECT_NEAR(block.second[i].values[SX], i % 2 == 0 ? 2.0 : -2.0, 1e-5);  // six digits
      EXPECT_NEAR(block.second[i].values[SE], 2.0, 1e-5);
    }
  }
}

// Runs the plate where a folder has the name of a stress file. Expects the message, and that the
// working folder then holds `files` and nothing else.
void ExpectUnwritable(const char* name, const std::vector<std::string>& files) {
  const TempFolder folder;
  WriteFile(folder.Path() / "fem_solving.txt", WriteModel(MakePlate()));
  fs::create_directory(folder.Path() / name);
  for (const char* input : {"", "x"}) {  // with and without a character to wait for
    const ProgramRun run = RunProgram(KORVEX_PROGRAM, folder.Path(), input);
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_EQ(run.err, "");
    EXPECT_TRUE(run.notices.empty());
    EXPECT_EQ(ResultLines(run.out),
              std::string("Post-processing in progress...\n"
                          "\tDeformation result file Node_Dis.txt, generated.\n") +
                  StressFileFailed);
    EXPECT_EQ(ListFolder(folder.Path()), WithLog(files));
    EXPECT_TRUE(fs::is_empty(folder.Path() / name));
  }
}

// The element stress file comes first: there is no average file either.
TEST(ShellRun, UnwritableElementStressFile) {
  ExpectUnwritable(ElementFileName, {ElementFileName, "Node_Dis.txt", "deformation.dxf",
                                     "fem_solving.txt", "structure.dxf"});
}

TEST(ShellRun, UnwritableAverageStressFile) {
  ExpectUnwritable(AverageFileName, {ElementFileName, AverageFileName, "Node_Dis.txt",
                                     "deformation.dxf", "fem_solving.txt", "structure.dxf"});
}

}  // namespace
}  // namespace korvex::test
