// For processors and compilers without vector routines.
#include "platform/vector_bits.h"

namespace korvex {

int WidestVectorBits() { return 0; }

}  // namespace korvex
