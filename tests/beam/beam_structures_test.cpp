// Cantilevers and portal frames of every section kind against the force method, in oblique space.
//
// The two-node beam is exact for loads at its ends, so the only difference is rounding: the bound
// of 1e-9 leaves room for a stiffness matrix whose smallest and largest eigenvalues lie 1e6 apart.
#include <gtest/gtest.h>

#include <cmath>

#include "support/beam_sections.h"
#include "support/dof_names.h"
#include "support/force_method.h"
#include "support/shell_mesh.h"
#include "support/solve_model.h"

namespace korvex::test {
namespace {

constexpr double Bound = 1e-9;
constexpr double E = 2.06e11;
constexpr double Mu = 0.3;

class BeamStructures : public testing::TestWithParam<TestSection> {};

std::string NameSection(const testing::TestParamInfo<TestSection>& section) {
  return section.param.name;
}

INSTANTIATE_TEST_SUITE_P(AllSections, BeamStructures, testing::ValuesIn(AllSections()),
                         NameSection);

// A chain of beams of one section from point to point, clamped at the first.
struct Chain {
  std::vector<std::array<double, 3>> points;
  std::vector<std::array<double, 3>> orientations;
};

Real3 Exact(const std::array<double, 3>& a) { return {a[0], a[1], a[2]}; }

BeamChain BuildChain(const Chain& chain, const TestSection& section) {
  BeamChain exact{E, Mu, {}, {}, {}};
  for (const auto& point : chain.points) exact.points.push_back(Exact(point));
  for (const auto& vector : chain.orientations) {
    exact.orientations.push_back(Exact(vector));
    exact.sections.push_back(ComputeNumbers(section));
  }
  return exact;
}

ModelText BuildModel(const Chain& chain, const TestSection& section) {
  ModelText model;
  model.materials = {{E, Mu, 7850.0}};
  model.nodes = chain.points;
  for (std::size_t i = 0; i < chain.orientations.size(); ++i) {
    ModelText::Beam beam;
    beam.node1 = static_cast<int>(i);
    beam.node2 = static_cast<int>(i) + 1;
    beam.orientation = chain.orientations[i];
    UseSection(section, model, beam);
    model.beams.push_back(beam);
  }
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  return model;
}

// Compares the six displacements of a node: the bound for translations is relative to the largest
// translation, that for rotations to the largest rotation.
void ExpectDisplacements(const Model& model, int node, const Real6& expected) {
  for (const std::size_t part : {Ux, Rx}) {
    Real size = 0;
    for (std::size_t d = part; d < part + 3; ++d) size = std::max(size, std::fabs(expected[d]));
    for (std::size_t d = part; d < part + 3; ++d) {
      const double computed = model.Displacements[Equation(node, d)];
      EXPECT_NEAR(computed, static_cast<double>(expected[d]), Bound * static_cast<double>(size))
          << "node " << node << " dof " << d;
    }
  }
}

// All six load components at once.
constexpr std::array<double, 6> GeneralLoad{1.0e4, -2.0e4, 1.5e4, 3.0e3, -4.0e3, 2.5e3};

Real6 Exact(const std::array<double, 6>& a) { return {a[0], a[1], a[2], a[3], a[4], a[5]}; }

TEST_P(BeamStructures, CantileverOfOneElement) {
  const Chain chain{{{1.0, 2.0, 3.0}, {2.5, 2.75, 4.5}}, {{0.3, -0.2, 1.0}}};
  ModelText text = BuildModel(chain, GetParam());
  text.forces = {{1, GeneralLoad}};
  Model model;
  SolveModel(text, model);
  ExpectDisplacements(model, 1,
                      DisplaceCantilever(BuildChain(chain, GetParam()), 1, 1, Exact(GeneralLoad)));
}

TEST_P(BeamStructures, CantileverOfUnequalElements) {
  const Chain chain{{{0.0, 0.0, 0.0}, {0.5, 0.25, -0.25}, {1.5, 0.75, -0.75}, {2.0, 1.0, -1.0}},
                    {{0.1, 0.2, 1.0}, {0.1, 0.2, 1.0}, {0.1, 0.2, 1.0}}};
  ModelText text = BuildModel(chain, GetParam());
  text.forces = {{3, GeneralLoad}};
  Model model;
  SolveModel(text, model);
  const BeamChain exact = BuildChain(chain, GetParam());
  for (const int node : {1, 2, 3}) {
    ExpectDisplacements(model, node, DisplaceCantilever(exact, node, 3, Exact(GeneralLoad)));
  }
}

TEST_P(BeamStructures, PortalFrameInObliqueSpace) {
  const Chain chain{{{0.0, 0.0, 0.0}, {0.5, 1.0, 3.0}, {4.5, 2.0, 3.5}, {5.0, 1.0, 0.25}},
                    {{1.0, 0.5, 0.0}, {0.0, 0.25, 1.0}, {-1.0, 0.5, 0.25}}};
  ModelText text = BuildModel(chain, GetParam());
  text.restraints.push_back({3, {1, 1, 1, 1, 1, 1}});
  text.forces = {{1, GeneralLoad}};
  Model model;
  SolveModel(text, model);
  const BeamChain exact = BuildChain(chain, GetParam());
  ExpectDisplacements(model, 1, DisplacePortal(exact, 1, 1, Exact(GeneralLoad)));
  ExpectDisplacements(model, 2, DisplacePortal(exact, 2, 1, Exact(GeneralLoad)));
}

// Textbook formulas, as a check besides the force method. Local x, y, z are global X, Y, Z. The
// force P and the torque T act at the centroid: at the node that is P with the moment T + e x P
// (Timoshenko & Gere 1972, ch. 6).
TEST_P(BeamStructures, CantileverTextbookFormulas) {
  const SectionNumbers s = ComputeNumbers(GetParam());
  const Real L = 2.0, Px = 5e4, Py = -2e4, Pz = 3e4, T = 1e3;
  const Real G = E / (2 * (1 + static_cast<Real>(Mu)));
  ModelText text = BuildModel({{{0.0, 0.0, 0.0}, {2.0, 0.0, 0.0}}, {{0.0, 0.0, 1.0}}}, GetParam());
  const Real6 load{Px, Py, Pz, T + s.ey * Pz - s.ez * Py, s.ez * Px, -s.ey * Px};
  text.forces = {{1, {}}};
  for (std::size_t d = 0; d < 6; ++d) text.forces[0].components[d] = static_cast<double>(load[d]);
  Model model;
  SolveModel(text, model);

  const Real shearY = s.shearAreaY == 0 ? 0 : Py * L / (G * s.shearAreaY);
  const Real shearZ = s.shearAreaZ == 0 ? 0 : Pz * L / (G * s.shearAreaZ);
  const Real rx = T * L / (G * s.J);
  const Real ry = -Pz * L * L / (2 * E * s.Iy);
  const Real rz = Py * L * L / (2 * E * s.Iz);
  const Real u = Px * L / (E * s.A);
  const Real v = Py * L * L * L / (3 * E * s.Iz) + shearY;
  const Real w = Pz * L * L * L / (3 * E * s.Iy) + shearZ;
  // From the centroid back to the node: u_node = u_centroid - theta x e.
  ExpectDisplacements(model, 1,
                      {u - (ry * s.ez - rz * s.ey), v + rx * s.ez, w - rx * s.ey, rx, ry, rz});
}

// A frame with two bays, a trapezoidal load, a nodal force and moment.
ModelText BuildFrame(const TestSection& section) {
  ModelText model =
      BuildModel({{{0.0, 0.0, 0.0}, {0.0, 0.0, 3.0}, {4.0, 0.0, 3.0}, {4.0, 5.0, 3.0}},
                  {{1.0, 0.0, 0.0}, {0.0, 0.0, 1.0}, {0.0, 0.0, 1.0}}},
                 section);
  model.restraints.push_back({3, {1, 1, 1, 1, 1, 1}});
  model.forces = {{1, GeneralLoad}};
  model.beamLoads = {{1, 3e3, -1e3}, {2, -2e3, 4e3}};
  return model;
}

TEST_P(BeamStructures, RotatedModelGivesRotatedDisplacements) {
  const ModelText upright = BuildFrame(GetParam());
  Model before, after;
  SolveModel(upright, before);
  SolveModel(TurnModel(upright), after);
  for (const int node : {1, 2}) {
    ExpectDisplacements(after, node, Exact(TurnSix(NodeDisplacements(before, node))));
  }
}

// The support forces, 1e20 times the displacements of the fixed dofs, balance all loads: the sum of
// forces and the sum of moments about the origin vanish.
TEST_P(BeamStructures, SupportForcesBalanceTheLoads) {
  const ModelText text = BuildFrame(GetParam());
  Model model;
  AssembleModel(text, model);
  std::vector<double> nodalForces = model.LoadVector;
  SolveModel(text, model = Model());
  for (const std::size_t node : {0U, 3U}) {
    for (std::size_t d = 0; d < 6; ++d) {
      nodalForces[Equation(node, d)] -= 1e20 * model.Displacements[Equation(node, d)];
    }
  }
  std::array<double, 6> sum{};
  for (std::size_t n = 0; n < 4; ++n) {
    const double* f = &nodalForces[Equation(n, Fx)];
    const auto& p = text.nodes[n];
    for (std::size_t d = 0; d < 6; ++d) sum[d] += f[d];
    sum[Mx] += p[1] * f[Fz] - p[2] * f[Fy];
    sum[My] += p[2] * f[Fx] - p[0] * f[Fz];
    sum[Mz] += p[0] * f[Fy] - p[1] * f[Fx];
  }
  for (std::size_t d = 0; d < 6; ++d) EXPECT_NEAR(sum[d], 0.0, Bound * 1e5) << "component " << d;
}

}  // namespace
}  // namespace korvex::test
