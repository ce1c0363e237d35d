// The program as a processor with shorter vectors runs it: linked in front of the library, this
// takes the place of the question to the processor.
#include "platform/vector_bits.h"

int korvex::WidestVectorBits() { return KORVEX_VECTOR_BITS; }
