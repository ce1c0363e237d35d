// Resultants of single elements and of small models: constant states on distorted meshes in an
// oblique plane, shear in a strip, whole models turned in space, and the solver's stress file.
#include "audit/shell_resultants.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>

#include "base/number_text.h"
#include "results/shell_stresses.h"
#include "results/stress_files.h"
#include "shell/element_parts.h"
#include "shell/quad_plate.h"
#include "support/dof_names.h"
#include "support/expect_stop.h"
#include "support/good_models.h"
#include "support/same_bits.h"
#include "support/shell_mesh.h"
#include "support/shell_shapes.h"
#include "support/solve_model.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

using korvex::Model, korvex::Vector3;
using korvex::test::Cells, korvex::test::ModelText;

// Calls work(resultants) for every shell of the model.
template <typename Work>
void ForAllShells(const Model& model, const FrameChoice& choice, const Work& work) {
  ShellResultants r;
  for (std::int32_t e = 0; e < model.Tables.NELEM_S_4ND; ++e) {
    ComputeShell4Resultants(model, e, choice, r);
    work(r);
  }
  for (std::int32_t e = 0; e < model.Tables.NELEM_S_3ND; ++e) {
    ComputeShell3Resultants(model, e, choice, r);
    work(r);
  }
}

// The centre and the corners.
std::vector<const ShellPoint*> PointsOf(const ShellResultants& r) {
  std::vector<const ShellPoint*> points{&r.centre};
  for (std::int32_t k = 0; k < r.corners; ++k) {
    points.push_back(&r.corner[static_cast<std::size_t>(k)]);
  }
  return points;
}

void ExpectTensor(const PlaneTensor& tensor, const PlaneTensor& expected, double bound,
                  const char* name) {
  EXPECT_NEAR(tensor.x, expected.x, bound) << name;
  EXPECT_NEAR(tensor.y, expected.y, bound) << name;
  EXPECT_NEAR(tensor.xy, expected.xy, bound) << name;
}

// The same tensor in axes turned by this angle about the normal (Mohr's circle).
PlaneTensor TurnTensor(const PlaneTensor& t, double angle) {
  const double c = std::cos(angle), s = std::sin(angle);
  return {c * c * t.x + s * s * t.y + 2 * c * s * t.xy,
          s * s * t.x + c * c * t.y - 2 * c * s * t.xy,
          c * s * (t.y - t.x) + (c * c - s * s) * t.xy};
}

constexpr double E = 1e6, Mu = 0.25, T = 0.01;

// Both states together, in the patch's own axes: strains exx, eyy, gxy = 1e-5 (3, -1, 2) and
// w = (x^2 + 2 xy + 3 y^2) 1e-3.
std::array<double, 6> PatchField(double x, double y) {
  return {1e-5 * (3 * x + 0.5 * y), 1e-5 * (1.5 * x - y),    1e-3 * (x * x + 2 * x * y + 3 * y * y),
          1e-3 * (2 * x + 6 * y),   -1e-3 * (2 * x + 2 * y), 0.5e-5};
}

// n = E t / (1 - Mu^2) (exx + Mu eyy, ..), nxy = G t gxy with G = E / (2 (1 + Mu)).
PlaneTensor PatchForces() {
  const double d = E * T / (1 - Mu * Mu) * 1e-5, G = E / (2 * (1 + Mu));
  return {d * (3 - Mu), d * (-1 + Mu * 3), G * T * 2e-5};
}

// m = -D (w,xx + Mu w,yy, w,yy + Mu w,xx, (1 - Mu) w,xy) with w,xx = 2e-3, w,yy = 6e-3, w,xy =
// 2e-3: hollow upwards, the upper face is compressed and the moments are negative.
PlaneTensor PatchMoments() {
  const double D = E * T * T * T / (12 * (1 - Mu * Mu)) * 1e-3;
  return {-D * (2 + Mu * 6), -D * (6 + Mu * 2), -D * (1 - Mu) * 2};
}

// The plate of MacNeal & Harder (1985), 0.24 x 0.12 with four uneven inner nodes, driven at its
// outer nodes.
ModelText BuildPatch(Cells cells) {
  ModelText model;
  model.materials = {{E, Mu, 0.0}};
  model.thicknesses = {T};
  model.nodes = {{0.0, 0.0, 0.0},   {0.24, 0.0, 0.0},  {0.24, 0.12, 0.0}, {0.0, 0.12, 0.0},
                 {0.04, 0.02, 0.0}, {0.18, 0.03, 0.0}, {0.16, 0.08, 0.0}, {0.08, 0.08, 0.0}};
  const std::array<korvex::test::Corners, 5> corners{
      {{0, 1, 5, 4}, {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}, {4, 5, 6, 7}}};
  for (int i = 0; i < 5; ++i) AddCell(model, cells, i, corners[static_cast<std::size_t>(i)]);
  for (int node = 0; node < 4; ++node) {
    const auto& p = model.nodes[static_cast<std::size_t>(node)];
    Prescribe(model, node, PatchField(p[0], p[1]));
  }
  return model;
}

// The relative error that rounding leaves in a solved patch (tests of the shells).
constexpr double PatchBound = 1e-9;

class Patches : public testing::TestWithParam<Cells> {};

INSTANTIATE_TEST_SUITE_P(All, Patches, testing::Values(Cells::Quads, Cells::Triangles),
                         [](const auto& cells) { return NameCells(cells.param); });

// In the frame of the patch's x axis the exact values stand as they are, in the element's frame
// turned by the angle between the two.
TEST_P(Patches, HaveTheForcesAndMomentsOfTheConstantState) {
  Model model;
  SolveModel(TurnModel(BuildPatch(GetParam())), model);
  const FrameChoice byAxis{true, korvex::test::Turn({1.0, 0.0, 0.0})};
  const Vector3 y = korvex::test::Turn({0.0, 1.0, 0.0});
  const double boundN = PatchBound * PatchForces().x, boundM = -PatchBound * PatchMoments().y;
  ForAllShells(model, byAxis, [&](const ShellResultants& r) {
    EXPECT_EQ(r.frame.source, FrameSource::Axis);
    for (const ShellPoint* point : PointsOf(r)) {
      ExpectTensor(point->n, PatchForces(), boundN, "n");
      ExpectTensor(point->m, PatchMoments(), boundM, "m");
    }
  });
  ForAllShells(model, {}, [&](const ShellResultants& r) {
    const auto& axes = r.frame.axes;
    const auto dot = [&axes](const Vector3& v) {
      return axes[0] * v[0] + axes[3] * v[1] + axes[6] * v[2];
    };
    const double angle = std::atan2(dot(y), dot(byAxis.axis));
    for (const ShellPoint* point : PointsOf(r)) {
      ExpectTensor(point->n, TurnTensor(PatchForces(), angle), boundN, "own n");
      ExpectTensor(point->m, TurnTensor(PatchMoments(), angle), boundM, "own m");
    }
  });
}

// Pure bending has no shear. Its bound is that of the moments over the patch's length.
TEST_P(Patches, HaveNoTransverseShear) {
  Model model;
  SolveModel(TurnModel(BuildPatch(GetParam())), model);
  ForAllShells(model, {}, [&](const ShellResultants& r) {
    for (const ShellPoint* point : PointsOf(r)) {
      if (GetParam() == Cells::Triangles) {
        EXPECT_FALSE(r.hasShear);
        EXPECT_TRUE(std::isnan(point->qx) && std::isnan(point->qy));
        continue;
      }
      EXPECT_TRUE(r.hasShear);
      EXPECT_NEAR(point->qx, 0.0, -1e-7 * PatchMoments().y / 0.12);
      EXPECT_NEAR(point->qy, 0.0, -1e-7 * PatchMoments().y / 0.12);
    }
  });
}

// Each face: n/t +- 6 m/t^2 in the frame, its principal values give back the global tensor with
// the global direction, and von Mises is that of the principal values.
TEST_P(Patches, HaveFacesThatAgreeWithForcesAndMoments) {
  Model model;
  SolveModel(TurnModel(BuildPatch(GetParam())), model);
  ForAllShells(model, {}, [&](const ShellResultants& r) {
    EXPECT_EQ(r.thickness, T);
    for (const ShellPoint* point : PointsOf(r)) {
      for (const Face face : {Face::Upper, Face::Lower, Face::Middle}) {
        const FaceState& state = point->faces[static_cast<std::size_t>(face)];
        const double side = face == Face::Upper ? 1.0 : face == Face::Lower ? -1.0 : 0.0;
        const double a = 1 / T, b = side * 6 / T / T;
        const double scale = std::fabs(state.principal.larger) + std::fabs(state.principal.smaller);
        ExpectTensor(state.local,
                     {a * point->n.x + b * point->m.x, a * point->n.y + b * point->m.y,
                      a * point->n.xy + b * point->m.xy},
                     1e-13 * scale, "face");
        ExpectTensor(point->membrane, {a * point->n.x, a * point->n.y, a * point->n.xy},
                     1e-13 * scale, "membrane");
        const double s1 = state.principal.larger, s2 = state.principal.smaller;
        EXPECT_NEAR(state.vonMises, std::sqrt(s1 * s1 - s1 * s2 + s2 * s2), 1e-13 * scale);
        // s1 v v^T + s2 w w^T, w = normal x v.
        const auto& axes = r.frame.axes;
        const Vector3& v = state.direction;
        const Vector3 w = korvex::Cross({axes[2], axes[5], axes[8]}, v);
        constexpr std::size_t places[6][2] = {{0, 0}, {1, 1}, {2, 2}, {0, 1}, {0, 2}, {1, 2}};
        for (std::size_t c = 0; c < 6; ++c) {
          const auto [i, j] = places[c];
          EXPECT_NEAR(s1 * v[i] * v[j] + s2 * w[i] * w[j], state.stress[c], 1e-13 * scale) << c;
        }
      }
    }
  });
}

// Places in space: corners are the nodes, the centre their mean.
TEST_P(Patches, HaveTheirPlaces) {
  Model model;
  SolveModel(TurnModel(BuildPatch(GetParam())), model);
  ForAllShells(model, {}, [&](const ShellResultants& r) {
    Vector3 mean{};
    for (std::int32_t k = 0; k < r.corners; ++k) {
      const Vector3& place = r.corner[static_cast<std::size_t>(k)].place;
      const auto isHere = [&place](const korvex::Node& node) {
        return Vector3{node.x, node.y, node.z} == place;
      };
      EXPECT_TRUE(std::any_of(model.Tables.Nodes.begin(), model.Tables.Nodes.end(), isHere));
      for (std::size_t i = 0; i < 3; ++i) mean[i] += place[i] / r.corners;
    }
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(r.centre.place[i], mean[i], 1e-16);
  });
}

// A model of one element with this displacement of its nodes.
template <std::size_t Nodes, typename Field>
Model SingleShell(const korvex::test::PlaneShape<Nodes>& shape, const Field& field) {
  Model model;
  const auto& placement = korvex::test::InObliquePlane;
  const auto element = korvex::test::PlaceShape(shape, placement);
  for (std::size_t k = 0; k < Nodes; ++k) {
    const double* P = &element.Coordinates[3 * k];
    model.Tables.Nodes.push_back({P[0], P[1], P[2]});
  }
  std::vector<std::int32_t> nodes;
  for (std::size_t k = 0; k < Nodes; ++k) nodes.push_back(static_cast<std::int32_t>(k));
  if constexpr (Nodes == 4) {
    model.Shell4Elements = {element};
    model.Tables.Shell4Nodes = nodes;
    model.Tables.NELEM_S_4ND = 1;
  } else {
    model.Shell3Elements = {element};
    model.Tables.Shell3Nodes = nodes;
    model.Tables.NELEM_S_3ND = 1;
  }
  const auto d = korvex::test::DisplaceNodes(shape, placement, field);
  model.Displacements.assign(d.begin(), d.end());
  return model;
}

// A cubic deflection bends a triangle unevenly. By hand: the right triangle (0,0), (1,0), (0,1)
// under w = x^3 with exact corner rotations. Along its sides 1-2 and 3-1 the slopes are quadratic
// and taken exactly; so ry = -3x^2 at corners and mid-side 1-2; the mid-side of 2-3 has the slope
// along the side exactly and that across it as the mean of its corners. With the slope along side
// 2-3, s = (-1, 1)/sqrt 2, d(w)/ds at mid-side = -3/4/sqrt 2 exactly (a cubic's, from end values
// and slopes: 3/2 (w3 - w2)/l - (s2 + s3)/4 = -1.5/sqrt 2 + 3/4/sqrt 2) and across it, n = (1, 1)/
// sqrt 2, the mean 3/2/sqrt 2. So there w,x = (-s-part + n-part)/sqrt 2 = 3/8 + 3/4 = 9/8 and
// w,y = -3/8 + 3/4 = 3/8. Quadratic w,x from corners 0, 3, 0 and mid-sides 3/4 (1-2), 9/8 (2-3),
// 0 (3-1): w,xx = sum of w,x dN/dx with corner functions L(2L - 1), mid-side functions 4 Li Lj,
// dL1/dx = -1, dL2/dx = 1, dL3/dx = 0:
//   w,xx = 3 (4 L2 - 1) + 3/4 * 4 (L1 - L2) + 9/8 * 4 L3
// At corner 1: -3 + 3 = 0; corner 2: 9 - 3 = 6; corner 3: -3 + 9/2 = 3/2. And w,yy, of w,y with the
// corners 0, 0, 0 and the one mid-side 3/8, dL3/dy = 1, dL1/dy = -1: 3/8 * 4 L2: 0, 3/2, 0.
TEST(Triangles, HaveTheMomentsOfEachCorner) {
  const auto cubic = [](double x, double) {
    return std::array<double, 6>{0.0, 0.0, x * x * x, 0.0, -3 * x * x, 0.0};
  };
  const Model model = SingleShell<3>({{{0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}}}, cubic);
  ShellResultants r;
  ComputeShell3Resultants(model, 0, {}, r);
  const double t = korvex::test::ShapeTK, mu = korvex::test::ShapeMu;
  const double D = korvex::test::ShapeE * t * t * t / (12 * (1 - mu * mu));
  const double wxx[] = {0.0, 6.0, 1.5}, wyy[] = {0.0, 1.5, 0.0};
  for (std::size_t k = 0; k < 3; ++k) {
    EXPECT_NEAR(r.corner[k].m.x, -D * (wxx[k] + mu * wyy[k]), 1e-13) << k;
    EXPECT_NEAR(r.corner[k].m.y, -D * (wyy[k] + mu * wxx[k]), 1e-13) << k;
  }
  // Linear between the corners: at the centroid their mean, w,xx = 2.5 and w,yy = 0.5.
  EXPECT_NEAR(r.centre.m.x, -D * (2.5 + mu * 0.5), 1e-13);
  EXPECT_NEAR(r.centre.m.y, -D * (0.5 + mu * 2.5), 1e-13);
}

// The deflection w = 0.002 x - 0.003 y without rotations: gxz = 0.002, gyz = -0.003.
std::array<double, 6> ShearField(double x, double y) {
  return {0.0, 0.0, 0.002 * x - 0.003 * y, 0.0, 0.0, 0.0};
}

// q = 5/6 G t gamma: exact at the centre of every quadrilateral, and at the corners of a
// parallelogram; at the corners of other shapes as far off as the header says.
TEST(TransverseShear, OfAConstantStrainIsExactAtTheCentre) {
  const double rigidity =
      korvex::test::ShapeE / (2 * (1 + korvex::test::ShapeMu)) * korvex::test::ShapeTK * 5.0 / 6.0;
  const double qx = rigidity * 0.002, qy = -rigidity * 0.003, size = std::hypot(qx, qy);
  for (const auto& named : korvex::test::AllQuads()) {
    const Model model = SingleShell<4>(named.shape, ShearField);
    ShellResultants r;
    ComputeShell4Resultants(model, 0, {}, r);
    EXPECT_NEAR(r.centre.qx, qx, 1e-13 * size) << named;
    EXPECT_NEAR(r.centre.qy, qy, 1e-13 * size) << named;
    const bool isParallelogram =
        named.name == "Square" || named.name == "Rectangle" || named.name == "Parallelogram";
    for (const ShellPoint& corner : r.corner) {
      const double off = std::hypot(corner.qx - qx, corner.qy - qy) / size;
      EXPECT_GE(off, isParallelogram ? 0.0 : 0.12) << named;
      EXPECT_LT(off, isParallelogram ? 1e-13 : 0.30) << named;
    }
  }
}

// By an axis that is 30 degrees from the element's first axis: the components of the same vector.
TEST(TransverseShear, TurnsAsAVector) {
  const Model model = SingleShell<4>(korvex::test::Parallelogram, ShearField);
  const auto& own = korvex::test::InObliquePlane.axes;
  const double c = std::sqrt(0.75), s = 0.5;
  const Vector3 axis{c * own[0] + s * own[1], c * own[3] + s * own[4], c * own[6] + s * own[7]};
  ShellResultants r, turned;
  ComputeShell4Resultants(model, 0, {}, r);
  ComputeShell4Resultants(model, 0, {true, axis}, turned);
  EXPECT_NEAR(turned.centre.qx, c * r.centre.qx + s * r.centre.qy, 1e-14);
  EXPECT_NEAR(turned.centre.qy, -s * r.centre.qx + c * r.centre.qy, 1e-14);
  EXPECT_GT(std::fabs(r.centre.qx - turned.centre.qx), 1e-3);
}

// What the element's stiffness is made with.
TEST(TransverseShear, HasTheRigidityOfTheStiffness) {
  const auto element =
      korvex::test::PlaceShape(korvex::test::UnitSquare, korvex::test::InGlobalPlane, 0.1);
  korvex::QuadPlate plate;
  korvex::SetUpPart(element, plate);
  plate.Stiffness();
  std::array<double, 24> d{};
  for (const std::size_t node : {1U, 2U}) d[6 * node + korvex::test::Uz] = 1.0;  // gxz = 1
  double qx = 0.0, qy = 0.0;
  Shell4TransverseShear(element, d.data(), 0.0, 0.0, qx, qy);
  EXPECT_DOUBLE_EQ(qx, plate.Ds[0]);
  EXPECT_EQ(qy, 0.0);
}

// A strip along x, clamped at x = 0, n rectangles of length h along it, Mu = 0.
constexpr double StripLength = 10.0, StripWidth = 2.0;
constexpr int StripCells = 8;

ModelText BuildStrip() {
  ModelText model = korvex::test::BuildGrid(1, StripCells, Cells::Quads, [](double s, double t) {
    return korvex::test::Point3{StripLength * t, StripWidth * (1 - s), 0.0};
  });
  model.materials = {{2e5, 0.0, 0.0}};
  model.thicknesses = {0.5};
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}, {1, {1, 1, 1, 1, 1, 1}}};
  return model;
}

// The resultants of the strip's elements, by their place along x.
std::vector<ShellResultants> SolveStrip(const ModelText& text) {
  Model model;
  SolveModel(text, model);
  std::vector<ShellResultants> all;
  ForAllShells(model, {true, {1.0, 0.0, 0.0}},
               [&all](const ShellResultants& r) { all.push_back(r); });
  return all;
}

// A force P along +z at the tip: the part beyond a cut is held by q, qx b = P. The tip moves up,
// the lower face is in tension: mx b = -P (L - x). 1e-9: rounding, as in the patches; the shear is
// (L/t)^2 = 400 times stiffer than the bending.
TEST(Strip, UnderATipForceHasItsShearAndMoment) {
  ModelText text = BuildStrip();
  const double P = 3.0;
  for (const int node : {2 * StripCells, 2 * StripCells + 1}) {
    text.forces.push_back({node, {0.0, 0.0, P / 2, 0.0, 0.0, 0.0}});
  }
  for (const ShellResultants& r : SolveStrip(text)) {
    EXPECT_NEAR(r.frame.axes[8], 1.0, 1e-15);  // the normal is +z
    EXPECT_NEAR(r.centre.qx, P / StripWidth, 1e-9 * P);
    EXPECT_NEAR(r.centre.qy, 0.0, 1e-9 * P);
    EXPECT_NEAR(r.centre.m.x, -P * (StripLength - r.centre.place[0]) / StripWidth, 1e-9 * 15);
    EXPECT_LT(r.centre.faces[static_cast<std::size_t>(Face::Upper)].local.x, 0.0);
    EXPECT_GT(r.centre.faces[static_cast<std::size_t>(Face::Lower)].local.x, 0.0);
  }
}

// A pressure p along +z: qx = p (L - x) at every centre, where the nodal loads of all elements
// beyond and half of the own stand against it. Between two centres the moment grows by the mean of
// both shears times their distance: V = dM/dx.
TEST(Strip, UnderPressureHasTheShearThatItsMomentsGive) {
  ModelText text = BuildStrip();
  const double p = 0.25, h = StripLength / StripCells;
  for (int e = 0; e < StripCells; ++e) text.shell4Loads.push_back({e, {p, p, p}});
  const std::vector<ShellResultants> all = SolveStrip(text);
  ASSERT_EQ(all.size(), static_cast<std::size_t>(StripCells));
  for (std::size_t e = 0; e < all.size(); ++e) {
    const ShellPoint& here = all[e].centre;
    EXPECT_NEAR(here.qx, p * (StripLength - here.place[0]), 1e-9 * p * StripLength) << e;
    if (e == 0) continue;
    const ShellPoint& before = all[e - 1].centre;
    EXPECT_NEAR(here.place[0] - before.place[0], h, 1e-14);
    EXPECT_NEAR((here.m.x - before.m.x) / h, (here.qx + before.qx) / 2, 1e-9 * p * StripLength);
  }
}

// The displacements of all nodes, any numbers.
void RollDisplacements(Dice& dice, Model& model) {
  model.Displacements.resize(6 * model.Tables.Nodes.size());
  for (double& u : model.Displacements) u = Roll(dice, -1.0, 1.0);
}

void ExpectSamePoint(const ShellPoint& a, const ShellPoint& b, double n, double m, double q) {
  ExpectTensor(a.n, b.n, n, "n");
  ExpectTensor(a.m, b.m, m, "m");
  if (!std::isnan(a.qx) || !std::isnan(b.qx)) {
    EXPECT_NEAR(a.qx, b.qx, q);
    EXPECT_NEAR(a.qy, b.qy, q);
  }
  for (std::size_t f = 0; f < FaceCount; ++f) {
    const double s = a.faces[f].vonMises;
    EXPECT_NEAR(b.faces[f].vonMises, s, 1e-9 * s);
    EXPECT_NEAR(b.faces[f].principal.larger, a.faces[f].principal.larger, 1e-9 * s);
    const Vector3 direction = korvex::test::Turn(a.faces[f].direction);
    double dot = 0.0;
    for (std::size_t i = 0; i < 3; ++i) dot += direction[i] * b.faces[f].direction[i];
    EXPECT_NEAR(std::fabs(dot), 1.0, 1e-9);  // a direction, either way along it
  }
}

// A model and its displacements turned in space have the same resultants, in the element's frame
// and in that of an axis that turns with them. 1e-9 of the largest: rounding of coordinates, which
// thin and small elements multiply.
TEST(ShellResultants, DoNotChangeWhenTheModelTurns) {
  int shells = 0;
  for (std::uint32_t seed = 1; seed <= 12; ++seed) {
    const ModelText text = MakeGoodModel(seed);
    Model model, turned;
    AssembleModel(text, model);
    AssembleModel(TurnModel(text), turned);
    Dice dice = MakeDice(seed);
    RollDisplacements(dice, model);
    turned.Displacements = model.Displacements;
    for (std::size_t i = 0; i < turned.Displacements.size(); i += 6) {
      std::array<double, 6> u{};
      std::copy_n(&model.Displacements[i], 6, u.begin());
      u = korvex::test::TurnSix(u);
      std::copy(u.begin(), u.end(), &turned.Displacements[i]);
    }
    const Vector3 axis{0.3, -0.5, 0.8};
    for (const bool byAxis : {false, true}) {
      std::vector<ShellResultants> all;
      ForAllShells(model, {byAxis, axis}, [&](const ShellResultants& r) { all.push_back(r); });
      std::size_t at = 0;
      ForAllShells(turned, {byAxis, korvex::test::Turn(axis)}, [&](const ShellResultants& r) {
        const ShellResultants& before = all[at++];
        ASSERT_EQ(before.frame.source, r.frame.source);
        const auto largest = [&before](auto size) {
          double value = 0.0;
          for (const ShellPoint* point : PointsOf(before)) value = std::max(value, size(*point));
          return value;
        };
        const auto sizeOf = [](const PlaneTensor& t) {
          return std::max({std::fabs(t.x), std::fabs(t.y), std::fabs(t.xy)});
        };
        const double n = largest([&](const ShellPoint& p) { return sizeOf(p.n); });
        const double m = largest([&](const ShellPoint& p) { return sizeOf(p.m); });
        const double q = largest([](const ShellPoint& p) { return std::fabs(p.qx + p.qy); });
        ExpectSamePoint(before.centre, r.centre, 1e-9 * n, 1e-9 * m, 1e-9 * q);
        for (std::size_t k = 0; k < static_cast<std::size_t>(r.corners); ++k) {
          ExpectSamePoint(before.corner[k], r.corner[k], 1e-9 * n, 1e-9 * m, 1e-9 * q);
        }
        ++shells;
      });
    }
  }
  EXPECT_GT(shells, 1000);
}

// The rows of a stress file behind the node's colon, as texts.
std::vector<std::vector<std::string>> ReadRows(const std::string& text) {
  std::vector<std::vector<std::string>> rows;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t colon = line.find(':');
    if (colon != 14) continue;  // titles and headers
    std::istringstream words(line.substr(colon + 1));
    rows.emplace_back();
    for (std::string word; words >> word;) rows.back().push_back(word);
  }
  return rows;
}

void ExpectRow(const std::vector<std::string>& row, const FaceState& state) {
  ASSERT_EQ(row.size(), 7U);
  korvex::NumberBuffer buffer;
  for (std::size_t c = 0; c < 6; ++c) {
    EXPECT_EQ(row[c], korvex::FormatNumber(state.stress[c], buffer));
  }
  EXPECT_EQ(row[6], korvex::FormatNumber(state.vonMises, buffer));
}

// The upper and lower faces have the file's digits; of a triangle the first corner has, and the
// file repeats it.
TEST(ShellResultants, HaveTheNumbersOfTheStressFile) {
  std::size_t quads = 0, triangles = 0;
  for (std::uint32_t seed = 1; seed <= 8; ++seed) {
    Model model;
    SolveModel(MakeGoodModel(seed), model);
    RecoverShellStresses(model);
    const korvex::test::TempFolder folder;
    const std::string name = (folder.Path() / "stress.txt").string();
    ASSERT_TRUE(WriteElementNodeStresses(name, model));
    const auto rows = ReadRows(korvex::test::ReadFile(name));
    std::size_t at = 0;
    ForAllShells(model, {}, [&](const ShellResultants& r) {
      const bool isTriangle = r.corners == 3;
      for (std::size_t k = 0; k < static_cast<std::size_t>(r.corners); ++k) {
        const auto& faces = r.corner[isTriangle ? 0 : k].faces;
        ExpectRow(rows[at++], faces[static_cast<std::size_t>(Face::Upper)]);
        ExpectRow(rows[at++], faces[static_cast<std::size_t>(Face::Lower)]);
      }
      ++(isTriangle ? triangles : quads);
    });
    EXPECT_EQ(at, rows.size());
  }
  EXPECT_GT(quads, 100U);
  EXPECT_GT(triangles, 100U);
}

// Equal principal stresses: a plate under the same tension all round has no direction, and the
// frame's first axis stands for it.
TEST(ShellResultants, HaveNoDirectionWherePrincipalStressesAreEqual) {
  const Model model = SingleShell<4>(korvex::test::DistortedQuad, [](double x, double y) {
    return std::array<double, 6>{1e-3 * x, 1e-3 * y, 0.0, 0.0, 0.0, 0.0};
  });
  ShellResultants r;
  ComputeShell4Resultants(model, 0, {}, r);
  for (const FaceState& face : r.centre.faces) {
    EXPECT_FALSE(face.principal.hasDirection);
    EXPECT_GT(face.principal.smaller, 0.0);
    EXPECT_EQ(face.direction, (Vector3{r.frame.axes[0], r.frame.axes[3], r.frame.axes[6]}));
  }
}

std::vector<double> ListResultants(const PlaneTensor& n, const PlaneTensor& m, double qx,
                                   double qy) {
  return {n.x, n.y, n.xy, m.x, m.y, m.xy, qx, qy};
}

TEST(ShellResultants, CentresAloneHaveTheSameBits) {
  std::size_t quads = 0, triangles = 0;
  for (std::uint32_t seed = 0; seed < 6; ++seed) {
    Model model;
    SolveModel(MakeGoodModel(seed), model);
    for (const FrameChoice& choice : {FrameChoice{}, FrameChoice{true, {1.0, 2.0, 3.0}}}) {
      std::int32_t e = 0;
      ForAllShells(model, choice, [&](const ShellResultants& r) {
        CentreResultants centre;
        if (r.corners == 4) {
          ComputeShell4Centre(model, e, choice, centre);
          ++quads;
        } else {
          ComputeShell3Centre(model, e - model.Tables.NELEM_S_4ND, choice, centre);
          ++triangles;
        }
        ++e;
        const ShellPoint& full = r.centre;
        EXPECT_TRUE(korvex::test::SameBits(ListResultants(centre.n, centre.m, centre.qx, centre.qy),
                                           ListResultants(full.n, full.m, full.qx, full.qy)));
      });
    }
  }
  EXPECT_GT(quads, 0U);
  EXPECT_GT(triangles, 0U);
}

TEST(ShellResultants, AreNanWhereTheDisplacementsAre) {
  Model model = SingleShell<4>(korvex::test::UnitSquare, ShearField);
  model.Displacements[6] = std::numeric_limits<double>::quiet_NaN();
  ShellResultants r;
  ComputeShell4Resultants(model, 0, {}, r);
  EXPECT_TRUE(std::isnan(r.centre.n.x) && std::isnan(r.centre.faces[0].vonMises));
  EXPECT_FALSE(r.centre.faces[0].principal.hasDirection);
  // No thickness, no area.
  model = SingleShell<4>(korvex::test::UnitSquare, ShearField);
  model.Shell4Elements[0].TK = 0.0;
  ComputeShell4Resultants(model, 0, {}, r);
  EXPECT_TRUE(std::isnan(r.centre.m.x));
  model.Shell4Elements[0] = korvex::test::PlaceShape(
      korvex::test::PlaneShape<4>{{{0, 0}, {1, 0}, {2, 0}, {3, 0}}}, korvex::test::InGlobalPlane);
  ComputeShell4Resultants(model, 0, {true, {0.0, 0.0, 1.0}}, r);
  EXPECT_TRUE(std::isnan(r.centre.n.x) && std::isnan(r.centre.qx));
}

TEST(ShellResultants, StopWhereTheModelDoesNotFit) {
  using korvex::test::ExpectStop;
  ShellResultants r;
  Model quad = SingleShell<4>(korvex::test::UnitSquare, ShearField);
  Model triangle = SingleShell<3>(korvex::test::ScaleneTriangle, ShearField);
  CentreResultants centre;
  ExpectStop([&] { ComputeShell4Centre(quad, 1, {}, centre); },
             "Four-node shell element 1 does not exist; there are 1.");
  ExpectStop([&] { ComputeShell3Centre(triangle, 1, {}, centre); },
             "Three-node shell element 1 does not exist; there are 1.");
  const auto work4 = [&] { ComputeShell4Resultants(quad, 0, {}, r); };
  const auto work3 = [&] { ComputeShell3Resultants(triangle, 0, {}, r); };
  for (const std::int32_t e : {-1, 1}) {
    const std::string number = std::to_string(e);
    ExpectStop([&] { ComputeShell4Resultants(quad, e, {}, r); },
               "Four-node shell element " + number + " does not exist; there are 1.");
    ExpectStop([&] { ComputeShell3Resultants(triangle, e, {}, r); },
               "Three-node shell element " + number + " does not exist; there are 1.");
  }
  ExpectStop(
      [&] {
        ComputeShell4Resultants(quad, 0, {true, {}}, r);
      },
      "The axis (0, 0, 0) has no direction.");
  triangle.Tables.Shell3Nodes[1] = -1;
  ExpectStop(work3, "Three-node shell element 0 refers to node -1; there are 3 nodal points.");
  quad.Tables.Shell4Nodes[2] = 4;
  ExpectStop(work4, "Four-node shell element 0 refers to node 4; there are 4 nodal points.");
  quad.Tables.Shell4Nodes.pop_back();
  ExpectStop(work4, "The solved model has 3 nodes of four-node shell elements, not 4.");
  quad.Displacements.pop_back();
  ExpectStop(work4, "The solved model has 23 displacements, not 24.");
}

}  // namespace
}  // namespace kvx::test
