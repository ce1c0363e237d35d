// The drawings byte by byte, their scale, and edges that are drawn twice.
#include "results/line_drawing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <utility>

#include "support/dof_names.h"
#include "support/expect_stop.h"
#include "support/temp_folder.h"

namespace korvex {
namespace {

using test::Equation, test::Ux, test::Uz, test::Rx;

// The unit square with a triangle on its upper edge; the displacements are zero.
Model MakeHouse() {
  Model model;
  model.Tables.NPOIN = 5;
  model.Tables.Nodes = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0.5, 2, 0.25}};
  model.Tables.NELEM_S_4ND = 1;
  model.Tables.Shell4Nodes = {0, 1, 2, 3};
  model.Tables.NELEM_S_3ND = 1;
  model.Tables.Shell3Nodes = {3, 2, 4};
  model.NEQ = 30;
  model.Displacements.assign(30, 0.0);
  return model;
}

std::string DrawStructure(const Model& model) {
  const test::WorkingFolder folder;
  WriteStructureDrawing("drawing.dxf", model);
  return test::ReadFile("drawing.dxf");
}

std::string DrawDeformation(const Model& model) {
  const test::WorkingFolder folder;
  WriteDeformationDrawing("drawing.dxf", model);
  return test::ReadFile("drawing.dxf");
}

std::size_t CountLines(const std::string& drawing) {
  std::size_t count = 0;
  for (std::size_t at = drawing.find("LINE\n"); at != std::string::npos;
       at = drawing.find("LINE\n", at + 1)) {
    ++count;
  }
  return count;
}

// One entity; each coordinate as it must be printed.
std::string Line(const std::array<const char*, 6>& c) {
  return std::string("LINE\n  8\n0\n 10\n") + c[0] + "\n 20\n" + c[1] + "\n 30\n" + c[2] +
         "\n 11\n" + c[3] + "\n 21\n" + c[4] + "\n 31\n" + c[5] + "\n  0\n";
}

constexpr const char* Opening = "  0\nSECTION\n  2\nENTITIES\n  0\n";
constexpr const char* Closing = "ENDSEC\n  0\nEOF\n";

TEST(LineDrawing, QuadrilateralsThenTriangles) {
  EXPECT_EQ(DrawStructure(MakeHouse()),
            Opening + Line({"0", "0", "0", "1", "0", "0"}) + Line({"1", "0", "0", "1", "1", "0"}) +
                Line({"1", "1", "0", "0", "1", "0"}) + Line({"0", "1", "0", "0", "0", "0"}) +
                Line({"0", "1", "0", "1", "1", "0"}) + Line({"1", "1", "0", "0.5", "2", "0.25"}) +
                Line({"0.5", "2", "0.25", "0", "1", "0"}) + Closing);
}

TEST(LineDrawing, OneShellHasFourLines) {
  Model model = MakeHouse();
  model.Tables.NELEM_S_3ND = 0;
  model.Tables.Shell3Nodes.clear();
  EXPECT_EQ(CountLines(DrawStructure(model)), 4U);
}

TEST(LineDrawing, SharedEdgeIsDrawnTwice) {
  Model model = MakeHouse();
  model.Tables.Nodes = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 0, 0}, {2, 1, 0}};
  model.Tables.NPOIN = 6;
  model.Tables.NELEM_S_4ND = 2;
  model.Tables.Shell4Nodes = {0, 1, 2, 3, 1, 4, 5, 2};
  model.Tables.NELEM_S_3ND = 0;
  model.Tables.Shell3Nodes.clear();
  const std::string drawing = DrawStructure(model);
  EXPECT_EQ(CountLines(drawing), 8U);
  EXPECT_NE(drawing.find(Line({"1", "0", "0", "1", "1", "0"})), std::string::npos);
  EXPECT_NE(drawing.find(Line({"1", "1", "0", "1", "0", "0"})), std::string::npos);
}

TEST(LineDrawing, BeamsAreNotDrawn) {
  Model model;
  model.Tables.NPOIN = 2;
  model.Tables.Nodes = {{0, 0, 0}, {1, 0, 0}};
  model.Tables.NELEM_B = 1;
  model.Tables.BeamNodes = {0, 1};
  model.BeamElements.resize(1);
  model.Displacements.assign(12, 1.0);
  const std::string empty = "  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n  0\nEOF\n";
  EXPECT_EQ(DrawStructure(model), empty);
  EXPECT_EQ(DrawDeformation(model), empty);
}

TEST(LineDrawing, ModelWithoutNodesIsDrawnEmpty) {
  EXPECT_EQ(DrawDeformation(Model()), std::string(Opening) + Closing);
}

TEST(LineDrawing, SixSignificantDigits) {
  Model model = MakeHouse();
  model.Tables.Nodes[0] = {1234567.0, -0.000123456789, 1e-7};
  EXPECT_NE(DrawStructure(model).find(" 10\n1.23457e+06\n 20\n-0.000123457\n 30\n1e-07\n 11\n1\n"),
            std::string::npos);
}

// Extents 1, 2 and 0.25; the largest translation is -0.5 in z of node 4: scale 2 / 0.5 x 0.05 =
// 0.2. The rotations, larger still, do not count.
TEST(LineDrawing, LargestTranslationIsDrawnAsATwentiethOfTheExtent) {
  Model model = MakeHouse();
  model.Displacements[Equation(0, Ux)] = 0.25;
  model.Displacements[Equation(4, Uz)] = -0.5;
  model.Displacements[Equation(2, Rx)] = 100.0;
  EXPECT_DOUBLE_EQ(ComputeDrawingScale(model), 0.2);
  EXPECT_EQ(DrawDeformation(model),
            Opening + Line({"0.05", "0", "0", "1", "0", "0"}) +
                Line({"1", "0", "0", "1", "1", "0"}) + Line({"1", "1", "0", "0", "1", "0"}) +
                Line({"0", "1", "0", "0.05", "0", "0"}) + Line({"0", "1", "0", "1", "1", "0"}) +
                Line({"1", "1", "0", "0.5", "2", "0.15"}) +
                Line({"0.5", "2", "0.15", "0", "1", "0"}) + Closing);
}

// Each of the three directions can hold the largest extent and the largest translation.
TEST(LineDrawing, ScaleLooksAtAllDirections) {
  for (std::size_t d = 0; d < 3; ++d) {
    Model model;
    model.Tables.NPOIN = 2;
    std::array<double, 3> far{-1.0, -1.0, -1.0};
    far[d] = -8.0;
    model.Tables.Nodes = {{0, 0, 0}, {far[0], far[1], far[2]}};
    model.Displacements.assign(12, 0.125);
    model.Displacements[Equation(1, Ux + d)] = -0.5;
    EXPECT_DOUBLE_EQ(ComputeDrawingScale(model), 8.0 / 0.5 * 0.05) << d;
  }
}

// The search for the largest translation begins with ux of node 0. No comparison with NaN is true:
// a NaN there stays, and a NaN elsewhere is passed over.
TEST(LineDrawing, ScaleStartsFromTheFirstTranslation) {
  Model model = MakeHouse();
  double& first = model.Displacements[Equation(0, Ux)];
  double& second = model.Displacements[Equation(1, Ux)];
  first = std::numeric_limits<double>::quiet_NaN();
  second = 1.0;
  EXPECT_TRUE(std::isnan(ComputeDrawingScale(model)));
  std::swap(first, second);
  EXPECT_DOUBLE_EQ(ComputeDrawingScale(model), 2.0 / 1.0 * 0.05);
}

TEST(LineDrawing, SingleNodeHasNoExtent) {
  Model model;
  model.Tables.NPOIN = 1;
  model.Tables.Nodes = {{3, 4, 5}};
  model.Displacements.assign(6, 2.0);
  EXPECT_EQ(ComputeDrawingScale(model), 0.0);
}

// Nothing moves: the scale 2 / 0 is infinite, and infinity times zero is NaN. No special case.
TEST(LineDrawing, ZeroDisplacementsAreDrawnAsTheStreamPrintsThem) {
  const Model model = MakeHouse();
  EXPECT_TRUE(std::isinf(ComputeDrawingScale(model)));
  const std::string drawing = DrawDeformation(model);
  EXPECT_EQ(CountLines(drawing), 7U);
  EXPECT_NE(drawing.find("nan"), std::string::npos);
}

TEST(LineDrawing, UnwritableFileEndsTheRun) {
  test::ExpectStop([] { WriteStructureDrawing("no such folder/drawing.dxf", MakeHouse()); },
                   "文件输出失败!", StopKind::ResultFile);
}

}  // namespace
}  // namespace korvex
