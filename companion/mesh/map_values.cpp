#include "mesh/map_values.h"

#include <algorithm>
#include <cmath>

#include "finding/nearest_word.h"
#include "finding/text_layout.h"
#include "report/stop.h"

namespace kvx {

namespace {

// A mesh may have thousands of groups: a message lists no more.
constexpr std::size_t MostListed = 10;

[[noreturn]] void RefuseKind(const TomlItem& item, const std::string& owner, const char* form) {
  const std::string what = item.key.empty() ? std::string(NameKind(item)) + " where it must not be"
                                            : InQuotes(item.key) + " is " + NameKind(item);
  StopAtLine(item.line, owner + ": " + what + ". Write it as in: " + form);
}

}  // namespace

void StopAtLine(std::size_t line, const std::string& text) {
  const std::string place = line > 0 ? "line " + std::to_string(line) + ": " : "";
  throw korvex::Stop{korvex::StopKind::Notice, place + text};
}

std::string InQuotes(const std::string& text) { return '"' + CleanText(text) + '"'; }

std::string SuggestWord(const std::string& typed, const std::vector<std::string>& words) {
  const std::vector<std::string> nearest = FindNearest(typed, words);
  if (!nearest.empty()) return " Did you mean " + InQuotes(nearest.front()) + "?";
  if (words.empty()) return " There is none at all.";
  std::string list;
  for (std::size_t k = 0; k < std::min(words.size(), MostListed); ++k) {
    list += (k > 0 ? ", " : "") + InQuotes(words[k]);
  }
  return " There are: " + list + (words.size() > MostListed ? ", ..." : ".");
}

void RefuseKey(const TomlItem& item, const std::string& owner,
               const std::vector<std::string>& known) {
  const std::vector<std::string> nearest = FindNearest(item.key, known);
  std::string list;
  for (const std::string& key : known) list += (list.empty() ? "" : ", ") + key;
  StopAtLine(item.line, owner + " has no " + InQuotes(item.key) + "." +
                            (nearest.empty() ? " It may have: " + list + "."
                                             : " Did you mean " + InQuotes(nearest.front()) + "?"));
}

double ReadNumber(const TomlItem& item, const std::string& owner, const char* form) {
  if (item.kind != TomlKind::Number) RefuseKind(item, owner, form);
  if (!std::isfinite(item.number)) {
    StopAtLine(item.line, owner + ": the number must be finite.");
  }
  return item.number;
}

double ReadPositive(const TomlItem& item, const std::string& owner, const char* form) {
  const double number = ReadNumber(item, owner, form);
  if (!(number > 0.0)) {
    StopAtLine(item.line, owner + ": " + InQuotes(item.key) + " must be above 0.");
  }
  return number;
}

bool ReadTruth(const TomlItem& item, const std::string& owner, const char* form) {
  if (item.kind != TomlKind::Truth) RefuseKind(item, owner, form);
  return item.truth;
}

std::string ReadText(const TomlItem& item, const std::string& owner, const char* form) {
  if (item.kind != TomlKind::Text) RefuseKind(item, owner, form);
  return item.text;
}

std::vector<double> ReadNumbers(const TomlItem& item, const std::string& owner, const char* form) {
  if (item.kind != TomlKind::List) RefuseKind(item, owner, form);
  std::vector<double> numbers;
  for (const TomlItem& each : item.items) numbers.push_back(ReadNumber(each, owner, form));
  return numbers;
}

korvex::Vector3 ReadVector(const TomlItem& item, const std::string& owner, const char* form) {
  const std::vector<double> numbers = ReadNumbers(item, owner, form);
  if (numbers.size() != 3) {
    StopAtLine(item.line, owner + ": " + InQuotes(item.key) + " has " +
                              std::to_string(numbers.size()) +
                              " numbers instead of 3. Write it as in: " + form);
  }
  return {numbers[0], numbers[1], numbers[2]};
}

}  // namespace kvx
