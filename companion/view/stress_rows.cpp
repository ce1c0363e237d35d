#include "view/stress_rows.h"

#include <cmath>

#include "results/corner_stress.h"
#include "view/six_digits.h"

namespace kvx {

namespace {

using korvex::StressVector;

constexpr std::size_t Components = 6;
constexpr std::int32_t FreePlace = -1;
constexpr std::int16_t NotFinite = INT16_MAX;  // in place of an exponent; the digits say which

// Both faces of a corner: six components and the von Mises stress each.
using CornerNumbers = std::array<double, ShownNumbers>;

CornerNumbers Collect(const StressVector& upper, const StressVector& lower) {
  CornerNumbers numbers{};
  for (std::size_t i = 0; i < Components; ++i) {
    numbers[i] = upper[i];
    numbers[Components + i] = lower[i];
  }
  numbers[2 * Components] = korvex::EquivalentStress(upper);
  numbers[2 * Components + 1] = korvex::EquivalentStress(lower);
  return numbers;
}

void Show(double number, std::int32_t& digits, std::int16_t& exponent) {
  if (!std::isfinite(number)) {
    digits = std::isnan(number) ? 0 : (number > 0.0 ? 1 : -1);
    exponent = NotFinite;
    return;
  }
  const SixDigits rounded = RoundToSixDigits(number);
  digits = rounded.digits;
  exponent = static_cast<std::int16_t>(rounded.exponent);
}

ShownStress Show(const CornerNumbers& numbers) {
  ShownStress shown;
  for (std::size_t i = 0; i < ShownNumbers; ++i) {
    Show(numbers[i], shown.digits[i], shown.exponents[i]);
  }
  return shown;
}

bool AreSame(const ShownStress& a, const ShownStress& b) {
  return a.digits == b.digits && a.exponents == b.exponents;
}

// Products with an odd constant, the upper half folded onto the lower one after each.
std::size_t Hash(const ShownStress& shown) {
  constexpr std::uint64_t Factor = 0x9E3779B97F4A7C15;  // 2^64 / golden ratio (Knuth 1998, 6.4)
  std::uint64_t hash = 0;
  for (std::size_t i = 0; i < ShownNumbers; ++i) {
    const auto digits = static_cast<std::uint32_t>(shown.digits[i]);
    const auto exponent = static_cast<std::uint16_t>(shown.exponents[i]);
    hash = (hash ^ digits ^ static_cast<std::uint64_t>(exponent) << 32U) * Factor;
    hash ^= hash >> 32U;
  }
  return static_cast<std::size_t>(hash);
}

// The place of the row that shows this, or the free place where it belongs.
std::int32_t& FindPlace(const ShownStress& shown, StressRowTable& table) {
  const std::size_t mask = table.places.size() - 1;
  for (std::size_t at = Hash(shown) & mask;; at = (at + 1) & mask) {
    std::int32_t& row = table.places[at];
    if (row == FreePlace || AreSame(table.shown[static_cast<std::size_t>(row)], shown)) return row;
  }
}

// At least half of the places stay free.
void MakeRoom(StressRowTable& table) {
  constexpr std::size_t FirstPlaces = 1024;
  if (2 * (table.shown.size() + 1) <= table.places.size()) return;
  const std::size_t places = table.places.empty() ? FirstPlaces : 2 * table.places.size();
  table.places.assign(places, FreePlace);
  for (std::size_t row = 0; row < table.shown.size(); ++row) {
    FindPlace(table.shown[row], table) = static_cast<std::int32_t>(row);
  }
}

void AddCorner(const StressVector& upper, const StressVector& lower, StressRowTable& table,
               StressRows& rows) {
  const CornerNumbers numbers = Collect(upper, lower);
  const ShownStress shown = Show(numbers);
  MakeRoom(table);
  std::int32_t& row = FindPlace(shown, table);
  if (row == FreePlace) {
    row = static_cast<std::int32_t>(table.shown.size());
    table.shown.push_back(shown);
    rows.upper.insert(rows.upper.end(), upper.begin(), upper.end());
    rows.lower.insert(rows.lower.end(), lower.begin(), lower.end());
    rows.upperMises.push_back(numbers[2 * Components]);
    rows.lowerMises.push_back(numbers[2 * Components + 1]);
  }
  rows.rows.push_back(row);
}

}  // namespace

template <std::int32_t Nodes>
void AddStressCorners(const std::vector<korvex::ShellElement<Nodes>>& shells, StressRowTable& table,
                      StressRows& rows) {
  for (const korvex::ShellElement<Nodes>& shell : shells) {
    for (std::size_t k = 0; k < static_cast<std::size_t>(Nodes); ++k) {
      AddCorner(shell.AvgStressTop[k], shell.AvgStressBottom[k], table, rows);
    }
  }
}

template void AddStressCorners(const std::vector<korvex::Shell4Element>&, StressRowTable&,
                               StressRows&);
template void AddStressCorners(const std::vector<korvex::Shell3Element>&, StressRowTable&,
                               StressRows&);

void AddStressColumns(const std::string& prefix, const StressRows& rows, PageBlock& block) {
  AddIntegers(prefix + ".rows", rows.rows, block);
  AddDecimals(prefix + ".upper", rows.upper, block, Components);
  AddDecimals(prefix + ".lower", rows.lower, block, Components);
  AddDecimals(prefix + ".upperMises", rows.upperMises, block);
  AddDecimals(prefix + ".lowerMises", rows.lowerMises, block);
}

}  // namespace kvx
