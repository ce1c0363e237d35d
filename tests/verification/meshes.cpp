#include "verification/meshes.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

namespace korvex::book {

namespace {

double Distance(const Point3& a, const Point3& b) {
  return std::sqrt((a[0] - b[0]) * (a[0] - b[0]) + (a[1] - b[1]) * (a[1] - b[1]) +
                   (a[2] - b[2]) * (a[2] - b[2]));
}

// Replaces every node number of the model by number[node].
void ReplaceNodes(ModelText& model, const std::vector<int>& number) {
  const auto replace = [&](int& node) { node = number[static_cast<std::size_t>(node)]; };
  for (auto& shell : model.shells4) std::for_each(shell.nodes.begin(), shell.nodes.end(), replace);
  for (auto& shell : model.shells3) std::for_each(shell.nodes.begin(), shell.nodes.end(), replace);
  for (auto& beam : model.beams) replace(beam.node1), replace(beam.node2);
  for (auto& restraint : model.restraints) replace(restraint.node);
  for (auto& force : model.forces) replace(force.node);
}

}  // namespace

Fixed Hold(std::initializer_list<std::size_t> dofs) {
  Fixed fixed{};
  for (const std::size_t dof : dofs) fixed[dof] = 1;
  return fixed;
}

Six SingleLoad(std::size_t component, double value) {
  Six load{};
  load[component] = value;
  return load;
}

void FixWhere(ModelText& model, const Where& where, const Fixed& fixed) {
  for (std::size_t n = 0; n < model.nodes.size(); ++n) {
    if (where(model.nodes[n])) model.restraints.push_back({static_cast<int>(n), fixed});
  }
}

int NodeAt(const ModelText& model, const Point3& place) {
  std::size_t nearest = 0;
  for (std::size_t n = 1; n < model.nodes.size(); ++n) {
    if (Distance(model.nodes[n], place) < Distance(model.nodes[nearest], place)) nearest = n;
  }
  return static_cast<int>(nearest);
}

void PressShells(ModelText& model, double pressure) {
  for (std::size_t e = 0; e < model.shells4.size(); ++e) {
    model.shell4Loads.push_back({static_cast<int>(e), {pressure, pressure, pressure}});
  }
  for (std::size_t e = 0; e < model.shells3.size(); ++e) {
    model.shell3Loads.push_back({static_cast<int>(e), {pressure, pressure, pressure}});
  }
}

void LoadEdge(ModelText& model, int from, int to, int step, const Six& force) {
  const int edges = (to - from) / step;
  for (int node = from; node <= to; node += step) {
    ModelText::Force row{node, force};
    const double share = (node == from || node == to ? 0.5 : 1.0) / edges;
    for (double& component : row.components) component *= share;
    model.forces.push_back(row);
  }
}

void MergeNodes(ModelText& model) {
  // Nodes are joined where their coordinates round to the same steps. Coinciding nodes may differ
  // by rounding errors; the shift keeps round coordinates away from the limits between two steps.
  constexpr double Step = 1e-5, Shift = 0.2718281828;
  std::map<std::array<long, 3>, int> numbers;
  std::vector<int> number;
  std::vector<Point3> nodes;
  for (const Point3& p : model.nodes) {
    std::array<long, 3> key{};
    for (std::size_t i = 0; i < 3; ++i) key[i] = std::lround(p[i] / Step + Shift);
    const auto [found, isNew] = numbers.insert({key, static_cast<int>(nodes.size())});
    if (isNew) nodes.push_back(p);
    number.push_back(found->second);
  }
  model.nodes = nodes;
  ReplaceNodes(model, number);
}

void RenumberNodes(ModelText& model, const std::vector<int>& order) {
  std::vector<int> number(order.size());
  std::vector<Point3> nodes;
  for (std::size_t k = 0; k < order.size(); ++k) {
    number[static_cast<std::size_t>(order[k])] = static_cast<int>(k);
    nodes.push_back(model.nodes[static_cast<std::size_t>(order[k])]);
  }
  model.nodes = nodes;
  ReplaceNodes(model, number);
}

void SortNodes(ModelText& model, const std::function<double(const Point3&)>& key) {
  std::vector<int> order(model.nodes.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
    return key(model.nodes[static_cast<std::size_t>(a)]) <
           key(model.nodes[static_cast<std::size_t>(b)]);
  });
  RenumberNodes(model, order);
}

void Append(ModelText& model, const ModelText& part, int thickness) {
  const int before = static_cast<int>(model.nodes.size());
  model.nodes.insert(model.nodes.end(), part.nodes.begin(), part.nodes.end());
  for (auto shell : part.shells4) {
    for (int& node : shell.nodes) node += before;
    shell.thickness = thickness;
    model.shells4.push_back(shell);
  }
  for (auto shell : part.shells3) {
    for (int& node : shell.nodes) node += before;
    shell.thickness = thickness;
    model.shells3.push_back(shell);
  }
}

}  // namespace korvex::book
