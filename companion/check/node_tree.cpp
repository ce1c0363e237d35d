#include "check/node_tree.h"

#include <algorithm>
#include <cmath>

namespace kvx {

namespace {

constexpr std::size_t LargestLeaf = 8;

// Farther away than this no square of a length is computed without overflow.
constexpr double LargestCoordinate = 1e100;

Box BoxOf(const NodeTree& tree, std::size_t begin, std::size_t end) {
  Box box{tree.items[begin].place, tree.items[begin].place};
  for (std::size_t k = begin + 1; k < end; ++k) {
    for (std::size_t i = 0; i < 3; ++i) {
      box.low[i] = std::min(box.low[i], tree.items[k].place[i]);
      box.high[i] = std::max(box.high[i], tree.items[k].place[i]);
    }
  }
  return box;
}

std::size_t LongestAxis(const Box& box) {
  const korvex::Vector3 size = korvex::Subtract(box.high, box.low);
  return static_cast<std::size_t>(std::max_element(size.begin(), size.end()) - size.begin());
}

// Splits the items begin .. end - 1, which hang at box k, down to the leaves.
void SplitItems(NodeTree& tree, std::size_t k, std::size_t begin, std::size_t end, int level) {
  const Box box = BoxOf(tree, begin, end);
  tree.boxes[k] = box;
  if (level == tree.levels) return;
  const std::size_t axis = LongestAxis(box), middle = begin + (end - begin) / 2;
  const auto at = [&](std::size_t item) {
    return tree.items.begin() + static_cast<std::ptrdiff_t>(item);
  };
  std::nth_element(at(begin), at(middle), at(end), [axis](const TreeItem& a, const TreeItem& b) {
    return a.place[axis] < b.place[axis];
  });
  SplitItems(tree, 2 * k + 1, begin, middle, level + 1);
  SplitItems(tree, 2 * k + 2, middle, end, level + 1);
}

}  // namespace

bool HasUsablePlace(const CheckedModel& model, std::int32_t node) {
  const korvex::Vector3 place = PlaceOf(model.tables, node);
  for (const double coordinate : place) {
    // Not so for a NaN either.
    if (!(std::abs(coordinate) <= LargestCoordinate)) return false;
  }
  return !IsDoubtful(model, korvex::Section::Nodes, node) &&
         !IsLost(model, korvex::Section::Nodes, node);
}

void BuildNodeTree(const CheckedModel& model, const std::vector<std::int32_t>& nodes,
                   NodeTree& tree) {
  tree = {};
  tree.items.reserve(nodes.size());
  for (const std::int32_t node : nodes) {
    if (HasUsablePlace(model, node)) tree.items.push_back({PlaceOf(model.tables, node), node});
  }
  if (tree.items.empty()) return;
  while (((tree.items.size() - 1) >> tree.levels) + 1 > LargestLeaf) ++tree.levels;
  tree.boxes.resize((std::size_t{2} << tree.levels) - 1);
  SplitItems(tree, 0, 0, tree.items.size(), 0);
}

}  // namespace kvx
