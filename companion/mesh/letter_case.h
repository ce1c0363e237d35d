// Letters of decks, whose words may be written in lower case. ASCII alone, whatever the locale is.
#pragma once

#include <string_view>

namespace kvx {

char UpperLetter(char c);

// Whether the text is this word but for the case of its letters. word: in upper case.
bool IsWord(std::string_view text, std::string_view word);

}  // namespace kvx
