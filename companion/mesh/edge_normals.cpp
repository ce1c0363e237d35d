#include "mesh/edge_normals.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace kvx {

namespace {

using korvex::Vector3;
using Edge = std::array<std::int32_t, 2>;  // nodes, the lower one first

// A fold of up to 60 degrees has one side of its own; of plates that meet at a right angle, or look
// to opposite sides, a mean says nothing. The cosine of 30 degrees.
constexpr double LeastCosine = 0.866;

Edge EdgeOf(std::int32_t a, std::int32_t b) { return {std::min(a, b), std::max(a, b)}; }

Vector3 NormalOf(const ImportModel& model, const ImportShell& shell) {
  const Vector3 first = PlaceOf(model, shell.nodes[0]);
  const Vector3 a = korvex::Subtract(PlaceOf(model, shell.nodes[1]), first);
  const Vector3 b = korvex::Subtract(PlaceOf(model, shell.nodes[CornersOf(shell) - 1]), first);
  return korvex::Normalise(korvex::Cross(a, b));
}

// An edge of a shell that may be a beam's.
struct ShellEdge {
  Edge edge{};
  std::int32_t shell = 0;
};

// isOfBeam: [nodes]; a node that is missing (-1) is of none.
bool IsMarked(const std::vector<char>& isOfBeam, std::int32_t node) {
  return node >= 0 && isOfBeam[static_cast<std::size_t>(node)] != 0;
}

std::vector<ShellEdge> ListEdges(const ImportModel& model, const std::vector<std::int32_t>& beams) {
  std::vector<char> isOfBeam(model.nodes.size(), 0);
  for (const std::int32_t beam : beams) {
    for (const std::int32_t node : model.beams[static_cast<std::size_t>(beam)].nodes) {
      if (node >= 0) isOfBeam[static_cast<std::size_t>(node)] = 1;
    }
  }
  std::vector<ShellEdge> edges;
  for (std::size_t k = 0; k < model.shells.size(); ++k) {
    const ImportShell& shell = model.shells[k];
    const std::size_t corners = CornersOf(shell);
    for (std::size_t c = 0; c < corners; ++c) {
      const std::int32_t a = shell.nodes[c], b = shell.nodes[(c + 1) % corners];
      const bool isBoth = IsMarked(isOfBeam, a) && IsMarked(isOfBeam, b);
      if (isBoth) edges.push_back({EdgeOf(a, b), static_cast<std::int32_t>(k)});
    }
  }
  std::sort(edges.begin(), edges.end(), [](const ShellEdge& a, const ShellEdge& b) {
    return a.edge != b.edge ? a.edge < b.edge : a.shell < b.shell;
  });
  return edges;
}

// edges: from `begin` to `end` the same one. Shells without a plane have no normal and do not
// count.
EdgeNormal MeanNormal(const ImportModel& model, const std::vector<ShellEdge>& edges,
                      std::size_t begin, std::size_t end) {
  EdgeNormal normal;
  Vector3 sum{};
  std::vector<Vector3> all;
  for (std::size_t k = begin; k < end; ++k) {
    const Vector3 n = NormalOf(model, model.shells[static_cast<std::size_t>(edges[k].shell)]);
    if (!std::isfinite(n[0])) continue;
    all.push_back(n);
    for (std::size_t i = 0; i < 3; ++i) sum[i] += n[i];
  }
  normal.isFound = !all.empty();
  normal.mean = korvex::Normalise(sum);
  normal.isClear = std::all_of(all.begin(), all.end(), [&](const Vector3& n) {
    const Vector3& m = normal.mean;
    return n[0] * m[0] + n[1] * m[1] + n[2] * m[2] > LeastCosine;
  });
  return normal;
}

}  // namespace

std::vector<EdgeNormal> FindEdgeNormals(const ImportModel& model,
                                        const std::vector<std::int32_t>& beams) {
  const std::vector<ShellEdge> edges = ListEdges(model, beams);
  std::vector<std::pair<Edge, EdgeNormal>> normals;
  for (std::size_t begin = 0, end = 0; begin < edges.size(); begin = end) {
    while (end < edges.size() && edges[end].edge == edges[begin].edge) ++end;
    normals.emplace_back(edges[begin].edge, MeanNormal(model, edges, begin, end));
  }
  std::vector<EdgeNormal> found;
  for (const std::int32_t beam : beams) {
    const auto& nodes = model.beams[static_cast<std::size_t>(beam)].nodes;
    const Edge edge = EdgeOf(nodes[0], nodes[1]);
    const auto at =
        std::lower_bound(normals.begin(), normals.end(), edge,
                         [](const auto& entry, const Edge& key) { return entry.first < key; });
    const bool isKnown = at != normals.end() && at->first == edge;
    found.push_back(isKnown ? at->second : EdgeNormal{});
  }
  return found;
}

}  // namespace kvx
