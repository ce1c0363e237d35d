#include "mesh/gmsh/gmsh_text.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "mesh/scan_number.h"

namespace kvx {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

void SkipBlanks(GmshText& text) {
  while (text.at < text.bytes.size() && IsBlank(text.bytes[text.at])) ++text.at;
}

// What a message shows of a word: short, and printable.
std::string Quoted(std::string_view word) {
  constexpr std::size_t Shown = 30;
  std::string quoted = "\"";
  for (const char c : word.substr(0, Shown)) quoted += c >= ' ' && c <= '~' ? c : '?';
  return quoted + (word.size() > Shown ? "...\"" : "\"");
}

template <typename Number>
Number TakeBytes(GmshText& text, const char* what) {
  char bytes[sizeof(Number)];
  if (text.bytes.size() - text.at < sizeof(Number)) {
    text.at = text.bytes.size();
    FailAt(text, "the file ends within " + text.section + ", where " + what + " is expected");
  }
  for (std::size_t k = 0; k < sizeof(Number); ++k) {
    const std::size_t from = text.isSwapped ? sizeof(Number) - 1 - k : k;
    bytes[k] = text.bytes[text.at + from];
  }
  text.at += sizeof(Number);
  Number number;
  std::memcpy(&number, bytes, sizeof(Number));
  return number;
}

}  // namespace

SourcePlace PlaceIn(const GmshText& text) { return {0, text.isBinary ? 0 : text.line}; }

void FailAt(const GmshText& text, const std::string& what) {
  if (!text.isBinary) StopImport(text.report, {0, text.line}, what);
  StopImport(text.report, {0, 0}, "byte " + std::to_string(text.at) + ": " + what);
}

void SkipSpace(GmshText& text) {
  SkipBlanks(text);
  while (text.at < text.bytes.size() && text.bytes[text.at] == '\n') {
    ++text.at;
    ++text.line;
    SkipBlanks(text);
  }
}

std::string_view TakeLine(GmshText& text) {
  SkipBlanks(text);
  const std::size_t begin = text.at;
  const std::size_t end = std::min(text.bytes.find('\n', begin), text.bytes.size());
  std::string_view line = text.bytes.substr(begin, end - begin);
  while (!line.empty() && IsBlank(line.back())) line.remove_suffix(1);
  text.at = end;
  if (end < text.bytes.size()) {
    ++text.at;
    ++text.line;
  }
  return line;
}

std::string_view TakeWord(GmshText& text, const char* what) {
  SkipBlanks(text);
  const std::size_t begin = text.at;
  while (text.at < text.bytes.size() && !IsBlank(text.bytes[text.at]) &&
         text.bytes[text.at] != '\n') {
    ++text.at;
  }
  if (text.at > begin) return text.bytes.substr(begin, text.at - begin);
  const bool isEnd = text.at == text.bytes.size();
  FailAt(text, (isEnd ? "the file ends within " : "the line ends too early within ") +
                   text.section + ", where " + what + " is expected");
}

std::int64_t TakeTextInt(GmshText& text, const char* what) {
  const std::string_view word = TakeWord(text, what);
  std::int64_t number = 0;
  if (ScanInteger(word, number) && number >= std::numeric_limits<std::int32_t>::min() &&
      number <= std::numeric_limits<std::int32_t>::max()) {
    return number;
  }
  FailAt(text, Quoted(word) + " stands where " + what + " is expected");
}

std::int64_t TakeTextSize(GmshText& text, const char* what) {
  const std::string_view word = TakeWord(text, what);
  std::int64_t number = 0;
  if (ScanInteger(word, number) && number >= 0) return number;
  FailAt(text, Quoted(word) + " stands where " + what + " is expected");
}

void BeginRow(GmshText& text) {
  if (!text.isBinary) SkipSpace(text);
}

bool AtLineEnd(GmshText& text) {
  SkipBlanks(text);
  return text.at == text.bytes.size() || text.bytes[text.at] == '\n';
}

void EndRow(GmshText& text) {
  if (text.isBinary || AtLineEnd(text)) return;
  FailAt(text, "more numbers stand in the line than belong to a row of " + text.section);
}

std::int64_t TakeInt(GmshText& text, const char* what) {
  if (!text.isBinary) return TakeTextInt(text, what);
  return TakeBytes<std::int32_t>(text, what);
}

std::int64_t TakeSize(GmshText& text, const char* what) {
  if (!text.isBinary) return TakeTextSize(text, what);
  const auto number = TakeBytes<std::int64_t>(text, what);
  if (number >= 0) return number;
  FailAt(text, std::to_string(number) + " stands where " + what + " is expected");
}

std::int64_t TakeTag(GmshText& text, const char* what) {
  if (!text.isBinary || !text.hasShortTags) return TakeSize(text, what);
  const std::int64_t number = TakeBytes<std::int32_t>(text, what);
  if (number >= 0) return number;
  FailAt(text, std::to_string(number) + " stands where " + what + " is expected");
}

double TakeReal(GmshText& text, const char* what) {
  double number = 0.0;
  if (text.isBinary) {
    number = TakeBytes<double>(text, what);
    if (std::isfinite(number)) return number;
    FailAt(text, std::string("a number that is not finite stands where ") + what + " is expected");
  }
  const std::string_view word = TakeWord(text, what);
  if (ScanDouble(word, number)) return number;
  FailAt(text, Quoted(word) + " stands where " + what + " is expected");
}

std::size_t BelieveCount(const GmshText& text, std::int64_t count, std::size_t bytesOfOne,
                         const char* what) {
  const std::size_t left = text.bytes.size() - text.at;
  const std::size_t most =
      std::min<std::size_t>(left / bytesOfOne + 1, std::numeric_limits<std::int32_t>::max());
  if (count >= 0 && static_cast<std::uint64_t>(count) <= most) {
    return static_cast<std::size_t>(count);
  }
  FailAt(text, text.section + " announces " + std::to_string(count) + ' ' + what +
                   "; the rest of the file cannot hold them");
}

std::size_t TakeTextCount(GmshText& text, std::size_t bytesOfOne, const char* what) {
  SkipSpace(text);
  const std::size_t count = BelieveCount(text, TakeTextSize(text, "a count"), bytesOfOne, what);
  if (!AtLineEnd(text)) FailAt(text, "the count in " + text.section + " has a line of its own");
  TakeLine(text);
  return count;
}

}  // namespace kvx
