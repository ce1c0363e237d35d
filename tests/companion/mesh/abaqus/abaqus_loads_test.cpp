// Loads: their signs, sums and rows. Sums are worked out by hand from the picture of SmallDeck
// (import_deck.h). Signs were computed with CalculiX 2.20, too: P on S4 bends a plate towards its
// normal, DSLOAD on SPOS away from it, on SNEG and S1 towards it; P1 and P2 of a beam along n1 and
// n2; a load on a set acts on each of its nodes.
#include <gtest/gtest.h>

#include "mesh/abaqus/import_deck.h"
#include "mesh/equivalent_loads.h"

namespace kvx::test {
namespace {

using Texts = std::vector<std::string>;
using Sum = std::array<double, 6>;

// Forces of some hundreds, moments of some thousands; Gauss points with ten decimals.
constexpr double Digits = 1e-6;

void ExpectSum(const ImportedDeck& deck, const Sum& expected, std::size_t step = 0) {
  ASSERT_LT(step, deck.model.cases.size());
  const Sum sum = SumLoads(deck.model, deck.model.cases[step]);
  for (std::size_t k = 0; k < 6; ++k) EXPECT_NEAR(sum[k], expected[k], Digits) << k;
}

// A deck with one static step.
ImportedDeck Step(const std::string& loads) {
  return ImportSmallDeck("*STEP\n*STATIC\n" + loads + "*END STEP\n");
}

TEST(AbaqusLoads, EachNodeOfASetGetsTheWholeForce) {
  const ImportedDeck deck = Step("*CLOAD\nTIP,3,-50.\n3,5,7.\n");
  // -50 each at (20, 0) and (20, 10): moments x: 10 (-50), y: -20 (-100); and 7 about y.
  ExpectSum(deck, {0.0, 0.0, -100.0, -500.0, 2007.0, 0.0});
  EXPECT_EQ(deck.model.cases[0].forces.size(), 3U);
  EXPECT_TRUE(deck.report.entries.empty());
}

TEST(AbaqusLoads, ForcesInAStepAddUp) {
  ExpectSum(Step("*CLOAD\n1,1,100.\n1,1,10.\n*CLOAD\n1,1,1.\n"), {111.0, 0.0, 0.0, 0.0, 0.0, 0.0});
}

TEST(AbaqusLoads, OtherDofsAndMissingNodes) {
  const ImportedDeck deck = Step("*CLOAD\n1,11,100.\n1,0,1.\n99,1,1.\n");
  EXPECT_EQ(Reasons(deck, Fate::Lost), Texts{"*CLOAD: dofs other than 1 to 6 (2)"});
  EXPECT_EQ(Reasons(deck, Fate::Refused),
            Texts{"*CLOAD: it names a set, element or node that does not exist"});
  EXPECT_TRUE(deck.model.cases.at(0).forces.empty());
}

TEST(AbaqusLoads, FieldsBehindTheLoadAreReported) {
  const ImportedDeck deck = Step(
      "*CLOAD\n1,1,5.,7\n1,2,5.,\n"
      "*DLOAD\nPLATE,P,1.,2,3\nPLATE,TRVEC,1.,1.,0.,0.,4\nPLATE,TRVEC,1.,1.,0.,0.,,\n");
  EXPECT_EQ(Reasons(deck, Fate::Limited),
            (Texts{"*CLOAD: more fields in a data line than are read",
                   "*DLOAD: more fields in a data line than are read (2)"}));
  const std::string surface = "*SURFACE,NAME=LOW\nPLATE,SNEG\n*STEP\n*DSLOAD\n";
  EXPECT_EQ(Reasons(ImportSmallDeck(surface + "LOW,P,1.,9\n*END STEP\n"), Fate::Limited),
            Texts{"*DSLOAD: more fields in a data line than are read"});
  EXPECT_TRUE(Reasons(ImportSmallDeck(surface + "LOW,P,1.\n*END STEP\n"), Fate::Limited).empty());
}

// Axes turned by 90 degrees about z: 3 along x' is 3 along y, a moment about y' is one about -x.
TEST(AbaqusLoads, ForcesTurnWithTheirNode) {
  const ImportedDeck deck = ImportSmallDeck(
      "*TRANSFORM,NSET=TIP\n0,1,0,-1,0,0\n*STEP\n*CLOAD\n5,1,3.\n5,5,2.\n*END STEP\n");
  const std::array<double, 6>& force = deck.model.cases.at(0).forces.at(0).components;
  EXPECT_NEAR(force[1], 3.0, Digits);
  EXPECT_NEAR(force[3], -2.0, Digits);
  EXPECT_NEAR(force[0], 0.0, Digits);
}

// 200 of area along +z, middle at (10, 5): moment x: 5 F, y: -10 F.
TEST(AbaqusLoads, PressureActsAlongTheNormal) {
  const ImportedDeck deck = Step("*DLOAD\nPLATE,P,3.\n");
  ExpectSum(deck, {0.0, 0.0, 600.0, 3000.0, -6000.0, 0.0});
  EXPECT_EQ(deck.model.cases[0].pressures.size(), 2U);
  EXPECT_EQ(deck.model.cases[0].pressures[0].q, (std::array<double, 3>{3.0, 3.0, 3.0}));
  EXPECT_TRUE(deck.report.entries.empty());
  ExpectSum(Step("*DLOAD\n2,P,-1.\n"), {0.0, 0.0, -100.0, -500.0, 1500.0, 0.0});
}

TEST(AbaqusLoads, SurfacesHaveSides) {
  const std::string surfaces =
      "*SURFACE,NAME=TOP\nPLATE,SPOS\n*SURFACE,NAME=LOW,TYPE=ELEMENT\n1,SNEG\n2,SNEG\n"
      "*SURFACE,NAME=S1\nPLATE,S1\n*SURFACE,NAME=S2\nPLATE,S2\n*SURFACE,NAME=EDGE\n1,E1\n"
      "*SURFACE,NAME=BOTH\nPLATE,\n";
  const auto step = [&](const std::string& loads) {
    return ImportSmallDeck(surfaces + "*STEP\n*DSLOAD\n" + loads + "*END STEP\n");
  };
  const Sum up{0.0, 0.0, 600.0, 3000.0, -6000.0, 0.0};
  const Sum down{0.0, 0.0, -600.0, -3000.0, 6000.0, 0.0};
  ExpectSum(step("top,P,3.\n"), down);
  ExpectSum(step("LOW,P,3.\n"), up);
  ExpectSum(step("S1,P,3.\n"), up);
  ExpectSum(step("S2,P,3.\n"), down);
  // Upper and lower side are two loads.
  ExpectSum(step("TOP,P,3.\nLOW,P,6.\n"), up);
  const std::string numbered =
      "*DSLOAD: faces S1 and S2 of shells are read as SNEG and SPOS, as in CalculiX";
  EXPECT_EQ(Reasons(step("S1,P,3.\nS2,P,1.\n"), Fate::Limited), Texts{numbered + " (2)"});
  EXPECT_EQ(Reasons(step("EDGE,P,3.\nBOTH,P,1.\n"), Fate::Lost),
            Texts{"*DSLOAD: its surface is no face of shells (2)"});
  EXPECT_EQ(Reasons(step("NONE,P,3.\n"), Fate::Refused),
            Texts{"*DSLOAD: its surface does not exist"});
  EXPECT_EQ(Reasons(step("TOP,HP,3.\n"), Fate::Lost),
            Texts{"*DSLOAD: a load of type HP has no counterpart"});
  EXPECT_EQ(Reasons(step("TOP,P,3.\n"), Fate::NoEffect),
            Texts{"*SURFACE: no load that is taken acts on it (5)"});
}

// 3 per area along (0, 3, 4) / 5, whatever its length: 600 in all.
TEST(AbaqusLoads, TractionsHaveADirection) {
  const Sum expected{0.0, 360.0, 480.0, 2400.0, -4800.0, 3600.0};
  ExpectSum(Step("*DLOAD\nPLATE,TRVEC,3.,0.,3.,4.\n"), expected);
  ExpectSum(ImportSmallDeck("*SURFACE,NAME=T\nPLATE,SPOS\n*STEP\n*DSLOAD\nT,TRVEC,3.,0.,30.,40.\n"
                            "*END STEP\n"),
            expected);
  EXPECT_EQ(Reasons(Step("*DLOAD\nPLATE,TRVEC,3.\n"), Fate::Refused),
            Texts{"*DLOAD: its direction has no length"});
}

// The beams are 20 long, from x = 0 to 20.
TEST(AbaqusLoads, LineLoadsOnBeams) {
  ExpectSum(Step("*DLOAD\nBEAMS,PZ,-2.\n"), {0.0, 0.0, -40.0, 0.0, 400.0, 0.0});
  ExpectSum(Step("*DLOAD\nBEAMS,PY,2.\n"), {0.0, 40.0, 0.0, 0.0, 0.0, 400.0});
  ExpectSum(Step("*DLOAD\n12,PX,2.\n"), {20.0, 0.0, 0.0, 0.0, 0.0, 0.0});
  // n1 is y, n2 is z. The web of the tube is laid along n2.
  ExpectSum(Step("*DLOAD\nBEAMS,P1,2.\n"), {0.0, 40.0, 0.0, 0.0, 0.0, 400.0});
  ExpectSum(Step("*DLOAD\nBEAMS,P2,2.\n"), {0.0, 0.0, 40.0, 0.0, -400.0, 0.0});
  EXPECT_EQ(Step("*DLOAD\nBEAMS,P2,2.\n").model.cases[0].lineLoads.size(), 2U);
  EXPECT_EQ(Reasons(Step("*DLOAD\nBEAMS,P1,2.\nBEAMS,P2,2.\n"), Fate::Limited),
            Texts{"*DLOAD: P1 and P2 are read as forces per length, as in Abaqus; CalculiX means "
                  "pressures (2)"});
}

// A tube that lies beside its node has z along its offset; n1 and n2 are still those of the deck.
TEST(AbaqusLoads, LocalLineLoadsFollowN1AndN2OfTheDeck) {
  const std::string deck =
      "*NODE\n1,0,0,0\n2,20,0,0\n*ELEMENT,TYPE=B31,ELSET=E\n1,1,2\n*MATERIAL,NAME=M\n*ELASTIC\n1.,"
      "0\n"
      "*BEAM "
      "SECTION,ELSET=E,MATERIAL=M,SECTION=PIPE,OFFSET1=0.3,OFFSET2=0.4\n5.,1.\n0,1,0\n*STEP\n";
  ExpectSum(ImportDeck(deck + "*DLOAD\nE,P1,2.\n*END STEP\n"), {0.0, 40.0, 0.0, 0.0, 0.0, 400.0});
  ExpectSum(ImportDeck(deck + "*DLOAD\nE,P2,2.\n*END STEP\n"), {0.0, 0.0, 40.0, 0.0, -400.0, 0.0});
}

// A section that cannot be taken has an n1 all the same; ARBITRARY has points in that line.
TEST(AbaqusLoads, LocalLineLoadsOnSectionsThatAreNotTaken) {
  const std::string nodes = "*NODE\n1,0,0,0\n2,20,0,0\n*ELEMENT,TYPE=B31,ELSET=E\n1,1,2\n";
  const std::string load = "0,1,0\n*STEP\n*DLOAD\nE,P1,2.\n*END STEP\n";
  ExpectSum(ImportDeck(nodes + "*BEAM SECTION,ELSET=E,SECTION=BOX\n1,1,1,1,1,1\n" + load),
            {0.0, 40.0, 0.0, 0.0, 0.0, 400.0});
  const ImportedDeck deck =
      ImportDeck(nodes + "*BEAM SECTION,ELSET=E,SECTION=ARBITRARY\n1,0,0,1,1,1\n" + load);
  ExpectSum(deck, {});
  EXPECT_EQ(Reasons(deck, Fate::Lost), Texts{"*DLOAD: P1 or P2 on a beam whose n1 is not known"});
}

TEST(AbaqusLoads, LoadsOnElementsThatTheyDoNotFit) {
  const ImportedDeck deck = Step("*DLOAD\n11,P,1.\n1,PZ,1.\n1,P1,1.\nBEAMS,TRVEC,1.,0,0,1\n");
  EXPECT_EQ(Reasons(deck, Fate::Lost), (Texts{"*DLOAD: P on beams has no counterpart",
                                              "*DLOAD: PZ on shells has no counterpart",
                                              "*DLOAD: P1 on shells has no counterpart",
                                              "*DLOAD: TRVEC on beams has no counterpart (2)"}));
  ExpectSum(deck, {});
}

TEST(AbaqusLoads, OtherTypesAreLost) {
  const ImportedDeck deck =
      Step("*DLOAD\nPLATE,HP,1.,10.,0.\nPLATE,PNU\nPLATE,CENTRIF,1.,0,0,0,0,0,1\n1,EDNOR1,2.\n");
  EXPECT_EQ(Reasons(deck, Fate::Lost), (Texts{"*DLOAD: a load of type HP has no counterpart",
                                              "*DLOAD: a load of type PNU has no counterpart",
                                              "*DLOAD: a load of type CENTRIF has no counterpart",
                                              "*DLOAD: a load of type EDNOR1 has no counterpart"}));
}

TEST(AbaqusLoads, LoadsOnOtherElementsAreLost) {
  const ImportedDeck deck = ImportSmallDeck(
      "*ELEMENT,TYPE=C3D4,ELSET=SOLID\n50,1,2,3,5\n*STEP\n*DLOAD\nSOLID,P1,1.\nNOWHERE,P,1.\n"
      "*END STEP\n");
  EXPECT_EQ(Reasons(deck, Fate::Lost),
            (Texts{"*ELEMENT: C3D4: solids have no counterpart",
                   "*DLOAD: it acts on elements that are not taken over"}));
  EXPECT_EQ(Reasons(deck, Fate::Refused),
            Texts{"*DLOAD: it names a set, element or node that does not exist"});
}

TEST(AbaqusLoads, GravityOnAllIsAnAcceleration) {
  for (const char* load : {"PLATE,GRAV,9810.,0.,0.,-2.\nBEAMS,GRAV,9810.,0,0,-1\n",
                           ",GRAV,9810.,0.,0.,-1.\n", ",GRAV,-9810.,0,0,1\n"}) {
    const ImportedDeck deck = Step(std::string("*DLOAD\n") + load);
    ASSERT_TRUE(deck.model.cases.at(0).hasAcceleration) << load;
    EXPECT_EQ(deck.model.cases[0].acceleration[2], -9810.0);
    EXPECT_EQ(deck.model.cases[0].acceleration[0], 0.0);
    ExpectSum(deck, {});
    EXPECT_TRUE(deck.report.entries.empty());
  }
}

// Shells: area 200, t = 2, density 2: mass 800, 5 of acceleration: 4000. Beams: the ring of outer
// radius 5 and inner 4 has the area 9 pi; length 20, density 2: 360 pi, times 5.
TEST(AbaqusLoads, GravityOnAPartBecomesItsLoads) {
  const double weight = 360.0 * 5.0 * 3.14159265358979323846;
  const ImportedDeck shells = Step("*DLOAD\nPLATE,GRAV,5.,0.,0.,-1.\n");
  EXPECT_FALSE(shells.model.cases.at(0).hasAcceleration);
  ExpectSum(shells, {0.0, 0.0, -4000.0, -20000.0, 40000.0, 0.0});
  const ImportedDeck beams = Step("*DLOAD\nBEAMS,GRAV,5.,0.,0.,-1.\n");
  ExpectSum(beams, {0.0, 0.0, -weight, 0.0, 10.0 * weight, 0.0});
  EXPECT_EQ(Reasons(beams, Fate::Limited),
            Texts{"*DLOAD: GRAV on a part of the elements becomes loads of these elements (2)"});
}

// Elements without mass need no gravity.
TEST(AbaqusLoads, GravityOnAllThatHasMassIsAnAcceleration) {
  const std::string light =
      "*MATERIAL,NAME=LIGHT\n*ELASTIC\n1.,0\n*ELEMENT,TYPE=S3,ELSET=L\n3,1,2,3\n"
      "*SHELL SECTION,ELSET=L,MATERIAL=LIGHT\n1.\n";
  const ImportedDeck deck = ImportSmallDeck(
      light + "*STEP\n*DLOAD\nPLATE,GRAV,5.,0.,0.,-1.\nBEAMS,GRAV,5.,0,0,-1\n*END STEP\n");
  EXPECT_TRUE(deck.model.cases.at(0).hasAcceleration);
  EXPECT_TRUE(Reasons(deck, Fate::Limited).empty());
}

TEST(AbaqusLoads, GravityOnElementsOfUnknownMassIsLost) {
  const ImportedDeck deck = ImportSmallDeck(
      "*ELEMENT,TYPE=S3,ELSET=L\n3,1,2,3\n*STEP\n*DLOAD\nL,GRAV,5.,0.,0.,-1.\n*END STEP\n");
  EXPECT_EQ(Reasons(deck, Fate::Lost),
            Texts{"*DLOAD: GRAV on elements whose section or material is not known"});
}

// Force per volume: 400 of shells; beams 180 pi.
TEST(AbaqusLoads, BodyForces) {
  const ImportedDeck deck = Step("*DLOAD\nPLATE,BX,5.\n");
  ExpectSum(deck, {2000.0, 0.0, 0.0, 0.0, 0.0, -10000.0});
  EXPECT_EQ(Reasons(deck, Fate::Limited),
            Texts{"*DLOAD: BX, BY, BZ on shells are read as forces per volume, as in Abaqus; "
                  "CalculiX means pressures (2)"});
  const double force = 180.0 * 3.14159265358979323846;
  const ImportedDeck beams = Step("*DLOAD\nBEAMS,BZ,1.\n");
  ExpectSum(beams, {0.0, 0.0, force, 0.0, -10.0 * force, 0.0});
  EXPECT_TRUE(beams.report.entries.empty());
}

TEST(AbaqusLoads, OptionsAreTold) {
  const ImportedDeck deck = Step(
      "*CLOAD,AMPLITUDE=A\n1,1,1.\n*DLOAD,FOLLOWER=NO\nPLATE,P,1.\n"
      "*DLOAD,LOAD CASE=2\nPLATE,P,1.\n");
  EXPECT_EQ(Reasons(deck, Fate::Limited),
            (Texts{"*CLOAD: AMPLITUDE: the full value is taken",
                   "*DLOAD: its parameter LOAD CASE is not taken over"}));
  EXPECT_EQ(Reasons(deck, Fate::NoEffect),
            Texts{"*DLOAD: FOLLOWER: in a linear analysis loads keep their directions"});
}

TEST(AbaqusLoads, LoadsOutsideOfAStepAreLost) {
  const ImportedDeck deck =
      ImportSmallDeck("*CLOAD\n1,1,1.\n*STEP\n*END STEP\n*DLOAD\nPLATE,P,1.\n");
  EXPECT_EQ(Reasons(deck, Fate::Lost),
            (Texts{"*CLOAD: a load outside of a step", "*DLOAD: a load outside of a step"}));
  ExpectSum(deck, {});
}

}  // namespace
}  // namespace kvx::test
