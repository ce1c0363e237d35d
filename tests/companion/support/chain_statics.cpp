#include "support/chain_statics.h"

#include <cmath>

namespace kvx::test {

namespace {

Real Dot(const Real3& a, const Real3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

Real3 Plus(const Real3& a, Real s, const Real3& b) {
  return {a[0] + s * b[0], a[1] + s * b[1], a[2] + s * b[2]};
}

Real3 Across(const Real3& a, const Real3& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Real3 Unit(const Real3& a) { return Plus({0, 0, 0}, 1 / std::sqrt(Dot(a, a)), a); }

struct Member {
  Real3 start, span;
  Real length;
  Real3 x, y, z;
};

Member FindMember(const BeamChain& chain, std::size_t m) {
  Member member;
  member.start = chain.points[m];
  member.span = Plus(chain.points[m + 1], -1, chain.points[m]);
  member.length = std::sqrt(Dot(member.span, member.span));
  member.x = Unit(member.span);
  const Real3& v = chain.orientations[m];
  member.z = Unit(Plus(v, -Dot(v, member.x), member.x));
  member.y = Across(member.z, member.x);
  return member;
}

// Adds a force and a couple at `point` to the sum about `center`.
void AddLoad(const Real3& center, const Real3& point, const Real3& force, const Real3& couple,
             Real6& sum) {
  const Real3 moment = Plus(couple, 1, Across(Plus(point, -1, center), force));
  for (std::size_t i = 0; i < 3; ++i) {
    sum[i] += force[i];
    sum[3 + i] += moment[i];
  }
}

// Adds the line load of a member from its part s to its end. Intensities a at s and b at the end,
// length l: the resultant is l (a + b) / 2, its moment about s is l^2 (a + 2 b) / 6.
void AddLine(const Real3& center, const Member& member, const std::array<Real, 2>& q, Real s,
             Real6& sum) {
  const Real l = (1 - s) * member.length, a = q[0] + s * (q[1] - q[0]), b = q[1];
  const Real3 zero{0, 0, 0};
  AddLoad(center, Plus(member.start, s, member.span), Plus(zero, l * (a + b) / 2, member.z),
          Plus(zero, l * l * (a + 2 * b) / 6, Across(member.x, member.z)), sum);
}

}  // namespace

ChainLoads NoLoads(std::size_t members) {
  return {std::vector<Real6>(members + 1, Real6{}),
          std::vector<std::array<Real, 2>>(members, {0, 0})};
}

Real6 CutChain(const BeamChain& chain, const ChainLoads& loads, std::size_t member, Real s) {
  const Member cut = FindMember(chain, member);
  const auto& section = chain.sections[member];
  const Real3 node = Plus(cut.start, s, cut.span);
  const Real3 center = Plus(Plus(node, section.ey, cut.y), section.ez, cut.z);
  Real6 sum{};
  AddLine(center, cut, loads.lines[member], s, sum);
  for (std::size_t m = member + 1; m < chain.sections.size(); ++m) {
    AddLine(center, FindMember(chain, m), loads.lines[m], 0, sum);
  }
  for (std::size_t p = member + 1; p < chain.points.size(); ++p) {
    const Real6& f = loads.nodal[p];
    AddLoad(center, chain.points[p], {f[0], f[1], f[2]}, {f[3], f[4], f[5]}, sum);
  }
  const Real3 force{sum[0], sum[1], sum[2]}, moment{sum[3], sum[4], sum[5]};
  return {Dot(force, cut.x),  Dot(force, cut.y),  Dot(force, cut.z),
          Dot(moment, cut.x), Dot(moment, cut.y), Dot(moment, cut.z)};
}

std::vector<Real6> EquivalentLoads(const BeamChain& chain, const ChainLoads& loads) {
  std::vector<Real6> held(chain.points.size(), Real6{});
  for (std::size_t m = 0; m < chain.sections.size(); ++m) {
    const Member member = FindMember(chain, m);
    const Real L = member.length, q1 = loads.lines[m][0], q2 = loads.lines[m][1];
    const std::array<Real, 2> force{(7 * q1 + 3 * q2) * L / 20, (3 * q1 + 7 * q2) * L / 20};
    const std::array<Real, 2> couple{-(3 * q1 + 2 * q2) * L * L / 60,
                                     (2 * q1 + 3 * q2) * L * L / 60};
    for (std::size_t end = 0; end < 2; ++end) {
      for (std::size_t i = 0; i < 3; ++i) {
        held[m + end][i] += force[end] * member.z[i];
        held[m + end][3 + i] += couple[end] * member.y[i];
      }
    }
  }
  return held;
}

}  // namespace kvx::test
