// The box around the nodes, and from which force on a displacement is prescribed.
#include "tables/node_box.h"

#include <gtest/gtest.h>

#include <limits>

#include "tables/prescribed_displacements.h"

namespace kvx::test {
namespace {

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
constexpr double Inf = std::numeric_limits<double>::infinity();

korvex::ModelTables MakeTables(const std::vector<korvex::Vector3>& places) {
  korvex::ModelTables tables;
  for (const korvex::Vector3& place : places) {
    tables.Nodes.push_back({});
    korvex::Node& node = tables.Nodes.back();
    node.x = place[0];
    node.y = place[1];
    node.z = place[2];
  }
  return tables;
}

TEST(NodeBox, HasItsMiddleAndItsDiagonal) {
  const NodeBox box = MeasureNodeBox(MakeTables({{1, 2, 3}, {3, -1, 9}, {2, 2, 4}}));
  EXPECT_EQ(box.middle, (korvex::Vector3{2, 0.5, 6}));
  EXPECT_DOUBLE_EQ(box.diagonal, 7.0);  // sqrt(2^2 + 3^2 + 6^2)
}

TEST(NodeBox, LeavesOutWhatIsNotFinite) {
  const NodeBox box = MeasureNodeBox(MakeTables({{0, Nan, 0}, {3, Nan, Inf}, {-Inf, Nan, 4}}));
  EXPECT_EQ(box.middle, (korvex::Vector3{1.5, 0, 2}));
  EXPECT_DOUBLE_EQ(box.diagonal, 5.0);
}

TEST(NodeBox, IsNothingWithoutNodes) {
  const NodeBox box = MeasureNodeBox({});
  EXPECT_EQ(box.middle, korvex::Vector3{});
  EXPECT_EQ(box.diagonal, 0.0);
}

// 1e-9 of an extent of 10 is 1e-8, times 1e20: 1e12. A rotation of 1e-6: 1e14.
TEST(PrescribedDisplacements, BeginAtTheirThresholds) {
  for (const double sign : {1.0, -1.0}) {
    EXPECT_FALSE(IsPrescribing(2, sign * 0.99e12, 10.0));
    EXPECT_TRUE(IsPrescribing(2, sign * 1.01e12, 10.0));
    EXPECT_FALSE(IsPrescribing(3, sign * 0.99e14, 10.0));
    EXPECT_TRUE(IsPrescribing(3, sign * 1.01e14, 10.0));
  }
  EXPECT_FALSE(IsPrescribing(0, 1e20, 0.0));  // a model without extent has nothing to compare with
  EXPECT_FALSE(IsPrescribing(0, Nan, 10.0));
}

}  // namespace
}  // namespace kvx::test
