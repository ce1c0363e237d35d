// What a user asks of the solution: which engine, how many threads, how much memory.
//
// The skyline is the solver's own and gives the bits of its runs. The sparse engine (sparse/) takes
// another order of the equations and another factorisation: its results agree within what the
// condition of the matrix allows.
#pragma once

#include <cstdint>
#include <string>

namespace kvx {

enum class EngineChoice { Auto, Skyline, Sparse };

struct EngineSettings {
  EngineChoice choice = EngineChoice::Auto;
  int threads = 1;           // of the skyline, of BLAS, and of the stages around the solution
  std::uint64_t memory = 0;  // bytes that the whole solution may take; 0: what is free now
  std::string outOfCore;     // a folder for the factors, UTF-8; empty: they stay in memory
};

}  // namespace kvx
