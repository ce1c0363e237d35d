// K4xx: planted mistakes in the loads of good models at random places.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "check/check_loads.h"
#include "support/expect_findings.h"
#include "support/good_models.h"
#include "support/repeats.h"
#include "tables/node_box.h"
#include "tables/prescribed_displacements.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;
using korvex::test::SingleLoad;

constexpr std::uint32_t Seeds = korvex::test::Repeats(60);

struct Planting {
  ModelText model;
  Dice dice;
};

Planting Prepare(std::uint32_t seed) { return {MakeGoodModel(seed), MakeDice(seed + 2000)}; }

template <typename Rows>
int RollRow(const Rows& rows, Dice& dice) {
  return RollInteger(dice, 0, static_cast<int>(rows.size()) - 1);
}

bool IsSupported(const ModelText& model, int node) {
  return std::any_of(model.restraints.begin(), model.restraints.end(),
                     [&](const auto& row) { return row.node == node; });
}

// A node that is not supported.
int RollFreeNode(Planting& planting) {
  for (;;) {
    const int node = RollRow(planting.model.nodes, planting.dice);
    if (!IsSupported(planting.model, node)) return node;
  }
}

Expected AtRow(const char* code, const char* table, std::size_t row) {
  Expected expected;
  expected.code = code;
  expected.table = table;
  expected.row = static_cast<int>(row);
  return expected;
}

double ExtentOf(const ModelText& model) {
  return MeasureNodeBox(Check(model).model.tables).diagonal;
}

TEST(CheckLoads, NameAForceOnANodeThatDoesNotExist) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    Planting planting = Prepare(seed);
    const int node =
        RollYes(planting.dice, 0.3) ? -1 : static_cast<int>(planting.model.nodes.size());
    planting.model.forces.push_back({node, SingleLoad(1, 5.0)});
    ExpectOnly(Check(planting.model), AtRow("K401", "NFOR", planting.model.forces.size() - 1));
  }
}

// All three kinds of loads on elements.
TEST(CheckLoads, NameALoadOnAnElementThatDoesNotExist) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    const Planting planting = Prepare(seed);
    ModelText model = planting.model;
    model.shell4Loads.push_back({static_cast<int>(model.shells4.size()), {1.0, 1.0, 1.0}});
    ExpectOnly(Check(model), AtRow("K401", "NDL_S_4ND", model.shell4Loads.size() - 1));
    model = planting.model;
    model.shell3Loads.push_back({static_cast<int>(model.shells3.size()), {1.0, 1.0, 1.0}});
    ExpectOnly(Check(model), AtRow("K401", "NDL_S_3ND", model.shell3Loads.size() - 1));
    model = planting.model;
    model.beamLoads.push_back({-1, 1.0, 1.0});
    ExpectOnly(Check(model), AtRow("K401", "NDL_B", model.beamLoads.size() - 1));
  }
}

TEST(CheckLoads, NameAForceOnALooseNode) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    Planting planting = Prepare(seed);
    const auto& at = planting.model.nodes[0];
    planting.model.nodes.push_back({at[0], at[1] + 1000.0, at[2] + 1000.0});
    const int node = static_cast<int>(planting.model.nodes.size()) - 1;
    planting.model.forces.push_back({node, SingleLoad(2, 5.0)});
    if (RollYes(planting.dice)) planting.model.restraints.push_back({node, {1, 1, 1, 0, 0, 0}});
    Expected expected = AtRow("K402", "NFOR", planting.model.forces.size() - 1);
    expected.node = node;
    ExpectOnly(Check(planting.model), expected);
  }
}

TEST(CheckLoads, HintAtADoubledRow) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    Planting planting = Prepare(seed);
    ModelText& model = planting.model;
    if (!model.shell4Loads.empty()) {
      model.shell4Loads.push_back(
          model.shell4Loads[static_cast<std::size_t>(RollRow(model.shell4Loads, planting.dice))]);
      ExpectOnly(Check(model), AtRow("K403", "NDL_S_4ND", model.shell4Loads.size() - 1));
    } else if (!model.forces.empty()) {
      model.forces.push_back(
          model.forces[static_cast<std::size_t>(RollRow(model.forces, planting.dice))]);
      ExpectOnly(Check(model), AtRow("K403", "NFOR", model.forces.size() - 1));
    } else if (!model.beamLoads.empty()) {
      model.beamLoads.push_back(model.beamLoads.back());
      ExpectOnly(Check(model), AtRow("K403", "NDL_B", model.beamLoads.size() - 1));
    }
  }
}

// Rows that differ add up as they are meant.
TEST(CheckLoads, TakeDifferentRowsOnOneNodeAsMeant) {
  Planting planting = Prepare(3);
  const int node = RollFreeNode(planting);
  planting.model.forces = {{node, SingleLoad(0, 5.0)}, {node, SingleLoad(1, 5.0)}};
  for (const Finding& finding : Check(planting.model).findings.findings) {
    EXPECT_NE(finding.code, "K403");
  }
}

TEST(CheckLoads, HintAtALoadOfZero) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    Planting planting = Prepare(seed);
    planting.model.forces.push_back({RollFreeNode(planting), {}});
    ExpectOnly(Check(planting.model), AtRow("K404", "NFOR", planting.model.forces.size() - 1));
  }
}

// From a millionth of the extent to a tenth: displacements and rotations that one would prescribe.
TEST(CheckLoads, NameAPrescribedDisplacementWithoutItsSupport) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    Planting planting = Prepare(seed);
    const auto dof = static_cast<std::size_t>(RollInteger(planting.dice, 0, 5));
    const double scale = dof < 3 ? ExtentOf(planting.model) : 1.0;
    const double u = scale * std::exp(Roll(planting.dice, std::log(1e-5), std::log(0.1)));
    const int node = RollFreeNode(planting);
    planting.model.forces.push_back({node, SingleLoad(dof, -1e20 * u)});
    Expected expected = AtRow("K405", "NFOR", planting.model.forces.size() - 1);
    expected.node = node;
    ExpectOnly(Check(planting.model), expected);
  }
}

TEST(CheckLoads, TellOfPrescribedDisplacements) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    Planting planting = Prepare(seed);
    const int node = RollFreeNode(planting);
    const auto dof = static_cast<std::size_t>(RollInteger(planting.dice, 0, 5));
    ModelText::Restraint restraint{node, {}};
    restraint.fixed[dof] = 1;
    planting.model.restraints.push_back(restraint);
    planting.model.forces = {{node, SingleLoad(dof, 2.5e17 * ExtentOf(planting.model))}};
    const CheckReport report = Check(planting.model);
    if (dof >= 3) continue;  // a moment of another size: below
    ExpectOnly(report, AtRow("K406", "NFOR", 0));
  }
}

// A prescribed rotation of 0.001; and one of a displacement larger than the model warns.
TEST(CheckLoads, TellPrescribedValues) {
  Planting planting = Prepare(7);
  const int node = RollFreeNode(planting);
  planting.model.restraints.push_back({node, {1, 1, 1, 1, 1, 1}});
  planting.model.forces = {{node, {0, 0, 0, 0, 1e17, 0}}};
  CheckReport report = Check(planting.model);
  ExpectOnly(report, AtRow("K406", "NFOR", 0));
  EXPECT_NE(ListFindings(report).find("prescribes Ry = 0.001 "), std::string::npos);

  planting.model.forces = {{node, SingleLoad(0, 1.5e20 * ExtentOf(planting.model))}};
  report = Check(planting.model);
  ExpectOnly(report, AtRow("K406", "NFOR", 0));
  EXPECT_EQ(report.findings.findings[0].severity, Severity::Warning);
}

TEST(CheckLoads, WarnOfAModelWithoutLoads) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    Planting planting = Prepare(seed);
    ModelText& model = planting.model;
    model.forces.clear();
    model.shell4Loads.clear();
    model.shell3Loads.clear();
    model.beamLoads.clear();
    Expected expected;
    expected.code = "K407";
    ExpectOnly(Check(model), expected);
    model.forces.push_back({0, {}});
    const CheckReport report = Check(model);
    EXPECT_NE(ListFindings(report).find("K407"), std::string::npos);
  }
}

TEST(CheckLoads, HintAtAForceOnASupport) {
  for (std::uint32_t seed = 0; seed < Seeds; ++seed) {
    SCOPED_TRACE(seed);
    Planting planting = Prepare(seed);
    ModelText& model = planting.model;
    const int node =
        model.restraints[static_cast<std::size_t>(RollRow(model.restraints, planting.dice))].node;
    model.forces.push_back({node, SingleLoad(1, 5.0)});
    Expected expected = AtRow("K408", "NFOR", model.forces.size() - 1);
    expected.node = node;
    ExpectOnly(Check(model), expected);
    // Beside a prescribed displacement it is lost.
    model.forces.push_back({node, SingleLoad(1, 1e17 * ExtentOf(model))});
    EXPECT_NE(ListFindings(Check(model)).find("has a prescribed displacement"), std::string::npos);
  }
}

}  // namespace
}  // namespace kvx::test
