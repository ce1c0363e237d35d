#include "cases/self_weight.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "beam/beam_frame.h"
#include "cases/load_tables.h"

namespace kvx {

namespace {

using korvex::Vector3;

// Fx, Fy, Fz, Mx, My, Mz of each node, global.
using NodeForces = std::vector<std::array<double, 6>>;

double Dot(const Vector3& a, const double* b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

void AddForce(const Vector3& force, std::int32_t node, NodeForces& forces) {
  std::array<double, 6>& sum = forces[static_cast<std::size_t>(node)];
  for (std::size_t i = 0; i < 3; ++i) sum[i] += force[i];
}

void AddMoment(const Vector3& moment, std::int32_t node, NodeForces& forces) {
  std::array<double, 6>& sum = forces[static_cast<std::size_t>(node)];
  for (std::size_t i = 0; i < 3; ++i) sum[3 + i] += moment[i];
}

Vector3 Scaled(double factor, const Vector3& v) {
  return {factor * v[0], factor * v[1], factor * v[2]};
}

Vector3 PlaceOf(const korvex::ModelTables& tables, std::int32_t node) {
  const korvex::Node& at = tables.Nodes[static_cast<std::size_t>(node)];
  return {at.x, at.y, at.z};
}

double TriangleArea(const Vector3& a, const Vector3& b, const Vector3& c) {
  return 0.5 * korvex::Length(korvex::Cross(korvex::Subtract(b, a), korvex::Subtract(c, a)));
}

// Density x thickness of a shell.
double SurfaceMass(const korvex::ModelTables& tables, const korvex::ShellRowProperties& shell) {
  return tables.Materials[static_cast<std::size_t>(shell.material)].Density *
         tables.ShellThicknesses[static_cast<std::size_t>(shell.thickness)].TK;
}

void AddShells4(const korvex::ModelTables& tables, const Vector3& acceleration,
                NodeForces& forces) {
  for (std::size_t row = 0; row < tables.Shell4Properties.size(); ++row) {
    const std::int32_t* nodes = &tables.Shell4Nodes[row * korvex::NodesPerShell4];
    const double mass = SurfaceMass(tables, tables.Shell4Properties[row]);
    std::array<double, 4> corners{};  // A_i
    for (std::size_t i = 0; i < 4; ++i) {
      corners[i] = TriangleArea(PlaceOf(tables, nodes[i]), PlaceOf(tables, nodes[(i + 1) % 4]),
                                PlaceOf(tables, nodes[(i + 3) % 4]));
    }
    for (std::size_t i = 0; i < 4; ++i) {
      const double area = (corners[(i + 3) % 4] + corners[i] + corners[(i + 1) % 4]) / 6.0;
      AddForce(Scaled(mass * area, acceleration), nodes[i], forces);
    }
  }
}

void AddShells3(const korvex::ModelTables& tables, const Vector3& acceleration,
                NodeForces& forces) {
  for (std::size_t row = 0; row < tables.Shell3Properties.size(); ++row) {
    const std::int32_t* nodes = &tables.Shell3Nodes[row * korvex::NodesPerShell3];
    const double A = TriangleArea(PlaceOf(tables, nodes[0]), PlaceOf(tables, nodes[1]),
                                  PlaceOf(tables, nodes[2]));
    const double mass = SurfaceMass(tables, tables.Shell3Properties[row]) * A;
    for (std::size_t i = 0; i < 3; ++i) {
      AddForce(Scaled(mass / 3.0, acceleration), nodes[i], forces);
    }
  }
}

// Nodal loads of a beam, and its line load along local z.
double AddBeam(const korvex::BeamElement& beam, const Vector3& weight, const std::int32_t* nodes,
               NodeForces& forces) {
  korvex::BeamFrame frame;
  korvex::ComputeBeamFrame(beam, frame);
  const double* y = frame.data() + 3;
  const double* z = frame.data() + 6;
  const double L = korvex::BeamLength(beam);
  const double gy = Dot(weight, y), gz = Dot(weight, z);
  Vector3 e{}, across{}, fixedEnd{};
  for (std::size_t i = 0; i < 3; ++i) {
    e[i] = beam.Section.Ey * y[i] + beam.Section.Ez * z[i];
    across[i] = weight[i] - gz * z[i];  // along x and y
    fixedEnd[i] = gy * L * L / 12.0 * z[i];
  }
  for (std::size_t end = 0; end < 2; ++end) {
    AddForce(Scaled(0.5 * L, across), nodes[end], forces);
    AddMoment(korvex::Cross(e, Scaled(0.5 * L, weight)), nodes[end], forces);
    AddMoment(Scaled(end == 0 ? 1.0 : -1.0, fixedEnd), nodes[end], forces);
  }
  return gz;
}

void AddBeams(const korvex::Model& model, const Vector3& acceleration, NodeForces& forces,
              korvex::ModelTables& loads) {
  const korvex::ModelTables& tables = model.Tables;
  for (std::size_t row = 0; row < model.BeamElements.size(); ++row) {
    if (!korvex::HasSectionTable(tables.BeamSectionRefs[row].BeamSecType)) continue;
    const korvex::BeamElement& beam = model.BeamElements[row];
    const auto material = static_cast<std::size_t>(tables.BeamProperties[row].material);
    const Vector3 weight =
        Scaled(tables.Materials[material].Density * beam.Section.A, acceleration);
    const double q = AddBeam(beam, weight, &tables.BeamNodes[row * korvex::NodesPerBeam], forces);
    if (q == 0.0) continue;
    loads.BeamLineLoads.push_back({static_cast<std::int32_t>(row), {q, q}});
  }
}

bool IsZero(const std::array<double, 6>& force) {
  return std::all_of(force.begin(), force.end(), [](double f) { return f == 0.0; });
}

}  // namespace

void AddSelfWeight(const korvex::Model& model, const Vector3& acceleration,
                   korvex::ModelTables& loads) {
  NodeForces forces(model.Tables.Nodes.size(), std::array<double, 6>{});
  korvex::ModelTables weight;
  AddShells4(model.Tables, acceleration, forces);
  AddShells3(model.Tables, acceleration, forces);
  AddBeams(model, acceleration, forces, weight);
  for (std::size_t node = 0; node < forces.size(); ++node) {
    if (IsZero(forces[node])) continue;
    weight.NodalForces.push_back({static_cast<std::int32_t>(node), forces[node]});
  }
  AddScaledLoads(weight, 1.0, loads);
}

}  // namespace kvx
