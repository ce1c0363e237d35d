// Where the numbers of nodes and elements of a deck lead.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace kvx {

// From a number to what it stands for. Sorted once, then asked.
struct AbaqusNumbers {
  std::vector<std::pair<std::int64_t, std::int32_t>> entries;  // number, row; ascending when sorted
  std::vector<std::int32_t> dense;  // [number - first number] rows, where the numbers lie close
};

inline void AddNumber(std::int64_t number, std::int32_t row, AbaqusNumbers& numbers) {
  numbers.entries.emplace_back(number, row);
}

// Sorts the entries. Of equal numbers the one that was added first leads.
void SortNumbers(AbaqusNumbers& numbers);

// The row of a number; -1 where there is none.
std::int32_t FindNumber(const AbaqusNumbers& numbers, std::int64_t number);

// The first entry whose number is not below `number`.
std::size_t FindEntry(const AbaqusNumbers& numbers, std::int64_t number);

}  // namespace kvx
