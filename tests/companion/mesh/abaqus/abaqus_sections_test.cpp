// Where beam sections stand. The outline of a deck's section is worked out by hand from the manual
// of Abaqus ("Beam cross-section library") and compared with the outline of the model's section as
// docs/model-file.md draws it. A part of it was computed with CalculiX 2.20, too: RECT, the default
// of n1, the offsets and PIPE.
#include <gtest/gtest.h>

#include <algorithm>

#include "mesh/abaqus/import_deck.h"
#include "mesh/equivalent_loads.h"

namespace kvx::test {
namespace {

using Texts = std::vector<std::string>;
using korvex::Vector3;

// Lengths of up to 120 in doubles: a few roundings.
constexpr double Rounding = 1e-12;

constexpr const char* Twists =
    "*BEAM SECTION: a section with one flange: it twists about its centroid here, not about its "
    "shear centre";

// A rectangle across a beam along global x: y from, y to, z from, z to.
using Box = std::array<double, 4>;

// The corners of a plate given in local y and z, as a box in global y and z.
Box GlobalBox(const Vector3& y, const Vector3& z, const Box& local) {
  Box box{1e30, -1e30, 1e30, -1e30};
  for (const double v : {local[0], local[1]}) {
    for (const double w : {local[2], local[3]}) {
      const double a = v * y[1] + w * z[1];
      const double b = v * y[2] + w * z[2];
      box = {std::min(box[0], a), std::max(box[1], a), std::min(box[2], b), std::max(box[3], b)};
    }
  }
  return box;
}

// Web and flange of the first beam, relative to its nodes (docs/model-file.md, "Beams").
std::vector<Box> Outline(const ImportedDeck& deck) {
  const ImportBeam& beam = deck.model.beams.at(0);
  const ImportSection& section = deck.model.sections.at(static_cast<std::size_t>(beam.section));
  const auto [x, y, z] = BeamAxes(deck.model, beam);
  const korvex::BeamSection& p = section.plates;
  const double foot = beam.BeamSecOz;
  std::vector<Box> boxes{GlobalBox(y, z, {-p.Tw / 2.0, p.Tw / 2.0, foot, foot + p.Hw})};
  if (p.Bf == 0.0) return boxes;
  double from = -p.Bf / 2.0;
  if (section.type == korvex::BeamSecTypeL) from = -p.Tw / 2.0;
  double to = from + p.Bf;
  if (beam.BeamSecMirrored) {
    std::swap(from, to);
    from = -from;
    to = -to;
  }
  boxes.push_back(GlobalBox(y, z, {from, to, foot + p.Hw, foot + p.Hw + p.Tf}));
  return boxes;
}

// A beam along +x with a section. options: behind SECTION=, such as "RECT, OFFSET1=0.5".
ImportedDeck BeamWith(const std::string& options, const std::string& data,
                      const std::string& n1 = "0.,1.,0.") {
  return ImportDeck(
      "*NODE\n1,0,0,0\n2,1000,0,0\n*ELEMENT,TYPE=B31,ELSET=E\n1,1,2\n"
      "*MATERIAL,NAME=M\n*ELASTIC\n200000,0.3\n*BEAM SECTION,ELSET=E,MATERIAL=M,"
      "SECTION=" +
      options + "\n" + data + "\n" + n1 + "\n" + EmptyStep);
}

void ExpectOutline(const ImportedDeck& deck, const std::vector<Box>& expected) {
  const std::vector<Box> boxes = Outline(deck);
  ASSERT_EQ(boxes.size(), expected.size());
  for (std::size_t k = 0; k < boxes.size(); ++k) {
    for (std::size_t i = 0; i < 4; ++i) {
      EXPECT_NEAR(boxes[k][i], expected[k][i], Rounding) << "plate " << k << ", side " << i;
    }
  }
}

// a along n1, b along n2 = t x n1; the longer side is the web. CalculiX 2.20: with 20, 60 and
// n1 = y a force along y bends about the weak axis, one along z about the strong one.
TEST(AbaqusProfiles, RectHasItsFirstSideAlongN1) {
  ExpectOutline(BeamWith("RECT", "20.,60."), {{-10.0, 10.0, -30.0, 30.0}});
  EXPECT_EQ(BeamWith("RECT", "20.,60.").model.sections[0].plates.Hw, 60.0);
  ExpectOutline(BeamWith("RECT", "60.,20."), {{-30.0, 30.0, -10.0, 10.0}});
  EXPECT_EQ(BeamWith("RECT", "60.,20.").model.sections[0].plates.Hw, 60.0);
}

// Without a line for n1 it is (0, 0, -1); n2 = x x (-z) = y. CalculiX 2.20: with 20, 60 a force
// along z bends about the weak axis.
TEST(AbaqusProfiles, N1IsMinusZByDefault) {
  ExpectOutline(BeamWith("RECT", "20.,60.", "**"), {{-30.0, 30.0, -10.0, 10.0}});
  ExpectOutline(BeamWith("RECT", "20.,60.", "0.,0.,0."), {{-30.0, 30.0, -10.0, 10.0}});
}

// n1 counts by its part across the beam.
TEST(AbaqusProfiles, N1NeedNotBeSquareToTheBeam) {
  ExpectOutline(BeamWith("RECT", "20.,60.", "5.,1.,0."), {{-10.0, 10.0, -30.0, 30.0}});
}

// CalculiX: the node lies OFFSET times the side off the centre. Version 2.20 expands 20, 60 with
// OFFSET2 = 0.5 to z from -60 to 0, with -0.5 to z from 0 to 60, with OFFSET1 = 0.5 to y from -20
// to 0; the last one stands beside its web's line, which the model cannot say.
TEST(AbaqusProfiles, OffsetsOfRect) {
  ExpectOutline(BeamWith("RECT, OFFSET2=0.5", "20.,60."), {{-10.0, 10.0, -60.0, 0.0}});
  ExpectOutline(BeamWith("RECT, OFFSET2=-0.5", "20.,60."), {{-10.0, 10.0, 0.0, 60.0}});
  ExpectOutline(BeamWith("RECT, OFFSET1=0.5", "60.,20."), {{-60.0, 0.0, -10.0, 10.0}});
  EXPECT_TRUE(Reasons(BeamWith("RECT, OFFSET2=0.5", "20.,60."), Fate::Limited).empty());
  const ImportedDeck aside = BeamWith("RECT, OFFSET1=0.5", "20.,60.");
  ExpectOutline(aside, {{-10.0, 10.0, -30.0, 30.0}});
  EXPECT_EQ(
      Reasons(aside, Fate::Limited),
      Texts{"*BEAM SECTION: the section stands beside its nodes; here its web stands on them"});
}

// A strip has the torsional stiffness b t^3 / 3; a square bar 0.141 t^4.
TEST(AbaqusProfiles, CompactBarsAreTold) {
  EXPECT_EQ(Reasons(BeamWith("RECT", "20.,59."), Fate::Limited).size(), 1U);
  EXPECT_TRUE(Reasons(BeamWith("RECT", "20.,60."), Fate::Limited).empty());
}

// Outer radius 50 and wall 5: mean radius 47.5. CalculiX 2.20: deflection of a cantilever of
// pi / 4 (50^4 - 45^4).
TEST(AbaqusProfiles, PipeHasItsOuterRadius) {
  for (const char* type : {"PIPE", "pipe", "THICK PIPE"}) {
    const ImportedDeck deck = BeamWith(type, "50.,5.");
    ASSERT_EQ(deck.model.sections.size(), 1U) << type;
    EXPECT_EQ(deck.model.sections[0].type, korvex::BeamSecTypeC);
    EXPECT_EQ(deck.model.sections[0].tube.R, 47.5);
    EXPECT_EQ(deck.model.sections[0].tube.T, 5.0);
    EXPECT_EQ(deck.model.beams[0].BeamSecOz, 0.0);
  }
}

// The centre lies half a diameter of 100 against n1 = y, and against n2 = z.
TEST(AbaqusProfiles, PipesAreMovedInAnyDirection) {
  const ImportedDeck one = BeamWith("PIPE, OFFSET1=0.5", "50.,5.");
  EXPECT_NEAR(BeamAxes(one.model, one.model.beams[0])[2][1], -1.0, Rounding);
  EXPECT_EQ(one.model.beams[0].BeamSecOz, 50.0);
  const ImportedDeck two = BeamWith("PIPE, OFFSET2=-0.25", "50.,5.");
  EXPECT_NEAR(BeamAxes(two.model, two.model.beams[0])[2][2], 1.0, Rounding);
  EXPECT_EQ(two.model.beams[0].BeamSecOz, 25.0);
  const ImportedDeck both = BeamWith("PIPE, OFFSET1=0.3, OFFSET2=0.4", "50.,5.");
  const Vector3 z = BeamAxes(both.model, both.model.beams[0])[2];
  EXPECT_NEAR(z[1], -0.6, Rounding);
  EXPECT_NEAR(z[2], -0.8, Rounding);
  EXPECT_NEAR(both.model.beams[0].BeamSecOz, 50.0, Rounding);
}

// I: l = 30, h = 100. Its lower face lies 30 below the node, its upper one 70 above.
TEST(AbaqusProfiles, IWithItsUpperFlangeStandsUpright) {
  ExpectOutline(BeamWith("I", "30.,100.,0.,60.,0.,8.,6."),
                {{-3.0, 3.0, -30.0, 62.0}, {-30.0, 30.0, 62.0, 70.0}});
  // A flange of some width and no thickness is none.
  ExpectOutline(BeamWith("I", "30.,100.,50.,60.,0.,8.,6."),
                {{-3.0, 3.0, -30.0, 62.0}, {-30.0, 30.0, 62.0, 70.0}});
}

TEST(AbaqusProfiles, IWithItsLowerFlangeHangs) {
  ExpectOutline(BeamWith("I", "30.,100.,60.,0.,8.,0.,6."),
                {{-3.0, 3.0, -22.0, 70.0}, {-30.0, 30.0, -30.0, -22.0}});
}

TEST(AbaqusProfiles, IWithoutFlangesIsABar) {
  ExpectOutline(BeamWith("I", "30.,100.,0.,0.,0.,0.,6."), {{-3.0, 3.0, -30.0, 70.0}});
}

TEST(AbaqusProfiles, IMayHangOnTheOtherSideOfItsNode) {
  // A stiffener below a plate: n1 = -y makes n2 = x x (-y) = -z; its web begins at the node.
  ExpectOutline(BeamWith("I", "0.,100.,0.,60.,0.,8.,6.", "0.,-1.,0."),
                {{-3.0, 3.0, -92.0, 0.0}, {-30.0, 30.0, -100.0, -92.0}});
}

TEST(AbaqusProfiles, TIsReadAsItsProfileIs) {
  const ImportedDeck deck = BeamWith("T", "60.,100.,30.,8.,6.");
  ExpectOutline(deck, {{-3.0, 3.0, -30.0, 62.0}, {-30.0, 30.0, 62.0, 70.0}});
  EXPECT_EQ(Reasons(deck, Fate::Limited),
            (Texts{"*BEAM SECTION: SECTION=T is read as b, h, l, tf, tw", Twists}));
}

// A flange on one side puts the shear centre into it, the centroid lies in the web.
TEST(AbaqusProfiles, IWithOneFlangeTwistsAboutItsCentroid) {
  EXPECT_EQ(Reasons(BeamWith("I", "30.,100.,0.,60.,0.,8.,6."), Fate::Limited), Texts{Twists});
  EXPECT_EQ(Reasons(BeamWith("I", "30.,100.,60.,0.,8.,0.,6."), Fate::Limited), Texts{Twists});
  EXPECT_EQ(Reasons(BeamWith("I", "30.,100.,0.,0.,0.,0.,6."), Fate::Limited), Texts{});
}

// A map file's section stands on the nodes.
TEST(AbaqusSections, OffsetsOfSectionsWithoutCounterpartAreTold) {
  const std::string reason = ": the section has no counterpart: its offset is left out";
  EXPECT_EQ(Reasons(BeamWith("BOX, OFFSET2=0.5", "50.,80.,5.,5.,5.,5."), Fate::Limited),
            Texts{"*BEAM SECTION" + reason});
  EXPECT_EQ(Reasons(BeamWith("CIRC, OFFSET1=-0.5", "50."), Fate::Limited),
            Texts{"*BEAM SECTION" + reason});
  EXPECT_EQ(Reasons(BeamWith("BOX, OFFSET1=0.,OFFSET2=0.", "50.,80.,5.,5.,5.,5."), Fate::Limited),
            Texts{});
  EXPECT_EQ(Reasons(ImportDeck("*NODE\n1,0,0,0\n2,1,0,0\n*ELEMENT,TYPE=B31,ELSET=E\n1,1,2\n"
                               "*BEAM GENERAL SECTION,ELSET=E,SECTION=GENERAL,OFFSET1=.1\n"
                               "1.,1.,0.,1.,1.\n0,1,0\n2e5,8e4\n"),
                    Fate::Limited),
            Texts{"*BEAM GENERAL SECTION" + reason});
}

// L: leg a = 80 along +n1 = +y, t1 = 8; leg b = 100 along +n2 = +z, t2 = 10; the node where the
// middle lines meet, so leg a takes y from -5 to 75, z from -4 to 4, leg b y from -5 to 5, z from
// -4 to 96. The corner belongs to the flange.
TEST(AbaqusProfiles, LHasItsLegsAlongN1AndN2) {
  ExpectOutline(BeamWith("L", "80.,100.,8.,10."),
                {{-5.0, 5.0, 4.0, 96.0}, {-5.0, 75.0, -4.0, 4.0}});
  // a = 120 is longer and becomes the web: y from -5 to 115.
  ExpectOutline(BeamWith("L", "120.,100.,8.,10."),
                {{5.0, 115.0, -4.0, 4.0}, {-5.0, 5.0, -4.0, 96.0}});
}

TEST(AbaqusProfiles, HowAnLIsReadIsTold) {
  EXPECT_EQ(
      Reasons(BeamWith("L", "80.,100.,8.,10."), Fate::Limited),
      (Texts{"*BEAM SECTION: SECTION=L: legs along n1 and n2, the node where their middle lines "
             "meet",
             "*BEAM SECTION: SECTION=L: the axes along its legs are taken as principal axes",
             Twists}));
}

// n1 = z makes n2 = x x z = -y: leg a along +z, leg b along -y.
TEST(AbaqusProfiles, LTurnsWithN1) {
  ExpectOutline(BeamWith("L", "80.,100.,8.,10.", "0.,0.,1."),
                {{-96.0, -4.0, -5.0, 5.0}, {-4.0, 4.0, -5.0, 75.0}});
  ExpectOutline(BeamWith("L", "80.,100.,8.,10.", "0.,-1.,0."),
                {{-5.0, 5.0, -96.0, -4.0}, {-75.0, 5.0, -4.0, 4.0}});
}

// The same section on a beam from right to left: t = -x, n2 = -x x y = -z.
TEST(AbaqusProfiles, SectionsTurnWithTheBeam) {
  const ImportedDeck deck = ImportDeck(
      "*NODE\n1,0,0,0\n2,1000,0,0\n*ELEMENT,TYPE=B31,ELSET=E\n1,2,1\n*MATERIAL,NAME=M\n*ELASTIC\n"
      "200000,0.3\n*BEAM SECTION,ELSET=E,MATERIAL=M,SECTION=L\n80.,100.,8.,10.\n0,1,0\n");
  ExpectOutline(deck, {{-5.0, 5.0, -96.0, -4.0}, {-5.0, 75.0, -4.0, 4.0}});
}

TEST(AbaqusProfiles, OthersLackACounterpart) {
  const std::map<std::string, std::string> reasons{
      {"CIRC", "*BEAM SECTION, SECTION=CIRC: there is no solid round section"},
      {"BOX", "*BEAM SECTION, SECTION=BOX: there is no such section"},
      {"ARBITRARY", "*BEAM SECTION, SECTION=ARBITRARY: there is no such section"}};
  for (const auto& [type, reason] : reasons) {
    const ImportedDeck deck = BeamWith(type, "10.,5.,1.,1.,1.,1.");
    EXPECT_EQ(GroupNamed(deck, "E").lacks, reason);
    EXPECT_EQ(deck.model.beams[0].section, -1);
  }
  EXPECT_EQ(GroupNamed(BeamWith("I", "50.,100.,60.,60.,8.,8.,6."), "E").lacks,
            "*BEAM SECTION, SECTION=I: there is no section with two flanges");
}

TEST(AbaqusProfiles, DimensionsThatMakeNoSectionAreTold) {
  const std::string none = ": its dimensions make no section";
  for (const char* data : {"50.,60.", "50.", "-50.,5.", "0.,0."}) {
    EXPECT_EQ(GroupNamed(BeamWith("PIPE", data), "E").lacks, "*BEAM SECTION, SECTION=PIPE" + none);
  }
  EXPECT_EQ(GroupNamed(BeamWith("RECT", "20.,0."), "E").lacks,
            "*BEAM SECTION, SECTION=RECT" + none);
  // Legs thinner than the other leg is long; a flange lower than the whole; no web.
  EXPECT_EQ(GroupNamed(BeamWith("L", "80.,100.,100.,10."), "E").lacks,
            "*BEAM SECTION, SECTION=L" + none);
  EXPECT_EQ(GroupNamed(BeamWith("L", "80.,100.,8.,80."), "E").lacks,
            "*BEAM SECTION, SECTION=L" + none);
  EXPECT_EQ(GroupNamed(BeamWith("I", "30.,8.,0.,60.,0.,8.,6."), "E").lacks,
            "*BEAM SECTION, SECTION=I" + none);
  EXPECT_EQ(GroupNamed(BeamWith("I", "30.,100.,0.,60.,0.,8.,0."), "E").lacks,
            "*BEAM SECTION, SECTION=I" + none);
  EXPECT_EQ(GroupNamed(BeamWith("T", "60.,8.,30.,8.,6."), "E").lacks,
            "*BEAM SECTION, SECTION=T" + none);
}

// As the other program does: both end with an error.
TEST(AbaqusSections, N1AlongTheBeamGivesNoAxes) {
  const ImportedDeck deck = BeamWith("RECT", "20.,60.", "1.,0.,0.");
  EXPECT_EQ(deck.model.beams[0].orientation, Vector3{});
  EXPECT_EQ(GroupNamed(deck, "E").lacks, "*BEAM SECTION: n1 lies along a beam, so it has no axes");
  EXPECT_EQ(GroupNamed(BeamWith("PIPE", "50.,5.", "1.,0.,0."), "E").lacks, "");
}

// The third node of a beam gives its n1, and not the section's line: here y.
TEST(AbaqusSections, AThirdNodeGivesN1) {
  const ImportedDeck deck = ImportDeck(
      "*NODE\n1,0,0,0\n2,1000,0,0\n3,300,7,0\n*ELEMENT,TYPE=B31,ELSET=E\n1,1,2,3\n2,2,1\n"
      "*MATERIAL,NAME=M\n*ELASTIC\n200000,0.3\n*BEAM SECTION,ELSET=E,MATERIAL=M,SECTION=RECT\n"
      "20.,60.\n0.,0.,1.\n");
  ExpectOutline(deck, {{-10.0, 10.0, -30.0, 30.0}});
  EXPECT_NEAR(std::abs(deck.model.beams[1].orientation[1]), 1.0, Rounding);
}

TEST(AbaqusSections, ShellsHaveThicknessAndMaterial) {
  const ImportedDeck deck = ImportSmallDeck(EmptyStep);
  ASSERT_EQ(deck.model.thicknesses.size(), 1U);
  EXPECT_EQ(deck.model.thicknesses[0].TK, 2.0);
  EXPECT_EQ(deck.model.thicknesses[0].name, "PLATE");
  ASSERT_EQ(deck.model.materials.size(), 1U);
  EXPECT_EQ(deck.model.materials[0].values.E, 200000.0);
  EXPECT_EQ(deck.model.materials[0].values.Mu, 0.3);
  EXPECT_EQ(deck.model.materials[0].values.Density, 2.0);
  EXPECT_EQ(deck.model.shells[1].thickness, 0);
  EXPECT_EQ(deck.model.shells[1].material, 0);
  EXPECT_EQ(deck.model.beams[1].material, 0);
  EXPECT_TRUE(deck.report.entries.empty());
}

constexpr const char* Plate =
    "*NODE\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n*ELEMENT,TYPE=S4,ELSET=E\n1,1,2,3,4\n";
constexpr const char* Steel = "*MATERIAL,NAME=M\n*ELASTIC\n200000,0.3\n";

ImportedDeck PlateWith(const std::string& options, const std::string& data = "0.5\n") {
  return ImportDeck(std::string(Plate) + Steel + "*SHELL SECTION,ELSET=E" + options + "\n" + data +
                    EmptyStep);
}

TEST(AbaqusSections, OffsetsOfShellsAreTold) {
  const std::string told = "*SHELL SECTION: OFFSET: the nodes lie in the middle surface here";
  for (const char* offset : {"0.5", "-0.2", ".5", "SPOS", "SNEG", "Dist-1"}) {
    const ImportedDeck deck = PlateWith(std::string(",MATERIAL=M,OFFSET=") + offset);
    EXPECT_EQ(Reasons(deck, Fate::Limited), Texts{told}) << offset;
    EXPECT_EQ(deck.model.thicknesses.at(0).TK, 0.5);
  }
  EXPECT_TRUE(Reasons(PlateWith(",MATERIAL=M,OFFSET=0.0"), Fate::Limited).empty());
}

TEST(AbaqusSections, ShellsWithoutOneThicknessLackIt) {
  EXPECT_EQ(GroupNamed(PlateWith(",COMPOSITE", "1.,3,M,0.\n"), "E").lacks,
            "*SHELL SECTION: layers have no counterpart");
  for (const char* varies : {"NODAL THICKNESS", "SHELL THICKNESS=D"}) {
    const ImportedDeck deck = PlateWith(std::string(",MATERIAL=M,") + varies);
    EXPECT_EQ(GroupNamed(deck, "E").lacks,
              "*SHELL SECTION: a thickness that varies has no counterpart");
    EXPECT_EQ(deck.model.shells[0].thickness, -1);
  }
  EXPECT_EQ(GroupNamed(PlateWith(",MATERIAL=M", "0.,5\n"), "E").lacks,
            "*SHELL SECTION: its thickness is not above 0");
  EXPECT_EQ(
      GroupNamed(ImportDeck(std::string(Plate) + "*SHELL GENERAL SECTION,ELSET=E\n1,2\n"), "E")
          .lacks,
      "*SHELL GENERAL SECTION: a section given by its stiffness has no counterpart");
  EXPECT_EQ(StopOfDeck(std::string(Plate) + Steel + "*SHELL SECTION,ELSET=E,MATERIAL=M\n"),
            "\"deck.inp\", line 11: a shell section without a thickness");
}

TEST(AbaqusSections, AHomogeneousGeneralSectionIsTaken) {
  const ImportedDeck deck =
      ImportDeck(std::string(Plate) + Steel + "*SHELL GENERAL SECTION,ELSET=E,MATERIAL=M\n0.7\n");
  EXPECT_EQ(deck.model.thicknesses.at(0).TK, 0.7);
  EXPECT_EQ(deck.model.shells[0].thickness, 0);
}

TEST(AbaqusSections, OrientationsOfIsotropicShellsHaveNoEffect) {
  const ImportedDeck deck = PlateWith(",MATERIAL=M,ORIENTATION=O");
  EXPECT_EQ(Reasons(deck, Fate::NoEffect),
            Texts{"*SHELL SECTION: ORIENTATION of an isotropic material"});
}

TEST(AbaqusSections, TwoSectionsOfAnElementMustBeTheSame) {
  const std::string section = "*SHELL SECTION,ELSET=E,MATERIAL=M\n";
  const ImportedDeck same =
      ImportDeck(std::string(Plate) + Steel + section + "0.5\n" + section + "0.5\n" + EmptyStep);
  EXPECT_TRUE(same.report.entries.empty());
  const ImportedDeck other =
      ImportDeck(std::string(Plate) + Steel + section + "0.5\n" + section + "0.6\n" + EmptyStep);
  EXPECT_EQ(Reasons(other, Fate::Refused), Texts{"*SHELL SECTION: an element has two sections"});
  EXPECT_EQ(other.report.entries[0].example, "S4 1");
  const std::string beams = "*BEAM SECTION,ELSET=BEAMS,MATERIAL=STEEL,SECTION=PIPE\n";
  EXPECT_TRUE(ImportSmallDeck(beams + "5.,1.\n0,1,0\n" + EmptyStep).report.entries.empty());
  EXPECT_EQ(Reasons(ImportSmallDeck(beams + "5.,1.1\n0,1,0\n"), Fate::Refused),
            Texts{"*BEAM SECTION: an element has two sections (2)"});
}

TEST(AbaqusSections, MissingSetsAndMaterialsAreRefused) {
  const ImportedDeck deck = ImportDeck(std::string(Plate) + Steel +
                                       "*SHELL SECTION,ELSET=F,MATERIAL=M\n1.\n"
                                       "*SHELL SECTION,ELSET=E,MATERIAL=N\n1.\n");
  EXPECT_EQ(Reasons(deck, Fate::Refused), (Texts{"*SHELL SECTION: its element set does not exist",
                                                 "*SHELL SECTION: its material does not exist"}));
}

TEST(AbaqusSections, GeneralBeamSectionsLackACounterpart) {
  const ImportedDeck deck = ImportDeck(
      "*NODE\n1,0,0,0\n2,1,0,0\n*ELEMENT,TYPE=B31,ELSET=E\n1,1,2\n"
      "*BEAM GENERAL SECTION,ELSET=E,SECTION=GENERAL\n1.,1.,0.,1.,1.\n0,1,0\n2e5,8e4\n");
  EXPECT_EQ(GroupNamed(deck, "E").lacks,
            "*BEAM GENERAL SECTION: general sections have no counterpart");
}

TEST(AbaqusMaterials, MayStandBehindTheirSections) {
  const ImportedDeck deck = ImportDeck(std::string(Plate) +
                                       "*SHELL SECTION,ELSET=E,MATERIAL=\"Mild Steel\"\n1.\n"
                                       "*MATERIAL,NAME=\"Mild Steel\"\n*DENSITY\n7.85e-9,\n"
                                       "*ELASTIC,TYPE=ISOTROPIC\n206000.,.3\n");
  EXPECT_EQ(deck.model.shells[0].material, 0);
  EXPECT_EQ(deck.model.materials[0].name, "Mild Steel");
  EXPECT_EQ(deck.model.materials[0].values.Density, 7.85e-9);
}

TEST(AbaqusMaterials, OfSeveralTemperaturesTheFirstIsTaken) {
  const ImportedDeck deck = ImportDeck(
      "*MATERIAL,NAME=M\n*ELASTIC\n200000,0.3,20.\n180000,0.3,200.\n*DENSITY\n2.,0.\n1.,100.\n" +
      EmptyStep);
  EXPECT_EQ(deck.model.materials.at(0).values.E, 200000.0);
  EXPECT_EQ(deck.model.materials[0].values.Density, 2.0);
  EXPECT_EQ(Reasons(deck, Fate::Limited),
            (Texts{"*ELASTIC: it depends on temperature or fields; its first line is taken",
                   "*DENSITY: it depends on temperature or fields; its first line is taken"}));
}

TEST(AbaqusMaterials, OthersThanIsotropicOnesAreLacking) {
  const std::string section = "*SHELL SECTION,ELSET=E,MATERIAL=M\n1.\n";
  const std::map<std::string, std::string> lacks{
      {"*ELASTIC,TYPE=LAMINA\n1,2,.3,1,1,1\n", "material M is not isotropic"},
      {"*HYPERELASTIC\n1,2\n", "material M has no *ELASTIC"},
      {"*ELASTIC\n0.,.3\n", "Young's modulus of material M is not above 0"}};
  for (const auto& [keywords, reason] : lacks) {
    std::string text = Plate;
    text.append("*MATERIAL,NAME=M\n").append(keywords).append(section);
    const ImportedDeck deck = ImportDeck(text);
    EXPECT_EQ(GroupNamed(deck, "E").lacks, reason);
    EXPECT_EQ(deck.model.shells[0].material, -1);
    EXPECT_EQ(deck.model.shells[0].thickness, 0);
  }
}

TEST(AbaqusMaterials, NamesMustBeTheirOwn) {
  EXPECT_EQ(
      Reasons(ImportDeck("*MATERIAL,NAME=M\n*ELASTIC\n1.,0\n*MATERIAL,NAME=m\n*ELASTIC\n2.,0\n"),
              Fate::Refused),
      Texts{"*MATERIAL: two materials have the same name"});
  EXPECT_EQ(StopOfDeck("*ELASTIC\n1.,0.\n"),
            "\"deck.inp\", line 1: *ELASTIC belongs to no *MATERIAL");
}

// Behind the sizes, n1, and the points of integration, which are no matter, nothing should stand.
TEST(AbaqusProfiles, DataBehindWhatIsReadIsReported) {
  const std::string fields = "*BEAM SECTION: more fields in a data line than are read";
  const auto isTold = [&](const ImportedDeck& deck) {
    const Texts limited = Reasons(deck, Fate::Limited);
    return std::find(limited.begin(), limited.end(), fields) != limited.end();
  };
  for (const auto& [type, data] :
       {std::pair{"PIPE", "10,3"}, std::pair{"RECT", "10,60"}, std::pair{"L", "50,80,4,5"},
        std::pair{"T", "50,80,70,4,5"}, std::pair{"I", "70,80,0,50,0,4,5"}}) {
    EXPECT_FALSE(isTold(BeamWith(type, data))) << type;
    EXPECT_FALSE(isTold(BeamWith(type, std::string(data) + ",,"))) << type;
    EXPECT_TRUE(isTold(BeamWith(type, std::string(data) + ",7"))) << type;
    EXPECT_TRUE(isTold(BeamWith(type, data, "0.,1.,0.,7"))) << type;
  }
  const ImportedDeck lines = BeamWith("PIPE", "10,3", "0.,1.,0.\n8\n9");
  EXPECT_EQ(Reasons(lines, Fate::Limited), Texts{"*BEAM SECTION: more data lines than are read"});
  EXPECT_EQ(Reasons(lines, Fate::NoEffect),
            Texts{"*BEAM SECTION: points of integration of a section"});
}

TEST(AbaqusShells, DataBehindTheThicknessIsReported) {
  const auto limited = [](const std::string& keyword, const std::string& data) {
    return Reasons(ImportDeck("*NODE\n1,0,0,0\n2,10,0,0\n3,0,10,0\n"
                              "*ELEMENT,TYPE=S3,ELSET=E\n1,1,2,3\n"
                              "*MATERIAL,NAME=M\n*ELASTIC\n200000,0.3\n*" +
                              keyword + ",ELSET=E,MATERIAL=M\n" + data + "*STEP\n*END STEP\n"),
                   Fate::Limited);
  };
  // The number of points over the thickness is no matter.
  EXPECT_EQ(limited("SHELL SECTION", "2.,5\n"), Texts{});
  EXPECT_EQ(limited("SHELL SECTION", "2.,5,7\n"),
            Texts{"*SHELL SECTION: more fields in a data line than are read"});
  EXPECT_EQ(limited("SHELL SECTION", "2.\n20\n"),
            Texts{"*SHELL SECTION: more data lines than are read"});
  EXPECT_EQ(limited("SHELL GENERAL SECTION", "2.,5\n"),
            Texts{"*SHELL GENERAL SECTION: more fields in a data line than are read"});
}

}  // namespace
}  // namespace kvx::test
