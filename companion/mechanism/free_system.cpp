#include "mechanism/free_system.h"

#include <algorithm>
#include <cmath>

#include "base/finite.h"
#include "model/build_elements.h"
#include "platform/vector_bits.h"
#include "report/check_memory.h"
#include "skyline/factor_skyline.h"
#include "system/assemble_stiffness.h"
#include "system/profile.h"

namespace kvx {

using korvex::Column;
using korvex::SkylineMatrix;
using korvex::TopRow;

namespace {

bool IsFinite(const double* ke, std::int32_t n) {
  const auto size = static_cast<std::size_t>(n);
  return korvex::AreFinite(ke, size * size);
}

// Adds the entries of an element in the columns from `first` on. Rows and columns of fixed dofs
// stay zero, beside the diagonal.
void Scatter(const double* ke, const std::int32_t* g, std::int32_t n, std::int64_t first,
             FreeSystem& system) {
  SkylineMatrix& K = system.model.Stiffness;
  for (std::int32_t r = 0; r < n; ++r) {
    for (std::int32_t c = r; c < n; ++c) {
      const std::int32_t low = std::min(g[r], g[c]), high = std::max(g[r], g[c]);
      if (high < first) continue;
      const bool isHeld = system.fixed[static_cast<std::size_t>(low)] != 0 ||
                          system.fixed[static_cast<std::size_t>(high)] != 0;
      if (isHeld && low != high) continue;
      Column(K, high)[high - low] += ke[r * n + c];
    }
  }
}

// The sum of a[k] b[k], in four sums, which the processor forms side by side.
double Product(const double* a, const double* b, std::int64_t count) {
  double s0 = 0.0, s1 = 0.0, s2 = 0.0, s3 = 0.0;
  std::int64_t k = 0;
  for (; k + 4 <= count; k += 4) {
    s0 += a[k] * b[k];
    s1 += a[k + 1] * b[k + 1];
    s2 += a[k + 2] * b[k + 2];
    s3 += a[k + 3] * b[k + 3];
  }
  for (; k < count; ++k) s0 += a[k] * b[k];
  return (s0 + s1) + (s2 + s3);
}

}  // namespace

void BuildElements(korvex::Model& model) {
  const auto build = [](std::size_t rows, const char* name, auto& elements, const auto& one) {
    korvex::AllocateItems(name, rows, elements);
    for (std::size_t row = 0; row < rows; ++row) one(static_cast<std::int32_t>(row), elements[row]);
  };
  const korvex::ModelTables& tables = model.Tables;
  build(tables.Shell4Properties.size(), "four-node shell elements", model.Shell4Elements,
        [&](std::int32_t row, auto& element) { korvex::BuildShell4(tables, row, element); });
  build(tables.Shell3Properties.size(), "three-node shell elements", model.Shell3Elements,
        [&](std::int32_t row, auto& element) { korvex::BuildShell3(tables, row, element); });
  build(tables.BeamProperties.size(), "beam elements", model.BeamElements,
        [&](std::int32_t row, auto& element) { korvex::BuildBeam(tables, row, element); });
  korvex::NumberEquations(model);
}

void SumDiagonal(FreeSystem& system, const std::function<void(bool isFinite)>& take) {
  system.diagonal.assign(static_cast<std::size_t>(system.model.NEQ), 0.0);
  korvex::FormElementMatrices(system.model,
                              [&](const double* ke, const std::int32_t* g, std::int32_t n) {
                                const bool isFinite = IsFinite(ke, n);
                                take(isFinite);
                                for (std::int32_t i = 0; isFinite && i < n; ++i) {
                                  system.diagonal[static_cast<std::size_t>(g[i])] += ke[i * n + i];
                                }
                              });
}

void Factorise(FreeSystem& system) {
  korvex::Model& model = system.model;
  korvex::BuildProfile(model);
  korvex::ComputeDiagonalAddresses(model.Stiffness);
  korvex::AllocateStiffness(model.Stiffness);
  RestoreColumns(system, 0);
  model.LoadVector.assign(static_cast<std::size_t>(model.NEQ), 0.0);
  korvex::ColumnCounter columns;
  columns.columns = model.NEQ;
  korvex::FactorSkyline(korvex::WidestVectorBits(), model.Stiffness, model.LoadVector, columns);
}

std::int64_t FindSmallPivot(const FreeSystem& system, std::int64_t first, double share) {
  for (std::int64_t j = first; j < system.model.NEQ; ++j) {
    const auto at = static_cast<std::size_t>(j);
    if (system.fixed[at] != 0) continue;
    const double pivot = *Column(system.model.Stiffness, j);
    // Also where the pivot is negative or a NaN.
    if (!(pivot >= share * system.diagonal[at]) || !std::isfinite(pivot)) return j;
  }
  return system.model.NEQ;
}

void RestoreColumns(FreeSystem& system, std::int64_t first) {
  SkylineMatrix& K = system.model.Stiffness;
  if (first >= system.model.NEQ) return;
  const std::int64_t begin = K.DiagonalAddress[static_cast<std::size_t>(first)];
  std::fill(K.Values.begin() + begin, K.Values.end(), 0.0);
  korvex::FormElementMatrices(system.model,
                              [&](const double* ke, const std::int32_t* g, std::int32_t n) {
                                if (IsFinite(ke, n)) Scatter(ke, g, n, first, system);
                              });
  for (std::int64_t j = first; j < system.model.NEQ; ++j) {
    if (system.fixed[static_cast<std::size_t>(j)] != 0) *Column(K, j) = 1.0;
  }
}

double FactoriseColumn(FreeSystem& system, std::int64_t j) {
  SkylineMatrix& K = system.model.Stiffness;
  double* columnJ = Column(K, j);
  const std::int64_t top = TopRow(K, j);
  for (std::int64_t i = top; i < j; ++i) {
    // A dof that was fixed on the way has values in the columns behind it.
    if (system.fixed[static_cast<std::size_t>(i)] != 0) {
      columnJ[j - i] = 0.0;
      continue;
    }
    // Rows k = begin .. i - 1; both columns are stored from the diagonal upward.
    const double* columnI = Column(K, i);
    const std::int64_t begin = std::max(TopRow(K, i), top);
    columnJ[j - i] -= Product(columnI + 1, columnJ + (j - i) + 1, i - begin);
  }
  for (std::int64_t k = top; k < j; ++k) {
    const double t = columnJ[j - k];
    if (t == 0.0) continue;
    columnJ[j - k] = t / *Column(K, k);
    columnJ[0] -= columnJ[j - k] * t;
  }
  return columnJ[0];
}

void FindMode(const FreeSystem& system, std::int64_t j, std::vector<double>& v) {
  const SkylineMatrix& K = system.model.Stiffness;
  v.assign(static_cast<std::size_t>(system.model.NEQ), 0.0);
  v[static_cast<std::size_t>(j)] = 1.0;
  // L^T v = e(j)
  for (std::int64_t c = j; c > 0; --c) {
    const double value = v[static_cast<std::size_t>(c)];
    if (value == 0.0) continue;
    const double* column = Column(K, c);
    for (std::int64_t k = TopRow(K, c); k < c; ++k) {
      v[static_cast<std::size_t>(k)] -= column[c - k] * value;
    }
  }
}

void FixDof(FreeSystem& system, std::int64_t j) {
  SkylineMatrix& K = system.model.Stiffness;
  system.fixed[static_cast<std::size_t>(j)] = Loose;
  double* column = Column(K, j);
  std::fill(column, column + (j - TopRow(K, j)) + 1, 0.0);
  column[0] = 1.0;
}

}  // namespace kvx
