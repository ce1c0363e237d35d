#include "check/element_region.h"

#include <algorithm>
#include <cmath>

namespace kvx {

using korvex::Cross;
using korvex::Length;
using korvex::Subtract;
using korvex::Vector3;

namespace {

double Dot(const Vector3& a, const Vector3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

Vector3 Scale(double factor, const Vector3& a) {
  return {factor * a[0], factor * a[1], factor * a[2]};
}

Vector3 Add(const Vector3& a, const Vector3& b) { return {a[0] + b[0], a[1] + b[1], a[2] + b[2]}; }

// A direction square to a shell: to both diagonals of a quadrilateral. Not of length 1.
Vector3 NormalOf(const ElementRegion& region) {
  const auto& c = region.corners;
  if (region.cornerCount == 3) return Cross(Subtract(c[1], c[0]), Subtract(c[2], c[0]));
  return Cross(Subtract(c[2], c[0]), Subtract(c[3], c[1]));
}

// The slab of this direction that holds all corners. A direction without a length makes none.
void AddSlab(const Vector3& direction, ElementRegion& region) {
  const double length = Length(direction);
  if (!(length > 0.0)) return;
  Slab slab;
  slab.n = Scale(1.0 / length, direction);
  slab.low = slab.high = Dot(slab.n, region.corners[0]);
  for (std::size_t k = 1; k < region.cornerCount; ++k) {
    const double at = Dot(slab.n, region.corners[k]);
    slab.low = std::min(slab.low, at);
    slab.high = std::max(slab.high, at);
  }
  slab.low -= region.tolerance;
  slab.high += region.tolerance;
  region.slabs[region.slabCount++] = slab;
}

// Distance of the point from the line between two corners.
double DistanceFromEdge(const Vector3& a, const Vector3& b, const Vector3& point) {
  const Vector3 d = Subtract(b, a), v = Subtract(point, a);
  const double square = Dot(d, d);
  const double share = square > 0.0 ? std::clamp(Dot(v, d) / square, 0.0, 1.0) : 0.0;
  return Length(Subtract(v, Scale(share, d)));
}

bool IsInsideTriangle(const ElementRegion& region, const Vector3& normal, const Vector3& point) {
  for (std::size_t k = 0; k < 3; ++k) {
    const Vector3& a = region.corners[k];
    const Vector3 edge = Subtract(region.corners[(k + 1) % 3], a);
    if (!(Dot(Cross(edge, Subtract(point, a)), normal) >= 0.0)) return false;
  }
  return std::abs(Dot(Subtract(point, region.corners[0]), normal)) <=
         region.tolerance * Length(normal);
}

// The point of the bilinear surface at s, t in 0 .. 1, and the derivatives there.
struct SurfacePoint {
  Vector3 place{}, alongS{}, alongT{};
};
SurfacePoint PointAt(const ElementRegion& region, double s, double t) {
  const auto& c = region.corners;
  const Vector3 low = Add(c[0], Scale(s, Subtract(c[1], c[0])));
  const Vector3 high = Add(c[3], Scale(s, Subtract(c[2], c[3])));
  SurfacePoint at;
  at.alongT = Subtract(high, low);
  at.place = Add(low, Scale(t, at.alongT));
  at.alongS = Add(Scale(1.0 - t, Subtract(c[1], c[0])), Scale(t, Subtract(c[2], c[3])));
  return at;
}

// Newton's method for the point of the surface that lies above or below the given one, along the
// normal. It converges from the middle in a few steps where the quadrilateral is convex.
bool IsInsideQuad(const ElementRegion& region, const Vector3& normal, const Vector3& point) {
  constexpr int LargestStepCount = 20;
  constexpr double SmallestStep = 1e-12;
  double s = 0.5, t = 0.5;
  for (int step = 0; step < LargestStepCount; ++step) {
    const SurfacePoint at = PointAt(region, s, t);
    const Vector3 rest = Subtract(point, at.place);
    const double area = Dot(Cross(at.alongS, at.alongT), normal);
    const double ds = Dot(Cross(rest, at.alongT), normal) / area;
    const double dt = Dot(Cross(at.alongS, rest), normal) / area;
    s += ds;
    t += dt;
    if (!(std::abs(ds) + std::abs(dt) > SmallestStep)) break;
  }
  if (!(s >= 0.0 && s <= 1.0 && t >= 0.0 && t <= 1.0)) return false;
  return Length(Subtract(point, PointAt(region, s, t).place)) <= region.tolerance;
}

}  // namespace

void MakeRegion(const std::array<Vector3, 4>& corners, std::size_t cornerCount, double tolerance,
                ElementRegion& region) {
  region.corners = corners;
  region.cornerCount = cornerCount;
  region.tolerance = tolerance;
  region.slabCount = 0;
  region.box = {corners[0], corners[0]};
  for (std::size_t k = 0; k < cornerCount; ++k) {
    for (std::size_t i = 0; i < 3; ++i) {
      region.box.low[i] = std::min(region.box.low[i], corners[k][i] - tolerance);
      region.box.high[i] = std::max(region.box.high[i], corners[k][i] + tolerance);
    }
  }
  if (cornerCount > 2) {
    const Vector3 normal = NormalOf(region);
    AddSlab(normal, region);
    for (std::size_t k = 0; k < cornerCount; ++k) {
      AddSlab(Cross(Subtract(corners[(k + 1) % cornerCount], corners[k]), normal), region);
    }
    return;
  }
  // Two directions square to the beam's axis, and to each other.
  const Vector3 axis = Subtract(corners[1], corners[0]);
  const auto isSmaller = [](double a, double b) { return std::abs(a) < std::abs(b); };
  const auto smallest = static_cast<std::size_t>(
      std::min_element(axis.begin(), axis.end(), isSmaller) - axis.begin());
  Vector3 other{};
  other[smallest] = 1.0;
  const Vector3 across = Cross(axis, other);
  AddSlab(across, region);
  AddSlab(Cross(axis, across), region);
}

bool MayMeet(const ElementRegion& region, const Box& box) {
  for (std::size_t i = 0; i < 3; ++i) {
    if (box.high[i] < region.box.low[i] || box.low[i] > region.box.high[i]) return false;
  }
  for (std::size_t k = 0; k < region.slabCount; ++k) {
    const Slab& slab = region.slabs[k];
    double middle = 0.0, reach = 0.0;
    for (std::size_t i = 0; i < 3; ++i) {
      middle += 0.5 * slab.n[i] * (box.low[i] + box.high[i]);
      reach += 0.5 * std::abs(slab.n[i]) * (box.high[i] - box.low[i]);
    }
    if (middle + reach < slab.low || middle - reach > slab.high) return false;
  }
  return true;
}

Touch FindTouch(const ElementRegion& region, const Vector3& point) {
  for (std::size_t i = 0; i < 3; ++i) {
    if (point[i] < region.box.low[i] || point[i] > region.box.high[i]) return {};
  }
  if (region.slabCount > 0) {
    // Most points in the box are not near the plane, or not near the line.
    const double at = Dot(region.slabs[0].n, point);
    if (at < region.slabs[0].low || at > region.slabs[0].high) return {};
  }
  const std::size_t n = region.cornerCount;
  for (std::size_t k = 0; k < n; ++k) {
    if (Length(Subtract(point, region.corners[k])) <= region.tolerance) return {};
  }
  const std::size_t edges = n == 2 ? 1 : n;
  for (std::size_t k = 0; k < edges; ++k) {
    if (DistanceFromEdge(region.corners[k], region.corners[(k + 1) % n], point) <=
        region.tolerance) {
      return {true, static_cast<int>(k)};
    }
  }
  if (n == 2) return {};
  const Vector3 normal = NormalOf(region);
  const bool inside =
      n == 3 ? IsInsideTriangle(region, normal, point) : IsInsideQuad(region, normal, point);
  return {inside, -1};
}

}  // namespace kvx
