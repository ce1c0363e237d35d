// The vector registers of the processor that the program runs on.
//
// x86: SSE2 (128 bits, on every 64-bit processor), AVX (256) and AVX-512 (512). Other processors
// and compilers: none.
#pragma once

namespace korvex {

// Returns the length in bits of the longest vectors of doubles that the program can use here: the
// processor and the operating system must support them. 128, 256, 512, or 0 for none.
int WidestVectorBits();

}  // namespace korvex
