// K101, K113, K114, K123: mistaken references, planted and found.
#include <gtest/gtest.h>

#include "support/planted_mistakes.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

int Outside(std::size_t count, Dice& dice) {
  const int last = static_cast<int>(count) - 1;
  return RollYes(dice) ? -1 - RollInteger(dice, 0, 5) : last + 1 + RollInteger(dice, 0, 1000);
}

TEST(CheckReferences, NamesAMissingNode) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    const int missing = Outside(model.nodes.size(), dice);
    int row = 0;
    if (!model.beams.empty() && RollYes(dice)) {
      AnyRow(model.beams, dice, row).node2 = missing;
      expected = {"K101", "NELEM_B", row};
    } else if (!model.shells3.empty() && RollYes(dice)) {
      AnyRow(model.shells3, dice, row).nodes[1] = missing;
      expected = {"K101", "NELEM_S_3ND", row};
    } else if (!model.shells4.empty()) {
      AnyRow(model.shells4, dice, row).nodes[3] = missing;
      expected = {"K101", "NELEM_S_4ND", row};
    } else {
      return false;
    }
    expected.node = missing < 0 ? -1 : missing;
    return true;
  });
}

TEST(CheckReferences, NamesAMissingMaterialThicknessOrSection) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    int row = 0;
    if (!model.beams.empty()) {
      ModelText::Beam& beam = AnyRow(model.beams, dice, row);
      if (RollYes(dice)) {
        beam.material = Outside(model.materials.size(), dice);
      } else {
        beam.BeamSecIndex = Outside(2, dice);  // all three tables have two rows
      }
      expected = {"K101", "NELEM_B", row};
      return true;
    }
    if (model.shells4.empty()) return false;
    auto& shell = AnyRow(model.shells4, dice, row);
    (RollYes(dice) ? shell.material : shell.thickness) = Outside(10, dice);
    expected = {"K101", "NELEM_S_4ND", row};
    return true;
  });
}

// A row that is missing for many elements is one finding with all of them.
TEST(CheckReferences, NamesARowThatManyElementsMissOnce) {
  ExpectPlanted([](ModelText& model, Dice&, Expected& expected) {
    if (model.shells4.size() < 30) return false;
    for (auto& shell : model.shells4) shell.thickness = 17;
    expected = {"K101", "NELEM_S_4ND", static_cast<int>(model.shells4.size()) - 1};
    return true;
  });
}

TEST(CheckReferences, NamesASectionTypeThatDoesNotExist) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    if (model.beams.empty()) return false;
    int row = 0;
    AnyRow(model.beams, dice, row).BeamSecType = RollYes(dice) ? -1 : RollInteger(dice, 3, 9);
    expected = {"K113", "NELEM_B", row};
    return true;
  });
}

TEST(CheckReferences, NamesANodeThatStandsTwice) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    int row = 0;
    if (!model.beams.empty() && RollYes(dice)) {
      ModelText::Beam& beam = AnyRow(model.beams, dice, row);
      beam.node2 = beam.node1;
      expected = {"K114", "NELEM_B", row, beam.node1};
    } else if (!model.shells3.empty() && RollYes(dice)) {
      auto& nodes = AnyRow(model.shells3, dice, row).nodes;
      nodes[0] = nodes[2];
      expected = {"K114", "NELEM_S_3ND", row, nodes[2]};
    } else if (!model.shells4.empty()) {
      auto& nodes = AnyRow(model.shells4, dice, row).nodes;
      const auto k = static_cast<std::size_t>(RollInteger(dice, 0, 3));
      nodes[k] = nodes[(k + static_cast<std::size_t>(RollInteger(dice, 1, 3))) % 4];
      expected = {"K114", "NELEM_S_4ND", row, nodes[k]};
    } else {
      return false;
    }
    return true;
  });
}

bool HasCode(const CheckReport& report, const std::string& code) {
  return report.findings.counts.count(code) > 0;
}

TEST(CheckReferences, NamesAnEmptyModel) {
  EXPECT_TRUE(HasCode(Check(ModelText{}), "K123"));
  ModelText model = MakeGoodModel(1);
  EXPECT_FALSE(HasCode(Check(model), "K123"));
  model.shells4.clear();
  model.shells3.clear();
  model.beams.clear();
  EXPECT_TRUE(HasCode(Check(model), "K123"));
  const CheckReport report = Check(ModelText{});
  EXPECT_EQ(report.findings.counts.at("K123"), 1U);  // not once for nodes and once for elements
}

// Elements without known nodes cannot be examined further; those with a bad property can.
TEST(CheckReferences, SetsTheStates) {
  ModelText model;
  model.materials = {{206000.0, 0.3, 0.0}};
  model.thicknesses = {1.0};
  model.nodes = {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}};
  model.shells3 = {{{0, 1, 2}, 0, 0}, {{0, 2, 9}, 0, 0}, {{0, 2, 3}, 5, 0}, {{1, 1, 3}, 0, 0}};
  const CheckReport report = Check(model);
  const std::vector<ElementState> expected{ElementState::Sound, ElementState::Unusable,
                                           ElementState::Sound, ElementState::Unusable};
  EXPECT_EQ(report.model.states[KindOf(korvex::Section::Shells3)], expected);
}

}  // namespace
}  // namespace kvx::test
