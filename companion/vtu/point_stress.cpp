#include "vtu/point_stress.h"

#include <limits>

#include "results/corner_stress.h"

namespace kvx {

using korvex::StressVector;

namespace {

constexpr std::array<std::size_t, 6> VtkOrder{0, 1, 2, 3, 5, 4};

void AddTo(const StressVector& stress, StressVector& sum) {
  for (std::size_t k = 0; k < sum.size(); ++k) sum[k] += stress[k];
}

void AddTo(const PointStress& stress, PointStress& sum) {
  AddTo(stress.upper, sum.upper);
  AddTo(stress.lower, sum.lower);
  sum.upperMises += stress.upperMises;
  sum.lowerMises += stress.lowerMises;
}

void Divide(double count, PointStress& sum) {
  for (double& component : sum.upper) component /= count;
  for (double& component : sum.lower) component /= count;
  sum.upperMises /= count;
  sum.lowerMises /= count;
}

VtuArray MakeTensors(std::string name, const FindStress& find, StressVector PointStress::*face,
                     std::size_t points) {
  const auto fill = [find, face](std::size_t point, double* values) {
    const PointStress stress = find(point);
    for (std::size_t k = 0; k < VtkOrder.size(); ++k) values[k] = (stress.*face)[VtkOrder[k]];
  };
  return {std::move(name), {"XX", "YY", "ZZ", "XY", "YZ", "XZ"}, 6, points, FillDoubles(fill)};
}

VtuArray MakeMises(std::string name, const FindStress& find, double PointStress::*face,
                   std::size_t points) {
  const auto fill = [find, face](std::size_t point, double* values) {
    values[0] = find(point).*face;
  };
  return {std::move(name), {}, 1, points, FillDoubles(fill)};
}

}  // namespace

PointStress MakePointStress(const StressVector& upper, const StressVector& lower) {
  return {upper, lower, korvex::EquivalentStress(upper), korvex::EquivalentStress(lower)};
}

PointStress NoStress() {
  constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
  constexpr StressVector None{NaN, NaN, NaN, NaN, NaN, NaN};
  return {None, None, NaN, NaN};
}

void AverageAtNodes(const FindStress& corners, const std::vector<std::int32_t>& nodes,
                    std::size_t nodeCount, std::vector<PointStress>& means) {
  means.assign(nodeCount, {});
  std::vector<std::int32_t> counts(nodeCount);
  for (std::size_t corner = 0; corner < nodes.size(); ++corner) {
    const auto node = static_cast<std::size_t>(nodes[corner]);
    AddTo(corners(corner), means[node]);
    ++counts[node];
  }
  for (std::size_t node = 0; node < nodeCount; ++node) {
    if (counts[node] == 0) {
      means[node] = NoStress();
    } else {
      Divide(counts[node], means[node]);
    }
  }
}

void AddStressArrays(const FindStress& find, const std::string& suffix, std::size_t points,
                     std::vector<VtuArray>& arrays) {
  arrays.push_back(MakeTensors("stress_upper" + suffix, find, &PointStress::upper, points));
  arrays.push_back(MakeTensors("stress_lower" + suffix, find, &PointStress::lower, points));
  arrays.push_back(MakeMises("von_mises_upper" + suffix, find, &PointStress::upperMises, points));
  arrays.push_back(MakeMises("von_mises_lower" + suffix, find, &PointStress::lowerMises, points));
}

}  // namespace kvx
