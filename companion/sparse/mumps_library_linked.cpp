// For programs of several processes: MPI has to begin before any of them makes a factor, and the
// MUMPS that uses it comes with it.
#include <dmumps_c.h>

#include "sparse/mumps_library.h"

namespace kvx {

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): as the system's interface is
void* LoadMumps() { return reinterpret_cast<void*>(&dmumps_c); }

std::string WhyNoMumps() { return ""; }

}  // namespace kvx
