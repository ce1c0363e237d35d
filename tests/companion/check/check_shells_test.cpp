// K115 .. K121: shells of bad shape, and elements that stand twice, planted and found.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "check/shell_shape.h"
#include "support/planted_mistakes.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

TEST(CheckShells, NamesCrossingEdges) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    if (model.shells4.empty()) return false;
    int row = 0;
    auto& nodes = AnyRow(model.shells4, dice, row).nodes;
    const auto k = static_cast<std::size_t>(RollInteger(dice, 0, 3));
    std::swap(nodes[k], nodes[(k + 1) % 4]);
    expected = {"K115", "NELEM_S_4ND", row};
    return true;
  });
}

// Moves a free corner along the diagonal, to `share` of the way from the other diagonal to the
// opposite node: 0 is a corner of 180 degrees, above it the corner is re-entrant.
bool MoveCorner(double share, ModelText& model, Dice& dice, Expected& expected) {
  const FreeCorner corner = FindFreeCorner(model, dice);
  if (corner.row < 0) return false;
  auto& nodes = model.shells4[static_cast<std::size_t>(corner.row)].nodes;
  const auto node = [&](std::size_t k) -> Point& {
    return PointOf(model, nodes[(corner.corner + k) % 4]);
  };
  const Point middle = Between(node(1), node(3), 0.5);
  node(0) = Between(middle, node(2), share);
  expected = {expected.code, "NELEM_S_4ND", corner.row, nodes[corner.corner]};
  // The element may have the corner as any of its nodes.
  std::rotate(nodes.begin(), nodes.begin() + RollInteger(dice, 0, 3), nodes.end());
  return true;
}

TEST(CheckShells, NamesAReEntrantCorner) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    expected.code = "K116";
    return MoveCorner(Roll(dice, 0.02, 0.6), model, dice, expected);
  });
}

TEST(CheckShells, NamesACornerOf180Degrees) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    expected.code = "K116";
    return MoveCorner(0.0, model, dice, expected);
  });
}

TEST(CheckShells, NamesABluntCorner) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    expected.code = "K118";
    return MoveCorner(-0.02, model, dice, expected);
  });
}

TEST(CheckShells, NamesAWarpedQuadrilateral) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    const FreeCorner corner = FindFreeCorner(model, dice);
    if (corner.row < 0) return false;
    const auto& shell = model.shells4[static_cast<std::size_t>(corner.row)];
    const auto node = [&](std::size_t k) -> Point& {
      return PointOf(model, shell.nodes[(corner.corner + k) % 4]);
    };
    const Point a = node(1), b = node(2), c = node(3);
    const korvex::Vector3 ab{b[0] - a[0], b[1] - a[1], b[2] - a[2]};
    const korvex::Vector3 ac{c[0] - a[0], c[1] - a[1], c[2] - a[2]};
    const korvex::Vector3 normal = korvex::Cross(ab, ac);  // its length is that of the area
    const double size = std::sqrt(korvex::Length(normal));
    if (model.thicknesses[static_cast<std::size_t>(shell.thickness)] > 0.15 * size) return false;
    for (std::size_t i = 0; i < 3; ++i) node(0)[i] += 0.4 * normal[i] / size;
    expected = {"K120", "NELEM_S_4ND", corner.row};
    return true;
  });
}

// The vector area of a quadrilateral, from its diagonals.
korvex::Vector3 AreaOf(ModelText& model, const std::array<int, 4>& nodes) {
  const auto diagonal = [&](std::size_t k) {
    const Point a = PointOf(model, nodes[k]), b = PointOf(model, nodes[k + 2]);
    return korvex::Vector3{b[0] - a[0], b[1] - a[1], b[2] - a[2]};
  };
  korvex::Vector3 area = korvex::Cross(diagonal(0), diagonal(1));
  for (double& x : area) x *= 0.5;
  return area;
}

// A node that is moved out of the plane spoils all its shells: one finding, that names the node.
TEST(CheckShells, NamesAMisplacedNodeOnce) {
  const Plant moveOut = [](ModelText& model, Dice& dice, Expected& expected) {
    const int node = RollRow(model.nodes.size(), dice);
    std::vector<int> rows;
    for (std::size_t row = 0; row < model.shells4.size(); ++row) {
      const auto& nodes = model.shells4[row].nodes;
      if (std::count(nodes.begin(), nodes.end(), node) > 0) rows.push_back(static_cast<int>(row));
    }
    for (const auto& shell : model.shells3) {
      if (std::count(shell.nodes.begin(), shell.nodes.end(), node) > 0) return false;
    }
    if (rows.size() < 4) return false;
    korvex::Vector3 normal{};
    double largest = 0.0;
    for (const int row : rows) {
      const auto& shell = model.shells4[static_cast<std::size_t>(row)];
      const korvex::Vector3 area = AreaOf(model, shell.nodes);
      // Neither a fold, where the node moves within the plane of a shell, nor thick plates.
      const korvex::Vector3 first =
          AreaOf(model, model.shells4[static_cast<std::size_t>(rows[0])].nodes);
      const double sine =
          korvex::Length(korvex::Cross(korvex::Normalise(area), korvex::Normalise(first)));
      const double size = std::sqrt(korvex::Length(area));
      if (sine > 0.2 || model.thicknesses[static_cast<std::size_t>(shell.thickness)] > 0.3 * size) {
        return false;
      }
      largest = std::max(largest, size);
      normal = korvex::Normalise(area);
    }
    for (std::size_t i = 0; i < 3; ++i) PointOf(model, node)[i] += 0.7 * largest * normal[i];
    expected = {"K120", "NELEM_S_4ND", rows.back(), node};
    return true;
  };
  ExpectPlanted(moveOut);
}

// Adds a strip of shells of its own, clamped at a node. Returns its first node.
int AddStrip(double length, double width, ModelText& model) {
  const auto first = static_cast<int>(model.nodes.size());
  const Point at = model.nodes.front();
  const double y = at[1] + 137.31 * length;  // where no other node is
  for (const auto& corner : {std::array<double, 2>{0, 0}, {1, 0}, {1, 1}, {0, 1}}) {
    model.nodes.push_back({at[0] + length * corner[0], y + width * corner[1], at[2]});
  }
  model.restraints.push_back({first, {1, 1, 1, 1, 1, 1}});
  return first;
}

TEST(CheckShells, NamesALongShell) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    if (model.shells4.empty()) return false;
    // Not longer than other elements: a node beyond them would be far away.
    const double length = 0.02 * korvex::Length({model.nodes[0][0] - model.nodes[1][0],
                                                 model.nodes[0][1] - model.nodes[1][1],
                                                 model.nodes[0][2] - model.nodes[1][2]});
    const int n = AddStrip(length, length / Roll(dice, 110.0, 1000.0), model);
    if (RollYes(dice)) {
      expected = {"K119", "NELEM_S_4ND", static_cast<int>(model.shells4.size()), n};
      model.shells4.push_back({{n, n + 1, n + 2, n + 3}, 0, 0});
    } else {
      expected = {"K119", "NELEM_S_3ND", static_cast<int>(model.shells3.size()), n};
      model.shells3.push_back({{n, n + 1, n + 2}, 0, 0});
      model.nodes.pop_back();
    }
    return true;
  });
}

TEST(CheckShells, NamesAShellWithoutArea) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    if (model.shells4.empty()) return false;
    int row = 0;
    auto& nodes = AnyRow(model.shells4, dice, row).nodes;
    // A triangle of two nodes and a third one on the line between them.
    const auto middle = static_cast<int>(model.nodes.size());
    model.nodes.push_back(
        Between(PointOf(model, nodes[0]), PointOf(model, nodes[2]), Roll(dice, 0.2, 0.4)));
    expected = {"K117", "NELEM_S_3ND", static_cast<int>(model.shells3.size()), middle};
    model.shells3.push_back({{nodes[0], middle, nodes[2]}, 0, 0});
    return true;
  });
}

TEST(CheckDoubledElements, NamesAShellThatStandsTwice) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    int row = 0;
    if (!model.shells4.empty() && RollYes(dice)) {
      auto shell = AnyRow(model.shells4, dice, row);
      std::rotate(shell.nodes.begin(), shell.nodes.begin() + RollInteger(dice, 0, 3),
                  shell.nodes.end());
      expected = {"K121", "NELEM_S_4ND", static_cast<int>(model.shells4.size())};
      model.shells4.push_back(shell);
      return true;
    }
    if (model.shells3.empty()) return false;
    auto shell = AnyRow(model.shells3, dice, row);
    std::reverse(shell.nodes.begin(), shell.nodes.end());
    expected = {"K121", "NELEM_S_3ND", static_cast<int>(model.shells3.size())};
    model.shells3.push_back(shell);
    return true;
  });
}

TEST(CheckDoubledElements, NamesABeamThatStandsTwice) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    if (model.beams.empty()) return false;
    int row = 0;
    ModelText::Beam beam = AnyRow(model.beams, dice, row);
    if (RollYes(dice)) {  // the other way round: an L section's flange changes sides
      std::swap(beam.node1, beam.node2);
      if (beam.BeamSecType == korvex::BeamSecTypeL) beam.BeamSecMirrored = 1 - beam.BeamSecMirrored;
    }
    expected = {"K121", "NELEM_B", static_cast<int>(model.beams.size())};
    model.beams.push_back(beam);
    return true;
  });
}

// Two different stiffeners on the same nodes may be meant.
TEST(CheckDoubledElements, AcceptsDifferentBeamsOnTheSameNodes) {
  int count = 0;
  for (std::uint32_t seed = 0; seed < 100; ++seed) {
    ModelText model = MakeGoodModel(seed);
    if (model.beams.empty()) continue;
    Dice dice = MakeDice(seed);
    int row = 0;
    ModelText::Beam beam = AnyRow(model.beams, dice, row);
    switch (RollInteger(dice, 0, 3)) {
      case 0:
        beam.BeamSecIndex = 1 - beam.BeamSecIndex;
        break;
      case 1:
        beam.BeamSecOz += 0.01;
        break;
      case 2:
        for (double& v : beam.orientation) v = -v;
        break;
      default:
        if (beam.BeamSecType != korvex::BeamSecTypeL) continue;
        beam.BeamSecMirrored = 1 - beam.BeamSecMirrored;
    }
    model.beams.push_back(beam);
    ExpectNone(Check(model));
    ++count;
  }
  EXPECT_GT(count, 10);
}

using Quad = std::array<korvex::Vector3, 4>;
using Triangle = std::array<korvex::Vector3, 3>;

ShapeFault FaultOf(const Quad& quad) { return JudgeQuad(quad, 0.0).fault; }

// The bounds, on both sides of each, in mm and m and far from the origin.
TEST(JudgeQuad, HasItsBounds) {
  for (const double s : {1e-3, 1.0, 1e3}) {
    for (const double o : {0.0, 1e4 * s}) {
      const auto quad = [&](double x2, double y2, double x3, double y3, double z3, double x4,
                            double y4) {
        return Quad{{{o, o, o},
                     {o + s * x2, o + s * y2, o},
                     {o + s * x3, o + s * y3, o + s * z3},
                     {o + s * x4, o + s * y4, o}}};
      };
      EXPECT_EQ(FaultOf(quad(1, 0, 1, 1, 0, 0, 1)), ShapeFault::None);
      EXPECT_EQ(FaultOf(quad(1, 0, 0, 1, 0, 1, 1)), ShapeFault::Crossing);
      EXPECT_EQ(FaultOf(quad(1, 0, 0.4, 0.4, 0, 0, 1)), ShapeFault::Concave);
      EXPECT_EQ(FaultOf(quad(1, 0, 0.5, 0.5, 0, 0, 1)), ShapeFault::InLine);
      EXPECT_EQ(FaultOf(quad(1, 0, 2, 0, 0, 1, 1)), ShapeFault::InLine);   // at node 2
      EXPECT_EQ(FaultOf(quad(1, 0, 1, 1, 0, -1, 0)), ShapeFault::InLine);  // at node 1
      EXPECT_EQ(FaultOf(quad(1, 0, 2, 0, 0, 3, 0)), ShapeFault::NoArea);
      EXPECT_EQ(FaultOf(quad(0, 0, 1, 1, 0, 0, 1)), ShapeFault::SamePlace);
      EXPECT_EQ(FaultOf(quad(1, 0, 1, 1, 0.14, 0, 1)), ShapeFault::None);
      EXPECT_EQ(FaultOf(quad(1, 0, 1, 1, 0.16, 0, 1)), ShapeFault::Warped);
      EXPECT_EQ(FaultOf(quad(99, 0, 99, 1, 0, 0, 1)), ShapeFault::None);
      EXPECT_EQ(FaultOf(quad(101, 0, 101, 1, 0, 0, 1)), ShapeFault::Elongated);
      // Rhombs: cos and sin of 11 and 9 degrees.
      EXPECT_EQ(FaultOf(quad(1, 0, 1.98163, 0.190809, 0, 0.98163, 0.190809)), ShapeFault::None);
      EXPECT_EQ(FaultOf(quad(1, 0, 1.98769, 0.156434, 0, 0.98769, 0.156434)), ShapeFault::Skewed);
    }
  }
}

// The corner that is re-entrant is named, also node 1, from which the solver's plane is taken.
TEST(JudgeQuad, NamesTheReEntrantCorner) {
  const Quad quad{{{0, 0, 0}, {1, 0, 0}, {0.3, 0.3, 0}, {0, 1, 0}}};
  for (std::size_t shift = 0; shift < 4; ++shift) {
    Quad turned = quad;
    std::rotate(turned.begin(), turned.begin() + static_cast<std::ptrdiff_t>(shift), turned.end());
    const ShellShape shape = JudgeQuad(turned, 0.0);
    EXPECT_EQ(shape.fault, ShapeFault::Concave);
    EXPECT_EQ(shape.corner, (6 - shift) % 4);  // node 3 of the first one
    Quad reversed = turned;
    std::reverse(reversed.begin(), reversed.end());
    EXPECT_EQ(JudgeQuad(reversed, 0.0).fault, ShapeFault::Concave);
  }
}

// What stands off within the plate's own thickness says nothing.
TEST(JudgeQuad, ComparesWarpingWithTheThickness) {
  const Quad quad{{{0, 0, 0}, {1, 0, 0}, {1, 1, 0.3}, {0, 1, 0}}};
  EXPECT_EQ(JudgeQuad(quad, 0.29).fault, ShapeFault::Warped);
  EXPECT_EQ(JudgeQuad(quad, 0.31).fault, ShapeFault::None);
  const ShellShape shape = JudgeQuad(quad, 0.0);
  EXPECT_NEAR(shape.measure, 0.3, 1e-12);  // the distance from z = 0
  EXPECT_NEAR(shape.size, 1.0, 1e-12);
}

TEST(JudgeTriangle, HasItsBounds) {
  for (const double s : {1e-3, 1.0, 1e3}) {
    const auto fault = [&](double x2, double y2, double x3, double y3) {
      return JudgeTriangle({{{0, 0, 0}, {s * x2, s * y2, 0}, {s * x3, s * y3, 0}}}).fault;
    };
    EXPECT_EQ(fault(1, 0, 0, 1), ShapeFault::None);
    EXPECT_EQ(fault(1, 0, 2, 0), ShapeFault::NoArea);
    EXPECT_EQ(fault(1, 0, 0.5, 1e-7), ShapeFault::NoArea);
    EXPECT_EQ(fault(0, 0, 0, 1), ShapeFault::SamePlace);
    // A needle, and a flat triangle whose third node is at 2 atan(0.5 / 0.03) = 173.1 degrees.
    EXPECT_EQ(fault(99, 0, 99, 1), ShapeFault::None);
    EXPECT_EQ(fault(101, 0, 101, 1), ShapeFault::Elongated);
    EXPECT_EQ(fault(1, 0, 0.5, 0.03), ShapeFault::Skewed);
    EXPECT_EQ(fault(1, 0, 0.5, 0.05), ShapeFault::None);  // 168.6 degrees
  }
}

}  // namespace
}  // namespace kvx::test
