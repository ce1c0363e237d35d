#include "support/shell_mesh.h"

#include "support/dof_names.h"

namespace korvex::test {

namespace {

constexpr std::array<Point3, 3> Rotation{{{-20.0 / 30.0, 4.0 / 30.0, 22.0 / 30.0},
                                          {20.0 / 30.0, -10.0 / 30.0, 20.0 / 30.0},
                                          {10.0 / 30.0, 28.0 / 30.0, 4.0 / 30.0}}};

// Row and column of SX, SY, SZ, TXY, TXZ, TYZ in the stress tensor.
constexpr std::array<std::array<std::size_t, 2>, 6> TensorPlaces{
    {{0, 0}, {1, 1}, {2, 2}, {0, 1}, {0, 2}, {1, 2}}};

}  // namespace

const char* NameCells(Cells cells) {
  constexpr std::array<const char*, 3> names{"Quads", "Triangles", "Mixed"};
  return names[static_cast<std::size_t>(cells)];
}

std::ostream& operator<<(std::ostream& out, Cells cells) { return out << NameCells(cells); }

void AddCell(ModelText& model, Cells cells, int index, const Corners& corners) {
  const bool cut = cells == Cells::Triangles || (cells == Cells::Mixed && index % 2 == 1);
  if (!cut) {
    model.shells4.push_back({corners, 0, 0});
    return;
  }
  model.shells3.push_back({{corners[0], corners[1], corners[2]}, 0, 0});
  model.shells3.push_back({{corners[0], corners[2], corners[3]}, 0, 0});
}

ModelText BuildGrid(int n1, int n2, Cells cells,
                    const std::function<Point3(double s, double t)>& place) {
  ModelText model;
  for (int j = 0; j <= n2; ++j) {
    for (int i = 0; i <= n1; ++i) {
      model.nodes.push_back(place(static_cast<double>(i) / n1, static_cast<double>(j) / n2));
    }
  }
  for (int j = 0; j < n2; ++j) {
    for (int i = 0; i < n1; ++i) {
      const Corners corners{GridNode(n1, i, j), GridNode(n1, i + 1, j), GridNode(n1, i + 1, j + 1),
                            GridNode(n1, i, j + 1)};
      AddCell(model, cells, i + j, corners);
    }
  }
  return model;
}

void Prescribe(ModelText& model, int node, const std::array<double, 6>& values) {
  model.restraints.push_back({node, {1, 1, 1, 1, 1, 1}});
  ModelText::Force force{node, {}};
  for (std::size_t d = 0; d < 6; ++d) force.components[d] = SupportPenalty * values[d];
  model.forces.push_back(force);
}

std::array<double, 6> NodeDisplacements(const Model& model, int node) {
  std::array<double, 6> u{};
  for (std::size_t d = 0; d < 6; ++d) {
    u[d] = model.Displacements[Equation(node, d)];
  }
  return u;
}

Point3 Turn(const Point3& v) {
  Point3 out{};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t k = 0; k < 3; ++k) out[i] += Rotation[i][k] * v[k];
  }
  return out;
}

std::array<double, 6> TurnSix(const std::array<double, 6>& v) {
  const Point3 a = Turn({v[0], v[1], v[2]});
  const Point3 b = Turn({v[3], v[4], v[5]});
  return {a[0], a[1], a[2], b[0], b[1], b[2]};
}

StressVector TurnStress(const StressVector& stress) {
  std::array<Point3, 3> tensor{};
  for (std::size_t c = 0; c < 6; ++c) {
    const auto [i, j] = TensorPlaces[c];
    tensor[i][j] = tensor[j][i] = stress[c];
  }
  StressVector out{};
  for (std::size_t c = 0; c < 6; ++c) {
    const auto [i, j] = TensorPlaces[c];
    for (std::size_t k = 0; k < 3; ++k) {
      for (std::size_t l = 0; l < 3; ++l) out[c] += Rotation[i][k] * tensor[k][l] * Rotation[j][l];
    }
  }
  return out;
}

ModelText TurnModel(const ModelText& model) {
  ModelText turned = model;
  for (auto& node : turned.nodes) node = Turn(node);
  for (auto& beam : turned.beams) beam.orientation = Turn(beam.orientation);
  for (auto& force : turned.forces) force.components = TurnSix(force.components);
  return turned;
}

}  // namespace korvex::test
