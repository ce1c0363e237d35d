// Order of a sum: the corner's own element, the other elements of its kind, then those of the other
// kind, each in table order. Another order would change the last bits.
#include "results/average_stresses.h"

#include <algorithm>
#include <string>

#include "report/check_memory.h"
#include "results/corner_sum.h"
#include "workers/share_range.h"

namespace korvex {

namespace {

// Returns the first corner of element e at `node`.
// connectivity: elements x Nodes node indices, element-major.
template <std::int32_t Nodes>
std::size_t FindCorner(const std::vector<std::int32_t>& connectivity, std::int32_t e,
                       std::int32_t node) {
  const auto begin = connectivity.begin() + static_cast<std::ptrdiff_t>(e) * Nodes;
  return static_cast<std::size_t>(std::find(begin, begin + Nodes, node) - begin);
}

constexpr std::int32_t NoElement = -1;  // no element is skipped

// Adds the corners at `node` of all listed elements except `skipped`.
template <std::int32_t Nodes>
void AddNeighbours(const std::vector<ShellElement<Nodes>>& elements,
                   const std::vector<std::int32_t>& connectivity, const NodeElements& lists,
                   std::int32_t node, std::int32_t skipped, CornerSum& sum) {
  const auto n = static_cast<std::size_t>(node);
  for (std::int64_t at = lists.first[n]; at < lists.first[n + 1]; ++at) {
    const std::int32_t f = lists.elements[static_cast<std::size_t>(at)];
    if (f == skipped) continue;
    AddCorner(elements[static_cast<std::size_t>(f)], FindCorner<Nodes>(connectivity, f, node), sum);
  }
}

// Returns a sum with corner k of `element` as its first term.
template <std::int32_t Nodes>
CornerSum BeginSum(const ShellElement<Nodes>& element, std::size_t k) {
  return {element.NodeStressTop[k], element.NodeStressBottom[k], 1.0, Normal(element), element.TK};
}

// Stores the average of corner k.
template <std::int32_t Nodes>
void StoreAverage(const CornerSum& sum, std::size_t k, ShellElement<Nodes>& element) {
  const double share = 1.0 / sum.count;
  for (std::size_t i = 0; i < sum.top.size(); ++i) {
    element.AvgStressTop[k][i] = sum.top[i] * share;
    element.AvgStressBottom[k][i] = sum.bottom[i] * share;
  }
}

// Whether corner k of element a and corner m of element b give the same average, bit for bit:
// normal, thickness and stresses are equal in every bit.
template <std::int32_t Nodes>
bool AreAlike(const ShellElement<Nodes>& a, std::size_t k, const ShellElement<Nodes>& b,
              std::size_t m) {
  return LieAlike(a, b) &&
         HaveEqualBits(&a.NodeStressTop[k], &b.NodeStressTop[m], sizeof(StressVector)) &&
         HaveEqualBits(&a.NodeStressBottom[k], &b.NodeStressBottom[m], sizeof(StressVector));
}

// If the corner of element e at `node` equals that of `before`, the element listed before it
// (AreAlike), copies that element's average and returns true: both sums have the same terms in the
// same order.
// Why: a sum takes one step per corner at the node. A file with a wrong count may have millions of
// elements, all zeros and all at node 0; with the copies only one sum is formed for them.
template <std::int32_t Nodes>
bool CopyAverage(const std::vector<std::int32_t>& connectivity, std::int32_t before, std::int32_t e,
                 std::int32_t node, std::vector<ShellElement<Nodes>>& elements) {
  ShellElement<Nodes>& element = elements[static_cast<std::size_t>(e)];
  const ShellElement<Nodes>& other = elements[static_cast<std::size_t>(before)];
  const std::size_t k = FindCorner<Nodes>(connectivity, e, node);
  const std::size_t m = FindCorner<Nodes>(connectivity, before, node);
  if (!AreAlike(element, k, other, m)) return false;
  element.AvgStressTop[k] = other.AvgStressTop[m];
  element.AvgStressBottom[k] = other.AvgStressBottom[m];
  return true;
}

// The elements of one kind.
template <std::int32_t Nodes>
struct ShellKind {
  std::vector<ShellElement<Nodes>>& elements;
  const std::vector<std::int32_t>& connectivity;
  // Averages the corner of element e at `node`, see AverageShell4NodeStress.
  void (*average)(Model& model, const NodeElements& lists4, const NodeElements& lists3,
                  std::int32_t e, std::int32_t node);
};

// Averages the corners at `node` of the elements in `lists`, those of one kind, in table order.
// lists4, lists3: the elements of both kinds.
template <std::int32_t Nodes>
void AverageNode(const ShellKind<Nodes>& kind, const NodeElements& lists,
                 const NodeElements& lists4, const NodeElements& lists3, std::int32_t node,
                 Model& model) {
  const auto n = static_cast<std::size_t>(node);
  for (std::int64_t at = lists.first[n]; at < lists.first[n + 1]; ++at) {
    const std::int32_t* e = &lists.elements[static_cast<std::size_t>(at)];
    if (at > lists.first[n] && CopyAverage(kind.connectivity, e[-1], *e, node, kind.elements)) {
      continue;
    }
    kind.average(model, lists4, lists3, *e, node);
  }
}

// The nodes that a thread takes at once.
constexpr std::int64_t PieceNodes = 64;

}  // namespace

void ListNodeElements(const std::vector<std::int32_t>& connectivity, std::int32_t nodesPerElement,
                      std::int32_t nodeCount, NodeElements& lists) {
  const auto step = static_cast<std::size_t>(nodesPerElement);
  // Whether `position` is the first at which its element has this node.
  const auto isFirst = [&](std::size_t position) {
    const auto row = connectivity.begin() + static_cast<std::ptrdiff_t>(position / step * step);
    const auto here = connectivity.begin() + static_cast<std::ptrdiff_t>(position);
    return std::find(row, here, *here) == here;
  };
  lists.first.assign(static_cast<std::size_t>(nodeCount) + 1, 0);
  for (std::size_t p = 0; p < connectivity.size(); ++p) {
    if (isFirst(p)) ++lists.first[static_cast<std::size_t>(connectivity[p]) + 1];
  }
  for (std::size_t n = 1; n < lists.first.size(); ++n) lists.first[n] += lists.first[n - 1];

  lists.elements.resize(static_cast<std::size_t>(lists.first.back()));
  std::vector<std::int64_t> next(lists.first.begin(), lists.first.end() - 1);
  for (std::size_t p = 0; p < connectivity.size(); ++p) {
    if (!isFirst(p)) continue;
    std::int64_t& place = next[static_cast<std::size_t>(connectivity[p])];
    lists.elements[static_cast<std::size_t>(place++)] = static_cast<std::int32_t>(p / step);
  }
}

void AverageShell4NodeStress(Model& model, const NodeElements& lists4, const NodeElements& lists3,
                             std::int32_t e, std::int32_t node) {
  Shell4Element& element = model.Shell4Elements[static_cast<std::size_t>(e)];
  const std::size_t k = FindCorner<NodesPerShell4>(model.Tables.Shell4Nodes, e, node);
  CornerSum sum = BeginSum(element, k);
  AddNeighbours(model.Shell4Elements, model.Tables.Shell4Nodes, lists4, node, e, sum);
  AddNeighbours(model.Shell3Elements, model.Tables.Shell3Nodes, lists3, node, NoElement, sum);
  StoreAverage(sum, k, element);
}

void AverageShell3NodeStress(Model& model, const NodeElements& lists4, const NodeElements& lists3,
                             std::int32_t e, std::int32_t node) {
  Shell3Element& element = model.Shell3Elements[static_cast<std::size_t>(e)];
  const std::size_t k = FindCorner<NodesPerShell3>(model.Tables.Shell3Nodes, e, node);
  CornerSum sum = BeginSum(element, k);
  AddNeighbours(model.Shell3Elements, model.Tables.Shell3Nodes, lists3, node, e, sum);
  AddNeighbours(model.Shell4Elements, model.Tables.Shell4Nodes, lists4, node, NoElement, sum);
  StoreAverage(sum, k, element);
}

void AverageNodeStresses(Model& model, int threads) {
  NodeElements lists4, lists3;
  // Per node and list: the begin of the node's elements, in two arrays. Per corner: half an entry,
  // because element indices have 4 bytes.
  AllocateOrStop(
      "the elements at " + std::to_string(model.Tables.NPOIN) + " nodal points",
      (static_cast<std::uint64_t>(model.Tables.NPOIN) + 1) * 4 +
          model.Tables.Shell4Nodes.size() / 2 + model.Tables.Shell3Nodes.size() / 2,
      sizeof(std::int64_t), [&] {
        ListNodeElements(model.Tables.Shell4Nodes, NodesPerShell4, model.Tables.NPOIN, lists4);
        ListNodeElements(model.Tables.Shell3Nodes, NodesPerShell3, model.Tables.NPOIN, lists3);
      });
  const ShellKind<NodesPerShell4> kind4{model.Shell4Elements, model.Tables.Shell4Nodes,
                                        AverageShell4NodeStress};
  const ShellKind<NodesPerShell3> kind3{model.Shell3Elements, model.Tables.Shell3Nodes,
                                        AverageShell3NodeStress};
  // Node by node: an average is read and written at its own node only, and so by one thread.
  ShareRange(threads, model.Tables.NPOIN, PieceNodes, [&](std::int64_t first, std::int64_t end) {
    for (auto node = static_cast<std::int32_t>(first); node < end; ++node) {
      AverageNode(kind4, lists4, lists4, lists3, node, model);
      AverageNode(kind3, lists3, lists4, lists3, node, model);
    }
  });
}

}  // namespace korvex
