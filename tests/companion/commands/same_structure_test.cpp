// One structure, written by hand as a model file and in each format that kvx import reads: all four
// are the same model, but for the numbers of the nodes, and give the same result files.
//
// A deck plate of a quadrilateral and two triangles (t 10) on a T stiffener of two beams, which
// hangs below it from the plate's lower face, with a tubular post on a corner. Nodes in hand order:
//
//      3-----4-----5          6 above 5, at z = 800
//      |     |  .' |
//      0-----1-----2          y up, x to the right
//
// N, mm. Held: 0 and 3 clamped, 2 along z. Loads: pressure 0.02 down on the plate, 3 N/mm down on
// the stiffener, force and moment on the post's top.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "deck/read_tables.h"
#include "deck/write_tables.h"
#include "renumber/permute_nodes.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::test::ProgramRun;
using korvex::test::ReadFile;
using korvex::test::RunProgram;
using korvex::test::TempFolder;
using korvex::test::WriteFile;

// The stiffener's web points down: local z is -z of the model, so 3 N/mm down is +3 along it, and
// the web begins 5 below the nodes, at the plate's lower face.
constexpr const char* ModelFile = R"(### Toln_Korvex release=3.0 ###
Number of materials:NMT=1
#0:
E=206000
Mu=0.3
Density=7.85e-9
Number of shell thicknesses:NTK=1
#0:
TK=10
Number of T_beam sections:NTBS=1
stiffener
Hw=200
Tw=10
Bf=100
Tf=20
Number of L_beam sections:NLBS=0
Number of C_beam sections:NCBS=1
post
R=50
T=10
Number of nodal points:NPOIN=7
0:0,0,0
1:500,0,0
2:1000,0,0
3:0,400,0
4:500,400,0
5:1000,400,0
6:1000,400,800
Number of four-nodes shell elements:NELEM_S_4ND=1
0:0,1,4,3[0,0]
Number of three-nodes shell elements:NELEM_S_3ND=2
0:1,2,5[0,0]
1:1,5,4[0,0]
Number of beam elements:NELEM_B=3
0:0,1<0,0,-1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=5,BeamSecMirrored=0]
1:1,2<0,0,-1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=5,BeamSecMirrored=0]
2:5,6<1,0,0>[0,BeamSecType=2,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]
Number of restricted nodal points:NRN=3
0: 1 1 1 1 1 1
2: 0 0 1 0 0 0
3: 1 1 1 1 1 1
Number of forces:NFOR=1
6<1500,-700,-2000,0,300000,0>
Number of distributed loads on four-nodes shell elements:NDL_S_4ND=1
0:-0.02,-0.02,-0.02
Number of distributed loads on three-nodes shell elements:NDL_S_3ND=2
0:-0.02,-0.02,-0.02
1:-0.02,-0.02,-0.02
Number of distributed loads on beam elements:NDL_B=2
0:3,3
1:3,3
)";

// The bar's axis runs through the centroid. That of the T lies 155 from the free edge of its web:
// (2000 x 100 + 2000 x 210) / 4000. So it hangs 5 + 155 below the nodes.
constexpr const char* NastranDeck = R"($ Deck plate with a stiffener and a post
SOL 101
CEND
SPC = 1
LOAD = 2
BEGIN BULK
GRID    101             0.      0.      0.
GRID    102             500.    0.      0.
GRID    103             1000.   0.      0.
GRID    104             0.      400.    0.
GRID    105             500.    400.    0.
GRID    106             1000.   400.    0.
GRID,107,,1000.,400.,8.+2
CQUAD4  11      1       101     102     105     104
CTRIA3  12      1       102     103     106
CTRIA3  13      1       102     106     105
CBAR    21      2       101     102     0.      0.      -1.
                        0.      0.      -160.   0.      0.      -160.
CBAR    22      2       102     103     0.      0.      -1.
                        0.      0.      -160.   0.      0.      -160.
CBAR    23      3       106     107     1.      0.      0.
PSHELL  1       9       10.     9               9
MAT1    9       206000.         .3      7.85-9
PBARL   2       9               T
        100.    220.    20.     10.
PBARL   3       9               TUBE
        55.     45.
SPC1    1       123456  101     104
SPC1    1       3       103
FORCE   2       107             100.    15.     -7.     -20.
MOMENT  2       107             1.      0.      3.+5    0.
PLOAD4  2       11      -.02
PLOAD4  2       12      -.02                            THRU    13
PLOAD1  2       21      FZ      FR      0.      -3.     1.      -3.
PLOAD1  2       22      FZ      LE      0.      -3.     500.    -3.
ENDDATA
)";

// n2 = t x n1 is the direction of the web: x x (-y) = -z. The I section has no lower flange; it
// begins at -l = 5 along n2.
constexpr const char* AbaqusDeck = R"(*HEADING
Deck plate with a stiffener and a post
*NODE
1, 0., 0., 0.
2, 500., 0., 0.
3, 1000., 0., 0.
4, 0., 400., 0.
5, 500., 400., 0.
6, 1000., 400., 0.
7, 1000., 400., 800.
*ELEMENT, TYPE=S4, ELSET=PLATE
11, 1, 2, 5, 4
*ELEMENT, TYPE=S3, ELSET=PLATE
12, 2, 3, 6
13, 2, 6, 5
*ELEMENT, TYPE=B31, ELSET=STIFFENER
21, 1, 2
22, 2, 3
*ELEMENT, TYPE=B31, ELSET=POST
23, 6, 7
*MATERIAL, NAME=STEEL
*ELASTIC
206000., .3
*DENSITY
7.85E-9,
*SHELL SECTION, ELSET=PLATE, MATERIAL=STEEL
10.,
*BEAM SECTION, ELSET=STIFFENER, MATERIAL=STEEL, SECTION=I
-5., 220., 0., 100., 0., 20., 10.
0., -1., 0.
*BEAM SECTION, ELSET=POST, MATERIAL=STEEL, SECTION=PIPE
55., 10.
0., -1., 0.
*NSET, NSET=CLAMPED
1, 4
*STEP
*STATIC
*BOUNDARY
CLAMPED, 1, 6
3, 3
*CLOAD
7, 1, 1500.
7, 2, -700.
7, 3, -2000.
7, 5, 3.E5
*DLOAD
PLATE, P, -.02
STIFFENER, PZ, -3.
*END STEP
)";

constexpr const char* GmshMesh = R"($MeshFormat
2.2 0 8
$EndMeshFormat
$PhysicalNames
6
0 1 "clamped"
0 2 "roller"
0 3 "top"
1 4 "stiffener"
1 5 "post"
2 6 "plate"
$EndPhysicalNames
$Nodes
7
10 0 0 0
20 500 0 0
30 1000 0 0
40 0 400 0
50 500 400 0
60 1000 400 0
70 1000 400 800
$EndNodes
$Elements
10
1 15 2 1 1 10
2 15 2 1 2 40
3 15 2 2 3 30
4 15 2 3 4 70
5 1 2 4 1 10 20
6 1 2 4 1 20 30
7 1 2 5 2 60 70
8 3 2 6 1 10 20 50 40
9 2 2 6 1 20 30 60
10 2 2 6 1 20 60 50
$EndElements
)";

constexpr const char* GmshMap = R"([material.steel]
E = 206000
poisson = 0.3
density = 7.85e-9
[group.plate]
thickness = 10
material = "steel"
pressure = -0.02
[group.stiffener]
section = { type = "T", Hw = 200, Tw = 10, Bf = 100, Tf = 20 }
orientation = [0, 0, -1]
offset = 5
material = "steel"
line_load = 3
[group.post]
section = { type = "tube", R = 50, T = 10 }
orientation = [1, 0, 0]
material = "steel"
[group.clamped]
restraint = [1, 1, 1, 1, 1, 1]
[group.roller]
restraint = [0, 0, 1, 0, 0, 0]
[group.top]
force = [1500, -700, -2000, 0, 3e5, 0]
)";

korvex::ModelTables TablesOf(const std::string& text) {
  korvex::ModelTables tables;
  korvex::ReadTables(text, {}, tables);
  return tables;
}

// The structure in one format.
struct Written {
  const char* fileName;
  const char* deck;
  const char* map;     // nullptr: none
  std::int64_t first;  // the number of hand node 0
  std::int64_t step;   // from one to the next
};

void PrintTo(const Written& written, std::ostream* out) { *out << written.fileName; }

struct SameStructure : testing::TestWithParam<Written> {
  TempFolder base;

  void Import() const {
    const Written& written = GetParam();
    WriteFile(base.Path() / written.fileName, written.deck);
    std::vector<std::string> arguments{"import", written.fileName, "-o", "imported"};
    if (written.map != nullptr) {
      WriteFile(base.Path() / "map.toml", written.map);
      arguments.insert(arguments.end(), {"--map", "map.toml"});
    }
    const ProgramRun run = RunProgram(KVX_PROGRAM, base.Path(), "", arguments);
    ASSERT_EQ(run.exitStatus, 0) << run.out << run.err;
  }

  // The hand-written model with its nodes in the order of the imported one.
  std::string HandModel() const {
    const nlohmann::json origin =
        nlohmann::json::parse(ReadFile(base.Path() / "imported" / "import.json"));
    std::vector<std::int32_t> order;
    for (const std::int64_t number : origin.at("nodes")) {
      order.push_back(static_cast<std::int32_t>((number - GetParam().first) / GetParam().step));
    }
    korvex::ModelTables tables = TablesOf(ModelFile);
    EXPECT_EQ(order.size(), tables.Nodes.size());
    PermuteNodes(order, tables);
    return korvex::WriteTables(tables);
  }
};

TEST_P(SameStructure, IsTheSameModel) {
  Import();
  const std::string imported = ReadFile(base.Path() / "imported" / "fem_solving.txt");
  EXPECT_EQ(korvex::WriteTables(TablesOf(imported)), HandModel());
}

TEST_P(SameStructure, GivesTheSameFiles) {
  Import();
  fs::create_directory(base.Path() / "hand");
  WriteFile(base.Path() / "hand" / "fem_solving.txt", HandModel());
  ASSERT_EQ(RunProgram(KVX_PROGRAM, base.Path(), "", {"run", "hand", "imported"}).exitStatus, 0);
  for (const char* name : {"Node_Dis.txt", "Shell element node stress.txt",
                           "Shell element average node stress.txt", "Korvex_AverageStrs.txt"}) {
    const std::string hand = ReadFile(base.Path() / "hand" / name);
    EXPECT_FALSE(hand.empty()) << name;
    EXPECT_EQ(ReadFile(base.Path() / "imported" / name), hand) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, SameStructure,
                         testing::Values(Written{"deck.bdf", NastranDeck, nullptr, 101, 1},
                                         Written{"deck.inp", AbaqusDeck, nullptr, 1, 1},
                                         Written{"deck.msh", GmshMesh, GmshMap, 10, 10}));

}  // namespace
}  // namespace kvx::test
