#include "commands/hash_text.h"

#include <array>
#include <charconv>
#include <system_error>

namespace kvx {

namespace {

constexpr std::size_t HashDigits = 16;  // of 64 bits
constexpr int HashBase = 16;

}  // namespace

std::string HashText(std::uint64_t hash) {
  constexpr std::array<char, HashBase> Digits{'0', '1', '2', '3', '4', '5', '6', '7',
                                              '8', '9', 'a', 'b', 'c', 'd', 'e', 'f'};
  std::string text(HashDigits, '0');
  for (auto digit = text.rbegin(); digit != text.rend(); ++digit) {
    *digit = Digits[hash & 0xFU];
    hash >>= 4U;
  }
  return text;
}

bool ReadHashText(const std::string& text, std::uint64_t& hash) {
  if (text.size() != HashDigits) return false;
  const char* const end = text.data() + text.size();
  const auto reading = std::from_chars(text.data(), end, hash, HashBase);
  return reading.ec == std::errc() && reading.ptr == end;
}

}  // namespace kvx
