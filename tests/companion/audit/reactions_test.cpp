// Support forces: their balance on the examples and on random models, closed forms of single
// supports, prescribed displacements, turned models, and models that are no good.
#include "audit/reactions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>
#include <tuple>

#include "report/stop.h"
#include "support/beam_sections.h"
#include "support/dof_names.h"
#include "support/good_models.h"
#include "support/repeats.h"
#include "support/shell_mesh.h"
#include "support/temp_folder.h"
#include "system/assemble_stiffness.h"
#include "system/supports.h"

namespace kvx::test {
namespace {

using namespace korvex::test;  // NOLINT(google-build-using-namespace): Fx, Uy and their like

struct Solved {
  SolvedModel model;
  Reactions reactions;
};

Solved Solve(const std::string& text) {
  Solved solved;
  SolveInMemory(text, {}, solved.model);
  ComputeReactions(solved.model, solved.reactions);
  return solved;
}

Solved Solve(const ModelText& text) { return Solve(WriteModel(text)); }

// The support force at a node; the test fails where it has none.
ForceSum ForceAt(const Reactions& reactions, int node) {
  for (const Support& support : reactions.supports) {
    if (support.node == node) return support.force;
  }
  ADD_FAILURE() << "node " << node << " is no support";
  return {};
}

// The largest of loads + reactions over their scale, moments about the global origin.
double SumOfAll(const Solved& solved) {
  const Reactions& r = solved.reactions;
  const double arm = r.size + korvex::Length(r.centre);
  double largest = 0.0;
  for (std::size_t i = 0; i < 6; ++i) {
    const double scale = r.sumScales.force * (i < 3 ? 1.0 : arm);
    largest =
        std::max(largest, std::fabs(r.loads[i] + r.reactions[i] - r.unbalancedSum[i]) / scale);
  }
  return largest;
}

// loads + all of K u - F - unbalanced elements, over the scales: what the residuals of free dofs
// leave unexplained.
double Unexplained(const Solved& solved) {
  const korvex::Model& model = solved.model.model;
  ForceSum sum{};
  for (std::int32_t n = 0; n < model.Tables.NPOIN; ++n) {
    const std::size_t first = static_cast<std::size_t>(n) * 6;
    const korvex::Vector3 place = PlaceOfNode(model, n);
    AddForceAt(place, solved.reactions.centre, &model.LoadVector[first], sum);
    AddForceAt(place, solved.reactions.centre, &solved.reactions.r[first], sum);
  }
  for (const UnbalancedElement& element : solved.reactions.unbalanced) {
    for (std::size_t i = 0; i < 6; ++i) sum[i] -= element.sum[i];
  }
  double largest = 0.0;
  for (std::size_t i = 0; i < 6; ++i) {
    const ForceScales& scales = solved.reactions.sumScales;
    largest = std::max(largest, std::fabs(sum[i]) / (i < 3 ? scales.force : scales.moment));
  }
  return largest;
}

TEST(Reactions, BalanceTheLoadsOfTheExamples) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KORVEX_EXAMPLES)) {
    const std::filesystem::path file = entry.path() / "fem_solving.txt";
    if (!std::filesystem::exists(file)) continue;
    SCOPED_TRACE(file.string());
    const Solved solved = Solve(ReadFile(file));
    EXPECT_LT(solved.reactions.imbalance, 1e-12);
    EXPECT_LT(SumOfAll(solved), 1e-12);
    EXPECT_LT(solved.reactions.residual.relative, 1e-11);
    EXPECT_GT(solved.reactions.sumScales.force, 1.0);
    EXPECT_TRUE(solved.reactions.unbalanced.empty());
    ++count;
  }
  EXPECT_GE(count, 3);
}

// Thin plates, 1 in 400, have displacements whose 16th digit is worth more than 1e-9 of the load;
// the estimate of the rounding says so. With the residuals only the last digits of the element
// matrices are left.
TEST(Reactions, BalanceTheLoadsOfRandomModels) {
  int beyond = 0;
  for (std::uint32_t seed = 0; seed < korvex::test::Repeats(200); ++seed) {
    SCOPED_TRACE(seed);
    const Solved solved = Solve(MakeGoodModel(seed));
    const Reactions& r = solved.reactions;
    EXPECT_LT(r.imbalance, std::max(1e-9, 8.0 * r.rounding));
    EXPECT_LT(r.rounding, 1e-7);
    EXPECT_TRUE(IsBalanced(r));
    EXPECT_LT(Unexplained(solved), std::max(1e-12, 4.0 * r.rounding));
    EXPECT_LT(r.residual.relative, 1e-8);
    EXPECT_TRUE(r.moved.empty());
    if (r.imbalance > 1e-9) ++beyond;
  }
  EXPECT_LE(beyond, 6);  // 3 of them are
}

// The other way to a support force: the displacement of the support times its stiffness, of which
// the structure's own diagonal entry is a part. (K - 1e20) u is exact to the digits of u.
TEST(Reactions, AgreeWithTheDisplacementsOfTheSupports) {
  for (std::uint32_t seed = 0; seed < korvex::test::Repeats(60); ++seed) {
    SCOPED_TRACE(seed);
    const Solved solved = Solve(MakeGoodModel(seed));
    const std::vector<double>& r = solved.reactions.r;
    for (std::size_t i = 0; i < r.size(); ++i) {
      if (solved.model.isHeld[i] == 0) continue;
      const double force = -korvex::PenaltyStiffness * solved.model.model.Displacements[i];
      // The structure's stiffness over 1e20, at most 1e-4 for the stiffest plates in mm; and the
      // rounding of thin plates.
      const double scale =
          i % 6 < 3 ? solved.reactions.endScales.force : solved.reactions.endScales.moment;
      EXPECT_NEAR(r[i], force, 1e-4 * std::fabs(force) + 1e-8 * scale);
    }
  }
}

constexpr double E = 2.06e11, Mu = 0.3;

// A row of beams along x with this section, of `spans` spans of the length 3, divided into
// `parts` each; pinned in the plane x-z at the ends of the spans, held in all other ways at node 0.
ModelText ContinuousBeam(const TestSection& section, int spans, int parts) {
  ModelText text;
  text.materials = {{E, Mu, 7850.0}};
  ModelText::Beam beam;
  UseSection(section, text, beam);
  const int beams = spans * parts;
  for (int k = 0; k <= beams; ++k) text.nodes.push_back({3.0 * k / parts, 0.0, 0.0});
  for (int k = 0; k < beams; ++k) {
    beam.node1 = k;
    beam.node2 = k + 1;
    text.beams.push_back(beam);
  }
  for (int k = 0; k <= spans; ++k) text.restraints.push_back({k * parts, {0, 1, 1, 1, 0, 1}});
  text.restraints[0].fixed[Ux] = 1;
  return text;
}

// A tube: centred on its node, symmetric, so that bending in x-z stays there. Its shear deformation
// enters the statically undetermined forces by Phi = 12 E I / (G As L^2).
TestSection Tube() { return AllSections()[4]; }

// Three moments (Clapeyron) for two equal spans L under a uniform load q: the moment over the
// middle support is -q L^2 / 8 / (1 + Phi / 4) with shear deformation, from the compatibility of
// the slopes: q L^3 / (24 E I) 2 = -M L / (3 E I) 2 (1 + Phi / 4). The ends carry q L / 2 - |M| / L
// each. (The load's shear deformation is symmetric in a span and turns no end.)
TEST(Reactions, OfAContinuousBeamUnderUniformLoad) {
  // The solver's nodal loads are those of a slender beam: where Phi is not 0, their error vanishes
  // with the square of the length of the beams. A long thin tube has a Phi of 0.006 per span.
  TestSection section = Tube();
  section.dimensions = {0.02, 0.002, 0, 0};
  const SectionNumbers s = ComputeNumbers(section);
  const double L = 3.0, q = -1000.0;
  const double Phi = static_cast<double>(12 * s.Iy * 2 * (1 + Mu) / (s.shearAreaZ * L * L));
  ModelText text = ContinuousBeam(section, 2, 4);
  for (int k = 0; k < 8; ++k) text.beamLoads.push_back({k, q, q});
  const Solved solved = Solve(text);
  const double M = -q * L * L / 8.0 / (1.0 + Phi / 4.0);
  const double end = -q * L / 2.0 - M / L, middle = -q * 2.0 * L - 2.0 * end;
  const double bound = 2.0 * Phi / 16.0 * -q * L;  // the nodal loads, four beams to a span
  EXPECT_NEAR(ForceAt(solved.reactions, 0)[Fz], end, bound);
  EXPECT_NEAR(ForceAt(solved.reactions, 4)[Fz], middle, bound);
  EXPECT_NEAR(ForceAt(solved.reactions, 8)[Fz], end, bound);
  EXPECT_LT(bound, 1e-3 * end);
  EXPECT_LT(solved.reactions.imbalance, 1e-9);
}

// A force P in the middle of the first of two equal spans, with no regard to how thick the beam is:
// it turns the end of its span by P L^2 / (16 E I), which shear does not change; a moment M turns
// it by M L / (3 E I) (1 + Phi / 4), on both sides. So M = 3 P L / 32 / (1 + Phi / 4).
TEST(Reactions, OfAContinuousBeamUnderAForce) {
  const SectionNumbers s = ComputeNumbers(Tube());
  const double L = 3.0, P = 1000.0;
  const double Phi = static_cast<double>(12 * s.Iy * 2 * (1 + Mu) / (s.shearAreaZ * L * L));
  EXPECT_GT(Phi, 0.05);
  ModelText text = ContinuousBeam(Tube(), 2, 2);
  text.forces = {{1, SingleLoad(Fz, -P)}};
  const Reactions r = Solve(text).reactions;
  const double M = 3.0 * P * L / 32.0 / (1.0 + Phi / 4.0);
  EXPECT_NEAR(ForceAt(r, 0)[Fz], P / 2.0 - M / L, 1e-9 * P);
  EXPECT_NEAR(ForceAt(r, 2)[Fz], P / 2.0 + 2.0 * M / L, 1e-9 * P);
  EXPECT_NEAR(ForceAt(r, 4)[Fz], -M / L, 1e-9 * P);
}

// The same two spans without a load, the middle support settles by delta. Slope-deflection with
// shear: the moment over the middle is 3 E I delta / L^2 / (1 + Phi / 4), the ends are pulled down
// by M / L, the middle is pushed up with twice that: the structure carries the settlement.
TEST(Reactions, OfASettlingSupport) {
  const SectionNumbers s = ComputeNumbers(Tube());
  const double L = 3.0, delta = -2.5e-3;
  const double Phi = static_cast<double>(12 * s.Iy * 2 * (1 + Mu) / (s.shearAreaZ * L * L));
  ModelText text = ContinuousBeam(Tube(), 2, 1);
  text.forces = {{1, SingleLoad(Fz, 1e20 * delta)}};
  const Solved solved = Solve(text);
  const double M = 3.0 * E * static_cast<double>(s.Iy) * delta / (L * L) / (1.0 + Phi / 4.0);
  const Reactions& r = solved.reactions;
  // 1e-9: the penalty of the supports is 1e20, the stiffness of the beam below 1e9.
  EXPECT_NEAR(ForceAt(r, 1)[Fz], 2.0 * M / L, 1e-9 * std::fabs(M));
  EXPECT_NEAR(ForceAt(r, 0)[Fz], -M / L, 1e-9 * std::fabs(M));
  EXPECT_NEAR(ForceAt(r, 2)[Fz], -M / L, 1e-9 * std::fabs(M));
  ASSERT_EQ(r.moved.size(), 1U);
  EXPECT_EQ(r.moved[0].node, 1);
  EXPECT_EQ(r.moved[0].dof, 2);
  EXPECT_DOUBLE_EQ(r.moved[0].prescribed, delta);
  EXPECT_NEAR(r.moved[0].displacement, delta, 1e-9 * -delta);
  for (const double load : r.loads) EXPECT_EQ(load, 0.0);
  EXPECT_LT(r.imbalance, 1e-9);
}

// A load on the settling support goes straight into it, though the solver's sum with 1e20 u has
// lost it.
TEST(Reactions, OfALoadOnASettlingSupport) {
  ModelText text = ContinuousBeam(Tube(), 2, 1);
  text.forces = {{1, SingleLoad(Fz, -2.5e17)}};
  const ForceSum without = ForceAt(Solve(text).reactions, 1);
  // The settlement in two rows, with the load between them.
  text.forces = {
      {1, SingleLoad(Fz, -1.0e17)}, {1, SingleLoad(Fz, -700.0)}, {1, SingleLoad(Fz, -1.5e17)}};
  const Solved solved = Solve(text);
  ASSERT_EQ(solved.reactions.moved.size(), 1U);
  EXPECT_DOUBLE_EQ(solved.reactions.moved[0].prescribed, -2.5e-3);
  EXPECT_NEAR(ForceAt(solved.reactions, 1)[Fz], without[Fz] + 700.0, 1e-6);
  EXPECT_EQ(solved.reactions.loads[Fz], -700.0);
  EXPECT_LT(solved.reactions.imbalance, 1e-9);
}

// A prescribed rotation theta of the near end, the far end clamped: 4 E I / L and 2 E I / L times
// theta, with shear (4 + Phi) and (2 - Phi) over (1 + Phi) (Przemieniecki 1968, sec. 5.6).
TEST(Reactions, OfATurnedSupport) {
  const SectionNumbers s = ComputeNumbers(Tube());
  const double L = 3.0, theta = 1e-3, EI = E * static_cast<double>(s.Iy);
  const double Phi = static_cast<double>(12 * s.Iy * 2 * (1 + Mu) / (s.shearAreaZ * L * L));
  ModelText text = ContinuousBeam(Tube(), 1, 1);
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}, {1, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{0, SingleLoad(My, 1e20 * theta)}};
  const Solved solved = Solve(text);
  const double unit = EI * theta / L / (1.0 + Phi), V = 6.0 * unit / L;
  const ForceSum near = ForceAt(solved.reactions, 0), far = ForceAt(solved.reactions, 1);
  EXPECT_NEAR(near[My], (4.0 + Phi) * unit, 1e-9 * unit);
  EXPECT_NEAR(far[My], (2.0 - Phi) * unit, 1e-9 * unit);
  EXPECT_NEAR(near[Fz], -V, 1e-9 * V);  // a positive turn about y lowers the beam in front of it
  EXPECT_NEAR(far[Fz], V, 1e-9 * V);
  EXPECT_LT(solved.reactions.imbalance, 1e-9);
}

// A clamped cantilever of every section with a force and a moment at its tip, oblique: statics
// gives the reaction, with no regard to the offset, as forces act at the nodes.
TEST(Reactions, OfACantileverFollowFromStatics) {
  for (const TestSection& section : AllSections()) {
    SCOPED_TRACE(section.name);
    ModelText text = ContinuousBeam(section, 1, 3);
    text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
    text.forces = {{3, {300.0, -500.0, 700.0, 110.0, -130.0, 170.0}}};
    const ForceSum force = ForceAt(Solve(TurnModel(text)).reactions, 0);
    // About node 0, the origin: r x F with r = (3, 0, 0).
    const ForceSum expected =
        TurnSix({-300.0, 500.0, -700.0, -110.0, 130.0 + 3.0 * 700.0, -170.0 + 3.0 * 500.0});
    for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(force[i], expected[i], 1e-9 * 2500.0);
  }
}

// A moment alone makes no forces: what there is of them is rounding of moments over lengths, and
// must not pass for an imbalance.
TEST(Reactions, OfMomentsAlone) {
  ModelText text = ContinuousBeam(AllSections()[6], 1, 3);  // L with an offset
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  text.forces = {{3, {0, 0, 0, 11.0, -13.0, 17.0}}};
  const Reactions r = Solve(TurnModel(text)).reactions;
  EXPECT_LT(r.imbalance, 1e-9);
  EXPECT_LT(r.residual.relative, 1e-9);
  EXPECT_GT(r.sumScales.force, 1.0);
}

// By the definition of the estimate: the error of each dof as a force or moment of its own.
TEST(Reactions, EstimateTheRounding) {
  for (const std::uint32_t seed : {1U, 4U, 9U}) {
    const Solved solved = Solve(MakeGoodModel(seed));
    const korvex::Model& model = solved.model.model;
    std::vector<double> size(model.LoadVector.size());
    for (std::size_t i = 0; i < size.size(); ++i) size[i] = std::fabs(model.LoadVector[i]);
    korvex::FormElementMatrices(
        model, [&](const double* ke, const std::int32_t* g, std::int32_t n) {
          for (std::int32_t i = 0; i < n; ++i) {
            for (std::int32_t j = 0; j < n; ++j) {
              const double u = model.Displacements[static_cast<std::size_t>(g[j])];
              size[static_cast<std::size_t>(g[i])] += std::fabs(ke[i * n + j] * u);
            }
          }
        });
    std::array<double, 6> squares{};
    for (std::size_t i = 0; i < size.size(); ++i) {
      ForceSum single{}, sum{};
      single[i % 6] = size[i];
      AddForceAt(PlaceOfNode(model, static_cast<std::int32_t>(i / 6)), solved.reactions.centre,
                 single.data(), sum);
      for (std::size_t k = 0; k < 6; ++k) squares[k] += sum[k] * sum[k];
    }
    double expected = 0.0;
    for (std::size_t k = 0; k < 6; ++k) {
      const double sum = std::ldexp(std::sqrt(squares[k]), -52);
      EXPECT_NEAR(solved.reactions.roundingSum[k], sum, 1e-9 * sum);
      const ForceScales& scales = solved.reactions.sumScales;
      expected = std::max(expected, std::sqrt(squares[k]) / (k < 3 ? scales.force : scales.moment));
    }
    expected *= std::ldexp(1.0, -52);
    EXPECT_NEAR(solved.reactions.rounding, expected, 1e-9 * expected);
  }
}

// A clamped beam under a line load from q1 to q2 (Roark 1989, table 3, case 2d): the solver's own
// nodal loads are the reactions with the opposite sign, as no node moves.
TEST(Reactions, OfAClampedBeamUnderALineLoad) {
  ModelText text = ContinuousBeam(Tube(), 1, 1);
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}, {1, {1, 1, 1, 1, 1, 1}}};
  const double q1 = -100.0, q2 = -400.0, L = 3.0;
  text.beamLoads = {{0, q1, q2}};
  const Solved solved = Solve(text);
  const ForceSum a = ForceAt(solved.reactions, 0), b = ForceAt(solved.reactions, 1);
  EXPECT_NEAR(a[Fz], -(7.0 * q1 + 3.0 * q2) * L / 20.0, 1e-9);
  EXPECT_NEAR(b[Fz], -(3.0 * q1 + 7.0 * q2) * L / 20.0, 1e-9);
  EXPECT_NEAR(a[My], (3.0 * q1 + 2.0 * q2) * L * L / 60.0, 1e-9);
  EXPECT_NEAR(b[My], -(2.0 * q1 + 3.0 * q2) * L * L / 60.0, 1e-9);
  // About the origin: the load's resultant (q1 + q2) L / 2 at (q1 + 2 q2) / (q1 + q2) L / 3.
  EXPECT_NEAR(solved.reactions.loads[Fz], (q1 + q2) * L / 2.0, 1e-9);
  EXPECT_NEAR(solved.reactions.loads[My], -(q1 + 2.0 * q2) * L * L / 6.0, 1e-9);
}

// A square plate, simply supported on its edges, under a uniform pressure p downwards. The corners
// want to lift: the supports hold them down with R = 0.065 p a^2 each, and the edges carry more
// than the load (Timoshenko & Woinowsky-Krieger 1959, sec. 31, table 8, nu = 0.3). Thin, so that
// shear does not soften the corners. The rotation about the normal of an edge is free: held, it
// would take the twisting moment, of which the corner forces are made.
TEST(Reactions, HoldDownTheCornersOfAPlate) {
  const int n = 32;
  ModelText text = BuildGrid(n, n, Cells::Quads, [](double s, double t) {
    return Point3{s, t, 0.0};
  });
  text.materials = {{E, Mu, 0.0}};
  text.thicknesses = {0.002};
  const double p = 1000.0;
  for (int j = 0; j <= n; ++j) {
    for (int i = 0; i <= n; ++i) {
      if (i % n != 0 && j % n != 0) continue;
      text.restraints.push_back({GridNode(n, i, j), {1, 1, 1, 0, 0, 1}});
    }
  }
  for (int e = 0; e < n * n; ++e) text.shell4Loads.push_back({e, {-p, -p, -p}});
  const Solved solved = Solve(text);
  const double a = 1.0;
  for (const int corner :
       {GridNode(n, 0, 0), GridNode(n, n, 0), GridNode(n, 0, n), GridNode(n, n, n)}) {
    // At the corner node the edges' own reaction, which vanishes there, is spread over half a
    // cell of each edge: a few percent for 32 cells.
    EXPECT_NEAR(ForceAt(solved.reactions, corner)[Fz], -0.065 * p * a * a, 0.05 * 0.065 * p);
  }
  double edges = 0.0;
  for (const Support& support : solved.reactions.supports)
    edges += std::max(support.force[Fz], 0.0);
  EXPECT_NEAR(edges, (1.0 + 4.0 * 0.065) * p * a * a, 0.02 * p);
  EXPECT_NEAR(solved.reactions.reactions[Fz], p * a * a, 1e-7 * p);
  EXPECT_LT(solved.reactions.imbalance, std::max(1e-9, 8.0 * solved.reactions.rounding));
}

// The whole model turned: the same support forces, turned.
TEST(Reactions, TurnWithTheModel) {
  ModelText text = BuildGrid(4, 3, Cells::Mixed, [](double s, double t) {
    return Point3{1.2 * s, t + 0.1 * s, 0.2 * s * s};
  });
  text.materials = {{E, Mu, 0.0}};
  text.thicknesses = {0.02};
  for (int j = 0; j <= 3; ++j) text.restraints.push_back({GridNode(4, 0, j), {1, 1, 1, 1, 1, 1}});
  text.restraints.push_back({GridNode(4, 4, 3), {1, 1, 1, 0, 0, 0}});
  text.forces = {{GridNode(4, 4, 0), {100.0, -200.0, 300.0, 10.0, 20.0, -5.0}}};
  text.shell4Loads = {{2, {1000.0, 2000.0, 1500.0}}};
  const Solved straight = Solve(text), turned = Solve(TurnModel(text));
  ASSERT_EQ(straight.reactions.supports.size(), turned.reactions.supports.size());
  const double bound = 1e-9 * straight.reactions.endScales.force;
  for (std::size_t k = 0; k < straight.reactions.supports.size(); ++k) {
    const ForceSum expected = TurnSix(straight.reactions.supports[k].force);
    for (std::size_t i = 0; i < 6; ++i) {
      EXPECT_NEAR(turned.reactions.supports[k].force[i], expected[i], bound);
    }
  }
  const ForceSum sum = TurnSix(straight.reactions.reactions);
  for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(turned.reactions.reactions[i], sum[i], bound);
}

// A curved mesh of warped quads. Their couples are what loads and reactions differ by; apart from
// them the balance holds.
ModelText WarpedMesh(double twist) {
  ModelText text = BuildGrid(5, 4, Cells::Quads, [&](double s, double t) {
    return Point3{2.0 * s, t, twist * s * t};
  });
  text.materials = {{E, Mu, 0.0}};
  text.thicknesses = {0.02};
  for (int j = 0; j <= 4; ++j) text.restraints.push_back({GridNode(5, 0, j), {1, 1, 1, 1, 1, 1}});
  text.forces = {{GridNode(5, 5, 0), {50.0, 100.0, 300.0, 0, 0, 0}}};
  text.shell4Loads = {{7, {1000.0, 1000.0, 1000.0}}};
  return text;
}

TEST(Reactions, BalanceApartFromWarpedQuads) {
  const Solved solved = Solve(WarpedMesh(0.3));
  const Reactions& r = solved.reactions;
  EXPECT_EQ(r.unbalanced.size(), 20U);
  // Node 3 stands off the plane of nodes 1, 2 and 4 by s t twist / (cells), times the normal's z.
  const UnbalancedElement& first = r.unbalanced[0];
  EXPECT_EQ(first.element.kind, ElementKind::Shell4);
  EXPECT_EQ(first.element.row, 0);
  EXPECT_NEAR(first.offset, 0.3 / 20.0, 1e-12);  // at the origin the plane is z = 0
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(first.sum[i], 0.0);
  double largest = 0.0;
  for (std::size_t i = 3; i < 6; ++i) {
    largest = std::max(largest, std::fabs(r.loads[i] + r.reactions[i]));
  }
  EXPECT_GT(largest, 1e-4 * r.sumScales.moment);  // it matters
  EXPECT_LT(r.imbalance, 1e-9);
  EXPECT_LT(SumOfAll(solved), 1e-9);
  EXPECT_LT(Unexplained(solved), 1e-12);
}

TEST(Reactions, HaveTheSameBitsOnAnyNumberOfThreads) {
  const Solved solved = Solve(WarpedMesh(0.3));
  for (const int threads : {2, 3, 8}) {
    Reactions reactions;
    ComputeReactions(solved.model, reactions, threads);
    EXPECT_EQ(reactions.r, solved.reactions.r);
    EXPECT_EQ(reactions.reactions, solved.reactions.reactions);
    EXPECT_EQ(reactions.backwardError, solved.reactions.backwardError);
    ASSERT_EQ(reactions.unbalanced.size(), solved.reactions.unbalanced.size());
    for (std::size_t i = 0; i < reactions.unbalanced.size(); ++i) {
      EXPECT_EQ(reactions.unbalanced[i].element.row, solved.reactions.unbalanced[i].element.row);
      EXPECT_EQ(reactions.unbalanced[i].sum, solved.reactions.unbalanced[i].sum);
    }
  }
}

// The couple is that of the element's forces about any point: the sum over its real nodes.
TEST(Reactions, FindTheCoupleOfAWarpedQuadByStatics) {
  SolvedModel solved;
  ModelText text = WarpedMesh(0.3);
  text.shell4Loads.clear();  // so that the end forces are K_e u alone
  SolveInMemory(WriteModel(text), {}, solved);
  Reactions reactions;
  ComputeReactions(solved, reactions);
  LoadIndex index;
  IndexLoads(solved.model, index);
  ASSERT_EQ(reactions.unbalanced.size(), 20U);
  for (const UnbalancedElement& unbalanced : reactions.unbalanced) {
    EndForceArray forces{};
    FormEndForces(solved.model, index, unbalanced.element, forces);
    const NodeSpan span = NodesOfElement(solved.model, unbalanced.element);
    ForceSum sum{};
    for (std::int32_t k = 0; k < 4; ++k) {
      AddForceAt(PlaceOfNode(solved.model, span.nodes[k]), {7.0, -5.0, 3.0},
                 &forces[6 * static_cast<std::size_t>(k)], sum);
    }
    for (std::size_t i = 0; i < 6; ++i) {
      const double scale = i < 3 ? reactions.endScales.force : reactions.endScales.moment;
      EXPECT_NEAR(sum[i], unbalanced.sum[i], 1e-10 * scale);
    }
  }
}

TEST(Reactions, FlatQuadsAreNotNamed) {
  EXPECT_TRUE(Solve(WarpedMesh(0.0)).reactions.unbalanced.empty());
  EXPECT_TRUE(Solve(TurnModel(WarpedMesh(0.0))).reactions.unbalanced.empty());
}

// A quad with a node twice is a triangle of which the solver adds one coupling once. Its residuals
// vanish, as they follow the solver, and what it leaves over is told.
TEST(Reactions, BalanceApartFromElementsWithANodeTwice) {
  ModelText text = WarpedMesh(0.0);
  text.shells4[13].nodes[3] = text.shells4[13].nodes[2];
  const Solved solved = Solve(text);
  const Reactions& r = solved.reactions;
  ASSERT_EQ(r.unbalanced.size(), 1U);
  EXPECT_EQ(r.unbalanced[0].element.row, 13);
  EXPECT_TRUE(r.unbalanced[0].hasNodeTwice);
  double left = 0.0;
  for (std::size_t i = 0; i < 3; ++i) left = std::max(left, std::fabs(r.unbalanced[0].sum[i]));
  EXPECT_GT(left, 1e-6 * r.sumScales.force);
  EXPECT_LT(r.residual.relative, 1e-9);
  EXPECT_LT(r.imbalance, 1e-9);
}

// Displacements that belong to other loads leave residuals: at the node where the load changed.
TEST(Reactions, NameTheDofThatIsNotInEquilibrium) {
  ModelText text = WarpedMesh(0.0);
  SolvedModel solved;
  SolveInMemory(WriteModel(text), {}, solved);
  const std::vector<double> before = solved.model.Displacements;
  text.forces.push_back({GridNode(5, 3, 2), SingleLoad(Fy, 70.0)});
  CompleteFromDisplacements(WriteModel(text), before, solved);
  Reactions r;
  ComputeReactions(solved, r);
  EXPECT_EQ(r.residual.node, GridNode(5, 3, 2));
  EXPECT_EQ(r.residual.dof, 1);
  EXPECT_NEAR(r.residual.value, -70.0, 1e-6);
  EXPECT_GT(r.residual.relative, 1e-2);
  EXPECT_GT(r.imbalance, 1e-2);
  EXPECT_FALSE(IsBalanced(r));
  EXPECT_GT(r.backwardError, 1e-9);
}

TEST(Reactions, OfLoadsOnHeldAndLonelyNodes) {
  ModelText text = ContinuousBeam(Tube(), 1, 1);
  text.nodes.push_back({9.0, 9.0, 9.0});
  text.restraints.push_back({2, {1, 1, 1, 1, 1, 1}});
  text.forces = {{0, SingleLoad(Fz, -40.0)}, {2, SingleLoad(Fy, 8.0)}};
  const Solved solved = Solve(text);
  EXPECT_NEAR(ForceAt(solved.reactions, 0)[Fz], 40.0, 1e-12);
  EXPECT_NEAR(ForceAt(solved.reactions, 2)[Fy], -8.0, 1e-12);
  EXPECT_EQ(solved.reactions.supports.size(), 3U);
  EXPECT_LT(solved.reactions.imbalance, 1e-12);
}

TEST(Reactions, OfAModelWithoutLoads) {
  const Solved solved = Solve(ContinuousBeam(Tube(), 1, 1));
  EXPECT_EQ(solved.reactions.imbalance, 0.0);
  EXPECT_EQ(solved.reactions.residual.relative, 0.0);
  for (const Support& support : solved.reactions.supports) {
    for (const double force : support.force) EXPECT_EQ(force, 0.0);
  }
}

// A beam in the air: its numbers may be anything, but the imbalance and the residual do not pass.
TEST(Reactions, OfAModelWithoutSupports) {
  ModelText text = ContinuousBeam(Tube(), 1, 1);
  text.restraints.clear();
  text.forces = {{1, SingleLoad(Fz, 1.0)}};
  const Solved solved = Solve(text);
  EXPECT_TRUE(solved.reactions.supports.empty());
  EXPECT_FALSE(IsBalanced(solved.reactions));
}

TEST(Reactions, OfNumbersThatAreNone) {
  const std::string text = WriteModel(ContinuousBeam(Tube(), 1, 1));
  for (const double bad : {std::nan(""), std::numeric_limits<double>::infinity()}) {
    std::vector<double> u(12, 1e-3);
    u[7] = bad;
    SolvedModel solved;
    CompleteFromDisplacements(text, u, solved);
    Reactions r;
    ComputeReactions(solved, r);
    EXPECT_TRUE(std::isnan(r.imbalance));
    EXPECT_FALSE(IsBalanced(r));
    EXPECT_TRUE(std::isnan(r.residual.relative));
    EXPECT_GE(r.residual.node, 0);
  }
}

// A strip of 300 cells, 6000 times as long as thick, clamped at one end: its displacements are so
// large beside what its elements stretch that the sixteenth digit counts.
TEST(Reactions, AllowForTheRoundingOfASlenderStrip) {
  ModelText text = BuildGrid(2, 300, Cells::Quads, [](double s, double t) {
    return Point3{0.1 * s, 60.0 * t, 0.0};
  });
  text.materials = {{E, Mu, 0.0}};
  text.thicknesses = {0.01};
  for (int i = 0; i <= 2; ++i) text.restraints.push_back({i, {1, 1, 1, 1, 1, 1}});
  text.forces = {{GridNode(2, 1, 300), SingleLoad(Fz, -1.0)}};
  const Reactions r = Solve(text).reactions;
  EXPECT_GT(r.imbalance, 1e-9);
  EXPECT_LT(r.imbalance, 8.0 * r.rounding);
  EXPECT_TRUE(IsBalanced(r));
}

// A cantilever plate of 4000 equal elements, 10,000 times as long as thick: the errors of all of
// them add up to more than a millionth of the load, though each equation is solved to its last
// digits.
TEST(Reactions, AllowForTheRoundingOfALongThinPlate) {
  constexpr int nx = 20, ny = 200;
  ModelText text = BuildGrid(nx, ny, Cells::Quads, [](double s, double t) {
    return Point3{2000.0 * s, 20000.0 * t, 0.0};
  });
  text.materials = {{206000.0, Mu, 0.0}};
  text.thicknesses = {2.0};
  for (int i = 0; i <= nx; ++i) text.restraints.push_back({i, {1, 1, 1, 1, 1, 1}});
  text.forces = {{GridNode(nx, nx, ny), SingleLoad(Fz, -1000.0)}};
  const Reactions r = Solve(text).reactions;
  EXPECT_GT(r.imbalance, BalanceTolerance);
  EXPECT_LT(r.backwardError, 1e-14);  // some ten roundings of each term
  EXPECT_TRUE(IsBalanced(r));
}

// What rounding explains counts as balanced, as long as the third digit is right: a structure that
// can move has displacements that explain anything.
TEST(Reactions, CountNoMoreThanAThousandthAsRounding) {
  Reactions r;
  r.isLoaded = true;
  for (const auto& [imbalance, error, isBalanced] : {std::tuple(0.9e-6, 1.0, true),
                                                     {1.1e-6, 1.1e-12, false},
                                                     {0.9e-3, 0.9e-12, true},
                                                     {1.1e-3, 0.0, false},
                                                     {1.0, 0.0, false},
                                                     {0.9e-3, std::nan(""), false}}) {
    r.imbalance = imbalance;
    r.backwardError = error;
    EXPECT_EQ(IsBalanced(r), isBalanced) << imbalance << ' ' << error;
  }
  r.isLoaded = false;  // as a structure that its supports move as a whole
  r.imbalance = 1.0;
  r.backwardError = 0.0;
  EXPECT_TRUE(IsBalanced(r));
}

TEST(Reactions, OfAnEmptyModel) {
  const Solved solved = Solve(ModelText());
  EXPECT_EQ(solved.reactions.imbalance, 0.0);
  EXPECT_EQ(solved.reactions.residual.node, -1);
  SolvedModel none;
  none.model.Tables.Nodes.resize(1);
  Reactions r;
  EXPECT_THROW(ComputeReactions(none, r), korvex::Stop);
}

}  // namespace
}  // namespace kvx::test
