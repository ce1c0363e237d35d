// BLAS is whichever library the system has chosen for the name, so what it is, is asked for when
// the program runs.
#include <dlfcn.h>

#include <vector>

#include "report/check_memory.h"
#include "sparse/blas_threads.h"
#include "sparse/mumps_library.h"

namespace kvx {

namespace {

// A product that is large enough for the work space to be taken: C = A B.
void MultiplyOnce() {
  using Multiply = void (*)(const char*, const char*, const int*, const int*, const int*,
                            const double*, const double*, const int*, const double*, const int*,
                            const double*, double*, const int*);
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): as the system's interface is
  const auto multiply = reinterpret_cast<Multiply>(dlsym(RTLD_DEFAULT, "dgemm_"));
  if (multiply == nullptr) return;
  constexpr int N = 256;
  const std::vector<double> A(static_cast<std::size_t>(N) * N, 1.0);
  std::vector<double> C(A.size());
  const double one = 1.0, zero = 0.0;
  multiply("N", "N", &N, &N, &N, &one, A.data(), &N, A.data(), &N, &zero, C.data(), &N);
}

}  // namespace

void SetBlasThreads(int threads) {
  using Setter = void (*)(int);
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): as the system's interface is
  const auto set = reinterpret_cast<Setter>(dlsym(RTLD_DEFAULT, "openblas_set_num_threads"));
  if (set != nullptr) set(threads);
}

void PrepareBlas(int threads, std::uint64_t reserved) {
  LoadMumps();
  korvex::CheckMemory("the work space of the sparse engine", BlasThreadBytes, 1);
  SetBlasThreads(korvex::CountThreadsInMemory(threads, reserved, BlasThreadBytes));
  MultiplyOnce();
}

}  // namespace kvx
