// There is no sparse engine, and so no BLAS.
#include "sparse/blas_threads.h"

namespace kvx {

void SetBlasThreads(int /*threads*/) {}

}  // namespace kvx
