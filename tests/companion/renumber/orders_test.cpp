// Orders of the nodes: permutations, their cost is that of the solver's own profile, and on meshes
// whose best order is known they come near it.
#include "renumber/orders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
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
  const auto sloan = [](const SloanWeights& weights) {
    return [weights](const NodeGraph& graph) { return SloanOrder(graph, weights); };
  };
  return {
      ofGraph(GivenOrder),           ofGraph(ReverseCuthillMckee),  ofGraph(sloan(OriginalWeights)),
      ofGraph(sloan(ScaledWeights)), ofGraph(sloan({16, 1, true})), SortAlongLongestAxis};
}

void ExpectPermutation(std::vector<std::int32_t> order, std::size_t nodes) {
  std::sort(order.begin(), order.end());
  std::vector<std::int32_t> all(nodes);
  std::iota(all.begin(), all.end(), 0);
  EXPECT_EQ(order, all);
}

// The entries and the work of the solver's own profile, row by row: the columns that reach up to a
// row are counted one by one.
OrderCost CostOf(const korvex::SkylineMatrix& K) {
  OrderCost cost;
  const std::size_t n = K.ColumnHeights.size();
  std::vector<double> columns(n, 0.0);
  for (std::size_t j = 0; j < n; ++j) {
    const auto height = static_cast<std::size_t>(K.ColumnHeights[j]);
    cost.entries += static_cast<double>(height);
    for (std::size_t row = j + 1 - height; row < j; ++row) columns[row] += 1.0;
  }
  for (const double count : columns) cost.work += count * count;
  return cost;
}

TEST(Orders, ArePermutationsWithTheCostOfTheSolversProfile) {
  for (std::uint32_t seed = 0; seed < 30; ++seed) {
    SCOPED_TRACE(seed);
    const korvex::ModelTables tables = TablesOf(MakeGoodModel(seed));
    NodeGraph graph;
    BuildNodeGraph(tables, graph);
    for (const Order& find : AllOrders()) {
      const std::vector<std::int32_t> order = find(tables);
      ExpectPermutation(order, tables.Nodes.size());
      const OrderCost expected = CostOf(ProfileOf(Reordered(tables, order)));
      const OrderCost cost = MeasureOrder(graph, order);
      EXPECT_EQ(cost.entries, expected.entries);  // sums of integers: exact
      EXPECT_EQ(cost.work, expected.work);
    }
  }
}

// Random numbers for the nodes.
void Shuffle(ModelText& model) {
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
}

// A shuffled plate of n1 x n2 cells, n1 the less.
ModelText ShuffledPlate(int n1, int n2) {
  ModelText model =
      korvex::test::BuildGrid(n1, n2, korvex::test::Cells::Quads, [&](double s, double t) {
        return korvex::test::Point3{n1 * s, n2 * t, 0.0};
      });
  model.materials = {{1.0, 0.3, 1.0}};
  model.thicknesses = {0.1};
  Shuffle(model);
  return model;
}

// A ring of n cells around and m across, closed; numbered across it, or around it.
ModelText Ring(int n, int m, bool isAround) {
  ModelText model;
  model.materials = {{1.0, 0.3, 1.0}};
  model.thicknesses = {0.1};
  const double angle = 2.0 * std::acos(-1.0) / n;
  const auto place = [&](int i, int j) { return isAround ? j * n + i % n : (i % n) * (m + 1) + j; };
  model.nodes.resize(static_cast<std::size_t>(n * (m + 1)));
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j <= m; ++j) {
      model.nodes[static_cast<std::size_t>(place(i, j))] = {std::cos(i * angle),
                                                            std::sin(i * angle), 0.01 * j};
      if (j < m) {
        model.shells4.push_back(
            {{place(i, j), place(i + 1, j), place(i + 1, j + 1), place(i, j + 1)}, 0, 0});
      }
    }
  }
  return model;
}

// The walls of a box of n cells along it, w wide and h high; ring by ring, then shuffled.
ModelText ShuffledBox(int n, int w, int h) {
  const int around = 2 * (w + h);
  ModelText model = Ring(around, n, true);
  for (int j = 0; j <= n; ++j) {
    for (int i = 0; i < around; ++i) {
      const double y = std::clamp(i, 0, w) - std::clamp(i - w - h, 0, w);
      const double z = std::clamp(i - w, 0, h) - std::clamp(i - 2 * w - h, 0, h);
      model.nodes[static_cast<std::size_t>(j * around + i)] = {static_cast<double>(j), y, z};
    }
  }
  Shuffle(model);
  return model;
}

OrderCost CostOfBest(const ModelText& model) {
  const korvex::ModelTables tables = TablesOf(model);
  NodeGraph graph;
  BuildNodeGraph(tables, graph);
  BestOrder best;
  FindBestOrder(tables, graph, best);
  ExpectPermutation(best.order, tables.Nodes.size());
  EXPECT_LE(best.cost.work, best.givenCost.work);
  return best.cost;
}

TEST(Orders, UndoTheShufflingOfAPlate) {
  const korvex::ModelTables tables = TablesOf(ShuffledPlate(12, 40));
  NodeGraph graph;
  BuildNodeGraph(tables, graph);
  const double nodes = 13.0 * 41.0, band = 6.0 * 14.0 + 3.5;  // its mean column height
  EXPECT_GT(MeasureOrder(graph, GivenOrder(graph)).entries, 10.0 * nodes * 6.0 * band);
  // Both level orders bend round the corners: up to a third more than along the short side.
  EXPECT_LT(MeasureOrder(graph, ReverseCuthillMckee(graph)).entries, 1.35 * nodes * 6.0 * band);
  EXPECT_LT(MeasureOrder(graph, SloanOrder(graph, OriginalWeights)).entries,
            1.35 * nodes * 6.0 * band);
  EXPECT_LT(MeasureOrder(graph, SloanOrder(graph, ScaledWeights)).entries,
            1.35 * nodes * 6.0 * band);
  EXPECT_LE(MeasureOrder(graph, SortAlongLongestAxis(tables)).entries, nodes * 6.0 * band);
}

// Sorted along its side a square of 40 x 40 cells has 42 nodes from a node's first neighbour to it:
// a front of 42 nodes, and a mean column of 6 x 42 + 3.5 entries.
TEST(Orders, FindTheBandOfAShuffledSquare) {
  const OrderCost cost = CostOfBest(ShuffledPlate(40, 40));
  EXPECT_LE(cost.entries, 41.0 * 41.0 * 6.0 * (6.0 * 42.0 + 3.5));
  EXPECT_LE(cost.work, 41.0 * 41.0 * 6.0 * std::pow(6.0 * 42.0 + 2.5, 2.0));
}

// A ring is numbered along both halves at once: twice its width of 5 nodes, and one node on each
// side that the last row has begun. Around it the band would be 200 nodes.
TEST(Orders, TakeBothHalvesOfARingAtOnce) {
  for (const bool isAround : {false, true}) {
    const OrderCost cost = CostOfBest(Ring(200, 4, isAround));
    EXPECT_LE(cost.entries, 200.0 * 5.0 * 6.0 * (6.0 * (2.0 * 5.0 + 2.0) + 3.5));
  }
}

// A box 3 wide and 2 high has 10 nodes around it. Ring by ring, a column reaches over the 10 of the
// ring before, and the one that closes the ring over 9 more: (9 x 11 + 19) / 10 nodes on the mean.
TEST(Orders, GoAlongABoxGirder) {
  const OrderCost cost = CostOfBest(ShuffledBox(60, 3, 2));
  EXPECT_LE(cost.entries, 61.0 * 10.0 * 6.0 * (6.0 * 11.8 + 3.5));
}

// Three plates apart, and nodes of no element between and behind them.
TEST(Orders, TakeComponentsOneAfterTheOther) {
  ModelText model = ShuffledPlate(4, 9);
  const ModelText plate = model;
  for (int copy = 0; copy < 2; ++copy) {
    model.nodes.push_back({-1.0 - copy, 0.0, 0.0});
    const int first = static_cast<int>(model.nodes.size());
    model.nodes.insert(model.nodes.end(), plate.nodes.begin(), plate.nodes.end());
    for (auto shell : plate.shells4) {
      for (int& node : shell.nodes) node += first;
      model.shells4.push_back(shell);
    }
  }
  model.nodes.push_back({7.0, 7.0, 7.0});
  Shuffle(model);
  const korvex::ModelTables tables = TablesOf(model);
  NodeGraph graph;
  BuildNodeGraph(tables, graph);
  for (const Order& find : AllOrders()) ExpectPermutation(find(tables), tables.Nodes.size());
  const double one = CostOfBest(ShuffledPlate(4, 9)).work;
  // A node alone has six columns of height 1 to 6 and the work 5^2 + .. + 0.
  const double alone = 55.0;
  EXPECT_LE(MeasureOrder(graph, ReverseCuthillMckee(graph)).work, 3.0 * 1.6 * one + 3.0 * alone);
  EXPECT_LE(MeasureOrder(graph, SloanOrder(graph, OriginalWeights)).work,
            3.0 * 1.6 * one + 3.0 * alone);
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
  korvex::ModelTables tables = TablesOf(ShuffledPlate(12, 40));
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
