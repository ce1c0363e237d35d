#include "sparse/factor_size.h"

#include <algorithm>

#include "renumber/order_cost.h"

namespace kvx {

namespace {

using Places = std::vector<std::int32_t>;

std::size_t At(std::int32_t place) { return static_cast<std::size_t>(place); }

// The graph by places: take(other) for the neighbours of the node at a place.
struct OrderedGraph {
  const NodeGraph& graph;
  const Places& order;
  Places places;

  template <typename Take>
  void ForNeighbours(std::int32_t place, const Take& take) const {
    const std::size_t node = At(order[At(place)]);
    for (std::int64_t k = graph.begins[node]; k < graph.begins[node + 1]; ++k) {
      take(places[At(graph.neighbours[static_cast<std::size_t>(k)])]);
    }
  }
};

// parents[i]: the first row below the diagonal of column i; -1: none. With shortened paths.
void FindParents(const OrderedGraph& ordered, Places& parents) {
  const auto count = static_cast<std::int32_t>(ordered.order.size());
  parents.assign(ordered.order.size(), -1);
  Places ancestors(ordered.order.size(), -1);
  for (std::int32_t i = 0; i < count; ++i) {
    ordered.ForNeighbours(i, [&](std::int32_t j) {
      while (j >= 0 && j < i) {
        const std::int32_t next = ancestors[At(j)];
        ancestors[At(j)] = i;
        if (next < 0) parents[At(j)] = i;
        j = next;
      }
    });
  }
}

// The tree in an order where each subtree is one piece that ends with its root.
Places FindPostorder(const Places& parents) {
  const auto count = static_cast<std::int32_t>(parents.size());
  Places heads(parents.size(), -1), nexts(parents.size(), -1), stack, postorder;
  for (std::int32_t i = count - 1; i >= 0; --i) {
    if (parents[At(i)] < 0) continue;
    nexts[At(i)] = heads[At(parents[At(i)])];
    heads[At(parents[At(i)])] = i;
  }
  postorder.reserve(parents.size());
  for (std::int32_t root = 0; root < count; ++root) {
    if (parents[At(root)] >= 0) continue;
    stack.push_back(root);
    while (!stack.empty()) {
      const std::int32_t i = stack.back();
      const std::int32_t child = heads[At(i)];
      if (child >= 0) {
        heads[At(i)] = nexts[At(child)];
        stack.push_back(child);
      } else {
        postorder.push_back(i);
        stack.pop_back();
      }
    }
  }
  return postorder;
}

// What is known of the row subtrees while the columns are gone through in postorder.
struct RowSubtrees {
  Places firsts;     // the first descendant of a column, as its place in the postorder
  Places lastFirst;  // of a row: that of its last leaf
  Places lastLeaf;   // of a row
  Places ancestors;  // for the least common ones, with shortened paths
};

std::int32_t FindAncestor(std::int32_t i, Places& ancestors) {
  std::int32_t root = i;
  while (ancestors[At(root)] != root) root = ancestors[At(root)];
  while (i != root) {
    const std::int32_t next = ancestors[At(i)];
    ancestors[At(i)] = root;
    i = next;
  }
  return root;
}

// Column j in row i: a leaf of the row's subtree adds the row from j on, and takes it away where
// its path meets that of the leaf before.
void CountLeaf(std::int32_t i, std::int32_t j, std::int64_t weight, RowSubtrees& rows,
               std::vector<std::int64_t>& lengths) {
  if (i <= j || rows.firsts[At(j)] <= rows.lastFirst[At(i)]) return;
  rows.lastFirst[At(i)] = rows.firsts[At(j)];
  const std::int32_t before = rows.lastLeaf[At(i)];
  rows.lastLeaf[At(i)] = j;
  lengths[At(j)] += weight;
  if (before >= 0) lengths[At(FindAncestor(before, rows.ancestors))] -= weight;
}

void FindFirsts(const Places& parents, const Places& postorder, const std::vector<std::int64_t>& w,
                RowSubtrees& rows, std::vector<std::int64_t>& lengths) {
  rows.firsts.assign(parents.size(), -1);
  for (std::size_t k = 0; k < postorder.size(); ++k) {
    std::int32_t j = postorder[k];
    if (rows.firsts[At(j)] < 0) lengths[At(j)] = w[At(j)];  // a leaf of the tree
    for (; j >= 0 && rows.firsts[At(j)] < 0; j = parents[At(j)]) {
      rows.firsts[At(j)] = static_cast<std::int32_t>(k);
    }
  }
}

// w: dofs by places. lengths: of each place's first column.
void CountColumns(const OrderedGraph& ordered, const Places& parents, const Places& postorder,
                  const std::vector<std::int64_t>& w, std::vector<std::int64_t>& lengths) {
  lengths.assign(parents.size(), 0);
  RowSubtrees rows;
  FindFirsts(parents, postorder, w, rows, lengths);
  rows.lastFirst.assign(parents.size(), -1);
  rows.lastLeaf.assign(parents.size(), -1);
  rows.ancestors.resize(parents.size());
  for (std::size_t i = 0; i < parents.size(); ++i) rows.ancestors[i] = static_cast<std::int32_t>(i);
  for (const std::int32_t j : postorder) {
    const std::int32_t parent = parents[At(j)];
    if (parent >= 0) lengths[At(parent)] -= w[At(j)];
    ordered.ForNeighbours(j, [&](std::int32_t i) { CountLeaf(i, j, w[At(i)], rows, lengths); });
    if (parent >= 0) rows.ancestors[At(j)] = parent;
  }
  for (std::size_t j = 0; j < parents.size(); ++j) {  // a parent stands behind its children
    if (parents[j] >= 0) lengths[At(parents[j])] += lengths[j];
  }
}

// Entries of the node's columns, at most 6.
double CountEntries(std::int64_t length, std::int64_t w) {
  const std::int64_t above = w * (w - 1) / 2;
  return static_cast<double>(w * length - above);
}

// Contributions wait until their parent's front takes them. A chain of nodes that is one front in
// truth leaves only its last contribution here, too.
void FindPeaks(const Places& parents, const Places& postorder, const std::vector<std::int64_t>& w,
               FactorSize& size) {
  const auto contribution = [&](std::int32_t i) {
    const auto rows = static_cast<double>(size.lengths[At(i)] - w[At(i)]);
    return 0.5 * rows * (rows + 1.0);
  };
  std::vector<double> waiting(parents.size(), 0.0);
  double stack = 0.0, done = 0.0;
  for (const std::int32_t i : postorder) {
    const auto rows = static_cast<double>(size.lengths[At(i)]);
    size.stack = std::max(size.stack, stack + rows * rows);
    size.peak = std::max(size.peak, done + stack + rows * rows);
    stack += contribution(i) - waiting[At(i)];
    done += CountEntries(size.lengths[At(i)], w[At(i)]);
    if (parents[At(i)] >= 0) waiting[At(parents[At(i)])] += contribution(i);
  }
}

}  // namespace

void MeasureFactor(const NodeGraph& graph, const std::vector<std::int32_t>& dofs,
                   const std::vector<std::int32_t>& order, FactorSize& size) {
  const OrderedGraph ordered{graph, order, InvertOrder(order)};
  std::vector<std::int64_t> w(order.size());
  for (std::size_t k = 0; k < order.size(); ++k) w[k] = dofs[At(order[k])];
  Places parents;
  FindParents(ordered, parents);
  const Places postorder = FindPostorder(parents);
  size = {};
  CountColumns(ordered, parents, postorder, w, size.lengths);
  for (std::size_t k = 0; k < w.size(); ++k) {
    size.front = std::max(size.front, static_cast<double>(size.lengths[k]));
    size.entries += CountEntries(size.lengths[k], w[k]);
    for (std::int64_t d = 0; d < w[k]; ++d) {
      const auto length = static_cast<double>(size.lengths[k] - d);
      size.flops += length * length;
    }
  }
  FindPeaks(parents, postorder, w, size);
}

}  // namespace kvx
