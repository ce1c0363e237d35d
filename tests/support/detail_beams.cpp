#include "support/detail_beams.h"

#include <cmath>

#include "beamshell/extrude_outline.h"
#include "shell/shell_stiffness.h"
#include "support/dof_names.h"

namespace korvex::test {

namespace {

// The normal stress in the direction of the unit vector x.
double AxialStress(const StressVector& s, const Vector3& x) {
  return x[0] * x[0] * s[SX] + x[1] * x[1] * s[SY] + x[2] * x[2] * s[SZ] +
         2 * (x[0] * x[1] * s[TXY] + x[0] * x[2] * s[TXZ] + x[1] * x[2] * s[TYZ]);
}

}  // namespace

SectionOutline BuildOutline(const TestSection& section, std::int32_t meshLevel) {
  const auto& d = section.dimensions;
  SectionOutline outline;
  if (section.BeamSecType == BeamSecTypeT)
    BuildTOutline({d[0], d[1], d[2], d[3]}, meshLevel, outline);
  if (section.BeamSecType == BeamSecTypeL) {
    BuildLOutline({d[0], d[1], d[2], d[3]}, section.mirrored, meshLevel, outline);
  }
  if (section.BeamSecType == BeamSecTypeC) BuildCOutline({d[0], d[1]}, meshLevel, outline);
  ShiftOutline(section.BeamSecOz, outline);
  return outline;
}

void ExtrudeBeam(const DetailBeam& beam, BeamShellModel& model) {
  model.MeshLevel = beam.meshLevel;
  model.E = beam.E;
  model.Mu = beam.Mu;
  model.EndPoint1 = beam.end1;
  model.EndPoint2 = beam.end2;
  model.OrientVector = beam.orientation;
  model.Tolerance = Length(Subtract(beam.end2, beam.end1)) / 10000.0;
  ExtrudeOutline(BuildOutline(beam.section, beam.meshLevel), 0, model);
}

BeamShellModel ExtrudeBeam(const DetailBeam& beam) {
  BeamShellModel model;
  ExtrudeBeam(beam, model);
  return model;
}

std::array<Vector3, 3> LocalAxes(const DetailBeam& beam) {
  const Vector3 x = Normalise(Subtract(beam.end2, beam.end1));
  const double along = Dot(beam.orientation, x);
  Vector3 across{};
  for (std::size_t i = 0; i < 3; ++i) across[i] = beam.orientation[i] - along * x[i];
  const Vector3 z = Normalise(across);
  return {x, Cross(z, x), z};
}

double Dot(const Vector3& a, const Vector3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

Vector3 Combine(const std::array<Vector3, 3>& axes, const Vector3& a) {
  Vector3 sum{};
  for (std::size_t k = 0; k < 3; ++k) {
    for (std::size_t i = 0; i < 3; ++i) sum[i] += a[k] * axes[k][i];
  }
  return sum;
}

Six NodeDisplacements(const BeamShellModel& model, std::size_t node) {
  Six u{};
  for (std::size_t d = 0; d < 6; ++d) u[d] = model.Displacements[Equation(node, d)];
  return u;
}

std::vector<Six> SumShellForces(const BeamShellModel& model) {
  std::vector<Six> forces(model.NodeCoords.size(), Six{});
  std::array<double, 576> K{};
  for (std::size_t e = 0; e < model.Shells.size(); ++e) {
    Shell4Stiffness(model.Shells[e], K.data());
    const std::int32_t* nodes = &model.ShellNodes[4 * e];
    for (std::size_t r = 0; r < 24; ++r) {
      double sum = 0.0;
      for (std::size_t c = 0; c < 24; ++c) {
        sum += K[24 * r + c] * model.Displacements[Equation(nodes[c / 6], c % 6)];
      }
      forces[static_cast<std::size_t>(nodes[r / 6])][r % 6] += sum;
    }
  }
  return forces;
}

std::vector<Reading> ReadMiddle(const BeamShellModel& model, const std::array<Vector3, 3>& axes,
                                const SectionOutline& outline) {
  std::vector<Reading> readings;
  const std::size_t S = outline.segments.size(), n = model.Shells.size() / S;
  for (std::size_t e = 0; e < model.Shells.size(); ++e) {
    const std::size_t step = e / S;
    if (2 * step > n || 2 * (step + 1) < n) continue;
    const OutlineSegment& segment = outline.segments[e % S];
    const Vector3& a = outline.points[static_cast<std::size_t>(segment.points[0])];
    const Vector3& b = outline.points[static_cast<std::size_t>(segment.points[1])];
    const double dy = b[1] - a[1], dz = b[2] - a[2], length = std::hypot(dy, dz);
    const Shell4Element& shell = model.Shells[e];
    for (std::size_t k = 0; k < 4; ++k) {
      const Vector3& point = k < 2 ? a : b;
      const double side = k < 2 ? -0.5 : 0.5;
      for (const double face : {0.5, -0.5}) {
        // The normal is x times the direction of the segment.
        const double h = face * segment.thickness;
        const StressVector& s = face > 0 ? shell.NodeStressTop[k] : shell.NodeStressBottom[k];
        readings.push_back({AxialStress(s, axes[0]), point[1] - h * dz / length,
                            point[2] + h * dy / length, side * dy, side * dz});
      }
    }
  }
  return readings;
}

}  // namespace korvex::test
