#include "finding/text_layout.h"

#include <algorithm>
#include <array>

namespace kvx {

namespace {

constexpr const char* Blanks = " \n";

// The character that begins `bytes`: its code and its length, 0 where the bytes are no UTF-8.
struct Character {
  char32_t code = 0;
  std::size_t length = 0;
};

Character ReadCharacter(std::string_view bytes) {
  const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned char lead = byteAt(0);
  if (lead < 0x80U) return {lead, 1};
  const std::size_t length = lead >= 0xF0U ? 4 : lead >= 0xE0U ? 3 : 2;
  if (lead < 0xC2U || lead > 0xF4U || bytes.size() < length) return {};
  char32_t code = lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byteAt(i) & 0xC0U) != 0x80U) return {};
    code = (code << 6U) | (byteAt(i) & 0x3FU);
  }
  // Not the shortest form, half of a pair of UTF-16, or beyond the last character.
  constexpr std::array<char32_t, 5> Least{0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < Least[length] || isSurrogate || code > 0x10FFFF) return {};
  return {code, length};
}

// Characters that move the cursor or change the direction of the text.
bool IsControl(char32_t code) {
  return code < 0x20 || (code >= 0x7F && code <= 0x9F) || (code >= 0x2028 && code <= 0x202E) ||
         (code >= 0x2066 && code <= 0x2069);
}

void AppendEscaped(std::string_view bytes, std::string& text) {
  constexpr const char* Digits = "0123456789ABCDEF";
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    text += "\\x";
    text += Digits[value >> 4U];
    text += Digits[value & 0xFU];
  }
}

// The bytes of UTF-8 that do not continue a character.
std::size_t CountCharacters(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
  }));
}

}  // namespace

std::string CleanText(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const Character character = ReadCharacter(bytes);
    const std::size_t length = std::max<std::size_t>(character.length, 1);
    if (character.length == 0 || IsControl(character.code)) {
      AppendEscaped(bytes.substr(0, length), text);
    } else {
      text += bytes.substr(0, length);
    }
    bytes.remove_prefix(length);
  }
  return text;
}

std::string WrapText(std::string_view text, std::size_t width, std::string_view first,
                     std::string_view next) {
  std::string lines(first);
  std::size_t column = CountCharacters(first);
  bool isLineEmpty = true;
  while (true) {
    const std::size_t begin = text.find_first_not_of(Blanks);
    if (begin == std::string_view::npos) break;
    text.remove_prefix(begin);
    const std::string_view word = text.substr(0, text.find_first_of(Blanks));
    text.remove_prefix(word.size());
    const std::size_t size = CountCharacters(word);
    if (!isLineEmpty && column + 1 + size > width) {
      lines += '\n';
      lines += next;
      column = CountCharacters(next);
    } else if (!isLineEmpty) {
      lines += ' ';
      ++column;
    }
    lines += word;
    column += size;
    isLineEmpty = false;
  }
  return lines + '\n';
}

std::string CountText(std::size_t count, const char* one, const char* several) {
  return std::to_string(count) + ' ' + (count == 1 ? one : several);
}

}  // namespace kvx
