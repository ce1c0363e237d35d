// What becomes of each card that the readers of structure and loads do not take.
#include "mesh/nastran/nastran_cards.h"

#include <gtest/gtest.h>

#include "mesh/nastran/read_structure.h"

namespace kvx::test {
namespace {

using Texts = std::vector<std::string>;

Texts OtherEntries(const std::string& text) {
  DeckOfText read;
  ReadDeckText(text, read);
  ReportOtherCards(read.deck, read.report);
  return Entries(read.report);
}

TEST(NastranCards, PartsOfTheReaders) {
  for (const char* const name : {"GRID", "CQUAD4", "CBAR", "PBARL", "MAT8", "CORD1S", "BEAMOR"}) {
    EXPECT_EQ(KindOfCard(name).part, NastranPart::Structure) << name;
  }
  for (const char* const name : {"SPC", "SPC1", "LOAD", "PLOAD4", "GRAV", "MOMENT1"}) {
    EXPECT_EQ(KindOfCard(name).part, NastranPart::Loads) << name;
  }
  for (const char* const name : {"SPCX", "PC", "RID", "CBAR1", "M", ""}) {
    EXPECT_EQ(KindOfCard(name).part, NastranPart::Neither) << name;
    EXPECT_EQ(KindOfCard(name).fate, Fate::Lost) << name;
    EXPECT_EQ(KindOfCard(name).reason, "unknown card") << name;
  }
}

TEST(NastranCards, WhatTheModelLacksIsLostOrRefused) {
  EXPECT_EQ(
      OtherEntries("CHEXA,1,2,3\nCHEXA,5,2,3\nCELAS2,7,1.\nRBE2,17,1,123\nCONM2,4,5\nCROD,9,1\n"
                   "CQUAD8,3,1\nMPC,1,2,3\nMYCARD,ABC\nTEMP,3,1,20.\n"),
      (Texts{"CELAS2 lost 1: springs have no counterpart (CELAS2 7)",
             "CHEXA lost 2: solid elements have no counterpart (CHEXA 1)",
             "CONM2 lost 1: mass elements are left out; they carry weight alone (CONM2 4)",
             "CQUAD8 refused 1: shells of second order; mesh with CQUAD4 and CTRIA3 (CQUAD8 3)",
             "CROD refused 1: bars without bending have no counterpart (CROD 9)",
             "MPC lost 1: equations between displacements have no counterpart (MPC 1)",
             "MYCARD lost 1: unknown card (MYCARD)",
             "RBE2 lost 1: rigid elements have no counterpart (RBE2 17)",
             "TEMP lost 1: temperature loads have no counterpart (TEMP 3)"}));
}

TEST(NastranCards, OfUnknownCardsTheNearestIsNamed) {
  EXPECT_EQ(OtherEntries("PSHEL,1,2\nFORCES,1,2\nXYZW,1\n"),
            (Texts{"FORCES lost 1: unknown card; did you mean FORCE? (FORCES 1)",
                   "PSHEL lost 1: unknown card; did you mean PSHELL? (PSHEL 1)",
                   "XYZW lost 1: unknown card (XYZW 1)"}));
}

// A deck of nothing but unknown names: 50 of them are compared.
TEST(NastranCards, OnlyTheFirstUnknownNamesAreCompared) {
  std::string text;
  for (int k = 0; k < 60; ++k) text += "QQQQQ" + std::to_string(k) + ",1\n";
  EXPECT_EQ(OtherEntries(text + "PSHEL,7\n").back(), "QQQQQ9 lost 1: unknown card (QQQQQ9 1)");
  EXPECT_EQ(OtherEntries(text + "PSHEL,7\n").front(), "PSHEL lost 1: unknown card (PSHEL 7)");
  EXPECT_EQ(OtherEntries("PSHEL,7\n" + text).front(),
            "PSHEL lost 1: unknown card; did you mean PSHELL? (PSHEL 7)");
}

TEST(NastranCards, WhatSaysNothingHasNoEffect) {
  EXPECT_EQ(OtherEntries("EIGRL,1,,,10\nPSOLID,2,7\nDESVAR,1,X\nPLOTEL,8,1,2\nCBARAO,9\n"),
            (Texts{"CBARAO no effect 1: it asks for output (CBARAO 9)",
                   "DESVAR no effect 1: it serves optimization (DESVAR 1)",
                   "EIGRL no effect 1: it serves the search for vibrations or buckling (EIGRL 1)",
                   "PLOTEL no effect 1: it asks for output (PLOTEL 8)",
                   "PSOLID no effect 1: it belongs to elements that are not taken (PSOLID 2)"}));
}

TEST(NastranCards, ParametersAreToldByName) {
  EXPECT_EQ(
      OtherEntries(
          "PARAM,POST,-1\nPARAM,AUTOSPC,YES\nPARAM,K6ROT,100.\nPARAM,LGDISP,1\nPARAM,INREL,-1\n"
          "PARAM,MINE,3\nPARAM,WTMASS,.00259\nPARAM   PRTMAXIM YES\n"),
      (Texts{
          "PARAM limited 1: a parameter that is not known here (PARAM MINE)",
          "PARAM limited 1: large displacements are not followed here; the analysis is linear "
          "(PARAM "
          "LGDISP)",
          "PARAM lost 1: loads and supports by inertia have no counterpart (PARAM INREL)",
          "PARAM no effect 1: free directions are not held by themselves here; kvx check finds "
          "them "
          "(PARAM AUTOSPC)",
          "PARAM no effect 1: the rotation about a shell's normal has a stiffness of its own here "
          "(PARAM K6ROT)",
          "PARAM no effect 2: a parameter of output (PARAM POST)"}));
}

// No card may be in two rows of the table, nor in none while a routine takes it.
TEST(NastranCards, CardsOfTheStructureAreTakenOrReported) {
  for (const char* const name :
       {"GRID",   "GRDSET", "CORD1R", "CORD2S",  "CQUAD4", "CTRIA3", "CQUADR", "CTRIAR",  "CSHEAR",
        "CBAR",   "CBEAM",  "BAROR",  "BEAMOR",  "PSHELL", "PCOMP",  "PCOMPG", "PCOMPLS", "PLPLANE",
        "PSHEAR", "PBAR",   "PBARL",  "PBRSECT", "PBEAM",  "PBEAML", "PBCOMP", "PBMSECT", "PBEAM3",
        "MAT1",   "MAT2",   "MAT3",   "MAT8",    "MAT9",   "MAT10",  "MATORT", "MATHP"}) {
    EXPECT_EQ(KindOfCard(name).part, NastranPart::Structure) << name;
  }
}

}  // namespace
}  // namespace kvx::test
