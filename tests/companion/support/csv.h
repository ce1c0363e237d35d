// CSV files read back by the rules of RFC 4180; no field holds a line end.
#pragma once

#include <string>
#include <vector>

namespace kvx::test {

// A CSV file as the program writes it.
struct CsvTable {
  std::vector<std::string> notes;  // without "# "
  std::vector<std::string> columns;
  std::vector<std::vector<std::string>> rows;
};

CsvTable ReadCsv(const std::string& text);

// The field of a row as it stands there. The test fails where there is no such column.
std::string FieldOf(const CsvTable& table, std::size_t row, const std::string& column);

// The number there; NaN for an empty field.
double NumberAt(const CsvTable& table, std::size_t row, const std::string& column);

// The first row whose field is this text; the test fails where there is none, and 0 is returned.
std::size_t RowWhere(const CsvTable& table, const std::string& column, const std::string& text);

}  // namespace kvx::test
