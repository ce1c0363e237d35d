#include "mesh/abaqus/abaqus_fields.h"

#include <algorithm>

#include "mesh/letter_case.h"
#include "mesh/scan_number.h"

namespace kvx {

namespace {

// What a message shows of a text that may be long.
constexpr std::size_t ShownCharacters = 40;

std::string Shown(std::string_view text) {
  if (text.size() <= ShownCharacters) return std::string(text);
  return std::string(text.substr(0, ShownCharacters)) + "...";
}

bool IsQuoted(std::string_view text) {
  return text.size() >= 2 && text.front() == '"' && text.back() == '"';
}

}  // namespace

bool NextField(AbaqusFields& fields, std::string_view& field) {
  if (fields.isAtEnd) return false;
  const std::string_view rest = fields.rest;
  std::size_t from = rest.find_first_not_of(" \t");
  if (from == std::string_view::npos) from = rest.size();
  std::size_t quoteEnd = std::string_view::npos;
  if (from < rest.size() && rest[from] == '"') quoteEnd = rest.find('"', from + 1);
  const std::size_t comma = rest.find(',', quoteEnd == std::string_view::npos ? from : quoteEnd);
  field = TrimBlanks(rest.substr(from, comma == std::string_view::npos ? comma : comma - from));
  fields.isAtEnd = comma == std::string_view::npos;
  fields.rest = fields.isAtEnd ? std::string_view{} : rest.substr(comma + 1);
  return true;
}

double RealOf(std::string_view field, double blank, SourcePlace place, const ImportReport& report) {
  if (field.empty()) return blank;
  double value = 0.0;
  if (!ScanDouble(field, value)) {
    StopImport(report, place, "\"" + Shown(field) + "\" is not a number");
  }
  return value;
}

std::int64_t IntegerOf(std::string_view field, std::int64_t blank, SourcePlace place,
                       const ImportReport& report) {
  if (field.empty()) return blank;
  std::int64_t value = 0;
  if (!ScanInteger(field, value)) {
    StopImport(report, place, "\"" + Shown(field) + "\" is not an integer");
  }
  return value;
}

double NextReal(AbaqusFields& fields, double blank, SourcePlace place, const ImportReport& report) {
  std::string_view field;
  return NextField(fields, field) ? RealOf(field, blank, place, report) : blank;
}

std::int64_t NextInteger(AbaqusFields& fields, std::int64_t blank, SourcePlace place,
                         const ImportReport& report) {
  std::string_view field;
  return NextField(fields, field) ? IntegerOf(field, blank, place, report) : blank;
}

std::string UpperWords(std::string_view text) {
  std::string words;
  for (const char c : TrimBlanks(text)) {
    if (c != ' ' && c != '\t') {
      words += UpperLetter(c);
    } else if (words.back() != ' ') {
      words += ' ';
    }
  }
  return words;
}

std::string_view WithoutQuotes(std::string_view text) {
  return IsQuoted(text) ? text.substr(1, text.size() - 2) : text;
}

std::string NameKey(std::string_view text) {
  if (IsQuoted(text)) return std::string(WithoutQuotes(text));
  std::string key(text);
  std::transform(key.begin(), key.end(), key.begin(), UpperLetter);
  return key;
}

}  // namespace kvx
