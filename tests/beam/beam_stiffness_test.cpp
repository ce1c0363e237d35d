// The beam's stiffness matrix: frame, entries, symmetry, rigid motions, offset.
#include "beam/beam_stiffness.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "beam/beam_frame.h"
#include "beam/section_properties.h"

namespace korvex {
namespace {

constexpr std::size_t Dofs = 12;

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
  EXPECT_GT(v[0] * z[0] + v[1] * z[1] + v[2] * z[2], 0.0);           // z points its way
  EXPECT_NEAR(v[0] * y[0] + v[1] * y[1] + v[2] * y[2], 0.0, 1e-15);  // and y across it
}

// All entries of the slender beam, from a = E A / L = 60, t = G J / L = 88,
// by = E Iy / L^3 = 25, bz = E Iz / L^3 = 35.
TEST(BeamStiffness, EntriesOfASlenderBeamAlongGlobalX) {
  BeamMatrix expected{};
  const auto set = [&expected](std::size_t i, std::size_t j, double value) {
    expected[i * Dofs + j] = expected[j * Dofs + i] = value;
  };
  set(0, 0, 60), set(6, 6, 60), set(0, 6, -60);
  set(3, 3, 88), set(9, 9, 88), set(3, 9, -88);
  set(1, 1, 420), set(7, 7, 420), set(1, 7, -420);                     // 12 bz
  set(1, 5, 420), set(1, 11, 420), set(5, 7, -420), set(7, 11, -420);  // 6 bz L
  set(5, 5, 560), set(11, 11, 560), set(5, 11, 280);                   // 4 bz L^2, 2 bz L^2
  set(2, 2, 300), set(8, 8, 300), set(2, 8, -300);                     // 12 by
  set(2, 4, -300), set(2, 10, -300), set(4, 8, 300), set(8, 10, 300);  // 6 by L
  set(4, 4, 400), set(10, 10, 400), set(4, 10, 200);                   // 4 by L^2, 2 by L^2
  EXPECT_EQ(ComputeStiffness(MakeAxisBeam()), expected);
}

// Phi_y = 4 and Phi_z = 1 divide the bending factors by 5 and 2: by = 5, bz = 17.5.
TEST(BeamStiffness, ShearParametersSoftenTheirOwnPlane) {
  BeamElement beam = MakeAxisBeam();
  beam.Section.ShearFactorY = 4.0;
  beam.Section.ShearFactorZ = 1.0;
  const BeamMatrix K = ComputeStiffness(beam);
  EXPECT_DOUBLE_EQ(K[2 * Dofs + 2], 60.0);    // 12 by
  EXPECT_DOUBLE_EQ(K[4 * Dofs + 4], 160.0);   // (4 + 4) by L^2
  EXPECT_DOUBLE_EQ(K[4 * Dofs + 10], -40.0);  // (2 - 4) by L^2
  EXPECT_DOUBLE_EQ(K[1 * Dofs + 1], 210.0);   // 12 bz
  EXPECT_DOUBLE_EQ(K[5 * Dofs + 5], 350.0);   // (1 + 4) bz L^2
  EXPECT_DOUBLE_EQ(K[5 * Dofs + 11], 70.0);   // (2 - 1) bz L^2
}

TEST(BeamStiffness, SymmetricToRounding) {
  const BeamMatrix K = ComputeStiffness(MakeObliqueBeam());
  const double bound = 1e-15 * LargestEntry(K) * Dofs;
  for (std::size_t i = 0; i < Dofs; ++i) {
    for (std::size_t j = 0; j < i; ++j) EXPECT_NEAR(K[i * Dofs + j], K[j * Dofs + i], bound);
  }
}

// Six rigid motions of the nodes, about an arbitrary centre, need no force; the offset moves with
// them.
TEST(BeamStiffness, RigidMotionsNeedNoForce) {
  const BeamElement beam = MakeObliqueBeam();
  const BeamMatrix K = ComputeStiffness(beam);
  const double bound = 1e-13 * LargestEntry(K);
  for (std::size_t motion = 0; motion < 6; ++motion) {
    Vector3 translation{}, rotation{};
    (motion < 3 ? translation : rotation)[motion % 3] = 1.0;
    std::array<double, Dofs> u{};
    for (std::size_t node = 0; node < 2; ++node) {
      const Vector3 turned = Cross(rotation, node == 0 ? beam.NodeI : beam.NodeJ);
      for (std::size_t d = 0; d < 3; ++d) {
        u[6 * node + d] = translation[d] + turned[d];
        u[6 * node + 3 + d] = rotation[d];
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

// u couples to the rotation about y of its own node with E A / L times Ez, and to the one about z
// with minus E A / L times Ey.
TEST(BeamStiffness, OffsetCouplesAxialForceAndBending) {
  BeamElement beam = MakeAxisBeam();
  beam.Section.Ey = 0.5;
  beam.Section.Ez = 0.25;
  const BeamMatrix K = ComputeStiffness(beam);
  EXPECT_DOUBLE_EQ(K[0 * Dofs + 4], 60.0 * 0.25);
  EXPECT_DOUBLE_EQ(K[0 * Dofs + 10], -60.0 * 0.25);
  EXPECT_DOUBLE_EQ(K[0 * Dofs + 5], -60.0 * 0.5);
  EXPECT_DOUBLE_EQ(K[1 * Dofs + 3], 420.0 * -0.25);  // v with the twist, arm -Ez
  EXPECT_DOUBLE_EQ(K[2 * Dofs + 3], 300.0 * 0.5);    // w with the twist, arm Ey
}

// Ex is 0 for every section that can be read, but its terms belong to the rigid link.
TEST(BeamStiffness, OffsetAlongTheAxisCouplesShearAndBending) {
  BeamElement beam = MakeAxisBeam();
  beam.Section.Ex = 0.5;
  const BeamMatrix K = ComputeStiffness(beam);
  EXPECT_DOUBLE_EQ(K[1 * Dofs + 5], 420.0 + 420.0 * 0.5);   // v: rz, arm Ex
  EXPECT_DOUBLE_EQ(K[2 * Dofs + 4], -300.0 - 300.0 * 0.5);  // w: ry, arm -Ex
}

TEST(BeamStiffness, TubeBendsAlikeInBothPlanes) {
  BeamElement beam;
  InitCBeamElement(beam, {0.0, 0.0, 0.0}, {2.0, 0.0, 0.0}, {0.0, 0.0, 1.0, 1e-15}, {2e11, 0.3, 0.0},
                   {0.15, 0.02}, 0.0);
  const BeamMatrix K = ComputeStiffness(beam);
  EXPECT_EQ(K[1 * Dofs + 1], K[2 * Dofs + 2]);
  EXPECT_EQ(K[5 * Dofs + 5], K[4 * Dofs + 4]);
  EXPECT_EQ(K[5 * Dofs + 11], K[4 * Dofs + 10]);
  EXPECT_EQ(K[1 * Dofs + 5], -K[2 * Dofs + 4]);
}

TEST(BeamStiffness, OrientationAlongTheAxisGivesNaN) {
  BeamElement beam = MakeAxisBeam();
  beam.RefPoint = {1.0, 0.0, 0.0};
  EXPECT_TRUE(std::isnan(ComputeStiffness(beam)[1 * Dofs + 1]));
}

TEST(BeamStiffness, ZeroLengthGivesNaN) {
  BeamElement beam = MakeAxisBeam();
  beam.NodeJ = beam.NodeI;
  EXPECT_TRUE(std::isnan(ComputeStiffness(beam)[0]));
}

// A beam of an unknown section type keeps what its construction set; its matrix is formed all the
// same and is meaningless.
TEST(BeamStiffness, UnsetBeamGivesNaN) {
  EXPECT_TRUE(std::isnan(ComputeStiffness(BeamElement())[0]));
}

}  // namespace
}  // namespace korvex
