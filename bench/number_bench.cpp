// Times the text of a number in six digits: by the program's own routine, std::to_chars and printf.
//
// A million numbers from 1e-6 to 1e9, both signs, as stresses and displacements are. All ways are
// measured in each round, one after the other, and write the same characters.
#include <charconv>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "measure.h"

namespace {

constexpr std::size_t Count = 1000000;
constexpr int Rounds = 7;
constexpr int Digits = 6;

using Writer = char* (*)(double number, char* out);

char* WriteByLibrary(double number, char* out) {
  return std::to_chars(out, out + korvex::NumberRoom, number, std::chars_format::general, Digits)
      .ptr;
}

char* WriteByPrintf(double number, char* out) {
  return out + std::snprintf(out, korvex::NumberRoom, "%.*g", Digits, number);
}

struct Way {
  const char* name;
  Writer write;
  std::vector<double> seconds = {};
  std::string text = {};
};

// One number behind the other in `text`.
void WriteAll(const std::vector<double>& numbers, Way& way) {
  way.text.resize(Count * korvex::NumberRoom);
  char* out = way.text.data();
  for (const double number : numbers) out = way.write(number, out);
  way.text.resize(static_cast<std::size_t>(out - way.text.data()));
}

}  // namespace

int main() {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> exponent(-6.0, 9.0);
  std::vector<double> numbers(Count);
  for (double& number : numbers) {
    number = std::pow(10.0, exponent(random)) * (random() % 2 == 0 ? 1.0 : -1.0);
  }
  Way ways[] = {
      {"WriteNumber", [](double number, char* out) { return korvex::WriteNumber(number, out); }},
      {"to_chars", WriteByLibrary},
      {"printf", WriteByPrintf}};
  for (int round = 0; round <= Rounds; ++round) {
    for (Way& way : ways) {
      const double seconds = korvex::bench::Measure([&] { WriteAll(numbers, way); });
      if (round > 0) way.seconds.push_back(seconds);  // the first one touches the memory
    }
  }
  bool isSame = true;
  std::printf("nanoseconds a number, medians of %d rounds\n", Rounds);
  for (const Way& way : ways) {
    std::printf("%-12s %8.1f\n", way.name,
                1e9 * korvex::bench::Median(way.seconds) / static_cast<double>(Count));
    isSame = isSame && way.text == ways[0].text;
  }
  if (!isSame) std::printf("OTHER CHARACTERS\n");
  return isSame ? 0 : 1;
}
