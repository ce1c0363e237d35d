// Texts by their words, for comparisons that do not depend on where lines and columns end.
#pragma once

#include <sstream>
#include <string>
#include <vector>

namespace kvx::test {

inline std::vector<std::string> SplitWords(const std::string& text) {
  std::vector<std::string> words;
  std::istringstream stream(text);
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

// One blank before, between and behind the words.
inline std::string JoinWords(const std::vector<std::string>& words) {
  std::string text = " ";
  for (const std::string& word : words) text += word + ' ';
  return text;
}

}  // namespace kvx::test
