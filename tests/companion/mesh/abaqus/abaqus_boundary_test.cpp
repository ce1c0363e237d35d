// Supports, prescribed displacements and axes of nodes.
#include <gtest/gtest.h>

#include <cmath>

#include "mesh/abaqus/import_deck.h"

namespace kvx::test {
namespace {

using Texts = std::vector<std::string>;
using Flags = std::array<std::int32_t, 6>;

// Components in doubles: a few roundings.
constexpr double Rounding = 1e-14;

constexpr const char* Nodes = "*NODE\n1,0,0,0\n2,1,0,0\n3,0,1,0\n*NSET,NSET=S\n1,2\n";

ImportedDeck Held(const std::string& rest) { return ImportDeck(Nodes + rest); }

// The flags of a node in a set of supports; zeros where it is free.
Flags FlagsOf(const ImportedDeck& deck, std::int32_t node, std::size_t set = 0) {
  if (set >= deck.model.supports.size()) return {};
  for (const korvex::NodalRestraint& row : deck.model.supports[set].restraints) {
    if (row.node == node) return row.fixed;
  }
  return {};
}

TEST(AbaqusBoundary, DofsFromFirstToLast) {
  const ImportedDeck deck = Held("*BOUNDARY\nS,1,3\n2,5\n3,6,6,0.\n3,2,,\n");
  EXPECT_EQ(FlagsOf(deck, 0), (Flags{1, 1, 1, 0, 0, 0}));
  EXPECT_EQ(FlagsOf(deck, 1), (Flags{1, 1, 1, 0, 1, 0}));
  EXPECT_EQ(FlagsOf(deck, 2), (Flags{0, 1, 0, 0, 0, 1}));
  // Without a step there is one case without loads, which has the supports.
  ASSERT_EQ(deck.model.cases.size(), 1U);
  EXPECT_EQ(deck.model.cases[0].supports, 0);
  EXPECT_EQ(deck.model.cases[0].name, "");
  ASSERT_EQ(deck.report.entries.size(), 1U);
  EXPECT_EQ(deck.report.entries[0].reason, "the deck ends without a *STEP; it may be cut off");
}

// Manual of Abaqus, "Boundary conditions": XSYMM holds 1, 5, 6, XASYMM 2, 3, 4, and so on.
TEST(AbaqusBoundary, NamesStandForDofs) {
  const std::map<std::string, Flags> names{
      {"XSYMM", {1, 0, 0, 0, 1, 1}},  {"YSYMM", {0, 1, 0, 1, 0, 1}},
      {"ZSYMM", {0, 0, 1, 1, 1, 0}},  {"XASYMM", {0, 1, 1, 1, 0, 0}},
      {"YASYMM", {1, 0, 1, 0, 1, 0}}, {"ZASYMM", {1, 1, 0, 0, 0, 1}},
      {"PINNED", {1, 1, 1, 0, 0, 0}}, {"Encastre", {1, 1, 1, 1, 1, 1}}};
  for (const auto& [name, flags] : names) {
    EXPECT_EQ(FlagsOf(Held("*BOUNDARY\n3," + name + "\n"), 2), flags) << name;
  }
  EXPECT_EQ(Reasons(Held("*BOUNDARY\n3,NOWARP\n"), Fate::Lost),
            Texts{"*BOUNDARY: a support of this name has no counterpart"});
}

TEST(AbaqusBoundary, FieldsBehindTheValueAreReported) {
  const ImportedDeck deck =
      Held("*BOUNDARY\n1,1,6,0.,99\n2,1,6,0.,\n3,PINNED,7\n*STEP\n*END STEP\n");
  EXPECT_EQ(Reasons(deck, Fate::Limited),
            Texts{"*BOUNDARY: more fields in a data line than are read (2)"});
  EXPECT_EQ(deck.report.entries.at(0).example, "99");
  EXPECT_EQ(deck.report.entries.at(0).first.line, 8U);
}

TEST(AbaqusBoundary, DofsAboveSixAreLost) {
  const ImportedDeck deck = Held("*BOUNDARY\n1,6,8\n2,11,11,20.\n");
  EXPECT_EQ(FlagsOf(deck, 0), (Flags{0, 0, 0, 0, 0, 1}));
  EXPECT_EQ(FlagsOf(deck, 1), Flags{});
  EXPECT_EQ(Reasons(deck, Fate::Lost),
            Texts{"*BOUNDARY: dofs above 6: warping, pressure, temperature (2)"});
}

TEST(AbaqusBoundary, WhatIsNotThereIsRefused) {
  EXPECT_EQ(Reasons(Held("*BOUNDARY\n77,1\nNONE,1\n"), Fate::Refused),
            Texts{"*BOUNDARY: it names a node or set that does not exist (2)"});
  EXPECT_EQ(StopOfDeck("*NODE\n1,0,0,0\n*BOUNDARY\n1\n"),
            "\"deck.inp\", line 4: a support without its dofs");
  EXPECT_EQ(StopOfDeck("*NODE\n1,0,0,0\n*BOUNDARY\n1,3,2\n"),
            "\"deck.inp\", line 4: a support without its dofs");
}

TEST(AbaqusBoundary, ValuesArePrescribed) {
  const ImportedDeck deck = Held(
      "*BOUNDARY\n1,1,6\n*STEP\n*STATIC\n*BOUNDARY\n1,3,3,-2.5\n3,5,,0.01\n"
      "*END STEP\n");
  ASSERT_EQ(deck.model.cases.size(), 1U);
  const auto& prescribed = deck.model.cases[0].prescribed;
  ASSERT_EQ(prescribed.size(), 2U);
  EXPECT_EQ(prescribed[0].node, 0);
  EXPECT_EQ(prescribed[0].dof, 2);
  EXPECT_EQ(prescribed[0].value, -2.5);
  EXPECT_EQ(prescribed[1].node, 2);
  EXPECT_EQ(prescribed[1].dof, 4);
  EXPECT_EQ(prescribed[1].value, 0.01);
  EXPECT_EQ(FlagsOf(deck, 2), (Flags{0, 0, 0, 0, 1, 0}));
  EXPECT_EQ(FlagsOf(deck, 0), (Flags{1, 1, 1, 1, 1, 1}));
}

TEST(AbaqusBoundary, ValuesOutsideOfStepsHoldInAll) {
  const ImportedDeck deck = Held("*BOUNDARY\n1,3,3,-2.5\n*STEP\n*END STEP\n*STEP\n*END STEP\n");
  EXPECT_EQ(deck.model.cases.at(0).prescribed.size(), 1U);
  EXPECT_EQ(deck.model.cases.at(1).prescribed.size(), 1U);
  EXPECT_EQ(Reasons(deck, Fate::Limited),
            Texts{"*BOUNDARY: a displacement outside of a step is taken in all steps"});
}

TEST(AbaqusBoundary, OptionsAreTold) {
  const ImportedDeck deck = Held(
      "*STEP\n*BOUNDARY,TYPE=VELOCITY\n1,1,1,5.\n2,1\n"
      "*BOUNDARY,AMPLITUDE=A\n3,1,1,2.\n*END STEP\n");
  EXPECT_EQ(Reasons(deck, Fate::Lost),
            Texts{"*BOUNDARY: a velocity or acceleration; the dof is held"});
  EXPECT_EQ(Reasons(deck, Fate::Limited), Texts{"*BOUNDARY: AMPLITUDE: the full value is taken"});
  EXPECT_EQ(FlagsOf(deck, 0), (Flags{1, 0, 0, 0, 0, 0}));
  ASSERT_EQ(deck.model.cases.at(0).prescribed.size(), 1U);
  EXPECT_EQ(deck.model.cases[0].prescribed[0].node, 2);
}

// FIXED holds what the step before has reached.
TEST(AbaqusBoundary, FixedKeepsValues) {
  const ImportedDeck deck = Held(
      "*STEP\n*BOUNDARY\n1,1,1,5.\n*END STEP\n"
      "*STEP\n*BOUNDARY,FIXED\n1,1,2\n*END STEP\n");
  ASSERT_EQ(deck.model.cases.at(1).prescribed.size(), 1U);
  EXPECT_EQ(deck.model.cases[1].prescribed[0].value, 5.0);
  EXPECT_EQ(Reasons(deck, Fate::Limited).size(), 1U);
}

TEST(AbaqusBoundary, StepsAddAndChange) {
  const ImportedDeck deck = Held(
      "*BOUNDARY\n1,1,3\n*STEP\n*BOUNDARY\n2,1,1,4.\n*END STEP\n"
      "*STEP\n*BOUNDARY,OP=MOD\n2,1,1,6.\n*END STEP\n"
      "*STEP\n*BOUNDARY\n3,2\n*END STEP\n");
  // Steps 1 and 2 have the same supports and other values.
  EXPECT_EQ(deck.model.cases.at(0).supports, 0);
  EXPECT_EQ(deck.model.cases.at(1).supports, 0);
  EXPECT_EQ(deck.model.cases[0].prescribed.at(0).value, 4.0);
  EXPECT_EQ(deck.model.cases[1].prescribed.at(0).value, 6.0);
  EXPECT_EQ(deck.model.cases.at(2).supports, 1);
  EXPECT_EQ(deck.model.cases[2].prescribed.at(0).value, 6.0);
  EXPECT_EQ(FlagsOf(deck, 2, 1), (Flags{0, 1, 0, 0, 0, 0}));
  EXPECT_EQ(FlagsOf(deck, 0, 1), (Flags{1, 1, 1, 0, 0, 0}));
}

// OP=NEW ends all that was held before, the model's own supports, too; two of them in a step do not
// end each other. What is given again in other words is the same set.
TEST(AbaqusBoundary, NewEndsWhatWasBefore) {
  const ImportedDeck deck = Held(
      "*BOUNDARY\n1,1,3\n*STEP\n*BOUNDARY\n2,1,1,4.\n*END STEP\n"
      "*STEP\n*BOUNDARY,OP=NEW\n3,1\n*BOUNDARY,OP=NEW\n3,2\n*END STEP\n"
      "*STEP\n*BOUNDARY,OP=NEW\n2,1,1\n1,3\n1,2\n1,1\n*END STEP\n");
  ASSERT_EQ(deck.model.supports.size(), 2U);
  EXPECT_EQ(deck.model.supports[1].restraints.size(), 1U);
  EXPECT_EQ(FlagsOf(deck, 2, 1), (Flags{1, 1, 0, 0, 0, 0}));
  EXPECT_TRUE(deck.model.cases.at(1).prescribed.empty());
  EXPECT_EQ(deck.model.cases.at(2).supports, 0);
}

// Axes turned by 90 degrees about z: x' = y, y' = -x. Dof 1 is uy, dof 2 is ux with the other sign.
TEST(AbaqusTransform, AxesThatAreExchanged) {
  const ImportedDeck deck = Held(
      "*TRANSFORM,NSET=S\n0,1,0,-1,0,0\n*STEP\n*BOUNDARY\n1,1\n2,2,2,3.\n"
      "2,4\n*END STEP\n");
  EXPECT_EQ(FlagsOf(deck, 0), (Flags{0, 1, 0, 0, 0, 0}));
  EXPECT_EQ(FlagsOf(deck, 1), (Flags{1, 0, 0, 0, 1, 0}));
  ASSERT_EQ(deck.model.cases.at(0).prescribed.size(), 1U);
  EXPECT_EQ(deck.model.cases[0].prescribed[0].dof, 0);
  EXPECT_EQ(deck.model.cases[0].prescribed[0].value, -3.0);
}

// x' along (3, 4, 0) / 5. All three displacements held are held in any axes, and 10 along x' is
// (6, 8, 0).
TEST(AbaqusTransform, InclinedAxesHoldAllOrAreRefused) {
  const std::string axes = "*TRANSFORM,NSET=S,TYPE=R\n3,4,0,-4,3,0\n";
  const ImportedDeck all = Held(axes + "*STEP\n*BOUNDARY\n1,1,3\n1,1,1,10.\n*END STEP\n");
  EXPECT_EQ(FlagsOf(all, 0), (Flags{1, 1, 1, 0, 0, 0}));
  ASSERT_EQ(all.model.cases.at(0).prescribed.size(), 2U);
  EXPECT_NEAR(all.model.cases[0].prescribed[0].value, 6.0, Rounding);
  EXPECT_NEAR(all.model.cases[0].prescribed[1].value, 8.0, Rounding);
  const ImportedDeck some = Held(axes + "*BOUNDARY\n1,1\n");
  EXPECT_EQ(Reasons(some, Fate::Refused),
            Texts{"*TRANSFORM: a support along axes that are not the global ones"});
  EXPECT_EQ(some.report.entries.at(0).example, "node 1");
  // z' is the global z.
  EXPECT_EQ(FlagsOf(Held(axes + "*BOUNDARY\n1,3\n1,6\n"), 0), (Flags{0, 0, 1, 0, 0, 1}));
}

// A cylindrical system about the global z through (0, 0, 0): at node 2 radial is x, at node 3 it is
// y, and tangential -x. Node 1 lies on its axis.
TEST(AbaqusTransform, CylindricalAxesDependOnTheNode) {
  const std::string axes = "*NSET,NSET=C\n1,2,3\n*TRANSFORM,NSET=C,TYPE=C\n0,0,0,0,0,1\n";
  const ImportedDeck deck = Held(axes +
                                 "*BOUNDARY\n2,1\n3,1\n*STEP\n*CLOAD\n3,2,7.\n3,6,5.\n3,1,9.\n"
                                 "*END STEP\n");
  EXPECT_EQ(FlagsOf(deck, 1), (Flags{1, 0, 0, 0, 0, 0}));
  EXPECT_EQ(FlagsOf(deck, 2), (Flags{0, 1, 0, 0, 0, 0}));
  ASSERT_EQ(deck.model.cases.at(0).forces.size(), 1U);
  const std::array<double, 6>& force = deck.model.cases[0].forces[0].components;
  const std::array<double, 6> expected{-7.0, 9.0, 0.0, 0.0, 0.0, 5.0};
  for (std::size_t k = 0; k < 6; ++k) EXPECT_NEAR(force[k], expected[k], Rounding) << k;
  EXPECT_EQ(Reasons(Held(axes + "*BOUNDARY\n1,1\n"), Fate::Refused).size(), 1U);
  EXPECT_EQ(Reasons(Held(axes + "*STEP\n*CLOAD\n1,1,1.\n*END STEP\n"), Fate::Refused),
            Texts{"*CLOAD: a force on the axis of its cylindrical or spherical system"});
}

// Node 1 lies on the axis: what is held at 0 in all directions needs none of them.
TEST(AbaqusTransform, AllHeldOnTheAxisNeedsNoAxes) {
  const std::string axes = "*NSET,NSET=C\n1\n*TRANSFORM,NSET=C,TYPE=C\n0,0,0,0,0,1\n";
  const ImportedDeck all = Held(axes + "*BOUNDARY\n1,1,6\n");
  EXPECT_EQ(FlagsOf(all, 0), (Flags{1, 1, 1, 1, 1, 1}));
  EXPECT_TRUE(Reasons(all, Fate::Refused).empty());
  EXPECT_EQ(FlagsOf(Held(axes + "*BOUNDARY\n1,PINNED\n"), 0), (Flags{1, 1, 1, 0, 0, 0}));
  EXPECT_EQ(FlagsOf(Held(axes + "*BOUNDARY\n1,4,6\n"), 0), (Flags{0, 0, 0, 1, 1, 1}));
  for (const char* lines : {"1,1,2\n", "1,1,4\n", "1,2,6\n", "1,1,6,0.5\n"}) {
    const std::string step = std::string("*STEP\n*BOUNDARY\n") + lines + "*END STEP\n";
    EXPECT_EQ(Reasons(Held(axes + step), Fate::Refused).size(), 1U) << lines;
  }
}

TEST(AbaqusTransform, DataBehindItsSixNumbersIsReported) {
  const ImportedDeck deck = Held("*TRANSFORM,NSET=S\n1,0,0,0,1,0,7\n1,2\n");
  EXPECT_EQ(Reasons(deck, Fate::Limited),
            (Texts{"*TRANSFORM: more fields in a data line than are read",
                   "*TRANSFORM: more data lines than are read"}));
  EXPECT_TRUE(Held("*TRANSFORM,NSET=S\n1,0,0,0,1,0,\n").report.entries.empty());
}

// Spherical about the origin, polar axis z: at (0, 1, 0) radial is y, circumferential -x,
// meridional y x (-x) = z.
TEST(AbaqusTransform, SphericalAxes) {
  const ImportedDeck deck = Held(
      "*NSET,NSET=C\n3\n*TRANSFORM,NSET=C,TYPE=S\n0,0,0,0,0,1\n"
      "*STEP\n*CLOAD\n3,1,1.\n3,2,2.\n3,3,3.\n*END STEP\n");
  const std::array<double, 6>& force = deck.model.cases.at(0).forces.at(0).components;
  EXPECT_NEAR(force[0], -2.0, Rounding);
  EXPECT_NEAR(force[1], 1.0, Rounding);
  EXPECT_NEAR(force[2], 3.0, Rounding);
}

TEST(AbaqusTransform, BrokenOnesAreRefused) {
  const ImportedDeck deck = Held(
      "*TRANSFORM,NSET=S\n1,0,0,2,0,0\n*TRANSFORM,NSET=T\n1,0,0,0,1,0\n"
      "*TRANSFORM,NSET=S,TYPE=C\n1,0,0,1,0,0\n");
  EXPECT_EQ(Reasons(deck, Fate::Refused), (Texts{"*TRANSFORM: its points give no axes (2)",
                                                 "*TRANSFORM: its node set does not exist"}));
}

}  // namespace
}  // namespace kvx::test
