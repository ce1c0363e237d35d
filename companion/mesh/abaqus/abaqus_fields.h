// Words of a deck: fields of data lines, numbers, names.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "mesh/import_report.h"
#include "mesh/source_files.h"

namespace kvx {

// The rest of a data line; fields stand between commas, a comma in quotes does not part them.
struct AbaqusFields {
  std::string_view rest;
  bool isAtEnd = false;
};

// Takes the next field, trimmed; false behind the last one. "1, 2," has three, the last is blank.
bool NextField(AbaqusFields& fields, std::string_view& field);

// The number in a field; `blank` for a blank one. Ends the import where the field is no number.
double RealOf(std::string_view field, double blank, SourcePlace place, const ImportReport& report);
std::int64_t IntegerOf(std::string_view field, std::int64_t blank, SourcePlace place,
                       const ImportReport& report);

// The next field as a number; `blank` where it is blank or there is none.
double NextReal(AbaqusFields& fields, double blank, SourcePlace place, const ImportReport& report);
std::int64_t NextInteger(AbaqusFields& fields, std::int64_t blank, SourcePlace place,
                         const ImportReport& report);

// The text in upper case, with single blanks between its words.
std::string UpperWords(std::string_view text);

// The text without a pair of quotes around it.
std::string_view WithoutQuotes(std::string_view text);

// What names are compared by: upper case, and as it stands where it is quoted.
std::string NameKey(std::string_view text);

}  // namespace kvx
