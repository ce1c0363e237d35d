// Gaps of imported models: each is refused with its group, its reason, its count and an example.
#include "mesh/check_complete.h"

#include <gtest/gtest.h>

#include <array>

#include "mesh/import_models.h"

namespace kvx::test {
namespace {

// The entries of CheckComplete.
std::string Check(const ImportModel& model) {
  ImportReport report;
  CheckComplete(model, report);
  return ListEntries(report);
}

TEST(CheckComplete, SaysNothingOfACompleteModel) {
  EXPECT_EQ(Check(CompletePlate()), "");
  EXPECT_EQ(Check({}), "elements | refused | there are no shells and no beams | 1 | \n");
}

TEST(CheckComplete, NamesWhatGroupsOfAMeshLack) {
  const std::string hint = "; a map file gives it (--map), --map-template writes one";
  EXPECT_EQ(Check(StiffenedPlate()),
            "deck | refused | there is no thickness" + hint + " | 2 | CQUAD4 4001\n" +
                "deck | refused | there is no material" + hint + " | 2 | CQUAD4 4001\n" +
                "stiffeners | refused | there is no section" + hint + " | 2 | CBAR 7001\n" +
                "stiffeners | refused | there is no material" + hint + " | 2 | CBAR 7001\n" +
                "stiffeners | refused | there is no orientation of the web" + hint +
                " | 2 | CBAR 7001\n");
}

TEST(CheckComplete, NamesTheFirstElementThatLacksIt) {
  ImportModel model = CompletePlate();
  model.shells[1].thickness = -1;
  EXPECT_EQ(Check(model), "deck | refused | there is no thickness | 1 | CQUAD4 4002\n");
  model = CompletePlate();
  model.beams[1].material = -1;
  EXPECT_EQ(Check(model), "stiffeners | refused | there is no material | 1 | CBAR 7002\n");
  model = CompletePlate();
  model.groups.clear();
  model.beams[1].section = -1;
  EXPECT_EQ(Check(model), "elements of no group | refused | there is no section | 1 | CBAR 7002\n");
}

// A map names groups, and has no nodes.
TEST(CheckComplete, TellsWhetherAMapCanHelp) {
  const auto canHelp = [](const ImportModel& model) {
    ImportReport report;
    return CheckComplete(model, report);
  };
  EXPECT_FALSE(canHelp(CompletePlate()));
  EXPECT_FALSE(canHelp({}));
  ImportModel model = CompletePlate();
  model.shells[1].nodes[1] = -1;
  EXPECT_FALSE(canHelp(model));
  model = CompletePlate();
  model.shells[1].thickness = -1;
  EXPECT_TRUE(canHelp(model));
  model = CompletePlate();
  model.beams[1].orientation = {};
  EXPECT_TRUE(canHelp(model));
  model.groups.clear();
  EXPECT_FALSE(canHelp(model));
}

TEST(CheckComplete, SaysWhatTheDeckHasInstead) {
  // A set has the beams, too; the property says why, and it says it once.
  ImportModel model = CompletePlate();
  AddGroup("PBARL 100", {}, {1}, model);
  model.groups.back().lacks = "PBARL I: there is no I section";
  model.beams[1].section = model.beams[1].material = -1;
  EXPECT_EQ(Check(model), "PBARL 100 | refused | PBARL I: there is no I section | 1 | CBAR 7002\n");
  // A material alone.
  model.beams[1].section = 0;
  model.groups.back().lacks = "material A has no *ELASTIC";
  EXPECT_EQ(Check(model),
            "PBARL 100 | refused | there is no material (material A has no *ELASTIC) "
            "| 1 | CBAR 7002\n");
  // An orientation is another matter.
  model = CompletePlate();
  model.groups[2].lacks = "PBARL I: there is no I section";
  model.beams[0].orientation = {};
  EXPECT_EQ(Check(model),
            "stiffeners | refused | there is no orientation of the web | 1 | CBAR 7001\n");
}

TEST(CheckComplete, RefusesAnOrientationAlongTheAxis) {
  ImportModel model = CompletePlate();
  model.beams[0].orientation = {-5, 0, 0};
  EXPECT_EQ(Check(model),
            "stiffeners | refused | the orientation of the web is parallel to the "
            "beam's axis | 1 | CBAR 7001\n");
  // A beam without a length is for the check of the model.
  model.nodes[1] = model.nodes[0];
  EXPECT_EQ(Check(model), "");
}

TEST(CheckComplete, TubesNeedNoOrientationWithoutAnOffset) {
  ImportModel model = CompletePlate();
  model.sections[0].type = korvex::BeamSecTypeC;
  model.beams[0].orientation = {};
  model.beams[1].orientation = {1, 0, 0};
  EXPECT_EQ(Check(model), "");
  model.beams[0].BeamSecOz = 6;
  model.beams[1].BeamSecOz = -6;
  EXPECT_EQ(Check(model),
            "stiffeners | refused | there is no orientation of the web | 1 | CBAR 7001\n"
            "stiffeners | refused | the orientation of the web is parallel to the beam's axis | 1 "
            "| CBAR 7002\n");
}

TEST(CheckComplete, RefusesElementsWithoutANode) {
  ImportModel model = CompletePlate();
  model.shells[1].nodes[2] = -1;
  model.beams[0].nodes[1] = -1;
  EXPECT_EQ(Check(model),
            "deck | refused | an element has no node where it needs one | 1 | CQUAD4 4002\n"
            "stiffeners | refused | an element has no node where it needs one | 1 | CBAR 7001\n");
}

ImportCase LoadedCase(const std::string& name, std::int32_t supports) {
  ImportCase loads;
  loads.name = name;
  loads.supports = supports;
  loads.forces.push_back({4, {1, 0, 0, 0, 0, 0}});
  return loads;
}

TEST(CheckComplete, RefusesSupportsThatDifferFromCaseToCase) {
  ImportModel model = CompletePlate();
  model.supports.push_back({"SPC 1", {{{1, 1, 0, 0, 0, 0}, 0}, {{0, 0, 1, 0, 0, 0}, 0}}});
  model.supports.push_back({"SPC 2", {{{1, 1, 1, 2, 0, 0}, 0}, {{0, 0, 0, 0, 0, 0}, 3}}});
  model.cases = {LoadedCase("a", 0), LoadedCase("b", 1)};
  EXPECT_EQ(Check(model), "") << "the same nodes are held";
  model.supports[1].restraints.push_back({{0, 0, 0, 0, 0, 1}, 3});
  EXPECT_EQ(Check(model),
            "b | refused | its supports differ from those of the first case, and a model has one "
            "set; --case NAME takes one case alone | 1 | \n");
  model.cases[1].supports = -1;
  EXPECT_NE(Check(model), "");
  // A case without loads is not written: its supports do not matter.
  const std::string differ = Check(model);
  model.cases[1].forces.clear();
  EXPECT_EQ(Check(model), "");
  // Loads of each kind.
  std::array<ImportCase, 4> kinds;
  kinds[0].pressures.push_back({0, {1, 1, 1}});
  kinds[1].lineLoads.push_back({0, {1, 1}});
  kinds[2].hasAcceleration = true;
  kinds[3].prescribed.push_back({0, 0, 0.5});
  for (ImportCase& kind : kinds) {
    kind.name = "b";
    kind.supports = &kind == &kinds[3] ? 1 : -1;
    model.cases[1] = kind;
    EXPECT_EQ(Check(model), differ) << &kind - kinds.data();
  }
  model.cases.clear();
  EXPECT_EQ(Check(model),
            "SPC 2 | refused | there are several sets of supports, and no case says "
            "which one holds | 1 | \n");
}

TEST(CheckComplete, RefusesPrescribedDisplacementsThatNothingHoldsOrThatDiffer) {
  ImportModel model = CompletePlate();
  model.supports.push_back({"SPC 1", {{{0, 0, 1, 0, 0, 0}, 4}}});
  model.cases = {LoadedCase("a", 0)};
  model.cases[0].prescribed = {{4, 2, 0.5}, {4, 2, 0.5}};
  EXPECT_EQ(Check(model), "");
  model.cases[0].prescribed = {{4, 2, 0.5}, {4, 2, 0.25}};
  EXPECT_EQ(Check(model),
            "a | refused | two different displacements are prescribed for the same "
            "node and direction | 1 | node 1005\n");
  model.cases[0].prescribed = {{4, 1, 0.5}};
  EXPECT_EQ(Check(model),
            "a | refused | a displacement is prescribed where there is no support | 1 | node "
            "1005\n");
}

}  // namespace
}  // namespace kvx::test
