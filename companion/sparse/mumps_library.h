// The library MUMPS, which is loaded when the first factor is made, and stays.
//
// It brings a BLAS along. OpenBLAS starts a thread for each core as soon as it is loaded, and each
// of them waits for ever for its work space where addresses are limited (ulimit -v). So commands
// that make no factor do without, and it is told to begin with one thread (blas_threads.h). A
// program of several processes is linked with the MUMPS for these instead
// (mumps_library_linked.cpp).
#pragma once

#include <string>

namespace kvx {

// The address of its function dmumps_c. Throws a Stop where it is not there or memory is too small.
void* LoadMumps();

// Why that cannot be, in the system's words; empty: it is loaded.
std::string WhyNoMumps();

}  // namespace kvx
