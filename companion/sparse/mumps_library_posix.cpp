#include "sparse/mumps_library.h"

#include <dlfcn.h>

#include <cstdlib>
#include <string>

#include "report/stop.h"

namespace kvx {

namespace {

// Null: the reason says why.
void* FindFunction(std::string& reason) {
  constexpr int KeepWhatTheUserSays = 0;
  // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread of ours looks at the environment
  setenv("OPENBLAS_NUM_THREADS", "1", KeepWhatTheUserSays);
  // BLAS is looked for by name (blas_threads.h): so its names are everybody's.
  void* const library = dlopen(KVX_MUMPS_FILE, RTLD_NOW | RTLD_GLOBAL);
  void* const function = library == nullptr ? nullptr : dlsym(library, "dmumps_c");
  if (function == nullptr) {
    const char* const text = dlerror();  // NOLINT(concurrency-mt-unsafe): one thread loads
    reason = text == nullptr ? KVX_MUMPS_FILE : text;
  }
  return function;
}

}  // namespace

void* LoadMumps() {
  std::string reason;
  void* const function = FindFunction(reason);
  if (function != nullptr) return function;
  throw korvex::Stop{korvex::StopKind::Notice,
                     "The sparse engine cannot be loaded: " + reason +
                         ". The skyline needs none of it: --engine skyline."};
}

std::string WhyNoMumps() {
  std::string reason;
  FindFunction(reason);
  return reason;
}

}  // namespace kvx
