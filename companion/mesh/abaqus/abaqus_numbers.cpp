#include "mesh/abaqus/abaqus_numbers.h"

#include <algorithm>

namespace kvx {

namespace {

// Numbers that fill this share of their range are looked up in a table.
constexpr std::uint64_t DensestGap = 4;

}  // namespace

void SortNumbers(AbaqusNumbers& numbers) {
  auto& entries = numbers.entries;
  const auto isBefore = [](const auto& a, const auto& b) { return a.first < b.first; };
  if (!std::is_sorted(entries.begin(), entries.end(), isBefore)) {
    std::stable_sort(entries.begin(), entries.end(), isBefore);
  }
  numbers.dense.clear();
  if (entries.empty()) return;
  // Unsigned, as the range of two numbers may be twice that of one.
  const auto first = static_cast<std::uint64_t>(entries.front().first);
  const std::uint64_t range = static_cast<std::uint64_t>(entries.back().first) - first;
  if (range / DensestGap >= entries.size()) return;
  numbers.dense.assign(static_cast<std::size_t>(range) + 1, -1);
  for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
    const std::uint64_t place = static_cast<std::uint64_t>(entry->first) - first;
    numbers.dense[static_cast<std::size_t>(place)] = entry->second;
  }
}

std::size_t FindEntry(const AbaqusNumbers& numbers, std::int64_t number) {
  const auto at = std::lower_bound(numbers.entries.begin(), numbers.entries.end(), number,
                                   [](const auto& a, std::int64_t n) { return a.first < n; });
  return static_cast<std::size_t>(at - numbers.entries.begin());
}

std::int32_t FindNumber(const AbaqusNumbers& numbers, std::int64_t number) {
  const auto& entries = numbers.entries;
  if (entries.empty() || number < entries.front().first || number > entries.back().first) return -1;
  if (!numbers.dense.empty()) {
    const std::uint64_t place =
        static_cast<std::uint64_t>(number) - static_cast<std::uint64_t>(entries.front().first);
    return numbers.dense[static_cast<std::size_t>(place)];
  }
  const std::size_t at = FindEntry(numbers, number);
  return at < entries.size() && entries[at].first == number ? entries[at].second : -1;
}

}  // namespace kvx
