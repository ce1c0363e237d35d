// BLAS is whichever library the system has chosen for the name, so what it is, is asked for when
// the program runs.
#include <dlfcn.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "platform/vector_bits.h"
#include "report/check_memory.h"
#include "sparse/blas_threads.h"
#include "sparse/held_signals.h"
#include "sparse/mumps_library.h"

namespace kvx {

namespace {

// A function of the program's BLAS; null: it has none of this name.
template <typename Function>
Function* FindInBlas(const char* name) {
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): as the system's interface is
  return reinterpret_cast<Function*>(dlsym(RTLD_DEFAULT, name));
}

// OpenBLAS knows processors by their numbers. One that it does not know gets the kernels of a
// Prescott, with vectors of 128 bits. Its choice is made anew, with the name of the oldest
// processor that has these vectors.
void ChooseKernels() {
  constexpr const char* Variable = "OPENBLAS_CORETYPE";
  constexpr int HaswellBits = 256, SkylakeBits = 512;
  auto* const nameCore = FindInBlas<const char*()>("openblas_get_corename");
  auto* const drop = FindInBlas<void()>("gotoblas_dynamic_quit");
  auto* const choose = FindInBlas<void()>("gotoblas_dynamic_init");
  if (nameCore == nullptr || drop == nullptr || choose == nullptr) return;
  const int bits = korvex::WidestVectorBits();
  const std::string core = nameCore();
  if (core != "Prescott" || bits < HaswellBits || std::getenv(Variable) != nullptr) return;
  setenv(Variable, bits >= SkylakeBits ? "SkylakeX" : "Haswell", 1);
  drop();
  choose();
}

// A product that is large enough for the work space to be taken: C = A B.
void MultiplyOnce() {
  auto* const multiply = FindInBlas<void(
      const char*, const char*, const int*, const int*, const int*, const double*, const double*,
      const int*, const double*, const int*, const double*, double*, const int*)>("dgemm_");
  if (multiply == nullptr) return;
  constexpr int N = 256;
  const std::vector<double> A(static_cast<std::size_t>(N) * N, 1.0);
  std::vector<double> C(A.size());
  const double one = 1.0, zero = 0.0;
  multiply("N", "N", &N, &N, &N, &one, A.data(), &N, A.data(), &N, &zero, C.data(), &N);
}

}  // namespace

void SetBlasThreads(int threads) {
  ChooseKernels();
  auto* const set = FindInBlas<void(int)>("openblas_set_num_threads");
  if (set != nullptr) set(threads);
}

void PrepareBlas(int threads, std::uint64_t reserved) {
  CallHeld([&] {
    LoadMumps();
    korvex::CheckMemory("the work space of the sparse engine", BlasThreadBytes, 1);
    SetBlasThreads(korvex::CountThreadsInMemory(threads, reserved, BlasThreadBytes));
    MultiplyOnce();
  });
}

}  // namespace kvx
