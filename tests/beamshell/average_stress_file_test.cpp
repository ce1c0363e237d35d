// The file of all averaged stresses: byte by byte for small models filled in by hand, and read back
// field by field for a solved model with beams and both kinds of shells.
#include "beamshell/average_stress_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>

#include "beamshell/generate_beam_shells.h"
#include "results/average_stresses.h"
#include "results/corner_stress.h"
#include "results/shell_stresses.h"
#include "support/model_text.h"
#include "support/solve_model.h"
#include "support/temp_folder.h"

namespace korvex::test {
namespace {

std::string WriteToText(const Model& model) {
  const WorkingFolder folder;
  WriteAverageStressFile("any name.txt", model);
  return ReadFile("any name.txt");
}

void AddNode(Model& model, double x, double y, double z, const std::array<double, 6>& u) {
  ++model.Tables.NPOIN;
  model.Tables.Nodes.push_back({x, y, z});
  model.Displacements.insert(model.Displacements.end(), u.begin(), u.end());
}

// A stress with SX = s and no other component: its von Mises stress is |s|.
StressVector Tension(double s) { return {s, 0, 0, 0, 0, 0}; }

// The detail model of a beam from (0, 0, 0) to `end` with a single shell, which is enough for the
// layout of the file.
BeamShellModel MakeDetail(const Vector3& end, double stress) {
  BeamShellModel detail;
  detail.EndPoint2 = end;
  detail.NodeCount = 3;
  detail.NodeCoords = {{0, 0, 0}, {0, 0.5, -0.25}, end};
  detail.Displacements = {1, 2, 3, 4, 5, 6, 0, 0, 0, 0, 0, 0, -1, 0.001, 1e-5, 0, 0, 1e6};
  detail.ShellCount = 1;
  detail.ShellNodes = {1, 2, 0, 1};
  detail.Shells.resize(1);
  for (std::size_t k = 0; k < 4; ++k) {
    detail.Shells[0].AvgStressTop[k] = Tension(stress + static_cast<double>(k));
    detail.Shells[0].AvgStressBottom[k] = Tension(-stress);
    detail.Shells[0].NodeStressTop[k] = Tension(77);  // not written
  }
  detail.LinkCount = 2;  // not written
  return detail;
}

TEST(AverageStressFile, TwoBeamsAndBothKindsOfShellsByteByByte) {
  Model model;
  AddNode(model, 0, 0, 0, {0, 0, 0, 0, 0, 0});
  AddNode(model, 1000, 0, 0, {1.5, -2.25, 3, 0, 1e-20, 0});
  AddNode(model, 1000, 0.123456789, 1e7, {123456.5, 1234567, 0.0001, 0.00001, -0.1, 100});
  AddNode(model, 0, -1, 0, {0, 0, 0, 0, 0, 1});
  model.Tables.NELEM_S_4ND = 1;
  model.Tables.Shell4Nodes = {0, 1, 2, 3};
  model.Shell4Elements.resize(1);
  model.Shell4Elements[0].NodeStressTop[0] = Tension(77);  // not written
  model.Shell4Elements[0].AvgStressTop[0] = Tension(100);
  model.Shell4Elements[0].AvgStressBottom[0] = {1, 2, 3, 4, 5, 6};
  model.Shell4Elements[0].AvgStressTop[3] = {0, 0, 0, 0, 0, -10};
  model.Tables.NELEM_S_3ND = 1;
  model.Tables.Shell3Nodes = {0, 1, 2};
  model.Shell3Elements.resize(1);
  model.Shell3Elements[0].AvgStressBottom[2] = {50, 50, 50, 0, 0, 0};
  model.Tables.NELEM_B = 2;
  model.BeamShellModels = {MakeDetail({1000, 0, 0}, 5), MakeDetail({0, -1, 0}, 7.5)};

  // Von Mises stresses: of a hydrostatic state 0; of (1 .. 6) sqrt((1 + 1 + 4 + 6 x 77) / 2) =
  // sqrt(234) = 15.2971; of a shear 10 sqrt(3) x 10 = 17.3205.
  const std::string noStress = "0,0,0,0,0,0,0\n";
  EXPECT_EQ(WriteToText(model),
            "NPOIN=4\n"
            "0,0,0\n"
            "1000,0,0\n"
            "1000,0.123457,1e+07\n"
            "0,-1,0\n"
            "0,0,0,0,0,0\n"
            "1.5,-2.25,3,0,1e-20,0\n"
            "123456,1.23457e+06,0.0001,1e-05,-0.1,100\n"
            "0,0,0,0,0,1\n"
            "NELEM_S_4ND=1\n"
            "0,1,2,3\n"
            "100,0,0,0,0,0,100\n"
            "1,2,3,4,5,6,15.2971\n" +
                noStress + noStress + noStress + noStress + "0,0,0,0,0,-10,17.3205\n" + noStress +
                "NELEM_S_3ND=1\n"
                "0,1,2\n" +
                noStress + noStress + noStress + noStress + noStress +
                "50,50,50,0,0,0,0\n"
                "NELEM_B=2\n"
                "BEI=0\n"
                "SND(0,0,0)\n"
                "END(1000,0,0)\n"
                "NPOIN=3\n"
                "0,0,0\n"
                "0,0.5,-0.25\n"
                "1000,0,0\n"
                "1,2,3,4,5,6\n"
                "0,0,0,0,0,0\n"
                "-1,0.001,1e-05,0,0,1e+06\n"
                "NELEM=1\n"
                "1,2,0,1\n"
                "5,0,0,0,0,0,5\n"
                "-5,0,0,0,0,0,5\n"
                "6,0,0,0,0,0,6\n"
                "-5,0,0,0,0,0,5\n"
                "7,0,0,0,0,0,7\n"
                "-5,0,0,0,0,0,5\n"
                "8,0,0,0,0,0,8\n"
                "-5,0,0,0,0,0,5\n"
                "BEI=1\n"
                "SND(0,0,0)\n"
                "END(0,-1,0)\n"
                "NPOIN=3\n"
                "0,0,0\n"
                "0,0.5,-0.25\n"
                "0,-1,0\n"
                "1,2,3,4,5,6\n"
                "0,0,0,0,0,0\n"
                "-1,0.001,1e-05,0,0,1e+06\n"
                "NELEM=1\n"
                "1,2,0,1\n"
                "7.5,0,0,0,0,0,7.5\n"
                "-7.5,0,0,0,0,0,7.5\n"
                "8.5,0,0,0,0,0,8.5\n"
                "-7.5,0,0,0,0,0,7.5\n"
                "9.5,0,0,0,0,0,9.5\n"
                "-7.5,0,0,0,0,0,7.5\n"
                "10.5,0,0,0,0,0,10.5\n"
                "-7.5,0,0,0,0,0,7.5\n");
}

TEST(AverageStressFile, ModelWithoutBeamsEndsWithTheirCount) {
  Model model;
  AddNode(model, 1, 2, 3, {});
  EXPECT_EQ(WriteToText(model),
            "NPOIN=1\n1,2,3\n0,0,0,0,0,0\nNELEM_S_4ND=0\nNELEM_S_3ND=0\nNELEM_B=0\n");
}

TEST(AverageStressFile, EmptyModel) {
  EXPECT_EQ(WriteToText(Model()), "NPOIN=0\nNELEM_S_4ND=0\nNELEM_S_3ND=0\nNELEM_B=0\n");
}

// SND and END are the end points of the beam, not the first and the last node of the detail model,
// which may have no nodes.
TEST(AverageStressFile, DetailModelWithoutShells) {
  Model model;
  model.Tables.NELEM_B = 1;
  model.BeamShellModels.resize(1);
  model.BeamShellModels[0].EndPoint1 = {1, 2, 3};
  EXPECT_EQ(WriteToText(model),
            "NPOIN=0\nNELEM_S_4ND=0\nNELEM_S_3ND=0\nNELEM_B=1\n"
            "BEI=0\nSND(1,2,3)\nEND(0,0,0)\nNPOIN=0\nNELEM=0\n");
}

TEST(AverageStressFile, ReplacesAnOlderFile) {
  const WorkingFolder folder;
  WriteFile("file", std::string(1000, 'x'));
  WriteAverageStressFile("file", Model());
  EXPECT_EQ(ReadFile("file").size(),
            std::string("NPOIN=0NELEM_S_4ND=0NELEM_S_3ND=0NELEM_B=0").size() + 4);
}

// Reads the file's lines in turn.
class FileReader {
 public:
  explicit FileReader(const std::string& bytes) : lines_(bytes) {}

  std::string Line() {
    std::string line;
    EXPECT_TRUE(std::getline(lines_, line));
    return line;
  }

  // The numbers of a line, separated by commas only.
  std::vector<double> Row() {
    std::string line = Line();
    EXPECT_EQ(line.find_first_not_of("0123456789+-.e,"), std::string::npos) << line;
    std::replace(line.begin(), line.end(), ',', ' ');
    std::istringstream fields(line);
    std::vector<double> values;
    for (double value = 0.0; fields >> value;) values.push_back(value);
    return values;
  }

  bool AtEnd() { return lines_.peek() == std::istringstream::traits_type::eof(); }

 private:
  std::istringstream lines_;
};

// Six significant digits: half a unit of the sixth.
void ExpectRow(FileReader& file, const std::vector<double>& expected) {
  const std::vector<double> row = file.Row();
  ASSERT_EQ(row.size(), expected.size());
  for (std::size_t i = 0; i < row.size(); ++i) {
    EXPECT_NEAR(row[i], expected[i], 5.01e-6 * std::fabs(expected[i]));
  }
}

template <std::int32_t Nodes>
void ExpectShells(FileReader& file, const std::vector<ShellElement<Nodes>>& shells,
                  const std::vector<std::int32_t>& connectivity) {
  for (std::size_t e = 0; e < shells.size(); ++e) {
    const auto first = connectivity.begin() + static_cast<std::ptrdiff_t>(e) * Nodes;
    ExpectRow(file, std::vector<double>(first, first + Nodes));
    for (std::size_t k = 0; k < static_cast<std::size_t>(Nodes); ++k) {
      for (const StressVector& face : {shells[e].AvgStressTop[k], shells[e].AvgStressBottom[k]}) {
        std::vector<double> values(face.begin(), face.end());
        values.push_back(EquivalentStress(face));
        ExpectRow(file, values);
      }
    }
  }
}

void ExpectNodes(FileReader& file, const std::vector<Vector3>& nodes,
                 const std::vector<double>& displacements) {
  for (const Vector3& node : nodes) ExpectRow(file, {node[0], node[1], node[2]});
  for (std::size_t first = 0; first < displacements.size(); first += 6) {
    const auto begin = displacements.begin() + static_cast<std::ptrdiff_t>(first);
    ExpectRow(file, std::vector<double>(begin, begin + 6));
  }
}

// A cantilever plate of a quadrilateral and two triangles, a T stiffener along one edge and a tube
// along the other.
//
//   1---3---5     y
//   | 0 |1/ |     |
//   0---2---4     o--x
ModelText MakeStiffenedPlate() {
  ModelText text;
  text.materials = {{2e11, 0.3, 7850.0}, {7e10, 0.33, 2700.0}};
  text.thicknesses = {0.02};
  text.tSections = {{0.3, 0.01, 0.1, 0.012}};
  text.cSections = {{0.1, 0.005}};
  for (const double x : {0.0, 1.0, 2.5}) {
    for (const double y : {0.0, 1.0}) text.nodes.push_back({x, y, 0.125});
  }
  text.shells4 = {{{0, 2, 3, 1}}};
  text.shells3 = {{{2, 4, 5}}, {{2, 5, 3}}};
  text.beams.resize(3);
  text.beams[0].node2 = 2;
  text.beams[1].node1 = 2;
  text.beams[1].node2 = 4;
  text.beams[2].node1 = 1;
  text.beams[2].node2 = 3;
  text.beams[2].material = 1;
  text.beams[2].BeamSecType = BeamSecTypeC;
  text.beams[2].BeamSecOz = -0.05;
  for (const int n : {0, 1}) text.restraints.push_back({n, {1, 1, 1, 1, 1, 1}});
  text.forces = {{4, {3000, 0, -10000, 0, 0, 0}}, {5, {0, 500, -2000, 0, 0, 0}}};
  return text;
}

TEST(AverageStressFile, SolvedModelReadBackFieldByField) {
  Model model;
  SolveModel(MakeStiffenedPlate(), model);
  RecoverShellStresses(model);
  AverageNodeStresses(model);
  GenerateBeamShells(model);
  FileReader file(WriteToText(model));

  EXPECT_EQ(file.Line(), "NPOIN=6");
  std::vector<Vector3> nodes;
  for (const Node& node : model.Tables.Nodes) nodes.push_back({node.x, node.y, node.z});
  ExpectNodes(file, nodes, model.Displacements);
  EXPECT_EQ(file.Line(), "NELEM_S_4ND=1");
  ExpectShells(file, model.Shell4Elements, model.Tables.Shell4Nodes);
  EXPECT_EQ(file.Line(), "NELEM_S_3ND=2");
  ExpectShells(file, model.Shell3Elements, model.Tables.Shell3Nodes);
  EXPECT_EQ(file.Line(), "NELEM_B=3");
  ASSERT_EQ(model.BeamShellModels.size(), 3U);
  const char* ends[3][2] = {{"SND(0,0,0.125)", "END(1,0,0.125)"},
                            {"SND(1,0,0.125)", "END(2.5,0,0.125)"},
                            {"SND(0,1,0.125)", "END(1,1,0.125)"}};
  // T: segments of at most 0.106; 1 / 0.106 gives 9 steps and 1.5 / 0.106 gives 14; 6 points and 5
  // segments. Tube: segments of 2 x 0.1 sin(22.5 degrees) = 0.0765, 13 steps, 8 points and
  // segments.
  const std::int32_t nodeCounts[3] = {6 * 10 + 2, 6 * 15 + 2, 8 * 14 + 2};
  const std::int32_t shellCounts[3] = {5 * 9, 5 * 14, 8 * 13};
  for (std::size_t b = 0; b < 3; ++b) {
    const BeamShellModel& detail = model.BeamShellModels[b];
    EXPECT_EQ(file.Line(), "BEI=" + std::to_string(b));
    EXPECT_EQ(file.Line(), ends[b][0]);
    EXPECT_EQ(file.Line(), ends[b][1]);
    EXPECT_EQ(file.Line(), "NPOIN=" + std::to_string(nodeCounts[b]));
    ExpectNodes(file, detail.NodeCoords, detail.Displacements);
    EXPECT_EQ(file.Line(), "NELEM=" + std::to_string(shellCounts[b]));
    ExpectShells(file, detail.Shells, detail.ShellNodes);
  }
  EXPECT_TRUE(file.AtEnd());
}

// By pieces of one and of two beams, on one thread and on three.
TEST(AverageStressFile, InPiecesHasTheSameBytes) {
  Model model;
  SolveModel(MakeStiffenedPlate(), model);
  RecoverShellStresses(model);
  AverageNodeStresses(model);
  GenerateBeamShells(model);
  const std::string whole = WriteToText(model);
  const WorkingFolder folder;
  for (const int threads : {1, 3}) {
    ResultFile file;
    BeginAverageStressFile("pieces.txt", model, threads, file);
    AddDetailModels(0, &model.BeamShellModels[0], 1, file);
    AddDetailModels(1, &model.BeamShellModels[1], 2, file);
    AddDetailModels(3, nullptr, 0, file);
    EXPECT_TRUE(CloseResultFile(file));
    EXPECT_EQ(ReadFile("pieces.txt"), whole);
  }
}

}  // namespace
}  // namespace korvex::test
