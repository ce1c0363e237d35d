// The vector registers of the processor the program runs on.
#pragma once

namespace korvex {

// The length, in bits, of the longest vectors of doubles that the processor and the operating
// system offer and the program knows: 128, 256, 512, or 0 for none.
int WidestVectorBits();

}  // namespace korvex
