#include "tables/prescribed_displacements.h"

#include <cmath>

namespace kvx {

bool IsPrescribing(std::size_t dof, double force, double extent) {
  const double smallest = dof < 3 ? SmallestDisplacement * extent : SmallestRotation;
  return smallest > 0.0 && std::fabs(force) / Penalty >= smallest;
}

}  // namespace kvx
