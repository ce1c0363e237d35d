// K122: values that are not numbers or out of range, planted and found.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/planted_mistakes.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

double BadValue(Dice& dice) {
  const std::vector<double> values{std::nan(""), std::numeric_limits<double>::infinity(),
                                   -std::numeric_limits<double>::infinity(), 1e50, -1e300};
  return values[static_cast<std::size_t>(RollRow(values.size(), dice))];
}

// The node is named, and not its elements besides.
TEST(CheckNumbers, NamesACoordinate) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    int row = 0;
    AnyRow(model.nodes, dice, row)[static_cast<std::size_t>(RollInteger(dice, 0, 2))] =
        BadValue(dice);
    expected = {"K122", "NPOIN", row, row};
    return true;
  });
}

TEST(CheckNumbers, NamesABeamsVectorOrOffset) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    if (model.beams.empty()) return false;
    int row = 0;
    ModelText::Beam& beam = AnyRow(model.beams, dice, row);
    (RollYes(dice) ? beam.orientation[1] : beam.BeamSecOz) = BadValue(dice);
    expected = {"K122", "NELEM_B", row};
    return true;
  });
}

TEST(CheckNumbers, NamesAThicknessOrMaterial) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    if (model.shells4.empty()) return false;
    int shell = 0;
    const auto& used = AnyRow(model.shells4, dice, shell);
    const double value = RollYes(dice) ? BadValue(dice) : 1e-30;
    if (RollYes(dice)) {
      model.thicknesses[static_cast<std::size_t>(used.thickness)] = value;
      expected = {"K122", "NTK", used.thickness};
    } else {
      model.materials[static_cast<std::size_t>(used.material)][0] = value;
      expected = {"K122", "NMT", used.material};
    }
    return true;
  });
}

TEST(CheckNumbers, NamesALoad) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    int row = 0;
    if (!model.beamLoads.empty()) {
      AnyRow(model.beamLoads, dice, row).q2 = BadValue(dice);
      expected = {"K122", "NDL_B", row};
    } else if (!model.shell3Loads.empty()) {
      AnyRow(model.shell3Loads, dice, row).q[2] = BadValue(dice);
      expected = {"K122", "NDL_S_3ND", row};
    } else if (!model.forces.empty()) {
      AnyRow(model.forces, dice, row).components[5] = BadValue(dice);
      expected = {"K122", "NFOR", row};
    } else {
      return false;
    }
    return true;
  });
}

// The solver does not use the density: no error.
TEST(CheckNumbers, WarnsOfADensity) {
  ModelText model = MakeGoodModel(5);
  for (auto& material : model.materials) material[2] = std::nan("");
  const CheckReport report = Check(model);
  EXPECT_GT(report.findings.counts.at("K122"), 0U);
  for (const Finding& finding : report.findings.findings) {
    EXPECT_NE(finding.severity, Severity::Error) << finding.message;
  }
}

// What the bounds leave to: a prescribed displacement of 1000 and a model of the size of the earth.
TEST(CheckNumbers, AcceptsLargeValues) {
  ModelText model = MakeGoodModel(5);
  for (auto& node : model.nodes) node[0] += 1.3e10;
  model.forces = {{0, korvex::test::SingleLoad(0, 1e23)}};
  EXPECT_EQ(Check(model).findings.counts.count("K122"), 0U);
}

}  // namespace
}  // namespace kvx::test
