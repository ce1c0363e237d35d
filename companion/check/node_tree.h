// A tree of boxes over nodes, to find the nodes in a region.
//
// The nodes are halved at the median of the axis along which they reach farthest, level by level
// (Bentley 1975), until eight or fewer are left. So the tree is balanced whatever the places are:
// strongly graded meshes, all nodes at one place, an axis without extent. Nodes without a known
// place are left out. Building takes n log n, 60 bytes a node.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "check/checked_model.h"

namespace kvx {

struct Box {
  korvex::Vector3 low{}, high{};
};

struct TreeItem {
  korvex::Vector3 place{};
  std::int32_t node = 0;
};

struct NodeTree {
  std::vector<TreeItem> items;  // [n] leaf after leaf
  std::vector<Box> boxes;       // [2^(levels + 1) - 1]; the children of k are 2 k + 1 and 2 k + 2
  int levels = 0;               // splits between the root and each leaf
};

// Whether the node's coordinates are known and of a size that can be computed with.
bool HasUsablePlace(const CheckedModel& model, std::int32_t node);

// nodes: what the tree is to hold; those without a usable place are left out.
void BuildNodeTree(const CheckedModel& model, const std::vector<std::int32_t>& nodes,
                   NodeTree& tree);

// Calls visit(item) for all nodes of the leaves that the region meets: all nodes in the region, and
// some beside it. meets(box): whether the region has points in the box.
template <typename Meets, typename Visit>
void VisitLeaves(const NodeTree& tree, const Meets& meets, const Visit& visit) {
  struct Branch {
    std::size_t box, begin, end;
    int level;
  };
  // One branch waits at each level, and there are fewer levels than bits.
  std::array<Branch, 64> waiting;
  std::size_t count = 0;
  if (!tree.items.empty()) waiting[count++] = {0, 0, tree.items.size(), 0};
  while (count > 0) {
    const Branch at = waiting[--count];
    if (!meets(tree.boxes[at.box])) continue;
    if (at.level == tree.levels) {
      for (std::size_t k = at.begin; k < at.end; ++k) visit(tree.items[k]);
      continue;
    }
    const std::size_t middle = at.begin + (at.end - at.begin) / 2;
    waiting[count++] = {2 * at.box + 2, middle, at.end, at.level + 1};
    waiting[count++] = {2 * at.box + 1, at.begin, middle, at.level + 1};
  }
}

// Calls visit(item) for all nodes within `radius` of the point.
template <typename Visit>
void VisitNear(const NodeTree& tree, const korvex::Vector3& point, double radius,
               const Visit& visit) {
  const auto meets = [&](const Box& box) {
    for (std::size_t i = 0; i < 3; ++i) {
      if (point[i] < box.low[i] - radius || point[i] > box.high[i] + radius) return false;
    }
    return true;
  };
  VisitLeaves(tree, meets, [&](const TreeItem& item) {
    if (korvex::Length(korvex::Subtract(item.place, point)) <= radius) visit(item);
  });
}

}  // namespace kvx
