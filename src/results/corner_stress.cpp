#include "results/corner_stress.h"

#include <algorithm>
#include <cmath>

#include "base/matrix.h"
#include "shell/element_parts.h"
#include "shell/quad_membrane.h"
#include "shell/quad_plate.h"
#include "shell/tri_membrane.h"
#include "shell/tri_plate.h"

namespace korvex {

namespace {

using Plane3 = std::array<double, 3>;  // components x, y, xy

// The element's displacements in local axes, separated into the dofs of its two parts.
template <std::int32_t Nodes>
struct LocalDisplacements {
  std::array<double, static_cast<std::size_t>(Nodes) * 2> membrane{};  // u, v per node
  std::array<double, static_cast<std::size_t>(Nodes) * 3> plate{};     // w, rx, ry per node
};

// displacements: 6 * Nodes, global, element dof order. The drilling rotations are left out: they do
// not enter the stresses.
template <std::int32_t Nodes>
void SortDisplacements(const ElementFrame& frame, const double* displacements,
                       LocalDisplacements<Nodes>& d) {
  std::array<double, static_cast<std::size_t>(Nodes) * 6> local{};
  std::copy(displacements, displacements + local.size(), local.begin());
  RotateVectorToLocal(frame, Nodes, local.data());
  for (std::size_t k = 0; k < static_cast<std::size_t>(Nodes); ++k) {
    std::copy_n(&local[6 * k], 2, &d.membrane[2 * k]);
    std::copy_n(&local[6 * k + 2], 3, &d.plate[3 * k]);
  }
}

// Returns D (B d). D: 3 x 3; B: 3 x n; d: n.
Plane3 MultiplyThrough(const double* D, const double* B, const double* d, std::int32_t n) {
  Plane3 Bd{}, DBd{};
  MatMultiply(Bd.data(), B, d, 3, n, 1);
  MatMultiply(DBd.data(), D, Bd.data(), 3, 3, 1);
  return DBd;
}

// top, bottom: the stresses of both faces, global, from the membrane stresses and the moments per
// length, both local.
void FormFaces(const ElementFrame& frame, double TK, const Plane3& membrane, const Plane3& moment,
               StressVector& top, StressVector& bottom) {
  const double factor = 6.0 / TK / TK;
  StressVector upper{}, lower{};
  constexpr std::array<std::size_t, 3> slot{0, 1, 3};  // positions of SX, SY, TXY
  for (std::size_t i = 0; i < 3; ++i) {
    upper[slot[i]] = membrane[i] + factor * moment[i];
    lower[slot[i]] = membrane[i] - factor * moment[i];
  }
  top = StressToGlobal(frame, upper);
  bottom = StressToGlobal(frame, lower);
}

}  // namespace

void Shell4CornerStress(const Shell4Element& element, StressVector& top, StressVector& bottom,
                        const double* displacements, double xi, double eta) {
  LocalDisplacements<4> d;
  SortDisplacements(element.Frame, displacements, d);

  QuadMembrane membrane;
  SetUpPart(element, membrane);
  membrane.ShapeDerivatives(xi, eta);
  membrane.Jacobian();
  membrane.StrainMatrix();
  membrane.ElasticityMatrix();

  QuadPlate plate;
  SetUpPart(element, plate);
  plate.ShapeFunctions(xi, eta);
  plate.Jacobian();
  plate.CurvatureMatrix();
  plate.BendingRigidity();

  FormFaces(element.Frame, element.TK,
            MultiplyThrough(membrane.D.data(), membrane.B.data(), d.membrane.data(), 8),
            MultiplyThrough(plate.Db.data(), plate.Bb.data(), d.plate.data(), 12), top, bottom);
}

void Shell3CornerStress(const Shell3Element& element, StressVector& top, StressVector& bottom,
                        const double* displacements, const std::array<double, 3>& L) {
  LocalDisplacements<3> d;
  SortDisplacements(element.Frame, displacements, d);

  TriMembrane membrane;
  SetUpPart(element, membrane);
  std::array<double, 18> B{};
  std::array<double, 9> D{};
  membrane.StrainMatrix(B.data());
  membrane.ElasticityMatrix(D.data());

  TriPlate plate;
  SetUpPart(element, plate);
  std::array<double, 27> Bb{};
  std::array<double, 9> Db{};
  plate.CurvatureMatrix(L, Bb.data());
  plate.BendingRigidity(Db.data());

  FormFaces(element.Frame, element.TK, MultiplyThrough(D.data(), B.data(), d.membrane.data(), 6),
            MultiplyThrough(Db.data(), Bb.data(), d.plate.data(), 9), top, bottom);
}

StressVector StressToGlobal(const ElementFrame& frame, const StressVector& local) {
  const double* l = &frame[0];
  const double* m = &frame[3];
  const double* n = &frame[6];
  const double sx = local[0], sy = local[1], sz = local[2];
  const double txy = local[3], txz = local[4], tyz = local[5];
  const auto normal = [&](const double* a) {
    return a[0] * a[0] * sx + a[1] * a[1] * sy + a[2] * a[2] * sz + 2.0 * a[0] * a[1] * txy +
           2.0 * a[0] * a[2] * txz + 2.0 * a[1] * a[2] * tyz;
  };
  const auto shear = [&](const double* a, const double* b) {
    return a[0] * b[0] * sx + a[1] * b[1] * sy + a[2] * b[2] * sz +
           (a[0] * b[1] + a[1] * b[0]) * txy + (a[0] * b[2] + a[2] * b[0]) * txz +
           (a[1] * b[2] + a[2] * b[1]) * tyz;
  };
  return {normal(l), normal(m), normal(n), shear(l, m), shear(l, n), shear(m, n)};
}

double EquivalentStress(const StressVector& s) {
  const double xy = s[0] - s[1], yz = s[1] - s[2], zx = s[2] - s[0];
  return std::sqrt(0.5 *
                   (xy * xy + yz * yz + zx * zx + 6.0 * (s[3] * s[3] + s[4] * s[4] + s[5] * s[5])));
}

}  // namespace korvex
