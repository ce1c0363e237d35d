// Loads taken out of model files, scaled, added, and put behind another structure.
#include "cases/load_tables.h"

#include <gtest/gtest.h>

#include "deck/read_tables.h"
#include "deck/write_tables.h"
#include "support/expect_stop.h"
#include "support/good_models.h"

namespace kvx::test {
namespace {

using korvex::ModelTables;

ModelTables Read(const std::string& text) {
  ModelTables tables;
  korvex::ReadTables(text, {}, tables);
  return tables;
}

const std::string Loads =
    "Number of forces:NFOR=1\n"
    "3<1,2,3,4,5,6>\n"
    "Number of distributed loads on four-nodes shell elements:NDL_S_4ND=2\n"
    "5:0.5,1,2\n"
    "6:3,3,3\n"
    "Number of distributed loads on three-nodes shell elements:NDL_S_3ND=1\n"
    "7:1,0,0\n"
    "Number of distributed loads on beam elements:NDL_B=1\n"
    "8:-1,-2\n";

void ExpectLoads(const ModelTables& tables) {
  ASSERT_EQ(tables.NFOR, 1);
  ASSERT_EQ(tables.NDL_S_4ND, 2);
  ASSERT_EQ(tables.NDL_S_3ND, 1);
  ASSERT_EQ(tables.NDL_B, 1);
  EXPECT_EQ(tables.NodalForces[0].components, (std::array<double, 6>{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(tables.Shell4SurfaceLoads[1].element, 6);
  EXPECT_EQ(tables.Shell3SurfaceLoads[0].q, (std::array<double, 3>{1, 0, 0}));
  EXPECT_EQ(tables.BeamLineLoads[0].q, (std::array<double, 2>{-1, -2}));
}

TEST(LoadTables, AreReadFromSectionsAlone) {
  for (const std::string before : {"", "\n  \n", "\xEF\xBB\xBF"}) {
    LoadText isolated;
    IsolateLoads(before + Loads, isolated);
    ExpectLoads(Read(isolated.text));
    EXPECT_EQ(isolated.skippedLines, before == "\n  \n" ? 2U : 0U);
    const std::string first = isolated.text.substr(0, isolated.text.find(":NFOR"));
    EXPECT_EQ(std::count(first.begin(), first.end(), '\n'),
              static_cast<std::ptrdiff_t>(isolated.emptyLines));
  }
}

TEST(LoadTables, AreReadFromAWholeModel) {
  const std::string model = korvex::test::WriteModel(MakeGoodModel(3));
  const std::string before = model.substr(0, model.find("Number of forces"));
  LoadText isolated;
  IsolateLoads(before + Loads, isolated);
  const ModelTables tables = Read(isolated.text);
  ExpectLoads(tables);
  EXPECT_EQ(tables.NPOIN, 0);
  EXPECT_EQ(isolated.skippedLines,
            static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')));
}

TEST(LoadTables, AreNothingElse) {
  const std::string form =
      ": a file of loads begins with \"Number of forces:NFOR=...\", or is a whole model file.";
  LoadText isolated;
  const auto expect = [&](const std::string& text, const std::string& line) {
    korvex::test::ExpectStop([&] { IsolateLoads(text, isolated); }, "line " + line + form);
  };
  expect("", "1");
  expect("\n\nnode,Fx\n" + Loads, "3");
  expect("### Toln_Korvex release=3.0 ###\n", "1");
  expect("Number of materials:NMT=0\n" + Loads, "1");
}

TEST(LoadTables, AreScaledAndAdded) {
  LoadText isolated;
  IsolateLoads(Loads, isolated);
  const ModelTables loads = Read(isolated.text);
  ModelTables sum;
  AddScaledLoads(loads, 2.0, sum);
  AddScaledLoads(loads, -0.5, sum);
  ASSERT_EQ(sum.NFOR, 2);
  ASSERT_EQ(sum.NDL_S_4ND, 4);
  ASSERT_EQ(sum.NDL_S_3ND, 2);
  ASSERT_EQ(sum.NDL_B, 2);
  EXPECT_EQ(sum.NodalForces[0].components, (std::array<double, 6>{2, 4, 6, 8, 10, 12}));
  EXPECT_EQ(sum.NodalForces[1].components, (std::array<double, 6>{-0.5, -1, -1.5, -2, -2.5, -3}));
  EXPECT_EQ(sum.NodalForces[1].node, 3);
  EXPECT_EQ(sum.Shell4SurfaceLoads[2].element, 5);
  EXPECT_EQ(sum.Shell4SurfaceLoads[2].q, (std::array<double, 3>{-0.25, -0.5, -1}));
  EXPECT_EQ(sum.Shell3SurfaceLoads[0].q, (std::array<double, 3>{2, 0, 0}));
  EXPECT_EQ(sum.BeamLineLoads[1].q, (std::array<double, 2>{0.5, 1}));
  EXPECT_TRUE(HasLoads(sum));
  ModelTables none;
  SwapLoads(none, sum);
  EXPECT_FALSE(HasLoads(sum));
  EXPECT_EQ(korvex::WriteTables(sum), korvex::WriteTables({}));
}

// Each table alone makes loads.
TEST(LoadTables, AreSeenInEachTable) {
  for (int kind = 0; kind < 4; ++kind) {
    ModelTables tables;
    if (kind == 0) tables.NodalForces = {{}};
    if (kind == 1) tables.Shell4SurfaceLoads = {{}};
    if (kind == 2) tables.Shell3SurfaceLoads = {{}};
    if (kind == 3) tables.BeamLineLoads = {{}};
    EXPECT_TRUE(HasLoads(tables)) << kind;
    ModelTables other;
    SwapLoads(tables, other);
    EXPECT_TRUE(HasLoads(other)) << kind;
    EXPECT_FALSE(HasLoads(tables)) << kind;
  }
}

// The structure keeps its bytes, the loads their bits.
TEST(LoadTables, AreComposedWithAStructure) {
  for (std::uint32_t seed = 0; seed < 10; ++seed) {
    const std::string structure = korvex::test::WriteModel(MakeGoodModel(seed));
    ModelTables loads;
    AddScaledLoads(Read(korvex::test::WriteModel(MakeGoodModel(seed + 100))), 1.0 / 3.0, loads);
    const std::string composed = ComposeModelText(structure, loads);
    const std::size_t begin = structure.find("Number of forces");
    EXPECT_EQ(composed.substr(0, begin), structure.substr(0, begin));
    ModelTables expected = Read(structure);
    ModelTables none;
    SwapLoads(none, expected);
    AddScaledLoads(loads, 1.0, expected);
    EXPECT_EQ(korvex::WriteTables(Read(composed)), korvex::WriteTables(expected));
  }
  korvex::test::ExpectStop([&] { ComposeModelText("### Toln", {}); },
                           "the structure has no line \"Number of forces:NFOR=...\".");
}

}  // namespace
}  // namespace kvx::test
