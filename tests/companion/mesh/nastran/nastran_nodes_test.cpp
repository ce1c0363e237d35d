#include "mesh/nastran/nastran_nodes.h"

#include <gtest/gtest.h>

#include "mesh/nastran/read_structure.h"

namespace kvx::test {
namespace {

using Texts = std::vector<std::string>;

TEST(NastranNodes, NodesKeepTheirOrderAndNumbers) {
  StructureOfText s;
  ReadStructureText("GRID,30,,1.,2.,3.\nGRID,10,,-1.5,,2.+1\n", s);
  EXPECT_EQ(s.model.nodeNumbers, (std::vector<std::int64_t>{30, 10}));
  EXPECT_EQ(s.numbers.nodes.at(10), 1);
  EXPECT_EQ(s.model.nodes[0].y, 2.0);
  EXPECT_EQ(s.model.nodes[1].x, -1.5);
  EXPECT_EQ(s.model.nodes[1].y, 0.0);
  EXPECT_EQ(s.model.nodes[1].z, 20.0);
  EXPECT_EQ(s.systems.displacementSystems, (std::vector<std::int64_t>{0, 0}));
}

// System 4 is moved by 100 along x.
TEST(NastranNodes, BlankFieldsTakeTheDefaultsOfGrdsetAndZerosDoNot) {
  StructureOfText s;
  ReadStructureText(
      "GRID,1,,1.\nGRID,2,0,1.,,,0\nCORD2R,4,,100.,,,100.,0.,1.\n,101.,0.,0.\n"
      "GRDSET,,4,,,,4,123\n",
      s);
  EXPECT_EQ(s.model.nodes[0].x, 101.0);
  EXPECT_EQ(s.model.nodes[1].x, 1.0);
  EXPECT_EQ(s.systems.displacementSystems, (std::vector<std::int64_t>{4, 0}));
  EXPECT_TRUE(s.read.report.entries.empty());
}

TEST(NastranNodes, SecondGrdsetIsRefusedUnlessItSaysTheSame) {
  StructureOfText s;
  ReadStructureText("GRDSET,,,,,,,345\nGRDSET,,,,,,,345\nGRDSET,,,,,,,3456\n", s);
  EXPECT_EQ(Entries(s.read.report),
            (Texts{"GRDSET no effect 1: it says again what a card before says ()",
                   "GRDSET refused 1: a deck can have only one ()"}));
}

TEST(NastranNodes, NumbersUsedTwiceAreRefusedUnlessTheCardsSayTheSame) {
  StructureOfText s;
  ReadStructureText("GRID,1,,1.,2.,3.\nGRID*,1,,1.00,2.\n*,.3+1\nGRID,1,,1.,2.,4.\n", s);
  EXPECT_EQ(s.model.nodes.size(), 1U);
  EXPECT_EQ(
      Entries(s.read.report),
      (Texts{"GRID no effect 1: it says again what a card before says (GRID 1)",
             "GRID refused 1: another card has its number and says something else (GRID 1)"}));
}

TEST(NastranNodes, NumbersAreAboveZero) {
  for (const char* const text : {"GRID,0,,1.\n", "GRID,-3\n", "GRID,,,1.\n", "GRID,1.5\n"}) {
    EXPECT_NE(StopText([text] {
                StructureOfText s;
                ReadStructureText(text, s);
              }),
              "")
        << text;
  }
}

}  // namespace
}  // namespace kvx::test
