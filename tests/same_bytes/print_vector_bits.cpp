// Prints the vector length of this machine, to know what can be run here.
#include <cstdio>

#include "platform/vector_bits.h"

int main() { std::printf("%d\n", korvex::WidestVectorBits()); }
