#include "finding/nearest_word.h"

#include <algorithm>

namespace kvx {

std::size_t CountSlips(std::string_view a, std::string_view b) {
  // slips[i][j] between the first i letters of a and the first j of b
  std::vector<std::vector<std::size_t>> slips(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        slips[i][j] = i + j;
        continue;
      }
      const std::size_t changed = slips[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      slips[i][j] = std::min({changed, slips[i - 1][j] + 1, slips[i][j - 1] + 1});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        slips[i][j] = std::min(slips[i][j], slips[i - 2][j - 2] + 1);
      }
    }
  }
  return slips[a.size()][b.size()];
}

std::vector<std::string> FindNearest(std::string_view typed,
                                     const std::vector<std::string>& words) {
  // Beyond this length nobody has mistyped one of the words, and the table would grow large.
  constexpr std::size_t LongestTyped = 64;
  std::vector<std::string> nearest;
  if (typed.size() > LongestTyped) return nearest;
  std::size_t fewest = LongestTyped;
  for (const std::string& word : words) {
    const std::size_t slips = CountSlips(typed, word);
    const bool isBeginning = !typed.empty() && word.rfind(typed, 0) == 0;
    const bool isNear = 5 * slips <= 2 * std::max(typed.size(), word.size());
    if (slips > fewest || !(isBeginning || isNear)) continue;
    if (slips < fewest) nearest.clear();
    fewest = slips;
    nearest.push_back(word);
  }
  return nearest;
}

}  // namespace kvx
