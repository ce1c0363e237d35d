// Section forces against statics and the force method, for every section kind with and without
// offset, in oblique frames, with line loads.
//
// Bounds: 1e-9 of the largest force, and of the largest moment, of the structure. The displacements
// carry rounding errors of about 1e-16 times the ratio of the stiffest to the softest motion.
#include "audit/section_forces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "beam/beam_line_load.h"
#include "beam/beam_stiffness.h"
#include "report/stop.h"
#include "support/beam_sections.h"
#include "support/chain_statics.h"
#include "support/good_models.h"
#include "support/shell_mesh.h"
#include "support/solve_model.h"
#include "system/assemble_stiffness.h"
#include "system/load_vector.h"

namespace kvx::test {
namespace {

using korvex::Model;
using korvex::test::AllSections;
using korvex::test::ClampPortal;
using korvex::test::ComputeNumbers;
using korvex::test::DisplacePortal;
using korvex::test::ModelText;
using korvex::test::SolveModel;
using korvex::test::SolveSix;
using korvex::test::TestSection;
using korvex::test::TurnModel;
using korvex::test::UseSection;

constexpr double Bound = 1e-9;
constexpr double E = 2.06e11;
constexpr double Mu = 0.3;

class SectionForcesOf : public testing::TestWithParam<TestSection> {};

INSTANTIATE_TEST_SUITE_P(AllSections, SectionForcesOf, testing::ValuesIn(AllSections()),
                         [](const auto& section) { return section.param.name; });

using Point = std::array<double, 3>;
using Six = std::array<double, 6>;

// A chain of beams of one section, and what stands on it.
struct Chain {
  std::vector<Point> points;
  std::vector<Point> orientations;
};

Real6 Exact(const Six& a) { return {a[0], a[1], a[2], a[3], a[4], a[5]}; }

Real6 Plus(const Real6& a, Real s, const Real6& b) {
  Real6 sum = a;
  for (std::size_t i = 0; i < 6; ++i) sum[i] += s * b[i];
  return sum;
}

BeamChain BuildChain(const Chain& chain, const TestSection& section) {
  BeamChain exact{E, Mu, {}, {}, {}};
  for (const Point& p : chain.points) exact.points.push_back({p[0], p[1], p[2]});
  for (const Point& v : chain.orientations) {
    exact.orientations.push_back({v[0], v[1], v[2]});
    exact.sections.push_back(ComputeNumbers(section));
  }
  return exact;
}

// Appends the beams of a chain that runs through the given nodes.
void AddBeams(const Chain& chain, const std::vector<int>& nodes, const TestSection& section,
              ModelText& model) {
  for (std::size_t i = 0; i < chain.orientations.size(); ++i) {
    ModelText::Beam beam;
    beam.node1 = nodes[i];
    beam.node2 = nodes[i + 1];
    beam.orientation = chain.orientations[i];
    UseSection(section, model, beam);
    model.beams.push_back(beam);
  }
}

// Clamped at the first node.
ModelText BuildModel(const Chain& chain, const TestSection& section) {
  ModelText model;
  model.materials = {{E, Mu, 7850.0}};
  model.nodes = chain.points;
  std::vector<int> nodes;
  for (std::size_t i = 0; i < chain.points.size(); ++i) nodes.push_back(static_cast<int>(i));
  AddBeams(chain, nodes, section, model);
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  return model;
}

std::vector<BeamForces> SolveForces(const ModelText& text) {
  Model model;
  SolveModel(text, model);
  std::vector<BeamForces> forces;
  ComputeBeamForces(model, forces);
  return forces;
}

// The section forces of beams against those of a chain; beam i is member i. Forces are compared
// with the largest force of the chain, moments with the largest moment.
void ExpectChain(const std::vector<BeamForces>& beams, std::size_t first, const BeamChain& chain,
                 const ChainLoads& loads, double bound = Bound) {
  const std::array<Real, 5> places{0, 0.125L, 0.5L, 0.8125L, 1};
  std::array<double, 2> size{};
  for (std::size_t m = 0; m < chain.sections.size(); ++m) {
    for (const Real s : places) {
      const Real6 exact = CutChain(chain, loads, m, s);
      for (std::size_t c = 0; c < 6; ++c) {
        size[c / 3] = std::max(size[c / 3], std::fabs(static_cast<double>(exact[c])));
      }
    }
  }
  for (std::size_t m = 0; m < chain.sections.size(); ++m) {
    for (const Real s : places) {
      const Real6 exact = CutChain(chain, loads, m, s);
      const SectionForces found = ForcesAt(beams[first + m], static_cast<double>(s));
      for (std::size_t c = 0; c < 6; ++c) {
        EXPECT_NEAR(found[c], static_cast<double>(exact[c]), bound * size[c / 3])
            << "member " << m << " at " << static_cast<double>(s) << " component " << c;
      }
    }
  }
}

// All six load components at once.
constexpr Six GeneralLoad{1.0e4, -2.0e4, 1.5e4, 3.0e3, -4.0e3, 2.5e3};

const Chain Oblique{{{0.0, 0.0, 0.0}, {0.5, 1.0, 3.0}, {4.5, 2.0, 3.5}, {5.0, 1.0, 0.25}},
                    {{1.0, 0.5, 0.0}, {0.0, 0.25, 1.0}, {-1.0, 0.5, 0.25}}};

// The loads of the oblique chain: a general load at point 1, trapezoidal loads on all members; that
// of member 1 stands in two rows of the file.
void LoadOblique(ModelText& model, ChainLoads& loads) {
  model.forces = {{1, GeneralLoad}};
  model.beamLoads = {{0, 2e3, 0.0}, {1, -5e3, 1e3}, {2, -1.5e3, -1.5e3}, {1, 1e3, 6e3}};
  loads = NoLoads(3);
  loads.nodal[1] = Exact(GeneralLoad);
  loads.lines = {{2e3, 0}, {-4e3, 7e3}, {-1.5e3, -1.5e3}};
}

TEST_P(SectionForcesOf, ObliqueCantileverFollowsStatics) {
  ModelText model = BuildModel(Oblique, GetParam());
  ChainLoads loads;
  LoadOblique(model, loads);
  model.forces.push_back({3, GeneralLoad});
  loads.nodal[3] = Exact(GeneralLoad);
  ExpectChain(SolveForces(model), 0, BuildChain(Oblique, GetParam()), loads);
}

// The force and moment of the clamp at the chain's last point under all loads.
Real6 ClampLast(const BeamChain& chain, const ChainLoads& loads) {
  const std::vector<Real6> equivalent = EquivalentLoads(chain, loads);
  const std::size_t last = chain.points.size() - 1;
  Real6 clamp{};
  for (std::size_t p = 1; p < last; ++p) {
    const Real6 at = Plus(loads.nodal[p], 1, equivalent[p]);
    clamp = Plus(clamp, 1, ClampPortal(chain, static_cast<int>(p), at));
  }
  return Plus(clamp, -1, equivalent[last]);
}

TEST_P(SectionForcesOf, ObliquePortalFollowsTheForceMethod) {
  ModelText model = BuildModel(Oblique, GetParam());
  model.restraints.push_back({3, {1, 1, 1, 1, 1, 1}});
  ChainLoads loads;
  LoadOblique(model, loads);
  const BeamChain chain = BuildChain(Oblique, GetParam());
  loads.nodal[3] = ClampLast(chain, loads);
  ExpectChain(SolveForces(model), 0, chain, loads);
}

// Two girders, clamped at their four ends, cross at their middle nodes, which are one node.
struct Grillage {
  Chain a{{{0.0, 0.0, 0.0}, {2.0, 0.5, 0.25}, {5.0, 1.25, 0.625}}, {{0, 0, 1}, {0, 0, 1}}};
  Chain b{{{3.0, -3.0, 0.0}, {2.0, 0.5, 0.25}, {1.0, 4.0, 1.0}}, {{0.1, 0, 1}, {0.1, 0, 1}}};
  ModelText model;
  ChainLoads loadsA, loadsB;
};

void BuildGrillage(const TestSection& section, Grillage& g) {
  g.model.materials = {{E, Mu, 7850.0}};
  g.model.nodes = {g.a.points[0], g.a.points[1], g.a.points[2], g.b.points[0], g.b.points[2]};
  AddBeams(g.a, {0, 1, 2}, section, g.model);
  AddBeams(g.b, {3, 1, 4}, section, g.model);
  for (const int node : {0, 2, 3, 4}) g.model.restraints.push_back({node, {1, 1, 1, 1, 1, 1}});
  g.model.forces = {{1, GeneralLoad}};
  g.model.beamLoads = {{0, -4e3, -4e3}, {1, -4e3, -1e3}, {2, 0.0, -3e3}, {3, -3e3, 2e3}};
  g.loadsA = g.loadsB = NoLoads(2);
  g.loadsA.nodal[1] = Exact(GeneralLoad);
  g.loadsA.lines = {{-4e3, -4e3}, {-4e3, -1e3}};
  g.loadsB.lines = {{0, -3e3}, {-3e3, 2e3}};
}

// Girder A gives the force X to girder B at the crossing, where both move alike:
// flexA (loadA - X) = flexB (loadB + X).
TEST_P(SectionForcesOf, GrillageFollowsTheForceMethod) {
  Grillage g;
  BuildGrillage(GetParam(), g);
  const BeamChain a = BuildChain(g.a, GetParam()), b = BuildChain(g.b, GetParam());
  std::array<Real6, 6> flexibility{};
  for (std::size_t c = 0; c < 6; ++c) {
    Real6 unit{};
    unit[c] = 1;
    const Real6 column = Plus(DisplacePortal(a, 1, 1, unit), 1, DisplacePortal(b, 1, 1, unit));
    for (std::size_t r = 0; r < 6; ++r) flexibility[r][c] = column[r];
  }
  const Real6 loadA = Plus(g.loadsA.nodal[1], 1, EquivalentLoads(a, g.loadsA)[1]);
  const Real6 loadB = EquivalentLoads(b, g.loadsB)[1];
  const Real6 gap = Plus(DisplacePortal(a, 1, 1, loadA), -1, DisplacePortal(b, 1, 1, loadB));
  const Real6 X = SolveSix(flexibility, gap);
  g.loadsA.nodal[1] = Plus(g.loadsA.nodal[1], -1, X);
  g.loadsB.nodal[1] = X;
  g.loadsA.nodal[2] = ClampLast(a, g.loadsA);
  g.loadsB.nodal[2] = ClampLast(b, g.loadsB);

  const std::vector<BeamForces> forces = SolveForces(g.model);
  ExpectChain(forces, 0, a, g.loadsA);
  ExpectChain(forces, 2, b, g.loadsB);
}

// What a beam takes from its two nodes, global: the section forces at its ends, with the sign of
// the face towards the node, moved from the centroid to the node.
std::array<Six, 2> NodeForces(const BeamForces& beam, const korvex::SectionProperties& section) {
  std::array<Six, 2> nodes{};
  for (std::size_t end = 0; end < 2; ++end) {
    const SectionForces f = ForcesAt(beam, static_cast<double>(end));
    const double sign = end == 0 ? -1.0 : 1.0;
    const std::array<double, 3> force{sign * f[0], sign * f[1], sign * f[2]};
    const std::array<double, 3> moment{sign * f[3] + section.Ey * force[2] - section.Ez * force[1],
                                       sign * f[4] + section.Ez * force[0],
                                       sign * f[5] - section.Ey * force[0]};
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t k = 0; k < 3; ++k) {
        nodes[end][i] += beam.frame[3 * k + i] * force[k];
        nodes[end][3 + i] += beam.frame[3 * k + i] * moment[k];
      }
    }
  }
  return nodes;
}

// What the beams must take from the nodes: K u less the equivalent nodal loads of the line loads.
// That is the applied force at a free dof, applied force and reaction at a fixed one.
std::vector<double> SumNodes(Model& model) {
  std::vector<double> sum(model.Displacements.size(), 0.0);
  korvex::FormElementMatrices(model, [&](const double* ke, const std::int32_t* g, std::int32_t n) {
    for (std::int32_t r = 0; r < n; ++r) {
      for (std::int32_t c = 0; c < n; ++c) {
        sum[static_cast<std::size_t>(g[r])] +=
            ke[r * n + c] * model.Displacements[static_cast<std::size_t>(g[c])];
      }
    }
  });
  model.Tables.NodalForces.resize(0);
  korvex::AssembleLoadVector(model);
  for (std::size_t i = 0; i < sum.size(); ++i) sum[i] -= model.LoadVector[i];
  return sum;
}

TEST_P(SectionForcesOf, EndForcesBalanceAtEveryNode) {
  Grillage g;
  BuildGrillage(GetParam(), g);
  Model model;
  SolveModel(g.model, model);
  std::vector<BeamForces> forces;
  ComputeBeamForces(model, forces);
  std::vector<double> found(model.Displacements.size(), 0.0);
  for (std::size_t b = 0; b < forces.size(); ++b) {
    const std::array<Six, 2> nodes = NodeForces(forces[b], model.BeamElements[b].Section);
    for (std::size_t end = 0; end < 2; ++end) {
      const auto node = static_cast<std::size_t>(model.Tables.BeamNodes[2 * b + end]);
      for (std::size_t d = 0; d < 6; ++d) found[6 * node + d] += nodes[end][d];
    }
  }
  const std::vector<double> expected = SumNodes(model);
  double size = 0.0;
  for (const double value : expected) size = std::max(size, std::fabs(value));
  for (std::size_t i = 0; i < found.size(); ++i) {
    EXPECT_NEAR(found[i], expected[i], Bound * size) << "node " << i / 6 << " dof " << i % 6;
  }
  for (std::size_t d = 0; d < 6; ++d) EXPECT_NEAR(found[6 + d], GeneralLoad[d], Bound * size);
}

// Stiffness times displacements less equivalent nodal loads, by the solver's own routines in global
// axes. bounds: its rounding, a thousand units of the sum of the absolute products.
void FindElementForces(const Model& model, std::size_t b, Six (&ends)[2], Six (&bounds)[2]) {
  std::array<double, 144> K{};
  korvex::BeamStiffness(model.BeamElements[b], K.data());
  for (std::size_t r = 0; r < 12; ++r) {
    double sum = 0.0, size = 0.0;
    for (std::size_t c = 0; c < 12; ++c) {
      const auto node = static_cast<std::size_t>(model.Tables.BeamNodes[2 * b + c / 6]);
      const double term = K[12 * r + c] * model.Displacements[6 * node + c % 6];
      sum += term;
      size += std::fabs(term);
    }
    ends[r / 6][r % 6] = sum;
    bounds[r / 6][r % 6] = 2e-13 * size;
  }
  for (const korvex::BeamLineLoad& load : model.Tables.BeamLineLoads) {
    if (static_cast<std::size_t>(load.element) != b) continue;
    std::array<double, 12> f{};
    korvex::BeamLineLoadVector(model.BeamElements[b], load, f.data());
    for (std::size_t r = 0; r < 12; ++r) {
      ends[r / 6][r % 6] -= f[r];
      bounds[r / 6][r % 6] += 2e-13 * std::fabs(f[r]);
    }
  }
}

// Random good models: frames, grillages, stiffened plates, all sections and units.
TEST(SectionForces, EndsAgreeWithTheSolversElementForces) {
  std::size_t beams = 0;
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    Model model;
    SolveModel(MakeGoodModel(seed), model);
    std::vector<BeamForces> forces;
    ComputeBeamForces(model, forces);
    beams += forces.size();
    for (std::size_t b = 0; b < forces.size(); ++b) {
      Six expected[2], bounds[2];
      FindElementForces(model, b, expected, bounds);
      const std::array<Six, 2> found = NodeForces(forces[b], model.BeamElements[b].Section);
      double size = 0.0;
      for (std::size_t i = 0; i < 12; ++i) size = std::max(size, bounds[i / 6][i % 6]);
      for (std::size_t i = 0; i < 12; ++i) {
        EXPECT_NEAR(found[i / 6][i % 6], expected[i / 6][i % 6], size)
            << "seed " << seed << " beam " << b << " component " << i;
      }
    }
  }
  EXPECT_GT(beams, 500U);
}

// Ends and loads of each beam: the forces add up to zero, and the moments about the first node.
// The bound is rounding: the largest force or moment of the beam times a few units.
TEST_P(SectionForcesOf, EachBeamIsInEquilibrium) {
  ModelText text = BuildModel(Oblique, GetParam());
  ChainLoads loads;
  LoadOblique(text, loads);
  text.restraints.push_back({3, {1, 1, 1, 1, 1, 1}});
  Model model;
  SolveModel(text, model);
  std::vector<BeamForces> forces;
  ComputeBeamForces(model, forces);
  for (std::size_t b = 0; b < forces.size(); ++b) {
    const BeamForces& beam = forces[b];
    const double L = beam.length, q1 = beam.q[0], q2 = beam.q[1];
    const korvex::SectionProperties& s = model.BeamElements[b].Section;
    const SectionForces i = ForcesAt(beam, 0.0), j = ForcesAt(beam, 1.0);
    const double force = std::max({std::fabs(i[0]), std::fabs(i[2]), std::fabs(j[2]), q1 * L});
    const double moment = std::max({std::fabs(i[4]), std::fabs(j[4]), force * L});
    const double bound = 1e-12;
    EXPECT_NEAR(j[0] - i[0], 0.0, bound * force);
    EXPECT_NEAR(j[1] - i[1], 0.0, bound * force);
    EXPECT_NEAR(j[2] - i[2] + (q1 + q2) * L / 2, 0.0, bound * force);
    // About the first centroid. The load's line lies (-Ey, -Ez) beside the centroids.
    EXPECT_NEAR(j[3] - i[3] - s.Ey * (q1 + q2) * L / 2, 0.0, bound * moment);
    EXPECT_NEAR(j[4] - i[4] - L * j[2] - L * L * (q1 + 2 * q2) / 6, 0.0, bound * moment);
    EXPECT_NEAR(j[5] - i[5] + L * j[1], 0.0, bound * moment);
  }
}

TEST_P(SectionForcesOf, TurningTheModelChangesNothing) {
  Grillage g;
  BuildGrillage(GetParam(), g);
  const std::vector<BeamForces> before = SolveForces(g.model);
  const std::vector<BeamForces> after = SolveForces(TurnModel(g.model));
  for (std::size_t b = 0; b < before.size(); ++b) {
    for (const double s : {0.0, 0.4, 1.0}) {
      const SectionForces x = ForcesAt(before[b], s), y = ForcesAt(after[b], s);
      for (std::size_t c = 0; c < 6; ++c) EXPECT_NEAR(y[c], x[c], Bound * 2e4) << b << ' ' << c;
    }
  }
}

// Exchanged nodes turn local x and y round; an L section is mirrored to stay where it is.
TEST_P(SectionForcesOf, ReversedBeamsChangeTheSignsOfVzAndMz) {
  Grillage g;
  BuildGrillage(GetParam(), g);
  const std::vector<BeamForces> before = SolveForces(g.model);
  for (ModelText::Beam& beam : g.model.beams) {
    std::swap(beam.node1, beam.node2);
    beam.BeamSecMirrored = 1 - beam.BeamSecMirrored;
  }
  for (ModelText::BeamLoad& load : g.model.beamLoads) std::swap(load.q1, load.q2);
  const std::vector<BeamForces> after = SolveForces(g.model);
  const std::array<double, 6> signs{1, 1, -1, 1, 1, -1};
  for (std::size_t b = 0; b < before.size(); ++b) {
    for (const double s : {0.0, 0.25, 1.0}) {
      const SectionForces x = ForcesAt(before[b], s), y = ForcesAt(after[b], 1.0 - s);
      for (std::size_t c = 0; c < 6; ++c) {
        EXPECT_NEAR(y[c], signs[c] * x[c], Bound * 2e4) << b << ' ' << c;
      }
    }
  }
}

// A straight beam along global x with z up, of a T section on its node line.
ModelText BuildStraight(const std::vector<double>& x) {
  Chain chain;
  for (const double at : x) chain.points.push_back({at, 0.0, 0.0});
  chain.orientations.assign(x.size() - 1, {0.0, 0.0, 1.0});
  ModelText model = BuildModel(chain, AllSections()[0]);
  return model;
}

// The signs of the header's examples, worked out by hand: P = 1000, L = 2.
TEST(SectionForces, CantileverUnderAForceDownwards) {
  ModelText model = BuildStraight({0.0, 2.0});
  model.forces = {{1, {0, 0, -1000, 0, 0, 0}}};
  const std::vector<BeamForces> forces = SolveForces(model);
  for (const double s : {0.0, 0.5, 1.0}) {
    const SectionForces f = ForcesAt(forces[0], s);
    EXPECT_NEAR(f[ForceVz], -1000.0, 1e-6);
    EXPECT_NEAR(f[MomentMy], 1000.0 * (2.0 - 2.0 * s), 1e-6);
    for (const std::size_t zero : {ForceN, ForceVy, MomentT, MomentMz}) {
      EXPECT_NEAR(f[zero], 0.0, 1e-6) << zero;
    }
  }
}

TEST(SectionForces, CantileverUnderAForceAlongY) {
  ModelText model = BuildStraight({0.0, 2.0});
  model.forces = {{1, {0, 1000, 0, 0, 0, 0}}};
  const std::vector<BeamForces> forces = SolveForces(model);
  const SectionForces f = ForcesAt(forces[0], 0.25);
  EXPECT_NEAR(f[ForceVy], 1000.0, 1e-6);
  EXPECT_NEAR(f[MomentMz], 1500.0, 1e-6);
  // The force acts at the node, Ez below the centroid: T = -Ez x 1000 about the centroid.
  EXPECT_NEAR(f[MomentT], 1000.0 * static_cast<double>(ComputeNumbers(AllSections()[0]).ez), 1e-6);
}

// A pull at the node bends, because the centroid lies Ez above it: My = -Ez N.
TEST(SectionForces, PullAtTheNodeBends) {
  ModelText model = BuildStraight({0.0, 2.0});
  model.forces = {{1, {5000, 0, 0, 0, 0, 0}}};
  const SectionForces f = ForcesAt(SolveForces(model)[0], 0.5);
  EXPECT_NEAR(f[ForceN], 5000.0, 1e-6);
  EXPECT_NEAR(f[MomentMy], -5000.0 * static_cast<double>(ComputeNumbers(AllSections()[0]).ez),
              1e-6);
}

// A triangular load, 0 to -q, on a simply supported beam: the largest moment is q L^2 / (9 sqrt 3)
// at L / sqrt 3, where the shear is zero (Timoshenko & Gere 1972, sec. 3.2). Here the lower side is
// stretched, so My is negative.
TEST(SectionForces, ZeroShearOfATriangularLoadIsExact) {
  ModelText model = BuildStraight({0.0, 6.0});
  model.restraints = {{0, {1, 1, 1, 1, 0, 0}}, {1, {0, 1, 1, 0, 0, 0}}};
  model.beamLoads = {{0, 0.0, -9000.0}};
  const BeamForces beam = SolveForces(model)[0];
  const auto extremes = FindForceExtremes(beam);
  EXPECT_NEAR(extremes[MomentMy].smallest.value, -9000.0 * 36.0 / (9.0 * std::sqrt(3.0)), 1e-4);
  EXPECT_NEAR(extremes[MomentMy].smallest.s, 1.0 / std::sqrt(3.0), 1e-9);
  EXPECT_NEAR(extremes[ForceVz].smallest.value, -9000.0, 1e-4);  // q L / 6 at the first end
  EXPECT_NEAR(extremes[ForceVz].largest.value, 18000.0, 1e-4);   // q L / 3 at the second
  const std::vector<double> stations = ListStations(beam, 4);
  ASSERT_EQ(stations.size(), 6U);
  EXPECT_NEAR(stations[3], 1.0 / std::sqrt(3.0), 1e-9);
  EXPECT_EQ(stations.back(), 1.0);
}

// Two spans under a uniform load: q L^2 / 8 at the middle support, 5 q L / 8 shear on both sides of
// it, and 9 q L^2 / 128 in the spans at 3 L / 8 from the outer supports. Shear deformation changes
// it, so the section is deep in nothing: the span is 100 times the web, and the bound is 1e-3.
TEST(SectionForces, TwoSpansUnderAUniformLoad) {
  ModelText model = BuildStraight({0.0, 30.0, 60.0});
  model.restraints = {{0, {1, 1, 1, 1, 0, 0}}, {1, {0, 1, 1, 1, 0, 0}}, {2, {0, 1, 1, 1, 0, 0}}};
  model.beamLoads = {{0, -1000.0, -1000.0}, {1, -1000.0, -1000.0}};
  const std::vector<BeamForces> forces = SolveForces(model);
  EXPECT_NEAR(ForcesAt(forces[0], 1.0)[MomentMy] / (1000.0 * 900.0 / 8.0), 1.0, 1e-3);
  EXPECT_NEAR(ForcesAt(forces[1], 0.0)[MomentMy] / (1000.0 * 900.0 / 8.0), 1.0, 1e-3);
  EXPECT_NEAR(ForcesAt(forces[0], 1.0)[ForceVz] / (1000.0 * 30.0 * 0.625), 1.0, 1e-3);
  EXPECT_NEAR(ForcesAt(forces[1], 0.0)[ForceVz] / (1000.0 * 30.0 * -0.625), 1.0, 1e-3);
  const Extremes My = FindForceExtremes(forces[0])[MomentMy];
  EXPECT_NEAR(My.smallest.value / (-1000.0 * 900.0 * 9.0 / 128.0), 1.0, 1e-3);
  EXPECT_NEAR(My.smallest.s, 0.375, 1e-3);
}

// Zero slope at mid-length, in two components, one of them off by rounding, and next to the end.
TEST(SectionForces, StationsStandOnce) {
  BeamForces beam;
  beam.curves[MomentMy] = {0.0, 1.0, -1.0, 0.0};
  beam.curves[MomentT] = {0.0, 1.0, -1.0 + 1e-13, 0.0};
  beam.curves[ForceVz] = {0.0, 2.0, -1.0 - 1e-13, 0.0};
  EXPECT_EQ(ListStations(beam, 2), (std::vector<double>{0.0, 0.5, 1.0}));
  EXPECT_EQ(ListStations(beam, 1).size(), 3U);
  EXPECT_EQ(ListStations(beam, -5), ListStations(beam, 1));
}

TEST(SectionForces, DisplacementsOfAnotherModelStop) {
  Model model;
  SolveModel(BuildStraight({0.0, 1.0, 2.0}), model);
  std::vector<BeamForces> forces;
  model.Displacements.resize(12);
  EXPECT_THROW(ComputeBeamForces(model, forces), korvex::Stop);
  model.Displacements.resize(17);
  EXPECT_THROW(ComputeBeamForces(model, forces), korvex::Stop);
  model.Displacements.resize(18);
  EXPECT_NO_THROW(ComputeBeamForces(model, forces));
  model.Tables.BeamNodes[1] = 3;
  EXPECT_THROW(ComputeBeamForces(model, forces), korvex::Stop);
  model.Tables.BeamNodes[1] = -1;
  EXPECT_THROW(ComputeBeamForces(model, forces), korvex::Stop);
}

TEST(SectionForces, LineLoadOnAMissingBeamStops) {
  Model model;
  ModelText text = BuildStraight({0.0, 1.0});
  text.beamLoads = {{0, 1.0, 1.0}};
  SolveModel(text, model);
  for (const std::int32_t element : {-1, 1}) {
    model.Tables.BeamLineLoads[0].element = element;
    std::vector<BeamForces> forces;
    EXPECT_THROW(ComputeBeamForces(model, forces), korvex::Stop) << element;
  }
}

TEST(SectionForces, NoBeamsGiveNoForces) {
  std::vector<BeamForces> forces(3);
  ComputeBeamForces(Model(), forces);
  EXPECT_TRUE(forces.empty());
}

TEST(SectionForces, BeamWithoutLengthOrWithNotANumberHasNotANumber) {
  Model model;
  SolveModel(BuildStraight({0.0, 1.0}), model);
  std::vector<BeamForces> forces;
  model.Displacements[8] = std::numeric_limits<double>::quiet_NaN();
  ComputeBeamForces(model, forces);
  EXPECT_TRUE(std::isnan(ForcesAt(forces[0], 0.5)[MomentMy]));
  EXPECT_TRUE(std::isnan(FindForceExtremes(forces[0])[MomentMy].largest.value));
  EXPECT_EQ(ListStations(forces[0], 0).size(), 2U);

  model.Displacements.assign(12, 0.0);
  model.BeamElements[0].NodeJ = model.BeamElements[0].NodeI;
  ComputeBeamForces(model, forces);
  EXPECT_TRUE(std::isnan(ForcesAt(forces[0], 0.5)[ForceN]));
}

}  // namespace
}  // namespace kvx::test
