// How many threads the program's BLAS takes. Only OpenBLAS can be told; others go on as they do.
#pragma once

namespace kvx {

void SetBlasThreads(int threads);

}  // namespace kvx
