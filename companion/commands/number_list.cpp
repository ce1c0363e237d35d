#include "commands/number_list.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

#include "finding/text_layout.h"

namespace kvx {

namespace {

constexpr const char* Blanks = " \t";

// Stands for all numbers that the type does not hold.
constexpr std::int64_t TooLarge = std::numeric_limits<std::int64_t>::max();

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(Blanks);
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

// Digits alone.
bool ParseNumber(const std::string& text, std::int64_t& number) {
  if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) return false;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc()) number = TooLarge;
  return true;
}

// "5" or "5-8".
bool ParseRange(const std::string& text, std::pair<std::int64_t, std::int64_t>& range) {
  const std::size_t dash = text.find('-');
  if (!ParseNumber(Trimmed(text.substr(0, dash)), range.first)) return false;
  range.second = range.first;
  return dash == std::string::npos || ParseNumber(Trimmed(text.substr(dash + 1)), range.second);
}

}  // namespace

bool ParseNumberList(const std::string& text, NumberList& list, std::string& complaint) {
  list = {};
  if (Trimmed(text) == "all") {
    list.isAll = true;
    return true;
  }
  for (std::size_t at = 0; at != std::string::npos;) {
    const std::size_t comma = text.find(',', at);
    const std::string item =
        text.substr(at, comma == std::string::npos ? std::string::npos : comma - at);
    std::pair<std::int64_t, std::int64_t> range;
    if (!ParseRange(item, range)) {
      complaint = '"' + text + "\" is no list of numbers. Write all, or numbers such as 5-8,12.";
      return false;
    }
    if (range.second < range.first) {
      complaint = '"' + Trimmed(item) + "\" runs backwards. Write " + std::to_string(range.second) +
                  '-' + std::to_string(range.first) + '.';
      return false;
    }
    list.ranges.push_back(range);
    at = comma == std::string::npos ? comma : comma + 1;
  }
  return true;
}

bool ResolveNumberList(const NumberList& list, std::size_t count, const std::string& name,
                       std::vector<std::int32_t>& numbers, std::string& complaint) {
  numbers.clear();
  if (count == 0) {
    complaint = "the model has no " + name + "s.";
    return false;
  }
  const auto last = static_cast<std::int64_t>(count) - 1;
  for (const auto& range : list.ranges) {
    if (range.second <= last) continue;
    const std::int64_t number = range.first > last ? range.first : range.second;
    complaint = "there is no " + name +
                (number == TooLarge ? " with so large a number" : ' ' + std::to_string(number)) +
                ". The model has " + CountText(count, name.c_str(), (name + 's').c_str()) +
                ", numbered from 0" + (last > 0 ? " to " + std::to_string(last) : "") + '.';
    return false;
  }
  std::vector<bool> isChosen(count, list.isAll);
  for (const auto& [from, to] : list.ranges) {
    std::fill(isChosen.begin() + from, isChosen.begin() + to + 1, true);
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (isChosen[i]) numbers.push_back(static_cast<std::int32_t>(i));
  }
  return true;
}

}  // namespace kvx
