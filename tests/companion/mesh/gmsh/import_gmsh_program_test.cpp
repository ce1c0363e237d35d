// Meshes of gmsh itself, which runs as a program of its own; without it these tests are skipped.
//
// What is expected comes from the geometry: counts of elements, areas, lengths, normals.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "base/vector3.h"
#include "mesh/gmsh/sample_mesh.h"
#include "support/read_bytes.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::Vector3;

// Areas and lengths: gmsh places nodes of curves to about 1e-11 of their length.
constexpr double Tolerance = 1e-9;

// The program in PATH; empty where there is none.
fs::path FindGmsh() {
  const char* path = std::getenv("PATH");
  if (path == nullptr) return {};
#ifdef _WIN32
  const char separator = ';';
  const char* const name = "gmsh.exe";
#else
  const char separator = ':';
  const char* const name = "gmsh";
#endif
  const std::string folders = path;
  for (std::size_t at = 0; at <= folders.size();) {
    const std::size_t end = std::min(folders.find(separator, at), folders.size());
    fs::path program = fs::path(folders.substr(at, end - at)) / name;
    std::error_code error;
    if (end > at && fs::exists(program, error)) return program;
    at = end + 1;
  }
  return {};
}

struct Meshed {
  ImportModel model;
  ImportReport report;
};

class ImportGmshProgram : public testing::Test {
 protected:
  void SetUp() override {
    gmsh_ = FindGmsh();
    if (gmsh_.empty()) GTEST_SKIP() << "gmsh is not in PATH";
  }

  // Meshes the geometry and imports what is written; the file may have another name than "a.msh".
  Meshed Mesh(const std::string& geometry, const std::vector<std::string>& options,
              const std::string& file = "a.msh") {
    const korvex::test::TempFolder folder;
    korvex::test::WriteFile(folder.Path() / "a.geo", geometry);
    std::vector<std::string> arguments = {"-2", "-o", "a.msh"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.emplace_back("a.geo");
    const auto run = korvex::test::RunProgram(gmsh_, folder.Path(), "", arguments);
    EXPECT_EQ(run.exitStatus, 0) << run.out << run.err;
    text_ = ReadBytes(folder.Path() / file);
    EXPECT_FALSE(text_.empty()) << run.out;
    Meshed meshed;
    ImportText(text_, meshed.model, meshed.report);
    return meshed;
  }

  fs::path gmsh_;
  std::string text_;  // of the last mesh
};

const std::vector<std::vector<std::string>> Forms = {{"-format", "msh22"},
                                                     {"-format", "msh22", "-bin"},
                                                     {"-format", "msh41"},
                                                     {"-format", "msh41", "-bin"}};

// A plate of 4 x 2 in the plane z = 3 and a second one of 2 x 2 beside it, standing up: x = 4, z
// from 3 to 5. Normals of the geometry: the first (0, 0, 1), the second (1, 0, 0).
const char* const TwoPlates =
    "Point(1)={0,0,3};Point(2)={4,0,3};Point(3)={4,2,3};Point(4)={0,2,3};\n"
    "Point(5)={4,0,5};Point(6)={4,2,5};\n"
    "Line(1)={1,2};Line(2)={2,3};Line(3)={3,4};Line(4)={4,1};\n"
    "Line(5)={3,6};Line(6)={6,5};Line(7)={5,2};\n"
    "Curve Loop(1)={1,2,3,4};Plane Surface(1)={1};\n"
    "Curve Loop(2)={2,5,6,7};Plane Surface(2)={2};\n"
    "Transfinite Curve{1,3}=9;Transfinite Curve{2,4,5,6,7}=5;\n"
    "Transfinite Surface{1};Transfinite Surface{2};\n";
const char* const TwoGroups =
    "Physical Surface(\"deck\")={1};Physical Surface(\"wall\")={2};\n"
    "Physical Curve(\"clamped\")={4};Physical Point(\"tip\")={6};\n";

// Twice the area along e3: the sum of cross products round the shell.
Vector3 AreaVector(const ImportModel& model, const ImportShell& shell) {
  Vector3 sum{};
  const Vector3 first = PlaceOf(model, shell.nodes[0]);
  for (std::size_t k = 1; k + 1 < CornersOf(shell); ++k) {
    const Vector3 cross =
        korvex::Cross(korvex::Subtract(PlaceOf(model, shell.nodes[k]), first),
                      korvex::Subtract(PlaceOf(model, shell.nodes[k + 1]), first));
    for (std::size_t i = 0; i < 3; ++i) sum[i] += cross[i] / 2.0;
  }
  return sum;
}

const ImportGroup& GroupOf(const ImportModel& model, const std::string& name) {
  for (const ImportGroup& group : model.groups) {
    if (group.name == name) return group;
  }
  ADD_FAILURE() << "no group " << name;
  static const ImportGroup none;
  return none;
}

// The sum of area vectors: for a plane group its area along its normal, if all shells agree.
void ExpectArea(const ImportModel& model, const std::string& group, const Vector3& expected) {
  Vector3 sum{};
  double area = 0.0;
  for (const std::int32_t shell : GroupOf(model, group).shells) {
    const Vector3 one = AreaVector(model, model.shells[static_cast<std::size_t>(shell)]);
    for (std::size_t i = 0; i < 3; ++i) sum[i] += one[i];
    area += korvex::Length(one);
  }
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(sum[i], expected[i], Tolerance) << group;
  EXPECT_NEAR(area, korvex::Length(expected), Tolerance) << group;
}

double LengthOf(const ImportModel& model, const std::string& group) {
  double length = 0.0;
  for (const std::int32_t row : GroupOf(model, group).beams) {
    const ImportBeam& beam = model.beams[static_cast<std::size_t>(row)];
    length += korvex::Length(
        korvex::Subtract(PlaceOf(model, beam.nodes[1]), PlaceOf(model, beam.nodes[0])));
  }
  return length;
}

void ExpectTwoPlates(const Meshed& plates, std::size_t quads, std::size_t triangles) {
  const ImportModel& model = plates.model;
  std::size_t corners3 = 0;
  for (const ImportShell& shell : model.shells) corners3 += CornersOf(shell) == 3 ? 1 : 0;
  EXPECT_EQ(corners3, triangles);
  EXPECT_EQ(model.shells.size(), quads + triangles);
  // 9 x 5 nodes, and 5 x 5 but for the common edge.
  EXPECT_EQ(model.nodes.size(), 65U);
  ExpectArea(model, "deck", {0, 0, 8});
  ExpectArea(model, "wall", {4, 0, 0});
  EXPECT_EQ(GroupOf(model, "clamped").beams.size(), 4U);
  EXPECT_EQ(GroupOf(model, "clamped").nodes.size(), 5U);
  EXPECT_NEAR(LengthOf(model, "clamped"), 2.0, Tolerance);
  ASSERT_EQ(GroupOf(model, "tip").nodes.size(), 1U);
  EXPECT_EQ(PlaceOf(model, GroupOf(model, "tip").nodes[0]), (Vector3{4, 2, 5}));
  EXPECT_EQ(GroupOf(model, "deck").nodes.size(), 45U);
  EXPECT_EQ(model.groups.size(), 4U);
}

TEST_F(ImportGmshProgram, Quadrangles) {
  for (const auto& form : Forms) {
    const Meshed plates =
        Mesh(std::string(TwoPlates) + "Recombine Surface{1,2};\n" + TwoGroups, form);
    ExpectTwoPlates(plates, 8 * 4 + 4 * 4, 0);
    EXPECT_TRUE(plates.report.entries.empty()) << Describe(plates.report);
  }
}

TEST_F(ImportGmshProgram, Triangles) {
  for (const auto& form : Forms) {
    ExpectTwoPlates(Mesh(std::string(TwoPlates) + TwoGroups, form), 0, 2 * (8 * 4 + 4 * 4));
  }
}

TEST_F(ImportGmshProgram, QuadranglesAndTriangles) {
  for (const auto& form : Forms) {
    ExpectTwoPlates(Mesh(std::string(TwoPlates) + "Recombine Surface{1};\n" + TwoGroups, form),
                    8 * 4, 2 * 4 * 4);
  }
}

TEST_F(ImportGmshProgram, AllFormsGiveTheSameModel) {
  const std::string geometry = std::string(TwoPlates) +
                               "Physical Surface(\"all\")={1,2};Physical Curve(\"edge\")={1,5};\n"
                               "Recombine Surface{2};\n";
  const std::string expected = Describe(Mesh(geometry, Forms[0]).model);
  EXPECT_NE(expected.find("quadrangle"), std::string::npos);
  EXPECT_NE(expected.find("triangle"), std::string::npos);
  for (const auto& form : Forms)
    EXPECT_TRUE(Describe(Mesh(geometry, form).model) == expected) << form[1];
}

TEST_F(ImportGmshProgram, ElementsInTwoGroupsAreElementsOnce) {
  const std::string geometry = std::string(TwoPlates) + "Recombine Surface{1,2};\n" + TwoGroups +
                               "Physical Surface(\"steel\")={1,2};\n"
                               "Physical Curve(\"again\")={4};\n";
  for (const auto& form : Forms) {
    const Meshed plates = Mesh(geometry, form);
    EXPECT_EQ(plates.model.shells.size(), 48U);
    EXPECT_EQ(plates.model.beams.size(), 4U);
    EXPECT_EQ(GroupOf(plates.model, "steel").shells.size(), 48U);
    EXPECT_EQ(GroupOf(plates.model, "again").beams, GroupOf(plates.model, "clamped").beams);
    ExpectArea(plates.model, "deck", {0, 0, 8});
    EXPECT_TRUE(plates.report.entries.empty()) << Describe(plates.report);
  }
}

TEST_F(ImportGmshProgram, AReversedGroupHasItsNormalsTurned) {
  const std::string geometry = std::string(TwoPlates) + "Recombine Surface{1};\n" +
                               "Physical Surface(\"deck\")={-1};Physical Surface(\"wall\")={-2};\n"
                               "Physical Curve(\"edge\")={-1};\n";
  for (const auto& form : Forms) {
    const Meshed plates = Mesh(geometry, form);
    ExpectArea(plates.model, "deck", {0, 0, -8});
    ExpectArea(plates.model, "wall", {-4, 0, 0});
    // Curve 1 runs along x; reversed, its lines run back.
    for (const ImportBeam& beam : plates.model.beams) {
      EXPECT_LT(PlaceOf(plates.model, beam.nodes[1])[0], PlaceOf(plates.model, beam.nodes[0])[0]);
    }
    EXPECT_EQ(plates.model.beams.size(), 8U);
  }
}

TEST_F(ImportGmshProgram, ASurfaceThatTwoGroupsHaveBothWaysRoundIsTold) {
  const std::string geometry = std::string(TwoPlates) + "Recombine Surface{1,2};\n" +
                               "Physical Surface(\"up\",1)={1};Physical Surface(\"down\",2)={-1};\n"
                               "Physical Surface(\"wall\")={2};\n";
  std::string first;
  for (const auto& form : Forms) {
    const Meshed plates = Mesh(geometry, form);
    EXPECT_EQ(plates.model.shells.size(), 48U);
    EXPECT_EQ(CountFate(plates.report, Fate::Limited), 32U) << Describe(plates.report);
    // gmsh numbers the rows of format 2.2, where an element has one for each group.
    ImportModel model = plates.model;
    for (std::size_t k = 0; k < model.shells.size(); ++k) {
      model.shells[k].number = static_cast<std::int64_t>(k);
    }
    if (first.empty()) first = Describe(model);
    EXPECT_TRUE(Describe(model) == first) << form[1];
  }
}

TEST_F(ImportGmshProgram, WithoutGroupsAllShellsAreOneGroup) {
  for (const auto& form : Forms) {
    const Meshed plates = Mesh(std::string(TwoPlates) + "Recombine Surface{1,2};\n", form);
    EXPECT_EQ(plates.model.shells.size(), 48U);
    EXPECT_TRUE(plates.model.beams.empty());
    ASSERT_EQ(plates.model.groups.size(), 1U);
    EXPECT_EQ(plates.model.groups[0].name, "all");
    // 2 curves of 8 lines, 5 of 4; 6 points.
    EXPECT_EQ(CountFate(plates.report, Fate::NoEffect), 36U + 6U);
  }
}

TEST_F(ImportGmshProgram, AllElementsSavedInFormat41HaveTheirGroups) {
  const Meshed plates =
      Mesh(std::string(TwoPlates) + "Physical Surface(\"deck\")={1};\n", {"-save_all"});
  ExpectArea(plates.model, "deck", {0, 0, 8});
  ExpectArea(plates.model, "rest", {4, 0, 0});
  const Meshed lost = Mesh(std::string(TwoPlates) + "Physical Surface(\"deck\")={1};\n",
                           {"-save_all", "-format", "msh22"});
  EXPECT_EQ(CountFate(lost.report, Fate::Refused), 1U) << Describe(lost.report);
}

TEST_F(ImportGmshProgram, PartitionsAreOneModel) {
  const std::string geometry = std::string(TwoPlates) + "Recombine Surface{1,2};\n" + TwoGroups;
  for (const auto& form : Forms) {
    for (const bool hasGhosts : {false, true}) {
      std::vector<std::string> options = form;
      options.insert(options.end(), {"-part", "2"});
      if (hasGhosts) options.emplace_back("-part_ghosts");
      const Meshed plates = Mesh(geometry, options);
      ExpectTwoPlates(plates, 48, 0);
      for (const Fate fate : {Fate::Limited, Fate::Lost, Fate::Refused}) {
        EXPECT_EQ(CountFate(plates.report, fate), 0U) << Describe(plates.report);
      }
    }
  }
}

// The common edge of both plates, also where partitions meet in it.
TEST_F(ImportGmshProgram, AStiffenerBetweenPartitionsIsOneOfBeams) {
  const std::string geometry = std::string(TwoPlates) + "Recombine Surface{1,2};\n" + TwoGroups +
                               "Physical Curve(\"stiffener\")={2};\n";
  for (const auto& form : Forms) {
    for (const char* count : {"2", "5"}) {
      std::vector<std::string> options = form;
      options.insert(options.end(), {"-part", count});
      const Meshed plates = Mesh(geometry, options);
      EXPECT_EQ(GroupOf(plates.model, "stiffener").beams.size(), 4U);
      EXPECT_EQ(plates.model.beams.size(), 8U);
      EXPECT_NEAR(LengthOf(plates.model, "stiffener"), 2.0, Tolerance);
    }
  }
}

TEST_F(ImportGmshProgram, TheFileOfOnePartitionIsRefused) {
  const std::string geometry = std::string(TwoPlates) + "Recombine Surface{1,2};\n" + TwoGroups;
  for (const auto& form : Forms) {
    for (const char* file : {"a_1.msh", "a_2.msh"}) {
      for (const bool hasGhosts : {false, true}) {
        std::vector<std::string> options = form;
        options.insert(options.end(), {"-part", "2", "-part_split"});
        if (hasGhosts) options.emplace_back("-part_ghosts");
        const Meshed half = Mesh(geometry, options, file);
        EXPECT_LT(half.model.shells.size(), 48U);
        EXPECT_EQ(CountFate(half.report, Fate::Refused), 1U) << Describe(half.report);
      }
    }
  }
}

TEST_F(ImportGmshProgram, OrderTwoIsRefused) {
  const std::string geometry = std::string(TwoPlates) + "Recombine Surface{1};\n" + TwoGroups;
  for (const char* incomplete : {"0", "1"}) {
    for (const auto& form : Forms) {
      std::vector<std::string> options = form;
      options.insert(options.end(),
                     {"-order", "2", "-setnumber", "Mesh.SecondOrderIncomplete", incomplete});
      const Meshed plates = Mesh(geometry, options);
      // 32 quadrangles, 32 triangles, 4 lines.
      EXPECT_EQ(CountFate(plates.report, Fate::Refused), 68U) << Describe(plates.report);
      EXPECT_NE(Describe(plates.report).find("gmsh -order 1"), std::string::npos);
      EXPECT_TRUE(plates.model.shells.empty());
    }
  }
}

TEST_F(ImportGmshProgram, ParametersOfNodesAreNoCoordinates) {
  const std::string geometry = std::string(TwoPlates) + "Recombine Surface{1,2};\n" + TwoGroups;
  for (const auto& form : Forms) {
    std::vector<std::string> options = form;
    options.emplace_back("-save_parametric");
    ExpectTwoPlates(Mesh(geometry, options), 48, 0);
  }
}

TEST_F(ImportGmshProgram, OlderFormatsStopWithARemedy) {
  for (const char* format : {"msh1", "msh40"}) {
    const korvex::test::TempFolder folder;
    korvex::test::WriteFile(folder.Path() / "a.geo", TwoPlates);
    korvex::test::RunProgram(gmsh_, folder.Path(), "", {"-2", "-format", format, "a.geo"});
    const std::string stop = StopOf(ReadBytes(folder.Path() / "a.msh"));
    EXPECT_NE(stop.find("-format msh41"), std::string::npos) << stop;
  }
}

// Of a real mesh 400 places and more, in each form; none may give a model.
TEST_F(ImportGmshProgram, AMeshThatIsCutOffIsNeverLoadedWithLess) {
  const std::string geometry = std::string(TwoPlates) + "Recombine Surface{1};\n" + TwoGroups;
  for (const auto& form : Forms) {
    Mesh(geometry, form);
    const std::string whole = text_;
    const std::size_t step = whole.size() / 400;
    for (std::size_t size = 0; size + 1 < whole.size(); size += step) {
      EXPECT_NE(StopOf(whole.substr(0, size)), "") << form[1] << ", cut at " << size;
    }
  }
}

}  // namespace
}  // namespace kvx::test
