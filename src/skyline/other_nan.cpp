#include "skyline/other_nan.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace korvex {

namespace {

bool HasOtherNaN(const double* values, std::int64_t count) {
  constexpr std::uint64_t FixedNaN = 0xFFF8000000000000U;
  return std::any_of(values, values + count, [](double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return std::isnan(value) && bits != FixedNaN;
  });
}

}  // namespace

bool HasOtherNaN(const std::vector<double>& values) {
  return HasOtherNaN(values.data(), static_cast<std::int64_t>(values.size()));
}

// The values of neighbouring columns are contiguous.
bool HasOtherNaN(const SkylineMatrix& K, std::int64_t first, std::int64_t end, SumRoutine sum) {
  const double* values = Column(K, first);
  const std::int64_t count =
      Column(K, end - 1) + K.ColumnHeights[static_cast<std::size_t>(end - 1)] - values;
  return std::isnan(sum(values, count)) && HasOtherNaN(values, count);
}

}  // namespace korvex
