// Cantilevers and portal frames of every section kind against the force method, in oblique space.
//
// The two-node beam is exact for loads at its ends, so the only difference is rounding: the bound
// of 1e-9 leaves room for a stiffness matrix whose smallest and largest eigenvalues lie 1e6 apart.
#include <gtest/gtest.h>

#include <cmath>

#include "support/beam_sections.h"
#include "support/force_method.h"
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

// A chain of beams between `points`, clamped at the first, all of one section.
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

// The six displacements of a node: translations and rotations each against their own size.
void ExpectDisplacements(const Model& model, int node, const Real6& expected) {
  for (std::size_t part : {0U, 3U}) {
    Real size = 0;
    for (std::size_t d = part; d < part + 3; ++d) size = std::max(size, std::fabs(expected[d]));
    for (std::size_t d = part; d < part + 3; ++d) {
      const double computed = model.Displacements[static_cast<std::size_t>(node) * 6 + d];
      EXPECT_NEAR(computed, static_cast<double>(expected[d]), Bound * static_cast<double>(size))
          << "node " << node << " dof " << d;
    }
  }
}

// Every load component and every direction of space at once.
constexpr std::array<double, 6> Load{1.0e4, -2.0e4, 1.5e4, 3.0e3, -4.0e3, 2.5e3};

Real6 ExactLoad() {
  Real6 load{};
  std::copy(Load.begin(), Load.end(), load.begin());
  return load;
}

TEST_P(BeamStructures, CantileverOfOneElement) {
  const Chain chain{{{1.0, 2.0, 3.0}, {2.5, 2.75, 4.5}}, {{0.3, -0.2, 1.0}}};
  ModelText text = BuildModel(chain, GetParam());
  text.forces = {{1, Load}};
  Model model;
  SolveModel(text, model);
  ExpectDisplacements(model, 1,
                      DisplaceCantilever(BuildChain(chain, GetParam()), 1, 1, ExactLoad()));
}

TEST_P(BeamStructures, CantileverOfUnequalElements) {
  const Chain chain{{{0.0, 0.0, 0.0}, {0.5, 0.25, -0.25}, {1.5, 0.75, -0.75}, {2.0, 1.0, -1.0}},
                    {{0.1, 0.2, 1.0}, {0.1, 0.2, 1.0}, {0.1, 0.2, 1.0}}};
  ModelText text = BuildModel(chain, GetParam());
  text.forces = {{3, Load}};
  Model model;
  SolveModel(text, model);
  const BeamChain exact = BuildChain(chain, GetParam());
  for (const int node : {1, 2, 3}) {
    ExpectDisplacements(model, node, DisplaceCantilever(exact, node, 3, ExactLoad()));
  }
}

TEST_P(BeamStructures, PortalFrameInObliqueSpace) {
  const Chain chain{{{0.0, 0.0, 0.0}, {0.5, 1.0, 3.0}, {4.5, 2.0, 3.5}, {5.0, 1.0, 0.25}},
                    {{1.0, 0.5, 0.0}, {0.0, 0.25, 1.0}, {-1.0, 0.5, 0.25}}};
  ModelText text = BuildModel(chain, GetParam());
  text.restraints.push_back({3, {1, 1, 1, 1, 1, 1}});
  text.forces = {{1, Load}};
  Model model;
  SolveModel(text, model);
  const BeamChain exact = BuildChain(chain, GetParam());
  ExpectDisplacements(model, 1, DisplacePortal(exact, 1, 1, ExactLoad()));
  ExpectDisplacements(model, 2, DisplacePortal(exact, 2, 1, ExactLoad()));
}

// The textbook formulas themselves, along the global axes, so that the force method above is not
// the only witness: local x, y, z are global X, Y, Z. A load through the centroid, that is, a force
// at the node with the moment e x F (Timoshenko & Gere 1972, ch. 6).
TEST_P(BeamStructures, CantileverTextbookFormulas) {
  const SectionNumbers s = ComputeNumbers(GetParam());
  const Real L = 2.0, Fx = 5e4, Fy = -2e4, Fz = 3e4, Mx = 1e3;
  const Real G = E / (2 * (1 + static_cast<Real>(Mu)));
  ModelText text = BuildModel({{{0.0, 0.0, 0.0}, {2.0, 0.0, 0.0}}, {{0.0, 0.0, 1.0}}}, GetParam());
  const Real6 load{Fx, Fy, Fz, Mx + s.ey * Fz - s.ez * Fy, s.ez * Fx, -s.ey * Fx};
  text.forces = {{1, {}}};
  for (std::size_t d = 0; d < 6; ++d) text.forces[0].components[d] = static_cast<double>(load[d]);
  Model model;
  SolveModel(text, model);

  const Real shearY = s.shearAreaY == 0 ? 0 : Fy * L / (G * s.shearAreaY);
  const Real shearZ = s.shearAreaZ == 0 ? 0 : Fz * L / (G * s.shearAreaZ);
  const Real rx = Mx * L / (G * s.J);
  const Real ry = -Fz * L * L / (2 * E * s.Iy);
  const Real rz = Fy * L * L / (2 * E * s.Iz);
  const Real u = Fx * L / (E * s.A);
  const Real v = Fy * L * L * L / (3 * E * s.Iz) + shearY;
  const Real w = Fz * L * L * L / (3 * E * s.Iy) + shearZ;
  // From the centroid back to the node: u_node = u_centroid - theta x e.
  ExpectDisplacements(model, 1,
                      {u - (ry * s.ez - rz * s.ey), v + rx * s.ez, w - rx * s.ey, rx, ry, rz});
}

// An orthogonal matrix with rational entries, so that a rotated model is exact to the last bit but
// one: the rotation of the unit quaternion (1, 2, 3, 4) / sqrt(30).
constexpr double Rotation[3][3] = {{-20.0 / 30.0, 4.0 / 30.0, 22.0 / 30.0},
                                   {20.0 / 30.0, -10.0 / 30.0, 20.0 / 30.0},
                                   {10.0 / 30.0, 28.0 / 30.0, 4.0 / 30.0}};

std::array<double, 3> Rotate(double x, double y, double z) {
  std::array<double, 3> out{};
  for (std::size_t i = 0; i < 3; ++i) {
    out[i] = Rotation[i][0] * x + Rotation[i][1] * y + Rotation[i][2] * z;
  }
  return out;
}

// A frame with two bays, a trapezoidal load, a nodal force and moment.
ModelText BuildFrame(const TestSection& section) {
  ModelText model =
      BuildModel({{{0.0, 0.0, 0.0}, {0.0, 0.0, 3.0}, {4.0, 0.0, 3.0}, {4.0, 5.0, 3.0}},
                  {{1.0, 0.0, 0.0}, {0.0, 0.0, 1.0}, {0.0, 0.0, 1.0}}},
                 section);
  model.restraints.push_back({3, {1, 1, 1, 1, 1, 1}});
  model.forces = {{1, Load}};
  model.beamLoads = {{1, 3e3, -1e3}, {2, -2e3, 4e3}};
  return model;
}

TEST_P(BeamStructures, RotatedModelGivesRotatedDisplacements) {
  const ModelText upright = BuildFrame(GetParam());
  ModelText turned = upright;
  for (auto& node : turned.nodes) node = Rotate(node[0], node[1], node[2]);
  for (auto& beam : turned.beams) {
    const auto& v = beam.orientation;
    beam.orientation = Rotate(v[0], v[1], v[2]);
  }
  for (auto& force : turned.forces) {
    auto& c = force.components;
    const auto f = Rotate(c[0], c[1], c[2]);
    const auto m = Rotate(c[3], c[4], c[5]);
    c = {f[0], f[1], f[2], m[0], m[1], m[2]};
  }
  Model before, after;
  SolveModel(upright, before);
  SolveModel(turned, after);
  for (int node = 1; node <= 2; ++node) {
    const double* u = &before.Displacements[static_cast<std::size_t>(node) * 6];
    const auto t = Rotate(u[0], u[1], u[2]);
    const auto r = Rotate(u[3], u[4], u[5]);
    ExpectDisplacements(after, node, {t[0], t[1], t[2], r[0], r[1], r[2]});
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
      nodalForces[6 * node + d] -= 1e20 * model.Displacements[6 * node + d];
    }
  }
  std::array<double, 6> sum{};
  for (std::size_t n = 0; n < 4; ++n) {
    const double* f = &nodalForces[6 * n];
    const auto& p = text.nodes[n];
    for (std::size_t d = 0; d < 6; ++d) sum[d] += f[d];
    sum[3] += p[1] * f[2] - p[2] * f[1];
    sum[4] += p[2] * f[0] - p[0] * f[2];
    sum[5] += p[0] * f[1] - p[1] * f[0];
  }
  for (std::size_t d = 0; d < 6; ++d) EXPECT_NEAR(sum[d], 0.0, Bound * 1e5) << "component " << d;
}

}  // namespace
}  // namespace korvex::test
