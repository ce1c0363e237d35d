#include "support/mesh_mistakes.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <utility>

namespace kvx::test {

using korvex::test::ModelText;

namespace {

int CountNodes(const ModelText& model) { return static_cast<int>(model.nodes.size()); }

template <typename Item>
const Item& Choose(const std::vector<Item>& items, Dice& dice) {
  return items[static_cast<std::size_t>(RollInteger(dice, 0, static_cast<int>(items.size()) - 1))];
}

using Edge = std::pair<int, int>;  // the lower node first
Edge EdgeOf(const ShellOfText& shell, std::size_t k) {
  return std::minmax(shell.nodes[k], shell.nodes[(k + 1) % shell.nodes.size()]);
}

// A connected patch of shells round a random one; true: in the patch.
std::vector<bool> ChoosePatch(const std::vector<ShellOfText>& shells, Dice& dice) {
  std::map<Edge, std::vector<std::size_t>> shellsAt;
  for (std::size_t s = 0; s < shells.size(); ++s) {
    for (std::size_t k = 0; k < shells[s].nodes.size(); ++k) {
      shellsAt[EdgeOf(shells[s], k)].push_back(s);
    }
  }
  const int size = static_cast<int>(shells.size());
  std::vector<std::size_t> patch{static_cast<std::size_t>(RollInteger(dice, 0, size - 1))};
  std::vector<bool> isIn(shells.size(), false);
  isIn[patch[0]] = true;
  const auto wanted = static_cast<std::size_t>(RollInteger(dice, 1, std::max(1, size / 2)));
  for (std::size_t next = 0; next < patch.size() && patch.size() < wanted; ++next) {
    const ShellOfText& shell = shells[patch[next]];
    for (std::size_t k = 0; k < shell.nodes.size(); ++k) {
      for (const std::size_t other : shellsAt[EdgeOf(shell, k)]) {
        if (isIn[other] || patch.size() == wanted) continue;
        isIn[other] = true;
        patch.push_back(other);
      }
    }
  }
  return isIn;
}

}  // namespace

std::vector<ShellOfText> ListShells(const ModelText& model) {
  std::vector<ShellOfText> shells;
  for (std::size_t row = 0; row < model.shells4.size(); ++row) {
    const auto& nodes = model.shells4[row].nodes;
    shells.push_back({true, static_cast<int>(row), {nodes.begin(), nodes.end()}});
  }
  for (std::size_t row = 0; row < model.shells3.size(); ++row) {
    const auto& nodes = model.shells3[row].nodes;
    shells.push_back({false, static_cast<int>(row), {nodes.begin(), nodes.end()}});
  }
  return shells;
}

void SetNodes(const ShellOfText& shell, const std::vector<int>& nodes, ModelText& model) {
  const auto row = static_cast<std::size_t>(shell.row);
  if (shell.isQuad) {
    std::copy(nodes.begin(), nodes.end(), model.shells4[row].nodes.begin());
  } else {
    std::copy(nodes.begin(), nodes.end(), model.shells3[row].nodes.begin());
  }
}

std::array<double, 3> PointBetween(const ModelText& model, int a, int b, double share) {
  const auto& A = model.nodes[static_cast<std::size_t>(a)];
  const auto& B = model.nodes[static_cast<std::size_t>(b)];
  std::array<double, 3> point{};
  for (std::size_t i = 0; i < 3; ++i) point[i] = A[i] + share * (B[i] - A[i]);
  return point;
}

void SwapNodes(int a, int b, ModelText& model) {
  std::swap(model.nodes[static_cast<std::size_t>(a)], model.nodes[static_cast<std::size_t>(b)]);
  const auto swap = [&](int& node) { node = node == a ? b : node == b ? a : node; };
  for (auto& shell : model.shells4) std::for_each(shell.nodes.begin(), shell.nodes.end(), swap);
  for (auto& shell : model.shells3) std::for_each(shell.nodes.begin(), shell.nodes.end(), swap);
  for (auto& beam : model.beams) {
    swap(beam.node1);
    swap(beam.node2);
  }
  for (auto& row : model.restraints) swap(row.node);
  for (auto& row : model.forces) swap(row.node);
}

std::vector<int> PlantCrack(int most, Dice& dice, ModelText& model) {
  const std::vector<ShellOfText> shells = ListShells(model);
  if (shells.size() < 2) return {};
  const std::vector<bool> isIn = ChoosePatch(shells, dice);
  std::set<int> inside, outside;
  for (std::size_t s = 0; s < shells.size(); ++s) {
    (isIn[s] ? inside : outside).insert(shells[s].nodes.begin(), shells[s].nodes.end());
  }
  std::vector<int> border;
  std::set_intersection(inside.begin(), inside.end(), outside.begin(), outside.end(),
                        std::back_inserter(border));
  if (border.size() < 3) return {};
  // Neighbours along edges, from a random node of the border; one node at least stays common.
  const auto wanted = static_cast<std::size_t>(
      RollInteger(dice, 1, std::min(most, static_cast<int>(border.size()) - 2)));
  std::map<int, int> ownNode;
  const auto add = [&](int node) {
    const int own = CountNodes(model);
    ownNode[node] = own;
    const std::array<double, 3> place = model.nodes[static_cast<std::size_t>(node)];
    model.nodes.push_back(place);
  };
  add(Choose(border, dice));
  for (bool grows = true; grows && ownNode.size() < wanted;) {
    grows = false;
    for (const ShellOfText& shell : shells) {
      for (std::size_t k = 0; k < shell.nodes.size() && ownNode.size() < wanted; ++k) {
        const auto [a, b] = EdgeOf(shell, k);
        if (ownNode.count(a) == ownNode.count(b)) continue;
        const int next = ownNode.count(a) > 0 ? b : a;
        if (!std::binary_search(border.begin(), border.end(), next)) continue;
        add(next);
        grows = true;
      }
    }
  }
  for (std::size_t s = 0; s < shells.size(); ++s) {
    if (!isIn[s]) continue;
    std::vector<int> nodes = shells[s].nodes;
    for (int& node : nodes) node = ownNode.count(node) > 0 ? ownNode[node] : node;
    SetNodes(shells[s], nodes, model);
  }
  std::vector<int> planted;
  for (const auto& [node, own] : ownNode) planted.push_back(own);
  return planted;
}

std::vector<int> PlantSplitEdge(int pieces, Dice& dice, ModelText& model) {
  const std::vector<ShellOfText> shells = ListShells(model);
  std::map<Edge, int> counts;
  for (const ShellOfText& shell : shells) {
    for (std::size_t k = 0; k < shell.nodes.size(); ++k) ++counts[EdgeOf(shell, k)];
  }
  std::vector<std::pair<std::size_t, std::size_t>> shared;  // shell, edge
  for (std::size_t s = 0; s < shells.size(); ++s) {
    for (std::size_t k = 0; k < shells[s].nodes.size(); ++k) {
      if (counts[EdgeOf(shells[s], k)] > 1) shared.emplace_back(s, k);
    }
  }
  if (shared.empty()) return {};
  const auto [s, k] = Choose(shared, dice);
  ShellOfText shell = shells[s];
  std::rotate(shell.nodes.begin(), shell.nodes.begin() + static_cast<std::ptrdiff_t>(k),
              shell.nodes.end());
  const int a = shell.nodes[0], last = shell.nodes.back();
  const double shift = Roll(dice, -0.1, 0.1);
  std::vector<int> planted;
  for (int piece = 1; piece < pieces; ++piece) {
    planted.push_back(CountNodes(model));
    model.nodes.push_back(PointBetween(model, a, shell.nodes[1], (piece + shift) / pieces));
  }
  // Triangles from the last corner over all pieces but one; the shell keeps the rest.
  int from = a;
  for (const int node : planted) {
    ModelText::Shell<3> triangle;
    triangle.nodes = {from, node, last};
    const auto row = static_cast<std::size_t>(shell.row);
    triangle.material = shell.isQuad ? model.shells4[row].material : model.shells3[row].material;
    triangle.thickness = shell.isQuad ? model.shells4[row].thickness : model.shells3[row].thickness;
    model.shells3.push_back(triangle);
    from = node;
  }
  shell.nodes[0] = from;
  SetNodes(shell, shell.nodes, model);
  return planted;
}

int PlantBeamOnBeam(Dice& dice, ModelText& model) {
  if (model.beams.empty()) return -1;
  const ModelText::Beam host = Choose(model.beams, dice);
  // Another beam at one of its ends that turns off there: the new beam ends at its other end.
  std::vector<int> others;
  const std::array<double, 3> a = PointBetween(model, host.node1, host.node2, 0.0);
  const std::array<double, 3> b = PointBetween(model, host.node1, host.node2, 1.0);
  const auto turnsOff = [&](int node) {
    const std::array<double, 3>& p = model.nodes[static_cast<std::size_t>(node)];
    double uu = 0.0, vv = 0.0, uv = 0.0;
    for (std::size_t i = 0; i < 3; ++i) {
      uu += (b[i] - a[i]) * (b[i] - a[i]);
      vv += (p[i] - a[i]) * (p[i] - a[i]);
      uv += (b[i] - a[i]) * (p[i] - a[i]);
    }
    return uv * uv < 0.9 * uu * vv;
  };
  for (const ModelText::Beam& beam : model.beams) {
    for (const auto& [at, other] :
         {std::pair(beam.node1, beam.node2), std::pair(beam.node2, beam.node1)}) {
      if ((at == host.node1 || at == host.node2) && turnsOff(other)) others.push_back(other);
    }
  }
  if (others.empty()) return -1;
  ModelText::Beam beam = host;
  beam.node1 = CountNodes(model);
  beam.node2 = Choose(others, dice);
  model.nodes.push_back(PointBetween(model, host.node1, host.node2, Roll(dice, 0.3, 0.7)));
  // Oblique to all axes of the grid.
  beam.orientation = {0.31, -0.47, 0.83};
  model.beams.push_back(beam);
  return beam.node1;
}

void ReverseShell(const ShellOfText& shell, ModelText& model) {
  SetNodes(shell, {shell.nodes.rbegin(), shell.nodes.rend()}, model);
}

}  // namespace kvx::test
