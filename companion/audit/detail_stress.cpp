#include "audit/detail_stress.h"

#include <cmath>
#include <limits>

#include "results/corner_stress.h"

namespace kvx {

namespace {

using korvex::Shell4Element;
using korvex::StressVector;

// A shell's corners 0 and 3 lie at its first station, 1 and 2 at its second: the corner beside a
// corner of the first station.
std::size_t CornerBeyond(std::size_t corner) { return corner == 0 ? 1 : 2; }

StressVector Mean(const StressVector& a, const StressVector& b) {
  StressVector mean{};
  for (std::size_t i = 0; i < mean.size(); ++i) mean[i] = (a[i] + b[i]) / 2.0;
  return mean;
}

// The von Mises stress at one edge of a plate, on one face, at mid-length.
// corner: 0 or 3; between: mid-length lies between two stations.
double MiddleStress(const Shell4Element& shell, std::size_t corner, bool upper, bool between) {
  const auto& faces = upper ? shell.AvgStressTop : shell.AvgStressBottom;
  if (!between) return korvex::EquivalentStress(faces[corner]);
  return korvex::EquivalentStress(Mean(faces[corner], faces[CornerBeyond(corner)]));
}

}  // namespace

DetailStress FindDetailStress(const korvex::BeamShellModel& detail) {
  DetailStress largest;
  largest.vonMises = std::numeric_limits<double>::quiet_NaN();
  const auto points = static_cast<std::size_t>(detail.ProfileNodeCount);
  if (points < 1 || detail.Shells.empty() || detail.NodeCoords.size() < 2 * points + 2 ||
      detail.ShellNodes.size() != 4 * detail.Shells.size()) {
    return largest;
  }
  const std::size_t steps = (detail.NodeCoords.size() - 2) / points - 1;
  const std::size_t plates = detail.Shells.size() / steps;
  largest.steps = static_cast<std::int32_t>(steps);
  double best = -1.0;
  for (std::size_t plate = 0; plate < plates; ++plate) {
    const std::size_t e = steps / 2 * plates + plate;
    for (const std::size_t corner : {std::size_t{0}, std::size_t{3}}) {
      for (const bool upper : {true, false}) {
        const double stress = MiddleStress(detail.Shells[e], corner, upper, steps % 2 == 1);
        if (std::isnan(best) || stress <= best) continue;
        best = largest.vonMises = stress;
        largest.plate = static_cast<std::int32_t>(plate);
        largest.point = static_cast<std::int32_t>(
            (static_cast<std::size_t>(detail.ShellNodes[4 * e + corner]) - 1) % points);
        largest.upper = upper;
      }
    }
  }
  return largest;
}

}  // namespace kvx
