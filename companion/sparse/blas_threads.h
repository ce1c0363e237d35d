// How many threads the program's BLAS takes. Only OpenBLAS can be told; others go on as they do.
#pragma once

namespace kvx {

// Also sees to it that OpenBLAS uses the vectors of a processor that is newer than the library and
// that it therefore takes for a very old one: that costs half of its speed and more. Where the
// environment chooses (OPENBLAS_CORETYPE), it stays so.
// To be called before BLAS is used, by one thread.
void SetBlasThreads(int threads);

}  // namespace kvx
