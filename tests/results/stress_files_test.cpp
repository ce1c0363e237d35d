// The two stress files byte by byte, the von Mises stress in them, and the stop where they cannot
// be written.
#include "results/stress_files.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "results/average_stresses.h"
#include "support/expect_stop.h"
#include "support/temp_folder.h"

namespace korvex {
namespace {

constexpr const char* ElementFileName = "Shell element node stress.txt";
constexpr const char* AverageFileName = "Shell element average node stress.txt";

// Eight columns of fifteen.
constexpr const char* Header =
    "           Node             SX             SY             SZ"
    "            TXY            TXZ            TYZ             SE\n";

std::string WriteElementFile(const Model& model) {
  const test::WorkingFolder folder;
  EXPECT_TRUE(WriteElementNodeStresses(ElementFileName, model));
  return test::ReadFile(ElementFileName);
}

std::string WriteAverageFile(const Model& model) {
  const test::WorkingFolder folder;
  EXPECT_TRUE(WriteAverageNodeStresses(AverageFileName, model));
  return test::ReadFile(AverageFileName);
}

// Two quadrilaterals and a triangle. Stresses are zero unless a test sets them.
Model MakeModel() {
  Model model;
  model.Tables.NPOIN = 124;
  model.Tables.NELEM_S_4ND = 2;
  model.Shell4Elements.resize(2);
  model.Tables.Shell4Nodes = {0, 1, 2, 3, 1, 123, 45, 2};
  model.Tables.NELEM_S_3ND = 1;
  model.Shell3Elements.resize(1);
  model.Tables.Shell3Nodes = {45, 6, 2};
  return model;
}

// One triangle, with `stress` on the upper face of its first corner.
Model MakeTriangle(const StressVector& stress) {
  Model model;
  model.Tables.NPOIN = 3;
  model.Tables.NELEM_S_3ND = 1;
  model.Shell3Elements.resize(1);
  model.Tables.Shell3Nodes = {0, 1, 2};
  model.Shell3Elements[0].NodeStressTop[0] = stress;
  return model;
}

// The last fifteen places of the line of MakeTriangle's stress.
std::string PrintedEquivalentStress(const StressVector& stress) {
  const std::string file = WriteElementFile(MakeTriangle(stress));
  const std::size_t title = file.find('\n') + 1;
  const std::size_t header = file.find('\n', title) + 1;
  return file.substr(file.find('\n', header) - 15, 15);
}

constexpr const char* ZeroValues =
    "              0              0              0              0"
    "              0              0              0\n";

// SX, SY, SZ, TXY, TXZ, TYZ. The von Mises stresses of the lines that are not zero:
//   300, 0, 0; no shear: 300.                  -120.5, 0, 0: 120.5.
//   TXY = 100: 100 sqrt(3) = 173.205.          10, 20, 30: sqrt(0.5 (100 + 100 + 400)) = 17.3205.
//   -7, -7, -7, a pressure from all sides: 0.  TXZ = 3, TYZ = -4: sqrt(3 x 25) = 8.66025.
//   1e-5, TXY = 1e9: 1.73205e+09.
constexpr std::array<StressVector, 7> Stresses{{{300, 0, 0, 0, 0, 0},
                                                {-120.5, 0, 0, 0, 0, 0},
                                                {0, 0, 0, 100, 0, 0},
                                                {10, 20, 30, 0, 0, 0},
                                                {-7, -7, -7, 0, 0, 0},
                                                {0, 0, 0, 0, 3, -4},
                                                {1e-5, 0, 0, 1e9, 0, 0}}};

// Puts the stresses above into corners of all three elements. top(element) and bottom(element)
// return the corner stresses to set: the recovered ones or the averages.
template <typename Top, typename Bottom>
void SetStresses(Model& model, Top top, Bottom bottom) {
  top(model.Shell4Elements[0])[0] = Stresses[0];
  bottom(model.Shell4Elements[0])[0] = Stresses[1];
  bottom(model.Shell4Elements[0])[3] = Stresses[2];
  top(model.Shell4Elements[1])[1] = Stresses[3];
  top(model.Shell4Elements[1])[2] = Stresses[4];
  bottom(model.Shell3Elements[0])[0] = Stresses[5];
  top(model.Shell3Elements[0])[2] = Stresses[6];
}

// The lines below the title of each element of MakeModel with these stresses.
constexpr const char* FirstBlock =
    "             0:            300              0              0              0"
    "              0              0            300\n"
    "             0:         -120.5              0              0              0"
    "              0              0          120.5\n"
    "             1:              0              0              0              0"
    "              0              0              0\n"
    "             1:              0              0              0              0"
    "              0              0              0\n"
    "             2:              0              0              0              0"
    "              0              0              0\n"
    "             2:              0              0              0              0"
    "              0              0              0\n"
    "             3:              0              0              0              0"
    "              0              0              0\n"
    "             3:              0              0              0            100"
    "              0              0        173.205\n";

constexpr const char* SecondBlock =
    "             1:              0              0              0              0"
    "              0              0              0\n"
    "             1:              0              0              0              0"
    "              0              0              0\n"
    "           123:             10             20             30              0"
    "              0              0        17.3205\n"
    "           123:              0              0              0              0"
    "              0              0              0\n"
    "            45:             -7             -7             -7              0"
    "              0              0              0\n"
    "            45:              0              0              0              0"
    "              0              0              0\n"
    "             2:              0              0              0              0"
    "              0              0              0\n"
    "             2:              0              0              0              0"
    "              0              0              0\n";

constexpr const char* TriangleBlock =
    "            45:              0              0              0              0"
    "              0              0              0\n"
    "            45:              0              0              0              0"
    "              3             -4        8.66025\n"
    "             6:              0              0              0              0"
    "              0              0              0\n"
    "             6:              0              0              0              0"
    "              0              0              0\n"
    "             2:          1e-05              0              0          1e+09"
    "              0              0    1.73205e+09\n"
    "             2:              0              0              0              0"
    "              0              0              0\n";

// A file of all three blocks with its titles.
std::string File(const std::string& title4, const std::string& title3) {
  return title4 + "0\n" + Header + FirstBlock + title4 + "1\n" + Header + SecondBlock + title3 +
         "0\n" + Header + TriangleBlock;
}

// The averages are zero here, so a file of averages would differ.
TEST(StressFiles, ElementFileHoldsTheRecoveredStresses) {
  Model model = MakeModel();
  SetStresses(
      model, [](auto& element) { return element.NodeStressTop.data(); },
      [](auto& element) { return element.NodeStressBottom.data(); });
  EXPECT_EQ(WriteElementFile(model),
            File("Four-nodes shell element:", "Three-nodes shell element:"));
}

TEST(StressFiles, AverageFileHoldsTheAverages) {
  Model model = MakeModel();
  SetStresses(
      model, [](auto& element) { return element.AvgStressTop.data(); },
      [](auto& element) { return element.AvgStressBottom.data(); });
  EXPECT_EQ(WriteAverageFile(model), File("Four-nodes element:", "Three-nodes element:"));
}

TEST(StressFiles, WithoutShellsBothAreEmpty) {
  const test::WorkingFolder folder;
  WriteElementNodeStresses(ElementFileName, Model());
  WriteAverageNodeStresses(AverageFileName, Model());
  for (const char* name : {ElementFileName, AverageFileName}) {
    EXPECT_TRUE(std::filesystem::is_regular_file(name)) << name;
    EXPECT_EQ(test::ReadFile(name), "") << name;
  }
}

TEST(StressFiles, AnElementKindWithoutElementsHasNoLine) {
  Model quads = MakeModel();
  quads.Tables.NELEM_S_3ND = 0;
  quads.Shell3Elements.clear();
  quads.Tables.Shell3Nodes.clear();
  for (const std::string& file : {WriteElementFile(quads), WriteAverageFile(quads)}) {
    EXPECT_EQ(file.find("Three"), std::string::npos);
    EXPECT_NE(file.find("Four"), std::string::npos);
  }
  const Model triangle = MakeTriangle({});
  for (const std::string& file : {WriteElementFile(triangle), WriteAverageFile(triangle)}) {
    EXPECT_EQ(file.find("Four"), std::string::npos);
    EXPECT_EQ(file.find("Three"), 0U);
  }
}

TEST(StressFiles, EarlierFilesAreReplaced) {
  const test::WorkingFolder folder;
  for (const char* name : {ElementFileName, AverageFileName}) {
    test::WriteFile(name, std::string(10000, 'x'));
  }
  WriteElementNodeStresses(ElementFileName, Model());
  WriteAverageNodeStresses(AverageFileName, Model());
  for (const char* name : {ElementFileName, AverageFileName}) EXPECT_EQ(test::ReadFile(name), "");
}

// The colon follows the number's fourteen places, however wide the number; titles have no width.
TEST(StressFiles, NumbersOfManyDigitsKeepTheirPlace) {
  Model model;
  model.Tables.NELEM_S_3ND = 11;
  model.Shell3Elements.resize(11);
  model.Tables.Shell3Nodes.assign(33, 2147483647);
  const std::string file = WriteElementFile(model);
  EXPECT_NE(file.find("\nThree-nodes shell element:10\n"), std::string::npos);
  EXPECT_NE(file.find(std::string("\n    2147483647:") + ZeroValues), std::string::npos);
}

// Thirteen places at most: the columns always stand apart.
TEST(StressFiles, WidestValueKeepsItsColumn) {
  const std::string file = WriteElementFile(MakeTriangle({0, -1.234567e-300, 0, 0, 0, 0}));
  EXPECT_NE(file.find("             0:              0  -1.23457e-300              0"),
            std::string::npos);
}

TEST(StressFiles, UniaxialStressIsItsOwnEquivalent) {
  EXPECT_EQ(PrintedEquivalentStress({-250, 0, 0, 0, 0, 0}), "            250");
  EXPECT_EQ(PrintedEquivalentStress({0, 250, 0, 0, 0, 0}), "            250");
  EXPECT_EQ(PrintedEquivalentStress({0, 0, 250, 0, 0, 0}), "            250");
}

// t sqrt(3); 2 sqrt(3) = 3.46410.
TEST(StressFiles, PureShearHasSqrtThreeTimesIt) {
  EXPECT_EQ(PrintedEquivalentStress({0, 0, 0, -2, 0, 0}), "         3.4641");
  EXPECT_EQ(PrintedEquivalentStress({0, 0, 0, 0, 2, 0}), "         3.4641");
  EXPECT_EQ(PrintedEquivalentStress({0, 0, 0, 0, 0, 2}), "         3.4641");
}

// 0.5 (1 + 16 + 9) + 3 (16 + 25 + 36) = 244, its root 15.6205.
TEST(StressFiles, AllSixComponentsCount) {
  EXPECT_EQ(PrintedEquivalentStress({1, 2, 5, 4, 5, 6}), "        15.6205");
}

// The three normal stresses are printed alike, as 1e+06; their difference of 4 is not lost.
TEST(StressFiles, EquivalentStressIsThatOfTheFullPrecision) {
  EXPECT_EQ(PrintedEquivalentStress({1000004, 1000000, 1000000, 0, 0, 0}), "              4");
  const std::string file = WriteElementFile(MakeTriangle({1000004, 1000000, 1000000, 0, 0, 0}));
  EXPECT_NE(file.find("             0:          1e+06          1e+06          1e+06"),
            std::string::npos);
}

// At their common node one element is pulled along X with 100 and the other pushed with 100: the
// average is zero, and so is its equivalent. The mean of the two equivalents would be 100.
TEST(StressFiles, AverageFileHasTheEquivalentOfTheAverage) {
  Model model;
  model.Tables.NPOIN = 5;
  model.Tables.NELEM_S_3ND = 2;
  model.Tables.Shell3Nodes = {0, 1, 2, 2, 3, 4};
  model.Shell3Elements.resize(2);
  for (Shell3Element& element : model.Shell3Elements) {
    element.TK = 1.0;
    element.Frame = {1, 0, 0, 0, 1, 0, 0, 0, 1};
  }
  model.Shell3Elements[0].NodeStressTop[2] = {100, 0, 0, 0, 0, 0};
  model.Shell3Elements[1].NodeStressTop[0] = {-100, 0, 0, 0, 0, 0};
  AverageNodeStresses(model);
  const std::string line = std::string("             2:") + ZeroValues;
  EXPECT_NE(WriteAverageFile(model).find(line + line + "Three-nodes element:1\n"),
            std::string::npos);
}

// Runs `write` where a folder has the name of its file.
void ExpectUnwritable(bool (*write)(const std::string&, const Model&, int)) {
  const test::TempFolder folder;
  test::ExpectStop([&] { write(folder.Path().string(), MakeModel(), 1); },
                   "单元节点应力文件输出失败!", StopKind::ResultFile);
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(StressFiles, UnwritableFilesStopTheRunWithOneText) {
  ExpectUnwritable(WriteElementNodeStresses);
  ExpectUnwritable(WriteAverageNodeStresses);
}

}  // namespace
}  // namespace korvex
