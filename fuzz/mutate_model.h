// Changes model files the way other programs and transfers spoil them: wrong counts, references
// and numbers, lines that are missing, doubled or in another order, a cut-off end, stray bytes.
//
// Random bytes would hardly get past the header; these changes leave most of the file readable.
#pragma once

#include <cstdint>
#include <string>

namespace korvex::fuzz {

// Applies one to four changes to `text`. The same seed makes the same changes.
void MutateModel(std::string& text, std::uint64_t seed);

}  // namespace korvex::fuzz
