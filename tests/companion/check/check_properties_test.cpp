// K106 .. K112, K607: materials, thicknesses and sections, planted and found.
#include <gtest/gtest.h>

#include "support/planted_mistakes.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

// The material of a random element.
int AnyMaterial(const ModelText& model, Dice& dice) {
  int row = 0;
  if (!model.shells4.empty()) return AnyRow(model.shells4, dice, row).material;
  if (!model.shells3.empty()) return AnyRow(model.shells3, dice, row).material;
  return AnyRow(model.beams, dice, row).material;
}

void ExpectPlantedMaterial(const char* code, std::size_t value,
                           const std::vector<double>& mistakes) {
  ExpectPlanted([&](ModelText& model, Dice& dice, Expected& expected) {
    const int row = AnyMaterial(model, dice);
    model.materials[static_cast<std::size_t>(row)][value] =
        mistakes[static_cast<std::size_t>(RollRow(mistakes.size(), dice))];
    expected = {code, "NMT", row};
    return true;
  });
}

TEST(CheckMaterials, NamesAModulusThatIsNotPositive) {
  ExpectPlantedMaterial("K106", 0, {0.0, -206000.0, -1e-3});
}

TEST(CheckMaterials, NamesAnImpossiblePoissonsRatio) {
  ExpectPlantedMaterial("K107", 1, {-1.0, 0.51, 1.0, 3.0, 30.0, -1.5});
}

TEST(CheckMaterials, HintsAtAnIncompressibleMaterial) { ExpectPlantedMaterial("K107", 1, {0.5}); }

TEST(CheckMaterials, NamesANegativePoissonsRatio) {
  ExpectPlantedMaterial("K607", 1, {-0.3, -0.99, -1e-6});
}

TEST(CheckMaterials, AcceptsTheRange) {
  for (const double Mu : {0.0, 0.2, 0.3, 0.49, 0.4999}) {
    ModelText model = MakeGoodModel(3);
    for (auto& material : model.materials) material[1] = Mu;
    ExpectNone(Check(model));
  }
}

// A row that nothing uses changes nothing: a hint.
TEST(CheckMaterials, HintsAtARowThatNothingUses) {
  ModelText model = MakeGoodModel(3);
  model.materials.push_back({0.0, 0.3, 0.0});
  model.thicknesses.push_back(0.0);
  model.tSections.push_back({0.0, 0.0, 0.0, 0.0});
  model.cSections.push_back({0.0, 0.0});
  const CheckReport report = Check(model);
  ExpectNone(report);
  EXPECT_EQ(report.findings.counts.at("K106"), 1U);
  EXPECT_EQ(report.findings.counts.at("K108"), 1U);
  EXPECT_EQ(report.findings.counts.at("K109"), 2U);
}

TEST(CheckThicknesses, NamesAThicknessThatIsNotPositive) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    if (model.shells4.empty()) return false;
    int shell = 0;
    const int row = AnyRow(model.shells4, dice, shell).thickness;
    model.thicknesses[static_cast<std::size_t>(row)] = RollYes(dice) ? 0.0 : -10.0;
    expected = {"K108", "NTK", row};
    return true;
  });
}

// The section of a random T or L beam; null where there is none.
std::array<double, 4>* AnySection(ModelText& model, Dice& dice, Expected& expected) {
  if (model.beams.empty()) return nullptr;
  int row = 0;
  const ModelText::Beam& beam = AnyRow(model.beams, dice, row);
  if (beam.BeamSecType == korvex::BeamSecTypeC) return nullptr;
  const bool isT = beam.BeamSecType == korvex::BeamSecTypeT;
  expected.table = isT ? "NTBS" : "NLBS";
  expected.row = beam.BeamSecIndex;
  return &(isT ? model.tSections : model.lSections)[static_cast<std::size_t>(beam.BeamSecIndex)];
}

std::array<double, 2>* AnyTube(ModelText& model, Dice& dice, Expected& expected) {
  if (model.beams.empty()) return nullptr;
  int row = 0;
  const ModelText::Beam& beam = AnyRow(model.beams, dice, row);
  if (beam.BeamSecType != korvex::BeamSecTypeC) return nullptr;
  expected.table = "NCBS";
  expected.row = beam.BeamSecIndex;
  return &model.cSections[static_cast<std::size_t>(beam.BeamSecIndex)];
}

TEST(CheckSections, NamesASizeThatIsNotPositive) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    expected.code = "K109";
    if (std::array<double, 2>* tube = AnyTube(model, dice, expected)) {
      (*tube)[static_cast<std::size_t>(RollInteger(dice, 0, 1))] = RollYes(dice) ? 0.0 : -5.0;
      return true;
    }
    std::array<double, 4>* section = AnySection(model, dice, expected);
    if (section == nullptr) return false;
    const auto k = static_cast<std::size_t>(RollInteger(dice, 0, 3));
    (*section)[k] = k < 2 && RollYes(dice) ? 0.0 : -8.0;  // a flange of 0 is a flat bar
    return true;
  });
}

TEST(CheckSections, NamesATubeThatCannotBeBuilt) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    expected.code = "K110";
    std::array<double, 2>* tube = AnyTube(model, dice, expected);
    if (tube == nullptr) return false;
    (*tube)[1] = (*tube)[0] * (RollYes(dice) ? 2.001 : Roll(dice, 2.001, 20.0));
    return true;
  });
}

TEST(CheckSections, NamesSizesTooDifferentToCalculateWith) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    expected.code = "K110";
    std::array<double, 4>* section = AnySection(model, dice, expected);
    if (section == nullptr) return false;
    (*section)[1] *= 1e-8;
    return true;
  });
}

TEST(CheckSections, NamesUnusualProportions) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    expected.code = "K111";
    if (std::array<double, 2>* tube = AnyTube(model, dice, expected)) {
      (*tube)[1] = (*tube)[0] * Roll(dice, 1.001, 2.0);
      return true;
    }
    std::array<double, 4>* section = AnySection(model, dice, expected);
    if (section == nullptr || (*section)[2] == 0.0) return false;
    (*section)[2] = (*section)[1] * Roll(dice, 0.1, 0.999);
    return true;
  });
}

TEST(CheckSections, NamesAFlangeWithOneSize) {
  ExpectPlanted([](ModelText& model, Dice& dice, Expected& expected) {
    expected.code = "K112";
    std::array<double, 4>* section = AnySection(model, dice, expected);
    if (section == nullptr) return false;
    const auto k = static_cast<std::size_t>(RollInteger(dice, 2, 3));
    (*section)[k] = 0.0;
    (*section)[5 - k] = 0.1 * (*section)[0];
    return true;
  });
}

}  // namespace
}  // namespace kvx::test
