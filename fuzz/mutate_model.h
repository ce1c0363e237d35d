// Damages model files as faulty programs and transfers do: wrong counts, references and numbers,
// lines that are missing, repeated or in another order, a cut-off end, wrong bytes.
//
// Random bytes would fail at the header; after these changes most of the file can still be read.
#pragma once

#include <cstdint>
#include <string>

namespace korvex::fuzz {

// Applies one to four changes to `text`. The same seed gives the same changes.
void MutateModel(std::string& text, std::uint64_t seed);

}  // namespace korvex::fuzz
