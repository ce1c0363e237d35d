#include "mechanism/mode_strain.h"

#include <algorithm>
#include <cmath>

#include "mechanism/mode_shape.h"
#include "system/assemble_stiffness.h"

namespace kvx {

namespace {

struct ElementEnergy {
  double strain = 0.0;  // v_e^T k_e v_e
  double gross = 0.0;   // |v_e|^T |k_e| |v_e|
};

ElementEnergy EnergyOf(const double* ke, const std::int32_t* g, std::int32_t n,
                       const std::vector<double>& v) {
  ElementEnergy energy;
  for (std::int32_t i = 0; i < n; ++i) {
    const double vi = v[static_cast<std::size_t>(g[i])];
    if (vi == 0.0) continue;
    double force = 0.0, gross = 0.0;
    for (std::int32_t j = 0; j < n; ++j) {
      const double term = ke[i * n + j] * v[static_cast<std::size_t>(g[j])];
      force += term;
      gross += std::abs(term);
    }
    energy.strain += vi * force;
    energy.gross += std::abs(vi) * gross;
  }
  return energy;
}

// How far each element moves: the largest displacement of its nodes, rotations times its size.
std::vector<double> MeasureMotions(const korvex::Model& model, const std::vector<double>& v) {
  std::vector<double> motions;
  ForAllElements(model.Tables, [&](const ElementRef&, const ElementNodes& element) {
    double motion = 0.0, size = 0.0;
    const korvex::Vector3 first = PlaceOf(model.Tables, element.nodes[0]);
    for (std::size_t k = 1; k < element.count; ++k) {
      size = std::max(
          size, korvex::Length(korvex::Subtract(PlaceOf(model.Tables, element.nodes[k]), first)));
    }
    for (std::size_t k = 0; k < element.count; ++k) {
      const double* u = &v[static_cast<std::size_t>(element.nodes[k]) * korvex::DofsPerNode];
      for (std::size_t d = 0; d < 6; ++d) {
        motion = std::max(motion, std::abs(u[d]) * (d < 3 ? 1.0 : size));
      }
    }
    motions.push_back(motion);
  });
  return motions;
}

}  // namespace

double MeasureStrain(const korvex::Model& model, const std::vector<double>& v) {
  constexpr double TakesPart = 1e-3;
  const std::vector<double> motions = MeasureMotions(model, v);
  const double farthest = motions.empty() ? 0.0 : *std::max_element(motions.begin(), motions.end());
  double largest = 0.0;
  std::size_t at = 0;
  korvex::FormElementMatrices(model, [&](const double* ke, const std::int32_t* g, std::int32_t n) {
    const double motion = motions[at++];
    if (motion == 0.0 || motion < TakesPart * farthest) return;
    const ElementEnergy energy = EnergyOf(ke, g, n, v);
    if (!std::isfinite(energy.gross) || energy.gross == 0.0) return;
    largest = std::max(largest, std::abs(energy.strain) / energy.gross);
  });
  return largest;
}

}  // namespace kvx
