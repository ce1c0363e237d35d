// No vectors: a processor or compiler for which there are no routines.
#include "platform/vector_bits.h"

namespace korvex {

int WidestVectorBits() { return 0; }

}  // namespace korvex
