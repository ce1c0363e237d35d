// Properties that hold for every model: support forces balance the loads, the residual of the
// equations is zero, and results do not depend on the position in space, the node numbers or the
// units.
#include <algorithm>
#include <cmath>
#include <numeric>

#include "deck/model_tables.h"
#include "support/solve_model.h"
#include "verification/book.h"
#include "verification/chapters.h"
#include "verification/meshes.h"

namespace korvex::book {

namespace {

// Components of a load, and of a resultant.
constexpr std::size_t Fx = 0, Fy = 1, Mx = 3;

// A structure with all kinds of elements, loads and deformations: a plate of quads and triangles
// with a web of quads, clamped at one end, two offset L beams to the ground, pressure, a line load,
// a force and a moment. N, mm.
ModelText BuildBracket(int n) {
  ModelText model = test::BuildGrid(n, 2 * n, Cells::Mixed, [](double s, double t) {
    return Point3{1000.0 * t, 600.0 * s, 0.0};
  });
  Append(model,
         test::BuildGrid(n, 2 * n, Cells::Quads,
                         [](double s, double t) {
                           return Point3{1000.0 * t, 0.0, -300.0 * s};
                         }),
         1);
  MergeNodes(model);
  SortNodes(model, [](const Point3& p) { return p[0]; });
  model.materials = {{206000.0, 0.3, 0.0}};
  model.thicknesses = {10.0, 8.0};
  PressShells(model, 0.02);
  model.lSections = {{150.0, 9.0, 60.0, 12.0}};
  const int corner = NodeAt(model, {1000.0, 600.0, 0.0}),
            tip = NodeAt(model, {1000.0, 0.0, -300.0});
  model.nodes.push_back({1000.0, 900.0, -800.0});
  const int ground = static_cast<int>(model.nodes.size()) - 1;
  for (const int node : {corner, tip}) {
    ModelText::Beam beam;
    beam.node1 = node, beam.node2 = ground;
    beam.orientation = {1.0, 0.3, 0.2};
    beam.BeamSecType = BeamSecTypeL;
    beam.BeamSecOz = 20.0;
    model.beams.push_back(beam);
  }
  model.beamLoads = {{0, -2.0, -5.0}};
  model.forces = {{tip, {5000.0, -3000.0, 2000.0, 1e5, -2e5, 3e5}}};
  FixWhere(
      model, [](const Point3& p) { return Same(p[0], 0.0); }, Clamped);
  model.restraints.push_back({ground, Clamped});
  return model;
}

// A quarter of a cylinder under a force and a moment. Every supported node is clamped, so that the
// supports turn with the model.
ModelText BuildShell(Cells cells, int n) {
  ModelText model = test::BuildGrid(n, n, cells, [](double s, double t) {
    return Point3{300.0 * std::sin(Pi / 2 * s), 300.0 * t, 300.0 * std::cos(Pi / 2 * s)};
  });
  model.materials = {{3e6, 0.3, 0.0}};
  model.thicknesses = {3.0};
  FixWhere(
      model, [](const Point3& p) { return Same(p[1], 0.0) || Same(p[2], 0.0); }, Clamped);
  model.forces = {{test::GridNode(n, 0, n), {0.1, 0.2, -1.0, 5.0, 3.0, -4.0}}};
  return model;
}

// The twisted beam of the chapter on curved shells, of 4 x 24 cells.
ModelText BuildTwistedBeam(Cells cells) {
  ModelText model = test::BuildGrid(4, 24, cells, [](double s, double t) {
    const double angle = Pi / 2 * t, y = 1.1 * (s - 0.5);
    return Point3{12.0 * t, y * std::cos(angle), y * std::sin(angle)};
  });
  model.materials = {{29e6, 0.22, 0.0}};
  model.thicknesses = {0.32};
  FixWhere(
      model, [](const Point3& p) { return Same(p[0], 0.0); }, Clamped);
  const int tip = test::GridNode(4, 0, 24);
  LoadEdge(model, tip, tip + 4, 1, SingleLoad(Fy, 1.0));
  return model;
}

// A plate that is a thousand times as wide as thick: its shear stiffness is about 1e6 times its
// bending stiffness.
ModelText BuildThinPlate(int n) {
  ModelText model = test::BuildGrid(n, n, Cells::Quads, [](double s, double t) {
    return Point3{1000.0 * s, 1000.0 * t, 0.0};
  });
  model.materials = {{206000.0, 0.3, 0.0}};
  model.thicknesses = {1.0};
  FixWhere(
      model,
      [](const Point3& p) {
        return Same(p[0], 0.0) || Same(p[1], 0.0) || Same(p[0], 1000.0) || Same(p[1], 1000.0);
      },
      Clamped);
  PressShells(model, 1e-5);
  return model;
}

// The load vector as the program assembles it.
std::vector<double> LoadOf(const ModelText& text) {
  Model model;
  test::AssembleModel(text, model);
  return model.LoadVector;
}

// The sum of forces, and of moments about the origin.
using Resultant = Six;

// Adds the six load components `f` that act at `p`.
void AddForce(const Point3& p, const double* f, Resultant& sum) {
  for (std::size_t i = 0; i < 3; ++i) {
    const std::size_t j = (i + 1) % 3, k = (i + 2) % 3;
    sum[i] += f[i];
    sum[3 + i] += f[3 + i] + p[j] * f[k] - p[k] * f[j];
  }
}

struct Imbalance {
  double force = 0.0, moment = 0.0;
};

// Sums loads and support forces, which are -1e20 times the displacements in Node_Dis.txt. The
// largest component of the resultant is divided by the largest sum of absolute values of the same
// terms.
Imbalance FindImbalance(const ModelText& model) {
  const std::vector<double> load = LoadOf(model);
  const Results results = RunModel(model);
  Resultant sum{}, sizes{};
  const auto add = [&](std::size_t node, const Six& force) {
    Resultant part{};
    AddForce(model.nodes[node], force.data(), part);
    for (std::size_t i = 0; i < 6; ++i) sum[i] += part[i], sizes[i] += std::fabs(part[i]);
  };
  for (std::size_t n = 0; n < model.nodes.size(); ++n) {
    Six force{};
    std::copy_n(load.begin() + static_cast<std::ptrdiff_t>(6 * n), 6, force.begin());
    add(n, force);
  }
  for (const auto& restraint : model.restraints) {
    const auto node = static_cast<std::size_t>(restraint.node);
    Six force{};
    for (std::size_t d = 0; d < 6; ++d) {
      if (restraint.fixed[d] == 1)
        force[d] = -test::SupportPenalty * results.displacements[node][d];
    }
    add(node, force);
  }
  const auto worst = [&](std::size_t from) {
    const double size = std::max({sizes[from], sizes[from + 1], sizes[from + 2]});
    return std::max({std::fabs(sum[from]), std::fabs(sum[from + 1]), std::fabs(sum[from + 2])}) /
           size;
  };
  return {worst(Fx), worst(Mx)};
}

// The largest entry of |F - K u| divided by the largest one of |F|. K is assembled a second time,
// because solving factorises it in place.
double FindResidual(const ModelText& text) {
  Model assembled, solved;
  test::AssembleModel(text, assembled);
  test::SolveModel(text, solved);
  const SkylineMatrix& K = assembled.Stiffness;
  const std::vector<double>& u = solved.Displacements;
  std::vector<double> residual = assembled.LoadVector;
  double largest = 0.0, load = 0.0;
  for (const double f : residual) load = std::max(load, std::fabs(f));
  for (std::size_t j = 0; j < u.size(); ++j) {
    for (std::size_t k = 0; k < static_cast<std::size_t>(K.ColumnHeights[j]); ++k) {
      const double value = K.Values[static_cast<std::size_t>(K.DiagonalAddress[j]) + k];
      residual[j - k] -= value * u[j];
      if (k > 0) residual[j] -= value * u[j - k];
    }
  }
  for (const double r : residual) largest = std::max(largest, std::fabs(r));
  return largest / load;
}

// The displacements by node, at full precision.
std::vector<Six> Solve(const ModelText& text) {
  Model model;
  test::SolveModel(text, model);
  std::vector<Six> table;
  for (int n = 0; n < model.Tables.NPOIN; ++n) table.push_back(test::NodeDisplacements(model, n));
  return table;
}

// The largest difference. Translations are relative to the largest translation of `b`, rotations to
// its largest rotation.
double FindDifference(const std::vector<Six>& a, const std::vector<Six>& b) {
  std::array<double, 2> sizes{}, differences{};
  for (std::size_t n = 0; n < a.size(); ++n) {
    for (std::size_t d = 0; d < 6; ++d) {
      sizes[d / 3] = std::max(sizes[d / 3], std::fabs(b[n][d]));
      differences[d / 3] = std::max(differences[d / 3], std::fabs(a[n][d] - b[n][d]));
    }
  }
  return std::max(differences[0] / sizes[0], differences[1] / sizes[1]);
}

// How far the displacements of the turned model are from the turned displacements.
double FindTurnError(const ModelText& model) {
  std::vector<Six> expected = Solve(model);
  for (Six& u : expected) u = test::TurnSix(u);
  return FindDifference(Solve(test::TurnModel(model)), expected);
}

// How far the displacements change when node k becomes the former node 97 k + 11, modulo the count.
// 97 is a prime that divides no model's count, so every node occurs once.
double FindShuffleError(const ModelText& model) {
  const std::size_t count = model.nodes.size();
  std::vector<int> order;
  for (std::size_t k = 0; k < count; ++k) order.push_back(static_cast<int>((97 * k + 11) % count));
  ModelText shuffled = model;
  RenumberNodes(shuffled, order);
  const std::vector<Six> u = Solve(model), v = Solve(shuffled);
  std::vector<Six> expected;
  for (const int node : order) expected.push_back(u[static_cast<std::size_t>(node)]);
  return FindDifference(v, expected);
}

// From N, mm to N, m: lengths by 1e-3, moduli and pressures by 1e6, line loads by 1e3.
ModelText InMetres(ModelText model) {
  constexpr double Length = 1e-3, Stress = 1e6, LineLoad = 1e3;
  for (auto& m : model.materials) m[0] *= Stress;
  for (double& t : model.thicknesses) t *= Length;
  for (auto& section : model.lSections) {
    for (double& size : section) size *= Length;
  }
  for (auto& p : model.nodes) {
    for (double& x : p) x *= Length;
  }
  for (auto& beam : model.beams) beam.BeamSecOz *= Length;
  for (auto& force : model.forces) {
    for (std::size_t d = Mx; d < 6; ++d) force.components[d] *= Length;
  }
  for (auto* loads : {&model.shell4Loads, &model.shell3Loads}) {
    for (auto& load : *loads) {
      for (double& q : load.q) q *= Stress;
    }
  }
  for (auto& load : model.beamLoads) load.q1 *= LineLoad, load.q2 *= LineLoad;
  return model;
}

// How far the displacements in N, m are from those in N, mm, converted.
double FindUnitError(const ModelText& model) {
  std::vector<Six> expected = Solve(model);
  for (Six& u : expected) {
    for (std::size_t d = 0; d < 3; ++d) u[d] *= 1e-3;
  }
  return FindDifference(Solve(InMetres(model)), expected);
}

// Support forces have the six digits of the displacements in the result file.
constexpr double FileDigits = 1e-5;

// Bounds of rounding errors. These grow with the ratio of the largest stiffness of a model to its
// smallest; the thin plate has the largest ratio.
constexpr double ResidualBound = 1e-7, RoundingBound = 1e-8;

std::string CheckEquilibrium() {
  std::vector<Row> rows{{"model", "sum of forces", "sum of moments"}};
  const auto add = [&](const std::string& name, const ModelText& model) {
    const Imbalance i = FindImbalance(model);
    const auto show = [](double value) {
      return value < FileDigits ? RoundingFigure(value, FileDigits) : Figure(value, 3);
    };
    rows.push_back({name, show(i.force), show(i.moment)});
  };
  add("bracket of quads, triangles and offset L beams", BuildBracket(8));
  add("cylinder of quads", BuildShell(Cells::Quads, 8));
  add("cylinder of triangles", BuildShell(Cells::Triangles, 8));
  add("thin clamped plate", BuildThinPlate(16));
  add("twisted beam of triangles", BuildTwistedBeam(Cells::Triangles));
  add("twisted beam of warped quads", BuildTwistedBeam(Cells::Quads));
  return FormatTable(rows);
}

std::string CheckInvariance() {
  std::vector<Row> rows{
      {"model", "residual of K u = F", "turned in space", "nodes shuffled", "N, m for N, mm"}};
  const auto add = [&](const std::string& name, const ModelText& model) {
    rows.push_back({name, RoundingFigure(FindResidual(model), ResidualBound),
                    RoundingFigure(FindTurnError(model), RoundingBound),
                    RoundingFigure(FindShuffleError(model), RoundingBound),
                    RoundingFigure(FindUnitError(model), RoundingBound)});
  };
  add("bracket of quads, triangles and offset L beams", BuildBracket(6));
  add("cylinder of quads", BuildShell(Cells::Quads, 12));
  add("cylinder of triangles", BuildShell(Cells::Triangles, 12));
  add("thin clamped plate", BuildThinPlate(12));
  return FormatTable(rows);
}

}  // namespace

Fillings ComputeInvariants(Extent /*extent*/) {
  return {{"table:equilibrium", CheckEquilibrium()},
          {"table:invariance", CheckInvariance()},
          {"value:residual bound", Figure(ResidualBound, 1)},
          {"value:rounding bound", Figure(RoundingBound, 1)}};
}

}  // namespace korvex::book
