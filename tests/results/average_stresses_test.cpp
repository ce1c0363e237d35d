// The averages of corner stresses: each rule on a model of few elements, and all rules together
// against a direct sum over all pairs of elements.
//
// In the small models corner k of element i, counted over the quadrilaterals and then the
// triangles, carries v = 10 (i + 1) + k on its upper and v + 1000 on its lower face: its six
// components are v times 1, 2, 4, 8, 16, 32. Sums of these numbers are exact, halves too, and the
// powers of two scale a rounded third without rounding it again. So everything is compared bit for
// bit.
#include "results/average_stresses.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "results/corner_sum.h"

namespace korvex {
namespace {

constexpr double Bottom = 1000.0;  // what a lower face's v has over that of its upper face

StressVector Stress(double v) { return {v, 2 * v, 4 * v, 8 * v, 16 * v, 32 * v}; }

void AddNode(Model& model, double x, double y, double z) {
  model.Tables.Nodes.push_back({x, y, z});
  ++model.Tables.NPOIN;
}

// Appends an element of thickness TK to its kind's tables.
template <std::size_t N>
void AddElement(const Model& model, const std::int32_t (&nodes)[N], double TK,
                std::vector<ShellElement<static_cast<std::int32_t>(N)>>& elements,
                std::vector<std::int32_t>& connectivity) {
  std::array<double, 3 * N> coordinates{};
  for (std::size_t k = 0; k < N; ++k) {
    const Node& node = model.Tables.Nodes[static_cast<std::size_t>(nodes[k])];
    coordinates[3 * k] = node.x;
    coordinates[3 * k + 1] = node.y;
    coordinates[3 * k + 2] = node.z;
    connectivity.push_back(nodes[k]);
  }
  elements.emplace_back();
  SetGeometry(elements.back(), coordinates.data(), static_cast<std::int32_t>(N), 1.0, 0.0, TK);
}

void AddShell(Model& model, const std::int32_t (&nodes)[4], double TK = 10.0) {
  AddElement(model, nodes, TK, model.Shell4Elements, model.Tables.Shell4Nodes);
  ++model.Tables.NELEM_S_4ND;
}

void AddShell(Model& model, const std::int32_t (&nodes)[3], double TK = 10.0) {
  AddElement(model, nodes, TK, model.Shell3Elements, model.Tables.Shell3Nodes);
  ++model.Tables.NELEM_S_3ND;
}

// Gives the corners of `element`, the i-th of all, their stresses.
template <typename Element>
void NumberCorners(Element& element, std::size_t i) {
  for (std::size_t k = 0; k < element.NodeStressTop.size(); ++k) {
    const double v = 10.0 * static_cast<double>(i + 1) + static_cast<double>(k);
    element.NodeStressTop[k] = Stress(v);
    element.NodeStressBottom[k] = Stress(v + Bottom);
  }
}

// Numbers all corners and averages.
void NumberAndAverage(Model& model) {
  std::size_t i = 0;
  for (Shell4Element& element : model.Shell4Elements) NumberCorners(element, i++);
  for (Shell3Element& element : model.Shell3Elements) NumberCorners(element, i++);
  AverageNodeStresses(model);
}

// Expects the averages of corner k.
template <typename Element>
void ExpectAverage(const Element& element, std::size_t k, double top, double bottom) {
  EXPECT_EQ(element.AvgStressTop[k], Stress(top)) << "corner " << k;
  EXPECT_EQ(element.AvgStressBottom[k], Stress(bottom)) << "corner " << k;
}

// Expects that corner k is averaged with nothing.
template <typename Element>
void ExpectOwn(const Element& element, std::size_t k) {
  EXPECT_EQ(element.AvgStressTop[k], element.NodeStressTop[k]) << "corner " << k;
  EXPECT_EQ(element.AvgStressBottom[k], element.NodeStressBottom[k]) << "corner " << k;
}

// The nodes of two squares of side 1 with a common edge, and the left one as element 0, facing up.
// The right one is folded up about the edge by `degrees`; the test adds what lies on it.
//
//   3---2---5     y
//   | 0 |   |     |
//   0---1---4     o--x
Model MakeFold(double degrees, double TK = 10.0) {
  const double angle = degrees * std::acos(-1.0) / 180.0;
  Model model;
  AddNode(model, -1, 0, 0);
  AddNode(model, 0, 0, 0);
  AddNode(model, 0, 1, 0);
  AddNode(model, -1, 1, 0);
  AddNode(model, std::cos(angle), 0, std::sin(angle));
  AddNode(model, std::cos(angle), 1, std::sin(angle));
  AddShell(model, {0, 1, 2, 3}, TK);
  return model;
}

// Equal thickness t: the difference of the offsets is t sin(angle / 2), the bound t / 10. The limit
// is 2 asin(1 / 10) = 11.47834 degrees.
TEST(AverageStresses, ShallowFoldsAreAveraged) {
  for (const double degrees : {0.0, 5.0, -5.0, 11.0, -11.0, 11.478}) {
    SCOPED_TRACE(degrees);
    Model model = MakeFold(degrees);
    AddShell(model, {1, 4, 5, 2});
    NumberAndAverage(model);
    const Shell4Element& left = model.Shell4Elements[0];
    const Shell4Element& right = model.Shell4Elements[1];
    // Node 1: (11 + 20) / 2. Node 2: (12 + 23) / 2. Both elements get the same.
    ExpectAverage(left, 1, 15.5, 15.5 + Bottom);
    ExpectAverage(right, 0, 15.5, 15.5 + Bottom);
    ExpectAverage(left, 2, 17.5, 17.5 + Bottom);
    ExpectAverage(right, 3, 17.5, 17.5 + Bottom);
  }
}

// At a right angle the difference is t / sqrt(2).
TEST(AverageStresses, SteepFoldsAreNotAveraged) {
  for (const double degrees : {11.479, 12.0, -12.0, 45.0, 90.0, -90.0, 135.0}) {
    SCOPED_TRACE(degrees);
    Model model = MakeFold(degrees);
    AddShell(model, {1, 4, 5, 2});
    NumberAndAverage(model);
    for (const Shell4Element& element : model.Shell4Elements) {
      for (std::size_t k = 0; k < 4; ++k) ExpectOwn(element, k);
    }
  }
}

TEST(AverageStresses, NodeOfOneElementKeepsItsStresses) {
  Model model = MakeFold(0);
  AddShell(model, {1, 4, 5, 2});
  AddNode(model, -2, 0, 0);
  AddShell(model, {0, 3, 6});
  NumberAndAverage(model);
  ExpectOwn(model.Shell4Elements[1], 1);
  ExpectOwn(model.Shell4Elements[1], 2);
  ExpectOwn(model.Shell3Elements[0], 2);
}

// In one plane the difference is |12.5 - 10| / 2 = 1.25, exactly. The bound is 10 / 10 for the
// thinner and 12.5 / 10 = 1.25, also exactly, for the thicker: equality is within.
TEST(AverageStresses, ThickerElementIncludesTheThinnerAndNotTheReverse) {
  Model model = MakeFold(0, 10.0);
  AddShell(model, {1, 4, 5, 2}, 12.5);
  NumberAndAverage(model);
  ExpectOwn(model.Shell4Elements[0], 1);
  ExpectOwn(model.Shell4Elements[0], 2);
  ExpectAverage(model.Shell4Elements[1], 0, 15.5, 15.5 + Bottom);
  ExpectAverage(model.Shell4Elements[1], 3, 17.5, 17.5 + Bottom);
}

// The bound is the quotient 3 / 10 and not the product 3 x 0.1: rounded, 1.8 - 1.5 is above the
// quotient and equal to the product.
TEST(AverageStresses, RoundedDifferenceBeyondATenth) {
  Model model = MakeFold(0, 3.0);
  AddShell(model, {1, 4, 5, 2}, 3.6);
  NumberAndAverage(model);
  ExpectOwn(model.Shell4Elements[0], 1);
  ExpectAverage(model.Shell4Elements[1], 0, 15.5, 15.5 + Bottom);
}

// The thinner element is thinner by one unit in the last place: the difference exceeds 1.25.
TEST(AverageStresses, ThicknessesBeyondTheBoundAreNotAveraged) {
  Model model = MakeFold(0, std::nextafter(10.0, 0.0));
  AddShell(model, {1, 4, 5, 2}, 12.5);
  NumberAndAverage(model);
  ExpectOwn(model.Shell4Elements[0], 1);
  ExpectOwn(model.Shell4Elements[1], 0);
}

// 10 and 12: the difference 1 equals the bound of the thinner and is below that of the thicker.
TEST(AverageStresses, ThicknessesWithinBothBoundsAreAveragedBothWays) {
  Model model = MakeFold(0, 10.0);
  AddShell(model, {1, 4, 5, 2}, 12.0);
  NumberAndAverage(model);
  ExpectAverage(model.Shell4Elements[0], 1, 15.5, 15.5 + Bottom);
  ExpectAverage(model.Shell4Elements[1], 0, 15.5, 15.5 + Bottom);
}

// Fold and thickness count together: 5 degrees and a twentieth of the thickness are each within the
// bound, and so are both: |w|^2 = 5^2 + 5.5^2 - 2 x 5 x 5.5 cos 5 = 0.459, |w| = 0.678. With 10
// degrees: |w|^2 = 1.086, |w| = 1.042, beyond 10 / 10 and within 11 / 10.
TEST(AverageStresses, FoldAndThicknessCountTogether) {
  Model shallow = MakeFold(5, 10.0);
  AddShell(shallow, {1, 4, 5, 2}, 11.0);
  NumberAndAverage(shallow);
  ExpectAverage(shallow.Shell4Elements[0], 1, 15.5, 15.5 + Bottom);
  Model steeper = MakeFold(10, 10.0);
  AddShell(steeper, {1, 4, 5, 2}, 11.0);
  NumberAndAverage(steeper);
  ExpectOwn(steeper.Shell4Elements[0], 1);
  ExpectAverage(steeper.Shell4Elements[1], 0, 15.5, 15.5 + Bottom);
}

// The right element faces down: its lower face lies beside the upper face of the left one. Its
// corner 0 is at node 1, corner 1 at node 2.
TEST(AverageStresses, OppositeNormalsSwapTheFaces) {
  for (const double degrees : {0.0, 11.0, -11.0}) {
    SCOPED_TRACE(degrees);
    Model model = MakeFold(degrees);
    AddShell(model, {1, 2, 5, 4});
    NumberAndAverage(model);
    // Node 1: (11 + 1020) / 2 above, (1011 + 20) / 2 below; node 2: (12 + 1021) / 2 and
    // (1012 + 21) / 2.
    ExpectAverage(model.Shell4Elements[0], 1, 515.5, 515.5);
    ExpectAverage(model.Shell4Elements[1], 0, 515.5, 515.5);
    ExpectAverage(model.Shell4Elements[0], 2, 516.5, 516.5);
    ExpectAverage(model.Shell4Elements[1], 1, 516.5, 516.5);
  }
}

// Only the normals of the two frames matter. Both squares lie in the plane x = 0 and have the
// normal X. Their first edges run along Y and along Z, so that their other axes differ.
TEST(AverageStresses, DirectionOfTheFirstEdgeDoesNotMatter) {
  Model model;
  for (const Node& node : MakeFold(0).Tables.Nodes) AddNode(model, 0, node.x, node.y);
  AddShell(model, {0, 1, 2, 3});
  AddShell(model, {4, 5, 2, 1});
  NumberAndAverage(model);
  // Node 1: corner 1 of the first, 11, and corner 3 of the second, 23. Node 2: 12 and 22.
  ExpectAverage(model.Shell4Elements[0], 1, 17.0, 17.0 + Bottom);
  ExpectAverage(model.Shell4Elements[1], 3, 17.0, 17.0 + Bottom);
  ExpectAverage(model.Shell4Elements[0], 2, 17.0, 17.0 + Bottom);
}

// Two elements with opposite normals get equal sums on both faces; a third makes them differ. Node
// 1: left 11 and 1011, right (facing down) 20 and 1020, the one below (facing up) 32 and 1032.
TEST(AverageStresses, OppositeNormalsAreSeenFromTheOwnElement) {
  Model model = MakeFold(0);
  AddShell(model, {1, 2, 5, 4});
  AddNode(model, -1, -1, 0);
  AddNode(model, 0, -1, 0);
  AddShell(model, {6, 7, 1, 0});
  NumberAndAverage(model);
  const double third = 1.0 / 3.0;
  ExpectAverage(model.Shell4Elements[0], 1, (11 + 1020 + 32) * third, (1011 + 20 + 1032) * third);
  ExpectAverage(model.Shell4Elements[1], 0, (20 + 1011 + 1032) * third, (1020 + 11 + 32) * third);
}

// Folded back by 175 degrees the right square lies 5 degrees above the left one and faces the other
// way.
TEST(AverageStresses, ElementFoldedBackIsAveragedWithFacesSwapped) {
  Model model = MakeFold(175);
  AddShell(model, {1, 4, 5, 2});
  NumberAndAverage(model);
  ExpectAverage(model.Shell4Elements[0], 1, (11 + 1020) / 2.0, (1011 + 20) / 2.0);
}

// A triangle on nodes 1, 4, 2: 20 at node 1, 22 at node 2.
TEST(AverageStresses, TriangleBesideAQuadrilateral) {
  for (const double degrees : {0.0, 11.0}) {
    SCOPED_TRACE(degrees);
    Model model = MakeFold(degrees);
    AddShell(model, {1, 4, 2});
    NumberAndAverage(model);
    ExpectAverage(model.Shell4Elements[0], 1, 15.5, 15.5 + Bottom);
    ExpectAverage(model.Shell4Elements[0], 2, 17.0, 17.0 + Bottom);
    ExpectAverage(model.Shell3Elements[0], 0, 15.5, 15.5 + Bottom);
    ExpectAverage(model.Shell3Elements[0], 2, 17.0, 17.0 + Bottom);
    ExpectOwn(model.Shell3Elements[0], 1);
  }
}

// Nodes 1, 2, 4: 20 at node 1, 21 at node 2. The quadrilateral below tells the faces apart.
TEST(AverageStresses, TriangleFacingTheOtherWay) {
  Model model = MakeFold(0);
  AddNode(model, -1, -1, 0);
  AddNode(model, 0, -1, 0);
  AddShell(model, {6, 7, 1, 0});
  AddShell(model, {1, 2, 4});
  NumberAndAverage(model);
  const double third = 1.0 / 3.0;
  // Node 1: quadrilaterals 11 and 22, the triangle 30 with its lower face above.
  ExpectAverage(model.Shell4Elements[0], 1, (11 + 22 + 1030) * third, (1011 + 1022 + 30) * third);
  ExpectAverage(model.Shell3Elements[0], 0, (30 + 1011 + 1022) * third, (1030 + 11 + 22) * third);
  // Node 2: 12 and 31.
  ExpectAverage(model.Shell4Elements[0], 2, (12 + 1031) / 2.0, (1012 + 31) / 2.0);
}

TEST(AverageStresses, SameRuleHoldsBetweenQuadrilateralsAndTriangles) {
  Model fold = MakeFold(12);
  AddShell(fold, {1, 4, 2});
  NumberAndAverage(fold);
  ExpectOwn(fold.Shell4Elements[0], 1);
  ExpectOwn(fold.Shell3Elements[0], 0);

  Model thicker = MakeFold(0, 10.0);
  AddShell(thicker, {1, 4, 2}, 12.5);
  NumberAndAverage(thicker);
  ExpectOwn(thicker.Shell4Elements[0], 1);
  ExpectAverage(thicker.Shell3Elements[0], 0, 15.5, 15.5 + Bottom);

  Model thinner = MakeFold(0, 12.5);
  AddShell(thinner, {1, 4, 2}, 10.0);
  NumberAndAverage(thinner);
  ExpectAverage(thinner.Shell4Elements[0], 1, 15.5, 15.5 + Bottom);
  ExpectOwn(thinner.Shell3Elements[0], 0);
}

// Two triangles on the right square: 1-4-2 with 20 and 22 at nodes 1 and 2, 4-5-2 with 32 at
// node 2.
TEST(AverageStresses, TrianglesAmongThemselves) {
  Model model = MakeFold(0);
  AddShell(model, {1, 4, 2});
  AddShell(model, {4, 5, 2});
  NumberAndAverage(model);
  const double third = 1.0 / 3.0;
  const double atNode2 = 12 + 22 + 32;
  ExpectAverage(model.Shell4Elements[0], 2, atNode2 * third, (atNode2 + 3 * Bottom) * third);
  ExpectAverage(model.Shell3Elements[0], 2, atNode2 * third, (atNode2 + 3 * Bottom) * third);
  ExpectAverage(model.Shell3Elements[1], 2, atNode2 * third, (atNode2 + 3 * Bottom) * third);
  ExpectAverage(model.Shell3Elements[0], 1, (21 + 30) / 2.0, (21 + 30) / 2.0 + Bottom);
  ExpectOwn(model.Shell3Elements[1], 1);
}

// A deck of two squares and a triangle with a web under its middle: the deck's elements average
// among themselves and the web keeps its own. Node 1: 11, 20 and, of the triangle 0-8-1, 42.
TEST(AverageStresses, WebUnderADeckStaysApart) {
  Model model = MakeFold(0);
  AddShell(model, {1, 4, 5, 2});
  AddNode(model, 0, 0, -1);
  AddNode(model, 0, 1, -1);
  AddShell(model, {1, 2, 7, 6});
  AddNode(model, 0, -1, 0);
  AddShell(model, {0, 8, 1});
  NumberAndAverage(model);
  const double top = (11 + 20 + 42) * (1.0 / 3.0);
  const double bottom = (11 + 20 + 42 + 3 * Bottom) * (1.0 / 3.0);
  ExpectAverage(model.Shell4Elements[0], 1, top, bottom);
  ExpectAverage(model.Shell4Elements[1], 0, top, bottom);
  ExpectAverage(model.Shell3Elements[0], 2, top, bottom);
  for (std::size_t k = 0; k < 4; ++k) ExpectOwn(model.Shell4Elements[2], k);
}

// Squares folded up and down by 8 degrees on one edge are 16 degrees apart: both average with the
// flat one, which averages with both, and not with each other. Node 1: 11, 20, 30.
TEST(AverageStresses, AveragingIsNotTransitive) {
  Model model = MakeFold(8);
  const Node a = model.Tables.Nodes[4], b = model.Tables.Nodes[5];
  AddNode(model, a.x, a.y, -a.z);
  AddNode(model, b.x, b.y, -b.z);
  AddShell(model, {1, 4, 5, 2});
  AddShell(model, {1, 6, 7, 2});
  NumberAndAverage(model);
  ExpectAverage(model.Shell4Elements[0], 1, (11 + 20 + 30) * (1.0 / 3.0),
                (1011 + 1020 + 1030) * (1.0 / 3.0));
  ExpectAverage(model.Shell4Elements[1], 0, (20 + 11) / 2.0, (1020 + 1011) / 2.0);
  ExpectAverage(model.Shell4Elements[2], 0, (30 + 11) / 2.0, (1030 + 1011) / 2.0);
}

// The right element has node 1 as its corners 0 and 2. It counts once, with corner 0. Its corner 2
// is never averaged and keeps its initial zeros.
TEST(AverageStresses, ElementThatRepeatsANodeCountsWithItsFirstCorner) {
  Model model = MakeFold(0);
  AddShell(model, {1, 4, 1, 2});
  NumberAndAverage(model);
  ExpectAverage(model.Shell4Elements[0], 1, 15.5, 15.5 + Bottom);
  ExpectAverage(model.Shell4Elements[1], 0, 15.5, 15.5 + Bottom);
  ExpectAverage(model.Shell4Elements[1], 2, 0.0, 0.0);
  ExpectAverage(model.Shell4Elements[1], 3, 17.5, 17.5 + Bottom);

  Model triangle = MakeFold(0);
  AddShell(triangle, {1, 4, 2});
  triangle.Tables.Shell3Nodes[1] = 1;
  NumberAndAverage(triangle);
  ExpectAverage(triangle.Shell4Elements[0], 1, 15.5, 15.5 + Bottom);
  ExpectAverage(triangle.Shell3Elements[0], 0, 15.5, 15.5 + Bottom);
  ExpectAverage(triangle.Shell3Elements[0], 1, 0.0, 0.0);
}

// Normals at a right angle count as opposite. With thicknesses above zero this cannot be seen: the
// difference of the offsets is sqrt(t_f^2 + t_e^2) / 2 >= t_e / 2 with either sign and always
// exceeds t_e / 10. Without thickness it is zero and the bound zero: faces swapped, 11 with 1020.
TEST(AverageStresses, PerpendicularNormalsCountAsOpposite) {
  Model model;
  for (const Node& node : MakeFold(0).Tables.Nodes) AddNode(model, node.x, node.y, node.z);
  model.Tables.Nodes[4] = {0, 0, 1};  // exactly, which the cosine of 90 degrees is not
  model.Tables.Nodes[5] = {0, 1, 1};
  AddShell(model, {0, 1, 2, 3}, 0.0);
  AddShell(model, {1, 4, 5, 2}, 0.0);
  NumberAndAverage(model);
  ExpectAverage(model.Shell4Elements[0], 1, (11 + 1020) / 2.0, (1011 + 20) / 2.0);
}

// The normal of the element without area is NaN, and every comparison with it is false: it is
// neither opposite nor too far apart.
TEST(AverageStresses, ElementWithoutAreaIsIncluded) {
  Model model = MakeFold(0);
  AddShell(model, {1, 2, 2, 1});
  NumberAndAverage(model);
  ExpectAverage(model.Shell4Elements[0], 1, 15.5, 15.5 + Bottom);
}

// Around node 4 of a grid of 2 x 2 squares lie three quadrilaterals and, in the fourth square, two
// triangles.
//   6---7---8     The element order is that of the tables; the corners at node 4 are corner 2
//   | 2 |3 /|     of quadrilateral 0, 3 of 1, 1 of 2, and 0 of both triangles (4-5-8 and 4-8-7,
//   3---4---5     numbered 3 and 4).
//   | 0 | 1 |
//   0---1---2
Model MakeGrid() {
  Model model;
  for (int y = 0; y < 3; ++y) {
    for (int x = 0; x < 3; ++x) AddNode(model, x, y, 0);
  }
  AddShell(model, {0, 1, 4, 3});
  AddShell(model, {1, 2, 5, 4});
  AddShell(model, {3, 4, 7, 6});
  AddShell(model, {4, 5, 8});
  AddShell(model, {4, 8, 7});
  return model;
}

// The upper faces' v of the five corners at node 4.
void SetNode4(Model& model, const std::array<double, 5>& v) {
  model.Shell4Elements[0].NodeStressTop[2] = Stress(v[0]);
  model.Shell4Elements[1].NodeStressTop[3] = Stress(v[1]);
  model.Shell4Elements[2].NodeStressTop[1] = Stress(v[2]);
  model.Shell3Elements[0].NodeStressTop[0] = Stress(v[3]);
  model.Shell3Elements[1].NodeStressTop[0] = Stress(v[4]);
}

// Large is 2^53: doubles from there on are even. 3 + Large is half way between Large + 2 and
// Large + 4 and becomes the latter, whose last bit is even, so (3 + Large) - Large = 4; but
// (3 - Large) + Large = 3 and (Large - Large) + 3 = 3.
constexpr double Large = 9007199254740992.0;

// The last quadrilateral's own 3 comes first, then the other two: 4. In table order, or with the
// others reversed, 3.
TEST(AverageStresses, OwnCornerComesFirstThenTheTableOrder) {
  Model model = MakeGrid();
  SetNode4(model, {Large, -Large, 3, 0, 0});
  AverageNodeStresses(model);
  EXPECT_EQ(model.Shell4Elements[2].AvgStressTop[1], Stress(4 * (1.0 / 5.0)));
  // Seen from quadrilateral 1: (-Large + Large) + 3. From a triangle: ((0 + 0 + Large) - Large)
  // + 3.
  EXPECT_EQ(model.Shell4Elements[1].AvgStressTop[3], Stress(3 * (1.0 / 5.0)));
  EXPECT_EQ(model.Shell3Elements[0].AvgStressTop[0], Stress(3 * (1.0 / 5.0)));
}

// A quadrilateral adds the other quadrilaterals first, a triangle the other triangles.
TEST(AverageStresses, OwnKindComesBeforeTheOther) {
  Model quads = MakeGrid();
  SetNode4(quads, {3, Large, 0, -Large, 0});
  AverageNodeStresses(quads);
  EXPECT_EQ(quads.Shell4Elements[0].AvgStressTop[2], Stress(4 * (1.0 / 5.0)));

  Model triangles = MakeGrid();
  SetNode4(triangles, {-Large, 0, 0, Large, 3});
  AverageNodeStresses(triangles);
  EXPECT_EQ(triangles.Shell3Elements[1].AvgStressTop[0], Stress(4 * (1.0 / 5.0)));
}

TEST(AverageStresses, OtherKindComesInTableOrder) {
  Model quads = MakeGrid();
  SetNode4(quads, {3, 0, 0, Large, -Large});
  AverageNodeStresses(quads);
  EXPECT_EQ(quads.Shell4Elements[0].AvgStressTop[2], Stress(4 * (1.0 / 5.0)));

  Model triangles = MakeGrid();
  SetNode4(triangles, {0, Large, -Large, 3, 0});
  AverageNodeStresses(triangles);
  EXPECT_EQ(triangles.Shell3Elements[0].AvgStressTop[0], Stress(4 * (1.0 / 5.0)));
}

// The sum is multiplied by 1.0 / 5, which is a little more than a fifth: of 3 that makes a
// difference in the last place.
TEST(AverageStresses, SumsAreMultipliedByTheReciprocal) {
  ASSERT_NE(3 * (1.0 / 5.0), 3.0 / 5.0);
  Model model = MakeGrid();
  SetNode4(model, {1, 1, 1, 0, 0});
  AverageNodeStresses(model);
  EXPECT_EQ(model.Shell4Elements[0].AvgStressTop[2], Stress(3 * (1.0 / 5.0)));
  EXPECT_EQ(model.Shell3Elements[0].AvgStressTop[0], Stress(3 * (1.0 / 5.0)));
}

// The recovered stresses are averaged, never earlier averages.
TEST(AverageStresses, AveragingAgainChangesNothing) {
  Model model = MakeGrid();
  NumberAndAverage(model);
  const Model before = model;
  AverageNodeStresses(model);
  for (std::size_t e = 0; e < 3; ++e) {
    EXPECT_EQ(model.Shell4Elements[e].AvgStressTop, before.Shell4Elements[e].AvgStressTop);
    EXPECT_EQ(model.Shell4Elements[e].NodeStressTop, before.Shell4Elements[e].NodeStressTop);
  }
}

// Node 4 of the grid: 12, 23, 31, 40, 50, their sum 156.
TEST(AverageStresses, OneCornerAloneCanBeAveraged) {
  Model model = MakeGrid();
  NumberAndAverage(model);
  for (Shell4Element& element : model.Shell4Elements) element.AvgStressTop = {};
  for (Shell3Element& element : model.Shell3Elements) element.AvgStressTop = {};
  NodeElements lists4, lists3;
  ListNodeElements(model.Tables.Shell4Nodes, NodesPerShell4, model.Tables.NPOIN, lists4);
  ListNodeElements(model.Tables.Shell3Nodes, NodesPerShell3, model.Tables.NPOIN, lists3);
  AverageShell4NodeStress(model, lists4, lists3, 1, 4);
  AverageShell3NodeStress(model, lists4, lists3, 1, 4);
  const StressVector average = Stress(156 * (1.0 / 5.0));
  const StressVector none{};
  EXPECT_EQ(model.Shell4Elements[0].AvgStressTop[2], none);
  EXPECT_EQ(model.Shell4Elements[1].AvgStressTop,
            (std::array<StressVector, 4>{none, none, none, average}));
  EXPECT_EQ(model.Shell3Elements[0].AvgStressTop[0], none);
  EXPECT_EQ(model.Shell3Elements[1].AvgStressTop,
            (std::array<StressVector, 3>{average, none, none}));
}

// ---- Equal elements share a sum -----------------------------------------------------------------

// The faces of all four corners.
void SetFaces(Shell4Element& element, double top, double bottom) {
  element.NodeStressTop.fill(Stress(top));
  element.NodeStressBottom.fill(Stress(bottom));
}

// Averages corner by corner, each with a sum of its own.
void AverageEachCorner(Model& model) {
  NodeElements lists4, lists3;
  ListNodeElements(model.Tables.Shell4Nodes, NodesPerShell4, model.Tables.NPOIN, lists4);
  ListNodeElements(model.Tables.Shell3Nodes, NodesPerShell3, model.Tables.NPOIN, lists3);
  for (std::size_t p = 0; p < model.Tables.Shell4Nodes.size(); ++p) {
    AverageShell4NodeStress(model, lists4, lists3, static_cast<std::int32_t>(p / 4),
                            model.Tables.Shell4Nodes[p]);
  }
}

// Ten elements in one place. Elements 2 and 8 equal the one before them. From the one before, 3
// differs in the upper face alone, 4 in the lower, 7 in thickness and 9 in its normal. 5 equals 0,
// but others lie between them. Small numbers beside 2^53 make the order of each sum visible.
TEST(AverageStresses, OnlyEqualElementsInSuccessionShareASum) {
  Model model;
  for (const auto& [x, y] : {std::pair{0, 0}, {1, 0}, {1, 1}, {0, 1}}) AddNode(model, x, y, 0);
  for (const double TK : {10.0, 10.0, 10.0, 10.0, 10.0, 10.0, 10.0, 12.1, 12.1}) {
    AddShell(model, {0, 1, 2, 3}, TK);
  }
  AddShell(model, {0, 3, 2, 1}, 12.1);
  const std::array<std::array<double, 2>, 10> faces{{{5, Large},
                                                     {-Large, -3},
                                                     {-Large, -3},
                                                     {1, -3},
                                                     {1, 5},
                                                     {5, Large},
                                                     {3, Large},
                                                     {3, Large},
                                                     {3, Large},
                                                     {3, Large}}};
  for (std::size_t e = 0; e < faces.size(); ++e) {
    SetFaces(model.Shell4Elements[e], faces[e][0], faces[e][1]);
  }
  Model expected = model;
  AverageEachCorner(expected);
  AverageNodeStresses(model);
  for (std::size_t e = 0; e < faces.size(); ++e) {
    const Shell4Element& element = model.Shell4Elements[e];
    EXPECT_EQ(element.AvgStressTop, expected.Shell4Elements[e].AvgStressTop) << e;
    EXPECT_EQ(element.AvgStressBottom, expected.Shell4Elements[e].AvgStressBottom) << e;
    // The sum of the element before would be wrong here, and that of 0 would be wrong for 5.
    if (e != 3 && e != 4 && e != 7 && e != 9) continue;
    const Shell4Element& before = expected.Shell4Elements[e - 1];
    EXPECT_TRUE(element.AvgStressTop != before.AvgStressTop ||
                element.AvgStressBottom != before.AvgStressBottom)
        << e;
  }
  EXPECT_NE(model.Shell4Elements[5].AvgStressTop, model.Shell4Elements[0].AvgStressTop);
}

// A model file that states a count but has no rows: all elements lie at node 0 and are equal. With
// a sum for each corner this would take hours.
TEST(AverageStresses, ElementsWithoutRowsShareOneSum) {
  constexpr std::size_t Count = 100000;
  Model model;
  AddNode(model, 0, 0, 0);
  model.Shell4Elements.resize(Count);
  model.Tables.Shell4Nodes.assign(Count * NodesPerShell4, 0);
  model.Shell3Elements.resize(Count);
  model.Tables.Shell3Nodes.assign(Count * NodesPerShell3, 0);
  AverageNodeStresses(model);
  EXPECT_EQ(model.Shell4Elements.back().AvgStressTop[0], StressVector{});
}

TEST(AverageStresses, WithoutShellsNothingHappens) {
  Model model;
  AverageNodeStresses(model);
  AddNode(model, 0, 0, 0);
  AverageNodeStresses(model);
  EXPECT_TRUE(model.Shell4Elements.empty());
}

// ---- The rule over all pairs of elements --------------------------------------------------------

// How often each case of the rule occurred, so that a test can see that every case did.
struct Tally {
  int included = 0, excluded = 0, flipped = 0;
};

struct Sum {
  StressVector top{}, bottom{};
  double count = 1.0;
};

// Adds to the sum of an element with normal ne and thickness te all corners at `node` of the table
// but those of element `skipped`.
template <std::int32_t Nodes>
void AddTable(const std::vector<ShellElement<Nodes>>& elements,
              const std::vector<std::int32_t>& connectivity, std::int32_t node, std::size_t skipped,
              const Vector3& ne, double te, Sum& sum, Tally& tally) {
  for (std::size_t f = 0; f < elements.size(); ++f) {
    const std::int32_t* row = &connectivity[f * Nodes];
    const auto k = static_cast<std::size_t>(std::find(row, row + Nodes, node) - row);
    if (f == skipped || k == Nodes) continue;
    const ElementFrame& frame = elements[f].Frame;
    Vector3 nf{frame[2], frame[5], frame[8]}, w{};
    const bool flipped = ne[0] * nf[0] + ne[1] * nf[1] + ne[2] * nf[2] <= 0.0;
    for (std::size_t i = 0; i < 3; ++i) {
      if (flipped) nf[i] = -nf[i];
      w[i] = elements[f].TK * 0.5 * nf[i] - te * 0.5 * ne[i];
    }
    if (std::sqrt(w[0] * w[0] + w[1] * w[1] + w[2] * w[2]) > te / 10.0) {
      ++tally.excluded;
      continue;
    }
    ++(flipped ? tally.flipped : tally.included);
    for (std::size_t i = 0; i < 6; ++i) {
      const double top = elements[f].NodeStressTop[k][i];
      const double bottom = elements[f].NodeStressBottom[k][i];
      sum.top[i] += flipped ? bottom : top;
      sum.bottom[i] += flipped ? top : bottom;
    }
    sum.count += 1.0;
  }
}

// Compares all averages of one kind.
template <std::int32_t Nodes, std::int32_t OtherNodes>
void CompareAll(const std::vector<ShellElement<Nodes>>& own,
                const std::vector<std::int32_t>& ownNodes,
                const std::vector<ShellElement<OtherNodes>>& other,
                const std::vector<std::int32_t>& otherNodes, Tally& tally) {
  for (std::size_t e = 0; e < own.size(); ++e) {
    const Vector3 ne{own[e].Frame[2], own[e].Frame[5], own[e].Frame[8]};
    for (std::size_t k = 0; k < Nodes; ++k) {
      const std::int32_t node = ownNodes[e * Nodes + k];
      Sum sum{own[e].NodeStressTop[k], own[e].NodeStressBottom[k]};
      AddTable(own, ownNodes, node, e, ne, own[e].TK, sum, tally);
      AddTable(other, otherNodes, node, other.size(), ne, own[e].TK, sum, tally);
      for (std::size_t i = 0; i < 6; ++i) {
        ASSERT_EQ(own[e].AvgStressTop[k][i], sum.top[i] * (1.0 / sum.count)) << e << ' ' << k;
        ASSERT_EQ(own[e].AvgStressBottom[k][i], sum.bottom[i] * (1.0 / sum.count)) << e << ' ' << k;
      }
    }
  }
}

using Generator = std::mt19937;

double Uniform(Generator& random, double low, double high) {
  return std::uniform_real_distribution<double>(low, high)(random);
}

int Pick(Generator& random, int count) {
  return std::uniform_int_distribution<int>(0, count - 1)(random);
}

// Starts an outline at any node and reverses every third one.
template <std::size_t N>
void Turn(Generator& random, std::int32_t (&nodes)[N]) {
  std::rotate(nodes, nodes + Pick(random, N), nodes + N);
  if (Pick(random, 3) == 0) std::reverse(nodes, nodes + N);
}

// One square of a random mesh, from its four corner nodes.
void AddRandomSquare(Generator& random, const std::array<std::int32_t, 4>& n, Model& model) {
  constexpr std::array<double, 5> thicknesses{10.0, 10.0, 11.0, 12.0, 12.5};
  const auto thickness = [&] { return thicknesses[static_cast<std::size_t>(Pick(random, 5))]; };
  if (Pick(random, 2) == 0) {
    std::int32_t nodes[] = {n[0], n[1], n[2], n[3]};
    Turn(random, nodes);
    AddShell(model, nodes, thickness());
  } else {
    std::int32_t first[] = {n[0], n[1], n[2]}, second[] = {n[0], n[2], n[3]};
    Turn(random, first);
    Turn(random, second);
    AddShell(model, first, thickness());
    AddShell(model, second, thickness());
  }
}

template <typename Element>
void RandomiseStresses(Generator& random, std::vector<Element>& elements) {
  const auto fill = [&](auto& corners) {
    for (StressVector& corner : corners) {
      for (double& value : corner) value = Uniform(random, -300.0, 300.0);
    }
  };
  for (Element& element : elements) {
    fill(element.NodeStressTop);
    fill(element.NodeStressBottom);
  }
}

// 11 x 12 squares of side 1, about 200 elements, with heights that make folds of up to 15 degrees
// or so. The squares enter the tables in random order.
Model MakeRandomMesh(Generator& random) {
  constexpr std::int32_t columns = 11, rows = 12;
  Model model;
  for (std::int32_t y = 0; y <= rows; ++y) {
    for (std::int32_t x = 0; x <= columns; ++x) AddNode(model, x, y, Uniform(random, 0.0, 0.15));
  }
  std::vector<std::int32_t> squares;  // the first corner of each
  for (std::int32_t node = 0; node < (columns + 1) * rows; ++node) {
    if (node % (columns + 1) < columns) squares.push_back(node);
  }
  std::shuffle(squares.begin(), squares.end(), random);
  for (const std::int32_t n : squares) {
    AddRandomSquare(random, {n, n + 1, n + columns + 2, n + columns + 1}, model);
  }
  RandomiseStresses(random, model.Shell4Elements);
  RandomiseStresses(random, model.Shell3Elements);
  return model;
}

TEST(AverageStresses, RandomMeshesAgreeWithTheRuleOverAllPairs) {
  Tally tally;
  for (unsigned seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE(seed);
    Generator random(seed);
    Model model = MakeRandomMesh(random);
    AverageNodeStresses(model);
    CompareAll(model.Shell4Elements, model.Tables.Shell4Nodes, model.Shell3Elements,
               model.Tables.Shell3Nodes, tally);
    CompareAll(model.Shell3Elements, model.Tables.Shell3Nodes, model.Shell4Elements,
               model.Tables.Shell4Nodes, tally);
  }
  // Some 48,000 pairs. The comparison covers a case only if that case occurs often.
  EXPECT_GT(tally.included, 5000);
  EXPECT_GT(tally.flipped, 5000);
  EXPECT_GT(tally.excluded, 5000);
}

template <typename Element>
void ExpectSameAverages(const std::vector<Element>& elements,
                        const std::vector<Element>& expected) {
  ASSERT_EQ(elements.size(), expected.size());
  for (std::size_t e = 0; e < elements.size(); ++e) {
    EXPECT_TRUE(HaveEqualBits(&elements[e].AvgStressTop, &expected[e].AvgStressTop,
                              sizeof elements[e].AvgStressTop));
    EXPECT_TRUE(HaveEqualBits(&elements[e].AvgStressBottom, &expected[e].AvgStressBottom,
                              sizeof elements[e].AvgStressBottom));
  }
}

// Some elements repeat a node, or are equal to others: their averages are copied.
TEST(AverageStresses, ThreadsChangeNoBit) {
  for (unsigned seed = 1; seed <= 5; ++seed) {
    Generator random(seed);
    Model model = MakeRandomMesh(random);
    for (std::size_t p = 0; p < model.Tables.Shell4Nodes.size(); p += 28) {
      model.Tables.Shell4Nodes[p + 2] = model.Tables.Shell4Nodes[p];
    }
    for (std::size_t e = 1; e < model.Shell3Elements.size(); e += 5) {
      model.Shell3Elements[e] = model.Shell3Elements[e - 1];
    }
    Model expected = model;
    AverageNodeStresses(expected);
    for (const int threads : {2, 3, 8}) {
      Model averaged = model;
      AverageNodeStresses(averaged, threads);
      ExpectSameAverages(averaged.Shell4Elements, expected.Shell4Elements);
      ExpectSameAverages(averaged.Shell3Elements, expected.Shell3Elements);
    }
  }
}

// ---- The elements at each node ------------------------------------------------------------------

// Nodes 0 to 4; node 3 belongs to nothing.
TEST(NodeElementLists, FollowTheTableOrder) {
  NodeElements lists;
  ListNodeElements({4, 0, 1, 2, 1, 0, 1, 4, 2}, 3, 5, lists);
  EXPECT_EQ(lists.first, (std::vector<std::int64_t>{0, 2, 5, 7, 7, 9}));
  EXPECT_EQ(lists.elements, (std::vector<std::int32_t>{0, 1, 0, 1, 2, 1, 2, 0, 2}));
}

TEST(NodeElementLists, ElementThatRepeatsANodeIsListedOnceThere) {
  NodeElements lists;
  ListNodeElements({1, 0, 1, 1, 0, 2, 2, 1}, 4, 3, lists);
  EXPECT_EQ(lists.first, (std::vector<std::int64_t>{0, 2, 4, 5}));
  EXPECT_EQ(lists.elements, (std::vector<std::int32_t>{0, 1, 0, 1, 1}));
}

TEST(NodeElementLists, WithoutElementsEveryListIsEmpty) {
  NodeElements lists;
  lists.elements = {7};  // left over from another use
  ListNodeElements({}, 4, 2, lists);
  EXPECT_EQ(lists.first, (std::vector<std::int64_t>{0, 0, 0}));
  EXPECT_TRUE(lists.elements.empty());
}

TEST(NodeElementLists, WithoutNodes) {
  NodeElements lists;
  ListNodeElements({}, 3, 0, lists);
  EXPECT_EQ(lists.first, std::vector<std::int64_t>{0});
  EXPECT_TRUE(lists.elements.empty());
}

}  // namespace
}  // namespace korvex
