#include "mesh/abaqus/abaqus_axes.h"

#include <cmath>

namespace kvx {

bool MakeAxes(const korvex::Vector3& onX, const korvex::Vector3& inPlane, AbaqusAxes& axes) {
  const korvex::Vector3 normal = korvex::Cross(onX, inPlane);
  const double size = korvex::Length(onX) * korvex::Length(inPlane);
  // Written so that a NaN fails.
  if (!(korvex::Length(normal) > ParallelShare * size)) return false;
  axes[0] = korvex::Normalise(onX);
  axes[2] = korvex::Normalise(normal);
  axes[1] = korvex::Cross(axes[2], axes[0]);
  return true;
}

korvex::Vector3 Combine(const AbaqusAxes& axes, const korvex::Vector3& components) {
  return Add(Add(Scale(components[0], axes[0]), Scale(components[1], axes[1])),
             Scale(components[2], axes[2]));
}

}  // namespace kvx
