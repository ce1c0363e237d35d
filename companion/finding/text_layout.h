// Text for people: bytes of a file made safe to show, lines broken at a width.
//
// A width is a number of characters; a character outside ASCII counts as one.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kvx {

// `bytes` as UTF-8 that a terminal can only show: control characters, also those above ASCII, and
// bytes that are no UTF-8 become "\x1B". Valid texts come back as they are.
std::string CleanText(std::string_view bytes);

// Breaks `text` at its blanks and line ends into lines of at most `width` characters; a longer word
// gets a line of its own. `first` begins the first line and `next` all others. Each line ends with
// "\n". Several blanks in a row become one.
std::string WrapText(std::string_view text, std::size_t width, std::string_view first,
                     std::string_view next);

// "1 node", "2 nodes", "0 nodes"
std::string CountText(std::size_t count, const char* one, const char* several);

}  // namespace kvx
