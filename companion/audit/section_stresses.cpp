#include "audit/section_stresses.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace kvx {

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

FibreStress StressAt(const SectionPoint& point, const SectionShape& shape, const SectionForces& f) {
  FibreStress stress{point.place, point.y, point.z, 0.0, 0.0, 0.0};
  stress.sigma =
      f[ForceN] / shape.A + f[MomentMy] * point.z / shape.Iy - f[MomentMz] * point.y / shape.Iz;
  const double along = std::fabs(point.alongVy * f[ForceVy] + point.alongVz * f[ForceVz]) +
                       point.torsion * std::fabs(f[MomentT]);
  const double across = point.acrossVy * f[ForceVy];
  stress.tau = std::sqrt(along * along + across * across);
  stress.vonMises = std::sqrt(stress.sigma * stress.sigma + 3.0 * stress.tau * stress.tau);
  return stress;
}

// mean + c cos(angle) + s sin(angle): a stress along the circle of a tube.
struct Wave {
  double mean, c, s;
};

double ValueAt(const Wave& w, double angle) {
  return w.mean + w.c * std::cos(angle) + w.s * std::sin(angle);
}

double SlopeAt(const Wave& w, double angle) {
  return w.s * std::cos(angle) - w.c * std::sin(angle);
}

// The stresses on the outer circle of a tube. Angles from +y to +z; tau is positive in the
// direction of growing angles on the face whose outward normal is +x.
struct TubeWaves {
  Wave sigma, tau;
};

TubeWaves MakeWaves(const SectionShape& shape, const SectionForces& f) {
  const double R = shape.outerRadius;
  return {{f[ForceN] / shape.A, -f[MomentMz] * R / shape.Iz, f[MomentMy] * R / shape.Iy},
          {f[MomentT] * R / shape.J, 2.0 * f[ForceVz] / shape.A, -2.0 * f[ForceVy] / shape.A}};
}

FibreStress StressAt(const TubeWaves& waves, double radius, double angle) {
  FibreStress stress{SectionPlace::Circle,
                     radius * std::cos(angle),
                     radius * std::sin(angle),
                     ValueAt(waves.sigma, angle),
                     std::fabs(ValueAt(waves.tau, angle)),
                     0.0};
  stress.vonMises = std::sqrt(stress.sigma * stress.sigma + 3.0 * stress.tau * stress.tau);
  return stress;
}

double MisesSquare(const TubeWaves& waves, double angle) {
  const double sigma = ValueAt(waves.sigma, angle), tau = ValueAt(waves.tau, angle);
  return sigma * sigma + 3.0 * tau * tau;
}

// The step of Newton's method for a zero slope of MisesSquare. The second derivative of a wave is
// its mean less its value.
double NewtonStep(const TubeWaves& waves, double angle) {
  double slope = 0.0, curvature = 0.0;
  for (const auto& [wave, weight] : {std::pair{waves.sigma, 1.0}, std::pair{waves.tau, 3.0}}) {
    const double f = ValueAt(wave, angle), d = SlopeAt(wave, angle);
    slope += weight * f * d;
    curvature += weight * (d * d + f * (wave.mean - f));
  }
  return curvature < 0.0 ? -slope / curvature : 0.0;
}

// The angle where the von Mises stress is largest. Its square has at most two maxima on the circle.
// 24 angles find both; five steps of Newton's method from there give all digits.
double FindMisesAngle(const TubeWaves& waves) {
  constexpr int Starts = 24;
  constexpr int Steps = 5;
  const double step = 2.0 * std::acos(-1.0) / Starts;
  double best = 0.0;
  for (int i = 0; i < Starts; ++i) {
    const double start = i * step, height = MisesSquare(waves, start);
    if (height < MisesSquare(waves, start - step) || height < MisesSquare(waves, start + step)) {
      continue;
    }
    double angle = start;
    for (int k = 0; k < Steps; ++k) angle += NewtonStep(waves, angle);
    if (MisesSquare(waves, angle) < height) angle = start;
    if (MisesSquare(waves, angle) > MisesSquare(waves, best)) best = angle;
  }
  return best;
}

void FindTubeStresses(const SectionShape& shape, const SectionForces& forces,
                      std::vector<FibreStress>& stresses) {
  const TubeWaves waves = MakeWaves(shape, forces);
  const double bending = std::atan2(waves.sigma.s, waves.sigma.c), pi = std::acos(-1.0);
  const double shearing = std::atan2(waves.tau.s, waves.tau.c);
  for (const double angle : {bending, bending + pi, waves.tau.mean < 0.0 ? shearing + pi : shearing,
                             FindMisesAngle(waves)}) {
    stresses.push_back(StressAt(waves, shape.outerRadius, angle));
  }
}

// Keeps the larger value; once it is not a number, it stays so.
void KeepLarger(double value, double& best, const PlacedStress& candidate, PlacedStress& kept) {
  if (std::isnan(best) || value <= best) return;
  best = value;
  kept = candidate;
}

// `stations` and the places where sigma of a point has zero slope.
std::vector<double> AddSigmaPlaces(const SectionShape& shape, const BeamForces& forces,
                                   const std::vector<double>& stations) {
  std::vector<double> places = stations;
  for (const SectionPoint& point : shape.points) {
    Cubic sigma{};
    for (std::size_t i = 0; i < sigma.size(); ++i) {
      sigma[i] = forces.curves[ForceN][i] / shape.A +
                 forces.curves[MomentMy][i] * point.z / shape.Iy -
                 forces.curves[MomentMz][i] * point.y / shape.Iz;
    }
    AddFlatPlaces(sigma, places);
  }
  return places;
}

BeamStresses MakeNaNs() {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  BeamStresses stresses;
  for (PlacedStress* stress :
       {&stresses.tension, &stresses.compression, &stresses.shear, &stresses.vonMises}) {
    stress->fibre.sigma = stress->fibre.tau = stress->fibre.vonMises = nan;
  }
  stresses.webShear.value = nan;
  return stresses;
}

}  // namespace

void FindFibreStresses(const SectionShape& shape, const SectionForces& forces,
                       std::vector<FibreStress>& stresses) {
  stresses.clear();
  if (shape.kind == SectionKind::Tube) FindTubeStresses(shape, forces, stresses);
  for (const SectionPoint& point : shape.points) {
    stresses.push_back(StressAt(point, shape, forces));
  }
}

NominalStresses FindNominalStresses(const SectionShape& shape, const SectionForces& forces) {
  const double arm = shape.kind == SectionKind::Tube ? shape.outerRadius : shape.thickness;
  return {forces[ForceN] / shape.A, forces[ForceVz] / shape.webArea,
          std::fabs(forces[MomentT]) * arm / shape.J};
}

BeamStresses FindBeamStresses(const SectionShape& shape, const BeamForces& forces,
                              const std::vector<double>& stations) {
  if (shape.kind == SectionKind::None) return MakeNaNs();
  BeamStresses found;
  double tension = -Infinity, compression = -Infinity, shear = -Infinity, vonMises = -Infinity;
  double webShear = -Infinity;
  std::vector<FibreStress> fibres;
  for (const double s : AddSigmaPlaces(shape, forces, stations)) {
    const SectionForces at = ForcesAt(forces, s);
    FindFibreStresses(shape, at, fibres);
    for (const FibreStress& fibre : fibres) {
      const PlacedStress candidate{fibre, s};
      KeepLarger(fibre.sigma, tension, candidate, found.tension);
      KeepLarger(-fibre.sigma, compression, candidate, found.compression);
      KeepLarger(fibre.tau, shear, candidate, found.shear);
      KeepLarger(fibre.vonMises, vonMises, candidate, found.vonMises);
    }
    const double mean = std::fabs(FindNominalStresses(shape, at).webShear);
    if (std::isnan(webShear) || mean <= webShear) continue;
    webShear = mean;
    found.webShear = {mean, s};
  }
  return found;
}

BeamStresses FindBeamStresses(const korvex::Model& model, std::size_t row,
                              const BeamForces& forces) {
  const SectionShape shape = MakeSectionShape(model.Tables, model.BeamElements[row], row);
  return FindBeamStresses(shape, forces, ListStations(forces, DefaultDivisions));
}

}  // namespace kvx
