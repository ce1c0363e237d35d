// K601 .. K606: values out of line and units that do not fit, planted and found.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "check/find_outlier.h"
#include "support/planted_mistakes.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

// Values that a table of plates has, all in use; three or more others within a factor of 1.9.
std::vector<double> Plates(double unit) {
  return {8.0 * unit, 10.0 * unit, 12.0 * unit, 15.0 * unit};
}

TEST(FindOutlier, FindsOneOfEachFactor) {
  for (const double factor : {10.0, 25.4, 100.0, 1000.0}) {
    for (const double unit : {1.0, 1e-3}) {
      for (std::size_t k = 0; k < 5; ++k) {
        for (const bool isTooLarge : {true, false}) {
          std::vector<double> values = Plates(unit);
          const double value = isTooLarge ? 10.0 * unit * factor : 10.0 * unit / factor;
          values.insert(values.begin() + static_cast<std::ptrdiff_t>(k), value);
          const Outlier outlier = FindOutlier(values);
          EXPECT_EQ(outlier.factor, factor);
          EXPECT_EQ(outlier.index, k);
          EXPECT_EQ(outlier.isTooLarge, isTooLarge);
        }
      }
    }
  }
}

TEST(FindOutlier, AcceptsTablesOfPlates) {
  EXPECT_EQ(FindOutlier({5.0, 50.0}).factor, 0.0);  // too few to say
  EXPECT_EQ(FindOutlier({5.0, 8.0, 50.0}).factor, 0.0);
  EXPECT_EQ(FindOutlier({5.0, 50.0, 8.0, 80.0}).factor, 0.0);         // nobody is alone
  EXPECT_EQ(FindOutlier({8.0, 10.0, 12.0, 90.0}).factor, 0.0);        // not ten times another
  EXPECT_EQ(FindOutlier({3.0, 6.0, 10.0, 15.0, 100.0}).factor, 0.0);  // too wide a table
  EXPECT_EQ(FindOutlier({5.0, 5.0, 5.0, 5.0}).factor, 0.0);
  EXPECT_EQ(FindOutlier({}).factor, 0.0);
}

// Gives the model five thicknesses, each of them used, of which row 2 is a factor out of line.
bool PlantThickness(double factor, double unit, ModelText& model, Expected& expected) {
  if (model.shells4.size() < 10) return false;
  model.thicknesses = Plates(unit);
  model.thicknesses.insert(model.thicknesses.begin() + 2, 10.0 * unit * factor);
  for (std::size_t k = 0; k < model.shells4.size(); ++k) {
    model.shells4[k].thickness = static_cast<int>(k % 5);
  }
  for (auto& shell : model.shells3) shell.thickness = 0;
  expected = {"K601", "NTK", 2};
  return true;
}

double ExtentOf(const ModelText& model) {
  const auto [low, high] = std::minmax_element(model.nodes.begin(), model.nodes.end());
  return std::hypot((*high)[0] - (*low)[0], (*high)[1] - (*low)[1], (*high)[2] - (*low)[2]);
}

TEST(CheckOutliers, NamesAThicknessOutOfLine) {
  for (const double factor : {25.4, 1.0 / 25.4, 100.0, 0.01, 1000.0, 0.001}) {
    SCOPED_TRACE(factor);
    ExpectPlanted([&](ModelText& model, Dice&, Expected& expected) {
      return PlantThickness(factor, 1e-4 * ExtentOf(model), model, expected);
    });
  }
}

// A factor of 10 is a usual step, unless the plate is also thick or thin beside its elements.
TEST(CheckOutliers, ComparesAFactorOfTenWithTheElements) {
  ModelText model;
  Expected expected;
  model.materials = {{206000.0, 0.3, 0.0}};
  for (int k = 0; k <= 20; ++k) {
    model.nodes.push_back({100.0 * k, 0, 0});
    model.nodes.push_back({100.0 * k, 100.0, 0});
  }
  for (int k = 0; k < 20; ++k) {
    model.shells4.push_back({{2 * k, 2 * k + 2, 2 * k + 3, 2 * k + 1}, 0, 0});
  }
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  model.forces = {{41, korvex::test::SingleLoad(2, 10.0)}};
  const auto names = [&](double factor, double unit) {
    PlantThickness(factor, unit, model, expected);
    return Check(model).findings.counts.count("K601") > 0;
  };
  EXPECT_TRUE(names(10.0, 1.0));   // 100 mm thick, elements of 100 mm
  EXPECT_FALSE(names(10.0, 0.4));  // 40 mm thick
  EXPECT_TRUE(names(0.1, 0.9));    // 0.9 mm
  EXPECT_FALSE(names(0.1, 2.0));   // 2 mm
}

// One thickness alone can still be compared with its elements: m where mm are meant.
TEST(CheckOutliers, NamesAThicknessBeyondItsElements) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    if (model.shells4.empty() || model.thicknesses.size() > 1) return false;
    // Elements have between 1/2 and 1/200 of the extent.
    model.thicknesses[0] = ExtentOf(model) * (RollYes(dice) ? Roll(dice, 10.0, 100.0) : 1e-7);
    expected = {"K601", "NTK", 0};
    return true;
  });
}

// All four sections of the two tables get sizes near each other; one size of one row is wrong.
TEST(CheckOutliers, NamesASectionOutOfLine) {
  for (const double factor : {100.0, 0.01, 1000.0, 0.001}) {
    SCOPED_TRACE(factor);
    ExpectPlanted([&](ModelText& model, Dice& dice, Expected& expected) {
      if (model.beams.size() < 8) return false;
      const double unit = 1e-3 * ExtentOf(model);
      model.tSections = {{10 * unit, 0.8 * unit, 6 * unit, unit},
                         {12 * unit, 0.9 * unit, 7 * unit, 1.1 * unit},
                         {15 * unit, unit, 8 * unit, 1.2 * unit},
                         {18 * unit, 1.1 * unit, 9 * unit, 1.4 * unit}};
      for (std::size_t k = 0; k < model.beams.size(); ++k) {
        model.beams[k].BeamSecType = korvex::BeamSecTypeT;
        model.beams[k].BeamSecIndex = static_cast<int>(k % 4);
      }
      int row = 0;
      auto& section = AnyRow(model.tSections, dice, row);
      // Not a web thicker than its flange is wide: that is named as such.
      const auto k = static_cast<std::size_t>(factor > 1.0 ? 2 * RollInteger(dice, 0, 1)
                                                           : RollInteger(dice, 0, 1));
      section[k] *= factor;
      expected = {"K602", "NTBS", row};
      return true;
    });
  }
}

TEST(CheckFarNodes, NamesANodeFarAway) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    int row = 0;
    const double extent = ExtentOf(model);
    Point& node = AnyRow(model.nodes, dice, row);
    const double turn = Roll(dice, 0.0, 6.0);
    const double distance = extent * std::pow(10.0, Roll(dice, 1.6, 4.0));
    node[0] += distance * std::cos(turn);
    node[1] += distance * std::sin(turn);
    expected = {"K603", "NPOIN", row, row};
    return true;
  });
}

// A mast of beams on a plate, ten times as high as the plate is long, and an anchor of two cables.
TEST(CheckFarNodes, AcceptsLongBeams) {
  ModelText model;
  model.materials = {{206000.0, 0.3, 0.0}};
  model.thicknesses = {10.0};
  model.cSections = {{50.0, 5.0}};
  model.nodes = {{0, 0, 0},       {1000, 0, 0},    {1000, 1000, 0},  {0, 1000, 0},   {2000, 0, 0},
                 {2000, 1000, 0}, {1000, 0, 9000}, {1000, 0, 10000}, {20000, 500, 0}};
  model.shells4 = {{{0, 1, 2, 3}, 0, 0}, {{1, 4, 5, 2}, 0, 0}};
  for (const auto& [a, b] : {std::pair<int, int>{1, 6}, {6, 7}, {7, 8}, {6, 8}}) {
    ModelText::Beam beam;
    beam.node1 = a;
    beam.node2 = b;
    beam.orientation = {0.0, 1.0, 0.0};
    beam.BeamSecType = korvex::BeamSecTypeC;
    model.beams.push_back(beam);
  }
  for (const int node : {0, 3, 8}) model.restraints.push_back({node, {1, 1, 1, 1, 1, 1}});
  model.forces = {{7, korvex::test::SingleLoad(0, 1000.0)}};
  ExpectNone(Check(model));
}

void UseFirstMaterial(ModelText& model) {
  for (auto& shell : model.shells4) shell.material = 0;
  for (auto& shell : model.shells3) shell.material = 0;
  for (auto& beam : model.beams) beam.material = 0;
}

// Good models have steel as their first material: 206000 with mm, 2.06e11 or 2.06e8 with m.
TEST(CheckUnits, NamesPascalsWithMillimetres) {
  ExpectPlanted(
      [](ModelText& model, Dice&, Expected& expected) {
        if (model.materials[0][0] != 2.06e5 || model.shells4.empty()) return false;
        UseFirstMaterial(model);
        model.materials[0][0] = 2.06e11;
        expected = {"K604", "NMT", 0};
        return true;
      },
      20);
}

TEST(CheckUnits, NamesMegapascalsWithMetres) {
  ExpectPlanted(
      [](ModelText& model, Dice&, Expected& expected) {
        if (model.materials[0][0] == 2.06e5 || model.shells4.empty()) return false;
        if (*std::max_element(model.thicknesses.begin(), model.thicknesses.end()) > 0.1)
          return false;
        UseFirstMaterial(model);
        model.materials[0][0] = 206000.0;
        expected = {"K604", "NMT", 0};
        return true;
      },
      20);
}

TEST(CheckUnits, HintsAtADensity) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    UseFirstMaterial(model);
    model.materials[0][2] *= RollYes(dice) ? 1000.0 : 1e-9;
    expected = {"K606", "NMT", 0};
    return true;
  });
}

TEST(CheckSupportStiffness, NamesElementsStifferThanTheSupports) {
  ExpectPlanted(
      [](ModelText& model, Dice&, Expected& expected) {
        if (model.shells3.empty() || !model.shells4.empty() || !model.beams.empty()) return false;
        UseFirstMaterial(model);
        model.materials[0][0] = 1e24;
        expected = {"K605", "NELEM_S_3ND"};
        return true;
      },
      5);
}

// A tube of R = 50, T = 5, A = 2 pi R T = 1571, between nodes 100 apart: E A / L = 15.71 E. It is
// above all rotational stiffnesses: I = pi R^3 T = 1.96e6, 4 E I / L = 78540 E. So 1e17 is reached
// at E = 1.27e12, and 1e20 at 1.27e15.
TEST(CheckSupportStiffness, HasItsBounds) {
  ModelText model;
  model.cSections = {{50.0, 5.0}};
  model.nodes = {{0, 0, 0}, {100, 0, 0}, {200, 0, 0}};
  ModelText::Beam beam;
  beam.BeamSecType = korvex::BeamSecTypeC;
  model.beams = {beam, beam};
  model.beams[1].node1 = 1;
  model.beams[1].node2 = 2;
  model.beams[1].material = 1;
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  model.forces = {{2, korvex::test::SingleLoad(0, 1000.0)}};
  const auto check = [&](double held, double free) {
    model.materials = {{held, 0.3, 0.0}, {free, 0.3, 0.0}};
    return Check(model);
  };
  ExpectNone(check(1.2e12, 206000.0));
  CheckReport report = check(1.35e12, 206000.0);
  ExpectOnly(report, {"K605", "NELEM_B", 0});
  EXPECT_EQ(report.findings.findings.front().severity, Severity::Warning);
  ExpectNone(check(206000.0, 1.2e15));  // away from the support only 1e20 counts
  report = check(206000.0, 1.35e15);
  ExpectOnly(report, {"K605", "NELEM_B", 1});
  EXPECT_EQ(report.findings.findings.front().severity, Severity::Error);
}

}  // namespace
}  // namespace kvx::test
