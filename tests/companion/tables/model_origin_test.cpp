// The origin of a model: its hash, what rows are called, and a new order of the nodes.
#include "tables/model_origin.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "support/imported.h"

namespace kvx::test {
namespace {

using korvex::ModelTables;
using korvex::test::ModelText;

// A triangle 0 1 2 and a beam 1 2.
ModelText SmallModel() {
  ModelText model;
  model.materials = {{210000.0, 0.3, 0.0}};
  model.thicknesses = {10.0};
  model.tSections = {{100.0, 10.0, 60.0, 10.0}};
  model.nodes = {{0.0, 0.0, 0.0}, {1.5, 0.0, 0.0}, {0.0, -2.0, 0.1}};
  model.shells3 = {{{0, 1, 2}, 0, 0}};
  model.beams = {{1, 2}};
  return model;
}

// Worked out by a script of its own, in Python, from the words 3 (nodes), the bits of the nine
// coordinates, 0 (no four-node shells), 3 0 1 2, 2 1 2: each word w changes h to (h ^ w) times
// 1099511628211, and that to h ^ (h >> 32), modulo 2^64; h begins as 14695981039346656037.
constexpr std::uint64_t SmallHash = 0xBFE4630BD133129AU;

TEST(ModelOrigin, HashIsTheSameOnEveryMachine) {
  EXPECT_EQ(HashStructure(TablesOfText(SmallModel())), SmallHash);
}

TEST(ModelOrigin, HashSeesNodesAndElements) {
  const std::vector<std::function<void(ModelText&)>> changes{
      [](ModelText& model) { model.nodes[2][2] = 0.2; },
      [](ModelText& model) { std::swap(model.nodes[0], model.nodes[1]); },
      [](ModelText& model) {
        model.nodes.push_back({9.0, 9.0, 9.0});
      },
      [](ModelText& model) {
        model.shells3[0].nodes = {1, 2, 0};
      },
      [](ModelText& model) { model.shells3.clear(); },
      [](ModelText& model) { std::swap(model.beams[0].node1, model.beams[0].node2); },
  };
  for (std::size_t k = 0; k < changes.size(); ++k) {
    ModelText model = SmallModel();
    changes[k](model);
    EXPECT_NE(HashStructure(TablesOfText(model)), SmallHash) << k;
  }
}

TEST(ModelOrigin, HashDoesNotSeeWhatMayBeEdited) {
  ModelText model = SmallModel();
  model.materials[0] = {70000.0, 0.2, 1.0};
  model.materials.push_back({1.0, 0.0, 0.0});
  model.thicknesses = {3.0, 4.0};
  model.shells3[0].thickness = 1;
  model.beams[0].orientation = {1.0, 0.0, 0.0};
  model.beams[0].BeamSecOz = 4.0;
  model.restraints = {{0}};
  model.forces = {{1, {}}};
  model.nodes[0][0] = -0.0;
  EXPECT_EQ(HashStructure(TablesOfText(model)), SmallHash);
}

TEST(ModelOrigin, FitsItsModelAlone) {
  const ModelTables tables = TablesOfText(SmallModel());
  const ModelOrigin origin = MakeOrigin(tables);
  EXPECT_TRUE(FitsModel(origin, tables));

  ModelText moved = SmallModel();
  moved.nodes[1][0] = 1.6;
  EXPECT_FALSE(FitsModel(origin, TablesOfText(moved)));
  // The right hash, and lists of another length.
  for (const auto& shorten : std::vector<std::function<void(ModelOrigin&)>>{
           [](ModelOrigin& other) { other.nodes.pop_back(); },
           [](ModelOrigin& other) { other.shells4.numbers.push_back(1); },
           [](ModelOrigin& other) { other.shells3.numbers.clear(); },
           [](ModelOrigin& other) { other.beams.numbers.push_back(1); }}) {
    ModelOrigin other = origin;
    shorten(other);
    EXPECT_FALSE(FitsModel(other, tables));
  }
}

TEST(ModelOrigin, NamesRows) {
  ModelOrigin origin = MakeOrigin(TablesOfText(SmallModel()));
  EXPECT_EQ(OriginOfNode(origin, 0), "node 1001");
  EXPECT_EQ(OriginOfNode(origin, 2), "node 1005");
  EXPECT_EQ(OriginOfNode(origin, 3), "");
  EXPECT_EQ(OriginOfNode(origin, -1), "");
  EXPECT_EQ(OriginOfElement(origin, origin.shells3, 0), "CTRIA3 6001");
  EXPECT_EQ(OriginOfElement(origin, origin.beams, 0), "CBAR 7001");
  EXPECT_EQ(OriginOfElement(origin, origin.beams, 1), "");
  EXPECT_EQ(OriginOfElement(origin, origin.shells4, 0), "");
  EXPECT_EQ(OriginOfElement(origin, origin.beams, std::numeric_limits<std::int32_t>::min()), "");
  // Types that are not there.
  for (const std::vector<std::int32_t>& types :
       {std::vector<std::int32_t>{}, std::vector<std::int32_t>{-1}, std::vector<std::int32_t>{3}}) {
    origin.beams.types = types;
    EXPECT_EQ(OriginOfElement(origin, origin.beams, 0), "element 7001");
  }
}

TEST(ModelOrigin, HasOneWhereThereAreNodes) {
  EXPECT_FALSE(HasOrigin({}));
  EXPECT_TRUE(HasOrigin(MakeOrigin(TablesOfText(SmallModel()))));
}

// order[k] is the old row of the node at row k: the first node is the old third one.
TEST(ModelOrigin, MovesNodesWithTheirGroups) {
  ModelOrigin origin = MakeOrigin(TablesOfText(SmallModel()));
  const ModelOrigin before = origin;
  PermuteOrigin({2, 0, 1}, origin);
  EXPECT_EQ(origin.nodes, (std::vector<std::int64_t>{1005, 1001, 1003}));
  // The group "edge" held the old nodes 0 and 1; they are now at 1 and 2.
  EXPECT_EQ(origin.groups.back().nodes, (std::vector<std::int32_t>{1, 2}));
  EXPECT_EQ(origin.groups[0].shells3, before.groups[0].shells3);
  EXPECT_EQ(origin.beams.numbers, before.beams.numbers);
  EXPECT_EQ(origin.hash, before.hash);
  PermuteOrigin({1, 2, 0}, origin);
  EXPECT_EQ(origin.nodes, before.nodes);
  EXPECT_EQ(origin.groups.back().nodes, before.groups.back().nodes);
}

}  // namespace
}  // namespace kvx::test
