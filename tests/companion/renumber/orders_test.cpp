// Orders of the nodes: permutations, their cost is that of the solver's own profile, and on meshes
// whose best order is known they come near it.
#include "renumber/orders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <numeric>

#include "deck/read_tables.h"
#include "model/model.h"
#include "support/good_models.h"
#include "support/shell_mesh.h"
#include "system/profile.h"

namespace kvx::test {
namespace {

using korvex::test::ModelText;

korvex::ModelTables TablesOf(const ModelText& text) {
  korvex::ModelTables tables;
  korvex::ReadTables(korvex::test::WriteModel(text), {}, tables);
  return tables;
}

// The tables with the nodes in this order.
korvex::ModelTables Reordered(const korvex::ModelTables& tables,
                              const std::vector<std::int32_t>& order) {
  korvex::ModelTables moved = tables;
  const std::vector<std::int32_t> places = InvertOrder(order);
  const auto move = [&](std::vector<std::int32_t>& nodes) {
    for (std::int32_t& node : nodes) node = places[static_cast<std::size_t>(node)];
  };
  move(moved.Shell4Nodes);
  move(moved.Shell3Nodes);
  move(moved.BeamNodes);
  return moved;
}

korvex::SkylineMatrix ProfileOf(const korvex::ModelTables& tables) {
  korvex::Model model;
  model.Tables = tables;
  korvex::NumberEquations(model);
  korvex::BuildProfile(model);
  return model.Stiffness;
}

using Order = std::function<std::vector<std::int32_t>(const korvex::ModelTables&)>;

std::vector<Order> AllOrders() {
  const auto ofGraph = [](auto order) {
    return [order](const korvex::ModelTables& tables) {
      NodeGraph graph;
      BuildNodeGraph(tables, graph);
      return order(graph);
    };
  };
  return {ofGraph(GivenOrder), ofGraph(ReverseCuthillMckee), ofGraph(SloanOrder),
          SortAlongLongestAxis};
}

TEST(Orders, ArePermutationsWithTheCostOfTheSolversProfile) {
  for (std::uint32_t seed = 0; seed < 30; ++seed) {
    const korvex::ModelTables tables = TablesOf(MakeGoodModel(seed));
    NodeGraph graph;
    BuildNodeGraph(tables, graph);
    for (const Order& find : AllOrders()) {
      const std::vector<std::int32_t> order = find(tables);
      std::vector<std::int32_t> sorted = order;
      std::sort(sorted.begin(), sorted.end());
      std::vector<std::int32_t> all(tables.Nodes.size());
      std::iota(all.begin(), all.end(), 0);
      ASSERT_EQ(sorted, all) << "seed " << seed;
      const korvex::SkylineMatrix K = ProfileOf(Reordered(tables, order));
      double entries = 0.0, work = 0.0;
      for (const double height : K.ColumnHeights) {
        entries += height;
        work += height * height;
      }
      const OrderCost cost = MeasureOrder(graph, order);
      EXPECT_EQ(cost.entries, entries) << "seed " << seed;  // sums of integers: exact
      EXPECT_EQ(cost.work, work) << "seed " << seed;
    }
  }
}

// A shuffled plate of 12 x 40 cells. Numbered along its short side, a node's first neighbour
// stands 14 places before it.
ModelText ShuffledPlate() {
  ModelText model =
      korvex::test::BuildGrid(12, 40, korvex::test::Cells::Quads, [](double s, double t) {
        return korvex::test::Point3{12.0 * s, 40.0 * t, 0.0};
      });
  model.materials = {{1.0, 0.3, 1.0}};
  model.thicknesses = {0.1};
  Dice dice = MakeDice(7);
  std::vector<int> places(model.nodes.size());
  std::iota(places.begin(), places.end(), 0);
  for (std::size_t k = places.size(); k-- > 1;) {
    std::swap(places[k],
              places[static_cast<std::size_t>(RollInteger(dice, 0, static_cast<int>(k)))]);
  }
  const auto nodes = model.nodes;
  for (std::size_t k = 0; k < nodes.size(); ++k) {
    model.nodes[static_cast<std::size_t>(places[k])] = nodes[k];
  }
  for (auto& shell : model.shells4) {
    for (int& node : shell.nodes) node = places[static_cast<std::size_t>(node)];
  }
  return model;
}

TEST(Orders, UndoTheShufflingOfAPlate) {
  const korvex::ModelTables tables = TablesOf(ShuffledPlate());
  NodeGraph graph;
  BuildNodeGraph(tables, graph);
  const double nodes = 13.0 * 41.0, band = 6.0 * 14.0 + 3.5;  // its mean column height
  EXPECT_GT(MeasureOrder(graph, GivenOrder(graph)).entries, 10.0 * nodes * 6.0 * band);
  // Both level orders bend round the corners: up to a third more than along the short side.
  EXPECT_LT(MeasureOrder(graph, ReverseCuthillMckee(graph)).entries, 1.35 * nodes * 6.0 * band);
  EXPECT_LT(MeasureOrder(graph, SloanOrder(graph)).entries, 1.35 * nodes * 6.0 * band);
  EXPECT_LE(MeasureOrder(graph, SortAlongLongestAxis(tables)).entries, nodes * 6.0 * band);
}

TEST(Orders, TheBestIsNeverWorseThanTheGivenOne) {
  for (std::uint32_t seed = 0; seed < 30; ++seed) {
    const korvex::ModelTables tables = TablesOf(MakeGoodModel(seed));
    NodeGraph graph;
    BuildNodeGraph(tables, graph);
    BestOrder best;
    FindBestOrder(tables, graph, best);
    EXPECT_LE(best.cost.work, best.givenCost.work);
    EXPECT_EQ(MeasureOrder(graph, best.order).work, best.cost.work);
  }
}

// References outside the table, no nodes, coordinates that are not numbers: nothing breaks.
TEST(Orders, TakeAnyTables) {
  const korvex::ModelTables empty;
  NodeGraph graph;
  BuildNodeGraph(empty, graph);
  BestOrder best;
  FindBestOrder(empty, graph, best);
  EXPECT_TRUE(best.order.empty());
  korvex::ModelTables tables = TablesOf(ShuffledPlate());
  tables.Shell4Nodes[5] = -7;
  tables.Shell4Nodes[9] = 1000000;
  tables.Nodes[3].x = std::numeric_limits<double>::quiet_NaN();
  tables.Nodes[4].y = std::numeric_limits<double>::infinity();
  BuildNodeGraph(tables, graph);
  FindBestOrder(tables, graph, best);
  EXPECT_EQ(best.order.size(), tables.Nodes.size());
}

}  // namespace
}  // namespace kvx::test
