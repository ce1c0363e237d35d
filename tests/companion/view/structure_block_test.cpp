// The structure on the page is the model: read back from its block, for good models of random shape
// and for broken ones.
#include "view/structure_block.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/vector3.h"
#include "deck/read_tables.h"
#include "support/good_models.h"
#include "support/page_columns.h"

namespace kvx::test {
namespace {

using korvex::ModelTables;
using korvex::test::ModelText;

ModelTables TablesOfModel(const ModelText& model) {
  ModelTables tables;
  korvex::ReadTables(WriteModel(model), {}, tables);
  return tables;
}

double Dot(const korvex::Vector3& a, const korvex::Vector3& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

PageBlock MakeBlock(const ModelTables& tables, const RowKnowledge& rows = {}) {
  BeamSections sections;
  GroupBeamSections(tables, sections);
  PageBlock block;
  AddStructure(tables, sections, rows, block);
  return block;
}

// Two plates, a triangle and three beams.
ModelText SmallModel() {
  ModelText model;
  model.materials = {{210000.0, 0.25, 0.0}, {70000.0, 0.33, 0.0}};
  model.thicknesses = {10.0, 12.0};
  model.tSections = {{200.0, 10.0, 100.0, 10.0}};
  model.lSections = {{200.0, 10.0, 100.0, 10.0}};
  model.nodes = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 0, 0.1}, {2, 1, -1e-300}};
  model.shells4 = {{{0, 1, 2, 3}, 0, 1}, {{1, 4, 5, 2}, 1, 0}};
  model.shells3 = {{{3, 2, 5}, 1, 1}};
  model.beams.resize(3);
  model.beams[1] = {1, 2, {0, 1, 5}, 1, korvex::BeamSecTypeL, 0, 2.5, 1};
  model.beams[2] = {2, 3, {0, 0, 1}, 0, korvex::BeamSecTypeT, 0, 0.0, 0};
  return model;
}

TEST(KvxStructureBlock, HasTheTables) {
  const PageBlock block = MakeBlock(TablesOfModel(SmallModel()));
  EXPECT_EQ(ReadDoubles(block, "coordinates"),
            (std::vector<double>{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 2, 0, 0.1, 2, 1, -1e-300}));
  EXPECT_EQ(ReadIntegers(block, "shells.nodes"),
            (std::vector<std::int32_t>{0, 1, 2, 3, 1, 4, 5, 2}));
  EXPECT_EQ(ReadIntegers(block, "shells.thickness"), (std::vector<std::int32_t>{1, 0}));
  EXPECT_EQ(ReadIntegers(block, "shells.material"), (std::vector<std::int32_t>{0, 1}));
  EXPECT_EQ(ReadIntegers(block, "triangles.nodes"), (std::vector<std::int32_t>{3, 2, 5}));
  EXPECT_EQ(ReadIntegers(block, "triangles.thickness"), std::vector<std::int32_t>{1});
  EXPECT_EQ(ReadIntegers(block, "triangles.material"), std::vector<std::int32_t>{1});
  EXPECT_EQ(ReadIntegers(block, "beams.nodes"), (std::vector<std::int32_t>{0, 1, 1, 2, 2, 3}));
  EXPECT_EQ(ReadIntegers(block, "beams.section"), (std::vector<std::int32_t>{0, 1, 0}));
  EXPECT_EQ(ReadIntegers(block, "beams.material"), (std::vector<std::int32_t>{0, 1, 0}));
}

// Local z is the part of the orientation vector across the beam: of <0,1,5> along y it is z.
TEST(KvxStructureBlock, HasTheDirectionsOfBeams) {
  const PageBlock block = MakeBlock(TablesOfModel(SmallModel()));
  EXPECT_EQ(ReadDoubles(block, "beams.z"), (std::vector<double>{0, 0, 1, 0, 0, 1, 0, 0, 1}));
}

TEST(KvxStructureBlock, OfRandomModelsIsTheModel) {
  for (std::uint32_t seed = 0; seed < 40; ++seed) {
    SCOPED_TRACE(seed);
    const ModelTables tables = TablesOfModel(MakeGoodModel(seed));
    const PageBlock block = MakeBlock(tables);
    EXPECT_EQ(ReadIntegers(block, "shells.nodes"), tables.Shell4Nodes);
    EXPECT_EQ(ReadIntegers(block, "triangles.nodes"), tables.Shell3Nodes);
    EXPECT_EQ(ReadIntegers(block, "beams.nodes"), tables.BeamNodes);
    const std::vector<double> z = ReadDoubles(block, "beams.z");
    ASSERT_EQ(z.size(), 3 * tables.BeamProperties.size());
    for (std::size_t b = 0; b < tables.BeamProperties.size(); ++b) {
      const korvex::Vector3 direction{z[3 * b], z[3 * b + 1], z[3 * b + 2]};
      const korvex::Node& i = tables.Nodes[static_cast<std::size_t>(tables.BeamNodes[2 * b])];
      const korvex::Node& j = tables.Nodes[static_cast<std::size_t>(tables.BeamNodes[2 * b + 1])];
      const korvex::Vector3 axis{j.x - i.x, j.y - i.y, j.z - i.z};
      constexpr double Rounding = 1e-12;  // of sums of a few products
      EXPECT_NEAR(korvex::Length(direction), 1.0, Rounding);
      EXPECT_NEAR(Dot(direction, axis) / korvex::Length(axis), 0.0, Rounding);
      EXPECT_GT(Dot(direction, tables.BeamProperties[b].orientation), 0.0);
    }
  }
}

TEST(KvxStructureBlock, GroupsBeamsByTheirSection) {
  ModelText model = SmallModel();
  model.beams[2] = model.beams[1];
  model.beams[2].BeamSecOz = std::nextafter(2.5, 3.0);  // another offset, another section
  BeamSections sections;
  GroupBeamSections(TablesOfModel(model), sections);
  EXPECT_EQ(sections.groupOfBeam, (std::vector<std::int32_t>{0, 1, 2}));
  EXPECT_EQ(sections.groups[1].BeamSecType, korvex::BeamSecTypeL);
  EXPECT_TRUE(sections.groups[1].BeamSecMirrored);
  EXPECT_EQ(sections.groups[1].BeamSecOz, 2.5);

  model.beams[0].BeamSecIndex = 1;
  model.beams[1].BeamSecType = 3;
  model.beams[2].BeamSecIndex = -1;
  GroupBeamSections(TablesOfModel(model), sections);
  EXPECT_EQ(sections.groupOfBeam, (std::vector<std::int32_t>{-1, -1, -1}));
  EXPECT_TRUE(sections.groups.empty());
}

// A node may have two rows; flags other than 1 hold nothing, as in the solver.
TEST(KvxStructureBlock, SupportsAreThoseOfTheSolver) {
  ModelText model = SmallModel();
  model.restraints = {{3, {1, 0, 0, 0, 0, 2}}, {0, {1, 1, 1, 1, 1, 1}},  {3, {0, 0, 1, 0, 0, 0}},
                      {6, {1, 1, 1, 1, 1, 1}}, {-1, {1, 1, 1, 1, 1, 1}}, {1, {0, 0, 0, 0, 0, 0}}};
  const PageBlock block = MakeBlock(TablesOfModel(model));
  EXPECT_EQ(ReadIntegers(block, "supportNodes"), (std::vector<std::int32_t>{0, 3}));
  EXPECT_EQ(ReadIntegers(block, "supportFlags"), (std::vector<std::int32_t>{63, 5}));
}

// Of wrong references nothing is drawn, but all rows keep their numbers.
TEST(KvxStructureBlock, WrongReferencesLeadNowhere) {
  ModelText model = SmallModel();
  model.shells4[0] = {{6, 1, 2, -1}, 2, -1};
  model.shells3[0] = {{100, -5, 7}, -1, 2};
  model.beams[0].node1 = 99;
  model.beams[0].material = 2;
  const PageBlock block = MakeBlock(TablesOfModel(model));
  EXPECT_EQ(ReadIntegers(block, "shells.nodes"),
            (std::vector<std::int32_t>{1, 1, 2, 1, 1, 4, 5, 2}));
  EXPECT_EQ(ReadIntegers(block, "shells.thickness"), (std::vector<std::int32_t>{-1, 0}));
  EXPECT_EQ(ReadIntegers(block, "shells.material"), (std::vector<std::int32_t>{-1, 1}));
  EXPECT_EQ(ReadIntegers(block, "triangles.nodes"), (std::vector<std::int32_t>{0, 0, 0}));
  EXPECT_EQ(ReadIntegers(block, "beams.nodes"), (std::vector<std::int32_t>{1, 1, 1, 2, 2, 3}));
  EXPECT_EQ(ReadIntegers(block, "beams.material"), (std::vector<std::int32_t>{-1, 1, 0}));
  EXPECT_TRUE(std::isnan(ReadDoubles(block, "beams.z")[0]));
}

TEST(KvxStructureBlock, PartsAreThoseOfTheFirstNode) {
  RowKnowledge rows;
  rows.partOfNode = {0, 0, 0, 0, 1, 1};
  ModelText model = SmallModel();
  model.shells4[1].nodes = {4, 5, 4, 5};
  const PageBlock block = MakeBlock(TablesOfModel(model), rows);
  EXPECT_EQ(ReadIntegers(block, "shells.part"), (std::vector<std::int32_t>{0, 1}));
  EXPECT_EQ(ReadIntegers(block, "triangles.part"), std::vector<std::int32_t>{0});
  EXPECT_EQ(ReadIntegers(block, "beams.part"), (std::vector<std::int32_t>{0, 0, 0}));
}

// Lines that follow one another need no column.
TEST(KvxStructureBlock, LinesAreThereWhereRowsDoNotFollow) {
  RowKnowledge rows;
  rows.lines[0] = {24, 25, 26, 27, 28, 29};
  rows.lines[1] = {40, 43};
  const PageBlock block = MakeBlock(TablesOfModel(SmallModel()), rows);
  EXPECT_FALSE(HasColumn(block, "lines.node"));
  EXPECT_EQ(ReadIntegers(block, "lines.shell"), (std::vector<std::int32_t>{40, 43}));
  EXPECT_FALSE(HasColumn(block, "lines.triangle"));
  EXPECT_EQ(FirstLines(rows), (std::array<std::uint32_t, PageKinds>{24, 40, 0, 0}));
}

}  // namespace
}  // namespace kvx::test
