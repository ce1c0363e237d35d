// Membrane bending: straight and curved cantilevers of one element over the height, and a folded
// one in torsion.
#include <cmath>

#include "verification/chapters.h"
#include "verification/meshes.h"

namespace korvex::book {

namespace {

enum class Shape { Rectangles, Trapezoids, Parallelograms, Squares };

constexpr double Length = 6.0, Width = 0.2, Thickness = 0.1;
constexpr int Cells6 = 6;

// The six elements of the coarse mesh; each is divided into k x k for a finer one. The lines
// between them are upright, lean by 45 degrees in turn to one side and the other, or all to one
// side.
Point3 PlaceStraight(Shape shape, double s, double t) {
  const double along = t * Cells6;
  const auto line = [shape, s](int i) {
    if (shape == Shape::Rectangles || shape == Shape::Squares || i == 0 || i == Cells6)
      return static_cast<double>(i);
    const double lean = Width * (s - 0.5);
    return i + (shape == Shape::Trapezoids && i % 2 == 0 ? -lean : lean);
  };
  const int i = along < Cells6 ? static_cast<int>(along) : Cells6 - 1;
  return {line(i) + (line(i + 1) - line(i)) * (along - i), Width * (1 - s), 0.0};
}

enum class Load { Extension, InPlane, OutOfPlane, Twist };

// k elements over the height, 6 k along, or 30 k squares.
double DeflectStraight(Shape shape, Load load, int k) {
  const int along = shape == Shape::Squares ? 30 * k : Cells6 * k;
  ModelText model = test::BuildGrid(
      k, along, Cells::Quads, [shape](double s, double t) { return PlaceStraight(shape, s, t); });
  model.materials = {{1e7, 0.3, 0.0}};
  model.thicknesses = {Thickness};
  FixWhere(
      model, [](const Point3& p) { return Same(p[0], 0.0); }, Clamped);
  const int upper = test::GridNode(k, 0, along), lower = upper + k;
  Six force{};
  std::size_t read = 0;
  switch (load) {
    case Load::Extension:
      force[0] = 1.0, read = 0;
      break;
    case Load::InPlane:
      force[1] = 1.0, read = 1;
      break;
    case Load::OutOfPlane:
      force[2] = 1.0, read = 2;
      break;
    case Load::Twist:
      // A couple of forces at the corners.
      model.forces = {{upper, {0.0, 0.0, 1.0 / Width, 0.0, 0.0, 0.0}},
                      {lower, {0.0, 0.0, -1.0 / Width, 0.0, 0.0, 0.0}}};
      break;
  }
  if (load != Load::Twist) LoadEdge(model, upper, lower, 1, force);
  const Results results = RunModel(model);
  const Six& a = results.displacements[static_cast<std::size_t>(upper)];
  const Six& b = results.displacements[static_cast<std::size_t>(lower)];
  if (load == Load::Twist) return (a[2] - b[2]) / Width;
  return (a[read] + b[read]) / 2;
}

ConvergenceCase StraightCantilever() {
  ConvergenceCase c;
  c.meshes = {1, 2, 4, 8};
  c.nameMesh = [](int k) { return std::to_string(Cells6 * k) + " x " + std::to_string(k); };
  c.finestShort = 8;
  const std::vector<std::pair<Shape, std::string>> shapes{
      {Shape::Rectangles, "rectangles"},
      {Shape::Trapezoids, "trapezoids"},
      {Shape::Parallelograms, "parallelograms"}};
  struct Row {
    Load load;
    std::string name, reference;
  };
  const std::vector<Row> loads{{Load::Extension, "extension", "3.0e-5"},
                               {Load::InPlane, "in-plane shear", ".1081"},
                               {Load::OutOfPlane, "out-of-plane shear", ".4321"},
                               {Load::Twist, "twist", ".03208"}};
  for (const Row& row : loads) {
    for (const auto& [shape, name] : shapes) {
      c.quantities.push_back(
          {row.name + ", " + name, row.reference,
           [load = row.load, shape = shape](int k) { return DeflectStraight(shape, load, k); }});
    }
  }
  c.quantities.push_back({"in-plane shear, squares (30 k x k)", ".1081",
                          [](int k) { return DeflectStraight(Shape::Squares, Load::InPlane, k); }});
  return c;
}

double DeflectCurved(Load load, int k) {
  const double inner = 4.12, outer = 4.32;
  ModelText model = test::BuildGrid(k, Cells6 * k, Cells::Quads, [=](double s, double t) {
    const double r = inner + (outer - inner) * s, angle = Pi / 2 * t;
    return Point3{r * std::cos(angle), r * std::sin(angle), 0.0};
  });
  model.materials = {{1e7, 0.25, 0.0}};
  model.thicknesses = {Thickness};
  for (int i = 0; i <= k; ++i) model.restraints.push_back({i, Clamped});
  const int tip = test::GridNode(k, 0, Cells6 * k);
  // At the tip the radius points along Y.
  const std::size_t d = load == Load::InPlane ? 1 : 2;
  Six force{};
  force[d] = 1.0;
  LoadEdge(model, tip, tip + k, 1, force);
  const Results results = RunModel(model);
  return (results.displacements[static_cast<std::size_t>(tip)][d] +
          results.displacements[static_cast<std::size_t>(tip + k)][d]) /
         2;
}

ConvergenceCase CurvedCantilever() {
  ConvergenceCase c;
  c.meshes = {1, 2, 4, 8};
  c.nameMesh = [](int k) { return std::to_string(Cells6 * k) + " x " + std::to_string(k); };
  c.finestShort = 8;
  c.quantities = {
      {"in plane", "0.08734", [](int k) { return DeflectCurved(Load::InPlane, k); }},
      {"out of plane", "0.5022", [](int k) { return DeflectCurved(Load::OutOfPlane, k); }}};
  return c;
}

// n elements over each flange, 2 n over the web, 8 n along; nodes station by station.
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
  LoadEdge(model, tip, tip + n, 1, {0.0, -0.6e6, 0.0, 0.0, 0.0, 0.0});
  LoadEdge(model, tip + 3 * n, tip + 4 * n, 1, {0.0, 0.6e6, 0.0, 0.0, 0.0, 0.0});
  const Results results = RunModel(model, Read::Stresses);
  // The corner at the flange's edge, a quarter of the length from the clamped end.
  const int point = test::GridNode(across, 0, 2 * n);
  double sum = 0.0;
  int count = 0;
  for (const Corners& shell : results.averaged) {
    for (const Corner& corner : shell) {
      if (corner.node != point) continue;
      sum += (corner.top[0] + corner.bottom[0]) / 2;
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
