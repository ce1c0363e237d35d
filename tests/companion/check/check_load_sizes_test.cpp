// K410: loads out of line, planted into good models and found.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/planted_mistakes.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;
using korvex::test::SingleLoad;

// The good models have pressures and line loads of up to 2.
TEST(CheckLoadSizes, NamesAPressureOutOfLine) {
  for (const bool hasFourNodes : {true, false}) {
    ExpectPlanted([&](ModelText& model, Dice& dice, Expected& expected) {
      auto& loads = hasFourNodes ? model.shell4Loads : model.shell3Loads;
      if (loads.size() < 10) return false;
      int row = 0;
      AnyRow(loads, dice, row).q[static_cast<std::size_t>(RollInteger(dice, 0, 2))] *=
          RollYes(dice) ? 1000.0 : -1000.0;
      expected = {"K410", hasFourNodes ? "NDL_S_4ND" : "NDL_S_3ND", row};
      return true;
    });
  }
}

TEST(CheckLoadSizes, NamesALineLoadOutOfLine) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    if (model.beamLoads.size() < 10) return false;
    int row = 0;
    AnyRow(model.beamLoads, dice, row).q1 *= 1000.0;
    expected = {"K410", "NDL_B", row};
    return true;
  });
}

// All pressures 1e6 times as large, as Pa for MPa: 1e6 and 2e6 are above 1/100 of 206000.
TEST(CheckLoadSizes, NamesPressuresThatNoPlateBears) {
  int models = 0;
  for (std::uint32_t seed = 0; models < 30; ++seed) {
    SCOPED_TRACE(seed);
    ModelText model = MakeGoodModel(seed);
    const std::size_t loads = model.shell4Loads.size() + model.shell3Loads.size();
    if (model.materials[0][0] != 206000.0 || loads == 0) continue;
    ++models;
    for (auto* rows : {&model.shell4Loads, &model.shell3Loads}) {
      for (auto& load : *rows) {
        for (double& q : load.q) q *= 1e6;
      }
    }
    const CheckReport report = Check(model);
    EXPECT_EQ(report.findings.counts.at("K410"), loads) << ListFindings(report);
    EXPECT_EQ(CountFindings(report.findings, Severity::Warning), loads) << ListFindings(report);
    EXPECT_EQ(CountFindings(report.findings, Severity::Error), 0U) << ListFindings(report);
  }
}

// A strip of plates of 100 x 100 along x.
ModelText MakeStrip(int plates) {
  ModelText model;
  model.materials = {{206000.0, 0.3, 0.0}};
  model.thicknesses = {10.0};
  for (int k = 0; k <= plates; ++k) {
    model.nodes.push_back({100.0 * k, 0, 0});
    model.nodes.push_back({100.0 * k, 100.0, 0});
  }
  for (int k = 0; k < plates; ++k) {
    model.shells4.push_back({{2 * k, 2 * k + 2, 2 * k + 3, 2 * k + 1}, 0, 0});
  }
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  return model;
}

std::size_t CountLoads(const ModelText& model) {
  const CheckReport report = Check(model);
  const auto count = report.findings.counts.find("K410");
  return count == report.findings.counts.end() ? 0 : count->second;
}

// Ten rows, of which nine have 1e-3: above 0.1 the tenth is named. Nine rows say nothing, rows of 0
// do not count.
TEST(CheckLoadSizes, HasItsBounds) {
  const auto count = [](int rows, double last, int zeros) {
    ModelText model = MakeStrip(rows + zeros);
    for (int k = 0; k < rows; ++k) model.shell4Loads.push_back({k, {1e-3, 1e-3, 1e-3}});
    model.shell4Loads.back().q[1] = last;
    for (int k = 0; k < zeros; ++k) model.shell4Loads.push_back({rows + k, {0.0, 0.0, 0.0}});
    return CountLoads(model);
  };
  EXPECT_EQ(count(10, 0.101, 0), 1U);
  EXPECT_EQ(count(10, -0.101, 0), 1U);
  EXPECT_EQ(count(10, 0.099, 0), 0U);
  EXPECT_EQ(count(9, 0.5, 0), 0U);
  EXPECT_EQ(count(9, 0.5, 30), 0U);
  EXPECT_EQ(count(10, 0.101, 30), 1U);
  // 1/100 of 206000 is 2060, in tables of any length.
  EXPECT_EQ(count(1, 2061.0, 0), 1U);
  EXPECT_EQ(count(1, 2059.0, 0), 0U);
}

// Water from 0 upward, and a soft skin on a stiff plate that carries the pressure.
TEST(CheckLoadSizes, AcceptsWaterAndSkins) {
  ModelText model = MakeStrip(400);
  for (int k = 0; k < 400; ++k) model.shell4Loads.push_back({k, {1e-4 * k, 1e-4 * (k + 1), 0}});
  EXPECT_EQ(CountLoads(model), 0U);
  model.materials.push_back({1.0, 0.3, 0.0});
  for (std::size_t k = 300; k < 400; ++k) model.shells4[k].material = 1;
  EXPECT_EQ(CountLoads(model), 0U);
}

// One large force beside many small ones is usual: a crane beside a weight.
TEST(CheckLoadSizes, LeavesForcesOut) {
  ModelText model = MakeStrip(20);
  for (int node = 2; node < 14; ++node) model.forces.push_back({node, SingleLoad(2, 1.0)});
  model.forces.push_back({20, SingleLoad(2, 1000.0)});
  EXPECT_EQ(CountLoads(model), 0U);
}

}  // namespace
}  // namespace kvx::test
