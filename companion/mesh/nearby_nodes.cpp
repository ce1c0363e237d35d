// Space is divided into cubic cells. Those that stay are more than the length apart, so that a cell
// holds some hundred of them at most, and what is near a node lies in at most two cells along each
// axis.
#include "mesh/nearby_nodes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

#include "base/vector3.h"

namespace kvx {

namespace {

using korvex::Vector3;

// Numbers of a cell along x, y, z, whole, as doubles: where they are so large that their neighbours
// are not one apart, so are the coordinates, and nodes are near only at the same one.
using Cell = std::array<double, 3>;

// A cell's size over the length: with larger cells fewer are looked at, with more nodes in each.
constexpr double CellLengths = 4.0;

// Up to 1e18 a coordinate over this is finite: beyond, the coordinate itself stands for its cell.
constexpr double SmallestCell = 1e-290;

// Cells begin at odd places: coordinates of meshes are often round numbers, and a node on the
// border of its cell needs a look into the next one.
constexpr double CellShift = 0.4142;

// Cells are looked at a little farther than the length, because distances are rounded.
constexpr double Farther = 1.0 + 1e-9;

Vector3 PlaceAt(const korvex::Node& node) { return {node.x, node.y, node.z}; }

Cell CellOf(const Vector3& at, double size) {
  Cell cell{};
  for (std::size_t i = 0; i < 3; ++i) {
    const double number = std::floor(at[i] / size + CellShift);
    cell[i] = std::isfinite(number) ? number : at[i];
  }
  return cell;
}

// The nodes that stay, by cell: a list through `next` from each cell's last one.
struct CellLists {
  std::vector<Cell> cells;          // sorted, each once
  std::vector<std::int32_t> rowOf;  // [nodes] of cells
  std::vector<std::int32_t> last;   // [cells] -1: none yet
  std::vector<std::int32_t> next;   // [nodes]
};

void SortCells(const std::vector<korvex::Node>& nodes, double size, CellLists& lists) {
  std::vector<std::pair<Cell, std::int32_t>> all;
  all.reserve(nodes.size());
  for (const korvex::Node& node : nodes) {
    all.emplace_back(CellOf(PlaceAt(node), size), static_cast<std::int32_t>(all.size()));
  }
  std::sort(all.begin(), all.end());
  lists.rowOf.resize(nodes.size());
  for (const auto& [cell, node] : all) {
    if (lists.cells.empty() || lists.cells.back() != cell) lists.cells.push_back(cell);
    lists.rowOf[static_cast<std::size_t>(node)] = static_cast<std::int32_t>(lists.cells.size()) - 1;
  }
  lists.last.assign(lists.cells.size(), -1);
  lists.next.assign(nodes.size(), -1);
}

Cell CellBeside(const Vector3& at, double distance, double size) {
  return CellOf({at[0] + distance, at[1] + distance, at[2] + distance}, size);
}

// What is looked for: the first node that stays within `length` of `place`.
struct Search {
  const std::vector<korvex::Node>& nodes;
  Vector3 place{};
  double length = 0.0;
  std::int32_t first = -1;  // none yet
};

void SearchCell(const CellLists& lists, std::size_t row, Search& search) {
  for (std::int32_t node = lists.last[row]; node >= 0;
       node = lists.next[static_cast<std::size_t>(node)]) {
    const Vector3 other = PlaceAt(search.nodes[static_cast<std::size_t>(node)]);
    if (!(korvex::Length(korvex::Subtract(search.place, other)) <= search.length)) continue;
    if (search.first < 0 || node < search.first) search.first = node;
  }
}

// own: the row of the place's own cell.
void SearchCells(const CellLists& lists, double size, std::size_t own, Search& search) {
  const Cell low = CellBeside(search.place, -search.length * Farther, size);
  const Cell high = CellBeside(search.place, search.length * Farther, size);
  if (low == high) return SearchCell(lists, own, search);
  for (int corner = 0; corner < 4; ++corner) {
    const bool isHighX = corner % 2 == 1, isHighY = corner / 2 == 1;
    if ((isHighX && high[0] == low[0]) || (isHighY && high[1] == low[1])) continue;
    const double x = isHighX ? high[0] : low[0], y = isHighY ? high[1] : low[1];
    const Cell from{x, y, low[2]}, to{x, y, high[2]};
    auto at = std::lower_bound(lists.cells.begin(), lists.cells.end(), from);
    for (; at != lists.cells.end() && !(to < *at); ++at) {
      SearchCell(lists, static_cast<std::size_t>(at - lists.cells.begin()), search);
    }
  }
}

}  // namespace

std::vector<std::int32_t> FindNearby(const std::vector<korvex::Node>& nodes, double length) {
  const double size = std::max(CellLengths * length, SmallestCell);
  CellLists lists;
  SortCells(nodes, size, lists);
  std::vector<std::int32_t> nearby(nodes.size());
  for (std::size_t k = 0; k < nodes.size(); ++k) {
    const auto cell = static_cast<std::size_t>(lists.rowOf[k]);
    Search search{nodes, PlaceAt(nodes[k]), length, -1};
    SearchCells(lists, size, cell, search);
    nearby[k] = search.first;
    if (search.first >= 0) continue;
    nearby[k] = static_cast<std::int32_t>(k);
    lists.next[k] = lists.last[cell];
    lists.last[cell] = nearby[k];
  }
  return nearby;
}

}  // namespace kvx
