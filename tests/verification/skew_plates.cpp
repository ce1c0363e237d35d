// Skew plates: simply supported rhombi of quads and triangles, and a rhombic cantilever of
// triangles.
#include <cmath>

#include "verification/chapters.h"
#include "verification/meshes.h"

namespace korvex::book {

namespace {

constexpr std::size_t Ux = 0, Uy = 1, Uz = 2, Rz = 5;  // dofs

// The place (s, t) of the unit square, moved onto a rhombus with the acute angle `degrees` and one
// side along X.
Point3 PlaceSkew(double side, double degrees, double s, double t) {
  const double angle = degrees * Pi / 180.0;
  return {side * (s + t * std::cos(angle)), side * t * std::sin(angle), 0.0};
}

// The cells of a skew mesh: quads, or triangles cut along the longer or the shorter diagonal.
enum class Skew { Quads, LongCut, ShortCut };

double DeflectSkewPlate(Skew skew, double degrees, int n) {
  const bool mirrored = skew == Skew::ShortCut;
  // BuildGrid cuts a cell along the diagonal from its first corner, here the longer one. With s
  // reversed it is the shorter one; the normals then point down.
  ModelText model = test::BuildGrid(
      n, n, skew == Skew::Quads ? Cells::Quads : Cells::Triangles,
      [=](double s, double t) { return PlaceSkew(1.0, degrees, mirrored ? 1 - s : s, t); });
  model.materials = {{3e7, 0.3, 0.0}};
  model.thicknesses = {0.01};
  for (int j = 0; j <= n; ++j) {
    for (int i = 0; i <= n; ++i) {
      const bool edge = i == 0 || i == n || j == 0 || j == n;
      model.restraints.push_back(
          {test::GridNode(n, i, j), edge ? Hold({Ux, Uy, Uz, Rz}) : PlateOnly});
    }
  }
  PressShells(model, mirrored ? -1.0 : 1.0);
  const int centre = test::GridNode(n, n / 2, n / 2);
  return RunModel(model).displacements[static_cast<std::size_t>(centre)][Uz];
}

ConvergenceCase SkewPlates() {
  ConvergenceCase c;
  c.meshes = {4, 8, 16, 32, 64};
  c.nameMesh = NameSquare;
  c.finestShort = 32;
  const std::vector<std::pair<double, std::string>> plates{
      {80.0, "1.409e-3"}, {60.0, ".9318e-3"}, {40.0, ".3487e-3"}, {30.0, ".1485e-3"}};
  const std::vector<std::pair<Skew, std::string>> kinds{{Skew::Quads, "quads"},
                                                        {Skew::ShortCut, "triangles, cut short"},
                                                        {Skew::LongCut, "triangles, cut long"}};
  for (const auto& [skew, name] : kinds) {
    for (const auto& [angle, reference] : plates) {
      c.quantities.push_back(
          {std::to_string(static_cast<int>(angle)) + " degrees, " + name, reference,
           [skew = skew, angle = angle](int n) { return DeflectSkewPlate(skew, angle, n); }});
    }
  }
  return c;
}

// The deflection at a point given in halves of the sides (0, 1, 2): i along the clamped side, j
// away from it.
double DeflectRhombus(int i, int j, int n) {
  ModelText model = test::BuildGrid(n, n, Cells::Triangles,
                                    [](double s, double t) { return PlaceSkew(12.0, 45.0, s, t); });
  model.materials = {{10.5e6, 0.3, 0.0}};
  model.thicknesses = {0.125};
  for (int k = 0; k <= n; ++k) model.restraints.push_back({k, Clamped});
  PressShells(model, 0.26066);
  const int node = test::GridNode(n, i * n / 2, j * n / 2);
  return RunModel(model).displacements[static_cast<std::size_t>(node)][Uz];
}

ConvergenceCase RhombicCantilever() {
  ConvergenceCase c;
  c.meshes = {2, 4, 8, 16, 32};
  c.nameMesh = NameSquare;
  c.finestShort = 32;
  struct Point {
    int i, j;
    std::string computed, measured;
  };
  const std::vector<Point> points{{2, 2, ".303728", ".297"},  {1, 2, ".198632", ".204"},
                                  {0, 2, ".112782", ".121"},  {2, 1, ".121193", ".129"},
                                  {1, 1, ".0555932", ".056"}, {0, 1, ".0225457", ".022"}};
  int number = 0;
  for (const Point& point : points) {
    c.quantities.push_back({"point " + std::to_string(++number),
                            point.computed,
                            [i = point.i, j = point.j](int n) { return DeflectRhombus(i, j, n); },
                            {},
                            point.measured});
  }
  return c;
}

}  // namespace

Fillings ComputeSkewPlates(Extent extent) {
  return {{"table:simply supported plates", ComputeTable(SkewPlates(), extent)},
          {"table:rhombic cantilever", ComputeTable(RhombicCantilever(), extent)}};
}

}  // namespace korvex::book
