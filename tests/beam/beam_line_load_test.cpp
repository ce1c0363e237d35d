// The equivalent nodal loads of trapezoidal line loads.
//
// Fixed-end values by superposition of a uniform load, q L / 2 and q L^2 / 12, and a triangular one
// rising to q at the second node, 3 q L / 20, 7 q L / 20, q L^2 / 30 and q L^2 / 20
// (Roark 1989, table 3, case 2d).
#include "beam/beam_line_load.h"

#include <gtest/gtest.h>

#include <cmath>

#include "beam/beam_frame.h"
#include "support/beam_sections.h"
#include "support/dof_names.h"
#include "support/solve_model.h"

namespace korvex::test {
namespace {

using Loads = std::array<double, 12>;

// Along global X, local z = global Z, L = 2.
BeamElement MakeAxisBeam() {
  BeamElement beam;
  beam.NodeI = {1.0, 0.0, 0.0};
  beam.NodeJ = {3.0, 0.0, 0.0};
  beam.RefPoint = {1.0, 0.0, 5.0};
  return beam;
}

Loads ComputeLoads(const BeamElement& beam, double q1, double q2) {
  Loads f;
  f.fill(-7.0);  // the caller's buffer is not clean; every entry must be written
  BeamLineLoadVector(beam, {0, {q1, q2}}, f.data());
  return f;
}

// What a line load along global Z brings onto a beam along global X: nothing but these.
struct EndLoads {
  double Fz1, My1, Fz2, My2;  // by node
};

Loads AsVector(const EndLoads& loads) {
  Loads f{};
  f[Equation(0, Fz)] = loads.Fz1;
  f[Equation(0, My)] = loads.My1;
  f[Equation(1, Fz)] = loads.Fz2;
  f[Equation(1, My)] = loads.My2;
  return f;
}

void ExpectLoads(const Loads& f, const EndLoads& loads) {
  const Loads expected = AsVector(loads);
  for (std::size_t i = 0; i < f.size(); ++i) EXPECT_NEAR(f[i], expected[i], 1e-14) << "dof " << i;
}

TEST(BeamLineLoad, UniformLoad) {
  const double q = 3.0, L = 2.0;
  ExpectLoads(ComputeLoads(MakeAxisBeam(), q, q),
              {q * L / 2, -q * L * L / 12, q * L / 2, q * L * L / 12});
}

TEST(BeamLineLoad, TriangularLoadOnTheFirstNode) {
  const double L = 2.0;
  ExpectLoads(ComputeLoads(MakeAxisBeam(), 1.0, 0.0),
              {0.35 * L, -L * L / 20, 0.15 * L, L * L / 30});
}

TEST(BeamLineLoad, TriangularLoadOnTheSecondNode) {
  const double L = 2.0;
  ExpectLoads(ComputeLoads(MakeAxisBeam(), 0.0, 1.0),
              {0.15 * L, -L * L / 30, 0.35 * L, L * L / 20});
}

TEST(BeamLineLoad, ActsAlongLocalZWithTheRightResultant) {
  BeamElement beam;
  beam.NodeI = {0.5, -1.0, 2.0};
  beam.NodeJ = {2.0, 0.25, 2.75};
  beam.RefPoint = {0.75, -0.5, 3.0};
  BeamFrame frame;
  ComputeBeamFrame(beam, frame);
  const double q1 = 3.0, q2 = -1.25;
  const Loads f = ComputeLoads(beam, q1, q2);
  const double resultant = (q1 + q2) * BeamLength(beam) / 2.0;
  for (std::size_t d = 0; d < 3; ++d) {
    const double sum = f[Equation(0, Fx + d)] + f[Equation(1, Fx + d)];
    EXPECT_NEAR(sum, resultant * frame[6 + d], 1e-14) << "axis " << d;
  }
  // There are moments about local y only.
  for (const int node : {0, 1}) {
    const double* m = &f[Equation(node, Mx)];
    EXPECT_NEAR(m[0] * frame[0] + m[1] * frame[1] + m[2] * frame[2], 0.0, 1e-14);
    EXPECT_NEAR(m[0] * frame[6] + m[1] * frame[7] + m[2] * frame[8], 0.0, 1e-14);
  }
}

// The offset and the shear deformation of the section change the stiffness but not the load.
TEST(BeamLineLoad, SectionDoesNotMatter) {
  BeamElement beam = MakeAxisBeam();
  const Loads bare = ComputeLoads(beam, 3.0, -2.0);
  beam.Section.Ey = 0.5;
  beam.Section.Ez = 0.25;
  beam.Section.ShearFactorY = 2.0;
  EXPECT_EQ(ComputeLoads(beam, 3.0, -2.0), bare);
}

TEST(BeamLineLoad, ZeroLengthGivesNaN) {
  BeamElement beam = MakeAxisBeam();
  beam.NodeJ = beam.NodeI;
  EXPECT_TRUE(std::isnan(ComputeLoads(beam, 1.0, 1.0)[0]));
}

TEST(BeamLineLoad, OrientationAlongTheAxisGivesNaN) {
  BeamElement beam = MakeAxisBeam();
  beam.RefPoint = {2.0, 0.0, 0.0};
  EXPECT_TRUE(std::isnan(ComputeLoads(beam, 1.0, 1.0)[0]));
}

// A whole run of a beam clamped at both ends, for each section. The supports carry the fixed-end
// forces and moments: 1e20, the stiffness of a support, times the displacements of the fixed dofs.
TEST(BeamLineLoad, FixedEndMomentsOfEverySection) {
  for (const TestSection& section : AllSections()) {
    ModelText text;
    text.materials = {{2.06e11, 0.3, 0.0}};
    text.nodes = {{0.0, 0.0, 0.0}, {3.0, 0.0, 0.0}};
    text.beams.resize(1);
    UseSection(section, text, text.beams[0]);
    text.restraints = {{0, {1, 1, 1, 1, 1, 1}}, {1, {1, 1, 1, 1, 1, 1}}};
    const double q1 = 2e3, q2 = 5e3, L = 3.0;
    text.beamLoads = {{0, q1, q2}};
    Model model;
    SolveModel(text, model);
    const Loads reaction = AsVector({-(7 * q1 + 3 * q2) * L / 20, (3 * q1 + 2 * q2) * L * L / 60,
                                     -(3 * q1 + 7 * q2) * L / 20, -(2 * q1 + 3 * q2) * L * L / 60});
    for (std::size_t i = 0; i < 12; ++i) {
      EXPECT_NEAR(-1e20 * model.Displacements[i], reaction[i], 1e-9 * q2)
          << section.name << " dof " << i;
    }
  }
}

}  // namespace
}  // namespace korvex::test
