// BLAS is whichever library the system has chosen for the name, so what it is, is asked for when
// the program runs.
#include <dlfcn.h>

#include <cstdlib>
#include <string>

#include "platform/vector_bits.h"
#include "sparse/blas_threads.h"

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

}  // namespace

void SetBlasThreads(int threads) {
  ChooseKernels();
  auto* const set = FindInBlas<void(int)>("openblas_set_num_threads");
  if (set != nullptr) set(threads);
}

}  // namespace kvx
