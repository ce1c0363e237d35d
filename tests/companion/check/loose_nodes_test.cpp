// K203: nodes of no element, planted into random good models.
#include "check/loose_nodes.h"

#include <gtest/gtest.h>

#include "check/read_checked.h"
#include "support/expect_findings.h"
#include "support/mesh_mistakes.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

// Adds a node, anywhere in the table and anywhere in space: in the open, on an element or at
// another node.
int PlantNode(Dice& dice, ModelText& model) {
  const int node = static_cast<int>(model.nodes.size());
  const int a = RollInteger(dice, 0, node - 1), b = RollInteger(dice, 0, node - 1);
  constexpr std::array<double, 3> Shares{0.0, 0.5, 1.3};
  const double share = Shares[static_cast<std::size_t>(RollInteger(dice, 0, 2))];
  model.nodes.push_back(PointBetween(model, a, b, share));
  const int number = RollInteger(dice, 0, node);
  SwapNodes(number, node, model);
  return number;
}

TEST(LooseNodes, AreNamed) {
  for (std::uint32_t seed = 0; seed < 100; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    ModelText model = MakeGoodModel(seed);
    Dice dice = MakeDice(seed + 1000);
    const int node = PlantNode(dice, model);
    ExpectOnly(Check(model), {"K203", "NPOIN", node, node, 0});
  }
}

// Neighbours in the table are one finding.
TEST(LooseNodes, AreNamedTogether) {
  ModelText model = MakeGoodModel(1);
  const int first = static_cast<int>(model.nodes.size());
  for (int k = 0; k < 30; ++k) model.nodes.push_back({1e3 + k, 0.0, 0.0});
  const CheckReport report = Check(model);
  ExpectOnly(report, {"K203", "NPOIN", first + 29, first, 0});
  for (const Finding& finding : report.findings.findings) {
    if (finding.code != "K203") continue;
    EXPECT_EQ(finding.nodes.size(), 30U);
  }
}

std::size_t CountK203(const CheckedModel& model) {
  CheckedModel copy = model;
  Parts parts;
  FindParts(copy, parts);
  FindingList findings;
  NameLooseNodes(parts, copy, findings);
  return findings.findings.size();
}

TEST(LooseNodes, AreLeftToOtherChecksWhereTheyAreHeldOrLoaded) {
  ModelText text = MakeGoodModel(1);
  const int node = static_cast<int>(text.nodes.size());
  text.nodes.push_back({1.0, 2.0, 3.0});
  // Fixed by two rows together.
  text.restraints.push_back({node, {1, 1, 1, 0, 0, 0}});
  const auto count = [](const ModelText& from) {
    CheckedModel model;
    ReadChecked(korvex::test::WriteModel(from), model);
    return CountK203(model);
  };
  EXPECT_EQ(count(text), 1U);
  text.restraints.push_back({node, {0, 0, 0, 2, 1, 1}});  // 2 leaves free
  EXPECT_EQ(count(text), 1U);
  text.restraints.back().fixed[3] = 1;
  EXPECT_EQ(count(text), 0U);
  text.restraints.clear();
  EXPECT_EQ(count(text), 1U);
  text.forces.push_back({node, {0.0, 0.0, 1.0, 0.0, 0.0, 0.0}});
  EXPECT_EQ(count(text), 0U);
}

// An element whose nodes are not known may have used the node.
TEST(LooseNodes, AreNotNamedWhereElementsAreNotKnown) {
  ModelText text = MakeGoodModel(1);
  text.nodes.push_back({1.0, 2.0, 3.0});
  CheckedModel model;
  ReadChecked(korvex::test::WriteModel(text), model);
  ASSERT_EQ(CountK203(model), 1U);
  const korvex::Section section =
      model.tables.Shell4Properties.empty() ? korvex::Section::Beams : korvex::Section::Shells4;
  CheckedModel lost = model;
  lost.lostRows[IndexOf(section)].insert(0);
  EXPECT_EQ(CountK203(lost), 0U);
  CheckedModel unusable = model;
  StateOf(unusable, section, 0) = ElementState::Unusable;
  Parts parts;
  FindParts(unusable, parts);
  FindingList findings;
  NameLooseNodes(parts, unusable, findings);
  EXPECT_TRUE(findings.findings.empty());
  EXPECT_EQ(unusable.notChecked.size(), 1U);
}

}  // namespace
}  // namespace kvx::test
