// The beam's stiffness matrix: frame, entries, symmetry, rigid motions, offset.
#include "beam/beam_stiffness.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "beam/beam_frame.h"
#include "beam/section_properties.h"
#include "support/dof_names.h"

namespace korvex::test {
namespace {

constexpr std::size_t Dofs = 12;

// The dofs of the second node in the beam's matrix; those of the first are Ux to Rz.
enum SecondDof : std::size_t { Ux2 = 6, Uy2, Uz2, Rx2, Ry2, Rz2 };

// A beam along global +X whose orientation vector points along +Z, with numbers that are exact in
// binary; L = 2, G = E / 2.5.
BeamElement MakeAxisBeam() {
  BeamElement beam;
  beam.NodeJ = {2.0, 0.0, 0.0};
  beam.RefPoint = {0.0, 0.0, 1.0};
  beam.E = 40.0;
  beam.Mu = 0.25;
  beam.Section.A = 3.0;
  beam.Section.Iy = 5.0;
  beam.Section.Iz = 7.0;
  beam.Section.J = 11.0;
  return beam;
}

// An L beam in general position with an offset.
BeamElement MakeObliqueBeam() {
  BeamElement beam;
  beam.NodeI = {0.5, -1.0, 2.0};
  beam.NodeJ = {2.0, 0.25, 2.75};
  beam.RefPoint = {0.75, -0.5, 3.0};
  beam.E = 2.06e5;
  beam.Mu = 0.3;
  beam.Section = SectionPropertiesL(beam, 0.3, 0.02, 0.16, 0.025, -0.1, false);
  return beam;
}

BeamMatrix ComputeStiffness(const BeamElement& beam) {
  BeamMatrix K;
  K.fill(-7.0);  // the caller's buffer is not clean; every entry must be written
  BeamStiffness(beam, K.data());
  return K;
}

double LargestEntry(const BeamMatrix& K) {
  double largest = 0.0;
  for (const double entry : K) largest = std::max(largest, std::fabs(entry));
  return largest;
}

TEST(BeamFrame, OrientationVectorGivesLocalZ) {
  BeamFrame frame;
  ComputeBeamFrame(MakeAxisBeam(), frame);
  EXPECT_EQ(frame, (BeamFrame{1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0}));
}

TEST(BeamFrame, RowsAreOrthonormalAndRightHanded) {
  const BeamElement beam = MakeObliqueBeam();
  BeamFrame f;
  ComputeBeamFrame(beam, f);
  const Vector3 x{f[0], f[1], f[2]}, y{f[3], f[4], f[5]}, z{f[6], f[7], f[8]};
  const Vector3 xy = Cross(x, y);
  const Vector3 v = Subtract(beam.RefPoint, beam.NodeI);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(xy[i], z[i], 1e-15);
  for (const Vector3& axis : {x, y, z}) EXPECT_NEAR(Length(axis), 1.0, 1e-15);
  EXPECT_GT(v[0] * z[0] + v[1] * z[1] + v[2] * z[2], 0.0);           // z points towards it
  EXPECT_NEAR(v[0] * y[0] + v[1] * y[1] + v[2] * y[2], 0.0, 1e-15);  // y is normal to it
}

// All entries of the slender beam, from a = E A / L = 60, t = G J / L = 88,
// by = E Iy / L^3 = 25, bz = E Iz / L^3 = 35.
TEST(BeamStiffness, EntriesOfASlenderBeamAlongGlobalX) {
  BeamMatrix expected{};
  const auto set = [&expected](std::size_t i, std::size_t j, double value) {
    expected[i * Dofs + j] = expected[j * Dofs + i] = value;
  };
  set(Ux, Ux, 60), set(Ux2, Ux2, 60), set(Ux, Ux2, -60);
  set(Rx, Rx, 88), set(Rx2, Rx2, 88), set(Rx, Rx2, -88);
  set(Uy, Uy, 420), set(Uy2, Uy2, 420), set(Uy, Uy2, -420);                      // 12 bz
  set(Uy, Rz, 420), set(Uy, Rz2, 420), set(Rz, Uy2, -420), set(Uy2, Rz2, -420);  // 6 bz L
  set(Rz, Rz, 560), set(Rz2, Rz2, 560), set(Rz, Rz2, 280);   // 4 bz L^2, 2 bz L^2
  set(Uz, Uz, 300), set(Uz2, Uz2, 300), set(Uz, Uz2, -300);  // 12 by
  set(Uz, Ry, -300), set(Uz, Ry2, -300), set(Ry, Uz2, 300), set(Uz2, Ry2, 300);  // 6 by L
  set(Ry, Ry, 400), set(Ry2, Ry2, 400), set(Ry, Ry2, 200);  // 4 by L^2, 2 by L^2
  EXPECT_EQ(ComputeStiffness(MakeAxisBeam()), expected);
}

// Phi_y = 4 and Phi_z = 1 divide the bending factors by 5 and 2: by = 5, bz = 17.5.
TEST(BeamStiffness, ShearParametersSoftenTheirOwnPlane) {
  BeamElement beam = MakeAxisBeam();
  beam.Section.ShearFactorY = 4.0;
  beam.Section.ShearFactorZ = 1.0;
  const BeamMatrix K = ComputeStiffness(beam);
  EXPECT_DOUBLE_EQ(K[Uz * Dofs + Uz], 60.0);    // 12 by
  EXPECT_DOUBLE_EQ(K[Ry * Dofs + Ry], 160.0);   // (4 + 4) by L^2
  EXPECT_DOUBLE_EQ(K[Ry * Dofs + Ry2], -40.0);  // (2 - 4) by L^2
  EXPECT_DOUBLE_EQ(K[Uy * Dofs + Uy], 210.0);   // 12 bz
  EXPECT_DOUBLE_EQ(K[Rz * Dofs + Rz], 350.0);   // (1 + 4) bz L^2
  EXPECT_DOUBLE_EQ(K[Rz * Dofs + Rz2], 70.0);   // (2 - 1) bz L^2
}

TEST(BeamStiffness, SymmetricToRounding) {
  const BeamMatrix K = ComputeStiffness(MakeObliqueBeam());
  const double bound = 1e-15 * LargestEntry(K) * Dofs;
  for (std::size_t i = 0; i < Dofs; ++i) {
    for (std::size_t j = 0; j < i; ++j) EXPECT_NEAR(K[i * Dofs + j], K[j * Dofs + i], bound);
  }
}

// The six rigid motions, rotations about an arbitrary centre, need no force. The offset moves with
// the nodes.
TEST(BeamStiffness, RigidMotionsNeedNoForce) {
  const BeamElement beam = MakeObliqueBeam();
  const BeamMatrix K = ComputeStiffness(beam);
  const double bound = 1e-13 * LargestEntry(K);
  for (std::size_t motion = 0; motion < 6; ++motion) {
    Vector3 translation{}, rotation{};
    (motion < Rx ? translation : rotation)[motion % 3] = 1.0;
    std::array<double, Dofs> u{};
    for (std::size_t node = 0; node < 2; ++node) {
      const Vector3 turned = Cross(rotation, node == 0 ? beam.NodeI : beam.NodeJ);
      for (std::size_t d = 0; d < 3; ++d) {
        u[Equation(node, Ux + d)] = translation[d] + turned[d];
        u[Equation(node, Rx + d)] = rotation[d];
      }
    }
    for (std::size_t i = 0; i < Dofs; ++i) {
      double force = 0.0;
      for (std::size_t j = 0; j < Dofs; ++j) force += K[i * Dofs + j] * u[j];
      EXPECT_NEAR(force, 0.0, bound) << "motion " << motion << " dof " << i;
    }
  }
}

TEST(BeamStiffness, OrientationVectorCountsOnlyAcrossTheAxis) {
  const BeamElement beam = MakeObliqueBeam();
  BeamElement slanted = beam;
  for (std::size_t d = 0; d < 3; ++d) {
    slanted.RefPoint[d] += 0.75 * (beam.NodeJ[d] - beam.NodeI[d]);
  }
  const BeamMatrix K = ComputeStiffness(beam);
  const BeamMatrix other = ComputeStiffness(slanted);
  for (std::size_t i = 0; i < K.size(); ++i) {
    EXPECT_NEAR(other[i], K[i], 1e-13 * LargestEntry(K)) << i;
  }
}

// Ux is coupled with the Ry of its own node by E A / L times Ez, and with its Rz by minus E A / L
// times Ey.
TEST(BeamStiffness, OffsetCouplesAxialForceAndBending) {
  BeamElement beam = MakeAxisBeam();
  beam.Section.Ey = 0.5;
  beam.Section.Ez = 0.25;
  const BeamMatrix K = ComputeStiffness(beam);
  EXPECT_DOUBLE_EQ(K[Ux * Dofs + Ry], 60.0 * 0.25);
  EXPECT_DOUBLE_EQ(K[Ux * Dofs + Ry2], -60.0 * 0.25);
  EXPECT_DOUBLE_EQ(K[Ux * Dofs + Rz], -60.0 * 0.5);
  EXPECT_DOUBLE_EQ(K[Uy * Dofs + Rx], 420.0 * -0.25);  // with the twist, arm -Ez
  EXPECT_DOUBLE_EQ(K[Uz * Dofs + Rx], 300.0 * 0.5);    // with the twist, arm Ey
}

// Ex is 0 for every section that a model file can describe. The rigid arm has terms for it all the
// same.
TEST(BeamStiffness, OffsetAlongTheAxisCouplesShearAndBending) {
  BeamElement beam = MakeAxisBeam();
  beam.Section.Ex = 0.5;
  const BeamMatrix K = ComputeStiffness(beam);
  EXPECT_DOUBLE_EQ(K[Uy * Dofs + Rz], 420.0 + 420.0 * 0.5);   // arm Ex
  EXPECT_DOUBLE_EQ(K[Uz * Dofs + Ry], -300.0 - 300.0 * 0.5);  // arm -Ex
}

TEST(BeamStiffness, TubeBendsAlikeInBothPlanes) {
  BeamElement beam;
  InitCBeamElement(beam, {0.0, 0.0, 0.0}, {2.0, 0.0, 0.0}, {0.0, 0.0, 1.0, 1e-15}, {2e11, 0.3, 0.0},
                   {0.15, 0.02}, 0.0);
  const BeamMatrix K = ComputeStiffness(beam);
  EXPECT_EQ(K[Uy * Dofs + Uy], K[Uz * Dofs + Uz]);
  EXPECT_EQ(K[Rz * Dofs + Rz], K[Ry * Dofs + Ry]);
  EXPECT_EQ(K[Rz * Dofs + Rz2], K[Ry * Dofs + Ry2]);
  EXPECT_EQ(K[Uy * Dofs + Rz], -K[Uz * Dofs + Ry]);
}

TEST(BeamStiffness, OrientationAlongTheAxisGivesNaN) {
  BeamElement beam = MakeAxisBeam();
  beam.RefPoint = {1.0, 0.0, 0.0};
  EXPECT_TRUE(std::isnan(ComputeStiffness(beam)[Uy * Dofs + Uy]));
}

TEST(BeamStiffness, ZeroLengthGivesNaN) {
  BeamElement beam = MakeAxisBeam();
  beam.NodeJ = beam.NodeI;
  EXPECT_TRUE(std::isnan(ComputeStiffness(beam)[Ux * Dofs + Ux]));
}

// A beam of an unknown section type keeps the values of its construction. Its matrix is computed
// all the same and means nothing.
TEST(BeamStiffness, UnsetBeamGivesNaN) {
  EXPECT_TRUE(std::isnan(ComputeStiffness(BeamElement())[Ux * Dofs + Ux]));
}

}  // namespace
}  // namespace korvex::test
