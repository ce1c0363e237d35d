// There is no sparse engine, and so no BLAS.
#include "sparse/blas_threads.h"

namespace kvx {

void SetBlasThreads(int /*threads*/) {}

void PrepareBlas(int /*threads*/, std::uint64_t /*reserved*/) {}

}  // namespace kvx
