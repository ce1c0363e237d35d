#include "commands/call_kvx.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <sstream>

#include "support/temp_folder.h"

namespace kvx::test {

using korvex::test::ProgramRun;

namespace {

std::string WithoutReturns(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
  return text;
}

std::vector<std::string> SplitFields(const std::string& line) {
  std::vector<std::string> fields{""};
  for (const char c : line) {
    if (c == ',') {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  return fields;
}

}  // namespace

ProgramRun CallKvx(const std::string& modelText, const std::vector<std::string>& arguments,
                   const std::map<std::string, std::string>& files) {
  const korvex::test::TempFolder folder;
  korvex::test::WriteFile(folder.Path() / "fem_solving.txt", modelText);
  for (const auto& [name, bytes] : files) korvex::test::WriteFile(folder.Path() / name, bytes);
  ProgramRun run = korvex::test::RunProgram(KVX_PROGRAM, folder.Path(), "", arguments);
  run.out = WithoutReturns(run.out);
  run.err = WithoutReturns(run.err);
  return run;
}

std::string OutputOf(const korvex::test::ModelText& model,
                     const std::vector<std::string>& arguments) {
  const ProgramRun run = CallKvx(korvex::test::WriteModel(model), arguments);
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  return run.out;
}

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
