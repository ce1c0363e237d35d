#include "mesh/letter_case.h"

#include <algorithm>

namespace kvx {

char UpperLetter(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool IsWord(std::string_view text, std::string_view word) {
  return text.size() == word.size() &&
         std::equal(text.begin(), text.end(), word.begin(),
                    [](char a, char b) { return UpperLetter(a) == b; });
}

}  // namespace kvx
