#include "support/force_method.h"

#include <algorithm>
#include <cmath>

#include "support/dof_names.h"

namespace korvex::test {

namespace {

Real Dot(const Real3& a, const Real3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

Real3 Plus(const Real3& a, Real s, const Real3& b) {
  return {a[0] + s * b[0], a[1] + s * b[1], a[2] + s * b[2]};
}

Real3 Across(const Real3& a, const Real3& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Real3 Unit(const Real3& a) { return Plus({0, 0, 0}, 1 / std::sqrt(Dot(a, a)), a); }

struct Axes {
  Real3 x, y, z;
};

// z is the normalised part of the orientation vector that is normal to the axis x; y = z x x.
Axes MemberAxes(const BeamChain& chain, std::size_t member) {
  const Real3 x = Unit(Plus(chain.points[member + 1], -1, chain.points[member]));
  const Real3& v = chain.orientations[member];
  const Real3 z = Unit(Plus(v, -Dot(v, x), x));
  return {x, Across(z, x), z};
}

// N, Vy, Vz, T, My, Mz at `point` of a member with axes `axes`, of a load at `from`.
Real6 SectionForces(const Axes& axes, const Real3& point, const Real3& from, const Real6& load) {
  const Real3 force{load[Fx], load[Fy], load[Fz]};
  const Real3 couple{load[Mx], load[My], load[Mz]};
  const Real3 moment = Plus(couple, 1, Across(Plus(from, -1, point), force));
  return {Dot(force, axes.x),  Dot(force, axes.y),  Dot(force, axes.z),
          Dot(moment, axes.x), Dot(moment, axes.y), Dot(moment, axes.z)};
}

// The integral over one member of the products of two loads' section forces over the rigidities.
Real MemberWork(const BeamChain& chain, std::size_t member, const Real3& fromA, const Real6& a,
                const Real3& fromB, const Real6& b) {
  const SectionNumbers& s = chain.sections[member];
  const Axes axes = MemberAxes(chain, member);
  const Real3 span = Plus(chain.points[member + 1], -1, chain.points[member]);
  const Real3 start = Plus(Plus(chain.points[member], s.ey, axes.y), s.ez, axes.z);
  const Real G = chain.E / (2 * (1 + chain.Mu));
  const Real6 rigidity{chain.E * s.A, G * s.shearAreaY, G * s.shearAreaZ,
                       G * s.J,       chain.E * s.Iy,   chain.E * s.Iz};
  Real sum = 0;
  for (int station = 0; station <= 2; ++station) {
    const Real3 point = Plus(start, static_cast<Real>(station) / 2, span);
    const Real6 fa = SectionForces(axes, point, fromA, a);
    const Real6 fb = SectionForces(axes, point, fromB, b);
    const Real weight = station == 1 ? 4 : 1;
    for (std::size_t i = 0; i < 6; ++i) {
      if (rigidity[i] != 0) sum += weight * fa[i] * fb[i] / rigidity[i];
    }
  }
  return sum * std::sqrt(Dot(span, span)) / 6;
}

Real6 UnitLoad(std::size_t direction) {
  Real6 load{};
  load[direction] = 1;
  return load;
}

}  // namespace

Real6 SolveSix(std::array<Real6, 6> A, Real6 b) {
  for (std::size_t k = 0; k < 6; ++k) {
    std::size_t pivot = k;
    for (std::size_t i = k + 1; i < 6; ++i) {
      if (std::fabs(A[i][k]) > std::fabs(A[pivot][k])) pivot = i;
    }
    std::swap(A[k], A[pivot]);
    std::swap(b[k], b[pivot]);
    for (std::size_t i = k + 1; i < 6; ++i) {
      const Real factor = A[i][k] / A[k][k];
      for (std::size_t j = k; j < 6; ++j) A[i][j] -= factor * A[k][j];
      b[i] -= factor * b[k];
    }
  }
  for (std::size_t k = 6; k-- > 0;) {
    for (std::size_t j = k + 1; j < 6; ++j) b[k] -= A[k][j] * b[j];
    b[k] /= A[k][k];
  }
  return b;
}

Real6 DisplaceCantilever(const BeamChain& chain, int at, int loaded, const Real6& load) {
  const auto a = static_cast<std::size_t>(at);
  const auto b = static_cast<std::size_t>(loaded);
  Real6 displacement{};
  for (std::size_t direction = 0; direction < 6; ++direction) {
    for (std::size_t member = 0; member < std::min(a, b); ++member) {
      displacement[direction] +=
          MemberWork(chain, member, chain.points[a], UnitLoad(direction), chain.points[b], load);
    }
  }
  return displacement;
}

Real6 ClampPortal(const BeamChain& chain, int loaded, const Real6& load) {
  const int end = static_cast<int>(chain.points.size()) - 1;
  std::array<Real6, 6> flexibility{};
  for (std::size_t direction = 0; direction < 6; ++direction) {
    const Real6 column = DisplaceCantilever(chain, end, end, UnitLoad(direction));
    for (std::size_t i = 0; i < 6; ++i) flexibility[i][direction] = column[i];
  }
  Real6 gap = DisplaceCantilever(chain, end, loaded, load);
  for (Real& value : gap) value = -value;
  return SolveSix(flexibility, gap);
}

Real6 DisplacePortal(const BeamChain& chain, int at, int loaded, const Real6& load) {
  const int end = static_cast<int>(chain.points.size()) - 1;
  const Real6 redundant = ClampPortal(chain, loaded, load);

  Real6 displacement = DisplaceCantilever(chain, at, loaded, load);
  const Real6 restrained = DisplaceCantilever(chain, at, end, redundant);
  for (std::size_t i = 0; i < 6; ++i) displacement[i] += restrained[i];
  return displacement;
}

}  // namespace korvex::test
