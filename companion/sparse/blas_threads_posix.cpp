// BLAS is whichever library the system has chosen for the name, so what it is, is asked for when
// the program runs.
#include <dlfcn.h>

#include "sparse/blas_threads.h"

namespace kvx {

void SetBlasThreads(int threads) {
  using Setter = void (*)(int);
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): as the system's interface is
  const auto set = reinterpret_cast<Setter>(dlsym(RTLD_DEFAULT, "openblas_set_num_threads"));
  if (set != nullptr) set(threads);
}

}  // namespace kvx
