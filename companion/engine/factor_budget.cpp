#include "engine/factor_budget.h"

#include <algorithm>

#include "sparse/refined_columns.h"

namespace kvx {

FactorSettings MakeFactorSettings(const EngineSettings& settings, const UpperMatrix& A,
                                  const FixedRows& C, std::size_t equations, std::size_t loads) {
  // row and column of each entry, as MUMPS wants them; place and scale of each equation
  constexpr std::uint64_t EntryBytes = 2 * sizeof(std::int32_t);
  constexpr std::uint64_t RowBytes = sizeof(std::int32_t) + sizeof(double);
  const auto n = static_cast<std::size_t>(CountRows(A));
  const std::uint64_t vectors = std::uint64_t{equations} * loads * sizeof(double);
  // MUMPS has a copy of the columns that it solves.
  const std::uint64_t copies =
      std::uint64_t{n} * (std::min(loads, BlockColumns) + ModeColumns) * sizeof(double);
  FactorSettings factor;
  factor.memory = settings.memory;
  const std::uint64_t scaled = A.isPart ? A.values.size() * sizeof(double) : 0;
  // displacements, blocks, and the scaled entries
  factor.coming = vectors + CountColumnBytes(n, loads) + copies + scaled;
  factor.beside = factor.coming + vectors + CountBytes(A) + CountBytes(C) +
                  A.columns.size() * EntryBytes + n * RowBytes;
  return factor;
}

}  // namespace kvx
