// Numbers that tell how much: parts of a whole and factors in two digits, utilisations in three
// decimals.
#pragma once

#include <array>
#include <cstdio>
#include <string>

namespace kvx {

// "0.26", "3.4e-14"
inline std::string RoughText(double value) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.2g", value);
  return text.data();
}

// "1.036": a stress as a part of the yield stress. Two digits would hide that it is above.
inline std::string UtilisationText(double value) {
  constexpr double Largest = 1e6;  // beyond it the thousandths tell nothing
  if (!(value < Largest)) return RoughText(value);
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.3f", value);
  return text.data();
}

}  // namespace kvx
