#include "shell/part_products.h"

namespace korvex {

void AddOuterProduct(const double* b, std::int32_t n, double s, double* K) {
  for (std::int32_t r = 0; r < n; ++r) {
    for (std::int32_t c = 0; c < n; ++c) K[n * r + c] += s * (b[c] * b[r]);
  }
}

double DrillingPenalty(double E, double Mu, double TK) {
  return E * 0.5 / (Mu + 1.0) * DrillingFactor * TK;
}

void AddMembranePart(const double* Km, std::int32_t nodes, double* K) {
  const auto place = [](std::int32_t dof) { return 3 * (dof / 2) + dof % 2; };
  const std::int32_t n = 2 * nodes;
  for (std::int32_t a = 0; a < n; ++a) {
    for (std::int32_t b = 0; b < n; ++b) K[place(a) * 3 * nodes + place(b)] += Km[n * a + b];
  }
}

}  // namespace korvex
