#include "mesh/sum_loads.h"

#include <cstddef>
#include <vector>

namespace kvx::test {

namespace {

using korvex::Vector3;

Vector3 Add(const Vector3& a, double factor, const Vector3& b) {
  return {a[0] + factor * b[0], a[1] + factor * b[1], a[2] + factor * b[2]};
}

double Dot(const Vector3& a, const Vector3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

void AddForceAt(const Vector3& place, const Vector3& force, LoadSums& sums) {
  const Vector3 moment = korvex::Cross(place, force);
  for (std::size_t k = 0; k < 3; ++k) {
    sums[k] += force[k];
    sums[3 + k] += moment[k];
  }
}

// A pressure q, linear over a triangle, along n: the rule with the three midpoints of the edges.
void AddTriangle(const std::array<Vector3, 3>& x, const std::array<double, 3>& q, const Vector3& n,
                 LoadSums& sums) {
  const double area =
      korvex::Length(korvex::Cross(korvex::Subtract(x[1], x[0]), korvex::Subtract(x[2], x[0]))) /
      2.0;
  for (std::size_t k = 0; k < 3; ++k) {
    const std::size_t next = (k + 1) % 3;
    const Vector3 middle = Add(Add({}, 0.5, x[k]), 0.5, x[next]);
    AddForceAt(middle, Add({}, area / 3.0 * (q[k] + q[next]) / 2.0, n), sums);
  }
}

void AddPressureSums(const ImportModel& model, const ImportPressure& load, LoadSums& sums) {
  const ImportShell& shell = model.shells[static_cast<std::size_t>(load.shell)];
  std::vector<Vector3> x;
  for (const std::int32_t node : shell.nodes) {
    if (node >= 0) x.push_back(PlaceOf(model, node));
  }
  const Vector3 a = korvex::Subtract(x[1], x[0]), b = korvex::Subtract(x.back(), x[0]);
  const Vector3 n = korvex::Normalise(korvex::Cross(a, b));
  AddTriangle({x[0], x[1], x[2]}, load.q, n, sums);
  if (x.size() == 3) return;
  // q at the fourth corner: of the plane through the others, by areas.
  const auto areaOf = [&n](const Vector3& p, const Vector3& q, const Vector3& r) {
    return Dot(n, korvex::Cross(korvex::Subtract(q, p), korvex::Subtract(r, p)));
  };
  const double whole = areaOf(x[0], x[1], x[2]);
  const double q4 = (load.q[0] * areaOf(x[3], x[1], x[2]) + load.q[1] * areaOf(x[0], x[3], x[2]) +
                     load.q[2] * areaOf(x[0], x[1], x[3])) /
                    whole;
  AddTriangle({x[0], x[2], x[3]}, {load.q[0], load.q[2], q4}, n, sums);
}

void AddLineSums(const ImportModel& model, const korvex::BeamLineLoad& load, LoadSums& sums) {
  const ImportBeam& beam = model.beams[static_cast<std::size_t>(load.element)];
  const Vector3 a = PlaceOf(model, beam.nodes[0]), b = PlaceOf(model, beam.nodes[1]);
  const Vector3 d = korvex::Subtract(b, a), x = korvex::Normalise(d);
  const Vector3 z = korvex::Normalise(Add(beam.orientation, -Dot(beam.orientation, x), x));
  const double L = korvex::Length(d), mean = (load.q[0] + load.q[1]) / 2.0;
  AddForceAt(a, Add({}, L / 6.0 * load.q[0], z), sums);
  AddForceAt(Add(a, 0.5, d), Add({}, L * 4.0 / 6.0 * mean, z), sums);
  AddForceAt(b, Add({}, L / 6.0 * load.q[1], z), sums);
}

}  // namespace

LoadSums SumLoads(const ImportModel& model, const ImportCase& loads) {
  LoadSums sums{};
  for (const korvex::NodalForce& row : loads.forces) {
    const auto& f = row.components;
    AddForceAt(PlaceOf(model, row.node), {f[0], f[1], f[2]}, sums);
    for (std::size_t k = 3; k < 6; ++k) sums[k] += f[k];
  }
  for (const ImportPressure& row : loads.pressures) AddPressureSums(model, row, sums);
  for (const korvex::BeamLineLoad& row : loads.lineLoads) AddLineSums(model, row, sums);
  return sums;
}

}  // namespace kvx::test
