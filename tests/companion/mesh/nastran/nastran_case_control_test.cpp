#include "mesh/nastran/nastran_case_control.h"

#include <gtest/gtest.h>

#include <string>

#include "mesh/nastran/load_sums.h"
#include "mesh/nastran/read_deck.h"

namespace kvx::test {
namespace {

// A deck's cases as text, "name: SPC 2 LOAD 3", and its report.
struct ControlText {
  std::string cases;
  bool asks = false;
  ImportReport report;
};

ControlText ReadControl(const std::string& commands) {
  DeckOfText read;
  ReadDeckText("SOL 101\nCEND\n" + commands + "BEGIN BULK\nENDDATA\n", read);
  NastranCaseControl control;
  ReadCaseControl(read.deck, read.report, control);
  ControlText text;
  text.asks = control.asks;
  text.report = read.report;
  for (const NastranCase& row : control.cases) {
    text.cases += row.name + ": SPC " + std::to_string(row.supports) + " LOAD " +
                  std::to_string(row.loads) + ", line " + std::to_string(row.place.line) + '\n';
  }
  return text;
}

TEST(NastranCaseControl, WhatStandsAboveTheFirstSubcaseHoldsWhereASubcaseSaysNothingElse) {
  const ControlText text = ReadControl(
      "SPC = 1\n"
      "LOAD = 7\n"
      "SUBCASE 1\n"
      "SUBCASE 2\n"
      "  LOAD=8\n"
      "SUBCASE 3\n"
      "  SPC 2\n"
      "SUBCASE 4\n"
      "  SPC = NONE\n"
      "  LOAD = 0\n");
  EXPECT_EQ(text.cases,
            "subcase 1: SPC 1 LOAD 7, line 5\n"
            "subcase 2: SPC 1 LOAD 8, line 6\n"
            "subcase 3: SPC 2 LOAD 7, line 8\n"
            "subcase 4: SPC 0 LOAD 0, line 10\n");
  EXPECT_TRUE(text.asks);
}

TEST(NastranCaseControl, ADeckWithoutSubcasesHasOneCaseWithoutAName) {
  const ControlText text = ReadControl("TITLE = Pontoon\nLOAD = 3\nSPC = 4\n");
  EXPECT_EQ(text.cases, ": SPC 4 LOAD 3, line 0\n");
  EXPECT_EQ(EntriesText(text.report, Fate::NoEffect), "case control TITLE|a title|1\n");
}

TEST(NastranCaseControl, NothingAskedForIsToldApart) {
  const ControlText text = ReadControl("TITLE = none\nDISP = ALL\n");
  EXPECT_FALSE(text.asks);
  EXPECT_EQ(text.cases, "");
}

// Names are the deck's; who makes folders of them replaces what a folder cannot have. Names that
// are the same are told apart.
TEST(NastranCaseControl, ASubcaseIsNamedByItsLabelElseItsSubtitle) {
  const ControlText text = ReadControl(
      "SUBTITLE = of all\n"
      "SUBCASE 1\n"
      "  SUBTITLE = Wind\n"
      "  LABEL = Wind / from: aft. \n"
      "SUBCASE 2\n"
      "  SUBTITLE = Snow\n"
      "  TITLE = not this\n"
      "SUBCASE 3\n"
      "SUBCASE 3\n");
  EXPECT_EQ(text.cases,
            "subcase 1 Wind / from: aft.: SPC 0 LOAD 0, line 4\n"
            "subcase 2 Snow: SPC 0 LOAD 0, line 7\n"
            "subcase 3: SPC 0 LOAD 0, line 10\n"
            "subcase 3 (2): SPC 0 LOAD 0, line 11\n");
  EXPECT_EQ(EntriesText(text.report, Fate::NoEffect),
            "case control SUBTITLE|a title|1\ncase control TITLE|a title|1\n");
}

TEST(NastranCaseControl, RequestsOfOutputAreOneEntryForEachCommand) {
  const ControlText text = ReadControl(
      "ECHO = NONE\n"
      "DISP(PRINT,PLOT) = ALL\n"
      "SET 1 = 1, 2,\n 3 THRU 9\n"
      "SUBCASE 1\n"
      "  LOAD = 1\n"
      "  DISP = 1\n"
      "  ELFOR(PLOT,PRINT)=ALL\n"
      "  GPKE=ALL\n"
      "OUTPUT(XYPLOT)\n"
      "CSCALE 3.0\n");
  EXPECT_EQ(EntriesText(text.report, Fate::NoEffect),
            "case control ECHO|a request of output|1\n"
            "case control DISP|a request of output|2\n"
            "case control SET|a request of output|1\n"
            "case control ELFOR|a request of output|1\n"
            "case control GPKE|a request of output|1\n"
            "case control OUTPUT|a request of output|1\n"
            "case control CSCALE|a request of output|1\n");
  EXPECT_EQ(EntriesText(text.report, Fate::Lost), "");
}

// SPCFORCES begins with SPC, LOADSET with LOAD: neither selects a set.
TEST(NastranCaseControl, ALongerNameIsAnotherCommand) {
  const ControlText text = ReadControl(
      "SPC = 1\nLOAD = 2\nSPCF = 5\nSPCFORCES = 6\nLOADSET = 7\nMPCFORCE = 8\nLINE = 9\n");
  EXPECT_EQ(text.cases, ": SPC 1 LOAD 2, line 0\n");
  EXPECT_EQ(EntriesText(text.report, Fate::Lost), "case control LOADSET|an unknown command|1\n");
}

TEST(NastranCaseControl, LoadsThatAreNotTakenOverAreLost) {
  const ControlText text = ReadControl(
      "SUBCASE 1\n"
      "  TEMP(LOAD) = 3\n"
      "  DEFORM = 4\n"
      "  MPC = 5\n"
      "  FROBNICATE = 6\n");
  EXPECT_EQ(EntriesText(text.report, Fate::Lost),
            "case control TEMP|temperature loads are not taken over|1\n"
            "case control DEFORM|deformations of elements are not taken over|1\n"
            "case control MPC|equations between degrees of freedom have no counterpart|1\n"
            "case control FROBNICATE|an unknown command|1\n");
}

TEST(NastranCaseControl, ALabelKeepsItsLetters) {
  EXPECT_EQ(ReadControl("SUBCASE 10\nLABEL = Wind aus S\xC3\xBC\x64\n").cases,
            "subcase 10 Wind aus S\xC3\xBC\x64: SPC 0 LOAD 0, line 3\n");
  EXPECT_EQ(ReadControl("SUBCASE 10\nLABEL = Wind\taus\x1BS\n").cases,
            "subcase 10 Wind aus S: SPC 0 LOAD 0, line 3\n");
}

// 40 bytes are kept. The letter of bytes 40 and 41 would be cut in two.
TEST(NastranCaseControl, ALongLabelEndsBehindAWholeLetter) {
  const std::string label(39, 'w');
  EXPECT_EQ(ReadControl("SUBCASE 1\nLABEL = " + label + "\xC3\xBCx\n").cases,
            "subcase 1 " + label + ": SPC 0 LOAD 0, line 3\n");
  EXPECT_EQ(ReadControl("SUBCASE 1\nLABEL = " + label.substr(1) + "\xC3\xBCx\n").cases,
            "subcase 1 " + label.substr(1) + "\xC3\xBC: SPC 0 LOAD 0, line 3\n");
}

// Their own LOAD and LABEL are none of the subcase above them.
TEST(NastranCaseControl, CombinedAndRepeatedSubcasesAreNoCases) {
  const ControlText text = ReadControl(
      "SUBCASE 1\n  LOAD = 1\n  LABEL = one\n"
      "REPCASE 2\n  DISP = ALL\n  LABEL = again\n"
      "SUBCOM 3\n  LABEL = sum\n  SUBSEQ = 1.0, 2.0\n  LOAD = 9\n"
      "SUBCASE 4\n  LOAD = 2\n");
  EXPECT_EQ(text.cases,
            "subcase 1 one: SPC 0 LOAD 1, line 3\n"
            "subcase 4: SPC 0 LOAD 2, line 13\n");
  EXPECT_EQ(EntriesText(text.report, Fate::Lost),
            "case control SUBCOM|combinations of subcases are not taken over: write them into "
            "cases.toml|1\n"
            "case control SUBSEQ|combinations of subcases are not taken over: write them into "
            "cases.toml|1\n");
  EXPECT_EQ(EntriesText(text.report, Fate::NoEffect),
            "case control REPCASE|other output of the subcase before it|1\n"
            "case control DISP|a request of output|1\n"
            "case control LABEL|belongs to a subcase that is not taken over|2\n"
            "case control LOAD|belongs to a subcase that is not taken over|1\n");
}

TEST(NastranCaseControl, CommandsBetweenSkiponAndSkipoffAreNotRead) {
  const ControlText text = ReadControl("LOAD = 1\nSKIPON\nLOAD = 2\nSUBCASE 5\nSKIPOFF\nSPC = 3\n");
  EXPECT_EQ(text.cases, ": SPC 3 LOAD 1, line 0\n");
}

TEST(NastranCaseControl, AnotherAnalysisIsSolvedAsLinearStatic) {
  const ControlText text =
      ReadControl("SUBCASE 1\nANALYSIS = STATICS\nSUBCASE 2\nANALYSIS = MODES\nMETHOD = 3\n");
  EXPECT_EQ(EntriesText(text.report, Fate::Limited),
            "case control ANALYSIS|it is solved as linear static|1\n");
}

TEST(NastranCaseControl, ASetWithoutNumberEndsTheImport) {
  EXPECT_NE(StopText([] { ReadControl("LOAD = wind\n"); }).find("line 3"), std::string::npos);
  EXPECT_NE(StopText([] { ReadControl("SPC = -2\n"); }).find("should name a set"),
            std::string::npos);
}

}  // namespace
}  // namespace kvx::test
