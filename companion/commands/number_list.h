// Lists of element numbers as options take them: "5-8,12", "all".
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace kvx {

struct NumberList {
  bool isAll = false;
  std::vector<std::pair<std::int64_t, std::int64_t>> ranges;  // first, last; a number is both
};

// Reads numbers and ranges between commas; blanks do not matter. Returns false where that is not
// what the text holds; complaint: why, as a sentence about the quoted text.
bool ParseNumberList(const std::string& text, NumberList& list, std::string& complaint);

// The numbers, ascending, each once. count: of the elements, numbered from 0; name: what they are,
// "beam" or "four-node shell". Returns false where a number is beyond them, or where there are
// none; complaint: a sentence that says so.
bool ResolveNumberList(const NumberList& list, std::size_t count, const std::string& name,
                       std::vector<std::int32_t>& numbers, std::string& complaint);

}  // namespace kvx
