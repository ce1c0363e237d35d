// Steps as load cases: what goes on from step to step, what ends. CalculiX 2.20 gives the same
// reactions step by step.
#include <gtest/gtest.h>

#include "mesh/abaqus/import_deck.h"

namespace kvx::test {
namespace {

using Texts = std::vector<std::string>;

std::vector<std::string> CaseNames(const ImportedDeck& deck) {
  std::vector<std::string> names;
  for (const ImportCase& each : deck.model.cases) names.push_back(each.name);
  return names;
}

// The sum of the forces of a step along a direction.
double Force(const ImportedDeck& deck, std::size_t step, std::size_t direction) {
  return SumLoads(deck.model, deck.model.cases.at(step)).at(direction);
}

// What tells a case whose loads are lost from one that has none.
TEST(AbaqusSteps, ACaseTellsWhetherItAsksForLoads) {
  const std::string end = "*END STEP\n";
  const ImportedDeck deck =
      ImportSmallDeck("*STEP\n*STATIC\n" + end + "*STEP\n*STATIC\n*TEMPERATURE\nALL,20.\n" + end +
                      "*STEP\n*STATIC\n*CLOAD\nTIP,3,1.\n" + end + "*STEP\n*STATIC\n" + end +
                      "*STEP\n*STATIC\n*CLOAD,OP=NEW\n*DLOAD\nPLATE,P,1.\n" + end +
                      "*STEP\n*STATIC\n*DLOAD,OP=NEW\n" + end);
  std::vector<bool> asks;
  for (const ImportCase& each : deck.model.cases) asks.push_back(each.asksForLoads);
  EXPECT_EQ(asks, (std::vector<bool>{false, true, true, true, true, false}));
}

TEST(AbaqusSteps, LoadsGoOnUntilTheyAreChanged) {
  const ImportedDeck deck = ImportSmallDeck(
      "*STEP\n*STATIC\n*CLOAD\n3,1,100.\n3,1,10.\n6,1,1.\n*DLOAD\nPLATE,P,3.\n*END STEP\n"
      "*STEP\n*STATIC\n*CLOAD\n3,1,7.\n*DLOAD\n1,P,1.\n*END STEP\n"
      "*STEP\n*STATIC\n*CLOAD\n3,2,5.\n*END STEP\n");
  EXPECT_EQ(CaseNames(deck), (Texts{"step 1", "step 2", "step 3"}));
  EXPECT_EQ(Force(deck, 0, 0), 111.0);
  EXPECT_EQ(Force(deck, 0, 2), 600.0);
  // A new value takes the place of the old one at this node and element alone.
  EXPECT_EQ(Force(deck, 1, 0), 8.0);
  EXPECT_EQ(Force(deck, 1, 2), 400.0);
  EXPECT_EQ(Force(deck, 2, 0), 8.0);
  EXPECT_EQ(Force(deck, 2, 1), 5.0);
  EXPECT_EQ(Force(deck, 2, 2), 400.0);
}

// OP=NEW ends the loads of its own kind; two of them in a step do not end each other.
TEST(AbaqusSteps, NewEndsLoadsOfItsKind) {
  const ImportedDeck deck = ImportSmallDeck(
      "*SURFACE,NAME=LOW\nPLATE,SNEG\n"
      "*STEP\n*CLOAD\n3,1,100.\n*DLOAD\n1,P,3.\n*DSLOAD\nLOW,P,1.\n*END STEP\n"
      "*STEP\n*CLOAD,OP=NEW\n3,2,5.\n*CLOAD,OP=NEW\n6,2,6.\n*END STEP\n"
      "*STEP\n*DLOAD,OP=NEW\n2,P,2.\n*END STEP\n*STEP\n*DSLOAD,OP=NEW\n*END STEP\n");
  EXPECT_EQ(Force(deck, 1, 0), 0.0);
  EXPECT_EQ(Force(deck, 1, 1), 11.0);
  // Sums of thirds of areas: the last bits may be rounded.
  EXPECT_DOUBLE_EQ(Force(deck, 1, 2), 500.0);  // 300 of P, 200 of the surface
  EXPECT_DOUBLE_EQ(Force(deck, 2, 2), 400.0);  // 200 and 200
  EXPECT_EQ(Force(deck, 2, 1), 11.0);
  EXPECT_DOUBLE_EQ(Force(deck, 3, 2), 200.0);
}

TEST(AbaqusSteps, NamesAreTheDecks) {
  EXPECT_EQ(CaseNames(ImportSmallDeck("*STEP\n*END STEP\n")), Texts{""});
  EXPECT_EQ(CaseNames(ImportSmallDeck("*STEP,NAME=Ballast\n*END STEP\n")), Texts{"Ballast"});
  EXPECT_EQ(CaseNames(ImportSmallDeck("*STEP,NAME=\"a b\"\n*END STEP\n*STEP\n*END STEP\n"
                                      "*STEP,NAME=step 2\n*END STEP\n")),
            (Texts{"a b", "step 2", "step 2 (step 3)"}));
}

// What stands behind a step holds from there on in CalculiX; here the model has it in all steps.
TEST(AbaqusSteps, SupportsBehindAStepAreReported) {
  const std::string step = "*STEP\n*STATIC\n*CLOAD\n3,1,1.\n*END STEP\n";
  const std::string support = "*BOUNDARY\n2,1,6\n";
  const Texts told{
      "*BOUNDARY: outside of a step and behind one: it holds in all steps, those before it, too"};
  EXPECT_EQ(Reasons(ImportSmallDeck(step + support), Fate::Limited), told);
  EXPECT_EQ(Reasons(ImportSmallDeck(step + support + step), Fate::Limited), told);
  EXPECT_TRUE(Reasons(ImportSmallDeck(support + step), Fate::Limited).empty());
}

// The last step may lack its end, as may each one before the next.
TEST(AbaqusSteps, EndsMayBeMissing) {
  const ImportedDeck deck = ImportSmallDeck("*STEP\n*CLOAD\n3,1,1.\n*STEP\n*CLOAD\n3,1,2.\n");
  ASSERT_EQ(deck.model.cases.size(), 2U);
  EXPECT_EQ(Force(deck, 0, 0), 1.0);
  EXPECT_EQ(Force(deck, 1, 0), 2.0);
}

TEST(AbaqusSteps, OtherProceduresAreLost) {
  const ImportedDeck deck = ImportSmallDeck(
      "*STEP\n*STATIC\n*CLOAD\n3,1,1.\n*END STEP\n"
      "*STEP\n*FREQUENCY\n10\n*CLOAD\n3,1,50.\n*END STEP\n"
      "*STEP\n*BUCKLE\n3\n*CLOAD\n3,1,60.\n*END STEP\n"
      "*STEP\n*DYNAMIC\n*CLOAD\n3,2,2.\n*END STEP\n*STEP\n*STATIC\n*END STEP\n");
  EXPECT_EQ(CaseNames(deck), (Texts{"step 1", "step 5"}));
  EXPECT_EQ(Reasons(deck, Fate::Lost),
            (Texts{"*STEP: a step of *FREQUENCY: only static steps are taken",
                   "*STEP: a step of *BUCKLE: only static steps are taken",
                   "*STEP: a step of *DYNAMIC: only static steps are taken"}));
  // Loads of *FREQUENCY and *BUCKLE are their own; those of *DYNAMIC go on.
  EXPECT_EQ(Force(deck, 1, 0), 1.0);
  EXPECT_EQ(Force(deck, 1, 1), 2.0);
}

TEST(AbaqusSteps, PerturbationsHaveTheirOwnLoads) {
  const ImportedDeck deck = ImportSmallDeck(
      "*STEP\n*CLOAD\n3,1,1.\n*BOUNDARY\n3,3,3,9.\n*END STEP\n"
      "*STEP,PERTURBATION\n*STATIC\n*CLOAD\n3,2,3.\n*BOUNDARY\n4,3,3,4.\n*END STEP\n"
      "*STEP\n*END STEP\n");
  EXPECT_EQ(Force(deck, 1, 0), 0.0);
  EXPECT_EQ(Force(deck, 1, 1), 3.0);
  ASSERT_EQ(deck.model.cases[1].prescribed.size(), 1U);
  EXPECT_EQ(deck.model.cases[1].prescribed[0].value, 4.0);
  EXPECT_EQ(Force(deck, 2, 0), 1.0);
  EXPECT_EQ(Force(deck, 2, 1), 0.0);
  ASSERT_EQ(deck.model.cases[2].prescribed.size(), 1U);
  EXPECT_EQ(deck.model.cases[2].prescribed[0].value, 9.0);
  EXPECT_EQ(deck.model.cases[2].supports, deck.model.cases[0].supports);
  EXPECT_EQ(Reasons(deck, Fate::Limited),
            Texts{"*STEP: PERTURBATION: its own loads alone act, without preload"});
}

TEST(AbaqusSteps, NonlinearStepsAreTold) {
  EXPECT_EQ(Reasons(ImportSmallDeck("*STEP,NLGEOM\n*END STEP\n*STEP,NLGEOM=YES\n*STATIC,RIKS\n"
                                    "*END STEP\n*STEP,NLGEOM=NO,INC=100\nA title\n*END STEP\n"),
                    Fate::Limited),
            (Texts{"*STEP: NLGEOM: solved as linear (2)",
                   "*STATIC: RIKS: solved as linear, under the full loads"}));
}

// In CalculiX 2.20 gravity of another direction is added to that of the step before.
TEST(AbaqusSteps, GravityOfAnotherDirectionIsAdded) {
  const ImportedDeck deck = ImportSmallDeck(
      "*STEP\n*DLOAD\n,GRAV,10.,0,0,-1\n*END STEP\n*STEP\n*DLOAD\n,GRAV,8.,0,0,-1\n*END STEP\n"
      "*STEP\n*DLOAD\n,GRAV,2.,1,0,0\n*END STEP\n");
  EXPECT_EQ(deck.model.cases.at(0).acceleration, (korvex::Vector3{0.0, 0.0, -10.0}));
  EXPECT_EQ(deck.model.cases.at(1).acceleration, (korvex::Vector3{0.0, 0.0, -8.0}));
  EXPECT_EQ(deck.model.cases.at(2).acceleration, (korvex::Vector3{2.0, 0.0, -8.0}));
  EXPECT_EQ(Reasons(deck, Fate::Limited),
            Texts{"*DLOAD: GRAV in another direction than in a step before is added to it"});
}

}  // namespace
}  // namespace kvx::test
