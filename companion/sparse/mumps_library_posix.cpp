#include "sparse/mumps_library.h"

#include <dlfcn.h>

#include <cstdlib>

#include "report/stop.h"

namespace kvx {

void* LoadMumps() {
  constexpr int KeepWhatTheUserSays = 0;
  // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread of ours looks at the environment
  setenv("OPENBLAS_NUM_THREADS", "1", KeepWhatTheUserSays);
  // BLAS is looked for by name (blas_threads.h): so its names are everybody's.
  void* const library = dlopen(KVX_MUMPS_FILE, RTLD_NOW | RTLD_GLOBAL);
  void* const function = library == nullptr ? nullptr : dlsym(library, "dmumps_c");
  if (function == nullptr) {
    const char* const reason = dlerror();  // NOLINT(concurrency-mt-unsafe): one thread loads
    throw korvex::Stop{korvex::StopKind::Notice,
                       std::string("The sparse engine cannot be loaded: ") +
                           (reason == nullptr ? KVX_MUMPS_FILE : reason) +
                           ". The skyline needs none of it: --engine skyline."};
  }
  return function;
}

}  // namespace kvx
