// Self-weight: its sums against an independent computation in long double, and its effect against
// closed forms.
#include "cases/self_weight.h"

#include <gtest/gtest.h>

#include <cmath>

#include "audit/reactions.h"
#include "cases/load_tables.h"
#include "check/weigh_model.h"
#include "deck/write_tables.h"
#include "model/read_input_file.h"
#include "support/beam_sections.h"
#include "support/expect_findings.h"
#include "support/good_models.h"
#include "system/load_vector.h"
#include "system/profile.h"

namespace kvx::test {
namespace {

using korvex::Model;
using korvex::Vector3;
using korvex::test::ModelText;
using korvex::test::Real;
using korvex::test::Real3;
using korvex::test::Real6;

void ReadModel(const ModelText& text, Model& model) {
  korvex::ReadInputText(korvex::test::WriteModel(text), model);
}

Real3 Cross(const Real3& a, const Real3& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
Real Length(const Real3& a) { return std::sqrt(a[0] * a[0] + a[1] * a[1] + a[2] * a[2]); }
Real3 Minus(const Real3& a, const Real3& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }

Real3 NodeOf(const ModelText& model, int node) {
  const auto& at = model.nodes[static_cast<std::size_t>(node)];
  return {at[0], at[1], at[2]};
}

// The sums of a model's weight, added up from its elements: Fx .. Mz about the origin, and the sum
// of the sizes of what was added, for tolerances.
struct WeightSums {
  Real6 sums{};
  Real force = 0, moment = 0;
};

void Add(Real mass, const Real3& place, const Vector3& acceleration, WeightSums& weight) {
  const Real3 force{mass * acceleration[0], mass * acceleration[1], mass * acceleration[2]};
  const Real3 moment = Cross(place, force);
  for (std::size_t i = 0; i < 3; ++i) {
    weight.sums[i] += force[i];
    weight.sums[3 + i] += moment[i];
  }
  weight.force += Length(force);
  weight.moment += Length(place) * Length(force);
}

// Plane, concave or warped: by the four triangles of its two divisions, each at half weight.
template <std::size_t Nodes>
void AddShell(const ModelText& model, const std::array<int, Nodes>& nodes, Real surfaceMass,
              const Vector3& acceleration, WeightSums& weight) {
  constexpr std::array<std::array<std::size_t, 3>, 4> Divisions{
      {{0, 1, 2}, {2, 3, 0}, {1, 2, 3}, {3, 0, 1}}};
  for (std::size_t k = 0; k < (Nodes == 4 ? 4 : 1); ++k) {
    const Real3 a = NodeOf(model, nodes[Divisions[k][0]]);
    const Real3 b = NodeOf(model, nodes[Divisions[k][1]]);
    const Real3 c = NodeOf(model, nodes[Divisions[k][2]]);
    const Real area = Length(Cross(Minus(b, a), Minus(c, a))) / 2;
    const Real3 centre{(a[0] + b[0] + c[0]) / 3, (a[1] + b[1] + c[1]) / 3,
                       (a[2] + b[2] + c[2]) / 3};
    Add(surfaceMass * area * (Nodes == 4 ? 0.5L : 1.0L), centre, acceleration, weight);
  }
}

korvex::test::SectionNumbers NumbersOf(const ModelText& model, const ModelText::Beam& beam) {
  korvex::test::TestSection section;
  section.BeamSecType = beam.BeamSecType;
  section.BeamSecOz = beam.BeamSecOz;
  section.mirrored = beam.BeamSecMirrored != 0;
  const auto row = static_cast<std::size_t>(beam.BeamSecIndex);
  if (beam.BeamSecType == korvex::BeamSecTypeC) {
    section.dimensions = {model.cSections[row][0], model.cSections[row][1], 0, 0};
  } else {
    section.dimensions =
        beam.BeamSecType == korvex::BeamSecTypeT ? model.tSections[row] : model.lSections[row];
  }
  return korvex::test::ComputeNumbers(section);
}

void AddBeam(const ModelText& model, const ModelText::Beam& beam, Real density,
             const Vector3& acceleration, WeightSums& weight) {
  const korvex::test::SectionNumbers numbers = NumbersOf(model, beam);
  const Real3 a = NodeOf(model, beam.node1), b = NodeOf(model, beam.node2);
  const Real3 d = Minus(b, a);
  const Real3 v{beam.orientation[0], beam.orientation[1], beam.orientation[2]};
  const Real3 y = Cross(v, d), z = Cross(d, y);
  Real3 centre{};
  for (std::size_t i = 0; i < 3; ++i) {
    centre[i] = (a[i] + b[i]) / 2 + numbers.ey * y[i] / Length(y) + numbers.ez * z[i] / Length(z);
  }
  Add(density * numbers.A * Length(d), centre, acceleration, weight);
}

WeightSums WeighText(const ModelText& model, const Vector3& acceleration) {
  WeightSums weight;
  const auto density = [&](int material) {
    return static_cast<Real>(model.materials[static_cast<std::size_t>(material)][2]);
  };
  const auto surface = [&](int material, int thickness) {
    return density(material) * model.thicknesses[static_cast<std::size_t>(thickness)];
  };
  for (const auto& s : model.shells4) {
    AddShell<4>(model, s.nodes, surface(s.material, s.thickness), acceleration, weight);
  }
  for (const auto& s : model.shells3) {
    AddShell<3>(model, s.nodes, surface(s.material, s.thickness), acceleration, weight);
  }
  for (const auto& b : model.beams) AddBeam(model, b, density(b.material), acceleration, weight);
  return weight;
}

// The sums of the assembled load vector.
Real6 SumLoadVector(const ModelText& text, const Model& model) {
  Real6 sums{};
  for (std::size_t node = 0; node < text.nodes.size(); ++node) {
    const double* F = &model.LoadVector[6 * node];
    const Real3 force{F[0], F[1], F[2]};
    const Real3 moment = Cross(NodeOf(text, static_cast<int>(node)), force);
    for (std::size_t i = 0; i < 3; ++i) {
      sums[i] += force[i];
      sums[3 + i] += moment[i] + F[3 + i];
    }
  }
  return sums;
}

// Replaces the loads of the model by its weight and assembles them.
void LoadWithWeight(const ModelText& text, const Vector3& acceleration, Model& model) {
  ReadModel(text, model);
  korvex::ModelTables none;
  SwapLoads(none, model.Tables);
  AddSelfWeight(model, acceleration, model.Tables);
  korvex::NumberEquations(model);
  korvex::AssembleLoadVector(model);
}

void ExpectSums(const ModelText& text, const Vector3& acceleration) {
  Model model;
  LoadWithWeight(text, acceleration, model);
  const Real6 sums = SumLoadVector(text, model);
  const WeightSums expected = WeighText(text, acceleration);
  for (std::size_t i = 0; i < 6; ++i) {
    const Real scale = i < 3 ? expected.force : expected.moment;
    EXPECT_LE(std::abs(sums[i] - expected.sums[i]), 1e-12L * scale) << i;
  }
}

// Shells of all shapes, beams of all sections with offsets, mirrored, turned in space, mixed.
TEST(SelfWeight, HasExactSumsOnRandomModels) {
  Dice dice = MakeDice(7);
  bool hasBeams = false, hasShells4 = false, hasShells3 = false;
  for (std::uint32_t seed = 0; seed < 60; ++seed) {
    SCOPED_TRACE(seed);
    const ModelText text = MakeGoodModel(seed);
    hasBeams = hasBeams || !text.beams.empty();
    hasShells4 = hasShells4 || !text.shells4.empty();
    hasShells3 = hasShells3 || !text.shells3.empty();
    ExpectSums(text, {Roll(dice, -10, 10), Roll(dice, -10, 10), Roll(dice, -10, 10)});
  }
  EXPECT_TRUE(hasBeams && hasShells4 && hasShells3);
}

TEST(SelfWeight, HasExactSumsForEverySection) {
  for (const auto& section : korvex::test::AllSections()) {
    SCOPED_TRACE(section.name);
    ModelText text;
    text.materials = {{2.06e5, 0.3, 7.85e-9}};
    text.nodes = {{100, -200, 300}, {900, 700, -400}};
    text.beams.resize(1);
    text.beams[0].orientation = {0.3, -0.2, 1};
    korvex::test::UseSection(section, text, text.beams[0]);
    for (const Vector3& a : {Vector3{-9810, 0, 0}, Vector3{0, 300, 0}, Vector3{1, 2, -3}}) {
      ExpectSums(text, a);
    }
  }
}

// The warped quadrilateral: the sums are those of the weight that kvx check tells.
TEST(SelfWeight, AgreesWithTheMassOfTheCheck) {
  ModelText text;
  text.materials = {{2.06e11, 0.3, 7850}};
  text.thicknesses = {0.01};
  text.nodes = {{0, 0, 0}, {1, 0.1, 0}, {1.2, 1, 0.05}, {0, 0.9, 0}};
  text.shells4 = {{{0, 1, 2, 3}, 0, 0}};
  const ModelWeight weight = WeighModel(Check(text).model);
  Model model;
  LoadWithWeight(text, {0, 0, -9.81}, model);
  const Real6 sums = SumLoadVector(text, model);
  const double force = -9.81 * weight.mass;
  EXPECT_NEAR(static_cast<double>(sums[2]), force, 1e-12 * std::abs(force));
  EXPECT_NEAR(static_cast<double>(sums[3]), weight.centre[1] * force, 1e-12 * std::abs(force));
  EXPECT_NEAR(static_cast<double>(sums[4]), -weight.centre[0] * force, 1e-12 * std::abs(force));
}

// Consistent nodal loads of a trapezium: bottom 3, top 1, height 2, at z = 0. With xi across and
// t = 0 .. 1 upwards the width is 3 - 2 t, dA = 2 (3 - 2 t) / 2 dxi dt. The two lower nodes get
// each half of the integral of (1 - t) 2 (3 - 2 t) dt = 2 (3 - 5/2 + 2/3) = 7/3; the upper two half
// of 2 (3/2 - 2/3) = 5/3.
TEST(SelfWeight, SpreadsATrapeziumByItsShapeFunctions) {
  ModelText text;
  text.materials = {{1, 0, 1}};
  text.thicknesses = {1};
  text.nodes = {{-1.5, 0, 0}, {1.5, 0, 0}, {0.5, 2, 0}, {-0.5, 2, 0}};
  text.shells4 = {{{0, 1, 2, 3}, 0, 0}};
  Model model;
  LoadWithWeight(text, {0, 0, 6}, model);
  const std::array<double, 4> expected{7, 7, 5, 5};
  for (std::size_t k = 0; k < 4; ++k) {
    EXPECT_NEAR(model.LoadVector[6 * k + 2], expected[k], 1e-14 * 7) << k;
  }
}

TEST(SelfWeight, LeavesOutWhatHasNoWeight) {
  ModelText text = MakeGoodModel(1);
  for (auto& material : text.materials) material[2] = 0.0;
  Model model;
  ReadModel(text, model);
  korvex::ModelTables loads;
  AddSelfWeight(model, {0, 0, -9.81}, loads);
  EXPECT_FALSE(HasLoads(loads));
}

// Displacements of a model under its weight.
void SolveWeight(const ModelText& text, const Vector3& acceleration, SolvedModel& solved) {
  Model model;
  LoadWithWeight(text, acceleration, model);
  SolveInMemory(korvex::WriteTables(model.Tables), {}, solved);
}

// A cantilever of one or several elements along x, with any section, in the axes of the section. By
// the centroid line its tip displaces by w L^4 / (8 E I) and by the shear part w L^2 / (2 G As); by
// the offset e the clamped node sees the rest of the rotation theta = w L^3 / (6 E I) times e only
// in axial direction, which both ends of the arm share, as the rotation is about the axis across.
// So a load along z displaces the tip node along z by that sum, if the section does not twist:
// e_y = 0, as T, flat bar and tube have it.
void ExpectCantilever(const korvex::test::TestSection& section, std::size_t axis, int elements) {
  constexpr double L = 2000, E = 2.06e5, Mu = 0.3, Density = 7.85e-9, g = -9810;
  ModelText text;
  text.materials = {{E, Mu, Density}};
  for (int k = 0; k <= elements; ++k) text.nodes.push_back({L * k / elements, 0, 0});
  for (int k = 0; k < elements; ++k) {
    ModelText::Beam beam;
    beam.node1 = k;
    beam.node2 = k + 1;
    korvex::test::UseSection(section, text, beam);
    text.beams.push_back(beam);
  }
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  Vector3 acceleration{};
  acceleration[axis] = g;
  SolvedModel solved;
  SolveWeight(text, acceleration, solved);

  const auto numbers = NumbersOf(text, text.beams[0]);
  const double A = static_cast<double>(numbers.A);
  const double w = Density * A * g;
  const double G = E / (2 * (1 + Mu));
  const auto bend = [&](Real I, Real As) {
    return w * std::pow(L, 4) / (8 * E * static_cast<double>(I)) +
           (As > 0 ? w * L * L / (2 * G * static_cast<double>(As)) : 0.0);
  };
  // With y = z x x, local y is global y here.
  const double expected = axis == 0   ? w * L * L / (2 * E * A)
                          : axis == 1 ? bend(numbers.Iz, numbers.shearAreaY)
                                      : bend(numbers.Iy, numbers.shearAreaZ);
  const std::size_t tip = 6 * static_cast<std::size_t>(elements);
  double displacement = solved.model.Displacements[tip + axis];
  // The tip node stands e below the centroid, which twists under a load along y and bends under one
  // along x: its motion there is that of the centroid line, less theta x e.
  const double ez = static_cast<double>(numbers.ez);
  if (axis == 0) displacement += solved.model.Displacements[tip + 4] * ez;
  if (axis == 1) displacement -= solved.model.Displacements[tip + 3] * ez;
  // 1e-9: rounding of a slender beam's solution.
  EXPECT_NEAR(displacement, expected, 1e-9 * std::abs(expected));

  Reactions reactions;
  ComputeReactions(solved, reactions);
  ASSERT_EQ(reactions.supports.size(), 1U);
  EXPECT_NEAR(reactions.supports[0].force[axis], -w * L, 1e-9 * std::abs(w * L));
  // The weight stands at L / 2 and ez: moment about the clamped node ez x and L / 2 x the force.
  const std::array<double, 3> arm{L / 2, static_cast<double>(numbers.ey), ez};
  Vector3 force{};
  force[axis] = w * L;
  const Vector3 moment = korvex::Cross(arm, force);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(reactions.supports[0].force[3 + i], -moment[i], 1e-9 * std::abs(w) * L * L) << i;
  }
}

TEST(SelfWeight, BendsACantileverAsTheClosedForm) {
  for (const auto& section : korvex::test::AllSections()) {
    if (section.BeamSecType == korvex::BeamSecTypeL) continue;  // twists
    for (std::size_t axis = 0; axis < 3; ++axis) {
      for (const int elements : {1, 3}) {
        SCOPED_TRACE(section.name + " axis " + std::to_string(axis));
        ExpectCantilever(section, axis, elements);
      }
    }
  }
}

// A square plate, simply supported with rigid corners held down: the middle displaces by 0.00406 q
// a^4 / D (Timoshenko & Woinowsky-Krieger 1959, table 8, Mu = 0.3). Four digits are given; a mesh
// of 16 x 16 is good to 0.5 %.
TEST(SelfWeight, BendsAPlateAsNaviersSeries) {
  constexpr int n = 16;
  constexpr double a = 1000, t = 10, E = 2.06e5, Mu = 0.3, Density = 7.85e-9, g = -9810;
  ModelText text;
  text.materials = {{E, Mu, Density}};
  text.thicknesses = {t};
  for (int j = 0; j <= n; ++j) {
    for (int i = 0; i <= n; ++i) {
      text.nodes.push_back({a * i / n, a * j / n, 0});
      const int node = j * (n + 1) + i;
      if (i < n && j < n) {
        text.shells4.push_back({{node, node + 1, node + n + 2, node + n + 1}, 0, 0});
      }
      const bool isEdge = i == 0 || j == 0 || i == n || j == n;
      if (!isEdge) continue;
      // Held in plane, too, and against turning along the edge's normal, as a series has it.
      const int rx = i == 0 || i == n ? 1 : 0, ry = j == 0 || j == n ? 1 : 0;
      text.restraints.push_back({node, {1, 1, 1, rx, ry, 1}});
    }
  }
  SolvedModel solved;
  SolveWeight(text, {0, 0, g}, solved);
  const double D = E * t * t * t / (12 * (1 - Mu * Mu));
  const double q = Density * t * g;
  const double expected = 0.00406 * q * std::pow(a, 4) / D;
  const std::size_t middle = 6 * static_cast<std::size_t>(n / 2 * (n + 1) + n / 2);
  EXPECT_NEAR(solved.model.Displacements[middle + 2], expected, 0.005 * std::abs(expected));

  Reactions reactions;
  ComputeReactions(solved, reactions);
  const double total = q * a * a;
  EXPECT_NEAR(reactions.reactions[2], -total, 1e-9 * std::abs(total));
  EXPECT_NEAR(reactions.reactions[3], -total * a / 2, 1e-9 * std::abs(total) * a);
  EXPECT_NEAR(reactions.reactions[4], total * a / 2, 1e-9 * std::abs(total) * a);
}

}  // namespace
}  // namespace kvx::test
