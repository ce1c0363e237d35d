// The beam is taken in its own axes, with its nodes moved to the centroids: BeamStiffness of such a
// beam has no large entries that cancel. The motion of the first node is taken off as that of a
// rigid body, for the same reason. The stiffness times what remains is the force at the second end;
// the line load's equivalent nodal loads are taken off it. Statics does the rest, so that ends and
// loads of a beam balance to rounding.
#include "audit/section_forces.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "base/dof_counts.h"
#include "beam/beam_line_load.h"
#include "beam/beam_stiffness.h"
#include "deck/check_reference.h"
#include "report/stop.h"

namespace kvx {

namespace {

using korvex::BeamElement;
using korvex::BeamFrame;
using korvex::Vector3;

// Places closer than this part of the length are one: what rounding parts belongs together.
constexpr double SamePlace = 1e-9;

// `global` by its components along the local axes.
Vector3 ToLocal(const BeamFrame& frame, const Vector3& global) {
  Vector3 local{};
  for (std::size_t r = 0; r < 3; ++r) {
    for (std::size_t c = 0; c < 3; ++c) local[r] += frame[3 * r + c] * global[c];
  }
  return local;
}

Vector3 Add(const Vector3& a, const Vector3& b) { return {a[0] + b[0], a[1] + b[1], a[2] + b[2]}; }

// The beam along its own x, on the line of its centroids.
BeamElement LayAlongX(const BeamElement& beam, double L) {
  BeamElement own = beam;
  own.NodeI = {0.0, 0.0, 0.0};
  own.NodeJ = {L, 0.0, 0.0};
  own.RefPoint = {0.0, 0.0, 1.0};
  own.Section.Ex = own.Section.Ey = own.Section.Ez = 0.0;
  return own;
}

// The motion of the second centroid against the first end, local axes: three displacements, three
// rotations. A motion of the beam as a rigid body gives zeros.
std::array<double, 6> RelativeMotion(const BeamElement& beam, const BeamFrame& frame, double L,
                                     const double* u1, const double* u2) {
  const Vector3 e{beam.Section.Ex, beam.Section.Ey, beam.Section.Ez};
  const Vector3 rotation1 = ToLocal(frame, {u1[3], u1[4], u1[5]});
  const Vector3 turn = ToLocal(frame, {u2[3] - u1[3], u2[4] - u1[4], u2[5] - u1[5]});
  const Vector3 way = ToLocal(frame, {u2[0] - u1[0], u2[1] - u1[1], u2[2] - u1[2]});
  const Vector3 nodes = korvex::Subtract(way, korvex::Cross(rotation1, {L, 0.0, 0.0}));
  const Vector3 centroids = Add(nodes, korvex::Cross(turn, e));
  return {centroids[0], centroids[1], centroids[2], turn[0], turn[1], turn[2]};
}

// The section forces at the second end: stiffness times motion, less the equivalent nodal loads,
// which act at the node: moving a force F from node to centroid takes e x F off the moment.
SectionForces ForcesAtSecondEnd(const BeamElement& beam, const BeamFrame& frame, double L,
                                const double* u1, const double* u2,
                                const std::array<double, 2>& q) {
  const BeamElement own = LayAlongX(beam, L);
  korvex::BeamMatrix K;
  korvex::BeamStiffness(own, K.data());
  std::array<double, korvex::BeamDofs> f{};
  korvex::BeamLineLoadVector(own, {0, q}, f.data());

  const Vector3 e{beam.Section.Ex, beam.Section.Ey, beam.Section.Ez};
  const Vector3 force{f[6], f[7], f[8]};
  const Vector3 moment = korvex::Subtract({f[9], f[10], f[11]}, korvex::Cross(e, force));
  SectionForces end{-force[0], -force[1], -force[2], -moment[0], -moment[1], -moment[2]};
  const std::array<double, 6> motion = RelativeMotion(beam, frame, L, u1, u2);
  for (std::size_t r = 0; r < 6; ++r) {
    for (std::size_t c = 0; c < 6; ++c) end[r] += K[(6 + r) * 12 + 6 + c] * motion[c];
  }
  return end;
}

// The integrals of Vz' = -q, T' = Ey q, My' = Vz, Mz' = -Vy from the second end.
void IntegrateCurves(const SectionForces& end, double Ey, BeamForces& forces) {
  const double L = forces.length;
  const double q1L = forces.q[0] * L, dqL = (forces.q[1] - forces.q[0]) * L;
  const double load = q1L + dqL / 2.0;
  const double Vz1 = end[ForceVz] + load;
  forces.curves[ForceN] = {end[ForceN], 0.0, 0.0, 0.0};
  forces.curves[ForceVy] = {end[ForceVy], 0.0, 0.0, 0.0};
  forces.curves[ForceVz] = {Vz1, -q1L, -dqL / 2.0, 0.0};
  forces.curves[MomentT] = {end[MomentT] - Ey * load, Ey * q1L, Ey * dqL / 2.0, 0.0};
  forces.curves[MomentMy] = {end[MomentMy] - Vz1 * L + (q1L / 2.0 + dqL / 6.0) * L, Vz1 * L,
                             -q1L * L / 2.0, -dqL * L / 6.0};
  forces.curves[MomentMz] = {end[MomentMz] + end[ForceVy] * L, -end[ForceVy] * L, 0.0, 0.0};
}

// Throws a Stop unless there are `expected` items.
void CheckSize(const char* what, std::size_t found, std::int32_t expected) {
  const auto count = static_cast<std::size_t>(std::max(expected, 0));
  if (found == count) return;
  throw korvex::Stop{korvex::StopKind::Notice, "There are " + std::to_string(found) + ' ' + what +
                                                   "; the model needs " + std::to_string(count) +
                                                   '.'};
}

void CheckSizes(const korvex::Model& model) {
  const korvex::ModelTables& tables = model.Tables;
  const std::size_t displacements = model.Displacements.size();
  if (displacements % korvex::DofsPerNode != 0) {
    throw korvex::Stop{korvex::StopKind::Notice, "There are " + std::to_string(displacements) +
                                                     " displacements, not six for each node."};
  }
  CheckSize("nodes with displacements", displacements / korvex::DofsPerNode, tables.NPOIN);
  CheckSize("beam elements", model.BeamElements.size(), tables.NELEM_B);
  CheckSize("rows of beam nodes", tables.BeamNodes.size() / korvex::NodesPerBeam, tables.NELEM_B);
}

}  // namespace

SectionForces ForcesAt(const BeamForces& forces, double s) {
  SectionForces values{};
  for (std::size_t c = 0; c < SectionForceCount; ++c) values[c] = Evaluate(forces.curves[c], s);
  return values;
}

std::array<Extremes, SectionForceCount> FindForceExtremes(const BeamForces& forces) {
  std::array<Extremes, SectionForceCount> extremes{};
  for (std::size_t c = 0; c < SectionForceCount; ++c) extremes[c] = FindExtremes(forces.curves[c]);
  return extremes;
}

std::vector<double> ListStations(const BeamForces& forces, int divisions) {
  const int n = std::max(divisions, 1);
  std::vector<double> stations;
  for (int i = 0; i <= n; ++i) stations.push_back(static_cast<double>(i) / n);
  std::vector<double> flat;
  for (const Cubic& curve : forces.curves) AddFlatPlaces(curve, flat);
  const auto isNear = [&](double s) {
    return std::any_of(stations.begin(), stations.end(),
                       [&](double other) { return std::fabs(other - s) < SamePlace; });
  };
  for (const double s : flat) {
    if (!isNear(s)) stations.push_back(s);
  }
  std::sort(stations.begin(), stations.end());
  return stations;
}

BeamForces ComputeBeamForces(const BeamElement& beam, const double* u1, const double* u2,
                             const std::array<double, 2>& q) {
  BeamForces forces;
  forces.length = korvex::BeamLength(beam);
  forces.q = q;
  korvex::ComputeBeamFrame(beam, forces.frame);
  const SectionForces end = ForcesAtSecondEnd(beam, forces.frame, forces.length, u1, u2, q);
  IntegrateCurves(end, beam.Section.Ey, forces);
  return forces;
}

void SumLineLoads(const korvex::ModelTables& tables, std::vector<std::array<double, 2>>& loads) {
  loads.assign(static_cast<std::size_t>(std::max(tables.NELEM_B, 0)), {0.0, 0.0});
  for (std::size_t row = 0; row < tables.BeamLineLoads.size(); ++row) {
    const korvex::BeamLineLoad& load = tables.BeamLineLoads[row];
    korvex::CheckReference("Distributed load on beam elements", static_cast<std::int32_t>(row),
                           "element", load.element, {"beam elements", tables.NELEM_B});
    std::array<double, 2>& sum = loads[static_cast<std::size_t>(load.element)];
    sum[0] += load.q[0];
    sum[1] += load.q[1];
  }
}

void ComputeBeamForces(const korvex::Model& model, std::vector<BeamForces>& forces) {
  CheckSizes(model);
  std::vector<std::array<double, 2>> loads;
  SumLineLoads(model.Tables, loads);
  forces.clear();
  forces.reserve(model.BeamElements.size());
  for (std::size_t b = 0; b < model.BeamElements.size(); ++b) {
    std::array<const double*, 2> u{};
    for (std::size_t end = 0; end < 2; ++end) {
      const std::int32_t node = model.Tables.BeamNodes[b * korvex::NodesPerBeam + end];
      korvex::CheckReference("Beam element", static_cast<std::int32_t>(b), "node", node,
                             {"nodal points", model.Tables.NPOIN});
      u[end] = &model.Displacements[static_cast<std::size_t>(node) * korvex::DofsPerNode];
    }
    forces.push_back(ComputeBeamForces(model.BeamElements[b], u[0], u[1], loads[b]));
  }
}

}  // namespace kvx
