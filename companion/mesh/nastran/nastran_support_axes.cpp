#include "mesh/nastran/nastran_support_axes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace kvx {

namespace {

// Axes that are off a global one by less than this angle are parallel to it: the points of a system
// have some six digits in fields of eight characters.
constexpr double SameAngle = 1e-5;

// What a displacement is turned into by the rounding of axes alone.
constexpr double RoundedAway = 1e-12;

}  // namespace

bool TurnSupport(const std::array<korvex::Vector3, 3>& axes, const std::array<bool, 3>& fixed,
                 const std::array<double, 3>& moves, std::array<bool, 3>& globalFixed,
                 std::array<double, 3>& globalMoves) {
  double largest = 0.0;
  for (const double move : moves) largest = std::max(largest, std::fabs(move));
  for (std::size_t g = 0; g < 3; ++g) {
    double share = 0.0;  // the square of the global axis' part within the fixed directions
    globalMoves[g] = 0.0;
    for (std::size_t k = 0; k < 3; ++k) {
      if (!fixed[k]) continue;
      share += axes[k][g] * axes[k][g];
      globalMoves[g] += moves[k] * axes[k][g];
    }
    globalFixed[g] = share > 0.5;
    if (std::min(share, std::fabs(1.0 - share)) > SameAngle * SameAngle) return false;
    if (!globalFixed[g] || std::fabs(globalMoves[g]) <= RoundedAway * largest) globalMoves[g] = 0.0;
  }
  return true;
}

}  // namespace kvx
