// How many threads the program's BLAS takes, and what work space. Only OpenBLAS can be told; others
// go on as they do.
#pragma once

#include <cstdint>

namespace kvx {

// Also sees to it that OpenBLAS uses the vectors of a processor that is newer than the library and
// that it therefore takes for a very old one: that costs half of its speed and more. Where the
// environment chooses (OPENBLAS_CORETYPE), it stays so.
// To be called before BLAS is used, by one thread.
void SetBlasThreads(int threads);

// Work space of BLAS for a thread: addresses mostly, of which some 20 MB become memory. Where
// OpenBLAS cannot get them it tries for ever.
inline constexpr std::uint64_t BlasThreadBytes = std::uint64_t{128} << 20U;

// What the libraries and the work space of one thread take before the first factor, of addresses.
inline constexpr std::uint64_t SparseStartBytes = BlasThreadBytes + (std::uint64_t{64} << 20U);

// To be called before the first factor: loads MUMPS and with it BLAS, which gets as many threads as
// are asked for and have work space beside `reserved` bytes for other things, and takes that.
// Throws a Stop where it cannot be loaded, or not even one thread has work space.
void PrepareBlas(int threads, std::uint64_t reserved);

}  // namespace kvx
