// Square and circular plates under uniform pressure; symmetry leaves a quarter of each.
#include <cmath>

#include "verification/chapters.h"
#include "verification/meshes.h"

namespace korvex::book {

namespace {

constexpr double E = 1e7, Mu = 0.3, Thickness = 1e-3;  // plates of side, or radius, 1

constexpr std::size_t Uz = 2, Rx = 3, Ry = 4;  // dofs

constexpr double Rigidity() { return E * Thickness * Thickness * Thickness / (12 * (1 - Mu * Mu)); }

enum class Edges { Clamped, Supported };
enum class Division { Regular, Distorted };

// The place of the division point i = s n on a side of length 1 whose n parts are in the ratios
// 1 : 2 : ... : n.
double Grade(double s, int n) { return s * (s * n + 1) / (n + 1); }

// The crossing of the two lines that join division points of opposite sides of the unit square. The
// parts of all sides grow in the same direction round the square (Ko, Lee, Lee & Bathe 2017).
Point3 PlaceDistorted(double s, double t, int n) {
  const double lower = Grade(s, n), upper = 1 - Grade(1 - s, n);
  const double right = Grade(t, n), left = 1 - Grade(1 - t, n);
  const double x = (lower + (upper - lower) * left) / (1 - (upper - lower) * (right - left));
  return {x, left + (right - left) * x, 0.0};
}

// w D / (p L^4) at the centre. The model is the quarter 0 <= x, y <= 1/2 of a plate whose centre is
// the origin.
double DeflectSquare(Edges edges, Cells cells, Division division, int n) {
  ModelText model = test::BuildGrid(n, n, cells, [=](double s, double t) {
    const Point3 p = division == Division::Regular ? Point3{s, t, 0.0} : PlaceDistorted(s, t, n);
    return Point3{p[0] / 2, p[1] / 2, 0.0};
  });
  model.materials = {{E, Mu, 0.0}};
  model.thicknesses = {Thickness};
  const auto everywhere = [](const Point3&) { return true; };
  FixWhere(model, everywhere, PlateOnly);
  FixWhere(
      model, [](const Point3& p) { return Same(p[0], 0.0); }, MirrorX);
  FixWhere(
      model, [](const Point3& p) { return Same(p[1], 0.0); }, MirrorY);
  const bool clamped = edges == Edges::Clamped;
  FixWhere(
      model, [](const Point3& p) { return Same(p[0], 0.5); }, clamped ? Clamped : Hold({Uz, Rx}));
  FixWhere(
      model, [](const Point3& p) { return Same(p[1], 0.5); }, clamped ? Clamped : Hold({Uz, Ry}));
  PressShells(model, 1.0);
  return RunModel(model).displacements[0][Uz] * Rigidity();
}

ConvergenceCase SquarePlates() {
  ConvergenceCase c;
  c.meshes = {4, 8, 16, 32, 64};
  c.nameMesh = NameSquare;
  c.finestShort = 32;
  const std::vector<std::string> clamped{".9871", ".9958", ".9980", ".9985", ".9986"};
  const std::vector<std::string> supported{".9949", ".9988", ".9998", "1.000", "1.000"};
  const auto solve = [](Edges edges, Cells cells, Division division) {
    return [=](int n) { return DeflectSquare(edges, cells, division, n); };
  };
  const std::string ritz = "1.265319e-3";
  c.quantities = {{"clamped, regular quads", "1.267e-3",
                   solve(Edges::Clamped, Cells::Quads, Division::Regular), clamped, ritz},
                  {"clamped, distorted quads",
                   "1.267e-3",
                   solve(Edges::Clamped, Cells::Quads, Division::Distorted),
                   {},
                   ritz},
                  {"clamped, regular triangles",
                   "1.267e-3",
                   solve(Edges::Clamped, Cells::Triangles, Division::Regular),
                   {},
                   ritz},
                  {"supported, regular quads", "4.062e-3",
                   solve(Edges::Supported, Cells::Quads, Division::Regular), supported},
                  {"supported, distorted quads", "4.062e-3",
                   solve(Edges::Supported, Cells::Quads, Division::Distorted)},
                  {"supported, regular triangles", "4.062e-3",
                   solve(Edges::Supported, Cells::Triangles, Division::Regular)}};
  return c;
}

// Three blocks of n x n cells: a four-sided one at the centre, and two
// between it and the circle of radius 1.
ModelText BuildQuarterDisc(int n, Cells cells) {
  // The publication does not give its mesh; with this corner its rows are reproduced.
  constexpr double Side = 0.5, Corner = 1.0 / 3;
  const auto inner = [](double s, double t) {
    return Point3{Side * s * (1 - t) + Corner * s * t, Side * t * (1 - s) + Corner * s * t, 0.0};
  };
  const auto outer = [](const Point3& p, double angle, double t) {
    return Point3{p[0] + (std::cos(angle) - p[0]) * t, p[1] + (std::sin(angle) - p[1]) * t, 0.0};
  };
  ModelText model = test::BuildGrid(n, n, cells, inner);
  Append(model, test::BuildGrid(n, n, cells, [=](double s, double t) {
           return outer(inner(1.0, t), Pi / 4 * t, s);
         }));
  Append(model, test::BuildGrid(n, n, cells, [=](double s, double t) {
           return outer(inner(s, 1.0), Pi / 4 * (2 - s), t);
         }));
  MergeNodes(model);
  SortNodes(model, [](const Point3& p) { return p[0] - p[1]; });
  return model;
}

// 64 w D / (p R^4) at the centre.
double DeflectDisc(Cells cells, int n) {
  ModelText model = BuildQuarterDisc(n, cells);
  model.materials = {{E, Mu, 0.0}};
  model.thicknesses = {Thickness};
  FixWhere(
      model, [](const Point3&) { return true; }, PlateOnly);
  FixWhere(
      model, [](const Point3& p) { return Same(p[0], 0.0); }, MirrorX);
  FixWhere(
      model, [](const Point3& p) { return Same(p[1], 0.0); }, MirrorY);
  FixWhere(
      model, [](const Point3& p) { return Same(p[0] * p[0] + p[1] * p[1], 1.0); }, Clamped);
  PressShells(model, 1.0);
  const int centre = NodeAt(model, {0.0, 0.0, 0.0});
  return RunModel(model).displacements[static_cast<std::size_t>(centre)][Uz] * 64 * Rigidity();
}

ConvergenceCase CircularPlate() {
  ConvergenceCase c;
  c.meshes = {2, 4, 8, 16, 32};
  c.nameMesh = [](int n) { return "3 x " + NameSquare(n); };
  c.finestShort = 16;
  c.quantities = {{"quads",
                   "1",
                   [](int n) { return DeflectDisc(Cells::Quads, n); },
                   {".9934", ".9986", ".9997", ".9999"}},
                  {"triangles", "1", [](int n) { return DeflectDisc(Cells::Triangles, n); }}};
  return c;
}

}  // namespace

Fillings ComputePlates(Extent extent) {
  return {{"table:square plate", ComputeTable(SquarePlates(), extent)},
          {"table:circular plate", ComputeTable(CircularPlate(), extent)}};
}

}  // namespace korvex::book
