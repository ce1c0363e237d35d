#include "support/csv.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <sstream>

namespace kvx::test {

namespace {

std::vector<std::string> SplitFields(const std::string& line) {
  std::vector<std::string> fields(1);
  bool isQuoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"') {
      const bool isDoubled = isQuoted && i + 1 < line.size() && line[i + 1] == '"';
      if (isDoubled) fields.back() += line[++i];
      if (!isDoubled) isQuoted = !isQuoted;
    } else if (line[i] == ',' && !isQuoted) {
      fields.emplace_back();
    } else {
      fields.back() += line[i];
    }
  }
  return fields;
}

}  // namespace

CsvTable ReadCsv(const std::string& text) {
  CsvTable table;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("# ", 0) == 0) {
      table.notes.push_back(line.substr(2));
    } else if (table.columns.empty()) {
      table.columns = SplitFields(line);
    } else {
      table.rows.push_back(SplitFields(line));
      EXPECT_EQ(table.rows.back().size(), table.columns.size()) << line;
    }
  }
  return table;
}

std::string FieldOf(const CsvTable& table, std::size_t row, const std::string& column) {
  const auto at = std::find(table.columns.begin(), table.columns.end(), column);
  if (at == table.columns.end() || row >= table.rows.size()) {
    ADD_FAILURE() << "no column " << column << " or no row " << row;
    return "";
  }
  return table.rows[row][static_cast<std::size_t>(at - table.columns.begin())];
}

double NumberAt(const CsvTable& table, std::size_t row, const std::string& column) {
  const std::string field = FieldOf(table, row, column);
  return field.empty() ? std::numeric_limits<double>::quiet_NaN() : std::stod(field);
}

std::size_t RowWhere(const CsvTable& table, const std::string& column, const std::string& text) {
  for (std::size_t row = 0; row < table.rows.size(); ++row) {
    if (FieldOf(table, row, column) == text) return row;
  }
  ADD_FAILURE() << "no row has " << column << " = " << text;
  return 0;
}

}  // namespace kvx::test
