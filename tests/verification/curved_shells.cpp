// Curved shells of flat elements: the roof, cylinder and hemisphere of the shell obstacle course
// (Belytschko et al. 1985), the twisted beam, and the hook of two arcs.
#include <cmath>

#include "verification/chapters.h"
#include "verification/meshes.h"

namespace korvex::book {

namespace {

// Components of loads, and dofs.
constexpr std::size_t Fx = 0, Fy = 1, Fz = 2, Ux = 0, Uy = 1, Uz = 2;

double Distance(const Point3& a, const Point3& b) {
  return std::sqrt((a[0] - b[0]) * (a[0] - b[0]) + (a[1] - b[1]) * (a[1] - b[1]) +
                   (a[2] - b[2]) * (a[2] - b[2]));
}

// The part of a cylinder with its axis along Y, from the crown (s = 0) to the angle `phi` and from
// Y = 0 to `length`. Normals point outward.
ModelText BuildCylinder(int n, Cells cells, double R, double phi, double length) {
  return test::BuildGrid(n, n, cells, [=](double s, double t) {
    return Point3{R * std::sin(phi * s), length * t, R * std::cos(phi * s)};
  });
}

// Diaphragm at y = 0, symmetry at the crown and at y = length.
void SupportCylinder(ModelText& model, double length) {
  FixWhere(
      model, [](const Point3& p) { return Same(p[1], 0.0); }, Hold({Ux, Uz}));
  FixWhere(
      model, [=](const Point3& p) { return Same(p[1], length); }, MirrorY);
  FixWhere(
      model, [](const Point3& p) { return Same(p[0], 0.0); }, MirrorX);
}

double DeflectRoof(Cells cells, int n) {
  const double R = 25.0, halfLength = 25.0, weight = 90.0;
  ModelText model = BuildCylinder(n, cells, R, 40.0 * Pi / 180.0, halfLength);
  model.materials = {{4.32e8, 0.0, 0.0}};
  model.thicknesses = {0.25};
  SupportCylinder(model, halfLength);
  const double cell = Distance(model.nodes[0], model.nodes[1]) * halfLength / n * weight;
  const auto hang = [&model](int node, double force) {
    model.forces.push_back({node, SingleLoad(Fz, -force)});
  };
  for (const auto& shell : model.shells4) {
    for (const int node : shell.nodes) hang(node, cell / 4);
  }
  for (const auto& shell : model.shells3) {
    for (const int node : shell.nodes) hang(node, cell / 2 / 3);
  }
  return -RunModel(model).displacements.back()[Uz];
}

ConvergenceCase Roof() {
  ConvergenceCase c;
  c.meshes = {4, 8, 16, 32, 64};
  c.nameMesh = NameSquare;
  c.finestShort = 32;
  c.quantities = {{"quads",
                   "0.3024",
                   [](int n) { return DeflectRoof(Cells::Quads, n); },
                   {".9432", ".9726", ".9886", ".9936", ".9955"}},
                  {"triangles", "0.3024", [](int n) { return DeflectRoof(Cells::Triangles, n); }}};
  return c;
}

double DeflectCylinder(Cells cells, int n) {
  ModelText model = BuildCylinder(n, cells, 300.0, Pi / 2, 300.0);
  model.materials = {{3e6, 0.3, 0.0}};
  model.thicknesses = {3.0};
  SupportCylinder(model, 300.0);
  FixWhere(
      model, [](const Point3& p) { return Same(p[2], 0.0); }, MirrorZ);
  const int loaded = test::GridNode(n, 0, n);
  model.forces = {{loaded, SingleLoad(Fz, -0.25)}};
  return -RunModel(model).displacements[static_cast<std::size_t>(loaded)][Uz];
}

ConvergenceCase PinchedCylinder() {
  ConvergenceCase c;
  c.meshes = {4, 8, 16, 32, 64};
  c.nameMesh = NameSquare;
  c.finestShort = 32;
  c.quantities = {
      {"quads",
       "1.8248e-5",
       [](int n) { return DeflectCylinder(Cells::Quads, n); },
       {".3788", ".7469", ".9286", ".9871", "1.005"}},
      {"triangles", "1.8248e-5", [](int n) { return DeflectCylinder(Cells::Triangles, n); }}};
  return c;
}

// A quarter of the hemisphere from the equator (t = 0) to the hole. The quads are flat, because
// each is symmetric about a meridian plane.
double DeflectHemisphere(Cells cells, int n) {
  const double R = 10.0;
  ModelText model = test::BuildGrid(n, n, cells, [=](double s, double t) {
    const double longitude = Pi / 2 * s, latitude = 72.0 * Pi / 180.0 * t;
    return Point3{R * std::cos(latitude) * std::cos(longitude),
                  R * std::cos(latitude) * std::sin(longitude), R * std::sin(latitude)};
  });
  model.materials = {{6.825e7, 0.3, 0.0}};
  model.thicknesses = {0.04};
  FixWhere(
      model, [](const Point3& p) { return Same(p[0], 0.0); }, MirrorX);
  FixWhere(
      model, [](const Point3& p) { return Same(p[1], 0.0); }, MirrorY);
  model.restraints.push_back({0, Hold({Uz})});
  model.forces = {{0, SingleLoad(Fx, 1.0)}, {n, SingleLoad(Fy, -1.0)}};
  return RunModel(model).displacements[0][Ux];
}

ConvergenceCase Hemisphere() {
  ConvergenceCase c;
  c.meshes = {4, 8, 16, 32, 64};
  c.nameMesh = NameSquare;
  c.finestShort = 32;
  c.quantities = {{"quads",
                   "0.0930",
                   [](int n) { return DeflectHemisphere(Cells::Quads, n); },
                   {"1.044", "1.007", "1.001", "1.004", "1.005"},
                   "0.0940"},
                  {"triangles",
                   "0.0930",
                   [](int n) { return DeflectHemisphere(Cells::Triangles, n); },
                   {},
                   "0.0940"}};
  return c;
}

enum class TipLoad { InPlane, OutOfPlane };

// n elements across the width, 6 n along. The width turns from Y at the clamped end to Z at the
// tip.
double DeflectTwistedBeam(Cells cells, TipLoad load, int n) {
  const double length = 12.0, width = 1.1;
  ModelText model = test::BuildGrid(n, 6 * n, cells, [=](double s, double t) {
    const double angle = Pi / 2 * t, y = width * (s - 0.5);
    return Point3{length * t, y * std::cos(angle), y * std::sin(angle)};
  });
  model.materials = {{29e6, 0.22, 0.0}};
  model.thicknesses = {0.32};
  FixWhere(
      model, [](const Point3& p) { return Same(p[0], 0.0); }, Clamped);
  const bool inPlane = load == TipLoad::InPlane;
  LoadEdge(model, test::GridNode(n, 0, 6 * n), test::GridNode(n, n, 6 * n), 1,
           SingleLoad(inPlane ? Fz : Fy, 1.0));
  const int middle = test::GridNode(n, n / 2, 6 * n);
  return RunModel(model).displacements[static_cast<std::size_t>(middle)][inPlane ? Uz : Uy];
}

ConvergenceCase TwistedBeam() {
  ConvergenceCase c;
  c.meshes = {2, 4, 8, 16, 32};
  c.nameMesh = [](int n) { return std::to_string(n) + " x " + std::to_string(6 * n); };
  c.finestShort = 16;
  const auto solve = [](Cells cells, TipLoad load) {
    return [=](int n) { return DeflectTwistedBeam(cells, load, n); };
  };
  c.quantities = {
      {"quads, in plane", "5.424e-3", solve(Cells::Quads, TipLoad::InPlane)},
      {"quads, out of plane", "1.754e-3", solve(Cells::Quads, TipLoad::OutOfPlane)},
      {"triangles, in plane", "5.424e-3", solve(Cells::Triangles, TipLoad::InPlane)},
      {"triangles, out of plane", "1.754e-3", solve(Cells::Triangles, TipLoad::OutOfPlane)}};
  return c;
}

// The hook's centre line in the XY plane, from the clamped end at the origin: 60 degrees of radius
// 14, then 150 degrees of radius 46, curved to the other side. `t` from 0 to 1 counts the elements:
// a sixth of them is on the small arc.
Point3 PlaceOnHook(double t) {
  constexpr double Small = 14.0, Large = 46.0, First = 1.0 / 6.0;
  if (t <= First) {
    const double angle = Pi / 3 * t / First;
    return {Small * (1 - std::cos(angle)), Small * std::sin(angle), 0.0};
  }
  // The centre of the large arc lies on the other side of the small one's end.
  const double angle = 5 * Pi / 6 * (t - First) / (1 - First) - Pi / 3;
  const double between = Small + Large;
  return {Small - between * std::cos(Pi / 3) + Large * std::cos(angle),
          between * std::sin(Pi / 3) + Large * std::sin(angle), 0.0};
}

double DeflectHook(Cells cells, double Mu, int n) {
  const double width = 20.0;
  ModelText model = test::BuildGrid(n, 6 * n, cells, [=](double s, double t) {
    const Point3 p = PlaceOnHook(t);
    return Point3{p[0], p[1], width * s};
  });
  model.materials = {{3300.0, Mu, 0.0}};
  model.thicknesses = {2.0};
  for (int i = 0; i <= n; ++i) model.restraints.push_back({i, Clamped});
  const int tip = test::GridNode(n, 0, 6 * n);
  LoadEdge(model, tip, tip + n, 1, SingleLoad(Fz, 1.0));
  return RunModel(model).displacements[static_cast<std::size_t>(tip)][Uz];
}

ConvergenceCase Hook() {
  ConvergenceCase c;
  c.meshes = {3, 6, 12, 24, 48};
  c.nameMesh = [](int n) { return std::to_string(n) + " x " + std::to_string(6 * n); };
  c.finestShort = 24;
  c.quantities = {
      {"quads", "4.82482", [](int n) { return DeflectHook(Cells::Quads, 0.3, n); }},
      {"triangles", "4.82482", [](int n) { return DeflectHook(Cells::Triangles, 0.3, n); }},
      {"quads, nu 0.35",
       "4.9352",
       [](int n) { return DeflectHook(Cells::Quads, 0.35, n); },
       {},
       "5.027"}};
  return c;
}

}  // namespace

Fillings ComputeCurvedShells(Extent extent) {
  return {{"table:roof", ComputeTable(Roof(), extent)},
          {"table:pinched cylinder", ComputeTable(PinchedCylinder(), extent)},
          {"table:hemisphere", ComputeTable(Hemisphere(), extent)},
          {"table:twisted beam", ComputeTable(TwistedBeam(), extent)},
          {"table:hook", ComputeTable(Hook(), extent)}};
}

}  // namespace korvex::book
