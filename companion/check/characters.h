// Classes of characters as the reader has them, and words compared without regard to capitals.
// Characters beyond ASCII are of no class.
#pragma once

#include <string_view>

namespace kvx {

inline bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
inline bool IsDigit(char c) { return c >= '0' && c <= '9'; }
inline char LowerCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
// Letters and the underscore: what names are made of, beside digits.
inline bool IsLetter(char c) { return (LowerCase(c) >= 'a' && LowerCase(c) <= 'z') || c == '_'; }

inline bool IsSameWord(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (LowerCase(a[i]) != LowerCase(b[i])) return false;
  }
  return true;
}

// The text without white space at its begin and end.
inline std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace kvx
