// The nodal displacement file byte by byte.
#include "results/node_displacements.h"

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace korvex {
namespace {

constexpr const char* Header =
    "           Node             dx             dy             dz"
    "             rx             ry             rz\n";

std::string Write(const Model& model) {
  const test::WorkingFolder folder;
  EXPECT_TRUE(WriteNodeDisplacements("Node_Dis.txt", model));
  return test::ReadFile("Node_Dis.txt");
}

TEST(NodeDisplacements, WithoutNodesHoldsTheHeaderAlone) { EXPECT_EQ(Write(Model()), Header); }

TEST(NodeDisplacements, NumbersInColumnsOfFifteen) {
  Model model;
  model.Tables.NPOIN = 2;
  model.Displacements = {0, 1.23456789e-05, -1234567.0, 0.1,     -0.0, 1e-17, 1, 2,
                         3, -4.5,           1e5,        123456.5};
  EXPECT_EQ(Write(model),
            std::string(Header) +
                "             0:              0    1.23457e-05   -1.23457e+06            0.1"
                "             -0          1e-17\n"
                "             1:              1              2              3           -4.5"
                "         100000         123456\n");
}

// The node number's field is one place narrower and the colon follows without padding.
TEST(NodeDisplacements, NodeNumberTakesFourteenPlacesAndAColon) {
  Model model;
  model.Tables.NPOIN = 11;
  model.Displacements.assign(66, 0.0);
  const std::string file = Write(model);
  const std::string zeros =
      "              0              0              0              0"
      "              0              0\n";
  EXPECT_NE(file.find("\n             9:" + zeros), std::string::npos);
  EXPECT_NE(file.find("\n            10:" + zeros), std::string::npos);
}

// The widest value has six digits, a point, two signs and an exponent of three digits: 13 places.
// It is narrower than its column, so a blank always separates the columns.
TEST(NodeDisplacements, WidestValueKeepsItsColumn) {
  Model model;
  model.Tables.NPOIN = 1;
  model.Displacements.assign(6, -1.234567e-300);
  const std::string file = Write(model);
  EXPECT_NE(file.find(":  -1.23457e-300  -1.23457e-300"), std::string::npos);
}

}  // namespace
}  // namespace korvex
