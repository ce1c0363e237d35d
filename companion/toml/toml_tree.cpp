#include "toml/toml_tree.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <sstream>
#include <toml/parser.hpp>

#include "finding/text_layout.h"
#include "report/stop.h"

namespace kvx {

namespace {

constexpr std::size_t MostBrackets = 16;

[[noreturn]] void StopAt(std::size_t line, const std::string& text) {
  throw korvex::Stop{korvex::StopKind::Notice, "line " + std::to_string(line) + ": " + text};
}

// The line of the text, without its end.
std::string_view FindLine(std::string_view text, std::size_t line) {
  for (std::size_t k = 1; k < line; ++k) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) return {};
    text.remove_prefix(end + 1);
  }
  text = text.substr(0, text.find('\n'));
  return text.substr(0, text.find('\r'));
}

// The library's own complaint about such bytes fails.
void CheckUtf8(std::string_view text) {
  std::size_t line = 1;
  for (std::size_t begin = 0; begin < text.size(); ++line) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    std::string plain(text.substr(begin, end - begin));
    for (char& c : plain) {
      if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = ' ';
    }
    if (CleanText(plain) != plain) StopAt(line, "a character is no UTF-8. Save the file as UTF-8.");
    begin = end + 1;
  }
}

// What the library does not guard against. Texts and comments are skipped as it skips them, up to
// the first place where the text is not TOML: there the library stops by itself.
void CheckBrackets(std::string_view text) {
  std::size_t line = 1;
  std::string brackets;  // that stand open
  char quote = '\0';     // of the text that stands open
  bool isComment = false;
  for (std::size_t k = 0; k < text.size(); ++k) {
    const char c = text[k];
    if (c == '\0') StopAt(line, "a byte 0 stands there. Is it a text file?");
    if (c == '\n') {
      if (!brackets.empty() && brackets.back() == '{') {
        StopAt(line, "a table in braces { ... } must stand on one line.");
      }
      ++line;
      quote = '\0';
      isComment = false;
    } else if (isComment) {
      continue;
    } else if (quote != '\0') {
      if (c == '\\' && quote == '"') ++k;
      if (c == quote) quote = '\0';
    } else if (text.substr(k, 3) == "\"\"\"" || text.substr(k, 3) == "'''") {
      StopAt(line, "a text over several lines. Write it on one line, in single quotes.");
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '#') {
      isComment = true;
    } else if (c == '[' || c == '{') {
      brackets += c;
      if (brackets.size() > MostBrackets) {
        StopAt(line, "too many brackets stand within each other.");
      }
    } else if ((c == ']' || c == '}') && !brackets.empty()) {
      brackets.pop_back();
    }
  }
}

// The texts of the library are for programmers: "[error] toml::parse_table: invalid line format",
// then the line with "^--- expected newline, but got ','.".
std::string DescribeSyntax(const std::string& what) {
  struct Meaning {
    const char* part;  // of the library's text
    const char* text;
  };
  constexpr std::array<Meaning, 10> Meanings{{
      {"string",
       "the text in quotes is not closed, or has a \"\\\" (write \"/\" in names of files)"},
      {"key-value separator", "a \"=\" is missing"},
      {"already exists", "it stands twice"},
      {"defined twice", "it stands twice"},
      {"curly brace", "the table in braces is not closed"},
      {"array", "the list is not closed with ], or a comma is missing in it"},
      {"float", "the number is not written as in 0.5, 1.0 or 2e-3"},
      {"integer", "the number is not written as in 0.5, 1.0 or 2e-3"},
      {"value", "what stands behind = is neither a number nor a text in quotes"},
      {"key", "it is neither [TABLE] nor KEY = VALUE"},
  }};
  const std::string title = what.substr(0, what.find('\n'));
  for (const Meaning& meaning : Meanings) {
    if (title.find(meaning.part) != std::string::npos) return meaning.text;
  }
  return "it is neither [TABLE] nor KEY = VALUE";
}

// "= 1,35": the usual slip, for which the library misses a line end or a key.
bool HasDecimalComma(std::string_view line) {
  constexpr std::string_view Digits = "0123456789";
  const auto skip = [&](std::string_view characters, std::size_t at) {
    return std::min(line.find_first_not_of(characters, at), line.size());
  };
  for (std::size_t sign = line.find('='); sign < line.size(); sign = line.find('=', sign + 1)) {
    const std::size_t whole = skip(" \t+-", sign + 1), comma = skip(Digits, whole);
    if (comma == whole || comma == line.size() || line[comma] != ',') continue;
    const std::size_t part = skip(Digits, comma + 1), end = skip(" \t\r", part);
    if (part == comma + 1) continue;
    if (end == line.size() || std::string_view(",}#").find(line[end]) < 3) return true;
  }
  return false;
}

double NumberOf(const toml::value& value, std::size_t line) {
  if (value.is_floating()) {
    const double number = value.as_floating();
    // What is too large is read as the largest number.
    if (std::abs(number) == std::numeric_limits<double>::max()) {
      StopAt(line, "the number is too large.");
    }
    return number;
  }
  const std::int64_t number = value.as_integer();
  if (number == std::numeric_limits<std::int64_t>::max() ||
      number == std::numeric_limits<std::int64_t>::min()) {
    StopAt(line, "the integer is too large. Write it with a point.");
  }
  return static_cast<double>(number);
}

// Item and its place in the line, to bring a table into the order of the text.
struct PlacedItem {
  TomlItem item;
  std::size_t column = 0;
};

TomlItem MakeItem(const toml::value& value);

void SortTable(const toml::table& table, std::vector<TomlItem>& items) {
  std::vector<PlacedItem> placed;
  for (const auto& [key, value] : table) {
    placed.push_back({MakeItem(value), value.location().column()});
    placed.back().item.key = key;
  }
  std::sort(placed.begin(), placed.end(), [](const PlacedItem& a, const PlacedItem& b) {
    if (a.item.line != b.item.line) return a.item.line < b.item.line;
    return a.column != b.column ? a.column < b.column : a.item.key < b.item.key;
  });
  for (PlacedItem& each : placed) items.push_back(std::move(each.item));
}

TomlItem MakeItem(const toml::value& value) {
  TomlItem item;
  item.line = value.location().line();
  if (value.is_string()) {
    item.kind = TomlKind::Text;
    item.text = value.as_string().str;
  } else if (value.is_floating() || value.is_integer()) {
    item.kind = TomlKind::Number;
    item.number = NumberOf(value, item.line);
  } else if (value.is_boolean()) {
    item.kind = TomlKind::Truth;
    item.truth = value.as_boolean();
  } else if (value.is_array()) {
    item.kind = TomlKind::List;
    for (const toml::value& each : value.as_array()) item.items.push_back(MakeItem(each));
  } else if (value.is_table()) {
    item.kind = TomlKind::Table;
    SortTable(value.as_table(), item.items);
  }
  return item;
}

}  // namespace

const char* NameKind(const TomlItem& item) {
  switch (item.kind) {
    case TomlKind::Text:
      return "a text";
    case TomlKind::Number:
      return "a number";
    case TomlKind::List:
      return "a list";
    case TomlKind::Table:
      return "a table";
    default:
      return "true, false or a date";
  }
}

void ReadToml(std::string_view text, TomlItem& root) {
  constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
  if (text.substr(0, ByteOrderMark.size()) == ByteOrderMark) {
    text.remove_prefix(ByteOrderMark.size());
  }
  CheckUtf8(text);
  CheckBrackets(text);
  std::istringstream stream{std::string(text)};
  try {
    root = MakeItem(toml::parse(stream, "cases"));
  } catch (const toml::exception& error) {
    const std::size_t line = error.location().line();
    const std::string_view found = FindLine(text, line);
    if (HasDecimalComma(found)) {
      StopAt(line, "\"" + std::string(found) + "\": write the number with a decimal point.");
    }
    const std::string quoted = found.empty() ? "" : '"' + std::string(found) + "\": ";
    StopAt(line, quoted + DescribeSyntax(error.what()) + ".");
  }
}

}  // namespace kvx
