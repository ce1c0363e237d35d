#include "sparse/prescribed.h"

#include "system/supports.h"

namespace kvx {

namespace {

std::size_t At(std::int32_t index) { return static_cast<std::size_t>(index); }

}  // namespace

void PrescribeFixed(const FreeDofs& dofs, const std::vector<double>& F, std::vector<double>& u) {
  for (const std::int32_t i : dofs.fixed) u[At(i)] = F[At(i)] / korvex::PenaltyStiffness;
}

void MakeRightSide(const FreeDofs& dofs, const FixedRows& C, const std::vector<double>& F,
                   const std::vector<double>& u, double* b) {
  for (std::size_t k = 0; k < dofs.equations.size(); ++k) b[k] = F[At(dofs.equations[k])];
  for (std::size_t row = 0; row < dofs.fixed.size(); ++row) {
    const double value = u[At(dofs.fixed[row])];
    if (value == 0.0) continue;
    for (std::int64_t k = C.begins[row]; k < C.begins[row + 1]; ++k) {
      const auto entry = static_cast<std::size_t>(k);
      const std::size_t column = At(C.columns[entry]);
      if (dofs.isFixed[column] == 0) b[At(dofs.places[column])] -= C.values[entry] * value;
    }
  }
}

void TakeFree(const FreeDofs& dofs, const double* x, std::vector<double>& u) {
  for (std::size_t k = 0; k < dofs.equations.size(); ++k) u[At(dofs.equations[k])] = x[k];
}

void SettleFixed(const FreeDofs& dofs, const FixedRows& C, const std::vector<double>& F,
                 std::vector<double>& u) {
  for (std::size_t row = 0; row < dofs.fixed.size(); ++row) {
    double force = F[At(dofs.fixed[row])];
    for (std::int64_t k = C.begins[row]; k < C.begins[row + 1]; ++k) {
      const auto entry = static_cast<std::size_t>(k);
      force -= C.values[entry] * u[At(C.columns[entry])];
    }
    u[At(dofs.fixed[row])] = force / korvex::PenaltyStiffness;
  }
}

}  // namespace kvx
