// What a user asks of the solution: which engine, how many threads, how much memory.
//
// The skyline is the solver's own and gives the bits of its runs. The sparse engine (sparse/) takes
// another order of the equations and another factorisation: its results agree within what the
// condition of the matrix allows.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace kvx {

enum class EngineChoice { Auto, Skyline, Sparse };

// Makes `call`, long work that does not look whether its user wants it to end. Where he does, the
// process may end within it: another thread calls `cleanUp` then, which removes files, and the call
// never comes back. Otherwise what `call` throws goes on.
using CallGuard =
    std::function<void(const std::function<void()>& call, const std::function<void()>& cleanUp)>;

struct EngineSettings {
  EngineChoice choice = EngineChoice::Auto;
  int threads = 1;           // of the skyline, of BLAS, and of the stages around the solution
  std::uint64_t memory = 0;  // bytes that the whole solution may take; 0: what is free now
  std::string outOfCore;     // a folder for the factors, UTF-8; empty: they stay in memory
  CallGuard guard;           // empty: calls are made as they are
};

inline void MakeGuarded(const EngineSettings& settings, const std::function<void()>& call,
                        const std::function<void()>& cleanUp) {
  if (!settings.guard) return call();
  settings.guard(call, cleanUp);
}

}  // namespace kvx
