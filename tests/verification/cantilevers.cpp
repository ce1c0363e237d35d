// Cantilevers of shells that bend in their plane: a straight and a curved one, with one element
// over the height on the coarsest mesh, and a Z-section in torsion.
#include <cmath>

#include "verification/chapters.h"
#include "verification/meshes.h"

namespace korvex::book {

namespace {

// Directions of forces and displacements.
constexpr std::size_t X = 0, Y = 1, Z = 2;

enum class Shape { Rectangles, Trapezoids, Parallelograms, Squares };

// Of the straight one; the curved one has the same thickness.
constexpr double Width = 0.2, Thickness = 0.1;
constexpr int CoarseCells = 6;  // along the coarsest mesh, each 1 long

// The place (s, t) of the unit square on the straight cantilever. The lines between the six cells
// of the coarsest mesh are upright, or inclined by 45 degrees: alternately to one side and to the
// other (trapezoids), or all to one side (parallelograms).
Point3 PlaceStraight(Shape shape, double s, double t) {
  const double along = t * CoarseCells;
  const auto line = [shape, s](int i) {
    if (shape == Shape::Rectangles || shape == Shape::Squares || i == 0 || i == CoarseCells)
      return static_cast<double>(i);
    const double lean = Width * (s - 0.5);
    return i + (shape == Shape::Trapezoids && i % 2 == 0 ? -lean : lean);
  };
  const int i = along < CoarseCells ? static_cast<int>(along) : CoarseCells - 1;
  return {line(i) + (line(i + 1) - line(i)) * (along - i), Width * (1 - s), 0.0};
}

enum class Load { Extension, InPlane, OutOfPlane, Twist };

// k elements over the height and 6 k along the cantilever, or 30 k squares.
double DeflectStraight(Shape shape, Load load, int k) {
  const int along = shape == Shape::Squares ? 30 * k : CoarseCells * k;
  ModelText model = test::BuildGrid(
      k, along, Cells::Quads, [shape](double s, double t) { return PlaceStraight(shape, s, t); });
  model.materials = {{1e7, 0.3, 0.0}};
  model.thicknesses = {Thickness};
  FixWhere(
      model, [](const Point3& p) { return Same(p[0], 0.0); }, Clamped);
  const int upper = test::GridNode(k, 0, along), lower = upper + k;
  const std::size_t direction = load == Load::Extension ? X : load == Load::InPlane ? Y : Z;
  if (load == Load::Twist) {
    // A couple of forces at the corners.
    model.forces = {{upper, SingleLoad(Z, 1.0 / Width)}, {lower, SingleLoad(Z, -1.0 / Width)}};
  } else {
    LoadEdge(model, upper, lower, 1, SingleLoad(direction, 1.0));
  }
  const Results results = RunModel(model);
  const Six& a = results.displacements[static_cast<std::size_t>(upper)];
  const Six& b = results.displacements[static_cast<std::size_t>(lower)];
  if (load == Load::Twist) return (a[Z] - b[Z]) / Width;
  return (a[direction] + b[direction]) / 2;
}

ConvergenceCase StraightCantilever() {
  ConvergenceCase c;
  c.meshes = {1, 2, 4, 8};
  c.nameMesh = [](int k) { return std::to_string(CoarseCells * k) + " x " + std::to_string(k); };
  c.finestShort = 8;
  const std::vector<std::pair<Shape, std::string>> shapes{
      {Shape::Rectangles, "rectangles"},
      {Shape::Trapezoids, "trapezoids"},
      {Shape::Parallelograms, "parallelograms"}};
  struct LoadCase {
    Load load;
    std::string name, reference;
  };
  const std::vector<LoadCase> loads{{Load::Extension, "extension", "3.0e-5"},
                                    {Load::InPlane, "in-plane shear", ".1081"},
                                    {Load::OutOfPlane, "out-of-plane shear", ".4321"},
                                    {Load::Twist, "twist", ".03208"}};
  for (const LoadCase& loadCase : loads) {
    for (const auto& [shape, name] : shapes) {
      c.quantities.push_back({loadCase.name + ", " + name, loadCase.reference,
                              [load = loadCase.load, shape = shape](int k) {
                                return DeflectStraight(shape, load, k);
                              }});
    }
  }
  c.quantities.push_back({"in-plane shear, squares (30 k x k)", ".1081",
                          [](int k) { return DeflectStraight(Shape::Squares, Load::InPlane, k); }});
  return c;
}

double DeflectCurved(Load load, int k) {
  const double inner = 4.12, outer = 4.32;
  ModelText model = test::BuildGrid(k, CoarseCells * k, Cells::Quads, [=](double s, double t) {
    const double r = inner + (outer - inner) * s, angle = Pi / 2 * t;
    return Point3{r * std::cos(angle), r * std::sin(angle), 0.0};
  });
  model.materials = {{1e7, 0.25, 0.0}};
  model.thicknesses = {Thickness};
  for (int i = 0; i <= k; ++i) model.restraints.push_back({i, Clamped});
  const int tip = test::GridNode(k, 0, CoarseCells * k);
  // At the tip the radius points along Y.
  const std::size_t direction = load == Load::InPlane ? Y : Z;
  LoadEdge(model, tip, tip + k, 1, SingleLoad(direction, 1.0));
  const Results results = RunModel(model);
  return (results.displacements[static_cast<std::size_t>(tip)][direction] +
          results.displacements[static_cast<std::size_t>(tip + k)][direction]) /
         2;
}

ConvergenceCase CurvedCantilever() {
  ConvergenceCase c;
  c.meshes = {1, 2, 4, 8};
  c.nameMesh = [](int k) { return std::to_string(CoarseCells * k) + " x " + std::to_string(k); };
  c.finestShort = 8;
  c.quantities = {
      {"in plane", "0.08734", [](int k) { return DeflectCurved(Load::InPlane, k); }},
      {"out of plane", "0.5022", [](int k) { return DeflectCurved(Load::OutOfPlane, k); }}};
  return c;
}

// The membrane stress, in MPa. n elements over each flange, 2 n over the web, 8 n along; nodes are
// numbered cross-section by cross-section.
double StressZSection(int n) {
  const double length = 10.0, flange = 1.0, web = 2.0;
  const int across = 4 * n;
  ModelText model = test::BuildGrid(across, 8 * n, Cells::Quads, [=](double s, double t) {
    const double path = s * (2 * flange + web);
    if (path < flange) return Point3{length * t, path - flange, web / 2};
    if (path < flange + web) return Point3{length * t, 0.0, web / 2 - (path - flange)};
    return Point3{length * t, path - flange - web, -web / 2};
  });
  model.materials = {{210e9, 0.3, 0.0}};
  model.thicknesses = {0.1};
  FixWhere(
      model, [](const Point3& p) { return Same(p[0], 0.0); }, Clamped);
  const int tip = test::GridNode(across, 0, 8 * n);
  LoadEdge(model, tip, tip + n, 1, SingleLoad(Y, -0.6e6));
  LoadEdge(model, tip + 3 * n, tip + 4 * n, 1, SingleLoad(Y, 0.6e6));
  const Results results = RunModel(model, Read::Stresses);
  // The corner at the flange's edge, a quarter of the length from the clamped end.
  const int point = test::GridNode(across, 0, 2 * n);
  double sum = 0.0;
  int count = 0;
  for (const Corners& shell : results.averaged) {
    for (const Corner& corner : shell) {
      if (corner.node != point) continue;
      sum += MembraneSX(corner);
      ++count;
    }
  }
  return sum / count / 1e6;
}

ConvergenceCase ZSection() {
  ConvergenceCase c;
  c.meshes = {1, 2, 4, 8};
  c.nameMesh = [](int n) { return std::to_string(8 * n) + " x " + std::to_string(4 * n); };
  c.finestShort = 8;
  c.quantities = {{"quads", "-108", StressZSection}};
  return c;
}

}  // namespace

Fillings ComputeCantilevers(Extent extent) {
  return {{"table:straight cantilever", ComputeTable(StraightCantilever(), extent)},
          {"table:curved cantilever", ComputeTable(CurvedCantilever(), extent)},
          {"table:Z-section", ComputeTable(ZSection(), extent)}};
}

}  // namespace korvex::book
