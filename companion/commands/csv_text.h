// Fields of CSV files (RFC 4180).
#pragma once

#include <string>
#include <string_view>

namespace kvx {

// Each appends one field to `text`, without a comma.

// The shortest text that gives the same double; NaN as "nan"; without a sign of zero.
void AddCsvNumber(double number, std::string& text);

// In quotes where it has commas, quotes or line ends.
void AddCsvText(std::string_view field, std::string& text);

}  // namespace kvx
