#include "mesh/equivalent_loads.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "shell/bilinear_map.h"
#include "shell/element_frame.h"

namespace kvx {

namespace {

using korvex::Vector3;

// A fourth pressure within this part of the largest one is in the plane of the others: it differs
// by the rounding of the extrapolation alone.
constexpr double InPlane = 1e-9;

// Corners 1, 2, 3 whose edges enclose an angle of less than this sine lie on a line: the solver
// cannot extrapolate from them to corner 4.
constexpr double Collinear = 1e-4;

// Directions that differ by less are the same: the rounding of local axes lies far below.
constexpr double SameDirection = 1e-9;

// Vectors with a smaller sine between them are parallel: decks have seven digits at most in a field
// of eight. What is nearly parallel is for the check of the model.
constexpr double ParallelSine = 1e-6;

// A load ends at the beam's end if no more than this part of the length is between them: decks give
// lengths with seven digits.
constexpr double AtTheEnd = 1e-6;

double Dot(const Vector3& a, const Vector3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

Vector3 Scale(double factor, const Vector3& a) {
  return {factor * a[0], factor * a[1], factor * a[2]};
}

Vector3 Add(const Vector3& a, const Vector3& b) { return {a[0] + b[0], a[1] + b[1], a[2] + b[2]}; }

void AddNodal(std::int32_t node, const Vector3& force, const Vector3& moment, ImportCase& loads) {
  const std::array<double, 6> all{force[0], force[1], force[2], moment[0], moment[1], moment[2]};
  if (std::all_of(all.begin(), all.end(), [](double x) { return x == 0.0; })) return;
  loads.forces.push_back({node, all});
}

// A quadrilateral in the plane of its frame, as the solver has it.
struct FlatQuad {
  std::array<Vector3, 4> corners{};  // local: x, y, 0; the origin is corner 1
  Vector3 e3{};                      // global
};

FlatQuad FlattenQuad(const std::array<Vector3, 4>& corners) {
  korvex::ElementFrame frame;
  korvex::ComputeElementFrame(corners[0], corners[1], corners[3], frame);
  FlatQuad quad;
  quad.e3 = {frame[2], frame[5], frame[8]};
  for (std::size_t k = 0; k < 4; ++k) {
    const Vector3 d = korvex::Subtract(corners[k], corners[0]);
    quad.corners[k] = {Dot(d, {frame[0], frame[3], frame[6]}),
                       Dot(d, {frame[1], frame[4], frame[7]}), 0.0};
  }
  return quad;
}

// Finds the value at corner 4 of the plane through those at 1, 2, 3, by area coordinates. Returns
// false where these corners lie on a line.
bool ExtrapolateToCorner4(const FlatQuad& quad, const std::array<double, 4>& q, double& q4) {
  const auto& at = quad.corners;
  const Vector3 edge = korvex::Subtract(at[2], at[1]);
  const double whole = at[1][0] * at[2][1] - at[2][0] * at[1][1];
  if (!(std::fabs(whole) > Collinear * korvex::Length(at[1]) * korvex::Length(edge))) return false;
  const double L2 = (at[3][0] * at[2][1] - at[2][0] * at[3][1]) / whole;
  const double L3 = (at[1][0] * at[3][1] - at[3][0] * at[1][1]) / whole;
  q4 = q[0] + L2 * (q[1] - q[0]) + L3 * (q[2] - q[0]);
  return true;
}

// The integrals of N_k q over the quadrilateral, which may be warped, q bilinear. With 2 x 2 points
// exact for a flat one: N q times the area's factor has the degree 3 in each direction.
std::array<double, 4> LumpQuad(const std::array<Vector3, 4>& corners,
                               const std::array<double, 4>& q) {
  std::array<double, 4> w{};
  for (const double xi : korvex::GaussPoints) {
    for (const double eta : korvex::GaussPoints) {
      korvex::Array4 N;
      korvex::Matrix2x4 dN;
      korvex::BilinearFunctions(xi, eta, N);
      korvex::BilinearDerivatives(xi, eta, dN);
      Vector3 alongXi{}, alongEta{};
      for (std::size_t k = 0; k < 4; ++k) {
        const Vector3 d = korvex::Subtract(corners[k], corners[0]);
        alongXi = Add(alongXi, Scale(dN[k], d));
        alongEta = Add(alongEta, Scale(dN[4 + k], d));
      }
      const double area = korvex::Length(korvex::Cross(alongXi, alongEta));
      const double value = N[0] * q[0] + N[1] * q[1] + N[2] * q[2] + N[3] * q[3];
      for (std::size_t k = 0; k < 4; ++k) w[k] += area * value * N[k];
    }
  }
  return w;
}

// The same over a triangle: area / 12 times (the sum of all values and the corner's own).
std::array<double, 4> LumpTriangle(const std::array<Vector3, 4>& corners,
                                   const std::array<double, 4>& q) {
  const Vector3 n = korvex::Cross(korvex::Subtract(corners[1], corners[0]),
                                  korvex::Subtract(corners[2], corners[0]));
  const double twelfth = korvex::Length(n) / 2.0 / 12.0, sum = q[0] + q[1] + q[2];
  return {twelfth * (sum + q[0]), twelfth * (sum + q[1]), twelfth * (sum + q[2]), 0.0};
}

void FindCorners(const ImportModel& model, const ImportShell& shell,
                 std::array<Vector3, 4>& corners) {
  corners = {};
  for (std::size_t k = 0; k < CornersOf(shell); ++k) corners[k] = PlaceOf(model, shell.nodes[k]);
}

void AddCornerForces(const ImportShell& shell, const std::array<double, 4>& w,
                     const Vector3& direction, ImportCase& loads) {
  for (std::size_t k = 0; k < CornersOf(shell); ++k) {
    AddNodal(shell.nodes[k], Scale(w[k], direction), {}, loads);
  }
}

void AddRow(std::int32_t shell, const std::array<double, 4>& q, ImportCase& loads) {
  if (q[0] == 0.0 && q[1] == 0.0 && q[2] == 0.0) return;
  loads.pressures.push_back({shell, {q[0], q[1], q[2]}});
}

// The functions of a beam and their slopes at s = x / L. Displacement across the axis: a[0] u1 +
// b[0] u1' + a[1] u2 + b[1] u2'.
struct BeamFunctions {
  std::array<double, 2> linear{}, a{}, b{}, slopeA{}, slopeB{};
};

BeamFunctions FunctionsAt(double s, double L) {
  BeamFunctions at;
  const double s2 = s * s, s3 = s2 * s;
  at.linear = {1.0 - s, s};
  at.a = {1.0 - 3.0 * s2 + 2.0 * s3, 3.0 * s2 - 2.0 * s3};
  at.b = {L * (s - 2.0 * s2 + s3), L * (s3 - s2)};
  at.slopeA = {6.0 * (s2 - s) / L, 6.0 * (s - s2) / L};
  at.slopeB = {1.0 - 4.0 * s + 3.0 * s2, 3.0 * s2 - 2.0 * s};
  return at;
}

struct EndLoads {
  std::array<Vector3, 2> force{}, moment{};
};

// Adds the share of a single force or moment at s. x: the beam's axis. A rotation across the axis
// is x times the slope (vector product), a slope the rotation times x: no other axes are needed.
void AddSingle(double s, double L, const Vector3& x, bool isMoment, const Vector3& value,
               EndLoads& ends) {
  const BeamFunctions at = FunctionsAt(s, L);
  const Vector3 along = Scale(Dot(value, x), x);
  const Vector3 across = korvex::Subtract(value, along);
  const Vector3 turned = isMoment ? korvex::Cross(across, x) : korvex::Cross(x, across);
  for (std::size_t k = 0; k < 2; ++k) {
    Vector3& force = ends.force[k];
    Vector3& moment = ends.moment[k];
    if (isMoment) {
      force = Add(force, Scale(at.slopeA[k], turned));
      moment = Add(moment, Add(Scale(at.linear[k], along), Scale(at.slopeB[k], across)));
    } else {
      force = Add(force, Add(Scale(at.linear[k], along), Scale(at.a[k], across)));
      moment = Add(moment, Scale(at.b[k], turned));
    }
  }
}

// Adds the share of a load per length from one place to another: three Gauss points, exact up to
// the degree 5; the cubic times a linear load has the degree 4.
void AddSpan(const BeamSpanLoad& load, double L, const Vector3& x, const Vector3& direction,
             EndLoads& ends) {
  const double outer = std::sqrt(0.6), half = (load.to - load.from) / 2.0;
  constexpr double OuterWeight = 5.0 / 9.0, MiddleWeight = 8.0 / 9.0;
  const std::array<std::array<double, 2>, 3> points{
      {{-outer, OuterWeight}, {0.0, MiddleWeight}, {outer, OuterWeight}}};
  for (const auto& [t, weight] : points) {
    const double s = load.from + half * (1.0 + t);
    const double q = load.qFrom + (load.qTo - load.qFrom) * (1.0 + t) / 2.0;
    AddSingle(s, L, x, load.isMoment, Scale(weight * half * L * q, direction), ends);
  }
}

}  // namespace

void AddPressure(const ImportModel& model, std::int32_t shell, const std::array<double, 4>& q,
                 ImportCase& loads) {
  const ImportShell& row = model.shells[static_cast<std::size_t>(shell)];
  if (CornersOf(row) == 3) return AddRow(shell, q, loads);
  std::array<Vector3, 4> corners;
  FindCorners(model, row, corners);
  const FlatQuad quad = FlattenQuad(corners);
  // A shell without area or plane: the check of the model names it, there is no force to be made.
  if (!std::isfinite(quad.e3[0])) return AddRow(shell, q, loads);
  double q4 = 0.0;
  if (!ExtrapolateToCorner4(quad, q, q4)) {
    return AddCornerForces(row, LumpQuad(quad.corners, q), quad.e3, loads);
  }
  AddRow(shell, q, loads);
  double largest = std::fabs(q4);
  for (const double each : q) largest = std::max(largest, std::fabs(each));
  const double rest = q[3] - q4;
  if (std::fabs(rest) <= InPlane * largest) return;
  AddCornerForces(row, LumpQuad(quad.corners, {0.0, 0.0, 0.0, rest}), quad.e3, loads);
}

double PressureAtCorner4(const ImportModel& model, const ImportPressure& pressure) {
  const auto& q = pressure.q;
  std::array<Vector3, 4> corners;
  FindCorners(model, model.shells[static_cast<std::size_t>(pressure.shell)], corners);
  double q4 = 0.0;
  const bool isPlane = ExtrapolateToCorner4(FlattenQuad(corners), {q[0], q[1], q[2], 0.0}, q4);
  return isPlane ? q4 : q[0] - q[1] + q[2];
}

void AddTraction(const ImportModel& model, std::int32_t shell, const std::array<double, 4>& q,
                 const Vector3& direction, ImportCase& loads) {
  const ImportShell& row = model.shells[static_cast<std::size_t>(shell)];
  std::array<Vector3, 4> corners;
  FindCorners(model, row, corners);
  const bool isTriangle = CornersOf(row) == 3;
  AddCornerForces(row, isTriangle ? LumpTriangle(corners, q) : LumpQuad(corners, q), direction,
                  loads);
}

std::array<Vector3, 3> BeamAxes(const ImportModel& model, const ImportBeam& beam) {
  const Vector3 d = korvex::Subtract(PlaceOf(model, beam.nodes[1]), PlaceOf(model, beam.nodes[0]));
  const double length = korvex::Length(d), size = korvex::Length(beam.orientation);
  if (!(length > 0.0)) return {};
  const Vector3 x = Scale(1.0 / length, d);
  if (!(size > 0.0)) return {x, Vector3{}, Vector3{}};
  const Vector3 c = korvex::Cross(Scale(1.0 / size, beam.orientation), x);
  if (!(korvex::Length(c) > ParallelSine)) return {x, Vector3{}, Vector3{}};
  const Vector3 y = korvex::Normalise(c);
  return {x, y, korvex::Normalise(korvex::Cross(x, y))};
}

bool AddBeamLoad(const ImportModel& model, const BeamSpanLoad& load, ImportCase& loads) {
  const ImportBeam& beam = model.beams[static_cast<std::size_t>(load.beam)];
  const Vector3 d = korvex::Subtract(PlaceOf(model, beam.nodes[1]), PlaceOf(model, beam.nodes[0]));
  const double L = korvex::Length(d);
  if (!(L > 0.0)) return false;
  const auto [x, y, z] = BeamAxes(model, beam);
  Vector3 direction = load.direction;
  const double alongZ = Dot(direction, z);
  const bool isWhole = !load.isMoment && load.from < AtTheEnd && load.to > 1.0 - AtTheEnd;
  if (isWhole && std::fabs(alongZ) > SameDirection) {
    if (load.qFrom != 0.0 || load.qTo != 0.0) {
      loads.lineLoads.push_back({load.beam, {alongZ * load.qFrom, alongZ * load.qTo}});
    }
    direction = korvex::Subtract(direction, Scale(alongZ, z));
    if (korvex::Length(direction) <= SameDirection) return true;
  }
  EndLoads ends;
  if (load.from == load.to) {
    AddSingle(load.from, L, x, load.isMoment, Scale(load.qFrom, direction), ends);
  } else {
    AddSpan(load, L, x, direction, ends);
  }
  for (std::size_t k = 0; k < 2; ++k) AddNodal(beam.nodes[k], ends.force[k], ends.moment[k], loads);
  return false;
}

}  // namespace kvx
