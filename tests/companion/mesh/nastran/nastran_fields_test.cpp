// Numbers as bulk data writes them. Values are read off the texts by hand.
#include "mesh/nastran/nastran_fields.h"

#include <gtest/gtest.h>

#include "mesh/nastran/read_deck.h"

namespace kvx::test {
namespace {

double RealOf(const std::string& field) {
  DeckOfText read;
  ReadDeckText("MAT1,7," + field + "\n", read);
  return RealField({read.deck, read.deck.cards.at(0), read.report}, 3, -99.0);
}

std::int64_t IntegerOf(const std::string& field) {
  DeckOfText read;
  ReadDeckText("MAT1,7," + field + "\n", read);
  return IntegerField({read.deck, read.deck.cards.at(0), read.report}, 3, -99);
}

TEST(NastranFields, RealsOfAllForms) {
  EXPECT_EQ(RealOf("7.0"), 7.0);
  EXPECT_EQ(RealOf("7."), 7.0);
  EXPECT_EQ(RealOf(".7E1"), 7.0);
  EXPECT_EQ(RealOf(".5"), 0.5);
  EXPECT_EQ(RealOf("-.5"), -0.5);
  EXPECT_EQ(RealOf("+.5"), 0.5);
  EXPECT_EQ(RealOf("7.+0"), 7.0);
  EXPECT_EQ(RealOf("2.9+7"), 2.9e7);
  EXPECT_EQ(RealOf("1.-3"), 1e-3);
  EXPECT_EQ(RealOf("-1.25-3"), -1.25e-3);
  EXPECT_EQ(RealOf("+1.25+3"), 1250.0);
  EXPECT_EQ(RealOf("70.D-1"), 7.0);
  EXPECT_EQ(RealOf("1.5e+3"), 1500.0);
  EXPECT_EQ(RealOf("1.5E-3"), 1.5e-3);
  EXPECT_EQ(RealOf("1.5d3"), 1500.0);
  EXPECT_EQ(RealOf("2+3"), 2000.0);
  EXPECT_EQ(RealOf("7"), 7.0);
  EXPECT_EQ(RealOf(""), -99.0);
}

TEST(NastranFields, WhatIsNoRealEndsTheImport) {
  EXPECT_EQ(StopText([] { RealOf("- 1.0"); }),
            "\"deck.bdf\", line 1: MAT1 7, field 3: \"- 1.0\" is no number");
  for (const char* const text : {"1.0E", "1.0+", "+", ".", "1.0E5+3", "1..5", "1.0.0", "abc",
                                 "1-2-3", "--1.", "0x10", "inf", "1.0 2.0", "2.+999"}) {
    EXPECT_NE(StopText([text] { RealOf(text); }), "") << text;
  }
  EXPECT_NE(StopText([] { RealOf(std::string(80, '1') + "+3"); }), "");
}

TEST(NastranFields, Integers) {
  EXPECT_EQ(IntegerOf("12"), 12);
  EXPECT_EQ(IntegerOf("-3"), -3);
  EXPECT_EQ(IntegerOf("+3"), 3);
  EXPECT_EQ(IntegerOf(""), -99);
  for (const char* const text : {"1.", "1.0", "1+2", "A", "1 2", "99999999999999999999"}) {
    EXPECT_NE(StopText([text] { IntegerOf(text); }), "") << text;
  }
}

TEST(NastranFields, MissingFieldsAreNamed) {
  DeckOfText read;
  ReadDeckText("$\nGRID,5,,1.\n", read);
  const NastranRow row{read.deck, read.deck.cards.at(0), read.report};
  EXPECT_EQ(NeedReal(row, 4), 1.0);
  EXPECT_EQ(NeedInteger(row, 2), 5);
  EXPECT_TRUE(IsBlank(row, 3));
  EXPECT_FALSE(IsBlank(row, 4));
  EXPECT_TRUE(IsBlank(row, 14));
  EXPECT_TRUE(HoldsInteger(row, 2));
  EXPECT_FALSE(HoldsInteger(row, 3));
  EXPECT_FALSE(HoldsInteger(row, 4));
  EXPECT_EQ(StopText([&row] { NeedReal(row, 5); }),
            "\"deck.bdf\", line 2: GRID 5, field 5: a number is missing");
  EXPECT_EQ(StopText([&row] { NeedInteger(row, 3); }),
            "\"deck.bdf\", line 2: GRID 5, field 3: an integer is missing");
}

}  // namespace
}  // namespace kvx::test
