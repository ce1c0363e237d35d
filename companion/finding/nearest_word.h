// The word that was meant where another one was typed.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kvx {

// How many letters were added, left out, changed or swapped with their neighbour between two words:
// the optimal string alignment distance (Damerau 1964), each letter taking part once.
std::size_t CountSlips(std::string_view a, std::string_view b);

// Those of `words` with the fewest slips from `typed`, in their order. Only words that begin with
// `typed` are considered, and those with slips in at most two fifths of the longer word: "chk" may
// mean "check", "xyz" means nothing.
std::vector<std::string> FindNearest(std::string_view typed, const std::vector<std::string>& words);

}  // namespace kvx
