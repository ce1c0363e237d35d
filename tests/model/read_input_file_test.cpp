// The reader of the model file: the place of each number in the tables, what the format allows and
// what makes the rest of the file unreadable, and every error that stops the run.
#include "model/read_input_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

#include "beam/section_properties.h"
#include "support/expect_stop.h"
#include "support/model_text.h"
#include "support/temp_folder.h"

namespace korvex {
namespace {

using test::ExpectStop;
using test::TempFolder;

// A model with rows in every section. Numbers that could be confused are different, and all
// coordinates are binary fractions, so that their sums are exact.
constexpr const char* FullFile = R"(### Toln_Korvex release=3.0 ###
Number of materials:NMT=2
#0:
E=2.1e11
Mu=0.3
Density=7850
#1:
E=7e10
Mu=0.33
Density=2700
Number of shell thicknesses:NTK=2
#0:
TK=0.012
#1:
TK=0.015
Number of T_beam sections:NTBS=2
T_beam #0
Hw=0.21
Tw=0.011
Bf=0.12
Tf=0.013
T_beam #1
Hw=0.22
Tw=0.014
Bf=0.16
Tf=0.017
Number of L_beam sections:NLBS=1
L_beam #0
Hw=0.31
Tw=0.018
Bf=0.19
Tf=0.025
Number of C_beam sections:NCBS=2
C_beam #0
R=0.41
T=0.026
C_beam #1
R=0.42
T=0.027
Number of nodal points:NPOIN=6
0:0.5,0.25,0.125
1:4.5,0.75,0.375
2:5.5,3.25,1.125
3:1.5,3.75,0.625
4:-2.5,-1.25,7.75
5:9.5,8.25,-6.125
Number of four-nodes shell elements:NELEM_S_4ND=1
0:0,1,2,3[1,0]
Number of three-nodes shell elements:NELEM_S_3ND=1
0:4,2,5[0,1]
Number of beam elements:NELEM_B=4
0:4,5<0.25,0.5,-1>[1,BeamSecType=0,BeamSecIndex=1,BeamSecOz=0.03,BeamSecMirrored=1]
1:5,3<2,4,8>[0,BeamSecType=1,BeamSecIndex=0,BeamSecOz=-0.04,BeamSecMirrored=-7]
2:2,4<16,32,64>[1,BeamSecType=2,BeamSecIndex=1,BeamSecOz=0.05,BeamSecMirrored=0]
3:1,0<128,256,512>[77,BeamSecType=3,BeamSecIndex=88,BeamSecOz=0.06,BeamSecMirrored=1]
Number of restricted nodal points:NRN=2
4: 1 2 0 -3 4 5
2: 6 7 8 9 10 1
Number of forces:NFOR=2
3<1.5,-2.5,3.5,-4.5,5.5,-6.5>
5<7.5,8.5,9.5,10.5,11.5,12.5>
Number of distributed loads on four-nodes shell elements:NDL_S_4ND=1
0:21.5,22.5,23.5
Number of distributed loads on three-nodes shell elements:NDL_S_3ND=1
0:31.5,32.5,33.5
Number of distributed loads on beam elements:NDL_B=2
2:41.5,42.5
1:43.5,44.5
)";

// A model file without rows: every count is zero.
constexpr const char* EmptyFile = R"(### Toln_Korvex release=3.0 ###
Number of materials:NMT=0
Number of shell thicknesses:NTK=0
Number of T_beam sections:NTBS=0
Number of L_beam sections:NLBS=0
Number of C_beam sections:NCBS=0
Number of nodal points:NPOIN=0
Number of four-nodes shell elements:NELEM_S_4ND=0
Number of three-nodes shell elements:NELEM_S_3ND=0
Number of beam elements:NELEM_B=0
Number of restricted nodal points:NRN=0
Number of forces:NFOR=0
Number of distributed loads on four-nodes shell elements:NDL_S_4ND=0
Number of distributed loads on three-nodes shell elements:NDL_S_3ND=0
Number of distributed loads on beam elements:NDL_B=0
)";

Model ReadText(const std::string& text) {
  const TempFolder folder;
  const std::string file = (folder.Path() / "fem_solving.txt").string();
  test::WriteFile(file, text);
  Model model;
  ReadInputFile(file.c_str(), model);
  return model;
}

void ExpectStopOnText(const std::string& text, const std::string& notice) {
  ExpectStop([&] { ReadText(text); }, notice);
}

// Returns `text` with the only occurrence of `from` replaced by `to`.
std::string Replace(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  EXPECT_EQ(text.find(from, at + 1), std::string::npos) << from << " occurs more than once";
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

// Expects the rows of the last section: then the whole file has been read.
void ExpectReadToTheEnd(const Model& model) {
  ASSERT_EQ(model.Tables.BeamLineLoads.size(), 2U);
  EXPECT_EQ(model.Tables.BeamLineLoads[1].q, (std::array<double, 2>{43.5, 44.5}));
}

void ExpectSection(const BeamSection& s, const std::array<double, 4>& expected) {
  EXPECT_EQ((std::array<double, 4>{s.Hw, s.Tw, s.Bf, s.Tf}), expected);
}

void ExpectNode(const Node& n, const Vector3& expected) {
  EXPECT_EQ((Vector3{n.x, n.y, n.z}), expected);
}

std::array<double, 13> ListProperties(const SectionProperties& s) {
  return {s.A,        s.Iy, s.Iz, s.J, s.ShearFactorY, s.ShearFactorZ, s.CyPos, s.CyNeg, s.CzTop,
          s.CzBottom, s.Ex, s.Ey, s.Ez};
}

// ---------------------------------------------------------------------------------------------
// The place of each number in the tables. Expected values are those of FullFile.

TEST(ReadInputFile, Materials) {
  const Model model = ReadText(FullFile);
  EXPECT_EQ(model.Tables.NMT, 2);
  ASSERT_EQ(model.Tables.Materials.size(), 2U);
  EXPECT_EQ(model.Tables.Materials[0].E, 2.1e11);
  EXPECT_EQ(model.Tables.Materials[0].Mu, 0.3);
  EXPECT_EQ(model.Tables.Materials[0].Density, 7850.0);
  EXPECT_EQ(model.Tables.Materials[1].E, 7e10);
  EXPECT_EQ(model.Tables.Materials[1].Mu, 0.33);
  EXPECT_EQ(model.Tables.Materials[1].Density, 2700.0);
}

TEST(ReadInputFile, ShellThicknesses) {
  const Model model = ReadText(FullFile);
  EXPECT_EQ(model.Tables.NTK, 2);
  ASSERT_EQ(model.Tables.ShellThicknesses.size(), 2U);
  EXPECT_EQ(model.Tables.ShellThicknesses[0].TK, 0.012);
  EXPECT_EQ(model.Tables.ShellThicknesses[1].TK, 0.015);
}

TEST(ReadInputFile, SectionTables) {
  const Model model = ReadText(FullFile);
  EXPECT_EQ(model.Tables.NTBS, 2);
  EXPECT_EQ(model.Tables.NLBS, 1);
  EXPECT_EQ(model.Tables.NCBS, 2);
  ASSERT_EQ(model.Tables.TBeamSections.size(), 2U);
  ASSERT_EQ(model.Tables.LBeamSections.size(), 1U);
  ASSERT_EQ(model.Tables.CBeamSections.size(), 2U);
  ExpectSection(model.Tables.TBeamSections[0], {0.21, 0.011, 0.12, 0.013});
  ExpectSection(model.Tables.TBeamSections[1], {0.22, 0.014, 0.16, 0.017});
  ExpectSection(model.Tables.LBeamSections[0], {0.31, 0.018, 0.19, 0.025});
  EXPECT_EQ(model.Tables.CBeamSections[0].R, 0.41);
  EXPECT_EQ(model.Tables.CBeamSections[0].T, 0.026);
  EXPECT_EQ(model.Tables.CBeamSections[1].R, 0.42);
  EXPECT_EQ(model.Tables.CBeamSections[1].T, 0.027);
}

TEST(ReadInputFile, Nodes) {
  const Model model = ReadText(FullFile);
  EXPECT_EQ(model.Tables.NPOIN, 6);
  ASSERT_EQ(model.Tables.Nodes.size(), 6U);
  ExpectNode(model.Tables.Nodes[0], {0.5, 0.25, 0.125});
  ExpectNode(model.Tables.Nodes[4], {-2.5, -1.25, 7.75});
  ExpectNode(model.Tables.Nodes[5], {9.5, 8.25, -6.125});
}

TEST(ReadInputFile, FourNodeShells) {
  const Model model = ReadText(FullFile);
  EXPECT_EQ(model.Tables.NELEM_S_4ND, 1);
  EXPECT_EQ(model.Tables.Shell4Nodes, (std::vector<std::int32_t>{0, 1, 2, 3}));
  ASSERT_EQ(model.Shell4Elements.size(), 1U);
  const Shell4Element& shell = model.Shell4Elements[0];
  EXPECT_EQ(shell.Coordinates, (std::array<double, 12>{0.5, 0.25, 0.125,  //
                                                       4.5, 0.75, 0.375,  //
                                                       5.5, 3.25, 1.125,  //
                                                       1.5, 3.75, 0.625}));
  EXPECT_EQ(shell.E, 7e10);  // material 1
  EXPECT_EQ(shell.Mu, 0.33);
  EXPECT_EQ(shell.TK, 0.012);  // thickness 0
  ElementFrame frame{};
  ComputeElementFrame({0.5, 0.25, 0.125}, {4.5, 0.75, 0.375}, {1.5, 3.75, 0.625}, frame);
  EXPECT_EQ(shell.Frame, frame);  // nodes 1, 2 and 4
}

TEST(ReadInputFile, ThreeNodeShells) {
  const Model model = ReadText(FullFile);
  EXPECT_EQ(model.Tables.NELEM_S_3ND, 1);
  EXPECT_EQ(model.Tables.Shell3Nodes, (std::vector<std::int32_t>{4, 2, 5}));
  ASSERT_EQ(model.Shell3Elements.size(), 1U);
  const Shell3Element& shell = model.Shell3Elements[0];
  EXPECT_EQ(shell.Coordinates, (std::array<double, 9>{-2.5, -1.25, 7.75,  //
                                                      5.5, 3.25, 1.125,   //
                                                      9.5, 8.25, -6.125}));
  EXPECT_EQ(shell.E, 2.1e11);  // material 0
  EXPECT_EQ(shell.Mu, 0.3);
  EXPECT_EQ(shell.TK, 0.015);  // thickness 1
  ElementFrame frame{};
  ComputeElementFrame({-2.5, -1.25, 7.75}, {5.5, 3.25, 1.125}, {9.5, 8.25, -6.125}, frame);
  EXPECT_EQ(shell.Frame, frame);
}

TEST(ReadInputFile, BeamConnectivityAndSectionReferences) {
  const Model model = ReadText(FullFile);
  EXPECT_EQ(model.Tables.NELEM_B, 4);
  EXPECT_EQ(model.BeamElements.size(), 4U);
  EXPECT_EQ(model.Tables.BeamNodes, (std::vector<std::int32_t>{4, 5, 5, 3, 2, 4, 1, 0}));
  ASSERT_EQ(model.Tables.BeamSectionRefs.size(), 4U);
  const std::array<std::int32_t, 4> types{BeamSecTypeT, BeamSecTypeL, BeamSecTypeC, 3};
  const std::array<std::int32_t, 4> indices{1, 0, 1, 88};
  const std::array<double, 4> offsets{0.03, -0.04, 0.05, 0.06};
  const std::array<bool, 4> mirrored{true, true, false, true};  // 1, -7, 0, 1 in the file
  for (std::size_t b = 0; b < 4; ++b) {
    EXPECT_EQ(model.Tables.BeamSectionRefs[b].BeamSecType, types[b]);
    EXPECT_EQ(model.Tables.BeamSectionRefs[b].BeamSecIndex, indices[b]);
    EXPECT_EQ(model.Tables.BeamSectionRefs[b].BeamSecOz, offsets[b]);
    EXPECT_EQ(model.Tables.BeamSectionRefs[b].BeamSecMirrored, mirrored[b]);
  }
}

TEST(ReadInputFile, TBeam) {
  const Model model = ReadText(FullFile);
  const BeamElement& beam = model.BeamElements.at(0);
  EXPECT_EQ(beam.NodeI, (Vector3{-2.5, -1.25, 7.75}));
  EXPECT_EQ(beam.NodeJ, (Vector3{9.5, 8.25, -6.125}));
  EXPECT_EQ(beam.RefPoint, (Vector3{-2.25, -0.75, 6.75}));  // NodeI + (0.25, 0.5, -1)
  EXPECT_EQ(beam.Tolerance, 1e-15);
  EXPECT_EQ(beam.E, 7e10);  // material 1
  EXPECT_EQ(beam.Mu, 0.33);
  EXPECT_EQ(beam.BeamSecOz, 0.03);
  const SectionProperties expected = SectionPropertiesT(beam, 0.22, 0.014, 0.16, 0.017, 0.03);
  EXPECT_EQ(ListProperties(beam.Section), ListProperties(expected));
}

TEST(ReadInputFile, LBeam) {
  const Model model = ReadText(FullFile);
  const BeamElement& beam = model.BeamElements.at(1);
  EXPECT_EQ(beam.NodeI, (Vector3{9.5, 8.25, -6.125}));
  EXPECT_EQ(beam.NodeJ, (Vector3{1.5, 3.75, 0.625}));
  EXPECT_EQ(beam.RefPoint, (Vector3{11.5, 12.25, 1.875}));  // NodeI + (2, 4, 8)
  EXPECT_EQ(beam.Tolerance, 1e-15);
  EXPECT_EQ(beam.E, 2.1e11);  // material 0
  EXPECT_EQ(beam.Mu, 0.3);
  EXPECT_EQ(beam.BeamSecOz, -0.04);
  const SectionProperties expected =
      SectionPropertiesL(beam, 0.31, 0.018, 0.19, 0.025, -0.04, true);
  EXPECT_EQ(ListProperties(beam.Section), ListProperties(expected));
}

TEST(ReadInputFile, TubeBeam) {
  const Model model = ReadText(FullFile);
  const BeamElement& beam = model.BeamElements.at(2);
  EXPECT_EQ(beam.NodeI, (Vector3{5.5, 3.25, 1.125}));
  EXPECT_EQ(beam.NodeJ, (Vector3{-2.5, -1.25, 7.75}));
  EXPECT_EQ(beam.RefPoint, (Vector3{21.5, 35.25, 65.125}));  // NodeI + (16, 32, 64)
  EXPECT_EQ(beam.Tolerance, 1e-15);
  EXPECT_EQ(beam.E, 7e10);  // material 1
  EXPECT_EQ(beam.Mu, 0.33);
  EXPECT_EQ(beam.BeamSecOz, 0.05);
  BeamElement expected;
  InitCBeamElement(expected, beam.NodeI, beam.NodeJ, {21.5, 35.25, 65.125, 1e-15},
                   {7e10, 0.33, 2700.0}, {0.42, 0.027}, 0.05);
  EXPECT_EQ(ListProperties(beam.Section), ListProperties(expected.Section));
}

TEST(ReadInputFile, OnlyAnLBeamElementKeepsTheMirroredFlag) {
  const std::string file =
      Replace(FullFile, "BeamSecOz=0.05,BeamSecMirrored=0", "BeamSecOz=0.05,BeamSecMirrored=1");
  const Model model = ReadText(file);
  EXPECT_FALSE(model.BeamElements.at(0).BeamSecMirrored);
  EXPECT_TRUE(model.BeamElements.at(1).BeamSecMirrored);
  EXPECT_FALSE(model.BeamElements.at(2).BeamSecMirrored);
  EXPECT_FALSE(model.BeamElements.at(3).BeamSecMirrored);
  for (const BeamSectionRef& ref : model.Tables.BeamSectionRefs) EXPECT_TRUE(ref.BeamSecMirrored);
}

TEST(ReadInputFile, AnLBeamWithoutMirroringIsNotMirrored) {
  const Model model = ReadText(Replace(FullFile, "BeamSecMirrored=-7", "BeamSecMirrored=0"));
  const BeamElement& beam = model.BeamElements.at(1);
  EXPECT_FALSE(beam.BeamSecMirrored);
  EXPECT_FALSE(model.Tables.BeamSectionRefs.at(1).BeamSecMirrored);
  EXPECT_GT(beam.Section.Ey, 0.0);  // the flange stands towards +y
}

// A row has the node first, then the flags in the order of the dofs. A flag may be any number.
TEST(ReadInputFile, RestraintsKeepTheirFlagsUnchanged) {
  const Model model = ReadText(FullFile);
  EXPECT_EQ(model.Tables.NRN, 2);
  ASSERT_EQ(model.Tables.NodalRestraints.size(), 2U);
  EXPECT_EQ(model.Tables.NodalRestraints[0].node, 4);
  EXPECT_EQ(model.Tables.NodalRestraints[0].fixed,
            (std::array<std::int32_t, 6>{1, 2, 0, -3, 4, 5}));
  EXPECT_EQ(model.Tables.NodalRestraints[1].node, 2);
  EXPECT_EQ(model.Tables.NodalRestraints[1].fixed,
            (std::array<std::int32_t, 6>{6, 7, 8, 9, 10, 1}));
}

TEST(ReadInputFile, Forces) {
  const Model model = ReadText(FullFile);
  EXPECT_EQ(model.Tables.NFOR, 2);
  ASSERT_EQ(model.Tables.NodalForces.size(), 2U);
  EXPECT_EQ(model.Tables.NodalForces[0].node, 3);
  EXPECT_EQ(model.Tables.NodalForces[0].components,
            (std::array<double, 6>{1.5, -2.5, 3.5, -4.5, 5.5, -6.5}));
  EXPECT_EQ(model.Tables.NodalForces[1].node, 5);
  EXPECT_EQ(model.Tables.NodalForces[1].components,
            (std::array<double, 6>{7.5, 8.5, 9.5, 10.5, 11.5, 12.5}));
}

TEST(ReadInputFile, DistributedLoads) {
  const Model model = ReadText(FullFile);
  EXPECT_EQ(model.Tables.NDL_S_4ND, 1);
  EXPECT_EQ(model.Tables.NDL_S_3ND, 1);
  EXPECT_EQ(model.Tables.NDL_B, 2);
  ASSERT_EQ(model.Tables.Shell4SurfaceLoads.size(), 1U);
  ASSERT_EQ(model.Tables.Shell3SurfaceLoads.size(), 1U);
  ASSERT_EQ(model.Tables.BeamLineLoads.size(), 2U);
  EXPECT_EQ(model.Tables.Shell4SurfaceLoads[0].element, 0);
  EXPECT_EQ(model.Tables.Shell4SurfaceLoads[0].q, (std::array<double, 3>{21.5, 22.5, 23.5}));
  EXPECT_EQ(model.Tables.Shell3SurfaceLoads[0].element, 0);
  EXPECT_EQ(model.Tables.Shell3SurfaceLoads[0].q, (std::array<double, 3>{31.5, 32.5, 33.5}));
  EXPECT_EQ(model.Tables.BeamLineLoads[0].element, 2);
  EXPECT_EQ(model.Tables.BeamLineLoads[0].q, (std::array<double, 2>{41.5, 42.5}));
  EXPECT_EQ(model.Tables.BeamLineLoads[1].element, 1);
  EXPECT_EQ(model.Tables.BeamLineLoads[1].q, (std::array<double, 2>{43.5, 44.5}));
}

TEST(ReadInputFile, RowNumbersAreDiscarded) {
  std::string file = Replace(FullFile, "0:0.5,0.25,0.125", "17:0.5,0.25,0.125");
  file = Replace(file, "3:1,0<", "-5:1,0<");
  file = Replace(file, "#1:\nE=", "#0:\nE=");
  const Model model = ReadText(file);
  ExpectNode(model.Tables.Nodes.at(0), {0.5, 0.25, 0.125});
  EXPECT_EQ(model.Tables.Materials.at(1).E, 7e10);
  ExpectReadToTheEnd(model);
}

// A file with nodes numbered from 1 is not corrected: each reference means the next node.
TEST(ReadInputFile, AFileNumberedFromOneIsNotCorrected) {
  test::ModelText text;
  text.materials = {{1.0, 0.25, 0.0}};
  text.tSections = {{1.0, 0.5, 0.0, 0.0}};
  text.nodes = {{10.0, 0.0, 0.0}, {20.0, 0.0, 0.0}, {30.0, 0.0, 0.0}};
  text.beams = {{1, 2}};  // the first two nodes, if nodes were numbered from 1
  text.restraints = {{1}};
  const Model model = ReadText(WriteModel(text));
  EXPECT_EQ(model.BeamElements.at(0).NodeI, (Vector3{20.0, 0.0, 0.0}));
  EXPECT_EQ(model.BeamElements.at(0).NodeJ, (Vector3{30.0, 0.0, 0.0}));
  EXPECT_EQ(model.Tables.NodalRestraints.at(0).node, 1);
  text.beams = {{2, 3}};
  ExpectStopOnText(WriteModel(text), "Beam element 0 refers to node 3; there are 3 nodal points.");
}

// ---------------------------------------------------------------------------------------------
// What the format allows and what it does not allow.

TEST(ReadInputFile, CountsOfZeroGiveEmptyTables) {
  const Model model = ReadText(EmptyFile);
  for (const std::int32_t count :
       {model.Tables.NMT, model.Tables.NTK, model.Tables.NTBS, model.Tables.NLBS, model.Tables.NCBS,
        model.Tables.NPOIN, model.Tables.NELEM_S_4ND, model.Tables.NELEM_S_3ND,
        model.Tables.NELEM_B, model.Tables.NRN, model.Tables.NFOR, model.Tables.NDL_S_4ND,
        model.Tables.NDL_S_3ND, model.Tables.NDL_B}) {
    EXPECT_EQ(count, 0);
  }
  for (const std::size_t capacity :
       {model.Tables.Materials.capacity(), model.Tables.ShellThicknesses.capacity(),
        model.Tables.TBeamSections.capacity(), model.Tables.LBeamSections.capacity(),
        model.Tables.CBeamSections.capacity(), model.Tables.Nodes.capacity(),
        model.Shell4Elements.capacity(), model.Tables.Shell4Nodes.capacity(),
        model.Shell3Elements.capacity(), model.Tables.Shell3Nodes.capacity(),
        model.BeamElements.capacity(), model.Tables.BeamNodes.capacity(),
        model.Tables.BeamSectionRefs.capacity(), model.Tables.NodalRestraints.capacity(),
        model.Tables.NodalForces.capacity(), model.Tables.Shell4SurfaceLoads.capacity(),
        model.Tables.Shell3SurfaceLoads.capacity(), model.Tables.BeamLineLoads.capacity()}) {
    EXPECT_EQ(capacity, 0U);  // no storage at all
  }
}

TEST(ReadInputFile, ReleaseMayBeWrittenInAnyWayThatGivesThree) {
  for (const char* release : {"3", "3.", "3.00", "3.000", "+3e0", "0.3e1", "0x1.8p1"}) {
    SCOPED_TRACE(release);
    ExpectReadToTheEnd(
        ReadText(Replace(FullFile, "release=3.0", std::string("release=") + release)));
  }
}

TEST(ReadInputFile, AnyOtherReleaseStops) {
  for (const char* release :
       {"3.01", "2.99", "3.0000000000000005", "-3", "30", "nan", "", "x3.0"}) {
    SCOPED_TRACE(release);
    ExpectStopOnText(Replace(FullFile, "release=3.0", std::string("release=") + release),
                     "Release File Number error!");
  }
}

TEST(ReadInputFile, AHeaderThatDoesNotMatchIsAWrongRelease) {
  const char* const notice = "Release File Number error!";
  ExpectStopOnText("", notice);
  ExpectStopOnText("garbage\n", notice);
  ExpectStopOnText(Replace(FullFile, "### Toln", "## Toln"), notice);
  ExpectStopOnText(Replace(FullFile, "### Toln", " ### Toln"), notice);
  ExpectStopOnText(Replace(FullFile, "release=3.0", "Release=3.0"), notice);
  ExpectStopOnText("\xEF\xBB\xBF" + std::string(FullFile), notice);  // a byte order mark
}

// The release is read before the rest of the header line. After a wrong rest no count can be read.
TEST(ReadInputFile, AHeaderWithTheRightNumberAndAWrongTailIsAccepted) {
  const Model unread = ReadText(Replace(FullFile, "release=3.0 ###", "release=3.0 ##!"));
  EXPECT_EQ(unread.Tables.NMT, 0);
  EXPECT_EQ(unread.Tables.NDL_B, 0);
  EXPECT_EQ(ReadText("### Toln_Korvex release=3.0").Tables.NMT, 0);
}

TEST(ReadInputFile, AFileThatEndsEarlyLeavesTheRestEmpty) {
  const std::string file = FullFile;
  const Model model = ReadText(file.substr(0, file.find("2:5.5,3.25")) + "2:5.5");
  EXPECT_EQ(model.Tables.NPOIN, 6);
  ExpectNode(model.Tables.Nodes.at(1), {4.5, 0.75, 0.375});
  ExpectNode(model.Tables.Nodes.at(2), {5.5, 0.0, 0.0});
  ExpectNode(model.Tables.Nodes.at(5), {0.0, 0.0, 0.0});
  EXPECT_EQ(model.Tables.NELEM_S_4ND, 0);
  EXPECT_EQ(model.Tables.NDL_B, 0);
}

TEST(ReadInputFile, ASectionLabelIsAnyText) {
  std::string file = Replace(FullFile, "T_beam #1", "Hw=5, R=7 \xFF [#1:]");
  file = Replace(file, "L_beam #0", "\n \t the first angle");
  file = Replace(file, "C_beam #0", "#");
  const Model model = ReadText(file);
  ExpectSection(model.Tables.TBeamSections.at(1), {0.22, 0.014, 0.16, 0.017});
  ExpectSection(model.Tables.LBeamSections.at(0), {0.31, 0.018, 0.19, 0.025});
  EXPECT_EQ(model.Tables.CBeamSections.at(0).R, 0.41);
  ExpectReadToTheEnd(model);
}

TEST(ReadInputFile, AMaterialLabelMustBeANumberSignANumberAndAColon) {
  for (const char* label : {"steel\nE=2.1e11", "#0\nE=2.1e11", "0:\nE=2.1e11", "#a:\nE=2.1e11"}) {
    SCOPED_TRACE(label);
    const Model model = ReadText(Replace(FullFile, "#0:\nE=2.1e11", label));
    EXPECT_EQ(model.Tables.NMT, 2);
    EXPECT_EQ(model.Tables.Materials.at(0).E, 0.0);
    EXPECT_EQ(model.Tables.Materials.at(1).E, 0.0);
    EXPECT_EQ(model.Tables.NTK, 0);
  }
}

TEST(ReadInputFile, AThicknessLabelMustBeANumberSignANumberAndAColon) {
  const Model model = ReadText(Replace(FullFile, "#0:\nTK=", "plate\nTK="));
  EXPECT_EQ(model.Tables.NTK, 2);
  EXPECT_EQ(model.Tables.ShellThicknesses.at(0).TK, 0.0);
  EXPECT_EQ(model.Tables.NTBS, 0);
}

// Element 3 of the file: its references to a missing material and section are not checked.
TEST(ReadInputFile, ABeamOfAnotherTypeStaysAsConstructed) {
  for (const char* type : {"3", "-1", "2147483647"}) {
    const Model model =
        ReadText(Replace(FullFile, "BeamSecType=3", std::string("BeamSecType=") + type));
    const BeamElement& beam = model.BeamElements.at(3);
    EXPECT_EQ(beam.NodeI, (Vector3{0.0, 0.0, 0.0}));
    EXPECT_EQ(beam.NodeJ, (Vector3{0.0, 0.0, 0.0}));
    EXPECT_EQ(beam.RefPoint, (Vector3{0.0, 0.0, 0.0}));
    EXPECT_EQ(beam.Tolerance, 1e-15);
    EXPECT_EQ(beam.E, 0.0);
    EXPECT_EQ(beam.Mu, 0.0);
    EXPECT_EQ(beam.BeamSecOz, 0.0);
    EXPECT_FALSE(beam.BeamSecMirrored);
    EXPECT_EQ(ListProperties(beam.Section), (std::array<double, 13>{}));
    ExpectReadToTheEnd(model);
  }
}

// Reading the second flag fails at the comma, and so does all further reading.
TEST(ReadInputFile, CommasBetweenRestraintFlagsEndTheReading) {
  const Model model = ReadText(Replace(FullFile, "4: 1 2 0 -3 4 5", "4: 1,2,0,-3,4,5"));
  EXPECT_EQ(model.Tables.NRN, 2);
  EXPECT_EQ(model.Tables.NodalRestraints.at(0).node, 4);
  EXPECT_EQ(model.Tables.NodalRestraints.at(0).fixed,
            (std::array<std::int32_t, 6>{1, 0, 0, 0, 0, 0}));
  EXPECT_EQ(model.Tables.NodalRestraints.at(1).node, 0);
  EXPECT_EQ(model.Tables.NodalRestraints.at(1).fixed, (std::array<std::int32_t, 6>{}));
  EXPECT_EQ(model.Tables.NFOR, 0);
  EXPECT_EQ(model.Tables.NDL_B, 0);
}

TEST(ReadInputFile, RestraintFlagsMayBeOnSeveralLines) {
  const Model model = ReadText(Replace(FullFile, "4: 1 2 0 -3 4 5", "4:1\n2\t0\r\n\n-3\v4\f5"));
  EXPECT_EQ(model.Tables.NodalRestraints.at(0).fixed,
            (std::array<std::int32_t, 6>{1, 2, 0, -3, 4, 5}));
  ExpectReadToTheEnd(model);
}

// The node is read; reading the flags fails at the colon.
TEST(ReadInputFile, TheColonOfARestraintFollowsItsDigitsDirectly) {
  const Model model = ReadText(Replace(FullFile, "4: 1 2 0 -3 4 5", "4 : 1 2 0 -3 4 5"));
  EXPECT_EQ(model.Tables.NodalRestraints.at(0).node, 4);
  EXPECT_EQ(model.Tables.NodalRestraints.at(0).fixed, (std::array<std::int32_t, 6>{}));
  EXPECT_EQ(model.Tables.NFOR, 0);
}

TEST(ReadInputFile, ASectionLabelMayBeTheEndOfTheFile) {
  const std::string file = FullFile;
  const Model model = ReadText(file.substr(0, file.find("T_beam #1")) + "T_beam #1");
  EXPECT_EQ(model.Tables.NTBS, 2);
  ExpectSection(model.Tables.TBeamSections.at(0), {0.21, 0.011, 0.12, 0.013});
  ExpectSection(model.Tables.TBeamSections.at(1), {0.0, 0.0, 0.0, 0.0});
  EXPECT_EQ(model.Tables.NLBS, 0);
}

TEST(ReadInputFile, BlankLinesAndIndentationBetweenRowsAreSkipped) {
  std::string file = Replace(FullFile, "1:4.5,0.75,0.375\n", " \t1:4.5,0.75,0.375 \n\n\n");
  file = Replace(file, "Number of beam elements", "   Number of beam elements");
  file = Replace(file, "Mu=0.3\n", "\n  Mu=0.3\n");
  file = Replace(file, "\nTw=0.018", "\n  Tw=0.018");
  ExpectReadToTheEnd(ReadText(file));
}

// A label is skipped up to its line feed only, so that the first value must not be indented.
TEST(ReadInputFile, AnIndentedValueAfterASectionLabelDoesNotMatch) {
  const Model model = ReadText(Replace(FullFile, "L_beam #0\nHw", "L_beam #0\n Hw"));
  EXPECT_EQ(model.Tables.NLBS, 1);
  ExpectSection(model.Tables.LBeamSections.at(0), {0.0, 0.0, 0.0, 0.0});
  EXPECT_EQ(model.Tables.NCBS, 0);
}

TEST(ReadInputFile, WhiteSpaceInTheCountLinesIsFree) {
  std::string file = Replace(FullFile, "Number of materials:", "Numberofmaterials:");
  file = Replace(file, "Number of forces:NFOR=2", "Number\tof \r\n forces:NFOR= 2");
  ExpectReadToTheEnd(ReadText(file));
}

TEST(ReadInputFile, LineEndsOfWindows) {
  std::string file;
  for (const char c : std::string(FullFile)) file += c == '\n' ? "\r\n" : std::string(1, c);
  const Model model = ReadText(file);
  ExpectSection(model.Tables.TBeamSections.at(1), {0.22, 0.014, 0.16, 0.017});
  EXPECT_EQ(model.BeamElements.at(1).RefPoint, (Vector3{11.5, 12.25, 1.875}));
  EXPECT_EQ(model.Tables.NodalRestraints.at(0).fixed,
            (std::array<std::int32_t, 6>{1, 2, 0, -3, 4, 5}));
  ExpectReadToTheEnd(model);
}

TEST(ReadInputFile, TheLastLineNeedsNoLineEnd) {
  std::string file = FullFile;
  file.pop_back();
  ExpectReadToTheEnd(ReadText(file));
}

// ---------------------------------------------------------------------------------------------
// Errors that stop the run.

TEST(ReadInputFile, AMissingFileStops) {
  const TempFolder folder;
  const std::string file = (folder.Path() / "fem_solving.txt").string();
  Model model;
  ExpectStop([&] { ReadInputFile(file.c_str(), model); }, "Preprocessor file read error!");
}

TEST(ReadInputFile, AFolderOfThatNameStops) {
  const TempFolder folder;
  const std::string file = (folder.Path() / "fem_solving.txt").string();
  std::filesystem::create_directory(file);
  Model model;
  ExpectStop([&] { ReadInputFile(file.c_str(), model); }, "Preprocessor file read error!");
}

// These tables are always allocated, and a table of a negative size cannot be.
TEST(ReadInputFile, ANegativeCountOfATableThatIsAlwaysAllocatedStopsAndIsNamed) {
  for (const std::string key : {"NMT", "NTK", "NPOIN", "NRN"}) {
    SCOPED_TRACE(key);
    ExpectStopOnText(Replace(EmptyFile, ":" + key + "=0", ":" + key + "=-3"),
                     "The count " + key + " is negative: -3.");
  }
}

// These tables are allocated only if they have rows. A negative count is stored as it is and has no
// rows.
TEST(ReadInputFile, AnotherNegativeCountActsAsZero) {
  for (const std::string key : {"NTBS", "NLBS", "NCBS", "NELEM_S_4ND", "NELEM_S_3ND", "NELEM_B",
                                "NFOR", "NDL_S_4ND", "NDL_S_3ND", "NDL_B"}) {
    for (const std::string count : {"-1", "-2147483648"}) {
      SCOPED_TRACE(key + count);
      const Model model = ReadText(Replace(EmptyFile, ":" + key + "=0", ":" + key + "=" + count));
      const ModelTables& t = model.Tables;
      const std::map<std::string, std::int32_t> counts{
          {"NTBS", t.NTBS},       {"NLBS", t.NLBS},
          {"NCBS", t.NCBS},       {"NELEM_S_4ND", t.NELEM_S_4ND},
          {"NELEM_B", t.NELEM_B}, {"NELEM_S_3ND", t.NELEM_S_3ND},
          {"NFOR", t.NFOR},       {"NDL_S_4ND", t.NDL_S_4ND},
          {"NDL_B", t.NDL_B},     {"NDL_S_3ND", t.NDL_S_3ND}};
      for (const auto& [name, read] : counts) {
        EXPECT_EQ(read, name == key ? std::stoi(count) : 0) << name;
      }
      EXPECT_TRUE(t.TBeamSections.empty() && t.LBeamSections.empty() && t.CBeamSections.empty());
      EXPECT_TRUE(model.Shell4Elements.empty() && model.Shell3Elements.empty());
      EXPECT_TRUE(model.BeamElements.empty() && t.NodalForces.empty());
      EXPECT_TRUE(t.Shell4SurfaceLoads.empty() && t.Shell3SurfaceLoads.empty());
      EXPECT_TRUE(t.BeamLineLoads.empty());
    }
  }
}

TEST(ReadInputFile, ShellReferencesOutsideTheirTablesStop) {
  ExpectStopOnText(Replace(FullFile, "0:0,1,2,3[1,0]", "0:0,1,2,6[1,0]"),
                   "Four-node shell element 0 refers to node 6; there are 6 nodal points.");
  ExpectStopOnText(Replace(FullFile, "0:0,1,2,3[1,0]", "0:0,1,2,3[2,0]"),
                   "Four-node shell element 0 refers to material 2; there are 2 materials.");
  ExpectStopOnText(
      Replace(FullFile, "0:0,1,2,3[1,0]", "0:0,1,2,3[1,-1]"),
      "Four-node shell element 0 refers to thickness -1; there are 2 shell thicknesses.");
  ExpectStopOnText(Replace(FullFile, "0:4,2,5[0,1]", "0:-4,2,5[0,1]"),
                   "Three-node shell element 0 refers to node -4; there are 6 nodal points.");
  ExpectStopOnText(Replace(FullFile, "0:4,2,5[0,1]", "0:4,2,5[9,1]"),
                   "Three-node shell element 0 refers to material 9; there are 2 materials.");
  ExpectStopOnText(
      Replace(FullFile, "0:4,2,5[0,1]", "0:4,2,5[0,2]"),
      "Three-node shell element 0 refers to thickness 2; there are 2 shell thicknesses.");
}

TEST(ReadInputFile, BeamReferencesOutsideTheirTablesStop) {
  ExpectStopOnText(Replace(FullFile, "1:5,3<", "1:6,3<"),
                   "Beam element 1 refers to node 6; there are 6 nodal points.");
  ExpectStopOnText(Replace(FullFile, "1:5,3<", "1:5,-1<"),
                   "Beam element 1 refers to node -1; there are 6 nodal points.");
  ExpectStopOnText(Replace(FullFile, "-1>[1,BeamSecType=0", "-1>[2,BeamSecType=0"),
                   "Beam element 0 refers to material 2; there are 2 materials.");
  ExpectStopOnText(Replace(FullFile, "8>[0,BeamSecType=1", "8>[-2,BeamSecType=1"),
                   "Beam element 1 refers to material -2; there are 2 materials.");
  ExpectStopOnText(Replace(FullFile, "64>[1,BeamSecType=2", "64>[3,BeamSecType=2"),
                   "Beam element 2 refers to material 3; there are 2 materials.");
}

TEST(ReadInputFile, SectionReferencesOutsideTheirTablesStop) {
  ExpectStopOnText(
      Replace(FullFile, "BeamSecType=0,BeamSecIndex=1", "BeamSecType=0,BeamSecIndex=2"),
      "Beam element 0 refers to section 2; there are 2 T_beam sections.");
  ExpectStopOnText(
      Replace(FullFile, "BeamSecType=1,BeamSecIndex=0", "BeamSecType=1,BeamSecIndex=1"),
      "Beam element 1 refers to section 1; there are 1 L_beam sections.");
  ExpectStopOnText(
      Replace(FullFile, "BeamSecType=2,BeamSecIndex=1", "BeamSecType=2,BeamSecIndex=-1"),
      "Beam element 2 refers to section -1; there are 2 C_beam sections.");
}

// A beam of a type without a section table still has two nodes.
TEST(ReadInputFile, TheNodesOfABeamOfAnotherTypeAreChecked) {
  ExpectStopOnText(Replace(FullFile, "3:1,0<", "3:1,66<"),
                   "Beam element 3 refers to node 66; there are 6 nodal points.");
}

}  // namespace
}  // namespace korvex
