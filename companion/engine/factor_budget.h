// How much memory the factor of the sparse engine may take: what the whole solution may, less what
// stands beside the factor.
#pragma once

#include <cstddef>

#include "engine/engine_settings.h"
#include "sparse/free_matrix.h"
#include "sparse/sparse_factor.h"

namespace kvx {

// loads: their number. equations: of the model, with the fixed ones. A and C as they stand.
// Leaves FactorSettings::outOfCore empty.
FactorSettings MakeFactorSettings(const EngineSettings& settings, const UpperMatrix& A,
                                  const FixedRows& C, std::size_t equations, std::size_t loads);

}  // namespace kvx
