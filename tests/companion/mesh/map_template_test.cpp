// Maps to fill in: a map as they stand, and one that says all once their numbers are there.
#include "mesh/map_template.h"

#include <gtest/gtest.h>

#include "mesh/check_complete.h"
#include "mesh/import_map.h"
#include "mesh/import_models.h"

namespace kvx::test {
namespace {

// Replaces the only, or the first, place of a text.
void Replace(const std::string& from, const std::string& to, std::string& text) {
  const std::size_t at = text.find(from);
  ASSERT_NE(at, std::string::npos) << from << " in\n" << text;
  text.replace(at, from.size(), to);
}

// The template with all of its own keys taken as they stand below the group: what people do.
void Uncomment(const std::string& group, const std::string& key, const std::string& line,
               std::string& text) {
  const std::size_t table = text.find("[group." + group + "]");
  ASSERT_NE(table, std::string::npos) << group;
  const std::size_t at = text.find("# " + key + " =", table);
  ASSERT_NE(at, std::string::npos) << key;
  ASSERT_LT(at, text.find("[group.", table + 1)) << key << " of " << group;
  text.replace(at, text.find('\n', at) - at, line);
}

TEST(MapTemplate, IsAMapThatSaysNothing) {
  ImportModel model = StiffenedPlate();
  ImportReport report;
  ApplyImportMap(WriteMapTemplate(model), "map.toml", model, report);
  EXPECT_EQ(ListEntries(report), "");
  EXPECT_TRUE(model.materials.empty());
  EXPECT_TRUE(model.cases.empty());
  EXPECT_TRUE(model.supports.empty());
  EXPECT_EQ(model.shells[0].thickness, -1);
}

TEST(MapTemplate, SaysWhatTheGroupsAre) {
  ImportModel model = StiffenedPlate();
  model.groups[0].source = "physical surface 3";
  model.groups[2].lacks = "PBARL I: there is no I section";
  const std::string text = WriteMapTemplate(model);
  EXPECT_NE(text.find("# physical surface 3 \"deck\": 2 shells, 6 nodes\n[group.deck]\n"),
            std::string::npos);
  EXPECT_NE(text.find("# left: 1 shell, 4 nodes\n[group.left]\n"), std::string::npos);
  EXPECT_NE(text.find("# stiffeners: 2 lines, 3 nodes\n# PBARL I: there is no I section\n"),
            std::string::npos);
  EXPECT_NE(text.find("# corner: 1 node\n[group.corner]\n"), std::string::npos);
  // Keys that do not fit are not there: a group of points has neither thickness nor section.
  const std::string corner = text.substr(text.find("[group.corner]"));
  const std::string own = corner.substr(0, corner.find("An example"));
  EXPECT_EQ(own.find("thickness"), std::string::npos);
  EXPECT_EQ(own.find("section"), std::string::npos);
  EXPECT_NE(own.find("restraint"), std::string::npos);
  EXPECT_NE(WriteMapTemplate({}).find("The mesh has no groups"), std::string::npos);
}

TEST(MapTemplate, FilledInItMakesTheMeshComplete) {
  ImportModel model = StiffenedPlate();
  std::string text = WriteMapTemplate(model);
  Replace("# [material.steel]\n# E = \n# poisson = 0.3\n# density = ",
          "[material.steel]\nE = 206000\npoisson = 0.3\ndensity = 7.85e-9", text);
  Replace("# acceleration = [0, 0, 0]", "acceleration = [0, 0, -9810]", text);
  Uncomment("deck", "thickness", "thickness = 12", text);
  Uncomment("deck", "material", "material = \"steel\"", text);
  Uncomment("deck", "pressure", "pressure = -0.01", text);
  Uncomment("stiffeners", "section",
            "section = { type = \"T\", Hw = 200, Tw = 8, Bf = 90, Tf = 12 }", text);
  Uncomment("stiffeners", "orientation", "orientation = [0, 0, -1]", text);
  Uncomment("stiffeners", "offset", "offset = 6", text);
  Uncomment("stiffeners", "material", "material = \"steel\"", text);
  Uncomment("left", "restraint", "restraint = \"fixed\"", text);
  Uncomment("left", "flip", "flip = false", text);
  ImportReport report;
  ApplyImportMap(text, "map.toml", model, report);
  CheckComplete(model, report);
  EXPECT_EQ(ListEntries(report), "");
  EXPECT_EQ(model.thicknesses.at(0).TK, 12);
  EXPECT_EQ(model.sections.at(0).plates.Bf, 90);
  EXPECT_EQ(model.beams[1].BeamSecOz, 6);
  EXPECT_EQ(model.supports.at(0).restraints.size(), 4U);
  EXPECT_TRUE(model.cases.at(0).hasAcceleration);
  EXPECT_EQ(model.cases.at(0).pressures.size(), 2U);
}

TEST(MapTemplate, ItsExampleIsAMap) {
  ImportModel model = StiffenedPlate();
  AddGroup("clamped", {1}, {}, model);
  const std::string text = WriteMapTemplate(model);
  const std::string marked = text.substr(text.find("# [material.steel]", text.find("An example")));
  std::string example;
  for (std::size_t at = 0; at < marked.size();) {
    const std::size_t end = marked.find('\n', at);
    const std::string line = marked.substr(at, end - at);
    EXPECT_EQ(line.substr(0, 1), "#");
    example += line.size() > 2 ? line.substr(2) + '\n' : "\n";
    at = end + 1;
  }
  ImportReport report;
  ApplyImportMap(example, "map.toml", model, report);
  CheckComplete(model, report);
  EXPECT_EQ(ListEntries(report), "") << example;
}

TEST(MapTemplate, TakesGroupsOfAnyName) {
  ImportModel model = StiffenedPlate();
  const std::vector<std::string> names{"PSHELL 10", "a\"b\\c", "d.e",  "",  "tab\tnew\nline",
                                       "deck#1",    "\"\"\"",  "甲板", "'", "]"};
  for (const std::string& name : names) AddGroup(name, {0}, {}, model);
  AddGroup("\xB0\xE5", {0}, {}, model);  // GBK: no UTF-8
  std::string text = WriteMapTemplate(model);
  ImportReport report;
  ApplyImportMap(text, "map.toml", model, report);
  EXPECT_NE(text.find("# Its name is no UTF-8"), std::string::npos);
  // Each of them is the table of its group: a thickness below its header reaches it.
  for (std::size_t k = 0; k < names.size(); ++k) {
    ImportModel one = StiffenedPlate();
    one.groups.clear();
    AddGroup(names[k], {1}, {}, one);
    text = WriteMapTemplate(one);
    Replace("# thickness = ", "thickness = 7", text);
    ApplyImportMap(text, "map.toml", one, report);
    ASSERT_EQ(one.thicknesses.size(), 1U) << names[k];
    EXPECT_EQ(one.thicknesses[0].name, names[k]);
    EXPECT_EQ(one.shells[1].thickness, 0);
    EXPECT_EQ(one.shells[0].thickness, -1);
  }
}

}  // namespace
}  // namespace kvx::test
