#include "check/place_words.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "check/describe.h"

namespace kvx {

using korvex::Cross;
using korvex::Length;
using korvex::Subtract;
using korvex::Vector3;

namespace {

// Places may lie this share of the line's length off it: the digits of a file.
constexpr double StraightShare = 1e-5;

struct Extent {
  Vector3 low{}, high{};
};

Extent ExtentOf(const std::vector<Vector3>& places) {
  Extent extent{places[0], places[0]};
  for (const Vector3& place : places) {
    for (std::size_t i = 0; i < 3; ++i) {
      extent.low[i] = std::min(extent.low[i], place[i]);
      extent.high[i] = std::max(extent.high[i], place[i]);
    }
  }
  return extent;
}

const Vector3& FarthestFrom(const Vector3& from, const std::vector<Vector3>& places) {
  return *std::max_element(places.begin(), places.end(), [&](const Vector3& a, const Vector3& b) {
    return Length(Subtract(a, from)) < Length(Subtract(b, from));
  });
}

bool IsStraight(const Vector3& a, const Vector3& b, const std::vector<Vector3>& places,
                double tolerance) {
  const Vector3 d = Subtract(b, a);
  const double length = Length(d), allowed = 2.0 * tolerance + StraightShare * length;
  return std::all_of(places.begin(), places.end(), [&](const Vector3& place) {
    return Length(Cross(d, Subtract(place, a))) <= allowed * length;
  });
}

// A coordinate that is 0 but for rounding is written as 0.
std::string CoordinateText(double value, double tolerance) {
  return NumberText(std::abs(value) <= tolerance ? 0.0 : value);
}

std::string AxisText(const Extent& extent, std::size_t axis, double tolerance) {
  constexpr std::array<const char*, 3> Names{"x = ", "y = ", "z = "};
  const double low = extent.low[axis], high = extent.high[axis];
  if (high - low <= tolerance) return Names[axis] + CoordinateText(low, tolerance);
  return Names[axis] + CoordinateText(low, tolerance) + " .. " + CoordinateText(high, tolerance);
}

// "y = 3000, z = 1200, x = 0 .. 9600": first where the line is, then from where to where.
std::string AlongAxisText(const Extent& extent, std::size_t axis, double tolerance) {
  const std::size_t a = axis == 0 ? 1 : 0, b = axis == 2 ? 1 : 2;
  return AxisText(extent, a, tolerance) + ", " + AxisText(extent, b, tolerance) + ", " +
         AxisText(extent, axis, tolerance);
}

}  // namespace

std::string DescribeExtent(const std::vector<Vector3>& places, double tolerance) {
  const Extent extent = ExtentOf(places);
  return AxisText(extent, 0, tolerance) + ", " + AxisText(extent, 1, tolerance) + ", " +
         AxisText(extent, 2, tolerance);
}

std::string DescribePlaces(const std::vector<Vector3>& places, PlaceShape shape, double tolerance) {
  const Vector3& b = FarthestFrom(places[0], places);
  const Vector3& a = FarthestFrom(b, places);
  const double length = Length(Subtract(b, a));
  if (length <= 2.0 * tolerance) return "at " + PointText(places[0]);
  if (shape == PlaceShape::Patch) {
    return "over a patch within " + DescribeExtent(places, 2.0 * tolerance);
  }
  if (!IsStraight(a, b, places, tolerance)) {
    if (shape == PlaceShape::Closed) {
      return "along a closed curve within " + DescribeExtent(places, 2.0 * tolerance);
    }
    return "along a curve from " + PointText(std::min(a, b)) + " to " + PointText(std::max(a, b));
  }
  const Extent extent = ExtentOf(places);
  const double allowed = 2.0 * tolerance + StraightShare * length;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const Vector3 d = Subtract(extent.high, extent.low);
    const std::size_t other = (axis + 1) % 3, third = (axis + 2) % 3;
    if (d[other] <= allowed && d[third] <= allowed) {
      return "along " + AlongAxisText(extent, axis, allowed);
    }
  }
  return "along a line from " + PointText(std::min(a, b)) + " to " + PointText(std::max(a, b));
}

}  // namespace kvx
