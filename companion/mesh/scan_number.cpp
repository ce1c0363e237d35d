#include "mesh/scan_number.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <system_error>

namespace kvx {

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// A leading plus is not known to from_chars.
std::string_view WithoutPlus(std::string_view text) {
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  return text;
}

// Whether a number that no double holds is too small, and not too large: by the decimal place of
// its first digit that is not 0. text: as from_chars takes it.
bool IsTiny(std::string_view text) {
  const std::size_t e = text.find_first_of("eE");
  const std::string_view mantissa = text.substr(0, e);
  std::int64_t exponent = 0;
  const bool hasExponent = e != std::string_view::npos;
  if (hasExponent && !ScanInteger(text.substr(e + 1), exponent)) return text[e + 1] == '-';
  // Far beyond any double, and far from the ends of the integers.
  constexpr std::int64_t Limit = 1000000000000;
  exponent = std::clamp(exponent, -Limit, Limit);
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  const std::size_t first = mantissa.find_first_of("123456789");
  return exponent + static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first) < 0;
}

}  // namespace

bool ScanInteger(std::string_view text, std::int64_t& value) {
  text = WithoutPlus(text);
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  return !text.empty() && result.ec == std::errc() && result.ptr == end;
}

bool ScanDouble(std::string_view text, double& value) {
  text = WithoutPlus(text);
  // "inf" and "nan" have no digit; a hexadecimal number has an x.
  const auto isOfNumber = [](char c) {
    return IsDigit(c) || c == '.' || c == '+' || c == '-' || c == 'e' || c == 'E' || c == 'd' ||
           c == 'D';
  };
  if (!std::all_of(text.begin(), text.end(), isOfNumber)) return false;
  if (!std::any_of(text.begin(), text.end(), IsDigit)) return false;
  std::string copy;
  if (text.find_first_of("dD") != std::string_view::npos) {
    copy = text;
    std::replace_if(
        copy.begin(), copy.end(), [](char c) { return c == 'd' || c == 'D'; }, 'e');
    text = copy;
  }
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  if (result.ptr != end) return false;
  if (result.ec == std::errc()) return true;
  if (result.ec != std::errc::result_out_of_range) return false;
  value = 0.0;
  return IsTiny(text);
}

std::string_view TrimBlanks(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

}  // namespace kvx
