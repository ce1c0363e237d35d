#include "mesh/nastran/nastran_fields.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "mesh/nastran/nastran_line.h"
#include "mesh/scan_number.h"

namespace kvx {

namespace {

// Longer numbers make no sense; so their texts need no memory.
constexpr std::size_t LongestNumber = 64;

// Where the exponent begins that has a sign and no letter: "2.9+7". npos: there is none.
std::size_t BareExponent(std::string_view text) {
  const std::size_t sign = text.find_last_of("+-");
  if (sign == std::string_view::npos || sign == 0) return std::string_view::npos;
  const char before = text[sign - 1];
  const bool isBare = (before >= '0' && before <= '9') || before == '.';
  return isBare ? sign : std::string_view::npos;
}

// "CBAR 11, field 5: ..."
[[noreturn]] void StopAtField(const NastranRow& row, std::size_t number, const std::string& text) {
  std::string card(row.card.name);
  std::int64_t own = 0;
  if (ScanInteger(FieldOf(row.deck, row.card, 2), own)) card += ' ' + std::to_string(own);
  StopImport(row.report, row.card.place, card + ", field " + std::to_string(number) + ": " + text);
}

}  // namespace

bool ScanReal(std::string_view text, double& value) {
  const std::size_t exponent = BareExponent(text);
  if (exponent == std::string_view::npos) return ScanDouble(text, value);
  std::array<char, LongestNumber + 1> whole{};
  if (text.size() > LongestNumber) return false;
  if (text.find_first_of("eEdD") != std::string_view::npos) return false;
  text.copy(whole.data(), exponent);
  whole[exponent] = 'E';
  text.copy(whole.data() + exponent + 1, text.size() - exponent, exponent);
  return ScanDouble({whole.data(), text.size() + 1}, value);
}

double RealField(const NastranRow& row, std::size_t number, double blank) {
  const std::string_view text = FieldOf(row.deck, row.card, number);
  if (text.empty()) return blank;
  double value = 0.0;
  if (!ScanReal(text, value)) StopAtField(row, number, QuoteForMessage(text) + " is no number");
  return value;
}

std::int64_t IntegerField(const NastranRow& row, std::size_t number, std::int64_t blank) {
  const std::string_view text = FieldOf(row.deck, row.card, number);
  if (text.empty()) return blank;
  std::int64_t value = 0;
  if (!ScanInteger(text, value)) {
    StopAtField(row, number, QuoteForMessage(text) + " is no integer");
  }
  return value;
}

bool IsBlank(const NastranRow& row, std::size_t number) {
  return FieldOf(row.deck, row.card, number).empty();
}

double NeedReal(const NastranRow& row, std::size_t number) {
  if (IsBlank(row, number)) StopAtField(row, number, "a number is missing");
  return RealField(row, number, 0.0);
}

std::int64_t NeedInteger(const NastranRow& row, std::size_t number) {
  if (IsBlank(row, number)) StopAtField(row, number, "an integer is missing");
  return IntegerField(row, number, 0);
}

std::int64_t NeedNumber(const NastranRow& row, std::size_t number) {
  const std::int64_t value = NeedInteger(row, number);
  if (value <= 0) StopAtField(row, number, "a number above 0 is needed");
  return value;
}

bool HoldsInteger(const NastranRow& row, std::size_t number) {
  std::int64_t value = 0;
  return ScanInteger(FieldOf(row.deck, row.card, number), value);
}

}  // namespace kvx
