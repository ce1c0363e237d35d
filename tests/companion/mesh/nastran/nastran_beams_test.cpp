// Beams: axes, sections, and where a section stands. The beam of these decks runs along x; its
// orientation vector is y, where nothing else is said, so the deck's element axes are x, y, z.
//
// The T and L sections have a web of 200 x 8 and a flange of 100 x 10. Centroid of T above the free
// edge of its web: (1600 x 100 + 1000 x 205) / 2600 = 365000 / 2600; the middle lines meet at 205.
#include "mesh/nastran/nastran_beams.h"

#include <gtest/gtest.h>

#include <cmath>

#include "beam/section_properties.h"
#include "mesh/equivalent_loads.h"
#include "mesh/nastran/read_structure.h"

namespace kvx::test {
namespace {

using korvex::Vector3;
using Texts = std::vector<std::string>;

constexpr double Rounding = 1e-11;  // of lengths up to 1000
constexpr double Centroid = 365000.0 / 2600.0;
constexpr double MiddleLines = 205.0;

const std::string Nodes = "GRID,1,,0.,0.,0.\nGRID,2,,1000.,0.,0.\n";
const std::string Steel = "MAT1,7,206000.,,.3\n";
const std::string TeeBar = "PBARL,10,7,,T\n,100.,210.,10.,8.\n";
const std::string TeeBeam = "PBEAML,10,7,,T\n,100.,210.,10.,8.\n";

// What T, T1, T2 and L of CBEAM are reported with, and each L.
const std::string Twists =
    "PBEAML limited 1: its section twists about its centroid here, about its shear centre in the "
    "deck (PBEAML 10)";
std::string TakenAsPrincipal(const std::string& card) {
  return card +
         " limited 1: L: the axes along its web and its flange are taken as principal axes (" +
         card + " 10)";
}

struct BeamOfText {
  StructureOfText structure;
  ImportBeam beam;
  ImportSection section;
  Texts entries;
};

// The only beam of nodes, steel and these cards.
void ReadBeamText(const std::string& cards, BeamOfText& b) {
  ReadStructureText(Nodes + Steel + cards, b.structure);
  b.entries = Entries(b.structure.read.report);
  ASSERT_EQ(b.structure.model.beams.size(), 1U) << cards;
  b.beam = b.structure.model.beams[0];
  if (b.beam.section < 0) return;
  b.section = b.structure.model.sections.at(static_cast<std::size_t>(b.beam.section));
}

void ExpectPlates(const BeamOfText& b, std::int32_t type, double Hw, double Tw, double Bf,
                  double Tf) {
  EXPECT_EQ(b.section.type, type);
  EXPECT_NEAR(b.section.plates.Hw, Hw, Rounding);
  EXPECT_NEAR(b.section.plates.Tw, Tw, Rounding);
  EXPECT_NEAR(b.section.plates.Bf, Bf, Rounding);
  EXPECT_NEAR(b.section.plates.Tf, Tf, Rounding);
}

void ExpectVector(const Vector3& actual, const Vector3& expected) {
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(actual[i], expected[i], Rounding) << "axis " << i;
}

// The vector from the node line to the centroid as the solver has it, global.
Vector3 CentroidOfSolver(const BeamOfText& b) {
  korvex::BeamElement element;
  element.NodeJ = {1000.0, 0.0, 0.0};
  element.E = 206000.0;
  element.Mu = 0.3;
  const korvex::BeamSection& p = b.section.plates;
  const bool isL = b.section.type == korvex::BeamSecTypeL;
  const korvex::SectionProperties properties =
      isL ? korvex::SectionPropertiesL(element, p.Hw, p.Tw, p.Bf, p.Tf, b.beam.BeamSecOz,
                                       b.beam.BeamSecMirrored)
          : korvex::SectionPropertiesT(element, p.Hw, p.Tw, p.Bf, p.Tf, b.beam.BeamSecOz);
  const auto [x, y, z] = BeamAxes(b.structure.model, b.beam);
  Vector3 e{};
  for (std::size_t i = 0; i < 3; ++i) e[i] = properties.Ey * y[i] + properties.Ez * z[i];
  return e;
}

TEST(NastranBeams, TeeOfCbarHasItsCentroidOnTheLine) {
  BeamOfText b;
  ReadBeamText(TeeBar + "CBAR,1,10,1,2,0.,1.,0.\n", b);
  EXPECT_EQ(b.entries, Texts{});
  ExpectPlates(b, korvex::BeamSecTypeT, 200.0, 8.0, 100.0, 10.0);
  ExpectVector(b.beam.orientation, {0.0, 1.0, 0.0});
  EXPECT_NEAR(b.beam.BeamSecOz, -Centroid, Rounding);
  ExpectVector(CentroidOfSolver(b), {0.0, 0.0, 0.0});
  EXPECT_EQ(b.section.name, "PBARL 10");
  EXPECT_EQ(b.structure.model.groups.at(0).name, "PBARL 10");
  EXPECT_EQ(b.structure.systems.beamVectors.at(0), (Vector3{0.0, 1.0, 0.0}));
}

// The flange lies at +y with its middle line on the nodes; so the centroid lies at -y.
TEST(NastranBeams, TeeOfCbeamHasItsShearCentreOnTheLine) {
  BeamOfText b;
  ReadBeamText(TeeBeam + "CBEAM,1,10,1,2,0.,1.,0.\n", b);
  EXPECT_EQ(b.entries, Texts{Twists});
  EXPECT_NEAR(b.beam.BeamSecOz, -MiddleLines, Rounding);
  ExpectVector(CentroidOfSolver(b), {0.0, Centroid - MiddleLines, 0.0});
}

// T2 is T upside down: its flange lies at -y, its centroid at +y of it.
TEST(NastranBeams, T2StandsUpsideDown) {
  BeamOfText b;
  ReadBeamText("PBEAML,10,7,,T2\n,100.,210.,10.,8.\nCBEAM,1,10,1,2,0.,1.,0.\n", b);
  EXPECT_EQ(b.entries, Texts{Twists});
  ExpectPlates(b, korvex::BeamSecTypeT, 200.0, 8.0, 100.0, 10.0);
  ExpectVector(b.beam.orientation, {0.0, -1.0, 0.0});
  ExpectVector(CentroidOfSolver(b), {0.0, MiddleLines - Centroid, 0.0});
}

// T1 lies on its side: its flange stands along y at +z, its web runs to -z.
TEST(NastranBeams, T1LiesOnItsSide) {
  BeamOfText b;
  ReadBeamText("PBEAML,10,7,,T1\n,100.,200.,10.,8.\nCBEAM,1,10,1,2,0.,1.,0.\n", b);
  EXPECT_EQ(b.entries, Texts{Twists});
  ExpectPlates(b, korvex::BeamSecTypeT, 200.0, 8.0, 100.0, 10.0);
  ExpectVector(b.beam.orientation, {0.0, 0.0, 1.0});
  ExpectVector(CentroidOfSolver(b), {0.0, 0.0, Centroid - MiddleLines});
  BeamOfText bar;
  ReadBeamText("PBARL,10,7,,T1\n,100.,200.,10.,8.\nCBAR,1,10,1,2,0.,1.,0.\n", bar);
  EXPECT_EQ(bar.entries, Texts{});
  ExpectVector(CentroidOfSolver(bar), {0.0, 0.0, 0.0});
}

// Deck: web upwards along y from the corner, flange at its foot towards +z, the corner of the
// middle lines on the nodes. Centroid: web (1600) at y = 105, z = 0; flange (1000) at y = 0, z = 50
// - 4.
TEST(NastranBeams, AngleOfCbeamPointsToZ) {
  BeamOfText b;
  ReadBeamText("PBEAML,10,7,,L\n,100.,210.,10.,8.\nCBEAM,1,10,1,2,0.,1.,0.\n", b);
  EXPECT_EQ(b.entries, (Texts{TakenAsPrincipal("PBEAML"), Twists}));
  ExpectPlates(b, korvex::BeamSecTypeL, 200.0, 8.0, 100.0, 10.0);
  ExpectVector(b.beam.orientation, {0.0, -1.0, 0.0});
  EXPECT_FALSE(b.beam.BeamSecMirrored);
  ExpectVector(CentroidOfSolver(b), {0.0, 1600.0 * 105.0 / 2600.0, 1000.0 * 46.0 / 2600.0});
}

// On the line lies the centroid; the solver's web stands over the line all the same.
TEST(NastranBeams, AngleOfCbarStandsBesideItsCentroid) {
  BeamOfText b;
  ReadBeamText("PBARL,10,7,,L\n,100.,210.,10.,8.\nCBAR,1,10,1,2,0.,1.,0.\n", b);
  EXPECT_EQ(b.entries,
            (Texts{"CBAR limited 1: L: its web stands over the nodes, not its centroid (CBAR 1)",
                   TakenAsPrincipal("PBARL")}));
  ExpectVector(CentroidOfSolver(b), {0.0, 0.0, 1000.0 * 46.0 / 2600.0});
}

TEST(NastranBeams, BarsAreFlatBarsAroundTheLine) {
  BeamOfText b;
  ReadBeamText("PBARL,10,7,,BAR\n,10.,200.\nCBAR,1,10,1,2,0.,1.,0.\n", b);
  EXPECT_EQ(b.entries, Texts{});
  ExpectPlates(b, korvex::BeamSecTypeT, 200.0, 10.0, 0.0, 0.0);
  ExpectVector(b.beam.orientation, {0.0, 1.0, 0.0});
  EXPECT_EQ(b.beam.BeamSecOz, -100.0);
  ExpectVector(CentroidOfSolver(b), {0.0, 0.0, 0.0});
  BeamOfText beam;
  ReadBeamText("PBEAML,10,7,,BAR\n,10.,200.\nCBEAM,1,10,1,2,0.,1.,0.\n", beam);
  EXPECT_EQ(beam.beam.BeamSecOz, -100.0);
}

// The torsion constant is b t^3 / 3 with t the web's thickness: so t must be the shorter side.
TEST(NastranBeams, WideBarsAreLaidOnTheirSide) {
  BeamOfText b;
  ReadBeamText("PBARL,10,7,,BAR\n,200.,10.\nCBAR,1,10,1,2,0.,1.,0.\n", b);
  ExpectPlates(b, korvex::BeamSecTypeT, 200.0, 10.0, 0.0, 0.0);
  ExpectVector(b.beam.orientation, {0.0, 0.0, 1.0});
  EXPECT_EQ(b.beam.BeamSecOz, -100.0);
  EXPECT_EQ(b.entries, Texts{});
  // An offset along y must not be lost by it.
  BeamOfText offset;
  ReadBeamText("PBARL,10,7,,BAR\n,200.,10.\nCBAR,1,10,1,2,0.,1.,0.\n,,,0.,7.,0.,0.,7.,0.\n",
               offset);
  ExpectPlates(offset, korvex::BeamSecTypeT, 10.0, 200.0, 0.0, 0.0);
  EXPECT_EQ(offset.beam.BeamSecOz, 2.0);
  EXPECT_EQ(offset.entries,
            Texts{"PBARL limited 1: BAR: wider than high and offset sideways, so it is not laid on "
                  "its side: its torsion constant Hw Tw**3 / 3 is far too large (PBARL 10)"});
  // A bar that stands has the small difference only, with an offset, too.
  BeamOfText upright;
  ReadBeamText("PBARL,10,7,,BAR\n,20.,200.\nCBAR,1,10,1,2,0.,1.,0.\n,,,0.,7.,0.,0.,7.,0.\n",
               upright);
  EXPECT_EQ(upright.entries,
            Texts{"PBARL limited 1: BAR: its torsion constant is that of a thin plate, b t**3 / 3 "
                  "(PBARL 10)"});
}

// 1 - 0.63 t / b: 6.3 % at 20 x 200.
TEST(NastranBeams, ThickBarsTwistTooStiff) {
  BeamOfText b;
  ReadBeamText("PBARL,10,7,,BAR\n,20.,200.\nCBAR,1,10,1,2,0.,1.,0.\n", b);
  EXPECT_TRUE(
      HasEntry(b.structure.read.report, "PBARL", Fate::Limited, "BAR: its torsion constant"));
}

TEST(NastranBeams, TubesHaveTheirMeanRadius) {
  BeamOfText b;
  ReadBeamText("PBARL,10,7,,TUBE\n,50.,44.\nCBAR,1,10,1,2,0.,1.,0.\n", b);
  EXPECT_EQ(b.section.type, korvex::BeamSecTypeC);
  EXPECT_EQ(b.section.tube.R, 47.0);
  EXPECT_EQ(b.section.tube.T, 6.0);
  EXPECT_EQ(b.beam.BeamSecOz, 0.0);
  BeamOfText two;
  ReadBeamText("PBEAML,10,7,,TUBE2\n,50.,6.\nCBEAM,1,10,1,2,0.,1.,0.\n", two);
  EXPECT_EQ(two.section.tube.R, 47.0);
  EXPECT_EQ(two.section.tube.T, 6.0);
  EXPECT_EQ(two.entries, Texts{});
}

// What the group lacks of a beam whose property is this.
std::string LacksOf(const std::string& element, const std::string& property) {
  BeamOfText b;
  ReadBeamText(property + element + ",1,10,1,2,0.,1.,0.\n", b);
  EXPECT_EQ(b.beam.section, -1);
  EXPECT_EQ(b.entries, Texts{});
  return b.structure.model.groups.at(0).lacks;
}

TEST(NastranBeams, SectionsWithoutCounterpartAreToldByTheirGroup) {
  EXPECT_EQ(LacksOf("CBAR", "PBARL,10,7,,I\n,14.,6.,.5,.5,.5,.5\n"),
            "PBARL I: there is no I section");
  EXPECT_EQ(LacksOf("CBAR", "PBARL,10,7,,CHAN\n,4.,6.,.5,.5\n"), "PBARL CHAN: there is no channel");
  EXPECT_EQ(LacksOf("CBAR", "PBARL,10,7,,BOX\n,4.,6.,.5,.5\n"), "PBARL BOX: there is no box");
  EXPECT_EQ(LacksOf("CBAR", "PBARL,10,7,,ROD\n,4.\n"), "PBARL ROD: there is no solid round bar");
  EXPECT_EQ(LacksOf("CBAR", "PBARL,10,7,,TUBE\n,4.\n"), "PBARL TUBE: there is no solid round bar");
  EXPECT_EQ(LacksOf("CBAR", "PBARL,10,7,,TUBE2\n,4.,4.\n"),
            "PBARL TUBE2: there is no solid round bar");
  EXPECT_EQ(LacksOf("CBAR", "PBARL,10,7,,TUBE\n,4.,5.\n"),
            "PBARL TUBE: its dimensions leave no wall");
  EXPECT_EQ(LacksOf("CBAR", "PBARL,10,7,,HAT\n,4.,1.,1.,1.\n"),
            "PBARL HAT: there is no such section");
  EXPECT_EQ(LacksOf("CBAR", "PBARL,10,7,,T\n,4.,1.,1.,1.\n"),
            "PBARL T: its dimensions leave no plates");
  EXPECT_EQ(LacksOf("CBAR", "PBARL,10,7,MYLIB,T\n,4.,5.,1.,1.\n"),
            "PBARL T: its section is of a library of its own");
  EXPECT_EQ(LacksOf("CBAR", "PBAR,10,7,4.,2.,1.\n"),
            "PBAR: areas and moments of inertia do not tell the plates of a section");
  EXPECT_EQ(LacksOf("CBEAM", "PBEAM,10,7,4.,2.,1.\n"),
            "PBEAM: areas and moments of inertia do not tell the plates of a section");
}

// End A, then SO, X, dimensions and mass of each station; blank dimensions are those of end A.
TEST(NastranBeams, OnlyBeamsWithoutTaperAreTaken) {
  const std::string element = "CBEAM,1,10,1,2,0.,1.,0.\n";
  BeamOfText same;
  ReadBeamText(
      "PBEAML,10,7,,T\n,100.,210.,10.,8.,,YES,.5\n,,,,,YES,1.,100.,210.\n,10.,8.\n" + element,
      same);
  EXPECT_EQ(same.entries, Texts{Twists});
  EXPECT_GE(same.beam.section, 0);
  EXPECT_EQ(LacksOf("CBEAM",
                    "PBEAML,10,7,,T\n,100.,210.,10.,8.,,YES,.5\n,,,,,YES,1.,100.,310.\n,10.,8.\n"),
            "PBEAML T: there is no taper");
  EXPECT_EQ(LacksOf("CBEAM", "PBEAML,10,7,,TUBE2\n,50.,6.,,YES,1.,50.,5.\n"),
            "PBEAML TUBE2: there is no taper");
}

TEST(NastranBeams, NonStructuralMassIsTold) {
  BeamOfText b;
  ReadBeamText("PBARL,10,7,,TUBE2\n,50.,6.,.1\nCBAR,1,10,1,2,0.,1.,0.\n", b);
  EXPECT_EQ(b.entries,
            Texts{"PBARL limited 1: its non-structural mass (NSM) is left out (PBARL 10)"});
  BeamOfText end;
  ReadBeamText("PBEAML,10,7,,TUBE2\n,50.,6.,,YES,1.,,,.1\nCBEAM,1,10,1,2,0.,1.,0.\n", end);
  EXPECT_EQ(end.entries,
            Texts{"PBEAML limited 1: its non-structural mass (NSM) is left out (PBEAML 10)"});
}

// A map file gives such a section no mass. Behind the dimensions: one of ROD, six of I.
TEST(NastranBeams, NonStructuralMassWithoutACounterpartIsTold) {
  const std::string reason = "its non-structural mass (NSM) is left out";
  const auto hasMass = [&](const std::string& section) {
    BeamOfText b;
    ReadBeamText("PBARL,10,7,," + section + "\nCBAR,1,10,1,2,0.,1.,0.\n", b);
    return HasEntry(b.structure.read.report, "PBARL", Fate::Limited, reason);
  };
  EXPECT_TRUE(hasMass("I\n,14.,6.,6.,.5,.5,.5,.1"));
  EXPECT_FALSE(hasMass("I\n,14.,6.,6.,.5,.5,.5"));
  EXPECT_TRUE(hasMass("ROD\n,4.,.1"));
  EXPECT_FALSE(hasMass("ROD\n,4.,0."));
  EXPECT_TRUE(hasMass("DBOX\n,20.,10.,10.,1.,1.,1.,1.,1.\n,1.,1.,.1"));
  EXPECT_FALSE(hasMass("DBOX\n,20.,10.,10.,1.,1.,1.,1.,1.\n,1.,1."));
}

TEST(NastranBeams, OffsetAlongTheWebIsPartOfOz) {
  BeamOfText b;
  ReadBeamText(TeeBeam + "CBEAM,1,10,1,2,0.,1.,0.\n,,,0.,56.,0.,0.,56.,0.\n", b);
  EXPECT_EQ(b.entries, Texts{Twists});
  EXPECT_NEAR(b.beam.BeamSecOz, 56.0 - MiddleLines, Rounding);
  ExpectVector(CentroidOfSolver(b), {0.0, 56.0 + Centroid - MiddleLines, 0.0});
  BeamOfText down;
  ReadBeamText(
      "PBEAML,10,7,,T2\n,100.,210.,10.,8.\nCBEAM,1,10,1,2,0.,1.,0.\n,,,0.,56.,0.,0.,56.,0.\n",
      down);
  ExpectVector(CentroidOfSolver(down), {0.0, 56.0 + MiddleLines - Centroid, 0.0});
}

TEST(NastranBeams, OffsetsThatOzCannotSayAreTold) {
  BeamOfText ends;
  ReadBeamText(TeeBar + "CBAR,1,10,1,2,0.,1.,0.\n,,,0.,10.,0.,0.,20.,0.\n", ends);
  EXPECT_EQ(ends.entries, Texts{"CBAR limited 1: its offsets along the web differ from end to end; "
                                "their mean is taken (CBAR 1)"});
  EXPECT_NEAR(ends.beam.BeamSecOz, 15.0 - Centroid, Rounding);
  BeamOfText across;
  ReadBeamText(TeeBar + "CBAR,1,10,1,2,0.,1.,0.\n,,,0.,0.,9.,0.,0.,9.\n", across);
  EXPECT_EQ(across.entries,
            Texts{"CBAR limited 1: its offset across the web is left out (CBAR 1)"});
  EXPECT_NEAR(across.beam.BeamSecOz, -Centroid, Rounding);
  BeamOfText along;
  ReadBeamText(TeeBar + "CBAR,1,10,1,2,0.,1.,0.\n,,,50.,0.,0.\n", along);
  EXPECT_EQ(along.entries, Texts{"CBAR limited 1: its offset along its axis is left out (CBAR 1)"});
}

// One line for the section, not for each element.
TEST(NastranBeams, TheTwistOfASectionIsToldOnce) {
  StructureOfText s;
  ReadStructureText(Nodes + Steel + TeeBeam + "CBEAM,1,10,1,2,0.,1.,0.\nCBEAM,2,10,2,1,0.,1.,0.\n",
                    s);
  EXPECT_EQ(Entries(s.read.report), Texts{Twists});
}

// The map's section stands on the nodes: so must the loads on the beam, and it must be told.
TEST(NastranBeams, OffsetsOfSectionsWithoutCounterpartAreTold) {
  const std::string element = "CBAR,1,10,1,2,0.,1.,0.\n";
  const Texts told{
      "CBAR limited 1: its section has no counterpart: its offset is left out (CBAR 1)"};
  for (const std::string property :
       {"PBAR,10,7,4.,2.,1.\n", "PBARL,10,7,,I\n,14.,6.,.5,.5,.5,.5\n"}) {
    BeamOfText b;
    ReadBeamText(property + element + ",,,0.,30.,-80.,0.,30.,-80.\n", b);
    EXPECT_EQ(b.entries, told);
    EXPECT_EQ(b.structure.systems.beamOffsets.at(0), Vector3{});
    BeamOfText oneEnd;
    ReadBeamText(property + element + ",,,,,,0.,0.,1.\n", oneEnd);
    EXPECT_EQ(oneEnd.entries, told);
    BeamOfText none;
    ReadBeamText(property + element + ",,,0.,0.,0.,0.,0.,0.\n", none);
    EXPECT_EQ(none.entries, Texts{});
  }
  BeamOfText taken;
  ReadBeamText(TeeBar + element + ",,,0.,30.,0.,0.,30.,0.\n", taken);
  EXPECT_EQ(taken.structure.systems.beamOffsets.at(0), (Vector3{0.0, 30.0, 0.0}));
}

// |(0,3,4)| = 5.
TEST(NastranBeams, TubesTakeTheirOffsetWhole) {
  BeamOfText b;
  ReadBeamText("PBARL,10,7,,TUBE2\n,50.,6.\nCBAR,1,10,1,2,0.,1.,0.\n,,,0.,3.,4.,0.,3.,4.\n", b);
  EXPECT_EQ(b.entries, Texts{});
  EXPECT_NEAR(b.beam.BeamSecOz, 5.0, Rounding);
  const auto [x, y, z] = BeamAxes(b.structure.model, b.beam);
  ExpectVector(z, {0.0, 0.6, 0.8});
}

// The displacement system of the nodes has its x along y, its y along -x. The letters say for the
// orientation, end A, end B: G that system, B the basic one, O the element's own without offsets.
// Orientation (1,0,2): with G (0,1,2), so y of the element is (0,1,2) / sqrt 5 and its z is
// x x y = (0,-2,1) / sqrt 5; with B (1,0,2), so y is (0,0,1) and z is (0,-1,0).
// Offset (0,0,3): with G (0,0,3); with O along z of the element.
TEST(NastranBeams, LettersOfTheFlagChooseTheSystems) {
  struct Expected {
    const char* flag;
    Vector3 y;       // of the element
    Vector3 offset;  // mean of both ends
  };
  const double root = std::sqrt(5.0);
  const Vector3 yG = {0.0, 1.0 / root, 2.0 / root}, zG = {0.0, -2.0 / root, 1.0 / root};
  const Vector3 yB = {0.0, 0.0, 1.0}, zB = {0.0, -1.0, 0.0}, up = {0.0, 0.0, 3.0};
  const auto mean = [](const Vector3& a, const Vector3& b) {
    return Vector3{(a[0] + b[0]) / 2.0, (a[1] + b[1]) / 2.0, (a[2] + b[2]) / 2.0};
  };
  const auto times3 = [](const Vector3& a) { return Vector3{3 * a[0], 3 * a[1], 3 * a[2]}; };
  const Expected rows[] = {{"GGG", yG, up},
                           {"", yG, up},
                           {"BGG", yB, up},
                           {"GGO", yG, mean(up, times3(zG))},
                           {"BGO", yB, mean(up, times3(zB))},
                           {"GOG", yG, mean(times3(zG), up)},
                           {"BOG", yB, mean(times3(zB), up)},
                           {"GOO", yG, times3(zG)},
                           {"BOO", yB, times3(zB)}};
  const std::string deck =
      "CORD2R,5,,0.,0.,0.,0.,0.,1.\n,0.,1.,0.\nGRID,3,,0.,0.,0.,5\nGRID,4,,1000.,0.,0.,5\n" +
      TeeBar;
  for (const Expected& row : rows) {
    BeamOfText b;
    ReadBeamText(deck + "CBAR,1,10,3,4,1.,0.,2.," + row.flag + "\n,,,0.,0.,3.,0.,0.,3.\n", b);
    const auto [x, y, z] = BeamAxes(b.structure.model, b.beam);
    ExpectVector(z, row.y);  // the web of T runs along the deck's y
    const double along =
        row.offset[0] * row.y[0] + row.offset[1] * row.y[1] + row.offset[2] * row.y[2];
    EXPECT_NEAR(b.beam.BeamSecOz, along - Centroid, Rounding) << row.flag;
  }
}

// The ends may have systems of their own: an offset (3,0,0) is along y at A and along z at B.
// Node 3 lies on the axis of its cylindrical system 6, node 4 does not: a vector along r has no
// direction at node 3 alone.
TEST(NastranBeams, VectorsOnTheAxisOfASystemAreReported) {
  const auto isTold = [](const std::string& card) {
    StructureOfText s;
    ReadStructureText(
        "CORD2C,6,,0.,0.,0.,0.,0.,1.\n,1.,0.,0.\n"
        "GRID,3,,0.,0.,0.,6\nGRID,4,,0.,1000.,0.,6\n" +
            Steel + TeeBar + card,
        s);
    return HasEntry(s.read.report, "CBAR", Fate::Limited,
                    "on the axis of its cylindrical or spherical system");
  };
  EXPECT_TRUE(isTold("CBAR,1,10,3,4,1.,0.,0.\n"));
  EXPECT_FALSE(isTold("CBAR,1,10,3,4,0.,0.,1.\n"));
  EXPECT_TRUE(isTold("CBAR,1,10,3,4,0.,0.,1.\n,,,1.,0.,0.\n"));
  EXPECT_FALSE(isTold("CBAR,1,10,3,4,0.,0.,1.\n,,,0.,0.,5.,1.,0.,0.\n"));
}

TEST(NastranBeams, EachEndHasItsOwnSystem) {
  BeamOfText b;
  ReadBeamText(
      "CORD2R,5,,0.,0.,0.,0.,0.,1.\n,0.,1.,0.\nCORD2R,6,,0.,0.,0.,1.,0.,0.\n,0.,0.,1.\n"
      "GRID,3,,0.,0.,0.,5\nGRID,4,,1000.,0.,0.,6\n"
      "PBARL,10,7,,TUBE2\n,50.,6.\nCBAR,1,10,3,4,1.,0.,0.\n,,,3.,0.,0.,3.,0.,0.\n",
      b);
  const auto [x, y, z] = BeamAxes(b.structure.model, b.beam);
  ExpectVector(z, {0.0, std::sqrt(0.5), std::sqrt(0.5)});
  EXPECT_NEAR(b.beam.BeamSecOz, 1.5 * std::sqrt(2.0), Rounding);
  EXPECT_EQ(b.entries, Texts{"CBAR limited 1: its offset across the web is left out (CBAR 1)"});
}

TEST(NastranBeams, UnknownFlagsAreRefused) {
  StructureOfText s;
  ReadStructureText(Nodes + Steel + TeeBar + "CBAR,1,10,1,2,0.,1.,0.,GEE\n", s);
  EXPECT_TRUE(HasEntry(s.read.report, "CBAR", Fate::Refused, "the flag of its offset vectors"));
  // Old decks: 1 for a vector, 2 for a node.
  BeamOfText b;
  ReadBeamText(TeeBar + "CBAR,1,10,1,2,0.,1.,0.,1\n", b);
  EXPECT_EQ(b.entries, Texts{});
  BeamOfText twist;
  ReadBeamText(TeeBeam + "CBEAM,1,10,1,2,0.,1.,0.,30.\n", twist);
  EXPECT_EQ(twist.entries,
            (Texts{"CBEAM limited 1: its twist (field 9) is left out (CBEAM 1)", Twists}));
}

TEST(NastranBeams, NodeMayGiveTheOrientation) {
  BeamOfText b;
  ReadBeamText("GRID,9,,500.,0.,70.\n" + TeeBar + "CBAR,1,10,1,2,9\n", b);
  EXPECT_EQ(b.entries, Texts{});
  const auto [x, y, z] = BeamAxes(b.structure.model, b.beam);
  ExpectVector(z, {0.0, 0.0, 1.0});
  // From node A, not from the origin.
  BeamOfText moved;
  ReadBeamText(
      "GRID,3,,0.,50.,0.\nGRID,4,,1000.,50.,0.\nGRID,9,,0.,0.,0.\n" + TeeBar + "CBAR,1,10,3,4,9\n",
      moved);
  ExpectVector(moved.beam.orientation, {0.0, -50.0, 0.0});
  // Integers in all three fields are a vector.
  BeamOfText vector;
  ReadBeamText(TeeBar + "CBAR,1,10,1,2,0,0,1\n", vector);
  ExpectVector(vector.beam.orientation, {0.0, 0.0, 1.0});
  StructureOfText s;
  ReadStructureText(Nodes + Steel + TeeBar + "CBAR,1,10,1,2,99\n", s);
  EXPECT_TRUE(HasEntry(s.read.report, "CBAR", Fate::Refused, "the node of its orientation (G0)"));
}

TEST(NastranBeams, BlankFieldsTakeTheDefaultsOfBarorAndBeamor) {
  BeamOfText b;
  ReadBeamText(
      TeeBar +
          "BAROR,,10,,,0.,0.,1.,GOO\nBEAMOR,,99,,,0.,1.,0.\nCBAR,1,,1,2\n,,,0.,5.,0.,0.,5.,0.\n",
      b);
  EXPECT_EQ(b.entries, Texts{});
  ExpectVector(b.beam.orientation, {0.0, 0.0, 1.0});
  EXPECT_NEAR(b.beam.BeamSecOz, 5.0 - Centroid, Rounding);  // O: along the element's y
  BeamOfText own;
  ReadBeamText(TeeBar + "BAROR,,99,,,0.,0.,1.\nCBAR,1,10,1,2,0.,1.,0.\n", own);
  ExpectVector(own.beam.orientation, {0.0, 1.0, 0.0});
  BeamOfText beam;
  ReadBeamText(TeeBeam + "BAROR,,99,,,0.,1.,0.\nBEAMOR,,10,,,0.,0.,1.\nCBEAM,1,,1,2\n", beam);
  ExpectVector(beam.beam.orientation, {0.0, 0.0, 1.0});
  BeamOfText element;
  ReadBeamText(TeeBar + "CBAR,10,,1,2,0.,1.,0.\n", element);
  EXPECT_EQ(element.structure.model.groups.at(0).name, "PBARL 10");
}

TEST(NastranBeams, ReleasedEndsAndWarpingAreTold) {
  BeamOfText b;
  ReadBeamText(TeeBar + "CBAR,1,10,1,2,0.,1.,0.\n,,456\n", b);
  EXPECT_EQ(b.entries,
            Texts{"CBAR lost 1: its pin flags are left out: the ends are held (CBAR 1)"});
  BeamOfText beam;
  ReadBeamText(TeeBeam + "CBEAM,1,10,1,2,0.,1.,0.\n,45\n,101,102\n", beam);
  EXPECT_EQ(
      beam.entries,
      (Texts{"CBEAM limited 1: its warping (SA, SB) is left out (CBEAM 1)",
             "CBEAM lost 1: its pin flags are left out: the ends are held (CBEAM 1)", Twists}));
}

TEST(NastranBeams, BeamsWithoutAxesAreRefused) {
  const auto reasonOf = [](const std::string& card) {
    StructureOfText s;
    ReadStructureText(Nodes + "GRID,3,,0.,0.,0.\n" + Steel + TeeBar + card, s);
    EXPECT_TRUE(s.model.beams.empty());
    EXPECT_EQ(s.read.report.entries.at(0).fate, Fate::Refused);
    return s.read.report.entries.at(0).reason;
  };
  EXPECT_EQ(reasonOf("CBAR,1,10,1,3,0.,1.,0.\n"), "its nodes lie at one place");
  EXPECT_EQ(reasonOf("CBAR,1,10,1,2,5.,0.,0.\n"),
            "its orientation vector is missing or lies along its axis");
  EXPECT_EQ(reasonOf("CBAR,1,10,1,2\n"),
            "its orientation vector is missing or lies along its axis");
  EXPECT_EQ(reasonOf("CBAR,1,10,1,99,0.,1.,0.\n"), "a node of it does not exist");
  EXPECT_EQ(reasonOf("CBAR,1,11,1,2,0.,1.,0.\n"), "its property does not exist");
  EXPECT_EQ(reasonOf("CBEAM,1,10,1,2,0.,1.,0.\n"), "its property does not exist");
}

}  // namespace
}  // namespace kvx::test
