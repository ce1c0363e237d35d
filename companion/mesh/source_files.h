// The texts that an import reads: the deck and the files that it includes.
//
// No routine of this room opens a file. A text that a deck includes is asked for by its name, so
// that tests and fuzzers can hand over what they like.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace kvx {

// The place of something in the sources.
struct SourcePlace {
  std::int32_t file = 0;  // row of the sources
  std::size_t line = 0;   // 1-based; 0: the file as a whole
};

// Reads the file that a deck names. name: as it stands in the deck, after its quotes are removed,
// relative to the deck's folder; parts that a deck writes over several lines are joined. Returns
// false where it cannot be read.
using IncludeReader = std::function<bool(const std::string& name, std::string& text)>;

// One text. Its bytes stay where they are while an import goes on: parts of it are referred to.
struct SourceFile {
  std::string name;  // as messages show it, UTF-8
  std::string text;
};

}  // namespace kvx
