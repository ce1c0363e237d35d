#include "order_models.h"

#include <array>
#include <cmath>
#include <numeric>
#include <random>
#include <unordered_map>
#include <vector>

namespace korvex::bench {

namespace {

constexpr double Edge = 100.0;  // of an element

using Place = std::array<std::int32_t, 3>;  // on the lattice

struct Mesh {
  ModelTables& tables;
  std::unordered_map<std::uint64_t, std::int32_t> nodes;  // by place
};

std::int32_t NodeAt(const Place& place, Mesh& mesh) {
  constexpr std::uint64_t Span = 1U << 20U;  // no lattice is longer
  const std::uint64_t key =
      (static_cast<std::uint64_t>(place[0]) * Span + static_cast<std::uint64_t>(place[1])) * Span +
      static_cast<std::uint64_t>(place[2]);
  const auto next = static_cast<std::int32_t>(mesh.tables.Nodes.size());
  const auto [entry, isNew] = mesh.nodes.emplace(key, next);
  if (isNew) {
    mesh.tables.Nodes.push_back({Edge * place[0], Edge * place[1], Edge * place[2]});
  }
  return entry->second;
}

Place Step(Place place, std::size_t axis, std::int32_t steps) {
  place[axis] += steps;
  return place;
}

// A rectangle of quadrilaterals from a corner along two axes. Its nodes are numbered along the
// first one, line by line.
void AddSurface(const Place& corner, std::size_t axis1, std::int32_t count1, std::size_t axis2,
                std::int32_t count2, Mesh& mesh) {
  std::vector<std::int32_t> line, before;
  for (std::int32_t j = 0; j <= count2; ++j) {
    line.clear();
    for (std::int32_t i = 0; i <= count1; ++i) {
      line.push_back(NodeAt(Step(Step(corner, axis1, i), axis2, j), mesh));
    }
    for (std::size_t i = 0; j > 0 && i + 1 < line.size(); ++i) {
      mesh.tables.Shell4Nodes.insert(mesh.tables.Shell4Nodes.end(),
                                     {before[i], before[i + 1], line[i + 1], line[i]});
      mesh.tables.Shell4Properties.push_back({0, 0});
    }
    before.swap(line);
  }
}

// Steel of 10 mm; what lies at x = 0 is clamped, the last node has a force.
void Complete(ModelTables& tables) {
  tables.Materials = {{206000.0, 0.3, 7.85e-9}};
  tables.ShellThicknesses = {{10.0}};
  const auto count = static_cast<std::int32_t>(tables.Nodes.size());
  for (std::int32_t node = 0; node < count; ++node) {
    if (tables.Nodes[static_cast<std::size_t>(node)].x > 0.0) continue;
    tables.NodalRestraints.push_back({{1, 1, 1, 1, 1, 1}, node});
  }
  tables.NodalForces = {{count - 1, {0.0, 0.0, -1000.0, 0.0, 0.0, 0.0}}};
}

// Turned about x and y, by angles with rational sines.
void Tilt(ModelTables& tables) {
  for (Node& node : tables.Nodes) {
    const double x = node.x, y = node.y;
    node = {0.8 * x, 0.36 * x + 0.8 * y, 0.48 * x - 0.6 * y};
  }
}

void Shuffle(ModelTables& tables) {
  std::vector<std::int32_t> places(tables.Nodes.size());
  std::iota(places.begin(), places.end(), 0);
  std::mt19937 random(1);  // the library's own shuffle differs between systems
  for (std::size_t k = places.size(); k-- > 1;) std::swap(places[k], places[random() % (k + 1)]);
  const ZeroedTable<Node> before = tables.Nodes;
  for (std::size_t k = 0; k < places.size(); ++k) {
    tables.Nodes[static_cast<std::size_t>(places[k])] = before[k];
  }
  for (std::int32_t& node : tables.Shell4Nodes) node = places[static_cast<std::size_t>(node)];
}

}  // namespace

void MakePlate(std::int32_t length, std::int32_t width, bool isTilted, ModelTables& tables) {
  Mesh mesh{tables, {}};
  AddSurface({0, 0, 0}, 0, length, 1, width, mesh);
  Complete(tables);
  if (isTilted) Tilt(tables);
}

void MakeShuffledPlate(std::int32_t side, bool isTilted, ModelTables& tables) {
  Mesh mesh{tables, {}};
  AddSurface({0, 0, 0}, 0, side, 1, side, mesh);
  Shuffle(tables);
  Complete(tables);
  if (isTilted) Tilt(tables);
}

void MakeLattice(std::int32_t length, std::int32_t width, std::int32_t height,
                 ModelTables& tables) {
  Mesh mesh{tables, {}};
  const std::array<std::int32_t, 3> last{length, width, height};
  const auto addBar = [&](const Place& from, const Place& to) {
    for (std::size_t axis = 0; axis < to.size(); ++axis) {
      if (to[axis] > last[axis]) return;
    }
    const std::int32_t a = NodeAt(from, mesh), b = NodeAt(to, mesh);
    tables.BeamNodes.insert(tables.BeamNodes.end(), {a, b});
    const bool isUpright = from[0] == to[0] && from[1] == to[1];
    tables.BeamProperties.push_back({isUpright ? Vector3{1, 0, 0} : Vector3{0, 0, 1}, 0});
    tables.BeamSectionRefs.push_back({BeamSecTypeC, 0, 0.0, false});
  };
  for (std::int32_t z = 0; z <= height; ++z) {
    for (std::int32_t y = 0; y <= width; ++y) {
      for (std::int32_t x = 0; x <= length; ++x) NodeAt({x, y, z}, mesh);
    }
  }
  for (std::int32_t z = 0; z <= height; ++z) {
    for (std::int32_t y = 0; y <= width; ++y) {
      for (std::int32_t x = 0; x <= length; ++x) {
        const Place place{x, y, z};
        for (std::size_t axis = 0; axis < place.size(); ++axis) {
          const Place next = Step(place, axis, 1);
          addBar(place, next);
          addBar(place, Step(next, (axis + 1) % place.size(), 1));
        }
      }
    }
  }
  tables.CBeamSections = {{5.0, 1.0}};
  Complete(tables);
}

void MakeGrillage(std::int32_t length, std::int32_t width, ModelTables& tables) {
  constexpr std::int32_t WebDistance = 6, WebHeight = 2, GirderDistance = 20, GirderHeight = 5;
  Mesh mesh{tables, {}};
  AddSurface({0, 0, GirderHeight}, 0, length, 1, width, mesh);
  for (std::int32_t y = 0; y <= width; y += WebDistance) {
    AddSurface({0, y, GirderHeight - WebHeight}, 0, length, 2, WebHeight, mesh);
  }
  for (std::int32_t x = 0; x <= length; x += GirderDistance) {
    AddSurface({x, 0, 0}, 1, width, 2, GirderHeight, mesh);
  }
  Complete(tables);
}

void MakeRing(std::int32_t around, std::int32_t across, ModelTables& tables) {
  const double angle = 2.0 * std::acos(-1.0) / around, radius = Edge / angle;
  for (std::int32_t j = 0; j <= across; ++j) {
    for (std::int32_t i = 0; i < around; ++i) {
      tables.Nodes.push_back(
          {radius * (1.0 - std::cos(angle * i)), radius * std::sin(angle * i), Edge * j});
      if (j == 0) continue;
      const std::int32_t next = (i + 1) % around, line = j * around, below = line - around;
      tables.Shell4Nodes.insert(tables.Shell4Nodes.end(),
                                {below + i, below + next, line + next, line + i});
      tables.Shell4Properties.push_back({0, 0});
    }
  }
  Complete(tables);
}

void MakeBoxGirder(std::int32_t length, std::int32_t width, std::int32_t height,
                   ModelTables& tables) {
  Mesh mesh{tables, {}};
  for (const std::int32_t z : {0, height}) AddSurface({0, 0, z}, 0, length, 1, width, mesh);
  for (const std::int32_t y : {0, width}) AddSurface({0, y, 0}, 0, length, 2, height, mesh);
  for (std::int32_t x = 0; x <= length; x += height) {
    AddSurface({x, 0, 0}, 1, width, 2, height, mesh);
  }
  Complete(tables);
}

}  // namespace korvex::bench
