#include "finding/amount_text.h"

#include <cmath>

#include "base/gigabyte.h"
#include "base/number_text.h"
#include "platform/free_memory.h"

namespace kvx {

namespace {

// Shorter times are not told apart.
constexpr double ShortestSeconds = 0.1;

std::string PlainNumber(double value) {
  korvex::NumberBuffer buffer;
  return std::string(korvex::FormatNumber(value, buffer));
}

// How many of the last digit shown make a unit: 1 from 10 on, 10 from 1 on, at most mostParts.
double CountParts(double value, double mostParts) {
  double parts = 1.0;
  while (value * parts < 10.0 && parts < mostParts) parts *= 10.0;
  return parts;
}

// round: up or down.
template <typename Round>
std::string RoundedGigabytes(std::uint64_t bytes, const Round& round) {
  constexpr double MostParts = 1000.0;
  const double gigabytes = static_cast<double>(bytes) / korvex::BytesPerGigabyte;
  const double parts = CountParts(gigabytes, MostParts);
  return PlainNumber(round(gigabytes * parts) / parts);
}

// value: less than 120; two digits below 10.
std::string TwoDigits(double value) {
  constexpr double MostParts = 100.0;
  const double parts = CountParts(value, MostParts);
  return PlainNumber(std::round(value * parts) / parts);
}

}  // namespace

std::string GigabyteNumber(std::uint64_t bytes) {
  return RoundedGigabytes(bytes, [](double value) { return std::ceil(value); });
}

std::string GigabyteText(std::uint64_t bytes) { return GigabyteNumber(bytes) + " GB"; }

std::string AllowedText(std::uint64_t bytes) {
  return RoundedGigabytes(bytes, [](double value) { return std::floor(value); }) + " GB";
}

std::string FreeText(std::uint64_t bytes) {
  std::string text = AllowedText(bytes) + " free";
  switch (korvex::FindMemoryBound()) {
    case korvex::MemoryBound::Addresses:
      return text + " within the limit of addresses (ulimit -v)";
    case korvex::MemoryBound::Container:
      return text + " within the memory limit of this container";
    default:
      return text;
  }
}

std::string DurationText(double seconds) {
  constexpr double Minute = 60.0, Hour = 3600.0;
  if (!(seconds >= ShortestSeconds)) return "less than " + PlainNumber(ShortestSeconds) + " s";
  if (seconds < 2.0 * Minute) return TwoDigits(seconds) + " s";
  if (seconds < 2.0 * Hour) return PlainNumber(std::round(seconds / Minute)) + " min";
  return PlainNumber(std::round(10.0 * seconds / Hour) / 10.0) + " h";
}

std::string AboutText(double seconds) {
  return (seconds >= ShortestSeconds ? "about " : "") + DurationText(seconds);
}

}  // namespace kvx
