// Beams: section properties, frames, grillages and offsets against closed forms.
#include <algorithm>
#include <cmath>

#include "deck/model_tables.h"
#include "support/beam_sections.h"
#include "verification/book.h"
#include "verification/chapters.h"
#include "verification/comparison.h"
#include "verification/meshes.h"

namespace korvex::book {

namespace {

using test::TestSection;

constexpr double E = 2.06e11, Mu = 0.3, G = E / (2 * (1 + Mu));  // N, m

// Components of loads, and dofs.
constexpr std::size_t Fx = 0, Fz = 2, Mx = 3, My = 4, Mz = 5;
constexpr std::size_t Ux = 0, Uy = 1, Uz = 2, Rx = 3, Ry = 4, Rz = 5;

// A model with the material and the section, without nodes and beams.
ModelText StartModel(const TestSection& section) {
  ModelText model;
  model.materials = {{E, Mu, 0.0}};
  ModelText::Beam unused;
  test::UseSection(section, model, unused);
  return model;
}

// Adds a beam of the model's section between two of its nodes.
void AddBeam(const TestSection& section, int node1, int node2, const Point3& orientation,
             ModelText& model) {
  ModelText::Beam beam;
  beam.node1 = node1, beam.node2 = node2;
  beam.orientation = orientation;
  beam.BeamSecType = section.BeamSecType;
  beam.BeamSecOz = section.BeamSecOz;
  beam.BeamSecMirrored = section.mirrored ? 1 : 0;
  model.beams.push_back(beam);
}

// Section properties, about the centroid; ey, ez: the centroid's distances from the node.
struct Measured {
  double A, Iy, Iz, J, ey, ez, shearAreaZ;
};

// Computes the section properties from the tip displacements of five cantilevers, each under one
// load.
Measured MeasureSection(const TestSection& section) {
  const double L = 0.5, size = 1e6;
  ModelText model = StartModel(section);
  const std::array<std::size_t, 5> loads{Fx, Fz, Mx, My, Mz};
  for (std::size_t i = 0; i < loads.size(); ++i) {
    const int foot = static_cast<int>(2 * i);
    model.nodes.push_back({0.0, static_cast<double>(i), 0.0});
    model.nodes.push_back({L, static_cast<double>(i), 0.0});
    AddBeam(section, foot, foot + 1, {0.0, 0.0, 1.0}, model);
    model.restraints.push_back({foot, Clamped});
    model.forces.push_back({foot + 1, SingleLoad(loads[i], size)});
  }
  const Results results = RunModel(model);
  // The displacement `dof` under a unit load.
  const auto tip = [&](std::size_t load, std::size_t dof) {
    const auto i = std::find(loads.begin(), loads.end(), load) - loads.begin();
    return results.displacements[2 * static_cast<std::size_t>(i) + 1][dof] / size;
  };
  // Unit moments turn the tip by L / (E I), and move the node by -theta x e. The axial force at the
  // node also bends the beam, the transverse one also twists it.
  Measured m{};
  m.J = L / (G * tip(Mx, Rx));
  m.Iy = L / (E * tip(My, Ry));
  m.Iz = L / (E * tip(Mz, Rz));
  m.ez = -tip(My, Ux) / tip(My, Ry);
  m.ey = tip(Mz, Ux) / tip(Mz, Rz);
  m.A = 1 / (E * tip(Fx, Ux) / L - m.ez * m.ez / m.Iy - m.ey * m.ey / m.Iz);
  const double shear = tip(Fz, Uz) - L * L * L / (3 * E * m.Iy) - m.ey * m.ey * L / (G * m.J);
  m.shearAreaZ = L / (G * shear);
  return m;
}

std::string ComputeSections() {
  const std::array<double, 4> plates{0.3, 0.02, 0.16, 0.025};
  const std::vector<TestSection> sections{
      {"T 300 x 20 / 160 x 25", BeamSecTypeT, plates, 0.0, false},
      {"L 300 x 20 / 160 x 25", BeamSecTypeL, plates, 0.0, false},
      {"the same, offset by 100", BeamSecTypeL, plates, 0.1, false},
      {"the same, mirrored", BeamSecTypeL, plates, 0.1, true},
      {"flat bar 300 x 50", BeamSecTypeT, {0.3, 0.05, 0.0, 0.0}, 0.0, false},
      {"tube R 150, T 20", BeamSecTypeC, {0.15, 0.02, 0.0, 0.0}, 0.0, false},
      {"the same, offset by 100", BeamSecTypeC, {0.15, 0.02, 0.0, 0.0}, 0.1, false}};
  std::vector<Row> rows{{"", "", "A", "Iy", "Iz", "J", "ey", "ez", "shear area z"}};
  for (const TestSection& section : sections) {
    const test::SectionNumbers exact = test::ComputeNumbers(section);
    const Measured m = MeasureSection(section);
    const std::array<std::pair<test::Real, double>, 7> pairs{{{exact.A, m.A},
                                                              {exact.Iy, m.Iy},
                                                              {exact.Iz, m.Iz},
                                                              {exact.J, m.J},
                                                              {exact.ey, m.ey},
                                                              {exact.ez, m.ez},
                                                              {exact.shearAreaZ, m.shearAreaZ}}};
    Row closed{section.name, "closed form"}, ratios{"", "result / closed form"};
    for (const auto& [reference, result] : pairs) {
      const auto value = static_cast<double>(reference);
      closed.push_back(value == 0.0 ? "0" : Figure(value));
      ratios.push_back(value == 0.0 ? RoundingFigure(result, 1e-9) : Ratio(result / value));
    }
    rows.push_back(closed);
    rows.push_back(ratios);
  }
  return FormatTable(rows);
}

// A slender tube: its shear and axial deformations are about 1e-4 of its bending deformation.
TestSection SlenderTube() { return {"tube", BeamSecTypeC, {0.01, 0.001, 0.0, 0.0}, 0.0, false}; }

struct Tube {
  double A, I, J, shearArea;
};

Tube TubeNumbers() {
  const test::SectionNumbers s = test::ComputeNumbers(SlenderTube());
  return {static_cast<double>(s.A), static_cast<double>(s.Iy), static_cast<double>(s.J),
          static_cast<double>(s.shearAreaZ)};
}

// Adds a chain of n beams from the node `first` to the place `b`, with n new nodes. Returns the
// last one.
int AddChain(const TestSection& section, int first, const Point3& b, int n,
             const Point3& orientation, ModelText& model) {
  const Point3 a = model.nodes[static_cast<std::size_t>(first)];
  int before = first;
  for (int i = 1; i <= n; ++i) {
    const double t = static_cast<double>(i) / n;
    Point3 p{};
    for (std::size_t k = 0; k < 3; ++k) p[k] = a[k] + (b[k] - a[k]) * t;
    model.nodes.push_back(p);
    const int node = static_cast<int>(model.nodes.size()) - 1;
    AddBeam(section, before, node, orientation, model);
    before = node;
  }
  return before;
}

double Component(const Results& results, int node, std::size_t d) {
  return results.displacements[static_cast<std::size_t>(node)][d];
}

// 5 q L^4 / (384 E I) + q L^2 / (8 G As)
Comparison LoadedBeam() {
  const Tube s = TubeNumbers();
  const double L = 8.0, q = -1.0;
  ModelText model = StartModel(SlenderTube());
  model.nodes = {{0.0, 0.0, 0.0}};
  const int end = AddChain(SlenderTube(), 0, {L, 0.0, 0.0}, 4, {0.0, 0.0, 1.0}, model);
  for (int i = 0; i < 4; ++i) model.beamLoads.push_back({i, q, q});
  model.restraints = {{0, Hold({Ux, Uy, Uz, Rx, Rz})}, {end, Hold({Uy, Uz})}};
  const double exact = 5 * q * L * L * L * L / (384 * E * s.I) + q * L * L / (8 * G * s.shearArea);
  return {"beam on two supports, line load q: 5 q L^4 / (384 E I) + q L^2 / (8 G As), m", exact,
          Component(RunModel(model), 2, Uz)};
}

// A line load that grows linearly from 0 at the clamped end to q at the tip: 11 q L^4 / (120 E I),
// shear q L^2 / (3 G As).
Comparison TriangularLoad() {
  const Tube s = TubeNumbers();
  const double L = 5.0, q = -1.0;
  ModelText model = StartModel(SlenderTube());
  model.nodes = {{0.0, 0.0, 0.0}};
  const int end = AddChain(SlenderTube(), 0, {L, 0.0, 0.0}, 4, {0.0, 0.0, 1.0}, model);
  for (int i = 0; i < 4; ++i) model.beamLoads.push_back({i, q * i / 4, q * (i + 1) / 4});
  model.restraints = {{0, Clamped}};
  const double exact = 11 * q * L * L * L * L / (120 * E * s.I) + q * L * L / (3 * G * s.shearArea);
  return {
      "cantilever, line load from 0 to q at the tip: 11 q L^4 / (120 E I) + q L^2 / (3 G As), m",
      exact, Component(RunModel(model), end, Uz)};
}

// The sway of a portal with clamped feet under a horizontal force at the level of its beam.
Comparison Portal() {
  const Tube s = TubeNumbers();
  const double h = 4.0, L = 6.0, P = 1.0;
  ModelText model = StartModel(SlenderTube());
  model.nodes = {{0.0, 0.0, 0.0}};
  const int left = AddChain(SlenderTube(), 0, {0.0, 0.0, h}, 2, {1.0, 0.0, 0.0}, model);
  const int right = AddChain(SlenderTube(), left, {L, 0.0, h}, 2, {0.0, 0.0, 1.0}, model);
  const int foot = AddChain(SlenderTube(), right, {L, 0.0, 0.0}, 2, {1.0, 0.0, 0.0}, model);
  model.restraints = {{0, Clamped}, {foot, Clamped}};
  model.forces = {{left, SingleLoad(Fx, P / 2)}, {right, SingleLoad(Fx, P / 2)}};
  const double k = h / L;
  return {"portal with clamped feet, k = h / L: sway P h^3 (3 k + 2) / (12 E I (6 k + 1)), m",
          P * h * h * h * (3 * k + 2) / (12 * E * s.I * (6 * k + 1)),
          Component(RunModel(model), left, Ux)};
}

// Two beams on four supports, joined where their middles cross, share a force according to their
// flexibilities.
Comparison CrossedBeams() {
  const Tube s = TubeNumbers();
  const double La = 6.0, Lb = 8.0, P = -1.0;
  ModelText model = StartModel(SlenderTube());
  model.nodes = {{0.0, 0.0, 0.0}};
  const Point3 up{0.0, 0.0, 1.0};
  for (const Point3& end : {Point3{La / 2, 0.0, 0.0}, Point3{-La / 2, 0.0, 0.0},
                            Point3{0.0, Lb / 2, 0.0}, Point3{0.0, -Lb / 2, 0.0}}) {
    const int support = AddChain(SlenderTube(), 0, end, 2, up, model);
    model.restraints.push_back({support, Hold({Uz})});
  }
  model.restraints.push_back({0, Hold({Ux, Uy, Rz})});
  model.forces = {{0, SingleLoad(Fz, P)}};
  const auto flexibility = [&s](double L) {
    return L * L * L / (48 * E * s.I) + L / (4 * G * s.shearArea);
  };
  return {
      "two crossed beams, force P at the crossing: P / (1 / a1 + 1 / a2), a = L^3 / (48 E I) + L "
      "/ (4 G As), m",
      P / (1 / flexibility(La) + 1 / flexibility(Lb)), Component(RunModel(model), 0, Uz)};
}

// A cantilever with a right angle in plan; the outer arm twists the inner one.
Comparison AngledCantilever() {
  const Tube s = TubeNumbers();
  const double a = 3.0, b = 2.0, P = -1.0;
  ModelText model = StartModel(SlenderTube());
  model.nodes = {{0.0, 0.0, 0.0}};
  const Point3 up{0.0, 0.0, 1.0};
  const int corner = AddChain(SlenderTube(), 0, {a, 0.0, 0.0}, 1, up, model);
  const int tip = AddChain(SlenderTube(), corner, {a, b, 0.0}, 1, up, model);
  model.restraints = {{0, Clamped}};
  model.forces = {{tip, SingleLoad(Fz, P)}};
  const double exact = P * ((a * a * a + b * b * b) / (3 * E * s.I) + a * b * b / (G * s.J) +
                            (a + b) / (G * s.shearArea));
  return {
      "cantilever with a right angle in plan: P ((a^3 + b^3) / (3 E I) + a b^2 / (G J) + (a + b) "
      "/ (G As)), m",
      exact, Component(RunModel(model), tip, Uz)};
}

// A force at the node of an offset bar bends it: w = P e L^2 / (2 E I).
Comparison OffsetBar() {
  const TestSection bar{"bar", BeamSecTypeT, {0.2, 0.02, 0.0, 0.0}, 0.05, false};
  const double L = 3.0, P = 1e5, e = 0.15, I = 0.02 * 0.2 * 0.2 * 0.2 / 12;
  ModelText model = StartModel(bar);
  model.nodes = {{0.0, 0.0, 0.0}};
  const int tip = AddChain(bar, 0, {L, 0.0, 0.0}, 2, {0.0, 0.0, 1.0}, model);
  model.restraints = {{0, Clamped}};
  model.forces = {{tip, SingleLoad(Fx, P)}};
  return {
      "flat bar 200 x 20, offset by 50, axial force at the node: w = P e L^2 / (2 E I), e = 0.15 "
      "m, m",
      P * e * L * L / (2 * E * I), Component(RunModel(model), tip, Uz)};
}

std::string ComputeFrames() {
  return FormatComparisons(
      {LoadedBeam(), TriangularLoad(), Portal(), CrossedBeams(), AngledCantilever(), OffsetBar()});
}

// The factor k of a thin ring under two opposite forces P, which move towards each other by
// k P R^3 / (E I). The model is a quarter of it, n straight beams.
double PinchRing(int n) {
  const double R = 5.0, P = 1.0;
  ModelText model = StartModel(SlenderTube());
  for (int i = 0; i <= n; ++i) {
    const double angle = Pi / 2 * i / n;
    model.nodes.push_back({R * std::cos(angle), 0.0, R * std::sin(angle)});
    if (i > 0) AddBeam(SlenderTube(), i - 1, i, {0.0, 1.0, 0.0}, model);
  }
  model.restraints = {{0, Hold({Uy, Uz, Rx, Ry, Rz})}, {n, Hold({Ux, Uy, Rx, Ry, Rz})}};
  model.forces = {{n, SingleLoad(Fz, -P / 2)}};
  const Tube s = TubeNumbers();
  return -2 * Component(RunModel(model), n, Uz) * E * s.I / (P * R * R * R);
}

ConvergenceCase Ring() {
  ConvergenceCase c;
  c.meshes = {2, 4, 8, 16, 32};
  c.nameMesh = NameCount;
  c.finestShort = 32;
  c.quantities = {{"k", "0.148778", PinchRing}};
  return c;
}

// The tip deflection of a flat bar 0.3 high, divided by its closed form. The model has two bars of
// half the height on the same nodes, the upper one offset.
double DeflectSplitBar(int n) {
  const TestSection half{"half", BeamSecTypeT, {0.15, 0.03, 0.0, 0.0}, 0.0, false};
  TestSection upper = half;
  upper.BeamSecOz = 0.15;
  const double L = 3.0;
  ModelText model = StartModel(half);
  model.nodes = {{0.0, 0.0, 0.0}};
  const int tip = AddChain(half, 0, {L, 0.0, 0.0}, n, {0.0, 0.0, 1.0}, model);
  for (int i = 0; i < n; ++i) AddBeam(upper, i, i + 1, {0.0, 0.0, 1.0}, model);
  model.restraints = {{0, Clamped}};
  const double P = 1000.0, I = 0.03 * 0.3 * 0.3 * 0.3 / 12, As = 0.03 * 0.3 * 2 / 3;
  model.forces = {{tip, SingleLoad(Fz, P)}};
  return Component(RunModel(model), tip, Uz) / (P * L * L * L / (3 * E * I) + P * L / (G * As));
}

ConvergenceCase SplitBar() {
  ConvergenceCase c;
  c.meshes = {1, 2, 4, 8, 16};
  c.nameMesh = NameCount;
  c.finestShort = 16;
  c.quantities = {{"deflection", "1", DeflectSplitBar}};
  return c;
}

}  // namespace

Fillings ComputeBeams(Extent extent) {
  return {{"table:section properties", ComputeSections()},
          {"table:frames", ComputeFrames()},
          {"table:pinched ring", ComputeTable(Ring(), extent)},
          {"table:split bar", ComputeTable(SplitBar(), extent)}};
}

}  // namespace korvex::book
