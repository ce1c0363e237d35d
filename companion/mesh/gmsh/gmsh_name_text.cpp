#include "mesh/gmsh/gmsh_name_text.h"

#include <cstddef>
#include <cstdint>

namespace kvx {

namespace {

// The length of the UTF-8 character that begins at `at`; 0: there is none. Overlong forms,
// surrogates and what lies above U+10FFFF are none (RFC 3629).
std::size_t LengthOfCharacter(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t k) -> unsigned {
    return k < text.size() ? static_cast<unsigned char>(text[k]) : 0U;
  };
  const unsigned first = byte(at);
  if (first < 0x80) return 1;
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4) return 0;
  for (std::size_t k = 1; k < length; ++k) {
    if ((byte(at + k) & 0xC0U) != 0x80U) return 0;
  }
  const unsigned second = byte(at + 1);
  const bool isBad = (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
                     (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
  return isBad ? 0 : length;
}

bool IsUtf8(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t length = LengthOfCharacter(text, at);
    if (length == 0) return false;
    at += length;
  }
  return true;
}

}  // namespace

std::string ReadableName(std::string_view name) {
  const bool isUtf8 = IsUtf8(name);
  std::string readable;
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F) {
      readable += '?';
    } else if (byte < 0x80 || isUtf8) {
      readable += c;
    } else {  // Latin-1's characters are the first of Unicode: two bytes
      readable += static_cast<char>(0xC0U | (byte >> 6U));
      readable += static_cast<char>(0x80U | (byte & 0x3FU));
    }
  }
  return readable;
}

}  // namespace kvx
