// A part is built in its own axes with a size of about 1, then turned, scaled and moved. Patches of
// a part that meet at an edge share its nodes: a node is looked up by its place.
#include "support/good_models.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <map>
#include <numeric>
#include <vector>

namespace kvx::test {

namespace {

using korvex::BeamSecTypeC;
using korvex::BeamSecTypeL;
using korvex::BeamSecTypeT;
using korvex::test::ModelText;
using Point = std::array<double, 3>;
using Place = std::function<Point(double s, double t)>;

constexpr double Pi = 3.14159265358979323846;

enum class Cells { Quads, Triangles, Mixed };

// A part under construction, in its own axes.
struct Part {
  ModelText text;
  std::map<std::array<long, 3>, int> nodeAt;  // by place, in units of 1e-6
};

int NodeAt(const Point& point, Part& part) {
  std::array<long, 3> key{};
  for (std::size_t i = 0; i < 3; ++i) key[i] = std::lround(point[i] * 1e6);
  const auto [entry, isNew] = part.nodeAt.emplace(key, static_cast<int>(part.text.nodes.size()));
  if (isNew) part.text.nodes.push_back(point);
  return entry->second;
}

// Adds a grid of n1 x n2 cells over the unit square of (s, t); returns its nodes, (n1 + 1) x
// (n2 + 1), s fastest. shift(i, j) moves inner nodes in (s, t), in cells.
std::vector<int> AddPatch(int n1, int n2, Cells cells, int thickness, const Place& place,
                          const std::function<std::array<double, 2>(int, int)>& shift, Part& part) {
  std::vector<int> nodes;
  for (int j = 0; j <= n2; ++j) {
    for (int i = 0; i <= n1; ++i) {
      const bool inner = i > 0 && i < n1 && j > 0 && j < n2;
      const std::array<double, 2> by = inner ? shift(i, j) : std::array<double, 2>{};
      nodes.push_back(NodeAt(place((i + by[0]) / n1, (j + by[1]) / n2), part));
    }
  }
  for (int j = 0; j < n2; ++j) {
    for (int i = 0; i < n1; ++i) {
      const auto at = [&](int k, int l) {
        return nodes[static_cast<std::size_t>(l * (n1 + 1) + k)];
      };
      const std::array<int, 4> c{at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1)};
      if (cells == Cells::Quads || (cells == Cells::Mixed && (i + j) % 2 == 0)) {
        part.text.shells4.push_back({c, 0, thickness});
      } else {
        part.text.shells3.push_back({{c[0], c[1], c[2]}, 0, thickness});
        part.text.shells3.push_back({{c[0], c[2], c[3]}, 0, thickness});
      }
    }
  }
  return nodes;
}

std::array<double, 2> NoShift(int, int) { return {0.0, 0.0}; }

// Moves by up to a fifth of a cell.
std::function<std::array<double, 2>(int, int)> RandomShift(Dice& dice) {
  return [&dice](int, int) {
    return std::array<double, 2>{Roll(dice, -0.2, 0.2), Roll(dice, -0.2, 0.2)};
  };
}

// The tables that all parts share. Lengths of sections and thicknesses as shares of the part's
// size.
struct Tables {
  int materials = 0, thicknesses = 0, tSections = 0, lSections = 0, cSections = 0;
};

int AnyThickness(const Tables& tables, Dice& dice) {
  return RollInteger(dice, 0, tables.thicknesses - 1);
}

Cells AnyCells(Dice& dice) { return static_cast<Cells>(RollInteger(dice, 0, 2)); }

void AddPlate(const Tables& tables, Dice& dice, Part& part) {
  const double width = Roll(dice, 0.5, 1.0);
  AddPatch(
      RollInteger(dice, 2, 9), RollInteger(dice, 2, 9), AnyCells(dice), AnyThickness(tables, dice),
      [&](double s, double t) {
        return Point{s, width * t, 0.0};
      },
      RandomShift(dice), part);
}

// Two plates that meet at an angle of 30 to 150 degrees.
void AddFold(const Tables& tables, Dice& dice, Part& part) {
  const double angle = Roll(dice, Pi / 6.0, 5.0 * Pi / 6.0);
  const int along = RollInteger(dice, 2, 8);
  AddPatch(
      along, RollInteger(dice, 2, 5), AnyCells(dice), AnyThickness(tables, dice),
      [&](double s, double t) {
        return Point{s, 0.5 * (1.0 - t), 0.0};
      },
      RandomShift(dice), part);
  AddPatch(
      along, RollInteger(dice, 2, 5), AnyCells(dice), AnyThickness(tables, dice),
      [&](double s, double t) {
        return Point{s, 0.5 * t * std::cos(angle), -0.5 * t * std::sin(angle)};
      },
      RandomShift(dice), part);
}

// A closed tube of `sides` plates, or of a circle; its normals point outwards.
void AddTube(int sides, double radius, const Tables& tables, Dice& dice, Part& part) {
  const int along = RollInteger(dice, 3, 9);
  const int perSide = sides > 8 ? 1 : RollInteger(dice, 1, 3);
  const int thickness = AnyThickness(tables, dice);
  const Cells cells = AnyCells(dice);
  for (int side = 0; side < sides; ++side) {
    const auto corner = [&](int k) {
      const double angle = 2.0 * Pi * (k % sides) / sides;
      return std::array<double, 2>{radius * std::cos(angle), radius * std::sin(angle)};
    };
    const std::array<double, 2> a = corner(side), b = corner(side + 1);
    AddPatch(
        perSide, along, cells, thickness,
        [&](double s, double t) {
          return Point{a[0] + s * (b[0] - a[0]), a[1] + s * (b[1] - a[1]), t};
        },
        NoShift, part);
  }
}

// A double-curved shell, a paraboloid or a saddle; cells small enough to be nearly flat.
void AddCurved(const Tables& tables, Dice& dice, Part& part) {
  const double rise = Roll(dice, 0.05, 0.15), other = Roll(dice, -0.15, 0.15);
  AddPatch(
      RollInteger(dice, 8, 12), RollInteger(dice, 8, 12),
      RollYes(dice) ? Cells::Triangles : Cells::Quads, AnyThickness(tables, dice),
      [&](double s, double t) {
        return Point{s, t, 4.0 * (rise * s * (1.0 - s) + other * t * (1.0 - t))};
      },
      NoShift, part);
}

// A plate with a web and a flange below: three shells meet at the edge between plate and web.
void AddGirder(const Tables& tables, Dice& dice, Part& part) {
  const int along = RollInteger(dice, 3, 10), half = RollInteger(dice, 1, 3);
  const double depth = Roll(dice, 0.1, 0.3);
  AddPatch(
      along, 2 * half, AnyCells(dice), AnyThickness(tables, dice),
      [](double s, double t) {
        return Point{s, 0.4 * (t - 0.5), 0.0};
      },
      NoShift, part);
  AddPatch(
      along, RollInteger(dice, 2, 4), AnyCells(dice), AnyThickness(tables, dice),
      [&](double s, double t) {
        return Point{s, 0.0, -depth * t};
      },
      NoShift, part);
  AddPatch(
      along, 2, AnyCells(dice), AnyThickness(tables, dice),
      [&](double s, double t) {
        return Point{s, 0.15 * (t - 0.5), -depth};
      },
      NoShift, part);
}

// A section of the tables, its offset, and which side the flange of an L section is on.
void ChooseSection(const Tables& tables, Dice& dice, ModelText::Beam& beam) {
  beam.BeamSecType = RollInteger(dice, BeamSecTypeT, BeamSecTypeC);
  const int rows = beam.BeamSecType == BeamSecTypeT   ? tables.tSections
                   : beam.BeamSecType == BeamSecTypeL ? tables.lSections
                                                      : tables.cSections;
  beam.BeamSecIndex = RollInteger(dice, 0, rows - 1);
  beam.BeamSecMirrored = RollInteger(dice, 0, 1);
  beam.BeamSecOz = RollYes(dice) ? 0.0 : Roll(dice, -0.01, 0.01);
}

// Beams from node to node.
void AddBeams(const std::vector<int>& nodes, ModelText::Beam beam, Part& part) {
  for (std::size_t k = 0; k + 1 < nodes.size(); ++k) {
    beam.node1 = nodes[k];
    beam.node2 = nodes[k + 1];
    part.text.beams.push_back(beam);
  }
}

// A plate with stiffeners on some of its lines of nodes, in one or in both directions.
void AddStiffenedPlate(const Tables& tables, Dice& dice, Part& part) {
  const int n1 = RollInteger(dice, 4, 9), n2 = RollInteger(dice, 4, 9);
  const std::vector<int> grid = AddPatch(
      n1, n2, AnyCells(dice), AnyThickness(tables, dice),
      [](double s, double t) {
        return Point{s, 0.8 * t, 0.0};
      },
      NoShift, part);
  const auto at = [&](int i, int j) { return grid[static_cast<std::size_t>(j * (n1 + 1) + i)]; };
  ModelText::Beam beam;
  beam.orientation = {0.0, 0.0, RollYes(dice) ? 1.0 : -1.0};
  ChooseSection(tables, dice, beam);
  for (int j = RollInteger(dice, 0, 1); j <= n2; j += RollInteger(dice, 1, 3)) {
    std::vector<int> line;
    for (int i = 0; i <= n1; ++i) line.push_back(at(i, j));
    AddBeams(line, beam, part);
  }
  if (RollYes(dice)) return;
  ChooseSection(tables, dice, beam);
  std::vector<int> line;
  for (int j = 0; j <= n2; ++j) line.push_back(at(n1 / 2, j));
  AddBeams(line, beam, part);
}

// A portal frame in space: columns, girders, and a diagonal that crosses no other beam.
void AddFrame(const Tables& tables, Dice& dice, Part& part) {
  const double height = Roll(dice, 0.5, 1.2);
  std::array<int, 4> feet{}, heads{};
  for (int k = 0; k < 4; ++k) {
    const double x = k == 1 || k == 2 ? 1.0 : 0.0, y = k > 1 ? 0.8 : 0.0;
    feet[static_cast<std::size_t>(k)] = NodeAt({x, y, 0.0}, part);
    heads[static_cast<std::size_t>(k)] = NodeAt({x, y, height}, part);
  }
  const Point skew{Roll(dice, 0.3, 1.0), Roll(dice, 0.3, 1.0), Roll(dice, 0.4, 1.0)};
  for (std::size_t k = 0; k < 4; ++k) {
    ModelText::Beam beam;
    beam.orientation = skew;
    ChooseSection(tables, dice, beam);
    AddBeams({feet[k], heads[k]}, beam, part);
    AddBeams({heads[k], heads[(k + 1) % 4]}, beam, part);
  }
  ModelText::Beam diagonal;
  diagonal.orientation = {0.0, 1.0, 0.0};
  ChooseSection(tables, dice, diagonal);
  AddBeams({feet[0], heads[1]}, diagonal, part);
}

void AddGrillage(const Tables& tables, Dice& dice, Part& part) {
  const int n1 = RollInteger(dice, 2, 6), n2 = RollInteger(dice, 2, 6);
  const auto at = [&](int i, int j) {
    return NodeAt({static_cast<double>(i) / n1, 0.7 * j / n2, 0.0}, part);
  };
  ModelText::Beam beam;
  beam.orientation = {Roll(dice, -0.5, 0.5), Roll(dice, -0.5, 0.5), 1.0};
  for (const bool longitudinal : {true, false}) {
    ChooseSection(tables, dice, beam);
    for (int j = 0; j <= (longitudinal ? n2 : n1); ++j) {
      std::vector<int> line;
      for (int i = 0; i <= (longitudinal ? n1 : n2); ++i) {
        line.push_back(longitudinal ? at(i, j) : at(j, i));
      }
      AddBeams(line, beam, part);
    }
  }
}

void AddShape(const Tables& tables, Dice& dice, Part& part) {
  switch (RollInteger(dice, 0, 8)) {
    case 0:
      return AddPlate(tables, dice, part);
    case 1:
      return AddFold(tables, dice, part);
    case 2:
      return AddTube(4, Roll(dice, 0.1, 0.3), tables, dice, part);
    case 3:
      return AddTube(RollInteger(dice, 12, 24), Roll(dice, 0.2, 0.4), tables, dice, part);
    case 4:
      return AddCurved(tables, dice, part);
    case 5:
      return AddGirder(tables, dice, part);
    case 6:
      return AddStiffenedPlate(tables, dice, part);
    case 7:
      return AddFrame(tables, dice, part);
    default:
      return AddGrillage(tables, dice, part);
  }
}

double Distance(const Point& a, const Point& b) {
  return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

double DistanceFromLine(const Point& p, const Point& a, const Point& b) {
  const Point d{b[0] - a[0], b[1] - a[1], b[2] - a[2]}, v{p[0] - a[0], p[1] - a[1], p[2] - a[2]};
  const double c = (v[0] * d[0] + v[1] * d[1] + v[2] * d[2]) / std::pow(Distance(a, b), 2);
  return Distance(p, {a[0] + c * d[0], a[1] + c * d[1], a[2] + c * d[2]});
}

// Holds the part: one node clamped, three nodes far apart pinned, or 3 + 2 + 1 translations of
// such nodes (in the global axes of a part that is not turned yet).
void Support(Dice& dice, Part& part) {
  const std::vector<Point>& nodes = part.text.nodes;
  const auto farthest = [&](const std::function<double(const Point&)>& measure) {
    return static_cast<int>(
        std::max_element(nodes.begin(), nodes.end(),
                         [&](const Point& p, const Point& q) { return measure(p) < measure(q); }) -
        nodes.begin());
  };
  const int a = RollInteger(dice, 0, static_cast<int>(nodes.size()) - 1);
  const Point& A = nodes[static_cast<std::size_t>(a)];
  const int b = farthest([&](const Point& p) { return Distance(p, A); });
  const Point& B = nodes[static_cast<std::size_t>(b)];
  const int c = farthest([&](const Point& p) { return DistanceFromLine(p, A, B); });
  if (RollYes(dice, 0.4)) {
    part.text.restraints = {{a, {1, 1, 1, 1, 1, 1}}};
  } else {
    part.text.restraints = {
        {a, {1, 1, 1, 0, 0, 0}}, {b, {1, 1, 1, 0, 0, 0}}, {c, {1, 1, 1, 0, 0, 0}}};
  }
}

// Forces and moments of this size, and pressures and line loads.
void Load(double force, Dice& dice, Part& part) {
  ModelText& text = part.text;
  for (int k = RollInteger(dice, 1, 4); k > 0; --k) {
    ModelText::Force load;
    load.node = RollInteger(dice, 0, static_cast<int>(text.nodes.size()) - 1);
    // Not on a support: a force there has no effect, which is a hint.
    const auto isHere = [&](const auto& row) { return row.node == load.node; };
    if (std::any_of(text.restraints.begin(), text.restraints.end(), isHere)) continue;
    if (std::any_of(text.forces.begin(), text.forces.end(), isHere)) continue;
    for (std::size_t d = 0; d < 3; ++d) load.components[d] = Roll(dice, -force, force);
    text.forces.push_back(load);
  }
  const auto size = [](const auto& table) { return static_cast<int>(table.size()); };
  for (int e = 0; e < size(text.shells4); e += 3) {
    text.shell4Loads.push_back({e, {force, force, 2.0 * force}});
  }
  for (int e = 0; e < size(text.shells3); e += 2) {
    text.shell3Loads.push_back({e, {-force, force, force}});
  }
  for (int e = 0; e < size(text.beams); e += 4) text.beamLoads.push_back({e, force, 2.0 * force});
}

// A random rotation: row-major, from a random quaternion.
std::array<double, 9> RandomRotation(Dice& dice) {
  std::array<double, 4> q{};
  double sum = 0.0;
  for (double& value : q) {
    value = Roll(dice, -1.0, 1.0);
    sum += value * value;
  }
  for (double& value : q) value /= std::sqrt(sum);
  const auto [w, x, y, z] = q;
  return {1 - 2 * (y * y + z * z), 2 * (x * y - w * z),     2 * (x * z + w * y),
          2 * (x * y + w * z),     1 - 2 * (x * x + z * z), 2 * (y * z - w * x),
          2 * (x * z - w * y),     2 * (y * z + w * x),     1 - 2 * (x * x + y * y)};
}

Point TurnBy(const std::array<double, 9>& R, const Point& p) {
  return {R[0] * p[0] + R[1] * p[1] + R[2] * p[2], R[3] * p[0] + R[4] * p[1] + R[5] * p[2],
          R[6] * p[0] + R[7] * p[1] + R[8] * p[2]};
}

// Turns, scales and moves the part.
void PlacePart(double size, const Point& origin, Dice& dice, Part& part) {
  const std::array<double, 9> R =
      RollYes(dice, 0.3) ? std::array<double, 9>{1, 0, 0, 0, 1, 0, 0, 0, 1} : RandomRotation(dice);
  for (Point& node : part.text.nodes) {
    node = TurnBy(R, node);
    for (std::size_t i = 0; i < 3; ++i) node[i] = origin[i] + size * node[i];
  }
  for (ModelText::Beam& beam : part.text.beams) {
    beam.orientation = TurnBy(R, beam.orientation);
    beam.BeamSecOz *= size;
  }
}

// Appends the part's rows to the model, with its numbers moved.
void Append(const Tables& tables, Dice& dice, Part part, ModelText& model) {
  const auto size = [](const auto& table) { return static_cast<int>(table.size()); };
  const int nodes = size(model.nodes), quads = size(model.shells4), triangles = size(model.shells3),
            beams = size(model.beams);
  const int material = RollInteger(dice, 0, tables.materials - 1);
  ModelText& text = part.text;
  const auto move = [](auto& rows, auto change) {
    std::for_each(rows.begin(), rows.end(), change);
  };
  const auto moveShell = [&](auto& shell) {
    for (int& node : shell.nodes) node += nodes;
    shell.material = material;
  };
  move(text.shells4, moveShell);
  move(text.shells3, moveShell);
  move(text.beams, [&](auto& beam) {
    beam.node1 += nodes;
    beam.node2 += nodes;
    beam.material = material;
  });
  move(text.restraints, [&](auto& row) { row.node += nodes; });
  move(text.forces, [&](auto& row) { row.node += nodes; });
  move(text.shell4Loads, [&](auto& row) { row.element += quads; });
  move(text.shell3Loads, [&](auto& row) { row.element += triangles; });
  move(text.beamLoads, [&](auto& row) { row.element += beams; });
  const auto append = [](const auto& from, auto& to) {
    to.insert(to.end(), from.begin(), from.end());
  };
  append(text.nodes, model.nodes);
  append(text.shells4, model.shells4);
  append(text.shells3, model.shells3);
  append(text.beams, model.beams);
  append(text.restraints, model.restraints);
  append(text.forces, model.forces);
  append(text.shell4Loads, model.shell4Loads);
  append(text.shell3Loads, model.shell3Loads);
  append(text.beamLoads, model.beamLoads);
}

// Gives the nodes a random order.
void ShuffleNodes(Dice& dice, ModelText& model) {
  std::vector<int> newNumber(model.nodes.size());
  std::iota(newNumber.begin(), newNumber.end(), 0);
  for (std::size_t k = newNumber.size(); k-- > 1;) {
    std::swap(newNumber[k],
              newNumber[static_cast<std::size_t>(RollInteger(dice, 0, static_cast<int>(k)))]);
  }
  const std::vector<std::array<double, 3>> old = model.nodes;
  const auto renumber = [&](int& node) { node = newNumber[static_cast<std::size_t>(node)]; };
  for (std::size_t k = 0; k < old.size(); ++k) {
    model.nodes[static_cast<std::size_t>(newNumber[k])] = old[k];
  }
  for (auto& shell : model.shells4) std::for_each(shell.nodes.begin(), shell.nodes.end(), renumber);
  for (auto& shell : model.shells3) std::for_each(shell.nodes.begin(), shell.nodes.end(), renumber);
  for (auto& beam : model.beams) {
    renumber(beam.node1);
    renumber(beam.node2);
  }
  for (auto& row : model.restraints) renumber(row.node);
  for (auto& row : model.forces) renumber(row.node);
}

// N and mm, N and m, kN and m: the length of 1 m, and the factor of Pa to the unit of stress and of
// kg/m3 to that of density.
struct Units {
  double metre, stress, density;
};

}  // namespace

double Roll(Dice& dice, double low, double high) {
  return low + (high - low) * (static_cast<double>(dice.engine()) / 4294967296.0);
}

int RollInteger(Dice& dice, int low, int high) {
  const auto span = static_cast<std::uint32_t>(high - low + 1);
  return low + static_cast<int>(dice.engine() % span);
}

ModelText MakeGoodModel(std::uint32_t seed) {
  Dice dice = MakeDice(seed);
  constexpr std::array<Units, 3> AllUnits{
      {{1000.0, 1e-6, 1e-12}, {1.0, 1.0, 1.0}, {1.0, 1e-3, 1e-3}}};
  const Units units = AllUnits[static_cast<std::size_t>(RollInteger(dice, 0, 2))];
  const double size = Roll(dice, 1.0, 20.0) * units.metre;
  ModelText model;
  constexpr std::array<std::array<double, 3>, 3> Metals{
      {{2.06e11, 0.3, 7850.0}, {7.0e10, 0.33, 2700.0}, {1.1e11, 0.34, 4430.0}}};
  Tables tables;
  tables.materials = RollInteger(dice, 1, 3);
  for (int k = 0; k < tables.materials; ++k) {
    const auto& metal = Metals[static_cast<std::size_t>(k)];
    model.materials.push_back({metal[0] * units.stress, metal[1], metal[2] * units.density});
  }
  // From thin, one in 400 of the part's size, to thick, one in 20.
  tables.thicknesses = RollInteger(dice, 1, 4);
  for (int k = 0; k < tables.thicknesses; ++k) {
    model.thicknesses.push_back(size * std::exp(Roll(dice, std::log(0.0025), std::log(0.05))));
  }
  tables.tSections = tables.lSections = tables.cSections = 2;
  for (int k = 0; k < 2; ++k) {
    const double depth = size * Roll(dice, 0.02, 0.05);
    const bool bar = RollYes(dice, 0.3);  // without a flange
    const double width = bar ? 0.0 : 0.5 * depth, flange = bar ? 0.0 : 0.06 * depth;
    model.tSections.push_back({depth, 0.05 * depth, width, flange});
    model.lSections.push_back({depth, 0.06 * depth, 0.8 * width, flange});
    model.cSections.push_back({0.4 * depth, 0.04 * depth});
  }
  const int parts = RollInteger(dice, 1, 3);
  for (int k = 0; k < parts; ++k) {
    Part part;
    AddShape(tables, dice, part);
    Support(dice, part);
    Load(1.0, dice, part);
    // Each part fits into a ball of the radius 2; the parts stand apart.
    PlacePart(size, {size * 5.0 * k, 0.0, size * Roll(dice, -1.0, 1.0)}, dice, part);
    Append(tables, dice, std::move(part), model);
  }
  if (RollYes(dice)) ShuffleNodes(dice, model);
  return model;
}

}  // namespace kvx::test
