// All choices come from one sequence of random numbers.
#include "mutate_model.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace korvex::fuzz {

namespace {

// splitmix64 (Steele, Lea & Flood 2014): the same numbers on every platform, unlike the standard
// library's distributions.
std::uint64_t Draw(std::uint64_t& state) {
  state += 0x9E3779B97F4A7C15U;
  std::uint64_t bits = state;
  bits = (bits ^ (bits >> 30U)) * 0xBF58476D1CE4E5B9U;
  bits = (bits ^ (bits >> 27U)) * 0x94D049BB133111EBU;
  return bits ^ (bits >> 31U);
}

// A number below `limit`, which is at least 1. The bias of the remainder does not matter here.
std::size_t DrawBelow(std::uint64_t& state, std::size_t limit) {
  return static_cast<std::size_t>(Draw(state) % limit);
}

// A part of the text: [begin, end).
struct Span {
  std::size_t begin, end;
};

bool IsNumberCharacter(char c) {
  return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.' || c == 'e';
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Returns all numbers of the text, also those in words such as "4ND". afterEquals: only numbers
// after a "=", which are the counts and properties.
std::vector<Span> FindNumbers(const std::string& text, bool afterEquals) {
  std::vector<Span> numbers;
  for (std::size_t i = 0; i < text.size();) {
    std::size_t end = i;
    while (end < text.size() && IsNumberCharacter(text[end])) ++end;
    const bool hasDigit = std::any_of(text.begin() + static_cast<std::ptrdiff_t>(i),
                                      text.begin() + static_cast<std::ptrdiff_t>(end), IsDigit);
    const bool isWanted = !afterEquals || (i > 0 && text[i - 1] == '=');
    if (hasDigit && isWanted) numbers.push_back({i, end});
    i = std::max(end, i + 1);
  }
  return numbers;
}

// Returns the lines with their line feeds.
std::vector<Span> FindLines(const std::string& text) {
  std::vector<Span> lines;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t feed = text.find('\n', i);
    const std::size_t end = feed == std::string::npos ? text.size() : feed + 1;
    lines.push_back({i, end});
    i = end;
  }
  return lines;
}

std::string Cut(const std::string& text, const Span& span) {
  return text.substr(span.begin, span.end - span.begin);
}

// Limits of number ranges, values just outside them, and texts that are barely numbers.
constexpr std::array<std::string_view, 34> Numbers{"0",
                                                   "-0",
                                                   "1",
                                                   "-1",
                                                   "2",
                                                   "3",
                                                   "4",
                                                   "5",
                                                   "7",
                                                   "100",
                                                   "1000",
                                                   "65536",
                                                   "20000000",
                                                   "357913941",
                                                   "357913942",
                                                   "2000000000",
                                                   "2147483647",
                                                   "-2147483648",
                                                   "4294967295",
                                                   "4294967296",
                                                   "99999999999999999999",
                                                   "1e-20",
                                                   "1e20",
                                                   "1e154",
                                                   "1e308",
                                                   "-1e308",
                                                   "1e-308",
                                                   "1e400",
                                                   "4.9e-324",
                                                   "nan",
                                                   "-inf",
                                                   "0x1p-3",
                                                   "1e+",
                                                   ""};

// Replaces a number by one of the list, by another number of the file, or changes its last digit.
void ReplaceNumber(std::string& text, bool afterEquals, std::uint64_t& state) {
  const std::vector<Span> numbers = FindNumbers(text, afterEquals);
  if (numbers.empty()) return;
  const Span& at = numbers[DrawBelow(state, numbers.size())];
  std::string number = Cut(text, at);
  switch (DrawBelow(state, 4)) {
    case 0:
      number = Cut(text, numbers[DrawBelow(state, numbers.size())]);
      break;
    case 1: {  // one up or down in the last digit
      char& last = number.back();
      const int step = DrawBelow(state, 2) == 0 ? 1 : 9;
      if (IsDigit(last)) last = static_cast<char>('0' + (last - '0' + step) % 10);
      break;
    }
    default:
      number = Numbers[DrawBelow(state, Numbers.size())];
  }
  text.replace(at.begin, at.end - at.begin, number);
}

// Removes a line, copies it to another place, or exchanges two lines.
void ChangeLines(std::string& text, std::uint64_t& state) {
  const std::vector<Span> lines = FindLines(text);
  if (lines.empty()) return;
  const Span& line = lines[DrawBelow(state, lines.size())];
  const std::string content = Cut(text, line);
  const Span& other = lines[DrawBelow(state, lines.size())];
  switch (DrawBelow(state, 3)) {
    case 0:
      text.erase(line.begin, line.end - line.begin);
      break;
    case 1:
      text.insert(other.begin, content);
      break;
    default: {
      const std::string otherContent = Cut(text, other);
      // The later line is replaced first, so that the positions of the earlier one stay valid.
      const bool isBefore = line.begin < other.begin;
      const Span& later = isBefore ? other : line;
      const Span& earlier = isBefore ? line : other;
      text.replace(later.begin, later.end - later.begin, isBefore ? content : otherContent);
      text.replace(earlier.begin, earlier.end - earlier.begin, isBefore ? otherContent : content);
    }
  }
}

constexpr std::string_view StrayBytes("\0\n\r\t ,:;<>[]=#%-.xE\xFF", 21);

// Changes, inserts or removes a byte.
void ChangeByte(std::string& text, std::uint64_t& state) {
  if (text.empty()) return;
  const std::size_t at = DrawBelow(state, text.size());
  const char byte = StrayBytes[DrawBelow(state, StrayBytes.size())];
  switch (DrawBelow(state, 3)) {
    case 0:
      text[at] = byte;
      break;
    case 1:
      text.insert(at, 1, byte);
      break;
    default:
      text.erase(at, 1);
  }
}

}  // namespace

void MutateModel(std::string& text, std::uint64_t seed) {
  std::uint64_t state = seed;
  const std::size_t changes = 1 + DrawBelow(state, 4);
  for (std::size_t i = 0; i < changes; ++i) {
    switch (DrawBelow(state, 8)) {
      case 0:
        text.resize(DrawBelow(state, text.size() + 1));  // a transfer that broke off
        break;
      case 1:
        ChangeLines(text, state);
        break;
      case 2:
        ChangeByte(text, state);
        break;
      case 3:
      case 4:
        ReplaceNumber(text, true, state);
        break;
      default:
        ReplaceNumber(text, false, state);
    }
  }
}

}  // namespace korvex::fuzz
