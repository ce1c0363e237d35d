#include "beamshell/point_grid.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "base/finite.h"

namespace korvex {

namespace {

// The edge of a cell. It is larger than the box: the box touches at most two cells per direction.
constexpr double CellSize = 10.0 * CoincidenceTolerance;

// Shifts the cells, as a fraction of a cell. Coordinates are mostly round numbers; without the
// shift they would lie on cell faces, and a search would need the cells on both sides. Any value
// finds the same points. 0.382 is better than 0.5, which puts multiples of half a cell on the
// faces.
constexpr double CellShift = 0.382;

// The cell of a coordinate. A double, because an integer would overflow for large coordinates.
double CellOf(double x) { return std::floor(x / CellSize + CellShift); }

// The final step of splitmix64 (Steele, Lea & Flood 2014): every bit of the argument changes about
// half of the bits of the result.
std::uint64_t Mix(std::uint64_t bits) {
  bits = (bits ^ (bits >> 30U)) * 0xBF58476D1CE4E5B9U;
  bits = (bits ^ (bits >> 27U)) * 0x94D049BB133111EBU;
  return bits ^ (bits >> 31U);
}

// buckets: a power of two.
std::size_t BucketOf(const Vector3& cell, std::size_t buckets) {
  std::uint64_t hash = 0;
  for (const double number : cell) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    hash = Mix(hash + bits);
  }
  return static_cast<std::size_t>(hash) & (buckets - 1);
}

}  // namespace

bool IsFinite(const Vector3& point) { return AreFinite(point.data(), point.size()); }

void BuildPointGrid(const std::vector<Vector3>& points, PointGrid& grid) {
  std::size_t buckets = 1;
  while (buckets < points.size()) buckets *= 2;
  const auto bucketOf = [buckets](const Vector3& p) {
    return BucketOf({CellOf(p[0]), CellOf(p[1]), CellOf(p[2])}, buckets);
  };
  // Place b + 1 is where bucket b begins until its points are put in, and then where it ends, which
  // is where the next one begins.
  grid.first.assign(buckets + 2, 0);
  for (const Vector3& p : points) {
    if (IsFinite(p)) ++grid.first[bucketOf(p) + 2];
  }
  for (std::size_t b = 1; b <= buckets; ++b) grid.first[b + 1] += grid.first[b];
  grid.points.resize(grid.first.back());
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (IsFinite(points[i])) grid.points[grid.first[bucketOf(points[i]) + 1]++] = i;
  }
  grid.first.pop_back();
}

void FindNear(const PointGrid& grid, const Vector3& point, std::vector<std::size_t>& found) {
  const std::size_t buckets = grid.first.size() - 1;
  std::array<Vector3, 2> cells{};  // of the box's lower and upper corner
  for (std::size_t i = 0; i < 3; ++i) {
    cells[0][i] = CellOf(point[i] - Reach);
    cells[1][i] = CellOf(point[i] + Reach);
  }
  for (std::size_t choice = 0; choice < 8; ++choice) {  // bit i set: the upper cell in direction i
    Vector3 cell{};
    bool isNew = true;
    for (std::size_t i = 0; i < 3; ++i) {
      const std::size_t side = choice >> i & 1U;
      cell[i] = cells[side][i];
      if (side == 1 && cells[1][i] == cells[0][i]) isNew = false;
    }
    if (!isNew) continue;
    const std::size_t bucket = BucketOf(cell, buckets);
    for (std::size_t at = grid.first[bucket]; at < grid.first[bucket + 1]; ++at) {
      found.push_back(grid.points[at]);
    }
  }
}

}  // namespace korvex
