// The factor's size against a factorisation of the pattern by brute force.
#include "sparse/factor_size.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <set>

#include "sparse/node_order.h"
#include "sparse/sparse_factor.h"
#include "support/good_models.h"

namespace kvx::test {
namespace {

using Order = std::vector<std::int32_t>;
using Neighbours = std::vector<std::set<std::int32_t>>;

NodeGraph MakeGraph(const Neighbours& sets) {
  NodeGraph graph;
  graph.begins.push_back(0);
  for (const std::set<std::int32_t>& set : sets) {
    graph.neighbours.insert(graph.neighbours.end(), set.begin(), set.end());
    graph.begins.push_back(static_cast<std::int64_t>(graph.neighbours.size()));
  }
  return graph;
}

Neighbours RollGraph(Dice& dice, int nodes, int edges) {
  Neighbours sets(static_cast<std::size_t>(nodes));
  for (int k = 0; k < edges; ++k) {
    const int a = RollInteger(dice, 0, nodes - 1), b = RollInteger(dice, 0, nodes - 1);
    if (a == b) continue;
    sets[static_cast<std::size_t>(a)].insert(b);
    sets[static_cast<std::size_t>(b)].insert(a);
  }
  return sets;
}

// Eliminates node after node: its later neighbours become neighbours of each other. Lengths by
// places, in dofs.
std::vector<std::int64_t> EliminateAll(Neighbours sets, const Order& dofs, const Order& order) {
  std::vector<std::int64_t> lengths;
  for (const std::int32_t node : order) {
    const std::set<std::int32_t> later = sets[static_cast<std::size_t>(node)];
    std::int64_t length = dofs[static_cast<std::size_t>(node)];
    for (const std::int32_t a : later) {
      std::set<std::int32_t>& own = sets[static_cast<std::size_t>(a)];
      own.insert(later.begin(), later.end());
      own.erase(a);
      own.erase(node);
      length += dofs[static_cast<std::size_t>(a)];
    }
    lengths.push_back(length);
  }
  return lengths;
}

Order Shuffle(Dice& dice, int count) {
  Order order(static_cast<std::size_t>(count));
  std::iota(order.begin(), order.end(), 0);
  for (int k = count - 1; k > 0; --k) {
    std::swap(order[static_cast<std::size_t>(k)],
              order[static_cast<std::size_t>(RollInteger(dice, 0, k))]);
  }
  return order;
}

TEST(FactorSize, EqualsEliminationByHand) {
  for (std::uint32_t seed = 0; seed < 200; ++seed) {
    SCOPED_TRACE(seed);
    Dice dice = MakeDice(seed);
    const int nodes = RollInteger(dice, 1, 40);
    const Neighbours sets = RollGraph(dice, nodes, RollInteger(dice, 0, 3 * nodes));
    Order dofs;
    for (int k = 0; k < nodes; ++k) dofs.push_back(RollInteger(dice, 1, 6));
    const Order order = Shuffle(dice, nodes);
    FactorSize size;
    MeasureFactor(MakeGraph(sets), dofs, order, size);
    const std::vector<std::int64_t> expected = EliminateAll(sets, dofs, order);
    EXPECT_EQ(size.lengths, expected);
    double entries = 0.0, flops = 0.0;
    for (std::size_t k = 0; k < expected.size(); ++k) {
      for (int d = 0; d < dofs[static_cast<std::size_t>(order[k])]; ++d) {
        const auto length = static_cast<double>(expected[k] - d);
        entries += length;
        flops += length * length;
      }
    }
    EXPECT_EQ(size.entries, entries);
    EXPECT_EQ(size.flops, flops);
    // The last front at least is there; a peak holds what has been done before.
    EXPECT_GE(size.stack, size.front * size.front);
    EXPECT_GE(size.peak, size.stack);
  }
}

// A chain in its order: fronts of two nodes with two dofs each, and one that waits. At the last
// node but one there are 3 x 7 entries of L done, and the front of 4 x 4 in work.
TEST(FactorSize, KnowsTheStackOfAChain) {
  const NodeGraph chain = MakeGraph({{1}, {0, 2}, {1, 3}, {2, 4}, {3}});
  FactorSize size;
  MeasureFactor(chain, {2, 2, 2, 2, 2}, {0, 1, 2, 3, 4}, size);
  EXPECT_EQ(size.entries, 4 * 7 + 3);
  EXPECT_EQ(size.front, 4);
  EXPECT_EQ(size.stack, 16 + 3);
  EXPECT_EQ(size.peak, 21 + 16 + 3);
}

TEST(NodeOrder, IsAPermutationThatKeepsDofsOfANodeTogether) {
  if (!HasSparseEngine()) GTEST_SKIP() << NoSparseEngine;
  Dice dice = MakeDice(1);
  for (const int edges : {0, 50, 2000}) {
    const NodeGraph graph = MakeGraph(RollGraph(dice, 400, edges));
    Order order;
    FindSparseOrder(graph, order);
    Order sorted = order;
    std::sort(sorted.begin(), sorted.end());
    for (int k = 0; k < 400; ++k) ASSERT_EQ(sorted[static_cast<std::size_t>(k)], k);
  }
}

// A plate of n x n nodes, each coupled with those of the shells around it. numbers[j * n + i]: of
// the node at (i, j).
Neighbours MakePlate(int n, const Order& numbers) {
  Neighbours sets(numbers.size());
  const auto numberOf = [&](int i, int j) {
    return numbers[static_cast<std::size_t>(j) * static_cast<std::size_t>(n) +
                   static_cast<std::size_t>(i)];
  };
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < n; ++i) {
      for (const int b : {std::max(j - 1, 0), j, std::min(j + 1, n - 1)}) {
        for (const int a : {std::max(i - 1, 0), i, std::min(i + 1, n - 1)}) {
          if (a != i || b != j)
            sets[static_cast<std::size_t>(numberOf(i, j))].insert(numberOf(a, b));
        }
      }
    }
  }
  return sets;
}

FactorSize SizeOf(const NodeGraph& graph, const Order& order) {
  FactorSize size;
  MeasureFactor(graph, Order(order.size(), 1), order, size);
  return size;
}

// By George's nested dissection the factor of a plate of n x n nodes has 31/4 n^2 log2 n entries,
// and its factorisation takes 829/84 n^3 products, to first order (George & Liu 1981, sec. 8.1);
// squares of column lengths count twice. Lower terms are negative: at n = 95 some 0.6 and 0.9 of
// these are left. The band of the mesh's own order has n^3 entries, and a plate with shuffled
// numbers far more.
TEST(NodeOrder, FillsAPlateAsNestedDissectionDoes) {
  if (!HasSparseEngine()) GTEST_SKIP() << NoSparseEngine;
  constexpr int N = 95;
  constexpr double n = N;
  Dice dice = MakeDice(2);
  const NodeGraph graph = MakeGraph(MakePlate(N, Shuffle(dice, N * N)));
  Order order, given(static_cast<std::size_t>(N) * N);
  FindSparseOrder(graph, order);
  std::iota(given.begin(), given.end(), 0);
  const FactorSize size = SizeOf(graph, order), shuffled = SizeOf(graph, given);
  const double entries = 31.0 / 4.0 * n * n * std::log2(n);
  const double squares = 2.0 * 829.0 / 84.0 * n * n * n;
  EXPECT_LT(size.entries, 0.8 * entries);
  EXPECT_GT(size.entries, 0.4 * entries);
  EXPECT_LT(size.flops, 1.2 * squares);
  EXPECT_GT(size.flops, 0.6 * squares);
  EXPECT_LT(size.entries, n * n * n / 2.0);
  EXPECT_GT(shuffled.entries, 20.0 * size.entries);
  EXPECT_GT(shuffled.flops, 1000.0 * size.flops);
}

TEST(NodeOrder, PlacesTheFreeDofs) {
  FreeGraph free;
  free.dofs = {2, 1, 3};
  EXPECT_EQ(PlaceFreeDofs(free, {1, 2, 0}), (Order{4, 5, 0, 1, 2, 3}));
}

// Node 1 is fixed: the others are no neighbours through it.
TEST(NodeOrder, LeavesFixedNodesOut) {
  const NodeGraph graph = MakeGraph({{1}, {0, 2}, {1}});
  FreeDofs dofs;
  dofs.equations = {0, 1, 2, 3, 4, 5, 14};
  FreeGraph free;
  BuildFreeGraph(graph, dofs, free);
  EXPECT_EQ(free.nodes, (Order{0, 2}));
  EXPECT_EQ(free.dofs, (Order{6, 1}));
  EXPECT_TRUE(free.graph.neighbours.empty());
}

}  // namespace
}  // namespace kvx::test
